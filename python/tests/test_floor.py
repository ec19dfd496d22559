"""A floor made and opened by name from Python, with the standalone components."""

import pytest

import seluvorne

# Every identifier register_standalone registers, so each test can leave the
# registry as it found it.
STANDALONE = [
    "FolderKit.clsFloorDirs", "FolderKit.clsExistProbe", "PresetStore.clsPresets",
    "BeamRoster.clsRoster", "ThroughBarStore.clsThroughBars", "FolderKit.clsWindowPlacer",
    "DisplayMetrics.clsMetrics", "StepGuide.clsStepGuide", "ProofScope.clsScopeKit",
    "ProofScope.clsScopeExporter", "ProofPanel.clsPresenter", "ProofScopeRunner.clsLaunch",
    "ExtraBarStore.clsExtraBars", "BeamSolver.clsSolverRecords", seluvorne.FLOOR_COMPANION,
]


@pytest.fixture
def data_root(tmp_path, monkeypatch):
    """A data root with the standalone components, and a fresh library."""
    monkeypatch.setenv("SELUVORNE_SETTINGS", str(tmp_path / "no-settings.json"))
    root = tmp_path / "beams"
    root.mkdir()
    seluvorne.register_standalone(str(root))
    seluvorne.restart()
    yield root
    for prog_id in STANDALONE:
        seluvorne.unregister(prog_id)
    seluvorne.restart()


def user_tables(db):
    names = [db.TableDefs(i).Name for i in range(db.TableDefs.Count)]
    return [name for name in names if not name.startswith("MSys")]


def test_a_floor_is_created_written_and_opened_by_its_numbers(data_root):
    floors = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    floor = floors.GetFullPathToKai(1, 2, 3)  # '<root>\Zene1\Kouji2\3kai'

    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurrKai = floor  # creates the folder and SELUVORN.mdb, and opens it
    db = service.KutaiDb
    assert user_tables(db) == [
        "TOORIMEI", "KUTAIDATA", "ANKANIGE", "RSITEI", "STPGENSUN", "STPJOUGEGENSUN",
        "SITAKINANKASETUDAN", "HANTI", "HENKATEN", "SPANTOP", "SPANTANJOIL"]
    rows = db.OpenRecordset("TOORIMEI")
    rows.AddNew()
    rows.Fields("PAGE").Value = 0
    rows.Fields("TOORI").Value = "X1"
    rows.Update()
    service.CloseDB()

    reader = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    reader.CurZeneNo, reader.CurKoujiNo, reader.CurKaiNo = 1, 2, 3
    assert reader.OpenDB_Sitei(0) is True
    found = reader.KutaiDb.OpenRecordset("SELECT * FROM TOORIMEI WHERE PAGE = 0;")
    assert (found.Fields("TOORI").Value, found.Fields("KASYO").Value) == ("X1", None)
    reader.CloseDB()
    with pytest.raises(seluvorne.Error) as raised:
        reader.KutaiDb.TableDefs
    assert raised.value.number == 3420  # the closed handle stays behind


def test_a_new_floor_by_numbers_needs_the_hosts_companion(data_root):
    floors = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    floors.MakeMkDir(floors.GetFullPathToKai(2, 1, 1))
    folder = data_root / "Zene2" / "Kouji1" / "1kai"

    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurZeneNo, service.CurKoujiNo, service.CurKaiNo = 2, 1, 1
    assert service.OpenDB_Sitei(0) is False
    assert not any(folder.iterdir())
    with pytest.raises(seluvorne.Error) as raised:
        service.OpenDB_Sitei(1)
    assert raised.value.number == 91  # no companion given: after both files are made
    assert sorted(p.name for p in folder.iterdir()) == ["HARIFUKA.mdb", "SELUVORN.mdb"]

    (folder / "SELUVORN.mdb").unlink()
    service.FloorCompanion = seluvorne.CreateObject(seluvorne.FLOOR_COMPANION)
    assert service.OpenDB_Sitei(1) is True
    assert user_tables(service.KutaiDb)[-1] == "SPANTOP"


def test_switch_rows_and_the_through_bar_value_follow_a_page_copy(data_root):
    floors = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    source = floors.GetFullPathToKai(1, 1, 1)
    floors.MakeMkDir(source)
    floors.MakeMkDir(floors.GetFullPathToKai(1, 1, 2))
    bars = seluvorne.CreateObject("ThroughBarStore.clsThroughBars")
    bars.SetPathPutHikiToosiSW(source + "\\Hollenbar.Dat", 4, seluvorne.Ref(True))

    switches = seluvorne.CreateObject("SeluVorneDS.clsHariSWDS")
    assert switches.No_Copy1Page(1, 1, 1, 4, 1, 1, 2, 0) is True
    copier = seluvorne.CreateObject("SeluVorneDS.clsHikiCopyDS")
    assert copier.No_Copy1Page(1, 1, 1, 4, 1, 1, 2, 0) is False

    target = floors.GetFullPathToKai(1, 1, 2)
    assert bars.SetPathGetHikiToosiSW(target + "\\Hollenbar.Dat", 0) is True
    assert (data_root / "Zene1" / "Kouji1" / "2kai" / "SeluVorneSW.MDB").exists()
