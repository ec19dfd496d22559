"""The module as a whole: restart, and the type stubs."""

import ast
import pathlib

import seluvorne


def test_restart_keeps_registrations_and_objects(probe, component):
    component("Py.Kept", lambda: type("Kept", (), {"Name": "kept"})())
    seluvorne.restart()
    assert seluvorne.CreateObject("Py.Kept").Name == "kept"
    assert probe.Echo(1) == 1


def public(body):
    """The public names a stub body declares."""
    declared = [node for node in body if isinstance(node, (ast.ClassDef, ast.FunctionDef, ast.AnnAssign))]
    names = {getattr(node, "name", None) or node.target.id for node in declared}
    return {name for name in names if not name.startswith("_")}


def test_the_stubs_describe_the_module():
    package = pathlib.Path(seluvorne.__file__).parent
    assert (package / "py.typed").exists()
    stubs = ast.parse((package / "__init__.pyi").read_text()).body
    assert public(stubs) == set(seluvorne.__all__)
    for node in stubs:
        if isinstance(node, ast.ClassDef) and node.name != "Error":  # its attributes are set per instance
            actual = {member for member in dir(getattr(seluvorne, node.name)) if not member.startswith("_")}
            assert public(node.body) == actual, node.name
