#include "errors.h"

#include <pybind11/stl.h>
#include <optional>
#include <string>

namespace seluvorne::python {

namespace {

// The seluvorne.Error class, kept for the life of the process.
PyObject* error_type = nullptr;

py::object NewError(const Error& error) {
  return py::handle(error_type)(error.number, error.description, error.source);
}

// Error(number, description=None, source=None): the description defaults to
// the runtime's text for the number. The arguments are also kept as
// BaseException keeps them, so the error pickles and copies.
void InitError(py::handle self, int number, std::optional<std::string> description,
               std::optional<std::string> source) {
  std::string text =
      description ? std::move(*description) : std::string(StandardDescription(number));
  std::string from = source.value_or("");
  self.attr("number") = number;
  self.attr("description") = text;
  self.attr("source") = from;
  py::handle(PyExc_Exception).attr("__init__")(self, number, text, from);
}

std::string ErrorText(py::handle self) {
  return Error(self.attr("number").cast<int>(), self.attr("source").cast<std::string>(),
               self.attr("description").cast<std::string>())
      .what();
}

void Translate(std::exception_ptr pending) {
  try {
    if (pending) std::rethrow_exception(pending);
  } catch (const PythonError& error) {
    py::object original = error.exception->get();
    // What is no Exception (KeyboardInterrupt, SystemExit) comes back as it
    // was raised: the script must still see those.
    if (PyObject_IsInstance(original.ptr(), PyExc_Exception) != 1) {
      PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(original.ptr())), original.ptr());
      return;
    }
    py::object raised = NewError(error);
    PyException_SetCause(raised.ptr(), original.release().ptr());
    PyErr_SetObject(error_type, raised.ptr());
  } catch (const Error& error) {
    PyErr_SetObject(error_type, NewError(error).ptr());
  }
}

}  // namespace

PythonError::PythonError(Error error, py::object exception_)
    : Error(std::move(error)), exception(std::make_shared<HeldObject>(std::move(exception_))) {}

void BindErrors(py::module_& module) {
  error_type = PyErr_NewExceptionWithDoc(
      "seluvorne.Error",
      "An error of the library or of a component: the runtime's error number, the\n"
      "component that raised it (source) and the runtime's description.",
      PyExc_Exception, nullptr);
  if (!error_type) throw py::error_already_set();
  py::handle type(error_type);
  // Not named "__init__" for pybind11, which would take it for the
  // constructor of one of its own classes.
  type.attr("__init__") =
      py::cpp_function(&InitError, py::name("init"), py::is_method(type), py::arg("number"),
                       py::arg("description") = py::none(), py::arg("source") = py::none());
  type.attr("__str__") = py::cpp_function(&ErrorText, py::name("__str__"), py::is_method(type));
  module.attr("Error") = type;
  py::register_exception_translator(&Translate);
}

void RaiseFromPython(py::error_already_set& failure, std::string_view source) {
  const py::object& exception = failure.value();
  if (failure.trace()) PyException_SetTraceback(exception.ptr(), failure.trace().ptr());
  if (PyObject_IsInstance(exception.ptr(), error_type) == 1) {
    std::string from = py::str(exception.attr("source"));
    if (from.empty()) from = source;
    throw PythonError(Error(exception.attr("number").cast<int>(), std::move(from),
                            py::str(exception.attr("description"))),
                      exception);
  }
  std::string message = py::str(py::type::handle_of(exception).attr("__name__"));
  if (std::string text = py::str(exception); !text.empty()) message += ": " + text;
  throw PythonError(MakeError(errc::kAutomationError, message, source), exception);
}

void RaiseConversionFailure(py::handle argument) {
  py::error_already_set failure;
  std::string kind = py::str(py::type::handle_of(failure.value()).attr("__name__"));
  throw PythonError(MakeError(errc::kTypeMismatch,
                              "(converting a " + std::string(Py_TYPE(argument.ptr())->tp_name) +
                                  " raised " + kind + ")"),
                    failure.value());
}

}  // namespace seluvorne::python
