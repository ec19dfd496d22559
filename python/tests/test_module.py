"""The module as a whole: restart, and the type stubs."""

import ast
import pathlib

import seluvorne


def test_restart_keeps_registrations_and_objects(probe, component):
    component("Py.Kept", lambda: type("Kept", (), {"Name": "kept"})())
    seluvorne.restart()
    assert seluvorne.CreateObject("Py.Kept").Name == "kept"
    assert probe.Echo(1) == 1
    seluvorne.restart()
    assert seluvorne.CreateObject("SeluVorneTest.Probe").Me() is not None


def test_the_stubs_describe_the_module():
    package = pathlib.Path(seluvorne.__file__).parent
    assert (package / "py.typed").exists()
    stubs = ast.parse((package / "__init__.pyi").read_text())
    classes = {node.name: node for node in stubs.body if isinstance(node, ast.ClassDef)}
    functions = {node.name for node in stubs.body if isinstance(node, ast.FunctionDef)}
    constants = {node.target.id for node in stubs.body if isinstance(node, ast.AnnAssign)}
    assert set(classes) | functions | constants == set(seluvorne.__all__)
    for name, node in classes.items():
        if name == "Error":  # its attributes are set on each instance
            continue
        stubbed = {item.name for item in node.body if isinstance(item, ast.FunctionDef)}
        stubbed |= {item.target.id for item in node.body if isinstance(item, ast.AnnAssign)}
        actual = {member for member in dir(getattr(seluvorne, name)) if not member.startswith("_")}
        assert {member for member in stubbed if not member.startswith("_")} == actual, name
