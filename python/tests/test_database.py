"""The database engine from Python: the README's script, and handles by name."""

import seluvorne
from support import error_of


def test_create_add_and_read_back(tmp_path):
    engine = seluvorne.DBEngine()
    assert engine == seluvorne.CreateObject("DAO.DBEngine.36")  # one shared engine
    path = str(tmp_path / "SELUVORN.mdb")
    db = engine.Workspaces(0).CreateDatabase(path, ";LANGID=0x0411;CP=932;COUNTRY=0")
    table = db.CreateTableDef("KUTAIDATA")
    for name, field_type, size in [("PAGE", 3, 0), ("SUBPAGE", 3, 0), ("DATA", 10, 200)]:
        table.Fields.Append(table.CreateField(name, field_type, size))
    table.Fields("SUBPAGE").DefaultValue = "-1"
    db.TableDefs.Append(table)
    rs = db.OpenRecordset("KUTAIDATA", 2)
    for data in ["Y1", "300", "通り"]:
        rs.AddNew()
        rs.Fields("PAGE").Value = 3
        rs.Fields("DATA").Value = data
        rs.Update()
    rs.Close()
    db.Close()

    db = engine.OpenDatabase(path)
    assert db.TableDefs(0).Name.startswith("MSys")  # the engine's catalogue comes first
    assert db.TableDefs("KUTAIDATA").Fields.Count == 3
    rs = db.OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", 4)
    assert (rs.Fields("DATA")(), rs.Fields(1).Value) == ("Y1", -1)  # SUBPAGE never set: its default
    rows = rs.GetRows(10)
    assert rows.ubound(1) == 2 and rows.ubound(2) == 2  # (field, row)
    assert [rows[2, r] for r in range(3)] == ["Y1", "300", "通り"]
    assert rs.EOF
    assert error_of(lambda: rs.Fields("DATA").Value).number == 3021
    db.Close()
    assert error_of(engine.OpenDatabase, str(tmp_path / "missing.mdb")).number == 3024
