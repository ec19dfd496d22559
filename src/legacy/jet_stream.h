// The stream the Jet reader helper (tools/jet-reader) writes: a legacy
// database's user tables, their fields and every row, as text lines.
//
//   H 1 <jet version 3|4> <code page>
//   T <name> <recorded rows> <field count>          one per table, then
//   F <name> <type> <size> <default|-> <0|1>        one per field, in order
//   R <value> ...                                   one per row, a value per field
//   E <rows read>
//   Z                                               the end of a complete stream
//   X <message>                                     the helper gave up
//
// A name, default or value is <byte count>:<bytes> (UTF-8); "-" is Null, so
// Null and "" stay apart. Fields are separated by one blank, lines end in
// "\n". The parser accepts nothing else: every count, number and text is
// checked, and anything out of place is a malformed stream.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace seluvorne::legacy {

using Cell = std::optional<std::string>;  // nullopt is Null

struct JetField {
  std::string name;
  std::int16_t type = 0;  // 3 (Integer) or 10 (Text): what the engine stores
  std::int32_t size = 0;  // characters of a text field, 2 for an integer
  std::optional<std::string> default_value;
  bool allow_zero_length = false;
};

struct JetTable {
  std::string name;
  std::int64_t recorded_rows = 0;  // the row count the file's table definition holds
  std::vector<JetField> fields;
  std::vector<std::vector<Cell>> rows;  // as read, in the file's order
};

struct JetFile {
  int jet_version = 0;
  int code_page = 0;
  std::vector<JetTable> tables;
};

// A stream that breaks the format, or one in which the helper reported a
// failure ("X").
class StreamError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses a whole stream; raises StreamError naming the line at fault.
JetFile ParseJetStream(std::string_view stream);

// The first table whose rows read differ from its recorded row count, or
// null when every table is whole.
const JetTable* FirstIncompleteTable(const JetFile& file);

}  // namespace seluvorne::legacy
