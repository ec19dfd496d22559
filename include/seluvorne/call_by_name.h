// CallByName: a late-bound call from typed C++ values. Plain arguments are
// passed by value; arguments wrapped with seluvorne::Ref(x) are passed by
// reference and `x` receives what the callee left there.
//
//   std::string path = vb::CStr(CallByName(dirs, "GetFullPathToKai", CallKind::Method,
//                                          Ref(zene), Ref(kouji), Ref(kai)));
#pragma once

#include <array>

#include "seluvorne/dispatch.h"
#include "seluvorne/typed.h"

namespace seluvorne {

namespace detail {

template <class T>
vb::Variant ArgumentValue(const T& value) {
  return vb::ToVariant(value);
}
template <class T>
vb::Variant ArgumentValue(const ByRef<T>& reference) {
  return vb::ToVariant(reference.target);
}
template <class T>
void StoreBack(const T&, vb::Variant&) {}
template <class T>
void StoreBack(const ByRef<T>& reference, vb::Variant& value) {
  reference.target = vb::FromVariant<T>(value);
}

}  // namespace detail

template <class... A>
vb::Variant CallByName(const Object& object, std::string_view member, CallKind kind,
                       const A&... args) {
  std::array<vb::Variant, sizeof...(A)> values{detail::ArgumentValue(args)...};
  vb::Variant result = Invoke(object, member, kind, values);
  std::size_t i = 0;
  (detail::StoreBack(args, values[i++]), ...);
  return result;
}

}  // namespace seluvorne
