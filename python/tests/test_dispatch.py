"""Proxies: member access by name, the default member, errors, identity."""

import pickle

import pytest

import seluvorne


def test_properties_methods_and_the_explicit_forms(probe):
    probe.Label = "B1"
    assert probe.Label == "B1"
    assert probe.LABEL == "B1" and probe.get("label") == "B1"
    probe.put("Label", "B2")
    assert probe.label == "B2"

    assert isinstance(probe.Slot, seluvorne.Member)  # an indexed property
    probe.put("Slot", 1, "right")
    assert probe.Slot(1) == "right" and probe.get("slot", 3) == "right"
    assert probe.Echo(5) == 5 and probe.invoke("echo", 5) == 5
    assert probe.DESCRIBE(1) == "Integer:1"


def test_calling_a_proxy_calls_its_default_member(probe):
    assert probe(3) == "item 3"
    assert probe("PAGE") == "item PAGE"
    with pytest.raises(seluvorne.Error) as raised:
        seluvorne.CreateObject("SeluVorneTest.Opaque")()
    assert raised.value.number == 438


def test_a_component_that_cannot_describe_its_members():
    opaque = seluvorne.CreateObject("SeluVorneTest.Opaque")
    # Every name is a Member; calling it is a method call (kind 0).
    assert isinstance(opaque.Anything, seluvorne.Member)
    assert opaque.Anything(1, 2) == "Anything/0/2"
    assert opaque.get("Width", 1) == "Width/1/1"
    assert opaque.put("Width", 1, 2) is None
    opaque.Width = 5  # a put (kind 2) with the value alone


@pytest.mark.parametrize(
    "call, number",
    [
        (lambda p: p.NoSuchMember(), 438),
        (lambda p: p.get("NoSuchMember"), 438),
        (lambda p: p.Echo(), 450),
        (lambda p: p.Echo(1, 2), 450),
        (lambda p: p.put("Label"), 450),
        (lambda p: p.Fail(3078, seluvorne.Ref(0)), 3078),
        (lambda p: p.Fail(91, seluvorne.Ref(0)), 91),
        (lambda p: p.Make("i8", 1), 5),
        (lambda p: p.Crash(), 440),
    ],
)
def test_the_librarys_errors_arrive_with_their_numbers(probe, call, number):
    with pytest.raises(seluvorne.Error) as raised:
        call(probe)
    assert raised.value.number == number


def test_an_error_carries_source_and_description(probe):
    with pytest.raises(seluvorne.Error) as raised:
        probe.NoSuchMember()
    error = raised.value
    assert error.source == "Probe.NoSuchMember"
    assert error.description == "Object doesn't support this property or method"
    assert str(error) == "Error 438 (Probe.NoSuchMember): " + error.description
    with pytest.raises(seluvorne.Error) as raised:
        probe.Crash()
    assert "probe crashed" in raised.value.description


def test_errors_made_in_python():
    error = seluvorne.Error(3021)
    assert isinstance(error, Exception)
    assert (error.number, error.description, error.source) == (3021, "No current record.", "")
    assert str(error) == "Error 3021: No current record."
    copied = pickle.loads(pickle.dumps(seluvorne.Error(5, "bad floor", "Floors")))
    assert (copied.number, copied.description, copied.source) == (5, "bad floor", "Floors")


def test_python_names_stay_pythons(probe):
    with pytest.raises(AttributeError):
        probe._private
    assert not hasattr(probe, "__array__")
    with pytest.raises(AttributeError):
        probe._private = 1


def test_proxies_of_one_object_are_equal_and_hash_alike(probe):
    same = probe.Me()
    assert same == probe and hash(same) == hash(probe)
    assert len({probe, same, probe.Echo(probe)}) == 1
    other = seluvorne.CreateObject("SeluVorneTest.Probe")
    assert other != probe and other.Me() == other
    assert probe != "Probe"
