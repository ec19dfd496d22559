"""The database engine from Python: the README's script, and handles by name."""

import pytest

import seluvorne

JAPANESE = ";LANGID=0x0411;CP=932;COUNTRY=0"


def make_table(db, name, fields):
    table = db.CreateTableDef(name)
    for field_name, field_type, size in fields:
        field = table.CreateField(field_name, field_type, size)
        if field_type == 3:
            field.DefaultValue = "-1"
        else:
            field.AllowZeroLength = True
        table.Fields.Append(field)
    db.TableDefs.Append(table)


def test_create_add_and_read_back(tmp_path):
    engine = seluvorne.DBEngine()
    assert engine == seluvorne.CreateObject("DAO.DBEngine.36")  # one shared engine
    path = str(tmp_path / "SELUVORN.mdb")
    db = engine.Workspaces(0).CreateDatabase(path, JAPANESE)
    make_table(db, "KUTAIDATA", [("PAGE", 3, 0), ("SUBPAGE", 3, 0), ("BANGOU", 3, 0), ("DATA", 10, 200)])

    rs = db.OpenRecordset("KUTAIDATA", 2)
    for bangou, data in enumerate(["Y1", "300", "", "通り"]):
        rs.AddNew()
        rs.Fields("PAGE").Value = 3
        rs.Fields("BANGOU").Value = bangou
        rs.Fields("DATA").Value = data
        rs.Update()
    rs.Close()
    db.Close()

    db = engine.OpenDatabase(path)
    assert db.TableDefs(0).Name.startswith("MSys")  # the engine's catalogue comes first
    assert db.TableDefs("KUTAIDATA").Fields.Count == 4
    rs = db.OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", 4)
    assert rs.RecordCount == 1  # rows visited so far
    rs.MoveLast()
    assert rs.RecordCount == 4
    rs.MoveFirst()
    rows = rs.GetRows(10)
    assert rows.ubound(1) == 3 and rows.ubound(2) == 3  # (field, row)
    assert [rows[3, r] for r in range(4)] == ["Y1", "300", "", "通り"]
    assert rows[1, 0] == -1  # SUBPAGE was never set: its default
    assert rs.EOF
    with pytest.raises(seluvorne.Error) as raised:
        rs.Fields("DATA").Value
    assert raised.value.number == 3021
    db.Close()


def test_engine_errors_reach_python(tmp_path):
    engine = seluvorne.DBEngine()
    with pytest.raises(seluvorne.Error) as raised:
        engine.OpenDatabase(str(tmp_path / "missing.mdb"))
    assert raised.value.number == 3024
    db = engine.Workspaces(0).CreateDatabase(str(tmp_path / "a.mdb"), JAPANESE)
    make_table(db, "T", [("PAGE", 3, 0)])
    with pytest.raises(seluvorne.Error) as raised:
        db.Execute("DELETE FORM T;", 128)
    assert raised.value.number == 3131
    rs = db.OpenRecordset("T", 2)
    rs.AddNew()
    rs.Fields("PAGE").Value = 40000
    with pytest.raises(seluvorne.Error) as raised:
        rs.Update()
    assert raised.value.number == 3349
    db.Close()
