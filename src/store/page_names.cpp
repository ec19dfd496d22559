// The pages of a floor given by its numbers, with their grid-line names.

#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

std::int16_t clsSeluVorneDataService::No_GetAllPageNoName(std::int16_t ZeneNo, std::int16_t KoujiNo,
                                                          std::int16_t KaiNo,
                                                          vb::Array<std::int16_t>& rPageNo,
                                                          vb::Array<std::string>& rPageName) {
  // The floor stays open between calls; it is opened again for other numbers,
  // and when another member has closed it meanwhile (a page copy does). A
  // current number of -1 (a new object, a failed open) answers -1 unlooked.
  const bool same_floor = ZeneNo == CurZeneNo && KoujiNo == CurKoujiNo && KaiNo == CurKaiNo;
  const bool known_floor = CurZeneNo != -1 && CurKoujiNo != -1 && CurKaiNo != -1;
  if (!same_floor || (known_floor && (!KutaiDb || !KutaiDb->IsOpen()))) {
    if (KutaiDb && KutaiDb->IsOpen()) KutaiDb->Close();
    CurZeneNo = ZeneNo;
    CurKoujiNo = KoujiNo;
    CurKaiNo = KaiNo;
    if (!OpenDB_Sitei(0)) CurZeneNo = CurKoujiNo = CurKaiNo = -1;  // a floor without a file
  }
  if (CurZeneNo == -1 || CurKoujiNo == -1 || CurKaiNo == -1) return -1;

  auto names =
      KutaiDb->OpenRecordset("SELECT * FROM TOORIMEI ORDER BY PAGE ASC;", dao::dbOpenDynaset);
  if (!names->IsEOF()) names->MoveLast();
  const std::int32_t last = names->RecordCount() - 1;
  if (last < 0) {
    names->Close();
    return -1;
  }
  rPageNo.ReDim({last});
  rPageName.ReDim({last});
  names->MoveFirst();
  for (std::int32_t i = 0; !names->IsEOF(); ++i, names->MoveNext()) {
    rPageNo(i) = vb::CInt(names->Value("PAGE"));
    rPageName(i) = vb::CStr(names->Value("TOORI"));
  }
  names->Close();
  return vb::CInt(last);
}

}  // namespace seluvorne
