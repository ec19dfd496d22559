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
          // The page directory and the beam selection
          .get("AllPages2", &C::AllPages2)
          .get("AllPages", &C::AllPages)
          .method("GetAllPages", &C::GetAllPages)
          .method("GetKindByPage", &C::GetKindByPage)
          .method("GetKind2ByPage", &C::GetKind2ByPage)
          .method("GetToorimeiByPage", &C::GetToorimeiByPage)
          .method("GetKasyosuuByPage", &C::GetKasyosuuByPage)
          .get("SelectedSeluVorneNo", &C::SelectedSeluVorneNo)
          .get("SelectedSeluVorneNoByDim", &C::SelectedSeluVorneNoByDim)
          .put("ToMenuButtonMei", &C::SetToMenuButtonMei)
          .method("No_IsThereHari", &C::No_IsThereHari);
  return table;
}

}  // namespace seluvorne
