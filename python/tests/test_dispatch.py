"""Proxies: member access by name, the default member, errors."""

import pickle

import pytest

import seluvorne
from support import error_of


def test_properties_read_at_once_and_members_to_call(probe):
    probe.Label = "B1"
    assert probe.Label == "B1" and probe.LABEL == "B1" and probe.get("label") == "B1"
    probe.put("Label", "B2")
    assert probe.label == "B2"
    assert isinstance(probe.Echo, seluvorne.Member) and probe.Echo(5) == 5 and probe.invoke("echo", 5) == 5
    assert probe.DESCRIBE(1) == "Integer:1"
    assert not hasattr(probe, "_private") and not hasattr(probe, "__array__")
    with pytest.raises(AttributeError):
        probe._private = 1


def test_the_librarys_errors_arrive_with_number_source_and_description(probe):
    error = error_of(probe.NoSuchMember)
    assert error.source == "Probe.NoSuchMember"
    assert error.description == "Object doesn't support this property or method"
    assert str(error) == "Error 438 (Probe.NoSuchMember): " + error.description
    for call, number in [(probe.Echo, 450), (lambda: probe.put("Label"), 450), (lambda: probe.get("Nope"), 438)]:
        assert error_of(call).number == number
    error = error_of(probe.Fail, 3078, seluvorne.Ref(0))
    assert (error.number, error.source) == (3078, "SeluVorneDS")
    assert error.description == "The database engine cannot find the input table or query '(raised by the probe)'."


def test_errors_made_in_python():
    copied = pickle.loads(pickle.dumps(seluvorne.Error(3021)))
    assert isinstance(copied, Exception) and str(copied) == "Error 3021: No current record."
    assert (copied.number, copied.description, copied.source) == (3021, "No current record.", "")
    assert str(seluvorne.Error(5, "bad floor", "Floors")) == "Error 5 (Floors): bad floor"

