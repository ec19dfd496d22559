"""A beam page loaded into the span model and asked by name from Python: the
by-reference results of the service's own members (the values themselves are
the C++ suite's)."""

import seluvorne
from support import error_of


def test_a_loaded_page_answers_through_references(floors):
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurrKai = floors.GetFullPathToKai(1, 1, 1)
    rows = service.KutaiDb.OpenRecordset("KUTAIDATA")
    codes = [(b, 200) for b in (1, 2, 5, 6, 9, 10)] + [(3, 6000), (7, 5000), (81, "2G1"), (85, "2G2/2G3")]
    for bangou, data in codes:
        rows.AddNew()
        for field, value in (("PAGE", 3), ("SUBPAGE", 0), ("BANGOU", bangou), ("DATA", str(data))):
            rows.Fields(field).Value = value
        rows.Update()
    rows.Close()
    assert service.InitKutaiData(3) == 2
    left, right = seluvorne.Ref(0.0), seluvorne.Ref(0.0)
    assert service.GetHasiraLR(1, left, right) is True and (left.value, right.value) == (6000.0, 6400.0)
    sections = seluvorne.Ref(seluvorne.Array("i2", (3,)))
    service.GetDanmenBangou(1, sections)
    assert sections.value.tolist() == [2, 1, 0]  # an unlisted beam whose name holds "/"
    assert error_of(lambda: service.GetDanmenBangou(0, seluvorne.Ref(1))).number == 13
    service.CloseDB()
