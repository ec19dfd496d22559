"""What the module tells a user: dir() and help() of a proxy from its
class's member table, and error texts that say what was wrong."""

import pydoc

import pytest

import seluvorne
from support import error_of


@pytest.mark.parametrize(
    "make, listed, help_lines",
    [
        (
            lambda: seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService"),
            {"CurrKai", "GetFileName", "OpenDB_Sitei", "FloorCompanion", "CloseDB"},
            ["CurrKai: property get, put(1)", "OpenSeluVorne: method(2)", "PageMax: property get\n"],
        ),
        (
            seluvorne.DBEngine,
            {"Workspaces", "OpenDatabase", "CreateDatabase"},
            ["Workspaces: property get(1)", "CreateDatabase: method(3)"],
        ),
    ],
    ids=["data service", "engine"],
)
def test_dir_and_help_come_from_the_member_table(floors, make, listed, help_lines):
    proxy = make()
    names = dir(proxy)
    assert listed <= set(names)
    assert {"invoke", "get", "put"} <= set(names)
    assert names.count("CurrKai") <= 1  # each member once, as declared
    shown = pydoc.render_doc(proxy, renderer=pydoc.plaintext)
    for line in help_lines:
        assert line in shown, shown


def test_a_python_component_lists_only_the_explicit_forms(component):
    component("Py.Plain", lambda: type("Plain", (), {"Name": "n"})())
    plain = seluvorne.CreateObject("Py.Plain")
    assert set(dir(plain)) == {"invoke", "get", "put"}
    assert "resolved when they are called" in plain.__doc__


# The texts of a refused argument and of an unregistered name are the dispatch
# suite's; these two are made by the stores and the engine on the way.
@pytest.mark.parametrize(
    "case, number, description",
    [
        (
            lambda service, floors, tmp: (
                floors.MakeMkDir(floors.GetFullPathToKai(1, 2, 3)),
                setattr(service, "CurZeneNo", 1),
                setattr(service, "CurKoujiNo", 2),
                setattr(service, "CurKaiNo", 3),
                service.OpenDB_Sitei(1),
            ),
            91,
            "Object variable or With block variable not set (FloorCompanion is not set)",
        ),
        (
            lambda service, floors, tmp: seluvorne.DBEngine().OpenDatabase(f"{tmp}\\missing\\SELUVORN.mdb"),
            3044,
            "'{tmp}/missing/SELUVORN.mdb' isn't a valid path.",
        ),
    ],
    ids=["91 empty property", "3044 native path"],
)
def test_error_texts_say_what_was_wrong(floors, tmp_path, case, number, description):
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    error = error_of(lambda: case(service, floors, str(tmp_path)))
    assert error.number == number
    assert error.description.startswith(description.format(tmp=tmp_path)), error.description
