// vb::Array<T>: the runtime's dynamic array.
//
// Any number of dimensions, every lower bound 0. Elements are stored with the
// first index varying fastest, as the runtime stores them, so ReDim Preserve
// (which may change only the last dimension) keeps every element in place and
// only grows or cuts the tail. An array that was never dimensioned is
// "unallocated": UBound and every index raise error 9, as they do for a
// dynamic array before its first ReDim.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "seluvorne/error.h"

namespace vb {

template <class T>
class Array {
 public:
  using value_type = T;

  // Unallocated.
  Array() = default;

  // Dimensioned, as `Dim a(ub0, ub1, ...)`; elements hold T's initial value.
  // (No constructor from a span of bounds: it would make the compiler test
  // whether an Array is a range while its element type may be incomplete.)
  explicit Array(std::initializer_list<std::int32_t> upper_bounds) { ReDim(upper_bounds); }

  Array(const Array& other) { *this = other; }
  Array(Array&&) noexcept = default;
  Array& operator=(Array&&) noexcept = default;
  Array& operator=(const Array& other) {
    if (this == &other) return *this;
    extents_ = other.extents_;
    size_ = other.size_;
    elements_ = other.elements_ ? std::make_unique<T[]>(size_) : nullptr;
    std::copy(other.begin(), other.end(), begin());
    return *this;
  }

  // ReDim: new bounds, contents discarded. An upper bound of -1 gives an
  // empty dimension (as Split of an empty text does); below -1 raises error 9.
  void ReDim(std::span<const std::int32_t> upper_bounds) {
    std::vector<std::int32_t> extents = ExtentsOf(upper_bounds);
    std::size_t size = Product(extents);
    elements_ = std::make_unique<T[]>(size);
    extents_ = std::move(extents);
    size_ = size;
  }
  void ReDim(std::initializer_list<std::int32_t> upper_bounds) {
    ReDim(std::span<const std::int32_t>(upper_bounds.begin(), upper_bounds.size()));
  }

  // ReDim Preserve: only the last dimension may change; the number of
  // dimensions and every other bound must stay (error 9 otherwise). An
  // unallocated array is simply dimensioned.
  void ReDimPreserve(std::span<const std::int32_t> upper_bounds) {
    if (!allocated()) return ReDim(upper_bounds);
    std::vector<std::int32_t> extents = ExtentsOf(upper_bounds);
    if (extents.size() != extents_.size() ||
        !std::equal(extents.begin(), extents.end() - 1, extents_.begin()))
      seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
    std::size_t size = Product(extents);
    auto elements = std::make_unique<T[]>(size);
    std::move(begin(), begin() + std::min(size, size_), elements.get());
    elements_ = std::move(elements);
    extents_ = std::move(extents);
    size_ = size;
  }
  void ReDimPreserve(std::initializer_list<std::int32_t> upper_bounds) {
    ReDimPreserve(std::span<const std::int32_t>(upper_bounds.begin(), upper_bounds.size()));
  }

  // Erase: back to unallocated.
  void Erase() {
    elements_.reset();
    extents_.clear();
    size_ = 0;
  }

  bool allocated() const { return elements_ != nullptr; }
  int dims() const { return static_cast<int>(extents_.size()); }
  std::size_t size() const { return size_; }
  std::span<const std::int32_t> extents() const { return extents_; }

  // UBound(a, dim), dim counted from 1.
  std::int32_t UBound(int dim = 1) const {
    if (dim < 1 || dim > dims()) seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
    return extents_[dim - 1] - 1;
  }
  std::int32_t LBound(int dim = 1) const {
    if (dim < 1 || dim > dims()) seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
    return 0;
  }

  // a(i), a(i, j), ...: exactly one index per dimension, each within bounds.
  template <class... I>
  T& operator()(I... indices) {
    const std::int32_t list[] = {static_cast<std::int32_t>(indices)...};
    return elements_[Offset(list)];
  }
  template <class... I>
  const T& operator()(I... indices) const {
    const std::int32_t list[] = {static_cast<std::int32_t>(indices)...};
    return elements_[Offset(list)];
  }
  T& at(std::span<const std::int32_t> indices) { return elements_[Offset(indices)]; }
  const T& at(std::span<const std::int32_t> indices) const { return elements_[Offset(indices)]; }

  T* begin() { return elements_.get(); }
  T* end() { return elements_.get() + size_; }
  const T* begin() const { return elements_.get(); }
  const T* end() const { return elements_.get() + size_; }

  friend bool operator==(const Array& a, const Array& b) {
    return a.extents_ == b.extents_ && std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  static std::vector<std::int32_t> ExtentsOf(std::span<const std::int32_t> upper_bounds) {
    if (upper_bounds.empty()) seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
    std::vector<std::int32_t> extents;
    extents.reserve(upper_bounds.size());
    for (std::int32_t ub : upper_bounds) {
      if (ub < -1) seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
      extents.push_back(ub + 1);
    }
    return extents;
  }
  static std::size_t Product(const std::vector<std::int32_t>& extents) {
    std::size_t n = 1;
    for (std::int32_t e : extents) {
      if (e != 0 && n > SIZE_MAX / 64 / static_cast<std::size_t>(e))
        seluvorne::Raise(seluvorne::errc::kOutOfMemory);
      n *= static_cast<std::size_t>(e);
    }
    return n;
  }
  std::size_t Offset(std::span<const std::int32_t> indices) const {
    if (indices.size() != extents_.size()) seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
    std::size_t offset = 0, stride = 1;
    for (std::size_t d = 0; d < indices.size(); ++d) {
      if (indices[d] < 0 || indices[d] >= extents_[d])
        seluvorne::Raise(seluvorne::errc::kSubscriptOutOfRange);
      offset += static_cast<std::size_t>(indices[d]) * stride;
      stride *= static_cast<std::size_t>(extents_[d]);
    }
    return offset;
  }

  std::vector<std::int32_t> extents_;  // element count per dimension
  std::size_t size_ = 0;
  std::unique_ptr<T[]> elements_;  // not std::vector: Array<bool> needs real bool elements
};

}  // namespace vb
