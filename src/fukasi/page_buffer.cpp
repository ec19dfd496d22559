// The page buffer: a whole page read into parallel arrays, written back under
// the page number in pPageNo.

#include <vector>

#include "kutaidata.h"
#include "seluvorne/member_transaction.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

namespace {

constexpr std::string_view kKeys[] = {"PAGE", "SPANNO", "ITI", "SYURUI", "BANGOU"};
// Rows whose value is "" are not written.
constexpr frame::PageRowsLayout kLayout{fukasi::kTable, kKeys};

}  // namespace

void clsHariFukasiDS::wBuf_Clear() {
  frame::ClearPageRows(kLayout, -1, buffer_);
}

bool clsHariFukasiDS::ReadDB() {
  // A page without rows leaves the buffer as it was.
  return frame::ReadPageRows(OpenDatabase("ReadDB"), fukasi::PageQuery(pPageNo), kLayout, buffer_,
                             dao::dbOpenSnapshot) > 0;
}

void clsHariFukasiDS::HariFukasi_Del_DBTBL() {
  OpenDatabase("HariFukasi_Del_DBTBL").Execute(fukasi::PageDelete(pPageNo), dao::dbFailOnError);
}

bool clsHariFukasiDS::WriteDB() {
  dao::Database& database = OpenDatabase("WriteDB");
  // Checked before the page is deleted, so that a bad page or an unread
  // buffer loses nothing.
  fukasi::CheckPage(pPageNo);
  if (buffer_.keys.empty())
    Raise(errc::kSubscriptOutOfRange, "(the page buffer is empty: ReadDB or wBuf_Clear first)");
  auto fields = database.TableDefs()->Item(fukasi::kTable)->Fields();
  std::vector<vb::Variant> row(fukasi::kFieldCount);
  for (std::int32_t i = 0; i <= buffer_.data.UBound(); ++i) {
    if (buffer_.data(i).empty()) continue;
    row[0] = pPageNo;
    for (std::size_t k = 1; k < buffer_.keys.size(); ++k)
      row[k] = buffer_.keys[k](i);
    row.back() = buffer_.data(i);
    fukasi::CheckRow(*fields, row);
  }
  dao::InMemberTransaction(database, [&] {
    HariFukasi_Del_DBTBL();
    frame::WritePageRows(database, kLayout, buffer_, pPageNo);
  });
  return true;
}

}  // namespace seluvorne
