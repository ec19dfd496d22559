// Page copy between floors: the beam frame rows of a page through the page
// buffers, then the build-out rows, the switch rows and the through-bar value
// of the same page, and on request the suite's additional rebar and
// calculation files.

#include "seluvorne/frame.h"
#include "seluvorne/held_files.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

namespace {

using frame::gExistProbe;
using frame::gFloorDirs;

// The highest page a copy accepts: the large page limit, whatever the
// library's limit is at the time.
constexpr std::int16_t kCopyPageMax = frame::kLargePageMax;
constexpr std::string_view kTooManyPages = "ページの最大数を超えます。";
// The additional rebar of the beam, then of its build-out.
constexpr std::string_view kBeamRebar = "SELU_VORNE";
constexpr std::string_view kBuildOutRebar = "FSEL_VORNE";

}  // namespace

clsHikiCopyDS& clsSeluVorneDataService::ThroughBarCopier() {
  if (!through_bar_copier_) through_bar_copier_ = std::make_shared<clsHikiCopyDS>();
  return *through_bar_copier_;
}

bool clsSeluVorneDataService::No_PageCopyNo(std::int16_t iMode, std::int16_t WithSekouzu,
                                            std::string& sNGMsg, std::int16_t iMotoZeneNo,
                                            std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                                            vb::Array<std::int16_t>& iMotoPageNo,
                                            std::int16_t iMotoPageMax, std::int16_t iSakiZeneNo,
                                            std::int16_t iSakiKoujiNo, std::int16_t iSakiKaiNo,
                                            vb::Array<std::int16_t>& iSakiPageNo) {
  bool result = true;
  sNGMsg.clear();
  const auto rebar = frame::ExtraBars::Create();
  vb::Array<std::int16_t> pages;
  vb::Array<std::string> names;
  const std::string saki_folder =
      gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);
  No_GetAllPageNoName(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo, pages, names);
  const std::string moto_folder =
      gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  No_GetAllPageNoName(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo, pages, names);

  copy_merge_bar_.Min(0);
  copy_merge_bar_.Max(vb::CInt(iMotoPageMax + 1));
  copy_merge_bar_.Value(0);
  for (std::int32_t i = 0; i <= iMotoPageMax; ++i)
    if (iMotoPageNo(i) > kCopyPageMax) {
      result = false;
      sNGMsg = kTooManyPages;
      break;
    }
  return CopyPageList(iMode, WithSekouzu, result, iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo,
                      iMotoPageNo, iMotoPageMax, iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo, iSakiPageNo,
                      moto_folder, saki_folder, rebar);
}

bool clsSeluVorneDataService::No_PageCopyAddNo(std::int16_t iMode, std::int16_t WithSekouzu,
                                               std::string& sNGMsg, std::int16_t iMotoZeneNo,
                                               std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                                               vb::Array<std::int16_t>& iMotoPageNo,
                                               std::int16_t iMotoPageMax, std::int16_t iSakiZeneNo,
                                               std::int16_t iSakiKoujiNo, std::int16_t iSakiKaiNo) {
  bool result = true;
  sNGMsg.clear();
  const auto rebar = frame::ExtraBars::Create();
  vb::Array<std::int16_t> pages;
  vb::Array<std::string> names;
  const std::string saki_folder =
      gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);
  const std::int16_t last =
      No_GetAllPageNoName(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo, pages, names);
  // The directory is in ascending order: its last page is the highest.
  std::int16_t next = last >= 0 ? pages(last) : -1;
  const std::string moto_folder =
      gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  No_GetAllPageNoName(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo, pages, names);

  copy_merge_bar_.Min(0);
  copy_merge_bar_.Max(vb::CInt(iMotoPageMax + 1));
  copy_merge_bar_.Value(0);
  // The new pages follow the last one, gaps left as they are.
  vb::Array<std::int16_t> iSakiPageNo({iMotoPageMax});
  for (std::int32_t i = 0; i <= iMotoPageMax; ++i) {
    next = vb::CInt(next + 1);
    iSakiPageNo(i) = next;
  }
  if (next > kCopyPageMax) result = false;  // no message, deliberately
  return CopyPageList(iMode, WithSekouzu, result, iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo,
                      iMotoPageNo, iMotoPageMax, iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo, iSakiPageNo,
                      moto_folder, saki_folder, rebar);
}

bool clsSeluVorneDataService::CopyPageList(
    std::int16_t iMode, std::int16_t WithSekouzu, bool result, std::int16_t iMotoZeneNo,
    std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo, vb::Array<std::int16_t>& iMotoPageNo,
    std::int16_t iMotoPageMax, std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
    std::int16_t iSakiKaiNo, vb::Array<std::int16_t>& iSakiPageNo, const std::string& moto_folder,
    const std::string& saki_folder, const frame::ExtraBars& rebar) {
  copy_merge_bar_.Min(0);
  copy_merge_bar_.Max(vb::CInt(iMotoPageMax + 1));
  copy_merge_bar_.Value(0);
  const auto solver = frame::SolverRecords::Create();
  if (iMode != 1 || !result) return result;

  rebar.Buzai(std::string(kBeamRebar));
  rebar.CopyPathPage_KaiSitei_Ini(moto_folder, iMotoPageNo);
  // The copiers open and close their files for every page; held open in
  // between, the files are not synced and their catalogues not reread for
  // every page. Each copier still commits its own rows.
  {
    dao::HeldFiles held;
    for (std::int32_t i = 0; i <= iMotoPageMax; ++i) {
      copy_merge_bar_.Value(vb::CInt(i + 1));
      // The copiers take the numbers by reference; each gets its own copies.
      std::int16_t moto_page = iMotoPageNo(i), saki_page = iSakiPageNo(i);
      auto copy = [&](auto& copier) {
        std::int16_t mz = iMotoZeneNo, mk = iMotoKoujiNo, mn = iMotoKaiNo, mp = moto_page;
        std::int16_t sz = iSakiZeneNo, sk = iSakiKoujiNo, sn = iSakiKaiNo, sp = saki_page;
        copier.No_Copy1Page(mz, mk, mn, mp, sz, sk, sn, sp);
      };
      copy(*this);
      copy(BuildOutStore());
      copy(SwitchStore());
      copy(ThroughBarCopier());
      frame::DoEvents();
      if (WithSekouzu == 1) {
        rebar.CopyPathPage_KaiSitei(moto_folder, moto_page, vb::CInt(i), saki_folder, saki_page);
        frame::SolverRecords::Create().Copy_CalcFile(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo,
                                                     moto_page, iSakiZeneNo, iSakiKoujiNo,
                                                     iSakiKaiNo, saki_page);
      }
    }
  }  // the files close here
  if (WithSekouzu == 1) {
    rebar.Buzai(std::string(kBuildOutRebar));
    rebar.CopyPathPage_KaiSitei_Ini(moto_folder, iMotoPageNo);
    for (std::int32_t i = 0; i <= iMotoPageMax; ++i) {
      copy_merge_bar_.Value(vb::CInt(i));
      rebar.CopyPathPage_KaiSitei(moto_folder, iMotoPageNo(i), vb::CInt(i), saki_folder,
                                  iSakiPageNo(i));
    }
  }
  return result;
}

bool clsSeluVorneDataService::No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo,
                                           std::int16_t iMotoKaiNo, std::int16_t iMotoPageNo,
                                           std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                                           std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo) {
  const std::string moto_folder =
      gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  const std::string saki_folder =
      gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);
  // Every page of a copy is read from its own source floor.
  copy_path_ = GetFileName(moto_folder);
  const bool read = Copy_OpenDB();
  if (read) {
    pPageNo = iMotoPageNo;
    ReadDB();
    CloseDB();
    copy_path_ = GetFileName(saki_folder);
    OpenDB_Sitei_Copy(copy_path_);
    pPageNo = iSakiPageNo;
    WriteDB();
    CloseDB();
  }
  return read;
}

bool clsSeluVorneDataService::Copy_OpenDB() {
  if (gExistProbe.Find_FileExists(copy_path_).empty()) {
    OpenDB_Sitei(1);
    return true;
  }
  auto db = dao::OpenForUpdate(copy_path_);
  AddLateTable(db, LateTable::kSpanTop);
  KutaiDb = std::move(db);
  return true;
}

}  // namespace seluvorne
