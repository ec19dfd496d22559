// The rows a read gave, kept compactly until a caller asks for a value.
//
// A record set reads all its rows at once and then hands its values out one
// at a time, often fewer than it read. So a value is kept as a 16-byte cell
// (numbers and short texts in place, longer texts in one shared buffer) and becomes a Variant only
// when it is asked for: no allocation or destructor per value, and a page of
// 2,000 values is three blocks of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/variant.h"

namespace seluvorne::db {

class ReadRows {
 public:
  void Reserve(std::size_t values, std::size_t text_bytes) {
    cells_.reserve(values);
    text_.reserve(text_bytes);
  }
  void AppendNull() { cells_.push_back({Kind::kNull, 0, {}}); }
  void AppendInteger(std::int64_t value) { cells_.push_back({Kind::kInteger, 0, {value}}); }
  void AppendReal(double value) {
    Cell cell{Kind::kReal, 0, {}};
    cell.real = value;
    cells_.push_back(cell);
  }
  void AppendText(std::string_view value) {
    if (value.size() > sizeof(Cell::short_text)) return AppendLongText(value);
    Cell cell{Kind::kText, static_cast<std::uint32_t>(value.size()), {}};
    for (std::size_t i = 0; i < value.size(); ++i)
      cell.short_text[i] = value[i];
    cells_.push_back(cell);
  }
  void EndRow() { ++count_; }

  // Value `index` in row-after-row order: integers as Integer when they fit
  // 16 bits (as the engine's integer fields do), else Long or Double; reals
  // as Double; texts; Null.
  vb::Variant Value(std::size_t index) const {
    const Cell& cell = cells_[index];
    if (cell.kind == Kind::kInteger && cell.integer >= std::numeric_limits<std::int16_t>::min() &&
        cell.integer <= std::numeric_limits<std::int16_t>::max())
      return static_cast<std::int16_t>(cell.integer);
    if (cell.kind == Kind::kText)
      return std::string(
          cell.length <= sizeof cell.short_text ? cell.short_text : text_.data() + cell.offset,
          cell.length);
    return OtherValue(cell);
  }

  std::int32_t count() const { return count_; }  // rows
  std::size_t value_count() const { return cells_.size(); }
  std::size_t text_bytes() const { return text_.size(); }

 private:
  enum class Kind : std::uint8_t { kNull, kInteger, kReal, kText };
  struct Cell {
    Kind kind;
    std::uint32_t length;  // of a text
    union {
      std::int64_t integer;
      double real;
      char short_text[8];    // a text this short is kept in its cell
      std::uint64_t offset;  // of a longer text in text_
    };
  };

  void AppendLongText(std::string_view value);
  vb::Variant OtherValue(const Cell& cell) const;  // beside the two usual kinds

  std::vector<Cell> cells_;
  std::string text_;
  std::int32_t count_ = 0;
};

}  // namespace seluvorne::db
