// Character-counted text functions over UTF-8.

#include "seluvorne/runtime.h"

namespace vb {

namespace {

using seluvorne::Raise;
namespace errc = seluvorne::errc;

// Byte offset of the character `count` characters after `from` (or the end).
std::size_t Advance(std::string_view text, std::size_t from, std::int32_t count) {
  std::size_t position = from;
  for (std::int32_t i = 0; i < count && position < text.size(); ++i)
    DecodeNext(text, position);
  return position;
}

}  // namespace

char32_t DecodeNext(std::string_view text, std::size_t& position) {
  constexpr char32_t kReplacement = 0xFFFD;
  auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned char lead = byte(position);
  int length = lead < 0x80           ? 1
               : (lead >> 5) == 0x6  ? 2
               : (lead >> 4) == 0xE  ? 3
               : (lead >> 3) == 0x1E ? 4
                                     : 0;
  if (length == 1) {
    ++position;
    return lead;
  }
  if (length == 0 || position + length > text.size()) {
    ++position;
    return kReplacement;
  }
  char32_t code = lead & (0x7F >> length);
  for (int i = 1; i < length; ++i) {
    unsigned char next = byte(position + i);
    if ((next & 0xC0) != 0x80) {
      ++position;
      return kReplacement;
    }
    code = (code << 6) | (next & 0x3F);
  }
  static constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kSmallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
    ++position;  // overlong forms and surrogates are not characters
    return kReplacement;
  }
  position += length;
  return code;
}

std::string LTrim(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string RTrim(std::string_view text) {
  std::size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string Trim(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::int32_t Len(std::string_view text) {
  std::int32_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count)
    DecodeNext(text, position);
  return count;
}

std::string Left(std::string_view text, std::int32_t count) {
  if (count < 0) Raise(errc::kInvalidCall);
  return std::string(text.substr(0, Advance(text, 0, count)));
}

std::string Right(std::string_view text, std::int32_t count) {
  if (count < 0) Raise(errc::kInvalidCall);
  std::int32_t length = Len(text);
  if (count >= length) return std::string(text);
  return std::string(text.substr(Advance(text, 0, length - count)));
}

std::string Mid(std::string_view text, std::int32_t start, std::int32_t count) {
  if (start < 1) Raise(errc::kInvalidCall);
  std::size_t from = Advance(text, 0, start - 1);
  std::size_t to = count < 0 ? text.size() : Advance(text, from, count);
  return std::string(text.substr(from, to - from));
}

std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view find) {
  if (start < 1) Raise(errc::kInvalidCall);
  std::size_t position = 0;
  std::int32_t index = 1;  // character number at `position`
  for (; index < start && position < text.size(); ++index)
    DecodeNext(text, position);
  if (index < start) return 0;  // start lies beyond the end
  if (find.empty()) return start;
  for (; position < text.size(); ++index) {
    if (text.compare(position, find.size(), find) == 0) return index;
    DecodeNext(text, position);
  }
  return 0;
}

Array<std::string> Split(std::string_view text, std::string_view delimiter) {
  std::vector<std::string> parts;
  if (!text.empty()) {
    if (delimiter.empty()) {
      parts.emplace_back(text);
    } else {
      std::size_t from = 0;
      for (std::size_t at; (at = text.find(delimiter, from)) != std::string_view::npos;
           from = at + delimiter.size())
        parts.emplace_back(text.substr(from, at - from));
      parts.emplace_back(text.substr(from));
    }
  }
  Array<std::string> result({static_cast<std::int32_t>(parts.size()) - 1});
  std::move(parts.begin(), parts.end(), result.begin());
  return result;
}

}  // namespace vb
