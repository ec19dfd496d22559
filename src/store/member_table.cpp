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
          // The span model of one page: loading, then the model's own members
          .method("InitKutaiData", &C::InitKutaiData)
          .method("SetSpanSunpou", &C::SetSpanSunpou)
          .get("GetSpanSuu", &C::SpanGeometry, &SpanModel::GetSpanSuu)
          .get("GetHariMei", &C::SpanGeometry, &SpanModel::GetHariMei)
          .get("TOORIMEI", &C::TOORIMEI)
          .get("Kasyosuu", &C::Kasyosuu)
          .put("IsVarnholt", &C::SetIsVarnholt)
          .method("GetYuukouSpanSuu", &C::SpanGeometry, &SpanModel::GetYuukouSpanSuu)
          .method("GetSpanSTPGensun", &C::SpanGeometry, &SpanModel::GetSpanSTPGensun)
          .method("GetSpanSTPJougeGensun", &C::SpanGeometry, &SpanModel::GetSpanSTPJougeGensun)
          .method("GetHantiHidariUe", &C::SpanGeometry, &SpanModel::GetHantiHidariUe)
          .method("GetHantiHidariSita", &C::SpanGeometry, &SpanModel::GetHantiHidariSita)
          .method("GetHantiMigiUe", &C::SpanGeometry, &SpanModel::GetHantiMigiUe)
          .method("GetHantiMigiSita", &C::SpanGeometry, &SpanModel::GetHantiMigiSita)
          .method("GetHenkatenKyori", &C::SpanGeometry, &SpanModel::GetHenkatenKyori)
          .method("GetHenkatenTakasa", &C::SpanGeometry, &SpanModel::GetHenkatenTakasa)
          .method("GetHenkatenSayuuHantiL", &C::SpanGeometry, &SpanModel::GetHenkatenSayuuHantiL)
          .method("GetHenkatenSuu", &C::SpanGeometry, &SpanModel::GetHenkatenSuu)
          .method("GetHensinUe", &C::SpanGeometry, &SpanModel::GetHensinUe)
          .method("GetTeityakuBanHidari_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuBanHidari_Hontai)
          .method("GetTeityakuBanMigi_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuBanMigi_Hontai)
          .method("GetTeityakuStyleHidari_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuStyleHidari_Hontai)
          .method("GetTeityakuStyleMigi_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuStyleMigi_Hontai)
          .method("GetTeityakuBanHidari_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuBanHidari_Fukasi)
          .method("GetTeityakuBanMigi_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuBanMigi_Fukasi)
          .method("GetTeityakuStyleHidari_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuStyleHidari_Fukasi)
          .method("GetTeityakuStyleMigi_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuStyleMigi_Fukasi)
          .method("GetTeityakuSansyouHidari_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuSansyouHidari_Hontai)
          .method("GetTeityakuSansyouMigi_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuSansyouMigi_Hontai)
          .method("GetTeityakuSansyouHidari_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuSansyouHidari_Fukasi)
          .method("GetTeityakuSansyouMigi_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuSansyouMigi_Fukasi)
          .method("GetNigeHidari_Hontai", &C::SpanGeometry, &SpanModel::GetNigeHidari_Hontai)
          .method("GetNigeMigi_Hontai", &C::SpanGeometry, &SpanModel::GetNigeMigi_Hontai)
          .method("GetNigeHidari_Fukasi", &C::SpanGeometry, &SpanModel::GetNigeHidari_Fukasi)
          .method("GetNigeMigi_Fukasi", &C::SpanGeometry, &SpanModel::GetNigeMigi_Fukasi)
          .method("GetAnkaHidari_Hontai", &C::SpanGeometry, &SpanModel::GetAnkaHidari_Hontai)
          .method("GetAnkaMigi_Hontai", &C::SpanGeometry, &SpanModel::GetAnkaMigi_Hontai)
          .method("GetAnkaHidari_Fukasi", &C::SpanGeometry, &SpanModel::GetAnkaHidari_Fukasi)
          .method("GetAnkaMigi_Fukasi", &C::SpanGeometry, &SpanModel::GetAnkaMigi_Fukasi)
          .method("GetTeityakuHidari_Hontai", &C::SpanGeometry,
                  &SpanModel::GetTeityakuHidari_Hontai)
          .method("GetTeityakuMigi_Hontai", &C::SpanGeometry, &SpanModel::GetTeityakuMigi_Hontai)
          .method("GetTeityakuHidari_Fukasi", &C::SpanGeometry,
                  &SpanModel::GetTeityakuHidari_Fukasi)
          .method("GetTeityakuMigi_Fukasi", &C::SpanGeometry, &SpanModel::GetTeityakuMigi_Fukasi)
          .method("GetKyoriSpanHidariUti", &C::SpanGeometry, &SpanModel::GetKyoriSpanHidariUti)
          .method("GetKyoriSpanHidariSoto", &C::SpanGeometry, &SpanModel::GetKyoriSpanHidariSoto)
          .method("GetKyoriSpanMigiUti", &C::SpanGeometry, &SpanModel::GetKyoriSpanMigiUti)
          .method("GetKyoriSpanMigiSoto", &C::SpanGeometry, &SpanModel::GetKyoriSpanMigiSoto)
          .method("GetSpanUtinoriKyori", &C::SpanGeometry, &SpanModel::GetSpanUtinoriKyori)
          .method("GetSpanUtinoriL4Kyori", &C::SpanGeometry, &SpanModel::GetSpanUtinoriL4Kyori)
          .method("GetHasiraHaba", &C::SpanGeometry, &SpanModel::GetHasiraHaba)
          .method("GetHasiraHabaHidari", &C::SpanGeometry, &SpanModel::GetHasiraHabaHidari)
          .method("GetHasiraHabaMigi", &C::SpanGeometry, &SpanModel::GetHasiraHabaMigi)
          .method("GetSpanTyou", &C::SpanGeometry, &SpanModel::GetSpanTyou)
          .method("GetHasiraLR", &C::SpanGeometry, &SpanModel::GetHasiraLR)
          .method("GetTenba", &C::SpanGeometry, &SpanModel::GetTenba)
          .method("GetHensinSita", &C::SpanGeometry, &SpanModel::GetHensinSita)
          .method("GetSpanToorimei", &C::SpanGeometry, &SpanModel::GetSpanToorimei)
          .method("GetRsitei", &C::SpanGeometry, &SpanModel::GetRsitei)
          .method("GetSitakinCutHidari", &C::SpanGeometry, &SpanModel::GetSitakinCutHidari)
          .method("GetSitakinCutMigi", &C::SpanGeometry, &SpanModel::GetSitakinCutMigi)
          .method("GetSitakinCutMigiHidari", &C::SpanGeometry, &SpanModel::GetSitakinCutMigiHidari)
          .method("GetSpanTop", &C::SpanGeometry, &SpanModel::GetSpanTop)
          .method("GetSpanTanbuJointL", &C::SpanGeometry, &SpanModel::GetSpanTanbuJointL)
          .method("GetSatanTenba", &C::SpanGeometry, &SpanModel::GetSatanTenba)
          .method("GetUtanTenba", &C::SpanGeometry, &SpanModel::GetUtanTenba)
          .method("isInOrNearHasira", &C::SpanGeometry, &SpanModel::isInOrNearHasira)
          .method("isInSpan", &C::SpanGeometry, &SpanModel::isInSpan)
          .method("isInSpanHasira", &C::SpanGeometry, &SpanModel::isInSpanHasira)
          .method("isInOrNearHasiraHaba", &C::SpanGeometry, &SpanModel::isInOrNearHasiraHaba)
          .method("GetSpanTokutyou", &C::SpanGeometry, &SpanModel::GetSpanTokutyou)
          // ... and those that need the roster or the caller's list
          .method("Read_KutaiSunpou", &C::Read_KutaiSunpou)
          .method("Read_Keisanti", &C::Read_Keisanti)
          .method("Read_TooriMei", &C::Read_TooriMei)
          .method("GetHariSei", &C::GetHariSei)
          .method("GetHariSeiHidari", &C::GetHariSeiHidari)
          .method("GetHariSeiMigi", &C::GetHariSeiMigi)
          .method("isRenzokuSitan", &C::isRenzokuSitan)
          .method("isRenzokuSyuutan", &C::isRenzokuSyuutan)
          .method("GetDanmenBangou", &C::GetDanmenBangou)
          .method("GetListDanmenNoByKutaiDanmenNo", &C::GetListDanmenNoByKutaiDanmenNo)
          .method("GetSpanRituHidari", &C::GetSpanRituHidari)
          .method("GetSpanRituMigi", &C::GetSpanRituMigi)
          .method("GetSpanRituHidariVARNHOLT", &C::GetSpanRituHidariVARNHOLT)
          .method("GetSpanRituMigiVARNHOLT", &C::GetSpanRituMigiVARNHOLT)
          .method("isTopX", &C::isTopX)
          .method("isHasiKobari", &C::isHasiKobari)
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
          .method("No_GetAllPageNoName", &C::No_GetAllPageNoName)
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
