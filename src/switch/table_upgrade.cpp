// The checks and creators of the floor-file tables that older files lack.

#include "seluvorne/floor_schema.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

namespace {

dao::Database& DatabaseIn(const vb::Variant& mydb) {
  auto db = vb::FromVariant<std::shared_ptr<dao::Database>>(mydb);
  if (!db) Raise(errc::kObjectNotSet, "(no database given)");
  return *db;
}

// Compares names exactly: a table named in other letters is not the one.
// The lookup by name prefers the exact name and answers from the engine's
// catalogue, which it rereads only when the name is missing there; every
// open of a floor runs three of these.
bool HasTable(const vb::Variant& mydb, std::string_view name) {
  const auto tables = DatabaseIn(mydb).TableDefs();
  try {
    return tables->Item(name)->Name() == name;
  } catch (const Error& error) {
    if (error.number != errc::kItemNotFound) throw;
    return false;
  }
}

}  // namespace

bool clsHariSWDS::IsTopTblExist(vb::Variant& mydb) {
  return HasTable(mydb, frame::kSpanTopTable.name);
}
void clsHariSWDS::CreateTopTbl(vb::Variant& mydb) {
  frame::CreateTable(DatabaseIn(mydb), frame::kSpanTopTable);
}

bool clsHariSWDS::IsTanbuJointLTblExist(vb::Variant& mydb) {
  return HasTable(mydb, frame::kSpanTanJoilTable.name);
}
void clsHariSWDS::CreateTanbuJointLTbl(vb::Variant& mydb) {
  frame::CreateTable(DatabaseIn(mydb), frame::kSpanTanJoilTable);
}

bool clsHariSWDS::IsStpJougeGensunTblExist(vb::Variant& mydb) {
  return HasTable(mydb, frame::kStpJougeGensunTable.name);
}
void clsHariSWDS::CreateStpJougeGensunTbl(vb::Variant& mydb) {
  frame::CreateTable(DatabaseIn(mydb), frame::kStpJougeGensunTable);
}

}  // namespace seluvorne
