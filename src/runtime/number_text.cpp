// Val, Str, Format and the number reading behind the coercions.

#include "number_text.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "seluvorne/runtime.h"

namespace vb {

namespace {

bool IsSkippedByVal(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

int DigitValue(char c, int radix) {
  int value = -1;
  if (c >= '0' && c <= '9') value = c - '0';
  if (c >= 'a' && c <= 'f') value = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') value = c - 'A' + 10;
  return value < radix ? value : -1;
}

// Reads "&H..." or "&O..." digits from `text` (after the prefix). Values
// that fit 16 bits read as 16-bit two's complement, up to 32 bits as 32-bit;
// beyond that error 6.
double RadixValue(std::string_view digits, int radix) {
  unsigned long long value = 0;
  for (char c : digits) {
    value = value * radix + DigitValue(c, radix);
    if (value > 0xFFFFFFFFull) seluvorne::Raise(seluvorne::errc::kOverflow);
  }
  if (value <= 0xFFFF) return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

// Length of the decimal number (sign, digits, point, exponent) at the start
// of `text`, which holds no blanks; 0 when none.
std::size_t DecimalLength(std::string_view text) {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::size_t digits = 0;
  while (i < text.size() && IsDigit(text[i]))
    ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i]))
      ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    if (j < text.size() && IsDigit(text[j])) {
      while (j < text.size() && IsDigit(text[j]))
        ++j;
      i = j;
    }
  }
  return i;
}

// strtod of a decimal number already checked by DecimalLength; the runtime's
// "D" exponent becomes "E". nullopt beyond the range of a Double.
std::optional<double> DecimalValue(std::string number) {
  for (char& c : number)
    if (c == 'D' || c == 'd') c = 'E';
  errno = 0;
  double value = std::strtod(number.c_str(), nullptr);
  if (errno == ERANGE && std::isinf(value)) return std::nullopt;
  return value;
}

bool StartsWithRadix(std::string_view text, int& radix) {
  if (text.size() < 2 || text[0] != '&') return false;
  if (text[1] == 'H' || text[1] == 'h')
    radix = 16;
  else if (text[1] == 'O' || text[1] == 'o')
    radix = 8;
  else
    return false;
  return true;
}

}  // namespace

double Val(std::string_view text) {
  std::string compact;  // the text without the characters Val skips
  compact.reserve(text.size());
  for (char c : text)
    if (!IsSkippedByVal(c)) compact.push_back(c);
  std::string_view rest = compact;

  int radix = 0;
  if (StartsWithRadix(rest, radix)) {
    std::size_t end = 2;
    while (end < rest.size() && DigitValue(rest[end], radix) >= 0)
      ++end;
    return RadixValue(rest.substr(2, end - 2), radix);
  }
  std::size_t length = DecimalLength(rest);
  if (length == 0) return 0;
  std::optional<double> value = DecimalValue(std::string(rest.substr(0, length)));
  if (!value) seluvorne::Raise(seluvorne::errc::kOverflow);
  return *value;
}

namespace detail {

std::optional<double> ParseNumber(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);

  int radix = 0;
  if (StartsWithRadix(text, radix)) {
    std::string_view digits = text.substr(2);
    if (digits.empty()) return std::nullopt;
    for (char c : digits)
      if (DigitValue(c, radix) < 0) return std::nullopt;
    return RadixValue(digits, radix);
  }
  if (DecimalLength(text) != text.size()) return std::nullopt;
  return DecimalValue(std::string(text));
}

std::string RealText(double value, int digits, bool leading_zero) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.*G", digits, value);
  std::string text = buffer;
  if (text == "-0") text = "0";
  if (!leading_zero) {
    if (text.starts_with("0."))
      text.erase(0, 1);
    else if (text.starts_with("-0."))
      text.erase(1, 1);
  }
  return text;
}

}  // namespace detail

std::string Str(double value) {
  std::string text = detail::RealText(value, 15, false);
  return value < 0 && text != "0" ? text : " " + text;
}

std::string Str(float value) {
  std::string text = detail::RealText(value, 7, false);
  return value < 0 && text != "0" ? text : " " + text;
}

std::string Str(std::int32_t value) {
  return value < 0 ? std::to_string(value) : " " + std::to_string(value);
}

std::string Format(double value, std::string_view pattern) {
  if (pattern.empty() || pattern.find_first_not_of('0') != std::string_view::npos)
    seluvorne::Raise(seluvorne::errc::kInvalidCall, "(format pattern not supported)");
  if (!std::isfinite(value) || std::fabs(value) >= 1e18)
    seluvorne::Raise(seluvorne::errc::kOverflow);
  long long rounded = std::llround(value);  // half away from zero, as Format rounds
  std::string digits = std::to_string(rounded < 0 ? -rounded : rounded);
  if (digits.size() < pattern.size()) digits.insert(0, pattern.size() - digits.size(), '0');
  return rounded < 0 ? "-" + digits : digits;
}

}  // namespace vb
