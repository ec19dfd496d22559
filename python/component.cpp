#include "component.h"

#include <vector>

#include "array.h"
#include "errors.h"
#include "seluvorne/member_table.h"
#include "seluvorne/runtime.h"
#include "values.h"

namespace seluvorne::python {

namespace {

bool IsPrivate(std::string_view name) {
  return name.empty() || name.front() == '_';
}

// The name of the attribute `member` stands for among those the object lists
// (dir): the exact name, else the first that matches without regard to case.
std::optional<std::string> ListedName(py::handle target, std::string_view member) {
  py::object names = py::reinterpret_steal<py::object>(PyObject_Dir(target.ptr()));
  if (!names) throw py::error_already_set();
  std::optional<std::string> match;
  for (py::handle name : names) {
    std::string text = py::str(name);
    if (text == member) return text;
    if (!match && !IsPrivate(text) && detail::NameEqual{}(text, member)) match = std::move(text);
  }
  return match;
}

// The attribute `member` names; 438 when there is none. The exact name is
// tried first, so attributes that only __getattr__ knows are found too.
py::object Attribute(py::handle target, std::string_view member, const std::string& class_name) {
  if (!IsPrivate(member)) {
    py::str name(member.data(), member.size());
    if (PyObject* found = PyObject_GetAttr(target.ptr(), name.ptr()))
      return py::reinterpret_steal<py::object>(found);
    if (!PyErr_ExceptionMatches(PyExc_AttributeError)) throw py::error_already_set();
    PyErr_Clear();
    if (std::optional<std::string> listed = ListedName(target, member))
      return target.attr(listed->c_str());
  }
  Raise(errc::kMemberNotSupported, {}, class_name + "." + std::string(member));
}

// The key of attr[i] or attr[i, j].
py::object KeyOf(std::span<vb::Variant> indices) {
  if (indices.size() == 1) return ToPython(indices[0]);
  py::tuple key(indices.size());
  for (std::size_t i = 0; i < indices.size(); ++i)
    key[i] = ToPython(indices[i]);
  return key;
}

bool IsRefAnnotation(py::handle annotation) {
  if (annotation.is(py::type::of<Ref>())) return true;
  if (!PyUnicode_Check(annotation.ptr())) return false;
  std::string text = py::str(annotation);
  return text == "Ref" || text == "seluvorne.Ref";
}

// A quick look before asking inspect: a function or method whose
// annotations name no Ref takes nothing by reference.
bool MayTakeReferences(py::handle function) {
  py::object code_owner = py::getattr(function, "__func__", function);
  if (!PyFunction_Check(code_owner.ptr())) return true;
  py::object annotations = py::getattr(code_owner, "__annotations__", py::none());
  if (!PyDict_Check(annotations.ptr())) return false;
  for (auto item : py::reinterpret_borrow<py::dict>(annotations))
    if (IsRefAnnotation(item.second)) return true;
  return false;
}

// Which of `count` positional arguments `function` takes by reference.
std::vector<bool> ReferenceParameters(py::handle function, std::size_t count) {
  std::vector<bool> by_reference(count, false);
  if (count == 0 || !MayTakeReferences(function)) return by_reference;
  py::module_ inspect = py::module_::import("inspect");
  py::object signature;
  try {
    signature = inspect.attr("signature")(function);
  } catch (py::error_already_set& failure) {
    if (failure.matches(PyExc_ValueError) || failure.matches(PyExc_TypeError))
      return by_reference;  // a callable without a signature takes values
    throw;
  }
  py::object kinds = inspect.attr("Parameter");
  std::size_t position = 0;
  for (py::handle parameter : signature.attr("parameters").attr("values")()) {
    py::object kind = parameter.attr("kind");
    bool by_ref = IsRefAnnotation(parameter.attr("annotation"));
    if (kind.equal(kinds.attr("VAR_POSITIONAL"))) {
      while (position < count)
        by_reference[position++] = by_ref;
      break;
    }
    if (!kind.equal(kinds.attr("POSITIONAL_ONLY")) &&
        !kind.equal(kinds.attr("POSITIONAL_OR_KEYWORD")))
      break;
    if (position == count) break;
    by_reference[position++] = by_ref;
  }
  return by_reference;
}

vb::Variant CallAttribute(py::handle function, std::span<vb::Variant> args) {
  std::vector<bool> by_reference = ReferenceParameters(function, args.size());
  py::tuple arguments(args.size());
  for (std::size_t i = 0; i < args.size(); ++i) {
    py::object value = ToPython(args[i]);
    arguments[i] = by_reference[i] ? py::cast(Ref{std::move(value)}) : std::move(value);
  }
  auto write_back = [&] {
    for (std::size_t i = 0; i < args.size(); ++i)
      if (by_reference[i]) args[i] = ToVariant(arguments[i].cast<Ref&>().value);
  };
  PyObject* result = PyObject_Call(function.ptr(), arguments.ptr(), nullptr);
  if (!result) {
    py::error_already_set failure;
    write_back();
    throw failure;
  }
  write_back();
  return ToVariant(py::reinterpret_steal<py::object>(result));
}

void Put(py::handle target, std::string_view member, std::span<vb::Variant> args,
         const std::string& class_name) {
  if (args.empty()) Raise(errc::kWrongArgumentCount, {}, class_name + "." + std::string(member));
  py::object value = ToPython(args.back());
  std::span<vb::Variant> indices = args.first(args.size() - 1);
  if (!indices.empty()) {
    Attribute(target, member, class_name)[KeyOf(indices)] = value;
    return;
  }
  if (IsPrivate(member))
    Raise(errc::kMemberNotSupported, {}, class_name + "." + std::string(member));
  std::string name = ListedName(target, member).value_or(std::string(member));
  py::setattr(target, name.c_str(), value);
}

}  // namespace

PythonComponent::PythonComponent(py::object target)
    : target_(std::move(target)),
      class_name_(py::str(py::type::handle_of(target_.get()).attr("__name__"))) {}

vb::Variant PythonComponent::invoke(std::string_view member, CallKind kind,
                                    std::span<vb::Variant> args) {
  py::gil_scoped_acquire gil;
  const py::object& target = target_.get();
  try {
    if (kind == CallKind::PropertyPut) {
      Put(target, member, args, class_name_);
      return vb::Variant();
    }
    py::object attribute = Attribute(target, member, class_name_);
    if (PyCallable_Check(attribute.ptr())) return CallAttribute(attribute, args);
    if (args.empty()) return ToVariant(attribute);
    return ToVariant(attribute[KeyOf(args)]);
  } catch (py::error_already_set& failure) {
    RaiseFromPython(failure, class_name_);
  }
}

std::optional<MemberKinds> PythonComponent::describe(std::string_view member) const {
  if (IsPrivate(member)) return std::nullopt;
  py::gil_scoped_acquire gil;
  try {
    const py::object& target = target_.get();
    std::optional<std::string> name = ListedName(target, member);
    if (!name) return std::nullopt;
    py::object raw = py::module_::import("inspect").attr("getattr_static")(target, *name);
    py::handle builtins = PyEval_GetBuiltins();
    MemberKinds kinds;
    if (py::isinstance(raw, builtins["property"])) {
      kinds.get = true;
      kinds.put = !raw.attr("fset").is_none();
    } else if (PyCallable_Check(raw.ptr()) || py::isinstance(raw, builtins["classmethod"]) ||
               py::isinstance(raw, builtins["staticmethod"])) {
      kinds.method = true;
    } else {
      kinds.get = kinds.put = true;
      // A container is an indexed property: obj.Labels(1) reads Labels[1].
      bool container = PyObject_HasAttrString(raw.ptr(), "__getitem__") &&
                       !PyUnicode_Check(raw.ptr()) && !py::isinstance<ArrayValue>(raw);
      kinds.get_arguments = container ? 1 : 0;
    }
    return kinds;
  } catch (py::error_already_set&) {
    return std::nullopt;  // an attribute only __getattr__ knows: cannot tell
  }
}

void BindRegistry(py::module_& module) {
  module.def(
      "register",
      [](const std::string& prog_id, py::object factory) {
        if (prog_id.empty()) Raise(errc::kInvalidCall, "(an empty ProgID)");
        if (!PyCallable_Check(factory.ptr()))
          Raise(errc::kInvalidCall, "(the factory for " + prog_id + " is not callable)");
        auto held = std::make_shared<HeldObject>(std::move(factory));
        // The factory's result crosses as any value does: a Dispatch proxy
        // gives its C++ object, None makes CreateObject raise 429.
        Factory make = [held, prog_id]() -> Object {
          py::gil_scoped_acquire gil;
          try {
            return vb::CObj(ToVariant(held->get()()));
          } catch (py::error_already_set& failure) {
            RaiseFromPython(failure, prog_id);
          }
        };
        // Never wait for the registry's lock while holding the GIL: a
        // factory let go under that lock takes the GIL.
        py::gil_scoped_release release;
        Register(prog_id, std::move(make));
      },
      py::arg("prog_id"), py::arg("factory"),
      "Registers a component written in Python: CreateObject(prog_id), from Python\n"
      "or from the library, calls factory() and wraps what it returns.");
  module.def(
      "unregister",
      [](const std::string& prog_id) {
        py::gil_scoped_release release;
        return Unregister(prog_id);
      },
      py::arg("prog_id"), "Removes a registration; False when there was none.");
}

}  // namespace seluvorne::python
