// Components written in Python, reached by the library's late-bound calls.
//
// The library calls a Python object's attributes by name: the exact name
// first, then the first attribute whose name matches without regard to
// letter case. Names beginning with "_" are private and never reached.
//
//   property get or method call   a callable attribute is called with the
//                                 arguments; any other is read (with
//                                 arguments, indexed: attr[i] or attr[i, j])
//   property put                  setattr (with indices, attr[i] = value)
//
// By-reference arguments: a parameter annotated as seluvorne.Ref (the class,
// or the text "Ref" under postponed annotations; `*args: Ref` takes all the
// rest) receives a Ref holding the argument, and what the callee leaves in
// its .value goes back to the caller, also when the callee raises. Every
// other parameter receives a plain value.
//
// Every call takes the GIL, so the library may call from any thread.
#pragma once

#include <optional>
#include <string>

#include "held_object.h"
#include "seluvorne/dispatch.h"

namespace seluvorne::python {

class PythonComponent final : public Dispatch {
 public:
  // Under the GIL.
  explicit PythonComponent(py::object target);

  vb::Variant invoke(std::string_view member, CallKind kind, std::span<vb::Variant> args) override;
  // What a Python user of a proxy needs: a callable attribute is a method;
  // a property or plain attribute is a property to read and write. Found
  // without running property getters.
  std::optional<MemberKinds> describe(std::string_view member) const override;
  std::string_view className() const override { return class_name_; }

 private:
  HeldObject target_;
  std::string class_name_;  // the Python class's name, the source of its errors
};

// Creates register() and unregister() in `module`.
void BindRegistry(py::module_& module);

}  // namespace seluvorne::python
