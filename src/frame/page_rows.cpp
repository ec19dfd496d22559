// Page buffers: a table's rows of one page read into parallel arrays and
// written back under another page.

#include "seluvorne/page_rows.h"

#include "seluvorne/runtime.h"

namespace seluvorne::frame {

namespace {

constexpr std::string_view kDataField = "DATA";

}  // namespace

void ClearPageRows(const PageRowsLayout& layout, std::int16_t key_value, PageRows& rows) {
  rows.keys.resize(layout.key_fields.size());
  for (auto& key : rows.keys) {
    key.ReDim({0});
    key(0) = key_value;
  }
  rows.data.ReDim({0});
}

std::int32_t ReadPageRows(dao::Database& database, const std::string& query,
                          const PageRowsLayout& layout, PageRows& rows, std::int16_t type) {
  auto set = database.OpenRecordset(query, type);
  if (!(set->IsEOF() && set->IsBOF())) set->MoveLast();
  const std::int32_t count = set->RecordCount();
  if (count <= 0) {
    set->Close();
    return 0;
  }
  // Filled aside, so that a row that cannot be read leaves the buffer as it was.
  PageRows read;
  auto fields = set->Fields();
  std::vector<std::shared_ptr<dao::Field>> keys;
  for (std::string_view name : layout.key_fields) {
    keys.push_back(fields->Item(name));
    read.keys.emplace_back(vb::Array<std::int16_t>({count}));
  }
  const auto& data = fields->Item(kDataField);
  read.data.ReDim({count});
  set->MoveFirst();
  for (std::int32_t i = 0; !set->IsEOF(); ++i, set->MoveNext()) {
    for (std::size_t k = 0; k < keys.size(); ++k)
      read.keys[k](i) = vb::CInt(keys[k]->Value());
    const vb::Variant text = data->Value();
    read.data(i) = text.isNull() ? std::string() : vb::CStr(text);
  }
  set->Close();
  rows = std::move(read);
  return count;
}

void WritePageRows(dao::Database& database, const PageRowsLayout& layout, const PageRows& rows,
                   std::int16_t page) {
  std::vector<std::string_view> names(layout.key_fields.begin(), layout.key_fields.end());
  names.push_back(kDataField);
  const std::int32_t upper = rows.keys.empty() ? rows.data.UBound() : rows.keys[0].UBound();
  const std::int32_t last = layout.written == WrittenRows::kAllButSpare ? upper - 1 : upper;
  RowAppender appender(database, layout.table, names);
  std::vector<vb::Variant> values(names.size());
  for (std::int32_t i = 0; i <= last; ++i) {
    const std::string& text = rows.data(i);
    if (text.empty() && layout.written == WrittenRows::kWithData) continue;
    values[0] = page;
    for (std::size_t k = 1; k < rows.keys.size(); ++k)
      values[k] = rows.keys[k](i);
    values.back() = text;
    appender.Add(values);
  }
}

RowAppender::RowAppender(dao::Database& database, std::string_view table,
                         std::span<const std::string_view> fields)
    : set_(database.OpenRecordset(std::string(table), dao::dbOpenDynaset)) {
  auto columns = set_->Fields();
  for (std::string_view name : fields)
    fields_.push_back(columns->Item(name));
}

RowAppender::~RowAppender() {
  try {
    set_->Close();
  } catch (...) {  // the database closed under the set: nothing left to release
  }
}

void RowAppender::Add(std::span<const vb::Variant> values) {
  set_->AddNew();
  for (std::size_t i = 0; i < fields_.size(); ++i)
    fields_[i]->SetValue(values[i]);
  set_->Update();
}

}  // namespace seluvorne::frame
