#include "values.h"

#include <charconv>
#include <climits>

#include "array.h"
#include "component.h"
#include "errors.h"
#include "seluvorne/dispatch.h"

namespace seluvorne::python {

namespace {

vb::Variant IntegerToVariant(PyObject* number) {
  int overflow = 0;
  long long value = PyLong_AsLongLongAndOverflow(number, &overflow);
  if (value == -1 && PyErr_Occurred()) throw py::error_already_set();
  if (!overflow) return vb::Literal(value);
  double real = PyLong_AsDouble(number);
  if (real == -1.0 && PyErr_Occurred()) {
    PyErr_Clear();
    Raise(errc::kOverflow);
  }
  return vb::Variant(real);
}

vb::Variant TextToVariant(PyObject* text) {
  Py_ssize_t size = 0;
  const char* utf8 = PyUnicode_AsUTF8AndSize(text, &size);
  if (!utf8) {
    PyErr_Clear();
    Raise(errc::kTypeMismatch, "(a text with unpaired surrogates)");
  }
  return vb::Variant(std::string(utf8, static_cast<std::size_t>(size)));
}

// Containers and other data that have no Variant form: passing one is a
// mistake, never a component.
bool IsPlainData(PyObject* value) {
  return PyList_Check(value) || PyTuple_Check(value) || PyDict_Check(value) ||
         PyAnySet_Check(value) || PyBytes_Check(value) || PyByteArray_Check(value) ||
         PyComplex_Check(value) || py::isinstance<Ref>(value);
}

// The float whose shortest decimal text is that of the Single.
double SingleToDouble(float value) {
  char text[32];
  auto written = std::to_chars(text, text + sizeof text, value);
  double result = value;
  std::from_chars(text, written.ptr, result);
  return result;
}

}  // namespace

vb::Variant ToVariant(py::handle value) {
  PyObject* object = value.ptr();
  if (object == Py_None) return vb::Variant();
  if (PyBool_Check(object)) return vb::Variant(object == Py_True);
  if (PyLong_Check(object)) return IntegerToVariant(object);
  if (PyFloat_Check(object)) return vb::Variant(PyFloat_AS_DOUBLE(object));
  if (PyUnicode_Check(object)) return TextToVariant(object);
  if (py::isinstance<ArrayValue>(value)) return vb::Variant(value.cast<const ArrayValue&>().array);
  if (py::isinstance<Dispatch>(value)) return vb::Variant(value.cast<Object>());
  if (IsPlainData(object)) {
    Raise(errc::kTypeMismatch,
          "(a " + std::string(Py_TYPE(object)->tp_name) + " has no value of the runtime)");
  }
  if (PyIndex_Check(object)) {
    py::object integer = py::reinterpret_steal<py::object>(PyNumber_Index(object));
    if (!integer) RaiseConversionFailure(value);
    return IntegerToVariant(integer.ptr());
  }
  if (Py_TYPE(object)->tp_as_number && Py_TYPE(object)->tp_as_number->nb_float) {
    double real = PyFloat_AsDouble(object);
    if (real == -1.0 && PyErr_Occurred()) RaiseConversionFailure(value);
    return vb::Variant(real);
  }
  return vb::Variant(
      Object(std::make_shared<PythonComponent>(py::reinterpret_borrow<py::object>(value))));
}

py::object ToPython(const vb::Variant& value) {
  switch (value.type()) {
    case vb::VarType::Empty:
    case vb::VarType::Null:
      return py::none();
    case vb::VarType::Integer:
      return py::int_(*value.peek<std::int16_t>());
    case vb::VarType::Long:
      return py::int_(*value.peek<std::int32_t>());
    case vb::VarType::Single:
      return py::float_(SingleToDouble(*value.peek<float>()));
    case vb::VarType::Double:
      return py::float_(*value.peek<double>());
    case vb::VarType::Boolean:
      return py::bool_(*value.peek<bool>());
    case vb::VarType::String: {
      // Invalid bytes read as U+FFFD, as the runtime's text functions count them.
      const std::string& text = *value.peek<std::string>();
      PyObject* decoded =
          PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
      if (!decoded) throw py::error_already_set();
      return py::reinterpret_steal<py::object>(decoded);
    }
    case vb::VarType::Object: {
      const Object& object = *value.peek<Object>();
      return object ? py::cast(HeldByPython(object)) : py::none();
    }
    case vb::VarType::Array:
      return py::cast(ArrayValue{value.anyArray()});
    default:
      Raise(errc::kTypeMismatch);
  }
}

Object HeldByPython(const Object& object) {
  return Object(object.get(), [kept = object](Dispatch*) mutable {
    if (Py_IsInitialized() && PyGILState_Check()) {
      py::gil_scoped_release release;
      kept.reset();
    } else {
      kept.reset();
    }
  });
}

void BindRef(py::module_& module) {
  py::class_<Ref>(module, "Ref",
                  "An argument passed by reference: after the call, value holds what the\n"
                  "callee left there. A Python component receives Ref objects for the\n"
                  "parameters it annotates as Ref.")
      .def(py::init([](py::object value) { return Ref{std::move(value)}; }),
           py::arg("value") = py::none())
      .def_readwrite("value", &Ref::value)
      .def("__repr__",
           [](const Ref& ref) { return "Ref(" + py::repr(ref.value).cast<std::string>() + ")"; });
}

}  // namespace seluvorne::python
