// The late-bound members of clsHariFukasiDS, with the names the suite's
// clients call.

#include "seluvorne/hari_fukasi_ds.h"

namespace seluvorne {

using C = clsHariFukasiDS;

const MemberTable<C>& C::Members() {
  static const auto table =
      MemberTable<C>("clsHariFukasiDS")
          // The key and the constants
          .field("pPageNo", &C::pPageNo)
          .get("Page", &C::Page)
          .put("Page", &C::SetPage)
          .get("Span", &C::Span)
          .put("Span", &C::SetSpan)
          .get("Iti", &C::Iti)
          .put("Iti", &C::SetIti)
          .get("Syurui", &C::Syurui)
          .put("Syurui", &C::SetSyurui)
          .get("Path", &C::Path)
          .put("Path", &C::SetPath)
          .get("ItiNoHidari", &C::ItiNoHidari)
          .get("ItiNoMigi", &C::ItiNoMigi)
          .get("ItiNoUe", &C::ItiNoUe)
          .get("ItiNoSita", &C::ItiNoSita)
          .get("SyuruiMax", &C::SyuruiMax)
          .get("PageMax", &C::PageMax)
          .get("ItiName", &C::ItiName)
          .method("GetLoopHairetu", &C::GetLoopHairetu)
          // Files
          .method("Create_HariFukasi_TBL", &C::Create_HariFukasi_TBL)
          .method("Create_HariFukasiMDB_FullPath", &C::Create_HariFukasiMDB_FullPath)
          .method("Create_HariFukasiMDB", &C::Create_HariFukasiMDB)
          .method("WriteDB_Open", &C::WriteDB_Open)
          .method("CloseDB", &C::CloseDB)
          .method("Kill_DB", &C::Kill_DB);
  return table;
}

}  // namespace seluvorne
