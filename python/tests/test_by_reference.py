"""Arguments passed by reference with seluvorne.Ref, for every element type."""

import math

import pytest

import seluvorne
from samples import SHAPES, TYPES, indices, sample, storage_position

SUFFIX = {"i2": "I2", "i4": "I4", "r4": "R4", "r8": "R8", "str": "Str", "bool": "Bool", "var": "Var"}


@pytest.mark.parametrize(
    "member, given, left",
    [
        ("BumpI2", 5, 6),
        ("BumpI2", "5", 6),  # converted in, written back as the parameter's type
        ("BumpI4", 40000, 40001),
        ("BumpR4", 1.1, 2.2),
        ("BumpR8", 0.25, 0.5),
        ("BumpStr", "梁", "梁!"),
        ("BumpStr", 12, "12!"),
        ("BumpBool", True, False),
        ("BumpVar", 3, "Integer:3"),
        ("BumpVar", None, "Empty"),
    ],
)
def test_scalars_come_back_changed(probe, member, given, left):
    ref = seluvorne.Ref(given)
    probe.invoke(member, ref)
    assert ref.value == left
    assert type(ref.value) is type(left)


def test_an_object_the_callee_assigns_comes_back(probe):
    ref = seluvorne.Ref()
    probe.BumpObj(ref)
    assert ref.value == probe


def test_changes_made_before_an_error_come_back(probe):
    ref = seluvorne.Ref(0)
    with pytest.raises(seluvorne.Error) as raised:
        probe.Fail(3021, ref)
    assert raised.value.number == 3021
    assert ref.value == 7

    ref = seluvorne.Ref(32767)
    with pytest.raises(seluvorne.Error) as raised:
        probe.BumpI2(ref)
    assert raised.value.number == 6
    assert ref.value == 32767


@pytest.mark.parametrize("shape", SHAPES)
@pytest.mark.parametrize("type", TYPES)
def test_arrays_the_callee_redimensions_come_back(probe, type, shape):
    given = seluvorne.Array(type, shape)
    for index in indices(shape):
        given[index] = sample(type, storage_position(index, shape))
    ref = seluvorne.Ref(given)
    grown = shape[:-1] + (shape[-1] + 1,)
    assert probe.invoke("Extend" + SUFFIX[type], ref) == math.prod(grown)
    left = ref.value
    assert left.type == type and left.shape == grown
    for index in indices(grown):  # old elements stay in place, new ones follow
        assert left[index] == sample(type, storage_position(index, grown))
    assert given.shape == shape  # the Array put into the Ref is not touched


@pytest.mark.parametrize("type", TYPES)
def test_arrays_not_yet_dimensioned_are_dimensioned_by_the_callee(probe, type):
    for start in [None, seluvorne.Array(type)]:
        ref = seluvorne.Ref(start)
        probe.invoke("Extend" + SUFFIX[type], ref)
        assert ref.value.type == type and ref.value.tolist() == [sample(type, 0)]
