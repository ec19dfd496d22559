// Member tables: a class declares its late-bound members once, each with its
// name, call kind and typed C++ member function, and the table does the rest:
// case-insensitive lookup, argument count checks (450), conversion of the
// Variant arguments to the parameter types with the runtime's coercions, and
// the write-back of by-reference parameters (non-const lvalue references)
// after the call. The typed C++ API and the late-bound API therefore cannot
// drift apart.
//
//   class clsThing : public seluvorne::DispatchImpl<clsThing> {
//    public:
//     static const seluvorne::MemberTable<clsThing>& Members() {
//       static const auto table = seluvorne::MemberTable<clsThing>("clsThing")
//           .method("GetFileName", &clsThing::GetFileName)
//           .field("pPageNo", &clsThing::pPageNo)
//           .get("Path", &clsThing::GetPath).put("Path", &clsThing::LetPath);
//       return table;
//     }
//   };
//
// Trailing parameters of type std::optional<T> are optional arguments.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "seluvorne/dispatch.h"
#include "seluvorne/entry_lock.h"
#include "seluvorne/typed.h"

namespace seluvorne {

namespace detail {

// Case-insensitive (ASCII) hashing and comparison of member names.
constexpr char FoldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const noexcept;
};
struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
      if (a[i] != b[i] && FoldCase(a[i]) != FoldCase(b[i])) return false;
    return true;
  }
};

// Converts any exception other than Error escaping a member into an Error:
// 7 for exhausted memory, 440 (Automation error) with the message otherwise.
[[noreturn]] void RethrowAsError(std::string_view source);

// A conversion of the argument at `index` (0-based) that failed with 13.
// The member table that called the member turns it into the error 13 that
// names the member, the argument and what it takes.
struct ArgumentMismatch {
  std::size_t index;
  std::string value;          // the value as a message shows it: "value 'abc'", "Null"
  std::string_view expected;  // "a 16-bit number", "a text", ...
};

// What a parameter of type T takes, for messages.
template <class T>
constexpr std::string_view ExpectedKind() {
  if constexpr (std::is_same_v<T, std::int16_t>)
    return "a 16-bit number";
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return "a 32-bit number";
  else if constexpr (std::is_same_v<T, float>)
    return "a 32-bit real";
  else if constexpr (std::is_same_v<T, double>)
    return "a number";
  else if constexpr (std::is_same_v<T, bool>)
    return "a Boolean";
  else if constexpr (std::is_same_v<T, std::string>)
    return "a text";
  else if constexpr (vb::IsArray<T>::value)
    return "an array";
  else if constexpr (vb::IsSharedObject<T>::value)
    return "an object";
  else
    return "of the parameter's type";
}

// "value 'abc'", "value 2.5", "Empty", "Null", "an object", "an array".
std::string DescribeArgument(const vb::Variant& value);

// The detail of the error 13 for `mismatch` in member `source` ("Class.Member").
std::string MismatchDetail(std::string_view source, const ArgumentMismatch& mismatch);

// vb::FromVariant for the argument at `index`; a 13 becomes an ArgumentMismatch.
template <class T>
T ConvertArgument(const vb::Variant& value, std::size_t index) {
  try {
    return vb::FromVariant<T>(value);
  } catch (const Error& error) {
    if (error.number != errc::kTypeMismatch) throw;
    throw ArgumentMismatch{index, DescribeArgument(value), ExpectedKind<T>()};
  }
}

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

// The storage of one argument while a member runs. Plain and const-reference
// parameters get a converted copy; non-const references refer straight into
// the caller's Variant when it already holds that type, and otherwise get a
// converted copy that is written back after the call.
template <class P>
class Argument {
 public:
  using T = std::remove_cvref_t<P>;
  Argument(std::span<vb::Variant> args, std::size_t i) : value_(Read(args, i)) {}
  T& get() { return value_; }
  void WriteBack() {}

 private:
  static T Read(std::span<vb::Variant> args, std::size_t i) {
    if constexpr (IsOptional<T>::value) {
      if (i >= args.size()) return std::nullopt;
      return ConvertArgument<typename T::value_type>(args[i], i);
    } else {
      return ConvertArgument<T>(args[i], i);
    }
  }
  T value_;
};

template <class T>
requires(!std::is_const_v<T>) class Argument<T&> {
 public:
  Argument(std::span<vb::Variant> args, std::size_t i) : slot_(&args[i]) {
    if constexpr (vb::IsArray<T>::value) {
      if (slot_->isArray()) direct_ = std::get_if<T>(&slot_->anyArray());
    } else if constexpr (vb::IsSharedObject<T>::value) {
      // A typed object (std::shared_ptr<dao::Database>&): the Variant holds a
      // plain Object, so the member works on a checked, converted copy.
    } else {
      direct_ = slot_->peek<T>();
    }
    if (!direct_) copy_.emplace(ConvertArgument<T>(*slot_, i));
  }
  T& get() { return direct_ ? *direct_ : *copy_; }
  void WriteBack() {
    if (copy_) *slot_ = vb::ToVariant(std::move(*copy_));
  }

 private:
  vb::Variant* slot_;
  T* direct_ = nullptr;
  std::optional<T> copy_;
};

// A Variant by reference is the caller's Variant itself.
template <>
class Argument<vb::Variant&> {
 public:
  Argument(std::span<vb::Variant> args, std::size_t i) : slot_(&args[i]) {}
  vb::Variant& get() { return *slot_; }
  void WriteBack() {}

 private:
  vb::Variant* slot_;
};

// The number of leading arguments a member cannot do without: all but the
// trailing std::optional parameters.
template <class... A>
constexpr int RequiredCount() {
  constexpr bool optional[] = {IsOptional<std::remove_cvref_t<A>>::value..., false};
  int required = 0;
  for (int i = 0; i < static_cast<int>(sizeof...(A)); ++i)
    if (!optional[i]) required = i + 1;
  return required;
}

// Converts the arguments, calls `function` with them, writes by-reference
// arguments back (also when the call raises) and converts the result.
template <class R, class... A, class F>
vb::Variant CallWithArguments(std::span<vb::Variant> args, F&& function) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) {
    std::tuple<Argument<A>...> arguments{Argument<A>(args, I)...};
    auto write_back = [&] { (std::get<I>(arguments).WriteBack(), ...); };
    try {
      if constexpr (std::is_void_v<R>) {
        function(std::get<I>(arguments).get()...);
        write_back();
        return vb::Variant();
      } else {
        vb::Variant result = vb::ToVariant(function(std::get<I>(arguments).get()...));
        write_back();
        return result;
      }
    } catch (...) {
      write_back();
      throw;
    }
  }
  (std::index_sequence_for<A...>{});
}

}  // namespace detail

template <class C>
class MemberTable {
 public:
  using Call = std::function<vb::Variant(C&, std::span<vb::Variant>)>;

  explicit MemberTable(std::string class_name) : class_name_(std::move(class_name)) {}

  // A method; also callable as a property read, as the runtime allows.
  template <class R, class... A>
  MemberTable&& method(std::string_view name, R (C::*function)(A...)) && {
    Add(name, &Kinds::method, Bind<R, A...>(function), detail::RequiredCount<A...>(), sizeof...(A));
    return std::move(*this);
  }
  template <class R, class... A>
  MemberTable&& method(std::string_view name, R (C::*function)(A...) const) && {
    Add(name, &Kinds::method, Bind<R, A...>(function), detail::RequiredCount<A...>(), sizeof...(A));
    return std::move(*this);
  }

  // A property read; its parameters are the property's indices.
  template <class R, class... A>
  MemberTable&& get(std::string_view name, R (C::*function)(A...)) && {
    Add(name, &Kinds::get, Bind<R, A...>(function), detail::RequiredCount<A...>(), sizeof...(A));
    return std::move(*this);
  }
  template <class R, class... A>
  MemberTable&& get(std::string_view name, R (C::*function)(A...) const) && {
    Add(name, &Kinds::get, Bind<R, A...>(function), detail::RequiredCount<A...>(), sizeof...(A));
    return std::move(*this);
  }

  // A method or property read of a part the object holds and forwards to (a
  // value of its own type, answered by `part`): the part's member serves the
  // object's table as it stands, with no forwarding copy to drift.
  template <class P, class R, class... A>
  MemberTable&& method(std::string_view name, const P& (C::*part)() const,
                       R (P::*function)(A...) const) && {
    Add(name, &Kinds::method, BindPart<P, R, A...>(part, function), detail::RequiredCount<A...>(),
        sizeof...(A));
    return std::move(*this);
  }
  template <class P, class R, class... A>
  MemberTable&& get(std::string_view name, const P& (C::*part)() const,
                    R (P::*function)(A...) const) && {
    Add(name, &Kinds::get, BindPart<P, R, A...>(part, function), detail::RequiredCount<A...>(),
        sizeof...(A));
    return std::move(*this);
  }

  // A property write; its last parameter is the value, any before it indices.
  template <class... A>
  MemberTable&& put(std::string_view name, void (C::*function)(A...)) && {
    Add(name, &Kinds::put, Bind<void, A...>(function), detail::RequiredCount<A...>(), sizeof...(A));
    return std::move(*this);
  }

  // A public data member, read and written as a property.
  template <class T>
  MemberTable&& field(std::string_view name, T C::*member) && {
    Add(
        name, &Kinds::get,
        [member](C& self, std::span<vb::Variant>) { return vb::ToVariant(T(self.*member)); }, 0, 0);
    Add(
        name, &Kinds::put,
        [member](C& self, std::span<vb::Variant> args) {
          self.*member = detail::ConvertArgument<T>(args[0], 0);
          return vb::Variant();
        },
        1, 1);
    return std::move(*this);
  }

  // The member used when the object itself is called or used as a value.
  MemberTable&& defaultMember(std::string_view name) && {
    default_member_ = name;
    return std::move(*this);
  }

  vb::Variant invoke(C& self, std::string_view name, CallKind kind,
                     std::span<vb::Variant> args) const {
    const Entry* entry = Find(name, kind);
    if (!entry) Raise(errc::kMemberNotSupported, {}, SourceOf(name));
    // `db.TableDefs(0)`: arguments given to a member that takes none go to the
    // default member of the object it answers, as the runtime does.
    if (entry->max_args == 0 && !args.empty() && kind != CallKind::PropertyPut) {
      vb::Variant result = Run(*entry, self, {});
      const Object* object = result.peek<Object>();
      if (object && *object && !(*object)->defaultMember().empty())
        return (*object)->invoke((*object)->defaultMember(), kind, args);
      Raise(errc::kWrongArgumentCount, {}, SourceOf(name));
    }
    if (static_cast<int>(args.size()) < entry->min_args ||
        static_cast<int>(args.size()) > entry->max_args)
      Raise(errc::kWrongArgumentCount, {}, SourceOf(name));
    return Run(*entry, self, args);
  }

  std::optional<MemberKinds> describe(std::string_view name) const {
    auto found = members_.find(name);
    if (found == members_.end()) return std::nullopt;
    const Kinds& kinds = found->second;
    MemberKinds result;
    result.method = kinds.method.has_value();
    result.get = kinds.get.has_value();
    result.put = kinds.put.has_value();
    if (kinds.get) result.get_arguments = kinds.get->max_args;
    if (kinds.method) result.method_arguments = kinds.method->max_args;
    if (kinds.put) result.put_arguments = kinds.put->max_args;
    return result;
  }

  // The members' names as declared, in alphabetical order.
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& entry : members_)
      result.push_back(entry.first);
    std::sort(result.begin(), result.end());
    return result;
  }

  std::string_view defaultMember() const { return default_member_; }
  std::string_view className() const { return class_name_; }

 private:
  struct Entry {
    Call call;
    int min_args = 0;
    int max_args = 0;
  };
  struct Kinds {
    std::optional<Entry> method, get, put;
  };

  vb::Variant Run(const Entry& entry, C& self, std::span<vb::Variant> args) const {
    try {
      return entry.call(self, args);
    } catch (const Error&) {
      throw;
    } catch (...) {
      detail::RethrowAsError(class_name_);
    }
  }

  template <class R, class... A, class F>
  static Call Bind(F function) {
    return [function](C& self, std::span<vb::Variant> args) {
      return detail::CallWithArguments<R, A...>(
          args, [&](auto&&... typed) -> R { return (self.*function)(typed...); });
    };
  }

  template <class P, class R, class... A, class Part, class F>
  static Call BindPart(Part part, F function) {
    return [part, function](C& self, std::span<vb::Variant> args) {
      const P& target = (self.*part)();
      return detail::CallWithArguments<R, A...>(
          args, [&](auto&&... typed) -> R { return (target.*function)(typed...); });
    };
  }

  void Add(std::string_view name, std::optional<Entry> Kinds::*kind, Call call, int min_args,
           int max_args) {
    auto found = members_.find(name);
    if (found == members_.end()) found = members_.emplace(std::string(name), Kinds{}).first;
    // An argument that does not convert raises 13 naming the member and the argument.
    Call checked = [call = std::move(call), source = SourceOf(name)](
                       C& self, std::span<vb::Variant> args) -> vb::Variant {
      try {
        return call(self, args);
      } catch (const detail::ArgumentMismatch& mismatch) {
        Raise(errc::kTypeMismatch, detail::MismatchDetail(source, mismatch), source);
      }
    };
    found->second.*kind = Entry{std::move(checked), min_args, max_args};
  }

  // A method may be called as a property read and the other way round.
  const Entry* Find(std::string_view name, CallKind kind) const {
    auto found = members_.find(name);
    if (found == members_.end()) return nullptr;
    const Kinds& kinds = found->second;
    switch (kind) {
      case CallKind::PropertyPut:
        return kinds.put ? &*kinds.put : nullptr;
      case CallKind::Method:
        return kinds.method ? &*kinds.method : kinds.get ? &*kinds.get : nullptr;
      case CallKind::PropertyGet:
        return kinds.get ? &*kinds.get : kinds.method ? &*kinds.method : nullptr;
    }
    return nullptr;
  }

  std::string SourceOf(std::string_view member) const {
    return class_name_ + "." + std::string(member);
  }

  std::string class_name_;
  std::string default_member_;
  std::unordered_map<std::string, Kinds, detail::NameHash, detail::NameEqual> members_;
};

// The Dispatch implementation of a class with a member table: the class
// derives from DispatchImpl<itself> and provides `static const
// MemberTable<itself>& Members()`. A class that extends another Dispatch
// class (one sharing members between several tables) names it as `Base`,
// whose constructors it inherits; the chain stays single inheritance, so
// the base's member functions serve in the derived table unchanged.
template <class Derived, class Base = Dispatch>
class DispatchImpl : public Base {
 public:
  using Base::Base;
  vb::Variant invoke(std::string_view member, CallKind kind, std::span<vb::Variant> args) override {
    EntryLock lock;  // every call by name and property is one entry into the library
    return Derived::Members().invoke(static_cast<Derived&>(*this), member, kind, args);
  }
  std::optional<MemberKinds> describe(std::string_view member) const override {
    return Derived::Members().describe(member);
  }
  std::vector<std::string> memberNames() const override { return Derived::Members().names(); }
  std::string_view defaultMember() const override { return Derived::Members().defaultMember(); }
  std::string_view className() const override { return Derived::Members().className(); }
};

}  // namespace seluvorne
