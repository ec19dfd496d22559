// Conversions between Variants and the typed values of C++ signatures, with
// the runtime's coercions. The member tables and CallByName both use them, so
// a value crosses the late-bound interface by one set of rules either way.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "seluvorne/dispatch.h"
#include "seluvorne/runtime.h"

namespace vb {

template <class T>
struct IsArray : std::false_type {};
template <class T>
struct IsArray<Array<T>> : std::true_type {
  using element = T;
};

template <class T>
struct IsSharedObject : std::false_type {};
template <class D>
requires std::derived_from<D, seluvorne::Dispatch>
struct IsSharedObject<std::shared_ptr<D>> : std::true_type {
  using pointee = D;
};

template <class T>
T FromVariant(const Variant& value);

// An array of any element type as an Array<E>, element by element.
template <ArrayElement E>
Array<E> ConvertArray(const AnyArray& source) {
  Array<E> converted;
  std::visit(
      [&](const auto& typed) {
        if (!typed.allocated()) return;
        std::vector<std::int32_t> upper_bounds;
        for (std::int32_t extent : typed.extents())
          upper_bounds.push_back(extent - 1);
        converted.ReDim(upper_bounds);
      },
      source);
  for (std::size_t i = 0; i < converted.size(); ++i)
    converted.begin()[i] = FromVariant<E>(ElementAt(source, i));
  return converted;
}

// The Variant as a T, coerced as the runtime coerces an argument.
template <class T>
T FromVariant(const Variant& value) {
  if constexpr (std::is_same_v<T, Variant>) {
    return value;
  } else if constexpr (std::is_same_v<T, std::int16_t>) {
    return CInt(value);
  } else if constexpr (std::is_same_v<T, std::int32_t>) {
    return CLng(value);
  } else if constexpr (std::is_same_v<T, float>) {
    return CSng(value);
  } else if constexpr (std::is_same_v<T, double>) {
    return CDbl(value);
  } else if constexpr (std::is_same_v<T, bool>) {
    return CBool(value);
  } else if constexpr (std::is_same_v<T, std::string>) {
    return CStr(value);
  } else if constexpr (std::is_same_v<T, Object>) {
    return CObj(value);
  } else if constexpr (IsSharedObject<T>::value) {
    Object object = CObj(value);
    if (!object) return nullptr;
    auto typed = std::dynamic_pointer_cast<typename IsSharedObject<T>::pointee>(object);
    if (!typed) seluvorne::Raise(seluvorne::errc::kTypeMismatch);
    return typed;
  } else if constexpr (IsArray<T>::value) {
    // Empty stands for an array not yet dimensioned.
    if (value.isEmpty()) return T();
    const AnyArray& any = value.anyArray();
    if (const auto* same = std::get_if<T>(&any)) return *same;
    return ConvertArray<typename IsArray<T>::element>(any);
  } else {
    static_assert(sizeof(T) == 0, "no conversion from Variant to this type");
  }
}

// A typed value as a Variant.
template <class T>
Variant ToVariant(T&& value) {
  using D = std::remove_cvref_t<T>;
  if constexpr (IsSharedObject<D>::value)
    return Variant(Object(std::forward<T>(value)));
  else
    return Variant(std::forward<T>(value));
}

}  // namespace vb
