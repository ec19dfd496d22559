// The runtime's value rules, in one place.
//
// The suite's clients were written against a runtime with particular rules
// for numbers and text: 16-bit integers that overflow with error 6, rounding
// half to even, a lenient text-to-number parse, number texts with a leading
// blank, character-counted text functions. Every layer of the library uses
// these helpers instead of ad-hoc conversions, so the rules hold everywhere.
//
// Text is UTF-8; every character operation counts Unicode code points.
#pragma once

#include <climits>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "seluvorne/array.h"
#include "seluvorne/error.h"
#include "seluvorne/variant.h"

namespace vb {

// ---- Boolean as a number --------------------------------------------------

inline constexpr std::int16_t kTrue = -1;
inline constexpr std::int16_t kFalse = 0;
inline constexpr std::int16_t BoolToInt(bool b) {
  return b ? kTrue : kFalse;
}

// ---- Coercions (Variant and numbers) --------------------------------------
//
// Empty reads as 0, "" or False; Null raises 94; a text must be a number as
// a whole (blanks around it allowed, "&H"/"&O" prefixes, "True"/"False"),
// else 13; an object answers its default member, or 438 without one; an
// array raises 13. Narrowing rounds half to even and raises 6 out of range.

std::int16_t CInt(double value);
std::int32_t CLng(double value);
float CSng(double value);

std::int16_t CInt(const Variant& value);
std::int32_t CLng(const Variant& value);
float CSng(const Variant& value);
double CDbl(const Variant& value);
bool CBool(const Variant& value);
std::string CStr(const Variant& value);
// As above; a text held by a value about to go is moved out, not copied.
std::string CStr(Variant&& value);
// An object reference: Empty gives Nothing, any value but an object raises 13.
Object CObj(const Variant& value);

// Whether CDbl would succeed on the value.
bool IsNumeric(const Variant& value);

// ---- Checked 16/32-bit arithmetic (error 6 on overflow) -------------------

template <class T>
concept RuntimeInteger = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t>;

template <RuntimeInteger T>
T Narrow(long long value) {
  if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
    seluvorne::Raise(seluvorne::errc::kOverflow);
  return static_cast<T>(value);
}
template <RuntimeInteger T>
T Add(T a, T b) {
  return Narrow<T>(static_cast<long long>(a) + b);
}
template <RuntimeInteger T>
T Sub(T a, T b) {
  return Narrow<T>(static_cast<long long>(a) - b);
}
template <RuntimeInteger T>
T Mul(T a, T b) {
  return Narrow<T>(static_cast<long long>(a) * b);
}
// a \ b: integer division truncating toward zero; 11 when b is 0.
template <RuntimeInteger T>
T IntDiv(T a, T b) {
  if (b == 0) seluvorne::Raise(seluvorne::errc::kDivisionByZero);
  return Narrow<T>(static_cast<long long>(a) / b);
}
// a Mod b: the remainder takes the sign of a; 11 when b is 0.
template <RuntimeInteger T>
T Mod(T a, T b) {
  if (b == 0) seluvorne::Raise(seluvorne::errc::kDivisionByZero);
  return static_cast<T>(static_cast<long long>(a) % b);
}

// Fix truncates toward zero, Int toward minus infinity.
double Fix(double value);
double Int(double value);

// ---- Text and numbers -----------------------------------------------------

// Val: the number at the start of the text. Blanks, tabs and line breaks are
// skipped wherever they stand; then an optional sign, digits with at most one
// decimal point and an optional exponent ("E" or "D"); or "&H"/"&O" with hex
// or octal digits (16-bit when the value fits, as for "&HFFFF" = -1). No
// number gives 0. A value beyond Double raises 6.
double Val(std::string_view text);

// Str: the number's text with a leading blank for a value that is not
// negative; reals with up to 15 (Double) or 7 (Single) significant digits,
// without the 0 before the decimal point (" .5"), exponent form beyond that
// ("1E+20").
std::string Str(double value);
std::string Str(float value);
std::string Str(std::int32_t value);
inline std::string Str(std::int16_t value) {
  return Str(static_cast<std::int32_t>(value));
}
// Trim(Str(value)): how the library puts numbers into statements.
template <class N>
std::string StrTrimmed(N value) {
  std::string text = Str(value);
  if (!text.empty() && text.front() == ' ') text.erase(0, 1);
  return text;
}

// Format(value, pattern) for the digit patterns the library uses ("000",
// "00000"): rounded half away from zero, zero-padded to the pattern's length,
// a minus sign before the digits. Any other pattern raises 5.
std::string Format(double value, std::string_view pattern);

// ---- Character-counted text functions -------------------------------------

// Blanks (U+0020) only, as the runtime trims.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

std::int32_t Len(std::string_view text);
// Left/Right of n characters; n < 0 raises 5.
std::string Left(std::string_view text, std::int32_t count);
std::string Right(std::string_view text, std::int32_t count);
// Mid from the 1-based character `start`; `count` < 0 means to the end.
// start < 1 raises 5.
std::string Mid(std::string_view text, std::int32_t start, std::int32_t count = -1);
// 1-based character position of `find` in `text` from `start`, 0 when absent;
// an empty `find` answers `start` (when start <= Len + 1). start < 1 raises 5.
std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view find);
inline std::int32_t InStr(std::string_view text, std::string_view find) {
  return InStr(1, text, find);
}
// Split at every `delimiter`; an empty text gives an empty array (UBound -1).
Array<std::string> Split(std::string_view text, std::string_view delimiter = " ");

// ---- Double-byte width (code page 932) ------------------------------------

// Whether the character takes two bytes in code page 932 (kanji, kana,
// full-width forms). Characters that code page 932 cannot encode count as one.
bool IsDoubleByte(char32_t character);
// The text's width in code-page-932 bytes: 2 for each double-byte character,
// 1 for every other.
std::int32_t TextWidth(std::string_view text);

// ---- UTF-8 ----------------------------------------------------------------

// Decodes the code point at `position` and advances past it. An invalid byte
// decodes as U+FFFD and counts as one character.
char32_t DecodeNext(std::string_view text, std::size_t& position);

}  // namespace vb
