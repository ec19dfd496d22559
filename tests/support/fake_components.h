// Recording fakes of the outside components, for every test that must see
// the exact calls the library makes.
//
// FakeComponents registers one scriptable, recording component under each
// outside component's identifier (or under the identifiers given). Every
// object made from them appends each call (member, call kind, arguments as
// passed) to one shared log, so a test can assert the order of calls across
// components. Members answer what the test scripted for that identifier; a
// property put is remembered and answered by later gets; anything else answers
// Empty.
//
//   FakeComponents fakes;
//   fakes.Answer("PresetStore.clsPresets", "GetHariDefault", "1");
//   ...
//   EXPECT_THAT(fakes.Log(), ElementsAre("PresetStore.clsPresets#1
//   GetHariDefault(\"KutaiMaxPage\")"));
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/dispatch.h"

namespace seluvorne::fakes {

// A scripted answer; it may change by-reference arguments in `args`.
using Handler = std::function<vb::Variant(std::span<vb::Variant> args)>;

// The identifiers of every outside component the library calls by name.
const std::vector<std::string_view>& OutsideComponentIds();

class FakeComponents {
 public:
  // Registers fakes under OutsideComponentIds(), or under `ids`.
  FakeComponents();
  explicit FakeComponents(std::vector<std::string_view> ids);
  // Unregisters them and drops the log; objects still alive keep logging into
  // the shared state.
  ~FakeComponents();
  FakeComponents(const FakeComponents&) = delete;
  FakeComponents& operator=(const FakeComponents&) = delete;

  // What `member` answers on every object of `id`, made before or after.
  void Answer(std::string_view id, std::string_view member, vb::Variant value);
  void Answer(std::string_view id, std::string_view member, Handler handler);

  // Every call, one line each: `Component#n Member(args)`, `Component#n get
  // Member`, `Component#n put Member = value`. Texts are quoted, numbers carry
  // the runtime's type suffix (1% Integer, 1& Long, 1! Single, 1# Double),
  // booleans read True/False, objects <ClassName>.
  std::vector<std::string> Log() const;
  // The calls made on objects of `id` (every call when `id` is empty), described.
  std::vector<std::string> Log(std::string_view id) const;
  void ClearLog();
  // How many objects of `id` were made.
  int Created(std::string_view id) const;

  struct State;

 private:
  friend Object MakeFakeObject(FakeComponents& fakes, std::string_view name);

  std::shared_ptr<State> state_;
  std::vector<std::string> ids_;
};

// A stand-in for a component that is not part of the registry: the progress
// bar a client hands over, or a caller's `obList`. Logs into `fakes` under `name`.
Object MakeFakeObject(FakeComponents& fakes, std::string_view name);

}  // namespace seluvorne::fakes
