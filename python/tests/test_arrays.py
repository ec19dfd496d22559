"""seluvorne.Array on its own, and arrays crossing to the library and back."""

import copy
import math

import pytest

import seluvorne
from support import SHAPES, TYPES, error_of, filled, sample

INITIAL = {"i2": 0, "i4": 0, "r4": 0.0, "r8": 0.0, "str": "", "bool": False, "var": None}


@pytest.mark.parametrize(
    "element, value, stored",
    [("i2", 2.5, 2), ("i2", 3.5, 4), ("i2", "12", 12), ("r4", 1.1, 1.1), ("str", True, "True"), ("var", "x", "x")],
)
def test_assignment_coerces_with_the_runtimes_rules(element, value, stored):
    a = seluvorne.Array(element, (1,))
    a[0] = value
    assert a[0] == stored and type(a[0]) is type(stored)


@pytest.mark.parametrize(
    "type, value, number",
    [("i2", 40000, 6), ("i2", "abc", 13), ("bool", "abc", 13), ("var", seluvorne.Ref(1), 13)],
)
def test_a_value_the_element_type_cannot_hold_raises_and_keeps_the_element(type, value, number):
    a = seluvorne.Array(type, (1,))
    a[0] = 1
    before = a[0]
    assert error_of(a.__setitem__, 0, value).number == number
    assert a[0] == before


def test_bounds_indices_and_equality():
    for element, initial in INITIAL.items():
        assert seluvorne.Array(element, (2, 1)).tolist() == [[initial], [initial]], element
    a = seluvorne.Array("i4", (2, 3))
    assert len(a) == 2 and a.shape == (2, 3)
    assert a.ubound() == 1 and a.ubound(2) == 2
    a[0, 1] = 5
    assert a.tolist() == [[0, 5, 0], [0, 0, 0]] and list(a) == a.tolist()
    for bad in [(2, 0), (0, 3), (-1, 0), (0,), (0, 0, 0), 0]:
        assert error_of(a.__getitem__, bad).number == 9
    assert error_of(a.ubound, 3).number == 9
    assert error_of(a.__getitem__, (0, 1.0)).number == 13
    assert filled("i4", (2, 3)) != filled("i4", (3, 2)) and filled("i4", (6,)) != filled("r8", (6,))

    unallocated = seluvorne.Array("str")
    assert len(unallocated) == 0 and unallocated.tolist() == [] and unallocated.shape == ()
    assert error_of(unallocated.ubound).number == 9
    assert seluvorne.Array("str", 0).ubound() == -1
    assert error_of(seluvorne.Array, "i2", (-1,)).number == 9
    assert error_of(seluvorne.Array, "i8", (1,)).number == 5


@pytest.mark.parametrize("type, shape", [("i2", (2**16, 2**16)), ("var", (2**15, 2**15)), ("str", (2**31 - 1,))])
def test_an_array_too_large_to_hold_is_out_of_memory(type, shape):
    assert error_of(seluvorne.Array, type, shape).number == 7


def test_an_array_is_a_value_its_holder_owns(probe):
    a = seluvorne.Array("i2", (2,))
    b, back = copy.copy(a), probe.Echo(a)
    assert back == a and back is not a
    b[0] = back[1] = 9
    probe.ExtendI2(a)  # by value: the callee's change stays with the callee
    assert a.tolist() == [0, 0]


@pytest.mark.parametrize("shape", SHAPES)
@pytest.mark.parametrize("type", TYPES)
def test_arrays_cross_both_ways_in_storage_order(probe, type, shape):
    # The callee keeps the elements it was given and appends samples after
    # them in its own storage order, so both directions must agree.
    given = filled(type, shape)
    assert probe.Describe(given) == "Array"
    ref = seluvorne.Ref(given)
    grown = shape[:-1] + (shape[-1] + 1,)
    assert probe.invoke("Extend" + type, ref) == math.prod(grown)
    assert isinstance(ref.value, seluvorne.Array)
    assert ref.value == filled(type, grown)
    assert given == filled(type, shape)  # the Array put into the Ref is not touched


@pytest.mark.parametrize("type", TYPES)
def test_arrays_not_yet_dimensioned_are_dimensioned_by_the_callee(probe, type):
    for start in [None, seluvorne.Array(type)]:
        ref = seluvorne.Ref(start)
        probe.invoke("Extend" + type, ref)  # names match without regard to case
        assert ref.value.type == type and ref.value.tolist() == [sample(type, 0)]
