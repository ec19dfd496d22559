"""A floor and its build-out store, made and opened by name from Python with
the standalone components (what the stores answer is the C++ suite's)."""

import seluvorne
from support import error_of


def test_a_floor_is_created_by_its_numbers_written_and_opened(floors):
    floors.MakeMkDir(floors.GetFullPathToKai(1, 2, 3))
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurZeneNo, service.CurKoujiNo, service.CurKaiNo = 1, 2, 3
    assert service.OpenDB_Sitei(0) is False  # not made yet
    service.FloorCompanion = seluvorne.CreateObject(seluvorne.FLOOR_COMPANION)
    assert service.OpenDB_Sitei(1) is True
    service.KutaiDb.Execute("INSERT INTO TOORIMEI (PAGE, TOORI) VALUES (0, 'X1');")
    service.CloseDB()

    reader = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    reader.CurrKai = floors.GetFullPathToKai(1, 2, 3)  # opens the floor's SELUVORN.mdb
    found = reader.KutaiDb.OpenRecordset("SELECT * FROM TOORIMEI WHERE PAGE = 0;")
    assert (found.Fields("TOORI").Value, found.Fields("KASYO").Value) == ("X1", None)  # Null gives None
    pages = seluvorne.Ref(seluvorne.Array("i2", (1,)))
    assert reader.GetAllPages(reader.CurrKai, pages) == 0 and pages.value.tolist() == [0]
    page = seluvorne.Ref(0)
    assert reader.GetKindByPage(page) == 0 and page.value == -99
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
