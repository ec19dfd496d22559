// The build-out store's names: its files, the table KUTAIDATA and its shape,
// and the texts of the statements the store runs on it. Statements are built
// from fixed fragments and the numbers of the current key; their texts are
// kept here, in one place, where tests can read them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/table_schema.h"

namespace seluvorne::fukasi {

// folder + "\" + name; 52 for an empty folder, which would name a file at
// the root of the file system.
std::string FloorFile(const std::string& folder, std::string_view name);

inline constexpr std::string_view kTable = "KUTAIDATA";
inline constexpr std::string_view kDataField = "DATA";
// The five key fields, then DATA.
inline constexpr frame::FieldSchema kFields[] = {
    {"PAGE", dao::dbInteger},   {"SPANNO", dao::dbInteger}, {"ITI", dao::dbInteger},
    {"SYURUI", dao::dbInteger}, {"BANGOU", dao::dbInteger}, {kDataField, dao::dbText, 200}};
inline constexpr frame::TableSchema kTableSchema{kTable, kFields};
inline constexpr int kFieldCount = std::size(kFields);
// The most rows a page read answers.
inline constexpr std::int32_t kMaxPageRows = 99999;

// The value codes (BANGOU), named by the property that reads and writes
// each. The four with sides name side A; side B's code is two higher.
namespace code {
inline constexpr std::int32_t kKaisiKyori = 0, kKaisiNomikomi = 1, kKaisiAnka = 2, kSyuuten = 3,
                              kENDNomikomi = 4, kEndAnka = 5, kKigou = 6, kStpKei = 7, kStpPich = 8,
                              kSyukinKei = 11, kSyukinHon = 12, kHaraKei = 15, kHaraHon = 16,
                              kHabadomeKei = 17, kHabadomePich = 18, kAtusa = 19, kSiten = 20,
                              kHaba = 21;
inline constexpr std::int32_t kSideB = 2;
}  // namespace code

using Level = clsHariFukasiDS::Level;
using Key = clsHariFukasiDS::Key;

// " * FROM KUTAIDATA" with the WHERE clause of `level` and ";": a query puts
// "SELECT" before it, a delete "DELETE".
std::string RangeFilter(const Key& key, Level level);

// The symbols (code 6) of a page. The numbers keep the blank Str puts before
// a number that is not negative: "... WHERE PAGE =  3 AND BANGOU = 6;".
std::string SymbolQuery(std::int16_t page);

// Moves the spans of `page` after `span` down by one (closing its gap), or
// those from `span` on up by one (opening one).
std::string CloseSpanGap(std::int16_t page, std::int16_t span);
std::string OpenSpanGap(std::int16_t page, std::int16_t span);

// All rows of one page, and their delete (which ends in " ;").
std::string PageQuery(std::int16_t page);
std::string PageDelete(std::int16_t page);

// ---- Rows --------------------------------------------------------------------

// 5 for a page outside 0 to the library's page limit.
void CheckPage(std::int16_t page);

// Checks a row about to be added (the six fields in table order) before
// anything is written: what the table's `fields` would raise at Update, and
// CheckPage.
void CheckRow(dao::Fields& fields, std::span<const vb::Variant> row);

// Adds `row` (the six fields in table order) through `set`.
void AddRow(dao::Recordset& set, std::span<const vb::Variant> row);

// The rows `query` selects, at most kMaxPageRows, as an array (field, row)
// in `rows`; false, `rows` untouched, when there are none.
bool ReadRows(dao::Database& database, const std::string& query, vb::Variant& rows);

}  // namespace seluvorne::fukasi
