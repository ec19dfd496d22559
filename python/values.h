// Python values and the runtime's Variants, both ways.
//
//   None            <-> Empty (Null also comes back as None)
//   bool            <-> Boolean
//   int             --> Integer when it fits 16 bits, Long when it fits 32,
//                       Double beyond (the runtime's rule for literals);
//                       error 6 beyond Double's range
//   Integer, Long   --> int
//   float           <-> Double; a Single comes back as the float with the
//                       same shortest decimal text (1.1, not 1.100000023...)
//   str             <-> String (UTF-8)
//   seluvorne.Array <-> array (copied: each side owns its elements)
//   Dispatch        <-> Object; an empty reference comes back as None
//
// Numbers of other types cross as int when they have __index__ and as Double
// when they have __float__. Lists, tuples, dicts, sets, bytes and complex
// numbers raise 13. Any other Python object crosses as an Object: the library
// calls its attributes by name, as it calls a registered Python component.
#pragma once

#include <pybind11/pybind11.h>

#include "seluvorne/variant.h"

namespace seluvorne::python {

namespace py = pybind11;

// seluvorne.Ref: an argument passed by reference.
struct Ref {
  py::object value;
};

vb::Variant ToVariant(py::handle value);
py::object ToPython(const vb::Variant& value);

// The reference Python keeps to a library object. Python lets go of it with
// the GIL held, and the object's last release may enter the library (a store
// closing its file), whose lock must never be waited for with the GIL held: a
// thread inside the library may be waiting for the GIL to call a Python
// component. This reference lets go of the object with the GIL released.
Object HeldByPython(const Object& object);

// Creates seluvorne.Ref in `module`.
void BindRef(py::module_& module);

}  // namespace seluvorne::python
