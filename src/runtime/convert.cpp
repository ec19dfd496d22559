// Coercions between Variants and plain values, with the runtime's rules.

#include <cfloat>
#include <cmath>

#include "number_text.h"
#include "seluvorne/dispatch.h"
#include "seluvorne/runtime.h"

namespace vb {

namespace {

using seluvorne::Raise;
namespace errc = seluvorne::errc;

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

// "True"/"False" as the runtime reads them inside a text.
std::optional<bool> BooleanText(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  if (EqualsIgnoringCase(text, "True")) return true;
  if (EqualsIgnoringCase(text, "False")) return false;
  return std::nullopt;
}

// An object used as a value answers its default member.
Variant DefaultValue(const Object& object) {
  if (!object) Raise(errc::kObjectNotSet);
  std::string_view member = object->defaultMember();
  if (member.empty()) Raise(errc::kMemberNotSupported);
  return object->invoke(member, seluvorne::CallKind::PropertyGet, {});
}

// The Variant as a Double, for every numeric coercion.
double NumberOf(const Variant& value) {
  switch (value.type()) {
    case VarType::Empty:
      return 0;
    case VarType::Null:
      Raise(errc::kInvalidUseOfNull);
    case VarType::Integer:
      return *value.peek<std::int16_t>();
    case VarType::Long:
      return *value.peek<std::int32_t>();
    case VarType::Single:
      return *value.peek<float>();
    case VarType::Double:
      return *value.peek<double>();
    case VarType::Boolean:
      return *value.peek<bool>() ? -1 : 0;
    case VarType::String: {
      const std::string& text = *value.peek<std::string>();
      if (std::optional<double> number = detail::ParseNumber(text)) return *number;
      if (std::optional<bool> boolean = BooleanText(text)) return *boolean ? -1 : 0;
      Raise(errc::kTypeMismatch);
    }
    case VarType::Object:
      return NumberOf(DefaultValue(*value.peek<Object>()));
    default:
      Raise(errc::kTypeMismatch);
  }
}

}  // namespace

std::int16_t CInt(double value) {
  double rounded = std::nearbyint(value);  // the default rounding mode: half to even
  if (!(rounded >= INT16_MIN && rounded <= INT16_MAX)) Raise(errc::kOverflow);
  return static_cast<std::int16_t>(rounded);
}

std::int32_t CLng(double value) {
  double rounded = std::nearbyint(value);
  if (!(rounded >= INT32_MIN && rounded <= INT32_MAX)) Raise(errc::kOverflow);
  return static_cast<std::int32_t>(rounded);
}

float CSng(double value) {
  if (std::isfinite(value) && std::fabs(value) > FLT_MAX) Raise(errc::kOverflow);
  return static_cast<float>(value);
}

std::int16_t CInt(const Variant& value) {
  if (const auto* integer = value.peek<std::int16_t>()) return *integer;
  return CInt(NumberOf(value));
}

std::int32_t CLng(const Variant& value) {
  if (const auto* integer = value.peek<std::int32_t>()) return *integer;
  return CLng(NumberOf(value));
}

float CSng(const Variant& value) {
  if (const auto* real = value.peek<float>()) return *real;
  return CSng(NumberOf(value));
}

double CDbl(const Variant& value) {
  return NumberOf(value);
}

bool CBool(const Variant& value) {
  if (const auto* boolean = value.peek<bool>()) return *boolean;
  return NumberOf(value) != 0;
}

std::string CStr(Variant&& value) {
  if (std::string* text = value.peek<std::string>()) return std::move(*text);
  return CStr(static_cast<const Variant&>(value));
}

std::string CStr(const Variant& value) {
  switch (value.type()) {
    case VarType::Empty:
      return {};
    case VarType::Null:
      Raise(errc::kInvalidUseOfNull);
    case VarType::Integer:
      return std::to_string(*value.peek<std::int16_t>());
    case VarType::Long:
      return std::to_string(*value.peek<std::int32_t>());
    case VarType::Single:
      return detail::RealText(*value.peek<float>(), 7, true);
    case VarType::Double:
      return detail::RealText(*value.peek<double>(), 15, true);
    case VarType::Boolean:
      return *value.peek<bool>() ? "True" : "False";
    case VarType::String:
      return *value.peek<std::string>();
    case VarType::Object:
      return CStr(DefaultValue(*value.peek<Object>()));
    default:
      Raise(errc::kTypeMismatch);
  }
}

Object CObj(const Variant& value) {
  if (value.isEmpty()) return nullptr;
  if (const auto* object = value.peek<Object>()) return *object;
  Raise(errc::kTypeMismatch);
}

bool IsNumeric(const Variant& value) {
  if (value.isEmpty() || value.isNumber()) return true;
  if (const auto* text = value.peek<std::string>()) return detail::ParseNumber(*text).has_value();
  return false;
}

double Fix(double value) {
  return std::trunc(value);
}
double Int(double value) {
  return std::floor(value);
}

}  // namespace vb
