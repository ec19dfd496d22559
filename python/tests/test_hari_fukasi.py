"""clsHariFukasiDS driven by name from Python, as a client of the suite drives
it: the floor services are Python components over a scratch folder."""

import os

import pytest

import seluvorne
from seluvorne import Ref


def native(path):
    return path.replace("\\", "/")


class FloorDirs:
    """Floors as root\\Zene<z>\\Kouji<k>\\<n>kai; the current floor is 1, 1, 1."""

    def __init__(self, root):
        self.root = root
        self.CurrFloor = self.GetFullPathToKai(1, 1, 1)

    def GetFullPathToKai(self, zene, kouji, kai):
        return f"{self.root}\\Zene{zene}\\Kouji{kouji}\\{kai}kai"

    def MakeMkDir(self, folder):
        os.makedirs(native(folder))


class ExistProbe:
    def Find_FileExists(self, path, kind=0):
        path = native(path)
        found = os.path.isdir(path) if kind == 16 else os.path.isfile(path)
        return os.path.basename(path) if found else ""


class Presets:
    def GetHariDefault(self, key):
        return "1" if key == "KutaiMaxPage" else ""


@pytest.fixture
def floors(tmp_path, component):
    dirs = FloorDirs(str(tmp_path))
    component("FolderKit.clsFloorDirs", lambda: dirs)
    component("FolderKit.clsExistProbe", ExistProbe)
    component("PresetStore.clsPresets", Presets)
    seluvorne.restart()  # the start routine runs with these at the next creation
    yield dirs
    seluvorne.restart()


def rows_of(path):
    database = seluvorne.DBEngine().OpenDatabase(path)
    rows = database.OpenRecordset("SELECT * FROM KUTAIDATA;", 4)
    found = []
    while not rows.EOF:
        found.append(tuple(rows.Fields(i).Value for i in range(6)))
        rows.MoveNext()
    database.Close()
    return found


def test_values_at_a_key_and_a_page_copied_through_its_array(floors):
    store = seluvorne.CreateObject("SeluVorneDS.clsHariFukasiDS")
    assert store.PageMax == 499
    assert store.WriteDB_Open("") is True  # the current floor, made on the way
    assert store.Path == floors.CurrFloor

    store.Page, store.Span, store.Iti, store.Syurui = 0, 1, store.ItiNoUe, 0
    store.Kigou = "F1"
    store.put("StpKei", 1, "D13")
    assert (store.Kigou, store.StpKei(1), store.StpKei(0)) == ("F1", "D13", "")
    assert store.ItiName(store.Iti) == "上" and store.ItiName(4) == ""
    assert store.isYuukou() is True

    page = Ref(None)
    assert store.GetRecordPage(page) is True
    assert (page.value.ubound(1), page.value.ubound(2)) == (5, 1)
    store.UpdatePage(page, 3)
    assert store.CopyRecordPage(page.value) is True
    store.Page = 3
    assert store.Kigou == "F1"

    order = Ref(None)
    store.GetLoopHairetu(order)
    assert order.value.tolist() == [2, 0, 1, 3]


def test_record_sets_by_reference_and_errors_with_their_numbers(floors):
    store = seluvorne.CreateObject("SeluVorneDS.clsHariFukasiDS")
    store.Path = floors.CurrFloor
    store.Page = 0
    store.Haba = "300"
    found = Ref(None)
    assert store.GetRecordAll(found) is True
    assert found.value.Fields("DATA").Value == "300"
    assert store.CopyRecordIti(found) is True  # copies nothing, closes the set
    with pytest.raises(seluvorne.Error) as closed:
        found.value.MoveNext()
    assert closed.value.number == 3420

    with pytest.raises(seluvorne.Error) as bad:
        store.Iti = 7
        store.Haba = "400"
    assert bad.value.number == 5
    store.CloseDB()
    with pytest.raises(seluvorne.Error) as no_database:
        store.CloseDB()
    assert no_database.value.number == 91


def test_one_page_copied_to_another_floor(floors):
    store = seluvorne.CreateObject("SeluVorneDS.clsHariFukasiDS")
    store.WriteDB_Open("")
    store.Page, store.Span, store.Iti, store.Syurui = 2, 0, 1, 5
    store.Atusa = "150"
    store.CloseDB()
    destination = floors.GetFullPathToKai(1, 1, 2)
    os.makedirs(native(destination))

    assert store.No_Copy1Page(1, 1, 1, 2, 1, 1, 2, 9) is True
    assert rows_of(destination + "\\HARIFUKA.mdb") == [(9, 0, 1, 5, 19, "150")]
    assert store.No_Copy1Page(1, 1, 1, 4, 1, 1, 2, 9) is False  # no page 4: nothing changes
    assert rows_of(destination + "\\HARIFUKA.mdb") == [(9, 0, 1, 5, 19, "150")]
