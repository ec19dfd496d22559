// The floor file: its name, creation, the opens for work with the tables
// older files lack, closing, emptying and deletion.

#include "seluvorne/files.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

namespace {

using frame::ExistProbe;
using frame::gExistProbe;
using frame::gFloorDirs;

// A new floor file with its nine tables, open.
std::shared_ptr<dao::Database> CreateFloorFile(const std::string& path) {
  return frame::CreateDatabaseWithTables(path, frame::kFloorTables);
}

}  // namespace

std::string clsSeluVorneDataService::GetFileName(const std::string& KaiPath) const {
  return KaiPath + std::string(kFileName);
}

// ---- Creation ----------------------------------------------------------------

void clsSeluVorneDataService::Create_SeluVorneTBL(const std::string& FileName) {
  CreateFloorFile(FileName)->Close();
}

void clsSeluVorneDataService::Create_SeluVorneTBL_for_Copy(const std::string& FileName) {
  KutaiDb = CreateFloorFile(FileName);
}

void clsSeluVorneDataService::Create_SeluVornMDB(const std::string& KaiPath) {
  if (gExistProbe.Find_FileExists(KaiPath, ExistProbe::kFolder).empty())
    gFloorDirs.MakeMkDir(KaiPath);
  Create_SeluVorneTBL(GetFileName(KaiPath));
}

void clsSeluVorneDataService::Create_SeluVornMDB_FullPath(const std::string& FileName) {
  Create_SeluVorneTBL(FileName);
}

// ---- Opening -----------------------------------------------------------------

void clsSeluVorneDataService::UpgradeTables(std::shared_ptr<dao::Database>& db, Upgrade steps) {
  AddLateTable(db, LateTable::kSpanTop);
  if (steps >= Upgrade::kSpanTopAndJoint) AddLateTable(db, LateTable::kSpanTanJoil);
  if (steps >= Upgrade::kAll) AddLateTable(db, LateTable::kStpJougeGensun);
}

void clsSeluVorneDataService::AddLateTable(std::shared_ptr<dao::Database>& db, LateTable table) {
  clsHariSWDS& store = SwitchStore();
  vb::Variant handle(db);  // the checks take the handle by reference and may replace it
  // Several clients may open an older floor at once: the table another one
  // added meanwhile (3010, checked inside the creating write) is the one wanted.
  auto add = [&](void (clsHariSWDS::*create)(vb::Variant&)) {
    frame::AcceptIfAnotherDidIt(errc::kTableExists, [&] { (store.*create)(handle); });
  };
  switch (table) {
    case LateTable::kSpanTop:
      if (!store.IsTopTblExist(handle)) add(&clsHariSWDS::CreateTopTbl);
      break;
    case LateTable::kSpanTanJoil:
      if (!store.IsTanbuJointLTblExist(handle)) add(&clsHariSWDS::CreateTanbuJointLTbl);
      break;
    case LateTable::kStpJougeGensun:
      if (!store.IsStpJougeGensunTblExist(handle)) add(&clsHariSWDS::CreateStpJougeGensunTbl);
      break;
  }
  db = vb::FromVariant<std::shared_ptr<dao::Database>>(handle);
}

bool clsSeluVorneDataService::OpenSeluVorne(const std::string& CurrFloor,
                                            std::shared_ptr<dao::Database>& mydb) {
  const std::string file = GetFileName(CurrFloor);
  // Another client may delete the floor between the check and the open; the
  // floor is then made again, as if it had been missing all along.
  std::shared_ptr<dao::Database> db;
  for (int attempt = 1; !db; ++attempt) {
    if (gExistProbe.Find_FileExists(file).empty())
      frame::AcceptIfAnotherDidIt(errc::kDatabaseExists, [&] { Create_SeluVornMDB(CurrFloor); });
    try {
      db = dao::OpenForUpdate(file);
    } catch (const Error& error) {
      if (error.number != errc::kFileNotFoundDb || attempt == 3) throw;
    }
  }
  UpgradeTables(db, Upgrade::kAll);
  mydb = std::move(db);
  return true;
}

bool clsSeluVorneDataService::WriteOpen(const std::string& KaiPath) {
  if (WriteOpenDb) {
    WriteOpenDb->Close();
    WriteOpenDb.reset();
  }
  return OpenSeluVorne(KaiPath, WriteOpenDb);
}

bool clsSeluVorneDataService::OpenDB_Sitei(std::int16_t Mode) {
  const std::string folder = gFloorDirs.GetFullPathToKai(CurZeneNo, CurKoujiNo, CurKaiNo);
  const std::string file = GetFileName(folder);
  bool found = !gExistProbe.Find_FileExists(file, ExistProbe::kFile).empty();
  if (!found && Mode == 1) {
    frame::AcceptIfAnotherDidIt(errc::kDatabaseExists, [&] { Create_SeluVornMDB_FullPath(file); });
    // A new floor gets its build-out file beside it; one already there is kept.
    const std::string build_out = folder + "\\" + std::string(clsHariFukasiDS::kFileName);
    if (!files::FileExists(build_out))
      frame::AcceptIfAnotherDidIt(
          errc::kDatabaseExists, [&] { BuildOutStore().Create_HariFukasiMDB_FullPath(build_out); });
    if (!FloorCompanion) Raise(errc::kObjectNotSet, "(FloorCompanion is not set)");
    frame::FloorCompanion(FloorCompanion).CreateMDB_FullPath(file);
    found = true;
  }
  if (!found) {
    KutaiDb.reset();
    return false;
  }
  copy_path_ = file;
  auto db = dao::OpenForUpdate(file);
  UpgradeTables(db, Upgrade::kSpanTop);
  KutaiDb = std::move(db);
  return true;
}

bool clsSeluVorneDataService::OpenDB_Sitei_Copy(const std::string& sFullPathFileName) {
  if (gExistProbe.Find_FileExists(sFullPathFileName, ExistProbe::kFile).empty())
    frame::AcceptIfAnotherDidIt(errc::kDatabaseExists,
                                [&] { Create_SeluVornMDB_FullPath(sFullPathFileName); });
  auto db = dao::OpenForUpdate(sFullPathFileName);
  UpgradeTables(db, Upgrade::kSpanTopAndJoint);
  KutaiDb = std::move(db);
  return false;
}

// ---- Closing, emptying, deleting ---------------------------------------------

void clsSeluVorneDataService::CloseDB() {
  if (!KutaiDb) Raise(errc::kObjectNotSet, "(no floor file is open)");
  KutaiDb->Close();
}

void clsSeluVorneDataService::DeleteMdbByPath(const std::string& KaiPath) {
  const std::string file = GetFileName(KaiPath);
  if (gExistProbe.Find_FileExists(file).empty()) return;
  if (WriteOpenDb) {
    WriteOpenDb->Close();
    WriteOpenDb.reset();
  }
  // Another client may have deleted it since the check: that is no failure.
  frame::AcceptIfAnotherDidIt(errc::kFileNotFound, [&] { files::DeleteFile(file); });
}

void clsSeluVorneDataService::DeleteAllDataDB(const std::string& KaiPath) {
  const std::string file = GetFileName(KaiPath);
  if (gExistProbe.Find_FileExists(file).empty()) return;
  if (!WriteOpenDb) SetCurrKai(KaiPath);
  if (!KutaiDb) Raise(errc::kObjectNotSet, "(no floor file is open)");
  frame::ClearAllTables(*KutaiDb);
}

}  // namespace seluvorne
