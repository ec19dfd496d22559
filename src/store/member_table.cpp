// The members of clsSeluVorneDataService as the suite's clients call them by
// name. Grouped as the class header groups them.

#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

const MemberTable<clsSeluVorneDataService>& clsSeluVorneDataService::Members() {
  using C = clsSeluVorneDataService;
  static const auto table =
      MemberTable<C>("clsSeluVorneDataService")
          // State reached by name
          .field("KutaiDb", &C::KutaiDb)
          .field("WriteOpenDb", &C::WriteOpenDb)
          .field("CurZeneNo", &C::CurZeneNo)
          .field("CurKoujiNo", &C::CurKoujiNo)
          .field("CurKaiNo", &C::CurKaiNo)
          .field("SwStore", &C::SwStore)
          .field("FukasiStore", &C::FukasiStore)
          .field("FloorCompanion", &C::FloorCompanion)
          .field("pPageNo", &C::pPageNo)
          .get("CurrKai", &C::CurrKai)
          .put("CurrKai", &C::SetCurrKai)
          // The library-wide settings
          .get("PageMax", &C::PageMax)
          .get("FromBeamSolver", &C::FromBeamSolver)
          .put("FromBeamSolver", &C::SetFromBeamSolver)
          .get("HontaiOrFukasi", &C::HontaiOrFukasi)
          .put("HontaiOrFukasi", &C::SetHontaiOrFukasi)
          .put("YobidasiMoto", &C::SetYobidasiMoto)
          .put("CopyMergeBar", &C::SetCopyMergeBar)
          // The floor file
          .method("GetFileName", &C::GetFileName)
          .method("Create_SeluVornMDB", &C::Create_SeluVornMDB)
          .method("Create_SeluVornMDB_FullPath", &C::Create_SeluVornMDB_FullPath)
          .method("Create_SeluVorneTBL", &C::Create_SeluVorneTBL)
          .method("Create_SeluVorneTBL_for_Copy", &C::Create_SeluVorneTBL_for_Copy)
          .method("OpenSeluVorne", &C::OpenSeluVorne)
          .method("WriteOpen", &C::WriteOpen)
          .method("OpenDB_Sitei", &C::OpenDB_Sitei)
          .method("OpenDB_Sitei_Copy", &C::OpenDB_Sitei_Copy)
          .method("CloseDB", &C::CloseDB)
          .method("DeleteMdbByPath", &C::DeleteMdbByPath)
          .method("DeleteAllDataDB", &C::DeleteAllDataDB)
          // Page writers
          .method("Write_KutaiData", &C::Write_KutaiData)
          .method("Write_Hanti", &C::Write_Hanti)
          .method("Write_StpGensun", &C::Write_StpGensun)
          .method("Write_StpJougeGensun", &C::Write_StpJougeGensun)
          .method("Write_Rsitei", &C::Write_Rsitei)
          .method("Write_Henkaten", &C::Write_Henkaten)
          .method("Write_Top", &C::Write_Top)
          .method("Write_TanbuJointL", &C::Write_TanbuJointL)
          .method("Write_AnkaNige", &C::Write_AnkaNige)
          .method("Write_TooriMei", &C::Write_TooriMei)
          .method("Write_AnkaNigeData", &C::Write_AnkaNigeData)
          .method("Write_SitakinAnkaSetudan", &C::Write_SitakinAnkaSetudan)
          // Page buffers
          .method("ReadDB", &C::ReadDB)
          .method("WriteDB", &C::WriteDB)
          .method("SeluVorne_Del_DBTBL", &C::SeluVorne_Del_DBTBL)
          .method("wBuf_Clear", &C::wBuf_Clear)
          // Page copy between floors
          .method("No_PageCopyNo", &C::No_PageCopyNo)
          .method("No_PageCopyAddNo", &C::No_PageCopyAddNo)
          .method("No_Copy1Page", &C::No_Copy1Page)
          .method("Copy_OpenDB", &C::Copy_OpenDB)
          // The floor's pages and names
          .method("No_GetAllPageNoName", &C::No_GetAllPageNoName);
  return table;
}

}  // namespace seluvorne
