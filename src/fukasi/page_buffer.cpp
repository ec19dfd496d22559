// The page buffer: a whole page read into parallel arrays, written back under
// the page number in pPageNo.

#include <array>
#include <vector>

#include "kutaidata.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

void clsHariFukasiDS::wBuf_Clear() {
  for (auto* numbers :
       {&buffer_.page, &buffer_.span, &buffer_.iti, &buffer_.syurui, &buffer_.code}) {
    numbers->ReDim({0});
    (*numbers)(0) = -1;
  }
  buffer_.data.ReDim({0});
}

bool clsHariFukasiDS::ReadDB() {
  auto set = OpenDatabase("ReadDB").OpenRecordset(fukasi::PageQuery(pPageNo), dao::dbOpenSnapshot);
  if (set->IsEOF()) {
    set->Close();
    return false;  // the buffer keeps what it held
  }
  set->MoveLast();
  const std::int32_t rows = set->RecordCount();
  set->MoveFirst();

  // One entry more than rows, the last left empty. Filled aside, so that a
  // row that cannot be read leaves the buffer as it was.
  PageBuffer read;
  for (auto* numbers : {&read.page, &read.span, &read.iti, &read.syurui, &read.code})
    numbers->ReDim({rows});
  read.data.ReDim({rows});
  auto fields = set->Fields();
  for (std::int32_t row = 0; row < rows; ++row, set->MoveNext()) {
    read.page(row) = vb::CInt(fields->Item(0)->Value());
    read.span(row) = vb::CInt(fields->Item(1)->Value());
    read.iti(row) = vb::CInt(fields->Item(2)->Value());
    read.syurui(row) = vb::CInt(fields->Item(3)->Value());
    read.code(row) = vb::CInt(fields->Item(4)->Value());
    const vb::Variant data = fields->Item(5)->Value();
    read.data(row) = data.isNull() ? std::string() : vb::CStr(data);  // Null: no value
  }
  set->Close();
  buffer_ = std::move(read);
  return true;
}

void clsHariFukasiDS::HariFukasi_Del_DBTBL() {
  OpenDatabase("HariFukasi_Del_DBTBL").Execute(fukasi::PageDelete(pPageNo), dao::dbFailOnError);
}

bool clsHariFukasiDS::WriteDB() {
  dao::Database& database = OpenDatabase("WriteDB");
  // Checked before the page is deleted, so that a bad page or an unread
  // buffer loses nothing.
  fukasi::CheckPage(pPageNo);
  if (!buffer_.page.allocated())
    Raise(errc::kSubscriptOutOfRange, "(the page buffer is empty: ReadDB or wBuf_Clear first)");
  auto fields = database.TableDefs()->Item(fukasi::kTable)->Fields();
  const std::int32_t last = buffer_.page.UBound();
  std::vector<std::array<vb::Variant, fukasi::kFieldCount>> rows;
  for (std::int32_t i = 0; i <= last; ++i) {
    if (buffer_.data(i).empty()) continue;
    rows.push_back({pPageNo, buffer_.span(i), buffer_.iti(i), buffer_.syurui(i), buffer_.code(i),
                    buffer_.data(i)});
    fukasi::CheckRow(*fields, rows.back());
  }

  HariFukasi_Del_DBTBL();
  auto set = database.OpenRecordset(std::string(fukasi::kTable), dao::dbOpenDynaset);
  for (const auto& row : rows)
    fukasi::AddRow(*set, row);
  set->Close();
  return true;
}

}  // namespace seluvorne
