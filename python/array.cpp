#include "array.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "errors.h"
#include "seluvorne/typed.h"
#include "values.h"

namespace seluvorne::python {

namespace {

// The element type names, in the order of vb::AnyArray's alternatives.
constexpr std::string_view kTypeNames[] = {"i2", "i4", "r4", "r8", "str", "bool", "var"};
static_assert(std::size(kTypeNames) == std::variant_size_v<vb::AnyArray>);

template <std::size_t... I>
vb::AnyArray UnallocatedArray(std::size_t type, std::index_sequence<I...>) {
  vb::AnyArray array;
  ((type == I && (array.emplace<I>(), true)) || ...);
  return array;
}

std::int32_t IndexOf(py::handle number) {
  if (!PyIndex_Check(number.ptr()))
    Raise(errc::kTypeMismatch, "(an index or count must be an int, not " +
                                   std::string(Py_TYPE(number.ptr())->tp_name) + ")");
  py::object integer = py::reinterpret_steal<py::object>(PyNumber_Index(number.ptr()));
  if (!integer) RaiseConversionFailure(number);
  int overflow = 0;
  long long value = PyLong_AsLongLongAndOverflow(integer.ptr(), &overflow);
  if (overflow || value < INT32_MIN || value > INT32_MAX) Raise(errc::kSubscriptOutOfRange);
  return static_cast<std::int32_t>(value);
}

// The indices of a[j, i] (or a[i]), or the element counts of a shape.
std::vector<std::int32_t> IndicesOf(py::handle key) {
  std::vector<std::int32_t> indices;
  if (PyTuple_Check(key.ptr()) || PyList_Check(key.ptr())) {
    for (py::handle item : key)
      indices.push_back(IndexOf(item));
  } else {
    indices.push_back(IndexOf(key));
  }
  return indices;
}

vb::AnyArray MakeArray(std::string_view type, py::handle shape) {
  const auto* found = std::find(std::begin(kTypeNames), std::end(kTypeNames), type);
  if (found == std::end(kTypeNames))
    Raise(errc::kInvalidCall,
          "(element type '" + std::string(type) + "'; one of i2, i4, r4, r8, str, bool, var)");
  vb::AnyArray array = UnallocatedArray(static_cast<std::size_t>(found - std::begin(kTypeNames)),
                                        std::make_index_sequence<std::size(kTypeNames)>());
  std::vector<std::int32_t> upper_bounds = IndicesOf(shape);
  if (upper_bounds.empty()) return array;  // (): not yet dimensioned
  for (std::int32_t& bound : upper_bounds)
    bound = vb::Sub<std::int32_t>(bound, 1);
  std::visit(
      [&](auto& typed) {
        // More than 2 GiB is more than the clients' 32-bit runtime could
        // ever hold: 7, as it raised, rather than asking the system for it.
        constexpr double kMaxBytes = 2147483648.0;
        double bytes = sizeof(*typed.begin());
        for (std::int32_t bound : upper_bounds)
          bytes *= static_cast<double>(bound) + 1;
        if (bytes > kMaxBytes) Raise(errc::kOutOfMemory);
        try {
          typed.ReDim(upper_bounds);
        } catch (const std::bad_alloc&) {
          Raise(errc::kOutOfMemory);
        }
      },
      array);
  return array;
}

std::vector<std::int32_t> ExtentsOf(const vb::AnyArray& array) {
  return std::visit(
      [](const auto& typed) {
        return std::vector<std::int32_t>(typed.extents().begin(), typed.extents().end());
      },
      array);
}

// Nested lists, the outer one over the first index: list[j][i] is a[j, i].
// Elements are stored with the first index fastest, so index i of dimension
// `dim` sits i * stride elements on from `base`.
py::list ListOf(const vb::AnyArray& array, std::span<const std::int32_t> extents, std::size_t dim,
                std::size_t base, std::size_t stride) {
  py::list list(extents[dim]);
  for (std::int32_t i = 0; i < extents[dim]; ++i) {
    std::size_t at = base + static_cast<std::size_t>(i) * stride;
    if (dim + 1 == extents.size())
      list[i] = ToPython(vb::ElementAt(array, at));
    else
      list[i] =
          ListOf(array, extents, dim + 1, at, stride * static_cast<std::size_t>(extents[dim]));
  }
  return list;
}

py::list ToList(const ArrayValue& self) {
  std::vector<std::int32_t> extents = ExtentsOf(self.array);
  if (extents.empty()) return py::list();
  return ListOf(self.array, extents, 0, 0, 1);
}

py::object GetItem(const ArrayValue& self, py::handle key) {
  std::vector<std::int32_t> indices = IndicesOf(key);
  return std::visit([&](const auto& typed) { return ToPython(vb::Variant(typed.at(indices))); },
                    self.array);
}

// The value is converted with the runtime's coercions for the element type
// (40000 into "i2" raises 6, "abc" raises 13); on error the element keeps
// what it held.
void SetItem(ArrayValue& self, py::handle key, py::handle value) {
  std::vector<std::int32_t> indices = IndicesOf(key);
  vb::Variant converted = ToVariant(value);
  std::visit(
      [&](auto& typed) {
        using Element = typename std::remove_reference_t<decltype(typed)>::value_type;
        auto& element = typed.at(indices);
        element = vb::FromVariant<Element>(converted);
      },
      self.array);
}

py::tuple Shape(const ArrayValue& self) {
  std::vector<std::int32_t> extents = ExtentsOf(self.array);
  py::tuple shape(extents.size());
  for (std::size_t d = 0; d < extents.size(); ++d)
    shape[d] = extents[d];
  return shape;
}

std::string Repr(const ArrayValue& self) {
  return "<seluvorne.Array " + std::string(kTypeNames[self.array.index()]) + " " +
         py::repr(Shape(self)).cast<std::string>() + " " +
         py::repr(ToList(self)).cast<std::string>() + ">";
}

}  // namespace

void BindArray(py::module_& module) {
  py::class_<ArrayValue>(
      module, "Array",
      "The runtime's array: element type one of \"i2\", \"i4\", \"r4\", \"r8\",\n"
      "\"str\", \"bool\", \"var\"; shape a tuple of element counts, every lower\n"
      "bound 0; an empty shape gives an array not yet dimensioned. a[j, i]\n"
      "indexes with one index per dimension (error 9 outside the bounds).")
      .def(py::init([](std::string_view type, py::handle shape) {
             return ArrayValue{MakeArray(type, shape)};
           }),
           py::arg("type"), py::arg("shape") = py::tuple())
      .def_property_readonly(
          "type", [](const ArrayValue& self) { return kTypeNames[self.array.index()]; },
          "The element type: \"i2\", \"i4\", \"r4\", \"r8\", \"str\", \"bool\" or \"var\".")
      .def_property_readonly("shape", &Shape, "The element count of each dimension.")
      .def(
          "ubound",
          [](const ArrayValue& self, int dim) {
            return std::visit([&](const auto& typed) { return typed.UBound(dim); }, self.array);
          },
          py::arg("dim") = 1, "The upper bound of dimension `dim` (from 1); error 9 outside.")
      .def("tolist", &ToList, "Nested lists, the outer one over the first index.")
      .def("__len__",
           [](const ArrayValue& self) {
             std::vector<std::int32_t> extents = ExtentsOf(self.array);
             return extents.empty() ? 0 : extents[0];
           })
      .def("__iter__", [](const ArrayValue& self) { return py::iter(ToList(self)); })
      .def("__getitem__", &GetItem)
      .def("__setitem__", &SetItem)
      .def("__eq__",
           [](const ArrayValue& self, py::handle other) -> py::object {
             if (!py::isinstance<ArrayValue>(other))
               return py::reinterpret_borrow<py::object>(Py_NotImplemented);
             return py::bool_(self.array == other.cast<const ArrayValue&>().array);
           })
      .def("__copy__", [](const ArrayValue& self) { return self; })
      .def("__deepcopy__", [](const ArrayValue& self, py::handle) { return self; })
      .def("__repr__", &Repr)
      .attr("__hash__") = py::none();
}

}  // namespace seluvorne::python
