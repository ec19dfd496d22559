"""Components written in Python, created through the registry and called from C++."""

import concurrent.futures
import threading

import pytest

import seluvorne
from seluvorne import Ref
from support import error_of

METHOD, GET, PUT = 0, 1, 2
FILLED = [0, 0, 28800, 2**20]


class Screen:
    Name = "screen"
    name = "lower-case twin"

    def __init__(self):
        self.Labels = {1: "one"}

    def ScreenWorkAreaTwip(self, left: Ref, top: Ref, width: Ref, height: Ref):
        left.value, top.value, width.value, height.value = FILLED
        return threading.get_ident()

    def GetFullPathToKai(self, ZeneNo: Ref, KoujiNo: Ref, KaiNo: "Ref", plain=None):
        plain = 99  # a plain parameter: reassigning it changes nothing outside
        return f"\\Zene{ZeneNo.value}\\Kouji{KoujiNo.value}\\{KaiNo.value}kai"

    def Total(self, *values: Ref):
        for ref in values:
            ref.value = ref.value * 2
        return len(values)

    def Broken(self, touched: Ref):
        touched.value = "touched"
        raise ValueError("no floor 9")

    def Missing(self):
        raise seluvorne.Error(3021)

    def Interrupted(self):
        raise KeyboardInterrupt


@pytest.fixture
def screen(component):
    component("Py.Screen", Screen)
    return seluvorne.CreateObject("Py.Screen")


def call_out(probe, target, member, kind, *values, on_other_thread=False):
    """Has the probe call `member` from C++, each argument by reference;
    answers the result and the arguments as the callee left them."""
    args = seluvorne.Array("var", (len(values),))
    for i, value in enumerate(values):
        args[i] = value
    args = Ref(args)
    return probe.CallOut(target, member, kind, args, on_other_thread), args.value.tolist()


def test_attributes_are_read_called_and_set_by_name(probe, screen):
    assert call_out(probe, screen, "Name", GET)[0] == "screen"
    assert call_out(probe, screen, "NAME", METHOD)[0] == "screen"  # no exact match
    assert call_out(probe, screen, "name", GET)[0] == "lower-case twin"  # exact first
    assert call_out(probe, screen, "labels", GET, 1)[0] == "one"  # indexed
    call_out(probe, screen, "Labels", PUT, 2, "two")
    call_out(probe, screen, "NAME", PUT, "renamed")
    call_out(probe, screen, "Added", PUT, 1)
    assert (screen.Labels(2), screen.Name, screen.name, screen.Added) == ("two", "renamed", "lower-case twin", 1)
    assert isinstance(screen.GetFullPathToKai, seluvorne.Member) and isinstance(screen.Labels, seluvorne.Member)
    for member in ["NoSuchMember", "_private", "__class__"]:
        assert error_of(call_out, probe, screen, member, GET).number == 438


def test_python_exceptions_reach_the_library_and_come_back_out(probe, screen):
    args = Ref(seluvorne.Array("var", (1,)))
    error = error_of(probe.CallOut, screen, "Broken", METHOD, args)
    assert (error.number, error.source) == (440, "Screen")
    assert error.description == "Automation error ValueError: no floor 9"
    assert isinstance(error.__cause__, ValueError)
    assert args.value[0] == "touched"
    error = error_of(call_out, probe, screen, "Missing", METHOD, on_other_thread=True)
    assert (error.number, error.source, error.description) == (3021, "Screen", "No current record.")
    with pytest.raises(KeyboardInterrupt):
        call_out(probe, screen, "Interrupted", METHOD)


def test_python_threads_run_while_components_are_called_from_other_threads(probe, screen):
    # Each call waits for another C++ thread to call Python: waiting calls must let go of the GIL.
    def work(_):
        thread, left = call_out(probe, screen, "ScreenWorkAreaTwip", METHOD, 1, 2, 3, 4, on_other_thread=True)
        return thread != threading.get_ident() and left == FILLED

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert all(pool.map(work, range(4)))

