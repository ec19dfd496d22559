"""Python values and the runtime's types, both ways, by value and by reference."""

import enum
import fractions

import pytest

import seluvorne
from support import error_of

BACK = {"Empty": type(None), "Boolean": bool, "Integer": int, "Long": int, "Double": float, "String": str}


@pytest.mark.parametrize(
    "value, seen_by_the_library",
    [
        (None, "Empty"),
        (True, "Boolean:True"),
        (-32768, "Integer:-32768"),
        (32767, "Integer:32767"),
        (32768, "Long:32768"),
        (-(2**31), "Long:-2147483648"),
        (2**31, "Double:2147483648"),
        (1.5, "Double:1.5"),
        ("梁 B1", "String:梁 B1"),
        (enum.IntEnum("Floor", {"THIRD": 3}).THIRD, "Integer:3"),
        (fractions.Fraction(1, 4), "Double:0.25"),
    ],
)
def test_values_cross_as_the_runtime_types_and_come_back(probe, value, seen_by_the_library):
    assert probe.Describe(value) == seen_by_the_library
    back = probe.Echo(value)
    assert back == value and type(back) is BACK[seen_by_the_library.split(":")[0]]


@pytest.mark.parametrize(
    "member, given, left",
    [
        ("BumpI2", 5, 6),
        ("BumpI2", "5", 6),  # converted in, written back as the parameter's type
        ("BumpI4", 40000, 40001),
        ("BumpR4", 1.1, 2.2),  # a Single comes back as the float of its shortest text
        ("BumpR8", 0.25, 0.5),
        ("BumpStr", "梁", "梁!"),
        ("BumpBool", True, False),
        ("BumpVar", 3, "Integer:3"),
    ],
)
def test_scalars_by_reference_come_back_changed(probe, member, given, left):
    ref = seluvorne.Ref(given)
    probe.invoke(member, ref)
    assert ref.value == left and type(ref.value) is type(left)


def test_changes_made_by_reference_before_an_error_come_back(probe):
    ref = seluvorne.Ref(0)
    assert error_of(probe.Fail, 3021, ref).number == 3021
    assert ref.value == 7
    ref = seluvorne.Ref(32767)
    assert error_of(probe.BumpI2, ref).number == 6
    assert ref.value == 32767


class RaisingIndex:
    def __index__(self):
        return 1 // 0


class RaisingFloat:
    def __float__(self):
        raise ValueError("no number here")


@pytest.mark.parametrize(
    "call, cause",
    [
        (lambda probe: probe.Echo(RaisingIndex()), ZeroDivisionError),
        (lambda probe: probe.Echo(RaisingFloat()), ValueError),
        (lambda probe: probe.Echo(seluvorne.Ref(RaisingIndex())), ZeroDivisionError),
        (lambda probe: seluvorne.Array("i2", (RaisingIndex(),)), ZeroDivisionError),
        (lambda probe: seluvorne.Array("i2", (2,))[RaisingIndex()], ZeroDivisionError),
    ],
)
def test_an_argument_whose_conversion_raises_is_a_type_mismatch_caused_by_it(probe, call, cause):
    error = error_of(call, probe)
    assert error.number == 13
    assert isinstance(error.__cause__, cause)


def test_objects_cross_as_objects(probe):
    assert probe.Describe(probe) == "Object"

    class Plain:
        Name = "plain"

    # Any other Python object crosses as an Object the library calls by name.
    assert probe.Describe(Plain()) == "Object"
    assert probe.CallOut(Plain(), "Name", 1, seluvorne.Array("var", (0,))) == "plain"
