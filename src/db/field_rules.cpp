#include "field_rules.h"

#include "seluvorne/dao.h"
#include "seluvorne/runtime.h"

namespace seluvorne::db {

void CheckFieldDefinition(const FieldDefinition& field) {
  if (field.type != dao::dbInteger && field.type != dao::dbText)
    Raise(errc::kInvalidFieldType, field.name);
  if (field.type == dao::dbText && (field.size < 1 || field.size > 255))
    Raise(errc::kInvalidCall, "(size of text field '" + field.name + "')");
  DefaultValue(field);
}

vb::Variant StoredValue(const FieldDefinition& field, const vb::Variant& value) {
  if (value.isNull() || value.isEmpty()) return vb::Null;
  if (field.type == dao::dbInteger) {
    if (!vb::IsNumeric(value)) Raise(errc::kConversionError);
    try {
      return vb::CInt(value);
    } catch (const Error& error) {
      if (error.number == errc::kOverflow) Raise(errc::kNumericOverflow, "(" + field.name + ")");
      throw;
    }
  }
  std::string text = vb::CStr(value);
  if (vb::Len(text) > field.size) Raise(errc::kFieldTooSmall, "(" + field.name + ")");
  if (text.empty() && !field.allow_zero_length) Raise(errc::kZeroLengthNotAllowed, field.name);
  return text;
}

vb::Variant DefaultValue(const FieldDefinition& field) {
  std::string_view expression = field.default_value;
  if (expression.empty()) return vb::Null;
  // A text literal in quotes stands for its text; anything else for itself.
  if (expression.size() >= 2 && expression.front() == '"' && expression.back() == '"')
    expression = expression.substr(1, expression.size() - 2);
  return StoredValue(field, vb::Variant(expression));
}

}  // namespace seluvorne::db
