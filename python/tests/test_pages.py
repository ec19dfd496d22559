"""A page copied to another floor from a script, reporting to a progress
object written in Python (the rows copied are the C++ suite's)."""

import seluvorne
from support import error_of


class Progress:
    def __init__(self):
        self.values = []

    def __setattr__(self, name, value):
        if name in ("Min", "Max", "Value"):
            self.values.append((name, value))
        object.__setattr__(self, name, value)


def test_a_page_written_from_a_script_is_copied_to_another_floor(floors):
    source, destination = floors.GetFullPathToKai(1, 2, 3), floors.GetFullPathToKai(1, 2, 4)
    floors.MakeMkDir(source)
    floors.MakeMkDir(destination)
    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.WriteOpen(source)
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
    names = copy.KutaiDb.OpenRecordset("SELECT TOORI, KASYO FROM TOORIMEI WHERE PAGE = 7;", 4).GetRows(9)
    assert names.tolist() == [["X1通り"], ["2"]]

    moto[0] = 500
    assert service.No_PageCopyNo(1, 0, message, 1, 2, 3, moto, 0, 1, 2, 4, saki) is False
    assert message.value == "ページの最大数を超えます。"
