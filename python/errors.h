// seluvorne.Error, and errors crossing between Python and the library.
//
// The library's errors reach Python as seluvorne.Error with the same number,
// source and description. An exception raised by Python code inside a
// component reaches the library as an Error: a seluvorne.Error keeps its
// number, anything else becomes 440 (Automation error) with the exception's
// type and message. When such an error comes back out to Python, the caller
// sees the component's own seluvorne.Error, or a 440 whose __cause__ is the
// original exception, traceback and all.
#pragma once

#include <memory>
#include <string_view>

#include "held_object.h"
#include "seluvorne/error.h"

namespace seluvorne::python {

// An Error raised by Python code inside a component, still carrying the
// Python exception it came from.
class PythonError : public Error {
 public:
  PythonError(Error error, py::object exception);

  std::shared_ptr<HeldObject> exception;
};

// Creates seluvorne.Error in `module` and translates the library's errors
// into it.
void BindErrors(py::module_& module);

// Turns the Python exception being handled into the Error the library sees;
// `source` names the component when the exception names none.
[[noreturn]] void RaiseFromPython(py::error_already_set& failure, std::string_view source);

// Turns the Python exception raised by an argument's own conversion
// (__index__, __float__) into 13 (Type mismatch), the exception its cause.
[[noreturn]] void RaiseConversionFailure(py::handle argument);

}  // namespace seluvorne::python
