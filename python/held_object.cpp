#include "held_object.h"

namespace seluvorne::python {

HeldObject::~HeldObject() {
  // Once the interpreter is going away the reference can no longer be
  // released; a component kept by a static object of the library ends here.
  if (!Py_IsInitialized() || _Py_IsFinalizing()) {
    object_.release();
    return;
  }
  py::gil_scoped_acquire gil;
  object_ = py::object();
}

}  // namespace seluvorne::python
