// _seluvorne_probe: a C++ component for the binding's tests, in a test-only
// extension module so that the shipped module carries no test code.
//
// Probe has typed by-reference parameters of every element type, makes
// arrays of any shape, tells the runtime type of a value, raises, returns itself, has a default
// member (Item), and calls other components by name from C++, on the calling thread or another, the
// way the library calls the suite's components. Opaque is a component that cannot describe its
// members.
//
// This module has its own copy of the static libraries, registry included,
// so the tests register Probe through seluvorne.register, and Probe creates
// components through seluvorne.CreateObject: both reach the registry of the
// seluvorne module.

#include <pybind11/pybind11.h>

#include <array>
#include <map>
#include <thread>

#include "seluvorne/member_table.h"

namespace py = pybind11;

namespace {

using namespace seluvorne;
using vb::Variant;

// The element every test array holds at storage position n, per type; the
// tests compute the same values.
template <class T>
T Sample(std::size_t n) {
  auto k = static_cast<std::int32_t>(n);
  if constexpr (std::is_same_v<T, std::int16_t>)
    return static_cast<std::int16_t>(k);
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return 100000 + k;
  else if constexpr (std::is_same_v<T, float>)
    return static_cast<float>(k) + 0.5f;
  else if constexpr (std::is_same_v<T, double>)
    return k + 0.25;
  else if constexpr (std::is_same_v<T, std::string>)
    return "s" + std::to_string(k);
  else if constexpr (std::is_same_v<T, bool>)
    return k % 2 == 1;
  else
    return vb::Literal(k);
}

template <class T>
void FillFrom(vb::Array<T>& array, std::size_t first) {
  for (std::size_t n = first; n < array.size(); ++n)
    array.begin()[n] = Sample<T>(n);
}

Object CreateThroughModule(const std::string& prog_id) {
  py::gil_scoped_acquire gil;
  try {
    return py::module_::import("seluvorne").attr("CreateObject")(prog_id).cast<Object>();
  } catch (py::error_already_set& failure) {
    Raise(failure.value().attr("number").cast<int>());
  }
}

class Probe : public DispatchImpl<Probe> {
 public:
  static const MemberTable<Probe>& Members() {
    static const auto table = MemberTable<Probe>("Probe")
                                  .method("BumpI2", &Probe::Bump<std::int16_t>)
                                  .method("BumpI4", &Probe::Bump<std::int32_t>)
                                  .method("BumpR4", &Probe::Bump<float>)
                                  .method("BumpR8", &Probe::Bump<double>)
                                  .method("BumpStr", &Probe::Bump<std::string>)
                                  .method("BumpBool", &Probe::Bump<bool>)
                                  .method("BumpVar", &Probe::Bump<Variant>)
                                  .method("BumpObj", &Probe::Bump<Object>)
                                  .method("ExtendI2", &Probe::Extend<std::int16_t>)
                                  .method("ExtendI4", &Probe::Extend<std::int32_t>)
                                  .method("ExtendR4", &Probe::Extend<float>)
                                  .method("ExtendR8", &Probe::Extend<double>)
                                  .method("ExtendStr", &Probe::Extend<std::string>)
                                  .method("ExtendBool", &Probe::Extend<bool>)
                                  .method("ExtendVar", &Probe::Extend<Variant>)
                                  .method("Make", &Probe::Make)
                                  .method("Describe", &Probe::Describe)
                                  .method("Echo", &Probe::Echo)
                                  .method("AsSingle", &Probe::AsSingle)
                                  .method("NullValue", &Probe::NullValue)
                                  .method("Fail", &Probe::Fail)
                                  .method("Crash", &Probe::Crash)
                                  .method("Me", &Probe::Me)
                                  .method("CallOut", &Probe::CallOut)
                                  .get("Item", &Probe::Item)
                                  .field("Label", &Probe::label)
                                  .get("Slot", &Probe::GetSlot)
                                  .put("Slot", &Probe::LetSlot)
                                  .defaultMember("Item");
    return table;
  }

  // Leaves a value of the same type that tells it was there: integers
  // count up (error 6 at the top), reals double, texts grow, booleans flip,
  // a Variant becomes the text of its type and value, an object becomes
  // the probe.
  template <class T>
  void Bump(T& value) {
    if constexpr (std::is_same_v<T, std::int16_t> || std::is_same_v<T, std::int32_t>)
      value = vb::Add<T>(value, 1);
    else if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>)
      value *= 2;
    else if constexpr (std::is_same_v<T, std::string>)
      value += "!";
    else if constexpr (std::is_same_v<T, bool>)
      value = !value;
    else if constexpr (std::is_same_v<T, Variant>)
      value = Describe(value);
    else
      value = shared_from_this();
  }

  // Grows the last dimension by one (dimensions an unallocated array as
  // one element) and fills the new elements with their samples.
  template <class T>
  std::int32_t Extend(vb::Array<T>& values) {
    std::size_t old_size = values.size();
    if (!values.allocated()) {
      values.ReDim({0});
    } else {
      std::vector<std::int32_t> bounds;
      for (std::int32_t extent : values.extents())
        bounds.push_back(extent - 1);
      bounds.back() += 1;
      values.ReDimPreserve(bounds);
    }
    FillFrom(values, old_size);
    return static_cast<std::int32_t>(values.size());
  }

  // An array of the element type named like seluvorne.Array's, with the
  // given element counts, holding its samples.
  Variant Make(std::string type, std::int32_t n1, std::optional<std::int32_t> n2,
               std::optional<std::int32_t> n3) {
    std::vector<std::int32_t> bounds{n1 - 1};
    if (n2) bounds.push_back(*n2 - 1);
    if (n3) bounds.push_back(*n3 - 1);
    auto made = [&]<class T>(vb::Array<T> array) {
      array.ReDim(bounds);
      FillFrom(array, 0);
      return Variant(std::move(array));
    };
    if (type == "i2") return made(vb::Array<std::int16_t>());
    if (type == "i4") return made(vb::Array<std::int32_t>());
    if (type == "r4") return made(vb::Array<float>());
    if (type == "r8") return made(vb::Array<double>());
    if (type == "str") return made(vb::Array<std::string>());
    if (type == "bool") return made(vb::Array<bool>());
    if (type == "var") return made(vb::Array<Variant>());
    Raise(errc::kInvalidCall);
  }

  // "Integer:5", "String:abc", "Empty", "Object", "Array".
  std::string Describe(const Variant& value) {
    static const std::map<vb::VarType, std::string> names = {
        {vb::VarType::Empty, "Empty"},     {vb::VarType::Null, "Null"},
        {vb::VarType::Integer, "Integer"}, {vb::VarType::Long, "Long"},
        {vb::VarType::Single, "Single"},   {vb::VarType::Double, "Double"},
        {vb::VarType::String, "String"},   {vb::VarType::Object, "Object"},
        {vb::VarType::Boolean, "Boolean"}, {vb::VarType::Array, "Array"}};
    std::string name = names.at(value.type());
    return value.isNumber() || value.isString() ? name + ":" + vb::CStr(value) : name;
  }

  Variant Echo(const Variant& value) { return value; }
  float AsSingle(float value) { return value; }
  Variant NullValue() { return vb::Null; }
  void Fail(std::int16_t number, std::int16_t& touched) {
    touched = 7;
    Raise(number, "(raised by the probe)");
  }
  void Crash() { throw std::runtime_error("probe crashed"); }
  Object Me() { return shared_from_this(); }
  std::string Item(const Variant& key) { return "item " + vb::CStr(key); }
  std::string GetSlot(std::int16_t index) { return slots_.at(index & 1); }
  void LetSlot(std::int16_t index, std::string value) { slots_.at(index & 1) = std::move(value); }

  // Calls `member` of `target` (an object, or a ProgID to create) with the
  // elements of `arguments` as its arguments, each by reference, and
  // returns the result. kind: 0 method, 1 property get, 2 property put.
  Variant CallOut(const Variant& target, std::string member, std::int16_t kind,
                  vb::Array<Variant>& arguments, std::optional<bool> on_other_thread) {
    auto call = [&] {
      Object object =
          target.isString() ? CreateThroughModule(*target.peek<std::string>()) : vb::CObj(target);
      std::span<Variant> args(arguments.begin(), arguments.size());
      return Invoke(object, member, static_cast<CallKind>(kind), args);
    };
    if (!on_other_thread.value_or(false)) return call();
    Variant result;
    std::exception_ptr failure;
    std::thread worker([&] {
      try {
        result = call();
      } catch (...) {
        failure = std::current_exception();
      }
    });
    worker.join();
    if (failure) std::rethrow_exception(failure);
    return result;
  }

  std::string label;

 private:
  std::array<std::string, 2> slots_;
};

// Answers every name with "member/kind/argument count" and describes none.
class Opaque : public Dispatch {
 public:
  Variant invoke(std::string_view member, CallKind kind, std::span<Variant> args) override {
    return Variant(std::string(member) + "/" + std::to_string(static_cast<int>(kind)) + "/" +
                   std::to_string(args.size()));
  }
  std::string_view className() const override { return "Opaque"; }
};

}  // namespace

PYBIND11_MODULE(_seluvorne_probe, module) {
  py::module_::import("seluvorne");  // registers the Dispatch type objects come back as
  module.def("Probe", [] { return Object(std::make_shared<Probe>()); });
  module.def("Opaque", [] { return Object(std::make_shared<Opaque>()); });
}
