// A reference to a Python object that C++ code may keep anywhere: in the
// component registry, in a component the library holds, in an exception on
// its way through the library. Letting go of it takes the GIL, so the last
// owner may be any thread, with or without the GIL.
#pragma once

#include <pybind11/pybind11.h>

namespace seluvorne::python {

namespace py = pybind11;

class HeldObject {
 public:
  // Under the GIL.
  explicit HeldObject(py::object object) : object_(std::move(object)) {}
  ~HeldObject();

  HeldObject(const HeldObject&) = delete;
  HeldObject& operator=(const HeldObject&) = delete;

  // Under the GIL.
  const py::object& get() const { return object_; }

 private:
  py::object object_;
};

}  // namespace seluvorne::python
