// Calling by name, and the pieces of the member tables that need no template.

#include <new>

#include "seluvorne/member_table.h"

namespace seluvorne {

vb::Variant Invoke(const Object& object, std::string_view member, CallKind kind,
                   std::span<vb::Variant> args) {
  if (!object) Raise(errc::kObjectNotSet);
  return object->invoke(member, kind, args);
}

namespace detail {

namespace {
// ASCII letter case only, as the runtime matches names; inline rather than
// std::tolower, which costs a call per character on every lookup.
constexpr unsigned char Fold(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}
}  // namespace

std::size_t NameHash::operator()(std::string_view name) const noexcept {
  std::size_t hash = 14695981039346656037ull;  // FNV-1a over the lower-case name
  for (char c : name) {
    hash ^= Fold(c);
    hash *= 1099511628211ull;
  }
  return hash;
}

bool NameEqual::operator()(std::string_view a, std::string_view b) const noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (Fold(a[i]) != Fold(b[i])) return false;
  return true;
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
