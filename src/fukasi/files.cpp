// The build-out file: creating it, opening it on first use, closing and
// deleting it, and the instance's lifetime around the open database.

#include "seluvorne/files.h"
#include "kutaidata.h"
#include "seluvorne/frame.h"

namespace seluvorne {

using fukasi::FloorFile;

clsHariFukasiDS::clsHariFukasiDS() = default;

clsHariFukasiDS::~clsHariFukasiDS() {
  // A destructor has no caller to report to; a close that fails leaves the
  // file to be closed with its last handle.
  try {
    if (database_) database_->Close();
  } catch (...) {
  }
  database_.reset();
  frame::ReplaceSharedCollaborators();
}

void clsHariFukasiDS::Create_HariFukasi_TBL(const std::string& FileName) {
  frame::CreateDatabaseWithTables(FileName, {&fukasi::kTableSchema, 1})->Close();
}

void clsHariFukasiDS::Create_HariFukasiMDB_FullPath(const std::string& FileName) {
  Create_HariFukasi_TBL(FileName);
}

void clsHariFukasiDS::Create_HariFukasiMDB(const std::string& KaiPath) {
  const std::string file = FloorFile(KaiPath, kFileName);
  if (frame::gExistProbe.Find_FileExists(KaiPath, frame::ExistProbe::kFolder).empty())
    frame::gFloorDirs.MakeMkDir(KaiPath);
  Create_HariFukasi_TBL(file);
}

bool clsHariFukasiDS::WriteDB_Open(const std::string& KaiPath) {
  path_ = KaiPath.empty() ? frame::gFloorDirs.CurrFloor() : KaiPath;
  const std::string file = FloorFile(path_, kFileName);
  if (database_) CloseDB();
  if (frame::gExistProbe.Find_FileExists(file).empty())
    frame::AcceptIfAnotherDidIt(errc::kDatabaseExists, [&] { Create_HariFukasiMDB(path_); });
  database_ = dao::OpenForUpdate(file);
  return true;
}

void clsHariFukasiDS::CloseDB() {
  OpenDatabase("CloseDB").Close();
  database_.reset();
}

bool clsHariFukasiDS::Kill_DB(const std::string& FloorPath) {
  const std::string file = FloorFile(FloorPath, kFileName);
  if (!frame::gExistProbe.Find_FileExists(file).empty()) {
    if (database_) CloseDB();
    files::DeleteFile(file);
  }
  return true;
}

bool clsHariFukasiDS::EnsureOpen() {
  return database_ || WriteDB_Open(path_);
}

dao::Database& clsHariFukasiDS::OpenDatabase(std::string_view operation) {
  if (!database_)
    Raise(errc::kObjectNotSet, "(" + std::string(operation) + ": no build-out database is open)");
  return *database_;
}

}  // namespace seluvorne
