// Queries, deletes and copies of ranges of the current key, span
// renumbering, and the page's validity.

#include "kutaidata.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

using fukasi::Level;
using fukasi::RangeFilter;

// ---- Queries -----------------------------------------------------------------

std::shared_ptr<dao::Recordset> clsHariFukasiDS::Snapshot(Level level) {
  return database_->OpenRecordset("SELECT" + RangeFilter(key_, level), dao::dbOpenSnapshot);
}

bool clsHariFukasiDS::GetRecordRange(Level level, std::shared_ptr<dao::Recordset>& CopySet) {
  if (!EnsureOpen()) return false;
  CopySet = Snapshot(level);
  if (CopySet->IsEOF()) return false;
  CopySet->MoveFirst();
  return true;
}

bool clsHariFukasiDS::GetRecordAll(std::shared_ptr<dao::Recordset>& CopySet) {
  return GetRecordRange(Level::kAll, CopySet);
}
bool clsHariFukasiDS::GetRecordSpan(std::shared_ptr<dao::Recordset>& CopySet) {
  return GetRecordRange(Level::kSpan, CopySet);
}
bool clsHariFukasiDS::GetRecordIti(std::shared_ptr<dao::Recordset>& CopySet) {
  return GetRecordRange(Level::kIti, CopySet);
}
bool clsHariFukasiDS::GetRecordSyurui(std::shared_ptr<dao::Recordset>& CopySet) {
  return GetRecordRange(Level::kSyurui, CopySet);
}

bool clsHariFukasiDS::GetRecordPage(vb::Variant& vCopySet) {
  if (!EnsureOpen()) return false;
  return fukasi::ReadRows(*database_, "SELECT" + RangeFilter(key_, Level::kPage), vCopySet);
}

// ---- Deletes -----------------------------------------------------------------

bool clsHariFukasiDS::DeleteRange(Level level) {
  if (!EnsureOpen()) return false;
  database_->Execute("DELETE" + RangeFilter(key_, level), dao::dbFailOnError);
  return true;
}

bool clsHariFukasiDS::DeletePage() {
  return DeleteRange(Level::kPage);
}
bool clsHariFukasiDS::DeleteSpan() {
  return DeleteRange(Level::kSpan);
}
bool clsHariFukasiDS::DeleteIti() {
  return DeleteRange(Level::kIti);
}
bool clsHariFukasiDS::DeleteSyurui() {
  return DeleteRange(Level::kSyurui);
}

// ---- Copies ------------------------------------------------------------------

bool clsHariFukasiDS::CopyRecordPage(const vb::Variant& CopySet) {
  if (!EnsureOpen()) return false;
  // Any element type converts; a value that is no array raises 13.
  const auto rows = vb::FromVariant<vb::Array<vb::Variant>>(CopySet);
  if (rows.dims() != 2 || rows.UBound(1) != fukasi::kFieldCount - 1)
    Raise(errc::kInvalidCall, "(CopySet must be an array (field, row) of the 6 fields of " +
                                  std::string(fukasi::kTable) + ", as GetRecordPage gives it)");
  // Every row is checked before the first is added, so a bad one adds none.
  auto fields = database_->TableDefs()->Item(fukasi::kTable)->Fields();
  const std::int32_t last = rows.UBound(2);
  for (std::int32_t row = 0; row <= last; ++row)
    fukasi::CheckRow(*fields, {&rows(0, row), fukasi::kFieldCount});

  // Rows are only added, so the table is opened by name: a query of the
  // whole table would read every row of it first.
  auto set = database_->OpenRecordset(std::string(fukasi::kTable), dao::dbOpenDynaset);
  for (std::int32_t row = 0; row <= last; ++row)
    fukasi::AddRow(*set, {&rows(0, row), fukasi::kFieldCount});
  set->Close();
  return true;
}

bool clsHariFukasiDS::CopyRecordRange(Level level, std::shared_ptr<dao::Recordset>& CopySet) {
  if (!EnsureOpen()) return false;
  if (!CopySet) Raise(errc::kObjectNotSet, "(CopySet)");
  // The suite's clients know these as copies that copy nothing: the range is
  // opened, and the caller's set is closed in its place.
  database_->OpenRecordset("SELECT" + RangeFilter(key_, level), dao::dbOpenDynaset)->Close();
  CopySet->Close();
  return true;
}

bool clsHariFukasiDS::CopyRecordSpan(std::shared_ptr<dao::Recordset>& CopySet) {
  return CopyRecordRange(Level::kSpan, CopySet);
}
bool clsHariFukasiDS::CopyRecordIti(std::shared_ptr<dao::Recordset>& CopySet) {
  return CopyRecordRange(Level::kIti, CopySet);
}
bool clsHariFukasiDS::CopyRecordSyurui(std::shared_ptr<dao::Recordset>& CopySet) {
  return CopyRecordRange(Level::kSyurui, CopySet);
}

void clsHariFukasiDS::UpdatePage(vb::Variant& Myset, std::int16_t Page) {
  if (!Myset.isArray()) return;
  std::visit(
      [Page](auto& rows) {
        using Element = typename std::remove_cvref_t<decltype(rows)>::value_type;
        const Element page = vb::FromVariant<Element>(vb::Variant(Page));
        const std::int32_t last = rows.UBound(2);  // 9 unless (field, row)
        for (std::int32_t row = 0; row <= last; ++row)
          rows(0, row) = page;
      },
      Myset.anyArray());
}

// ---- Spans -------------------------------------------------------------------

bool clsHariFukasiDS::TumeruSpan() {
  if (!EnsureOpen()) return false;
  DeleteSpan();
  database_->Execute(fukasi::CloseSpanGap(key_.page_from, key_.span_from), dao::dbFailOnError);
  return true;
}

bool clsHariFukasiDS::InsertSpan() {
  if (!EnsureOpen()) return false;
  database_->Execute(fukasi::OpenSpanGap(key_.page_from, key_.span_from), dao::dbFailOnError);
  return true;
}

// ---- Validity ----------------------------------------------------------------

bool clsHariFukasiDS::isYuukou() {
  if (!EnsureOpen()) return false;
  auto set = database_->OpenRecordset(fukasi::SymbolQuery(key_.page_from), dao::dbOpenSnapshot);
  bool valid = false;
  for (; !valid && !set->IsEOF(); set->MoveNext()) {
    const vb::Variant symbol = set->Value(fukasi::kDataField);
    valid = !symbol.isNull() && !vb::Trim(vb::CStr(symbol)).empty();
  }
  set->Close();
  return valid;
}

}  // namespace seluvorne
