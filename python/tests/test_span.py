"""A beam page loaded into the span model and asked by name from Python."""

import pytest

import seluvorne
from support import error_of


@pytest.fixture
def service(tmp_path, monkeypatch):
    """A data service on a new floor of a scratch data root."""
    monkeypatch.setenv("SELUVORNE_SETTINGS", str(tmp_path / "no-settings.json"))
    seluvorne.register_standalone(str(tmp_path))
    seluvorne.restart()
    floors = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurrKai = floors.GetFullPathToKai(1, 1, 1)
    yield service
    service.CloseDB()
    seluvorne.restart()


def write_page(db, page, spans, half_width=200):
    """KUTAIDATA of a page: `spans` lengths on columns `half_width` each side of their centre."""
    rows = db.OpenRecordset("KUTAIDATA")
    codes = []
    for column in range(len(spans) + 1):
        codes += [(4 * column + 1, half_width), (4 * column + 2, half_width)]
    codes += [(4 * span + 3, length) for span, length in enumerate(spans)]
    codes += [(81, "2G1"), (85, "2G2/2G3")]
    for bangou, data in codes:
        rows.AddNew()
        for field, value in (("PAGE", page), ("SUBPAGE", 0), ("BANGOU", bangou), ("DATA", str(data))):
            rows.Fields(field).Value = value
        rows.Update()
    rows.Close()


def test_a_loaded_page_answers_its_geometry_by_name(service):
    write_page(service.KutaiDb, 3, [6000, 5000])
    assert service.InitKutaiData(3) == 2
    assert [service.isInSpan(x) for x in (0.0, 6200.0, 20000.0)] == [0, 1, 1]
    assert [service.isInOrNearHasira(x, 20.0) for x in (5990.0, 3000.0)] == [1, -1]
    assert service.GetSpanUtinoriKyori(0) == 5600.0
    left, right = seluvorne.Ref(0.0), seluvorne.Ref(0.0)
    assert service.GetHasiraLR(1, left, right) is True
    assert (left.value, right.value) == (6000.0, 6400.0)
    first, last = seluvorne.Ref(0), seluvorne.Ref(0)
    assert service.GetSpanTokutyou(100.0, 11000.0, first, last) == "00040:00560:00040:00460:00040"
    assert (first.value, last.value) == (0, 1)
    sections = seluvorne.Ref(seluvorne.Array("i2", (3,)))
    service.GetDanmenBangou(1, sections)
    assert sections.value.tolist() == [2, 1, 0]  # an unlisted beam whose name holds "/"
    assert service.GetHariMei(1) == "2G2/2G3" and service.GetHariMei(2) == ""


def test_bad_arguments_and_the_empty_model(service):
    assert service.GetTeityakuBanHidari_Hontai(0, 4) == ""  # never loaded: the guards answer
    assert service.GetHenkatenKyori(0, 0) == 0.0
    assert error_of(lambda: service.GetHasiraHaba("left")).number == 13
    assert error_of(lambda: service.GetHasiraHaba(100)).number == 9
    assert error_of(lambda: service.GetNigeHidari_Hontai(0, 32767)).number == 6
    assert error_of(lambda: service.GetDanmenBangou(0, seluvorne.Ref(1))).number == 13
