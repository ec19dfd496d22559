// clsHariSWDS: the switch file of a floor and the copy of one page's rows.

#include "seluvorne/frame.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/member_transaction.h"
#include "seluvorne/runtime.h"
#include "seluvorne/table_schema.h"

namespace seluvorne {

namespace {

using dao::dbInteger;
using dao::dbText;

constexpr frame::FieldSchema kSwitchFields[] = {
    {"PAGE", dbInteger}, {"SPAN", dbInteger}, {"DATAKIND", dbInteger}, {"DATA", dbText, 200}};
constexpr frame::TableSchema kSwitchTable{"SELUVORNESW", kSwitchFields};
constexpr std::string_view kSwitchKeys[] = {"PAGE", "SPAN", "DATAKIND"};
// Rows whose DATA is "" are not written.
constexpr frame::PageRowsLayout kSwitchRows{"SELUVORNESW", kSwitchKeys};

std::string PageText(std::int16_t page) {
  return vb::StrTrimmed(page);
}

}  // namespace

const MemberTable<clsHariSWDS>& clsHariSWDS::Members() {
  static const auto table =
      MemberTable<clsHariSWDS>("clsHariSWDS")
          .field("pPageNo", &clsHariSWDS::pPageNo)
          .method("No_Copy1Page", &clsHariSWDS::No_Copy1Page)
          .method("Copy_OpenDB", &clsHariSWDS::Copy_OpenDB)
          .method("ReadDB", &clsHariSWDS::ReadDB)
          .method("wBuf_Clear", &clsHariSWDS::wBuf_Clear)
          .method("CloseDB", &clsHariSWDS::CloseDB)
          .method("HariSW_Del_DBTBL", &clsHariSWDS::HariSW_Del_DBTBL)
          .method("WriteDB", &clsHariSWDS::WriteDB)
          .method("Create_SwMDB_TBL", &clsHariSWDS::Create_SwMDB_TBL)
          .method("IsTopTblExist", &clsHariSWDS::IsTopTblExist)
          .method("CreateTopTbl", &clsHariSWDS::CreateTopTbl)
          .method("IsTanbuJointLTblExist", &clsHariSWDS::IsTanbuJointLTblExist)
          .method("CreateTanbuJointLTbl", &clsHariSWDS::CreateTanbuJointLTbl)
          .method("IsStpJougeGensunTblExist", &clsHariSWDS::IsStpJougeGensunTblExist)
          .method("CreateStpJougeGensunTbl", &clsHariSWDS::CreateStpJougeGensunTbl);
  return table;
}

clsHariSWDS::clsHariSWDS() = default;

clsHariSWDS::~clsHariSWDS() {
  frame::ReplaceSharedCollaborators();
}

bool clsHariSWDS::No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo,
                               std::int16_t iMotoKaiNo, std::int16_t iMotoPageNo,
                               std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                               std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo) {
  const std::string from =
      frame::gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  const std::string to = frame::gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);

  path_ = from + "\\" + std::string(kFileName);
  bool copied = Copy_OpenDB();
  if (copied) {
    pPageNo = iMotoPageNo;
    ReadDB();
    CloseDB();
  }
  if (copied) {
    path_ = to + "\\" + std::string(kFileName);
    Copy_OpenDB();
    pPageNo = iSakiPageNo;
    copied = WriteDB();
    CloseDB();
  }
  return copied;
}

bool clsHariSWDS::Copy_OpenDB() {
  if (frame::gExistProbe.Find_FileExists(path_).empty())
    frame::AcceptIfAnotherDidIt(errc::kDatabaseExists, [&] { Create_SwMDB_TBL(path_); });
  db_ = dao::OpenForUpdate(path_);
  return true;
}

bool clsHariSWDS::ReadDB() {
  wBuf_Clear();
  frame::ReadPageRows(OpenDatabase(),
                      "SELECT * FROM SELUVORNESW WHERE PAGE = " + PageText(pPageNo) + ";",
                      kSwitchRows, buffer_);
  return true;
}

void clsHariSWDS::wBuf_Clear() {
  frame::ClearPageRows(kSwitchRows, 0, buffer_);
}

void clsHariSWDS::CloseDB() {
  OpenDatabase().Close();
  db_.reset();
}

void clsHariSWDS::HariSW_Del_DBTBL() {
  OpenDatabase().Execute("DELETE * FROM SELUVORNESW WHERE PAGE = " + PageText(pPageNo) + " ;",
                         dao::dbFailOnError);
}

bool clsHariSWDS::WriteDB() {
  dao::Database& database = OpenDatabase();
  // Buffers never filled raise 9 here, before the page's rows are deleted.
  if (buffer_.keys.empty())
    Raise(errc::kSubscriptOutOfRange, "(the switch buffer is empty: ReadDB or wBuf_Clear first)");
  dao::InMemberTransaction(database, [&] {
    HariSW_Del_DBTBL();
    frame::WritePageRows(database, kSwitchRows, buffer_, pPageNo);
  });
  return true;
}

void clsHariSWDS::Create_SwMDB_TBL(const std::string& FileName) {
  frame::CreateDatabaseWithTables(FileName, {&kSwitchTable, 1})->Close();
}

dao::Database& clsHariSWDS::OpenDatabase() {
  if (!db_) Raise(errc::kObjectNotSet, "(no switch file is open)");
  return *db_;
}

}  // namespace seluvorne
