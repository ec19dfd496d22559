// Copying build-out pages between floors: one page straight from file to
// file, and the work file, a snapshot of the live file that pages are read
// from while the live file is rewritten.

#include "kutaidata.h"
#include "seluvorne/files.h"
#include "seluvorne/frame.h"

namespace seluvorne {

using fukasi::FloorFile;

bool clsHariFukasiDS::No_Copy1Page(std::int16_t& iMotoZeneNo, std::int16_t& iMotoKoujiNo,
                                   std::int16_t& iMotoKaiNo, std::int16_t& iMotoPageNo,
                                   std::int16_t& iSakiZeneNo, std::int16_t& iSakiKoujiNo,
                                   std::int16_t& iSakiKaiNo, std::int16_t& iSakiPageNo) {
  fukasi::CheckPage(iSakiPageNo);  // before any file is touched
  const std::string source =
      frame::gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  const std::string destination =
      frame::gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);

  copy_file_name_ = FloorFile(source, kFileName);
  bool copied = Copy_OpenDB();
  if (copied) {
    pPageNo = iMotoPageNo;
    copied = ReadDB();
    CloseDB();
  }
  // A source page without rows leaves the destination page as it was.
  if (copied) {
    copy_file_name_ = FloorFile(destination, kFileName);
    copied = Copy_OpenDB();
    pPageNo = iSakiPageNo;
    WriteDB();
    CloseDB();
  }
  return copied;
}

bool clsHariFukasiDS::Copy_OpenDB() {
  if (copy_file_name_.empty())
    Raise(errc::kBadFileName, "(no file to open: No_Copy1Page names it)");
  if (frame::gExistProbe.Find_FileExists(copy_file_name_).empty())
    frame::AcceptIfAnotherDidIt(errc::kDatabaseExists,
                                [&] { Create_HariFukasiMDB_FullPath(copy_file_name_); });
  // The database open before is dropped, not closed: its file closes with
  // its last handle.
  database_ = dao::OpenForUpdate(copy_file_name_);
  return true;
}

void clsHariFukasiDS::Copy_Kaisitei_Ini(bool KaiFg) {
  if (KaiFg) {
    if (database_) CloseDB();
    return;
  }
  const std::string live = FloorFile(path_, kFileName);
  const std::string work = FloorFile(path_, kWorkFileName);
  if (frame::gExistProbe.Find_FileExists(live).empty()) return;
  if (!frame::gExistProbe.Find_FileExists(work).empty()) files::DeleteFile(work);
  files::CopyFile(live, work);
}

bool clsHariFukasiDS::GetRecordPage_KaiSitei(vb::Variant& vCopySet) {
  const std::string work = FloorFile(path_, kWorkFileName);
  if (frame::gExistProbe.Find_FileExists(work).empty()) return false;
  auto snapshot = dao::DBEngine::Instance()->OpenDatabase(work);
  const bool found =
      fukasi::ReadRows(*snapshot, "SELECT" + fukasi::RangeFilter(key_, Level::kPage), vCopySet);
  snapshot->Close();
  return found;
}

void clsHariFukasiDS::Copy_Kaisitei_End() {
  const std::string work = FloorFile(path_, kWorkFileName);
  if (!frame::gExistProbe.Find_FileExists(work).empty()) files::DeleteFile(work);
}

}  // namespace seluvorne
