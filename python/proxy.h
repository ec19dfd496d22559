// seluvorne.Dispatch: a Python proxy over any component, with the
// late-bound surface the suite's clients have.
//
//   obj.Member(args)       a method, or an indexed property read
//   obj.Prop               a property read without arguments, when the
//                          component describes Prop as one (Dispatch::describe);
//                          anything else gives a seluvorne.Member to call
//   obj.Prop = value       a property put
//   obj(args)              the default member (Item of a collection, Value of
//                          a field)
//   obj.invoke(name, *args), obj.get(name, *args), obj.put(name, *args, value)
//                          the explicit forms, which always work
//
// Names are matched by the component, without regard to case. Names
// beginning with "_" are Python's own: obj._x raises AttributeError.
// Arguments wrapped in seluvorne.Ref are passed by reference; plain values
// by value. The GIL is released while the component runs.
//
// Proxies of the same C++ object are equal and hash alike.
#pragma once

#include <pybind11/pybind11.h>

namespace seluvorne::python {

namespace py = pybind11;

// Creates seluvorne.Dispatch and seluvorne.Member in `module`.
void BindDispatch(py::module_& module);

}  // namespace seluvorne::python
