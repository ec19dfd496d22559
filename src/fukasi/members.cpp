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
          .method("Kill_DB", &C::Kill_DB)
          // One value at the current key
          .get("KaisiKyori", &C::KaisiKyori)
          .put("KaisiKyori", &C::SetKaisiKyori)
          .get("KaisiNomikomi", &C::KaisiNomikomi)
          .put("KaisiNomikomi", &C::SetKaisiNomikomi)
          .get("KaisiAnka", &C::KaisiAnka)
          .put("KaisiAnka", &C::SetKaisiAnka)
          .get("Syuuten", &C::Syuuten)
          .put("Syuuten", &C::SetSyuuten)
          .get("ENDNomikomi", &C::ENDNomikomi)
          .put("ENDNomikomi", &C::SetENDNomikomi)
          .get("EndAnka", &C::EndAnka)
          .put("EndAnka", &C::SetEndAnka)
          .get("Kigou", &C::Kigou)
          .put("Kigou", &C::SetKigou)
          .get("StpKei", &C::StpKei)
          .put("StpKei", &C::SetStpKei)
          .get("StpPich", &C::StpPich)
          .put("StpPich", &C::SetStpPich)
          .get("SyukinKei", &C::SyukinKei)
          .put("SyukinKei", &C::SetSyukinKei)
          .get("SyukinHon", &C::SyukinHon)
          .get("HaraKei", &C::HaraKei)
          .put("HaraKei", &C::SetHaraKei)
          .get("HaraHon", &C::HaraHon)
          .put("HaraHon", &C::SetHaraHon)
          .get("HabadomeKei", &C::HabadomeKei)
          .put("HabadomeKei", &C::SetHabadomeKei)
          .get("HabadomePich", &C::HabadomePich)
          .put("HabadomePich", &C::SetHabadomePich)
          .get("Atusa", &C::Atusa)
          .put("Atusa", &C::SetAtusa)
          .get("Siten", &C::Siten)
          .put("Siten", &C::SetSiten)
          .get("Haba", &C::Haba)
          .put("Haba", &C::SetHaba)
          // Ranges of the current key
          .method("GetRecordAll", &C::GetRecordAll)
          .method("GetRecordSpan", &C::GetRecordSpan)
          .method("GetRecordIti", &C::GetRecordIti)
          .method("GetRecordSyurui", &C::GetRecordSyurui)
          .method("GetRecordPage", &C::GetRecordPage)
          .method("DeletePage", &C::DeletePage)
          .method("DeleteSpan", &C::DeleteSpan)
          .method("DeleteIti", &C::DeleteIti)
          .method("DeleteSyurui", &C::DeleteSyurui)
          .method("CopyRecordPage", &C::CopyRecordPage)
          .method("CopyRecordSpan", &C::CopyRecordSpan)
          .method("CopyRecordIti", &C::CopyRecordIti)
          .method("CopyRecordSyurui", &C::CopyRecordSyurui)
          .method("UpdatePage", &C::UpdatePage)
          .method("TumeruSpan", &C::TumeruSpan)
          .method("InsertSpan", &C::InsertSpan)
          .method("isYuukou", &C::isYuukou)
          // The page buffer
          .method("ReadDB", &C::ReadDB)
          .method("WriteDB", &C::WriteDB)
          .method("wBuf_Clear", &C::wBuf_Clear)
          .method("HariFukasi_Del_DBTBL", &C::HariFukasi_Del_DBTBL)
          // Floor copy
          .method("No_Copy1Page", &C::No_Copy1Page)
          .method("Copy_OpenDB", &C::Copy_OpenDB)
          .method("Copy_Kaisitei_Ini", &C::Copy_Kaisitei_Ini)
          .method("GetRecordPage_KaiSitei", &C::GetRecordPage_KaiSitei)
          .method("Copy_Kaisitei_End", &C::Copy_Kaisitei_End);
  return table;
}

}  // namespace seluvorne
