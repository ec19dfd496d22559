// _seluvorne_probe: a C++ component for the binding's tests, in a test-only
// extension module so that the shipped module carries no test code.
//
// Probe has typed by-reference parameters of every element type, tells the
// runtime type of a value, raises, and calls other objects by name from C++,
// on the calling thread or another, the way the library calls the suite's
// components.

#include <pybind11/pybind11.h>

#include <future>
#include <map>

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
  if constexpr (std::is_same_v<T, std::string>)
    return "s" + std::to_string(k);
  else if constexpr (std::is_same_v<T, bool>)
    return k % 2 == 1;
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(k) + static_cast<T>(0.5);
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return 100000 + k;
  else
    return vb::FromVariant<T>(vb::Literal(k));  // Integer and Variant
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
                                  .method("ExtendI2", &Probe::Extend<std::int16_t>)
                                  .method("ExtendI4", &Probe::Extend<std::int32_t>)
                                  .method("ExtendR4", &Probe::Extend<float>)
                                  .method("ExtendR8", &Probe::Extend<double>)
                                  .method("ExtendStr", &Probe::Extend<std::string>)
                                  .method("ExtendBool", &Probe::Extend<bool>)
                                  .method("ExtendVar", &Probe::Extend<Variant>)
                                  .method("Describe", &Probe::Describe)
                                  .method("Echo", &Probe::Echo)
                                  .method("Fail", &Probe::Fail)
                                  .method("CallOut", &Probe::CallOut)
                                  .field("Label", &Probe::label);
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
  // one element) and fills the new elements, which follow the old ones in
  // storage, with their samples.
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
    for (std::size_t n = old_size; n < values.size(); ++n)
      values.begin()[n] = Sample<T>(n);
    return static_cast<std::int32_t>(values.size());
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
  void Fail(std::int16_t number, std::int16_t& touched) {
    touched = 7;
    Raise(number, "(raised by the probe)");
  }

  // Calls `member` of `target` with the elements of `arguments` as its
  // arguments, each by reference, and returns the result. kind: 0 method,
  // 1 property get, 2 property put.
  Variant CallOut(Object target, std::string member, std::int16_t kind,
                  vb::Array<Variant>& arguments, std::optional<bool> on_other_thread) {
    auto call = [&] {
      std::span<Variant> args(arguments.begin(), arguments.size());
      return Invoke(target, member, static_cast<CallKind>(kind), args);
    };
    if (on_other_thread.value_or(false)) return std::async(std::launch::async, call).get();
    return call();
  }

  std::string label;
};

}  // namespace

PYBIND11_MODULE(_seluvorne_probe, module) {
  py::module_::import("seluvorne");  // registers the Dispatch type objects come back as
  module.def("Probe", [] { return Object(std::make_shared<Probe>()); });
}
