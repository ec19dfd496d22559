#include "kutaidata.h"

#include "seluvorne/frame.h"
#include "seluvorne/runtime.h"

namespace seluvorne::fukasi {

using vb::StrTrimmed;

std::string FloorFile(const std::string& folder, std::string_view name) {
  if (folder.empty()) Raise(errc::kBadFileName, "(no floor folder given)");
  return folder + "\\" + std::string(name);
}

std::string RangeFilter(const Key& key, Level level) {
  std::string text = " * FROM " + std::string(kTable);
  if (level >= Level::kPage)
    text += " WHERE PAGE BETWEEN " + StrTrimmed(key.page_from) + " AND " + StrTrimmed(key.page_to);
  if (level >= Level::kSpan)
    text += " AND SPANNO BETWEEN " + StrTrimmed(key.span_from) + " AND " + StrTrimmed(key.span_to);
  if (level >= Level::kIti)
    text += " AND ITI BETWEEN " + StrTrimmed(key.iti_from) + " AND " + StrTrimmed(key.iti_to);
  if (level >= Level::kSyurui)
    text +=
        " AND SYURUI BETWEEN " + StrTrimmed(key.syurui_from) + " AND " + StrTrimmed(key.syurui_to);
  if (level >= Level::kCode) text += " AND BANGOU = " + StrTrimmed(key.code);
  return text + ";";
}

std::string SymbolQuery(std::int16_t page) {
  return "SELECT DATA FROM " + std::string(kTable) + " WHERE PAGE = " + vb::Str(page) +
         " AND BANGOU =" + vb::Str(code::kKigou) + ";";
}

std::string CloseSpanGap(std::int16_t page, std::int16_t span) {
  return "UPDATE " + std::string(kTable) +
         " SET SPANNO = SPANNO - 1 Where PAGE = " + StrTrimmed(page) + " AND SPANNO > " +
         StrTrimmed(span) + ";";
}

std::string OpenSpanGap(std::int16_t page, std::int16_t span) {
  return "UPDATE " + std::string(kTable) +
         " SET SPANNO = SPANNO + 1 Where PAGE = " + StrTrimmed(page) +
         " AND SPANNO >= " + StrTrimmed(span) + ";";
}

std::string PageQuery(std::int16_t page) {
  return "SELECT * FROM " + std::string(kTable) + " WHERE PAGE = " + StrTrimmed(page) + ";";
}

std::string PageDelete(std::int16_t page) {
  return "DELETE * FROM " + std::string(kTable) + " WHERE PAGE = " + StrTrimmed(page) + " ;";
}

void CheckPage(std::int16_t page) {
  if (page < 0 || page > frame::gPageMax)
    Raise(errc::kInvalidCall,
          "(page " + StrTrimmed(page) + " is outside 0 to " + StrTrimmed(frame::gPageMax) + ")");
}

void CheckRow(dao::Fields& fields, std::span<const vb::Variant> row) {
  for (int i = 1; i < kFieldCount; ++i)
    fields.Item(i)->StoredValue(row[i]);
  const vb::Variant page = fields.Item(0)->StoredValue(row[0]);  // Integer or Null
  if (!page.peek<std::int16_t>()) Raise(errc::kInvalidCall, "(a row without a page)");
  CheckPage(*page.peek<std::int16_t>());
}

void AddRow(dao::Recordset& set, std::span<const vb::Variant> row) {
  set.AddNew();
  auto fields = set.Fields();
  for (int i = 0; i < kFieldCount; ++i)
    fields->Item(i)->SetValue(row[i]);
  set.Update();
}

bool ReadRows(dao::Database& database, const std::string& query, vb::Variant& rows) {
  auto set = database.OpenRecordset(query, dao::dbOpenSnapshot);
  const bool found = !set->IsEOF();
  if (found) rows = set->GetRows(kMaxPageRows);
  set->Close();
  return found;
}

}  // namespace seluvorne::fukasi
