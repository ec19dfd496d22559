#include "proxy.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "members.h"
#include "seluvorne/dispatch.h"
#include "seluvorne/member_table.h"
#include "values.h"

namespace seluvorne::python {

namespace {

// A member read off a proxy that is not a property without arguments:
// calling it calls the member.
struct Member {
  Object object;
  std::string name;
  CallKind kind;
};

// Converts the arguments (unwrapping Refs), calls the member with the GIL
// released, writes what the callee left in by-reference arguments back into
// their Refs (also when it raises) and converts the result.
py::object Call(const Object& object, std::string_view member, CallKind kind,
                py::handle arguments) {
  std::vector<vb::Variant> values;
  std::vector<std::pair<std::size_t, Ref*>> references;
  for (py::handle argument : arguments) {
    if (py::isinstance<Ref>(argument)) {
      Ref& ref = argument.cast<Ref&>();
      references.emplace_back(values.size(), &ref);
      values.push_back(ToVariant(ref.value));
    } else {
      values.push_back(ToVariant(argument));
    }
  }
  auto write_back = [&] {
    for (auto& [index, ref] : references)
      ref->value = ToPython(values[index]);
  };
  vb::Variant result;
  try {
    py::gil_scoped_release release;
    result = Invoke(object, member, kind, values);
  } catch (...) {
    write_back();
    detail::RethrowAsError(object->className());
  }
  write_back();
  return ToPython(result);
}

bool IsPythonName(std::string_view name) {
  return name.empty() || name.front() == '_';
}

py::object GetAttribute(const Object& self, const std::string& name) {
  if (IsPythonName(name)) throw py::attribute_error(name);
  std::optional<MemberKinds> kinds = self->describe(name);
  // A component that cannot tell what the name is gets a Member: obj.Name()
  // calls it as a method, which also reads a property.
  if (!kinds) return py::cast(Member{self, name, CallKind::Method});
  if (kinds->get && kinds->get_arguments == 0)
    return Call(self, name, CallKind::PropertyGet, py::tuple());
  if (kinds->method) return py::cast(Member{self, name, CallKind::Method});
  if (kinds->get) return py::cast(Member{self, name, CallKind::PropertyGet});
  // Write-only: the read raises what the component raises (438).
  return Call(self, name, CallKind::PropertyGet, py::tuple());
}

void SetAttribute(const Object& self, const std::string& name, py::handle value) {
  if (IsPythonName(name))
    throw py::attribute_error(name + ": a proxy has no attributes of its own");
  Call(self, name, CallKind::PropertyPut, py::make_tuple(value));
}

py::object CallDefault(const Object& self, py::args arguments) {
  std::string member(self->defaultMember());
  if (member.empty()) Raise(errc::kMemberNotSupported, "(no default member)", self->className());
  return Call(self, member, CallKind::PropertyGet, arguments);
}

std::string Repr(const Object& self) {
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(self.get()));
  return "<seluvorne.Dispatch " + std::string(self->className()) + " at " + address + ">";
}

}  // namespace

void BindDispatch(py::module_& module) {
  py::class_<Dispatch, Object>(module, "Dispatch",
                               "A component, created by name (CreateObject) or returned by\n"
                               "another, called by name.")
      .def("__getattr__", &GetAttribute)
      .def("__setattr__", &SetAttribute)
      .def("__call__", &CallDefault)
      .def(
          "invoke",
          [](const Object& self, const std::string& name, py::args arguments) {
            return Call(self, name, CallKind::Method, arguments);
          },
          py::arg("name"), "Calls the member as a method.")
      .def(
          "get",
          [](const Object& self, const std::string& name, py::args arguments) {
            return Call(self, name, CallKind::PropertyGet, arguments);
          },
          py::arg("name"), "Reads the property; the arguments are its indices.")
      .def(
          "put",
          [](const Object& self, const std::string& name, py::args arguments) {
            if (arguments.empty()) Raise(errc::kWrongArgumentCount, "(put needs a value)", name);
            Call(self, name, CallKind::PropertyPut, arguments);
          },
          py::arg("name"), "Writes the property: put(name, *indices, value).")
      .def("__eq__",
           [](const Object& self, py::handle other) -> py::object {
             if (!py::isinstance<Dispatch>(other))
               return py::reinterpret_borrow<py::object>(Py_NotImplemented);
             return py::bool_(self.get() == other.cast<Object>().get());
           })
      .def("__hash__", [](const Object& self) { return std::hash<const void*>{}(self.get()); })
      .def("__repr__", &Repr)
      .def("__dir__",
           [](const Object& self) {
             py::list names;
             for (const std::string& name : ProxyDir(*self))
               names.append(name);
             return names;
           })
      // An instance's own __doc__ is what help(obj) shows: the members of its class.
      .def_property_readonly("__doc__", [](const Object& self) { return ProxyHelp(*self); });

  py::class_<Member>(module, "Member", "A member of a component, to call: obj.Name(args).")
      .def("__call__",
           [](const Member& self, py::args arguments) {
             return Call(self.object, self.name, self.kind, arguments);
           })
      .def("__repr__",
           [](const Member& self) {
             return "<seluvorne.Member " + self.name + " of " +
                    std::string(self.object->className()) + ">";
           })
      .def_property_readonly("__doc__", [](const Member& self) {
        return std::string(self.object->className()) + "." + MemberHelp(*self.object, self.name);
      });
}

}  // namespace seluvorne::python
