#include "seluvorne/variant.h"

namespace vb {

VarType ElementType(const AnyArray& array) {
  static constexpr VarType kTypes[] = {VarType::Integer, VarType::Long,   VarType::Single,
                                       VarType::Double,  VarType::String, VarType::Boolean,
                                       VarType::Variant};
  return kTypes[array.index()];
}

Variant::ArrayBox::ArrayBox(AnyArray array)
    : array_(std::make_unique<AnyArray>(std::move(array))) {}
Variant::ArrayBox::ArrayBox(const ArrayBox& other)
    : array_(std::make_unique<AnyArray>(*other.array_)) {}
Variant::ArrayBox& Variant::ArrayBox::operator=(const ArrayBox& other) {
  if (this != &other) array_ = std::make_unique<AnyArray>(*other.array_);
  return *this;
}
Variant::ArrayBox::~ArrayBox() = default;

VarType Variant::type() const {
  static constexpr VarType kTypes[] = {
      VarType::Empty,  VarType::Null,    VarType::Integer, VarType::Long,   VarType::Single,
      VarType::Double, VarType::Boolean, VarType::String,  VarType::Object, VarType::Array};
  return kTypes[value_.index()];
}

VarType Variant::arrayElementType() const {
  return isArray() ? ElementType(anyArray()) : VarType::Empty;
}

bool Variant::isNumber() const {
  switch (type()) {
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Boolean:
      return true;
    default:
      return false;
  }
}

AnyArray& Variant::anyArray() {
  if (auto* box = std::get_if<ArrayBox>(&value_)) return box->get();
  seluvorne::Raise(seluvorne::errc::kTypeMismatch);
}

const AnyArray& Variant::anyArray() const {
  if (auto* box = std::get_if<ArrayBox>(&value_)) return box->get();
  seluvorne::Raise(seluvorne::errc::kTypeMismatch);
}

bool operator==(const Variant& a, const Variant& b) {
  if (a.value_.index() != b.value_.index()) return false;
  if (a.isArray()) return a.anyArray() == b.anyArray();
  return std::visit(
      [&](const auto& left) {
        using T = std::decay_t<decltype(left)>;
        if constexpr (std::is_same_v<T, Variant::ArrayBox>)
          return false;  // handled above
        else
          return left == std::get<T>(b.value_);
      },
      a.value_);
}

Variant ElementAt(const AnyArray& array, std::size_t flat_index) {
  return std::visit([&](const auto& typed) { return Variant(typed.begin()[flat_index]); }, array);
}

Variant Literal(long long value) {
  if (value >= INT16_MIN && value <= INT16_MAX) return Variant(static_cast<std::int16_t>(value));
  if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<std::int32_t>(value));
  return Variant(static_cast<double>(value));
}

}  // namespace vb
