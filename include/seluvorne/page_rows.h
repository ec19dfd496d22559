// The rows of one table for one page, held in memory: the page buffers of
// the floor, build-out and switch stores.
//
// A page is read into parallel arrays, one per key field (PAGE first) and
// one for the text field DATA, and written back later, possibly to another
// file, under another page number. The stores differ only in the table, its
// key fields, the value a cleared buffer holds, and which buffered rows a
// write keeps; PageRowsLayout carries those differences.
//
//   frame::PageRows rows;
//   frame::ReadPageRows(*source, "SELECT * FROM HANTI WHERE PAGE = 3;", layout, rows);
//   frame::WritePageRows(*destination, layout, rows, 7);  // the rows, now of page 7
//
// RowAppender is how the stores add rows one by one to a table: the writers
// and the buffers' writes all go through it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/array.h"
#include "seluvorne/dao.h"

namespace seluvorne::frame {

// Which rows of a buffer a write adds.
enum class WrittenRows {
  // Every element whose DATA is not "", the last (spare) element included.
  kWithData,
  // Every element but the last, "" included: exactly the rows read.
  kAllButSpare,
};

struct PageRowsLayout {
  std::string_view table;
  // The integer fields, PAGE first; the text field is DATA.
  std::span<const std::string_view> key_fields;
  WrittenRows written = WrittenRows::kWithData;
};

struct PageRows {
  std::vector<vb::Array<std::int16_t>> keys;  // one per key field, PAGE first
  vb::Array<std::string> data;
};

// Every array to the single element 0: the keys hold `key_value`, DATA "".
void ClearPageRows(const PageRowsLayout& layout, std::int16_t key_value, PageRows& rows);

// Reads the rows `query` selects (a record set of type `type`): n rows fill
// elements 0 to n-1 in the order read and leave a spare element n (0 and "").
// DATA that is Null reads as "". Answers n; with no row `rows` is untouched.
std::int32_t ReadPageRows(dao::Database& database, const std::string& query,
                          const PageRowsLayout& layout, PageRows& rows,
                          std::int16_t type = dao::dbOpenDynaset);

// Adds the rows of `rows` that the layout writes to its table, each with
// PAGE = `page` instead of the page it was read from. 9 for a buffer never
// dimensioned. Field rules are checked row by row at Update.
void WritePageRows(dao::Database& database, const PageRowsLayout& layout, const PageRows& rows,
                   std::int16_t page);

// Adds rows to one table through a dynaset opened on its name, the fields
// given by name once. Closes the set when it goes.
class RowAppender {
 public:
  RowAppender(dao::Database& database, std::string_view table,
              std::span<const std::string_view> fields);
  ~RowAppender();
  RowAppender(const RowAppender&) = delete;
  RowAppender& operator=(const RowAppender&) = delete;

  // One row: a value per field given at construction, in that order.
  void Add(std::span<const vb::Variant> values);

 private:
  std::shared_ptr<dao::Recordset> set_;
  std::vector<std::shared_ptr<dao::Field>> fields_;
};

}  // namespace seluvorne::frame
