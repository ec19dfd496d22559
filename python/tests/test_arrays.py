"""seluvorne.Array on its own, and arrays crossing to the library and back."""

import copy

import pytest

import seluvorne
from samples import SHAPES, TYPES, indices, sample, storage_position


def raises_number(number, call, *args):
    with pytest.raises(seluvorne.Error) as raised:
        call(*args)
    assert raised.value.number == number, raised.value


@pytest.mark.parametrize(
    "type, initial", [("i2", 0), ("i4", 0), ("r4", 0.0), ("r8", 0.0), ("str", ""), ("bool", False), ("var", None)]
)
def test_new_elements_hold_the_types_initial_value(type, initial):
    a = seluvorne.Array(type, (2, 3))
    assert a.type == type
    assert a.tolist() == [[initial] * 3] * 2


@pytest.mark.parametrize(
    "type, value, stored",
    [("i2", 2.5, 2), ("i2", "12", 12), ("r4", 1.1, 1.1), ("str", True, "True"), ("var", "x", "x")],
)
def test_assignment_coerces_with_the_runtimes_rules(type, value, stored):
    a = seluvorne.Array(type, (1,))
    a[0] = value
    assert a[0] == stored


@pytest.mark.parametrize(
    "type, value, number",
    [("i2", 40000, 6), ("i2", "abc", 13), ("bool", "abc", 13), ("var", seluvorne.Ref(1), 13)],
)
def test_a_value_the_element_type_cannot_hold_raises_and_keeps_the_element(type, value, number):
    a = seluvorne.Array(type, (1,))
    a[0] = 1
    before = a[0]
    raises_number(number, a.__setitem__, 0, value)
    assert a[0] == before


def test_bounds_and_indices():
    a = seluvorne.Array("i4", (2, 3))
    assert len(a) == 2 and a.shape == (2, 3)
    assert a.ubound() == 1 and a.ubound(2) == 2
    a[1, 2] = 5
    assert a.tolist() == [[0, 0, 0], [0, 0, 5]]
    assert list(a) == a.tolist()
    for bad in [(2, 0), (0, 3), (-1, 0), (0,), (0, 0, 0), 0]:
        raises_number(9, a.__getitem__, bad)
    raises_number(9, a.ubound, 0)
    raises_number(9, a.ubound, 3)
    raises_number(13, a.__getitem__, (0, 1.0))
    raises_number(13, a.__getitem__, slice(0, 1))


def test_shapes_without_elements():
    unallocated = seluvorne.Array("str")
    assert len(unallocated) == 0 and unallocated.tolist() == [] and unallocated.shape == ()
    raises_number(9, unallocated.ubound)
    empty = seluvorne.Array("str", 0)
    assert len(empty) == 0 and empty.ubound() == -1
    raises_number(9, seluvorne.Array, "i2", (-1,))
    raises_number(5, seluvorne.Array, "i8", (1,))


def test_an_array_is_a_value_its_holder_owns(probe):
    a = seluvorne.Array("i2", (2,))
    b = copy.copy(a)
    b[0] = 1
    assert a[0] == 0
    back = probe.Echo(a)
    assert back == a and back is not a
    back[1] = 9
    assert a[1] == 0
    probe.ExtendI2(a)  # by value: the callee's change stays with the callee
    assert a.shape == (2,)


@pytest.mark.parametrize("shape", SHAPES)
@pytest.mark.parametrize("type", TYPES)
def test_arrays_the_library_makes_index_as_it_stores_them(probe, type, shape):
    made = probe.Make(type, *shape)
    assert isinstance(made, seluvorne.Array)
    assert made.type == type and made.shape == shape
    listed = made.tolist()
    for index in indices(shape):
        expected = sample(type, storage_position(index, shape))
        assert made[index] == expected
        nested = listed
        for i in index:
            nested = nested[i]
        assert nested == expected


@pytest.mark.parametrize("shape", SHAPES)
@pytest.mark.parametrize("type", TYPES)
def test_arrays_filled_in_python_reach_the_library_in_the_same_order(probe, type, shape):
    a = seluvorne.Array(type, shape)
    for index in indices(shape):
        a[index] = sample(type, storage_position(index, shape))
    assert probe.Make(type, *shape) == a
    assert probe.Echo(a) == a

