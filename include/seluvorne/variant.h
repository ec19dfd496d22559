// vb::Variant: the runtime's tagged value, the currency of every late-bound
// call and of every database field.
//
// It holds Empty, Null, Integer (16-bit), Long (32-bit), Single, Double,
// String (UTF-8), Boolean, Object (a possibly empty dispatch reference) or an
// array of one of those element types (Variant included). Copying a Variant
// copies an array it holds, as the runtime does; moving is cheap.
//
// Coercions to plain C++ types live in runtime.h (CInt, CStr, ...), with the
// runtime's rules and errors.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "seluvorne/array.h"

namespace seluvorne {
class Dispatch;
// A reference to a component; empty is the runtime's Nothing.
using Object = std::shared_ptr<Dispatch>;
}  // namespace seluvorne

namespace vb {

using seluvorne::Object;

struct EmptyValue {
  friend bool operator==(EmptyValue, EmptyValue) { return true; }
};
struct NullValue {
  friend bool operator==(NullValue, NullValue) { return true; }
};
inline constexpr EmptyValue Empty{};
inline constexpr NullValue Null{};

// The runtime's VarType numbers. An array answers Array; its element type is
// told by Variant::arrayElementType().
enum class VarType : std::uint16_t {
  Empty = 0,
  Null = 1,
  Integer = 2,
  Long = 3,
  Single = 4,
  Double = 5,
  String = 8,
  Object = 9,
  Boolean = 11,
  Variant = 12,
  Array = 0x2000,
};

class Variant;

// An array of any element type a Variant may hold.
using AnyArray = std::variant<Array<std::int16_t>, Array<std::int32_t>, Array<float>, Array<double>,
                              Array<std::string>, Array<bool>, Array<Variant>>;

// The VarType of an array's elements.
VarType ElementType(const AnyArray& array);
// One element of any array, as a Variant (`flat_index` counts in storage order).
Variant ElementAt(const AnyArray& array, std::size_t flat_index);

template <class T>
concept ArrayElement = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> ||
    std::same_as<T, float> || std::same_as<T, double> || std::same_as<T, std::string> ||
    std::same_as<T, bool> || std::same_as<T, Variant>;

class Variant {
 public:
  Variant() noexcept = default;
  Variant(EmptyValue) noexcept {}
  Variant(NullValue) noexcept : value_(NullValue{}) {}
  Variant(std::int16_t v) noexcept : value_(v) {}
  Variant(std::int32_t v) noexcept : value_(v) {}
  Variant(float v) noexcept : value_(v) {}
  Variant(double v) noexcept : value_(v) {}
  template <class B>
  requires std::same_as<B, bool> Variant(B v)
  noexcept : value_(v) {}
  Variant(std::string v) noexcept : value_(std::move(v)) {}
  Variant(std::string_view v) : value_(std::string(v)) {}
  Variant(const char* v) : value_(std::string(v)) {}
  Variant(Object v) noexcept : value_(std::move(v)) {}
  template <class D>
  requires std::derived_from<D, seluvorne::Dispatch> Variant(std::shared_ptr<D> v)
  noexcept : value_(Object(std::move(v))) {}
  template <ArrayElement T>
  Variant(Array<T> v) : value_(ArrayBox(AnyArray(std::move(v)))) {}
  Variant(AnyArray v) : value_(ArrayBox(std::move(v))) {}

  VarType type() const;
  // The element type of an array; Empty for a value that is no array.
  VarType arrayElementType() const;

  bool isEmpty() const { return std::holds_alternative<EmptyValue>(value_); }
  bool isNull() const { return std::holds_alternative<NullValue>(value_); }
  bool isString() const { return std::holds_alternative<std::string>(value_); }
  bool isObject() const { return std::holds_alternative<Object>(value_); }
  bool isArray() const { return std::holds_alternative<ArrayBox>(value_); }
  // Integer, Long, Single, Double or Boolean.
  bool isNumber() const;

  // The value held when it is exactly a T (std::int16_t, std::string, Object,
  // ...), else null. No coercion.
  template <class T>
  const T* peek() const {
    return std::get_if<T>(&value_);
  }
  template <class T>
  T* peek() {
    return std::get_if<T>(&value_);
  }

  // The array held; error 13 when the value is no array (or, for the typed
  // form, an array of another element type).
  AnyArray& anyArray();
  const AnyArray& anyArray() const;
  template <ArrayElement T>
  Array<T>& array() {
    if (auto* typed = std::get_if<Array<T>>(&anyArray())) return *typed;
    seluvorne::Raise(seluvorne::errc::kTypeMismatch);
  }
  template <ArrayElement T>
  const Array<T>& array() const {
    if (auto* typed = std::get_if<Array<T>>(&anyArray())) return *typed;
    seluvorne::Raise(seluvorne::errc::kTypeMismatch);
  }

  // Same type and equal value (arrays element by element, objects by identity).
  friend bool operator==(const Variant& a, const Variant& b);

 private:
  // Owns an array on the heap so that Variant stays small and may nest.
  class ArrayBox {
   public:
    explicit ArrayBox(AnyArray array);
    ArrayBox(const ArrayBox& other);
    ArrayBox(ArrayBox&&) noexcept = default;
    ArrayBox& operator=(const ArrayBox& other);
    ArrayBox& operator=(ArrayBox&&) noexcept = default;
    ~ArrayBox();
    AnyArray& get() { return *array_; }
    const AnyArray& get() const { return *array_; }

   private:
    std::unique_ptr<AnyArray> array_;
  };

  std::variant<EmptyValue, NullValue, std::int16_t, std::int32_t, float, double, bool, std::string,
               Object, ArrayBox>
      value_;
};

// A number as the runtime types a literal: Integer when it fits 16 bits, Long
// when it fits 32, Double beyond.
Variant Literal(long long value);

}  // namespace vb
