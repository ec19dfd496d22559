// Calling by name, and the pieces of the member tables that need no template.

#include <new>

#include "seluvorne/member_table.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

vb::Variant Invoke(const Object& object, std::string_view member, CallKind kind,
                   std::span<vb::Variant> args) {
  if (!object) Raise(errc::kObjectNotSet);
  return object->invoke(member, kind, args);
}

namespace detail {

std::string DescribeArgument(const vb::Variant& value) {
  if (value.isEmpty()) return "Empty";
  if (value.isNull()) return "Null";
  if (value.isObject()) return "an object";
  if (value.isArray()) return "an array";
  if (const std::string* text = value.peek<std::string>()) return "value '" + *text + "'";
  return "value " + vb::CStr(value);
}

std::string MismatchDetail(std::string_view source, const ArgumentMismatch& mismatch) {
  return "(" + std::string(source) + ": argument " + std::to_string(mismatch.index + 1) + " (" +
         mismatch.value + ") is not " + std::string(mismatch.expected) + ")";
}

std::size_t NameHash::operator()(std::string_view name) const noexcept {
  std::size_t hash = 14695981039346656037ull;  // FNV-1a over the lower-case name
  for (char c : name) {
    hash ^= static_cast<unsigned char>(FoldCase(c));
    hash *= 1099511628211ull;
  }
  return hash;
}

void RethrowAsError(std::string_view source) {
  try {
    throw;
  } catch (const Error&) {
    throw;
  } catch (const std::bad_alloc&) {
    Raise(errc::kOutOfMemory, {}, source);
  } catch (const std::exception& failure) {
    Raise(errc::kAutomationError, failure.what(), source);
  } catch (...) {
    Raise(errc::kAutomationError, {}, source);
  }
}

}  // namespace detail

}  // namespace seluvorne
