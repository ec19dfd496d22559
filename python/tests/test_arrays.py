"""seluvorne.Array on its own, and arrays crossing to the library and back."""

import copy
import math

import pytest

import seluvorne
from support import SHAPES, TYPES, error_of, filled, sample



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
