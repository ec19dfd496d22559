"""A page written from a script through the page writers and copied to
another floor with a progress object written in Python."""

import seluvorne
from support import error_of




class Progress:
    def __init__(self):
        self.values = []

    def __setattr__(self, name, value):
        if name in ("Min", "Max", "Value"):
            self.values.append((name, value))
        object.__setattr__(self, name, value)


def rows(service, table, page):
    found, rs = [], service.KutaiDb.OpenRecordset(f"SELECT * FROM {table} WHERE PAGE = {page};", 4)
    while not rs.EOF:
        found.append(tuple(rs.Fields(i).Value for i in range(1, rs.Fields.Count)))
        rs.MoveNext()
    rs.Close()
    return sorted(found)


def test_a_page_written_from_a_script_is_copied_to_another_floor(floors):
    source, destination = floors.GetFullPathToKai(1, 2, 3), floors.GetFullPathToKai(1, 2, 4)
    floors.MakeMkDir(source)
    floors.MakeMkDir(destination)
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.WriteOpen(source)
    hanti = seluvorne.Array("str", (80, 5))
    hanti[0, 0], hanti[1, 4] = " 300 ", "450"
    top = seluvorne.Array("str", (20, 1))
    top[0, 0] = ",".join(str(k) for k in range(24))
    service.Write_Hanti(2, hanti)
    service.Write_Top(2, top)
    service.Write_TooriMei(2, "X1通り", "2")
    assert error_of(lambda: service.Write_Hanti(2, "no array")).number == 13

    progress = Progress()
    service.CopyMergeBar = progress
    moto, saki = seluvorne.Array("i2", (1,)), seluvorne.Array("i2", (1,))
    moto[0], saki[0] = 2, 7
    message = seluvorne.Ref("")
    assert service.No_PageCopyNo(1, 0, message, 1, 2, 3, moto, 0, 1, 2, 4, saki) is True
    assert message.value == ""
    assert progress.values == [("Min", 0), ("Max", 1), ("Value", 0)] * 2 + [("Value", 1)]

    copy = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    copy.CurrKai = destination
    # the source page has 400 HANTI rows; the copy drops those without a value
    assert rows(copy, "HANTI", 7) == [(0, 0, "300"), (4, 1, "450")]
    assert (0, 0, 23, "23") in rows(copy, "SPANTOP", 7)
    assert rows(copy, "TOORIMEI", 7) == [("X1通り", "2")]

    moto[0] = 500
    assert service.No_PageCopyNo(1, 0, message, 1, 2, 3, moto, 0, 1, 2, 4, saki) is False
    assert message.value == "ページの最大数を超えます。"
