#include "read_rows.h"

#include <limits>

#include "seluvorne/error.h"

namespace seluvorne::db {

void ReadRows::AppendLongText(std::string_view value) {
  if (value.size() > std::numeric_limits<std::uint32_t>::max()) Raise(errc::kOutOfMemory);
  Cell cell{Kind::kText, static_cast<std::uint32_t>(value.size()), {}};
  cell.offset = text_.size();
  text_.append(value);
  cells_.push_back(cell);
}

vb::Variant ReadRows::OtherValue(const Cell& cell) const {
  switch (cell.kind) {
    case Kind::kNull:
      return vb::Null;
    case Kind::kInteger:
      if (cell.integer >= std::numeric_limits<std::int16_t>::min() &&
          cell.integer <= std::numeric_limits<std::int16_t>::max())
        return static_cast<std::int16_t>(cell.integer);
      if (cell.integer >= std::numeric_limits<std::int32_t>::min() &&
          cell.integer <= std::numeric_limits<std::int32_t>::max())
        return static_cast<std::int32_t>(cell.integer);
      return static_cast<double>(cell.integer);
    case Kind::kReal:
      return cell.real;
    case Kind::kText:
      break;
  }
  return std::string(text_.data() + cell.offset, cell.length);
}

}  // namespace seluvorne::db
