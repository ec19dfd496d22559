"""Components written in Python, called from C++ through the registry."""

import threading

import pytest

import seluvorne
from seluvorne import Ref

METHOD, GET, PUT = 0, 1, 2


def arguments(*values):
    """The argument list the probe passes by reference, as a "var" array."""
    array = seluvorne.Array("var", (len(values),))
    for i, value in enumerate(values):
        array[i] = value
    return array


def call_out(probe, target, member, kind, *values, on_other_thread=False):
    """Has the probe call `member` from C++; answers the result and the
    arguments as the callee left them."""
    args = Ref(arguments(*values))
    result = probe.CallOut(target, member, kind, args, on_other_thread)
    return result, args.value.tolist()


class Screen:
    Name = "screen"
    name = "lower-case twin"

    def __init__(self):
        self.threads = []
        self.Labels = {1: "one"}

    def ScreenWorkAreaTwip(self, left: Ref, top: Ref, width: Ref, height: Ref):
        self.threads.append(threading.get_ident())
        left.value, top.value, width.value, height.value = 0, 0, 28800, 2**20
        return True

    def GetFullPathToKai(self, ZeneNo: Ref, KoujiNo: Ref, KaiNo: "Ref"):
        return f"\\Zene{ZeneNo.value}\\Kouji{KoujiNo.value}\\{KaiNo.value}kai"

    def Plain(self, value):
        value = 99  # a plain parameter: nothing goes back
        return value

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
    made = []

    def factory():
        made.append(Screen())
        return made[-1]

    component("Py.Screen", factory)
    return made


def test_by_reference_parameters_are_filled(probe, screen):
    result, left = call_out(probe, "Py.Screen", "ScreenWorkAreaTwip", METHOD, 1, 2, 3, 4)
    assert result is True
    assert left == [0, 0, 28800, 2**20]


def test_by_reference_parameters_that_are_only_read(probe, screen):
    result, left = call_out(probe, "Py.Screen", "GetFullPathToKai", METHOD, 1, 2, 3)
    assert result == "\\Zene1\\Kouji2\\3kai"
    assert left == [1, 2, 3]


def test_plain_and_variadic_parameters(probe, screen):
    assert call_out(probe, "Py.Screen", "Plain", METHOD, 5) == (99, [5])
    assert call_out(probe, "Py.Screen", "Total", METHOD, 1, "ab", 2.5) == (3, [2, "abab", 5.0])


def test_attributes_are_read_called_and_set_by_name(probe, screen):
    assert call_out(probe, "Py.Screen", "Name", GET)[0] == "screen"
    assert call_out(probe, "Py.Screen", "NAME", METHOD)[0] == "screen"  # no exact match
    assert call_out(probe, "Py.Screen", "name", GET)[0] == "lower-case twin"  # exact first
    assert call_out(probe, "Py.Screen", "labels", GET, 1)[0] == "one"  # indexed
    call_out(probe, "Py.Screen", "Labels", PUT, 2, "two")
    assert screen[-1].Labels == {1: "one", 2: "two"}

    target = Screen()
    call_out(probe, target, "NAME", PUT, "renamed")  # a Python object passed as an Object
    assert target.Name == "renamed" and target.name == "lower-case twin"
    call_out(probe, target, "Added", PUT, 1)
    assert target.Added == 1


@pytest.mark.parametrize("member", ["NoSuchMember", "_private", "__class__"])
def test_unknown_and_private_names_raise_438(probe, screen, member):
    with pytest.raises(seluvorne.Error) as raised:
        call_out(probe, "Py.Screen", member, GET)
    assert raised.value.number == 438


def test_a_python_exception_reaches_the_library_as_440(probe, screen):
    args = Ref(arguments(None))
    with pytest.raises(seluvorne.Error) as raised:
        probe.CallOut("Py.Screen", "Broken", METHOD, args)
    error = raised.value
    assert error.number == 440
    assert error.source == "Screen"
    assert error.description == "Automation error ValueError: no floor 9"
    assert isinstance(error.__cause__, ValueError)
    assert args.value[0] == "touched"


def test_a_seluvorne_error_keeps_its_number(probe, screen):
    with pytest.raises(seluvorne.Error) as raised:
        call_out(probe, "Py.Screen", "Missing", METHOD)
    error = raised.value
    assert (error.number, error.source, error.description) == (3021, "Screen", "No current record.")
    assert isinstance(error.__cause__, seluvorne.Error)


def test_an_interrupt_is_not_turned_into_an_error(probe, screen):
    with pytest.raises(KeyboardInterrupt):
        call_out(probe, "Py.Screen", "Interrupted", METHOD)


def test_components_are_called_from_other_threads(probe, screen):
    result, left = call_out(probe, "Py.Screen", "ScreenWorkAreaTwip", METHOD, 1, 2, 3, 4,
                            on_other_thread=True)
    assert result is True and left == [0, 0, 28800, 2**20]
    assert screen[-1].threads[0] != threading.get_ident()
    with pytest.raises(seluvorne.Error) as raised:
        call_out(probe, "Py.Screen", "Missing", METHOD, on_other_thread=True)
    assert raised.value.number == 3021


def test_python_threads_run_while_the_library_does(probe, screen):
    # Each Python thread's call into the probe calls back into Python from
    # another C++ thread; that only finishes if every waiting call has let go
    # of the GIL.
    results = []

    def work(n):
        path, _ = call_out(probe, "Py.Screen", "GetFullPathToKai", METHOD, 1, 2, n,
                           on_other_thread=True)
        results.append(path)

    workers = [threading.Thread(target=work, args=(n,)) for n in range(4)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    assert sorted(results) == [f"\\Zene1\\Kouji2\\{n}kai" for n in range(4)]


def test_a_proxy_over_a_python_component(screen):
    proxy = seluvorne.CreateObject("PY.SCREEN")
    assert proxy.Name == "screen" and proxy.NAME == "screen"
    assert isinstance(proxy.GetFullPathToKai, seluvorne.Member)
    assert proxy.Labels(1) == "one"
    kai = Ref(3)
    assert proxy.GetFullPathToKai(Ref(1), 2, kai) == "\\Zene1\\Kouji2\\3kai"
    left = [Ref(0) for _ in range(4)]
    proxy.ScreenWorkAreaTwip(*left)
    assert [ref.value for ref in left] == [0, 0, 28800, 2**20]


def test_registration(component):
    component("Py.Nothing", lambda: None)
    component("Py.Failing", lambda: 1 / 0)
    component("Py.Number", lambda: 5)
    for prog_id, number in [("Py.Nothing", 429), ("Py.Failing", 440), ("Py.Number", 13)]:
        with pytest.raises(seluvorne.Error) as raised:
            seluvorne.CreateObject(prog_id)
        assert raised.value.number == number
    with pytest.raises(seluvorne.Error) as raised:
        seluvorne.register("Py.Bad", "not callable")
    assert raised.value.number == 5

    component("Py.Screen", Screen)
    assert seluvorne.unregister("py.screen") is True
    assert seluvorne.unregister("Py.Screen") is False
    with pytest.raises(seluvorne.Error) as raised:
        seluvorne.CreateObject("Py.Screen")
    assert raised.value.number == 429
