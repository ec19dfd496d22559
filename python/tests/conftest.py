import pytest

import _seluvorne_probe
import seluvorne

# The C++ test component, registered once through the public registry.
seluvorne.register("SeluVorneTest.Probe", _seluvorne_probe.Probe)


@pytest.fixture
def probe():
    return seluvorne.CreateObject("SeluVorneTest.Probe")


@pytest.fixture
def component():
    """register(prog_id, factory) for the length of one test."""
    registered = []

    def register(prog_id, factory):
        seluvorne.register(prog_id, factory)
        registered.append(prog_id)

    yield register
    for prog_id in registered:
        seluvorne.unregister(prog_id)


@pytest.fixture
def floors(tmp_path, monkeypatch):
    """The floors of a scratch data root, and a fresh library; registrations stay, as a script's."""
    monkeypatch.setenv("SELUVORNE_SETTINGS", str(tmp_path / "no-settings.json"))
    seluvorne.register_standalone(str(tmp_path))
    seluvorne.restart()
    yield seluvorne.CreateObject("FolderKit.clsFloorDirs")
    seluvorne.restart()
