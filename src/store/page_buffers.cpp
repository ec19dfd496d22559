// The page buffers: a whole page of the floor file read into memory and
// written back as another page, possibly of another floor.

#include <array>

#include "seluvorne/member_transaction.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

namespace {

using frame::PageRowsLayout;
using frame::WrittenRows;

constexpr std::string_view kKeys[] = {"PAGE", "SUBPAGE", "BANGOU"};
constexpr std::string_view kKeysWithBan[] = {"PAGE", "SUBPAGE", "BANGOU", "BAN"};

// The ten tables of a page besides TOORIMEI, in the order they are read,
// deleted and written. KUTAIDATA writes exactly the rows read, empty DATA
// included; the others drop empty DATA.
constexpr std::array<PageRowsLayout, clsSeluVorneDataService::kBufferTables> kTables{{
    {"ANKANIGE", kKeysWithBan},
    {"HANTI", kKeys},
    {"HENKATEN", kKeysWithBan},
    {"KUTAIDATA", kKeys, WrittenRows::kAllButSpare},
    {"RSITEI", kKeys},
    {"SITAKINANKASETUDAN", kKeys},
    {"STPGENSUN", kKeys},
    {"STPJOUGEGENSUN", kKeys},
    {"SPANTOP", kKeysWithBan},
    {"SPANTANJOIL", kKeysWithBan},
}};
constexpr int kStpJougeGensun = 7;
// SPANTOP and SPANTANJOIL, the last two, keep their rows of a page when it
// is deleted: a page written twice has them twice.
constexpr int kDeletedTables = 8;

dao::Database& FloorDatabase(const std::shared_ptr<dao::Database>& db) {
  if (!db) Raise(errc::kObjectNotSet, "(no floor file is open)");
  return *db;
}

std::string PageText(std::int16_t page) {
  return vb::StrTrimmed(page);
}

}  // namespace

void clsSeluVorneDataService::wBuf_Clear() {
  for (int t = 0; t < kBufferTables; ++t)
    // STPJOUGEGENSUN's arrays are only re-dimensioned, so they hold 0, not -1.
    frame::ClearPageRows(kTables[t], t == kStpJougeGensun ? 0 : -1, buffers_.tables[t]);
  buffers_.toori_page = -1;
  buffers_.toori.clear();
  buffers_.kasyo.clear();
}

bool clsSeluVorneDataService::ReadDB() {
  wBuf_Clear();
  dao::Database& database = FloorDatabase(KutaiDb);
  const std::string page = PageText(pPageNo);
  auto names = database.OpenRecordset("SELECT * FROM TOORIMEI WHERE PAGE = " + page + ";",
                                      dao::dbOpenDynaset);
  buffers_.toori_page = vb::CInt(names->Value("PAGE"));  // 3021 for a page without its row
  buffers_.toori = vb::CStr(names->Value("TOORI"));
  buffers_.kasyo = vb::CStr(names->Value("KASYO"));
  names->Close();
  for (int t = 0; t < kBufferTables; ++t) {
    if (t == kStpJougeGensun) AddLateTable(KutaiDb, LateTable::kStpJougeGensun);
    const std::string query =
        "SELECT * FROM " + std::string(kTables[t].table) + " WHERE PAGE = " + page + ";";
    frame::ReadPageRows(database, query, kTables[t], buffers_.tables[t]);
  }
  return true;
}

void clsSeluVorneDataService::SeluVorne_Del_DBTBL() {
  dao::Database& database = FloorDatabase(KutaiDb);
  const std::string page = PageText(pPageNo);
  dao::InMemberTransaction(database, [&] {
    for (int t = 0; t < kDeletedTables; ++t)
      database.Execute(
          "DELETE * FROM " + std::string(kTables[t].table) + " WHERE PAGE = " + page + " ;",
          dao::dbFailOnError);
    database.Execute("DELETE * FROM TOORIMEI WHERE PAGE = " + page + " ;", dao::dbFailOnError);
  });
}

bool clsSeluVorneDataService::WriteDB() {
  dao::Database& database = FloorDatabase(KutaiDb);
  // A buffer never filled raises 9 here, before the page's rows are deleted.
  if (buffers_.tables[0].keys.empty())
    Raise(errc::kSubscriptOutOfRange, "(the page buffer is empty: ReadDB or wBuf_Clear first)");
  dao::InMemberTransaction(database, [&] {
    SeluVorne_Del_DBTBL();
    for (int t = 0; t < kBufferTables; ++t)
      frame::WritePageRows(database, kTables[t], buffers_.tables[t], pPageNo);
    static constexpr std::string_view kGridLineFields[] = {"PAGE", "TOORI", "KASYO"};
    frame::RowAppender names(database, "TOORIMEI", kGridLineFields);
    names.Add(std::array<vb::Variant, 3>{pPageNo, buffers_.toori, buffers_.kasyo});
  });
  return false;
}

}  // namespace seluvorne
