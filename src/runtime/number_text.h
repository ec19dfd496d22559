// Parsing and printing of numbers as the runtime does it, shared by the
// coercions (convert.cpp) and the text functions (number_text.cpp).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vb::detail {

// The whole text as a number, as a coercion reads it: blanks around it, a
// sign, digits with one decimal point and an exponent, or "&H"/"&O" forms.
// nullopt when the text is no number as a whole (or overflows a Double).
std::optional<double> ParseNumber(std::string_view text);

// Shortest decimal text of a real with `digits` significant digits; with
// `leading_zero` false, "0.5" is written ".5" as Str writes it.
std::string RealText(double value, int digits, bool leading_zero);

}  // namespace vb::detail
