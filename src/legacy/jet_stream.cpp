#include "jet_stream.h"

#include <charconv>
#include <limits>

namespace seluvorne::legacy {

namespace {

constexpr std::size_t kMaxNameBytes = 64 * 4;     // 64 characters of UTF-8
constexpr std::size_t kMaxValueBytes = 255 * 4;   // the longest text field
constexpr std::int64_t kMaxRows = 1'000'000'000;  // more than a Jet file can hold
constexpr int kMaxFields = 255;

bool IsUtf8(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    auto byte = static_cast<unsigned char>(text[i]);
    std::size_t extra = 0;
    if (byte >= 0x80) {
      if (byte >= 0xC2 && byte <= 0xDF)
        extra = 1;
      else if ((byte >> 4) == 0xE)
        extra = 2;
      else if (byte >= 0xF0 && byte <= 0xF4)
        extra = 3;
      else
        return false;
      if (i + extra >= text.size()) return false;
    }
    char32_t code = extra == 0 ? byte : byte & (0x3F >> extra);
    for (std::size_t k = 1; k <= extra; ++k) {
      auto next = static_cast<unsigned char>(text[i + k]);
      if ((next & 0xC0) != 0x80) return false;
      code = (code << 6) | (next & 0x3F);
    }
    if ((extra == 2 && (code < 0x800 || (code >= 0xD800 && code <= 0xDFFF))) ||
        (extra == 3 && (code < 0x10000 || code > 0x10FFFF)))
      return false;
    i += extra + 1;
  }
  return true;
}

// Reads one line's fields, left to right.
class Line {
 public:
  Line(std::string_view text, std::size_t number) : rest_(text), number_(number) {}

  [[noreturn]] void Fail(std::string_view what) const {
    throw StreamError("line " + std::to_string(number_) + ": " + std::string(what));
  }

  std::int64_t Number(std::int64_t low, std::int64_t high, std::string_view what) {
    Blank();
    std::int64_t value = 0;
    auto [end, status] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (status != std::errc() || end == rest_.data() || (rest_[0] == '0' && end - rest_.data() > 1))
      Fail("bad " + std::string(what));
    if (value < low || value > high) Fail(std::string(what) + " out of range");
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return value;
  }

  // <count>:<bytes>, or "-" (Null) when `null_allowed`.
  std::optional<std::string> Text(std::size_t max_bytes, std::string_view what,
                                  bool null_allowed = false) {
    Blank();
    if (!rest_.empty() && rest_[0] == '-' && (rest_.size() == 1 || rest_[1] == ' ')) {
      if (!null_allowed) Fail(std::string(what) + " cannot be Null");
      rest_.remove_prefix(1);
      return std::nullopt;
    }
    std::size_t count = 0;
    auto [end, status] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), count);
    if (status != std::errc() || end == rest_.data() || end == rest_.data() + rest_.size() ||
        *end != ':' || (rest_[0] == '0' && end - rest_.data() > 1))
      Fail("bad " + std::string(what));
    std::size_t start = static_cast<std::size_t>(end - rest_.data()) + 1;
    if (count > max_bytes) Fail(std::string(what) + " too long");
    if (count > rest_.size() - start) Fail(std::string(what) + " cut off");
    std::string text(rest_.substr(start, count));
    if (!IsUtf8(text)) Fail(std::string(what) + " is not UTF-8");
    rest_.remove_prefix(start + count);
    return text;
  }

  void End() const {
    if (!rest_.empty()) Fail("unexpected text at the end of the line");
  }

 private:
  void Blank() {
    if (rest_.empty() || rest_[0] != ' ') Fail("missing field");
    rest_.remove_prefix(1);
  }

  std::string_view rest_;
  std::size_t number_;
};

std::int64_t IntegerValue(const std::string& text, Line& line) {
  std::int64_t value = 0;
  const char* first = text.data();
  auto [end, status] = std::from_chars(first, first + text.size(), value);
  if (status != std::errc() || end != first + text.size() || text.empty())
    line.Fail("integer value '" + text + "' is no number");
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max())
    line.Fail("integer value out of range");
  return value;
}

std::size_t CharacterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (char c : utf8)
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
  return count;
}

}  // namespace

JetFile ParseJetStream(std::string_view stream) {
  JetFile file;
  JetTable* table = nullptr;  // the table whose fields or rows come next
  std::size_t fields_expected = 0;
  bool header = false, ended = false;

  std::size_t number = 0;
  while (!stream.empty()) {
    ++number;
    std::size_t newline = stream.find('\n');
    if (newline == std::string_view::npos)
      throw StreamError("line " + std::to_string(number) + ": cut off");
    std::string_view text = stream.substr(0, newline);
    stream.remove_prefix(newline + 1);
    if (text.empty()) throw StreamError("line " + std::to_string(number) + ": empty");
    Line line(text.substr(1), number);
    char tag = text[0];

    if (tag == 'X') {
      auto message = line.Text(4096, "message");
      throw StreamError("the reader stopped: " + *message);
    }
    if (ended) line.Fail("text after the end");
    if (!header) {
      if (tag != 'H') line.Fail("the stream does not start with its header");
      if (line.Number(1, 1, "stream version") != 1) line.Fail("unknown stream version");
      file.jet_version = static_cast<int>(line.Number(3, 4, "Jet version"));
      file.code_page = static_cast<int>(line.Number(0, 65535, "code page"));
      line.End();
      header = true;
      continue;
    }
    switch (tag) {
      case 'T': {
        if (table) line.Fail("a table starts inside another");
        JetTable next;
        next.name = *line.Text(kMaxNameBytes, "table name");
        if (next.name.empty()) line.Fail("empty table name");
        next.recorded_rows = line.Number(0, kMaxRows, "row count");
        fields_expected = static_cast<std::size_t>(line.Number(1, kMaxFields, "field count"));
        line.End();
        file.tables.push_back(std::move(next));
        table = &file.tables.back();
        break;
      }
      case 'F': {
        if (!table || !table->rows.empty() || table->fields.size() == fields_expected)
          line.Fail("a field out of place");
        JetField field;
        field.name = *line.Text(kMaxNameBytes, "field name");
        if (field.name.empty()) line.Fail("empty field name");
        field.type = static_cast<std::int16_t>(line.Number(0, 255, "field type"));
        field.size = static_cast<std::int32_t>(line.Number(0, 65535, "field size"));
        field.default_value = line.Text(kMaxValueBytes, "default value", true);
        field.allow_zero_length = line.Number(0, 1, "allow-zero-length flag") == 1;
        line.End();
        if (field.type != 3 && field.type != 10)
          line.Fail("field " + field.name + " has type " + std::to_string(field.type) +
                    ", which a floor file does not hold");
        if (field.type == 10 && (field.size < 1 || field.size > 255))
          line.Fail("text field " + field.name + " has size " + std::to_string(field.size));
        table->fields.push_back(std::move(field));
        break;
      }
      case 'R': {
        if (!table || table->fields.size() != fields_expected) line.Fail("a row out of place");
        if (static_cast<std::int64_t>(table->rows.size()) >= kMaxRows) line.Fail("too many rows");
        std::vector<Cell> row;
        row.reserve(fields_expected);
        for (const JetField& field : table->fields) {
          Cell cell = line.Text(kMaxValueBytes, "value", true);
          if (cell && field.type == 3) IntegerValue(*cell, line);
          if (cell && field.type == 10 &&
              CharacterCount(*cell) > static_cast<std::size_t>(field.size))
            line.Fail("a value longer than field " + field.name);
          row.push_back(std::move(cell));
        }
        line.End();
        table->rows.push_back(std::move(row));
        break;
      }
      case 'E': {
        if (!table || table->fields.size() != fields_expected)
          line.Fail("a table end out of place");
        std::int64_t read = line.Number(0, kMaxRows, "rows read");
        line.End();
        if (read != static_cast<std::int64_t>(table->rows.size()))
          line.Fail("the table's row count does not match its rows");
        table = nullptr;
        break;
      }
      case 'Z':
        if (table) line.Fail("the stream ends inside a table");
        line.End();
        ended = true;
        break;
      default:
        line.Fail("unknown line");
    }
  }
  if (!ended) throw StreamError("the stream is cut off after line " + std::to_string(number));
  return file;
}

const JetTable* FirstIncompleteTable(const JetFile& file) {
  for (const JetTable& table : file.tables)
    if (static_cast<std::int64_t>(table.rows.size()) != table.recorded_rows) return &table;
  return nullptr;
}

}  // namespace seluvorne::legacy
