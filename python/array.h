// seluvorne.Array: the runtime's array, owned by the Python object that holds
// it. Arrays cross the late-bound interface by copy, so an Array never shares
// its elements with a Variant of the library, nor with another Array.
#pragma once

#include <pybind11/pybind11.h>

#include "seluvorne/variant.h"

namespace seluvorne::python {

namespace py = pybind11;

struct ArrayValue {
  vb::AnyArray array;
};

// Creates seluvorne.Array in `module`.
void BindArray(py::module_& module);

}  // namespace seluvorne::python
