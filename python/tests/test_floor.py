"""A floor and its build-out store, made and opened by name from Python with
the standalone components."""

import seluvorne
from support import error_of




def test_a_floor_is_created_by_its_numbers_written_and_opened(floors):
    floors.MakeMkDir(floors.GetFullPathToKai(1, 2, 3))
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurZeneNo, service.CurKoujiNo, service.CurKaiNo = 1, 2, 3
    assert service.OpenDB_Sitei(0) is False  # not made yet
    service.FloorCompanion = seluvorne.CreateObject(seluvorne.FLOOR_COMPANION)
    assert service.OpenDB_Sitei(1) is True
    rows = service.KutaiDb.OpenRecordset("TOORIMEI")
    rows.AddNew()
    rows.Fields("PAGE").Value = 0
    rows.Fields("TOORI").Value = "X1"
    rows.Update()
    service.CloseDB()

    reader = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    reader.CurrKai = floors.GetFullPathToKai(1, 2, 3)  # opens the floor's SELUVORN.mdb
    found = reader.KutaiDb.OpenRecordset("SELECT * FROM TOORIMEI WHERE PAGE = 0;")
    assert (found.Fields("TOORI").Value, found.Fields("KASYO").Value) == ("X1", None)  # Null gives None
    reader.CloseDB()
    assert error_of(lambda: reader.KutaiDb.TableDefs).number == 3420  # the closed handle stays


def test_the_build_out_store_writes_and_copies_a_page(floors):
    source, destination = floors.GetFullPathToKai(1, 1, 1), floors.GetFullPathToKai(1, 1, 2)
    floors.MakeMkDir(source)
    floors.MakeMkDir(destination)
    store = seluvorne.CreateObject("SeluVorneDS.clsHariFukasiDS")
    assert store.WriteDB_Open(source) is True
    store.Page, store.Span, store.Iti, store.Syurui = 2, 0, 1, 5
    store.Atusa = "150"
    assert store.Atusa == "150" and isinstance(store.StpKei, seluvorne.Member) and store.StpKei(1) == ""
    store.CloseDB()
    assert error_of(store.CloseDB).number == 91

    assert store.No_Copy1Page(1, 1, 1, 2, 1, 1, 2, 9) is True
    copied = seluvorne.DBEngine().OpenDatabase(destination + "\\HARIFUKA.mdb")
    rows = copied.OpenRecordset("SELECT * FROM KUTAIDATA;", 4)
    assert rows.GetRows(10).tolist() == [[9], [0], [1], [5], [19], ["150"]]  # (field, row)
    copied.Close()


def test_the_page_directory_by_name(floors, tmp_path, monkeypatch):
    settings = tmp_path / "settings.json"
    settings.write_text('{"currentFloor": {"zenekonNo": 1, "koujiNo": 2, "kaiNo": 3}}')
    monkeypatch.setenv("SELUVORNE_SETTINGS", str(settings))
    seluvorne.restart()
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    assert service.AllPages2 == "*"  # the current floor is made on the way
    rows = service.KutaiDb.OpenRecordset("TOORIMEI")
    for page, name in ((0, " X1 "), (9, ""), (122, "Y3")):
        rows.AddNew()
        rows.Fields("PAGE").Value = page
        rows.Fields("TOORI").Value = name
        rows.Update()

    assert service.AllPages2 == "*001010123"
    assert service.AllPages == "*001010123"  # no kind rows: kind 0, the girders' kind
    pages = seluvorne.Array("i2", (1,))
    folder = floors.GetFullPathToKai(1, 2, 3)
    out = seluvorne.Ref(pages)
    assert service.GetAllPages(folder, out) == 2 and out.value.tolist() == [0, 9, 122]
    page = seluvorne.Ref(9)
    assert service.GetKindByPage(page) == 0 and page.value == -99
    assert service.GetToorimeiByPage(0) == "X1" and service.GetKasyosuuByPage(5) == ""
    assert service.No_IsThereHari(1, 2, 3) is True
    assert service.No_IsThereHari(1, 2, 4) is False
