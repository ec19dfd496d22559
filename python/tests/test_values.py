"""Python values and the runtime's types, both ways."""

import enum
import fractions

import pytest

import seluvorne


class Floor(enum.IntEnum):
    THIRD = 3


@pytest.mark.parametrize(
    "value, seen_by_the_library",
    [
        (None, "Empty"),
        (True, "Boolean:True"),
        (False, "Boolean:False"),
        (-32768, "Integer:-32768"),
        (32767, "Integer:32767"),
        (32768, "Long:32768"),
        (-(2**31), "Long:-2147483648"),
        (2**31, "Double:2147483648"),
        (2**70, "Double:1.18059162071741E+21"),
        (1.5, "Double:1.5"),
        ("梁 B1", "String:梁 B1"),
        ("", "String:"),
        (Floor.THIRD, "Integer:3"),
        (fractions.Fraction(1, 4), "Double:0.25"),
    ],
)
def test_python_values_reach_the_library_as_the_runtime_types(probe, value, seen_by_the_library):
    assert probe.Describe(value) == seen_by_the_library


@pytest.mark.parametrize("value", [None, True, False, 0, -32768, 40000, -(2**31), 1.5, "梁", ""])
def test_values_come_back_as_they_went(probe, value):
    back = probe.Echo(value)
    assert back == value
    assert type(back) is type(value)


def test_values_only_the_library_makes(probe):
    assert probe.Echo(2**31) == 2147483648.0  # a Double now
    assert probe.AsSingle(1.1) == 1.1  # a Single, as the float of the same text
    assert probe.AsSingle(16777217) == 16777216.0
    assert probe.NullValue() is None


@pytest.mark.parametrize(
    "value, number",
    [
        ([1, 2], 13),
        ((1,), 13),
        ({"a": 1}, 13),
        ({1}, 13),
        (b"bytes", 13),
        (1j, 13),
        ("\ud800", 13),  # an unpaired surrogate has no UTF-8 form
        (10**400, 6),
    ],
)
def test_values_without_a_runtime_form_raise(probe, value, number):
    with pytest.raises(seluvorne.Error) as raised:
        probe.Echo(value)
    assert raised.value.number == number


def test_objects_cross_as_objects(probe):
    assert probe.Describe(probe) == "Object"
    assert probe.Echo(probe) == probe

    class Plain:
        Name = "plain"

    # Any other Python object crosses as an Object the library calls by name.
    assert probe.Describe(Plain()) == "Object"
    assert probe.CallOut(Plain(), "Name", 1, seluvorne.Array("var", (0,))) == "plain"
