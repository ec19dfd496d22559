// The process-wide registry of components, created by name.

#include <mutex>
#include <unordered_map>

#include "seluvorne/entry_lock.h"
#include "seluvorne/member_table.h"

namespace seluvorne {

namespace {

struct Registry {
  std::mutex mutex;
  std::unordered_map<std::string, Factory, detail::NameHash, detail::NameEqual> factories;
};

Registry& TheRegistry() {
  static Registry* registry = new Registry;  // never destroyed: components may outlive main
  return *registry;
}

}  // namespace

void Register(std::string_view prog_id, Factory factory) {
  Registry& registry = TheRegistry();
  std::lock_guard lock(registry.mutex);
  registry.factories.insert_or_assign(std::string(prog_id), std::move(factory));
}

bool Unregister(std::string_view prog_id) {
  Registry& registry = TheRegistry();
  std::lock_guard lock(registry.mutex);
  auto found = registry.factories.find(prog_id);
  if (found == registry.factories.end()) return false;
  registry.factories.erase(found);
  return true;
}

bool IsRegistered(std::string_view prog_id) {
  Registry& registry = TheRegistry();
  std::lock_guard lock(registry.mutex);
  return registry.factories.contains(prog_id);
}

namespace {

// What a host does about a name nobody registered.
std::string NotRegisteredDetail(std::string_view prog_id) {
  return "(" + std::string(prog_id) +
         " is not registered: register it with Register(...) in C++ or seluvorne.register(...) "
         "in Python; RegisterStandaloneComponents(...) or seluvorne.register_standalone(...) "
         "registers the standalone outside components, StartLibrary() the library's own "
         "classes)";
}

}  // namespace

Object CreateObject(std::string_view prog_id) {
  EntryLock entry;  // a component's constructor may reach the library's shared state
  Factory factory;
  {
    Registry& registry = TheRegistry();
    std::lock_guard lock(registry.mutex);
    auto found = registry.factories.find(prog_id);
    if (found != registry.factories.end()) factory = found->second;
  }
  // Called outside the lock: a component may create others while it is made.
  Object object = factory ? factory() : nullptr;
  if (!object) Raise(errc::kCannotCreateObject, NotRegisteredDetail(prog_id));
  return object;
}

}  // namespace seluvorne
