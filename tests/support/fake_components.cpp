#include "fake_components.h"

#include <unordered_map>

#include "seluvorne/collaborators.h"
#include "seluvorne/member_table.h"
#include "seluvorne/runtime.h"

namespace seluvorne::fakes {

namespace {

using NameMap = std::unordered_map<std::string, Handler, detail::NameHash, detail::NameEqual>;

std::string DescribeValue(const vb::Variant& value) {
  if (value.isEmpty()) return "Empty";
  if (value.isNull()) return "Null";
  if (const auto* text = value.peek<std::string>()) return "\"" + *text + "\"";
  if (const auto* object = value.peek<Object>())
    return *object ? "<" + std::string((*object)->className()) + ">" : "Nothing";
  if (value.isArray()) {
    std::string out = "{";
    const vb::AnyArray& array = value.anyArray();
    std::size_t count = std::visit([](const auto& a) { return a.size(); }, array);
    for (std::size_t i = 0; i < count; ++i)
      out += (i ? ", " : "") + DescribeValue(vb::ElementAt(array, i));
    return out + "}";
  }
  switch (value.type()) {
    case vb::VarType::Integer:
      return vb::CStr(value) + "%";
    case vb::VarType::Long:
      return vb::CStr(value) + "&";
    case vb::VarType::Single:
      return vb::CStr(value) + "!";
    case vb::VarType::Double:
      return vb::CStr(value) + "#";
    default:
      return vb::CStr(value);
  }
}

// One call, with its arguments as passed in, before the callee ran.
struct RecordedCall {
  std::string component;  // the identifier the object was created under
  int instance = 0;       // 1 for the first object made under that identifier
  std::string member;
  CallKind kind = CallKind::Method;
  std::vector<vb::Variant> args;
};

std::string Describe(const RecordedCall& call) {
  std::string out = call.component + "#" + std::to_string(call.instance) + " ";
  std::string list;
  std::size_t listed = call.kind == CallKind::PropertyPut && !call.args.empty()
                           ? call.args.size() - 1
                           : call.args.size();
  for (std::size_t i = 0; i < listed; ++i)
    list += (i ? ", " : "") + DescribeValue(call.args[i]);
  switch (call.kind) {
    case CallKind::Method:
      return out + call.member + "(" + list + ")";
    case CallKind::PropertyGet:
      return out + "get " + call.member + (list.empty() ? "" : "(" + list + ")");
    case CallKind::PropertyPut:
      return out + "put " + call.member + (list.empty() ? "" : "(" + list + ")") + " = " +
             (call.args.empty() ? "?" : DescribeValue(call.args.back()));
  }
  return out;
}

}  // namespace

struct FakeComponents::State {
  std::map<std::string, NameMap, std::less<>> answers;  // by identifier
  std::map<std::string, int, std::less<>> created;
  std::vector<RecordedCall> calls;
};

namespace {

// One object of a fake component.
class RecordingComponent : public Dispatch {
 public:
  RecordingComponent(std::shared_ptr<FakeComponents::State> state, std::string id, int instance)
      : state_(std::move(state)), id_(std::move(id)), instance_(instance) {}

  vb::Variant invoke(std::string_view member, CallKind kind, std::span<vb::Variant> args) override {
    state_->calls.push_back(RecordedCall{id_, instance_, std::string(member), kind,
                                         std::vector<vb::Variant>(args.begin(), args.end())});
    if (kind == CallKind::PropertyPut) {
      if (!args.empty()) properties_.insert_or_assign(std::string(member), args.back());
      return {};
    }
    if (auto scripted = state_->answers.find(id_); scripted != state_->answers.end())
      if (auto handler = scripted->second.find(member); handler != scripted->second.end())
        return handler->second(args);
    auto remembered = properties_.find(member);
    return remembered != properties_.end() ? remembered->second : vb::Variant();
  }

  std::string_view className() const override { return id_; }

 private:
  std::shared_ptr<FakeComponents::State> state_;
  std::string id_;
  int instance_;
  std::unordered_map<std::string, vb::Variant, detail::NameHash, detail::NameEqual> properties_;
};

}  // namespace

const std::vector<std::string_view>& OutsideComponentIds() {
  using namespace frame;
  static const std::vector<std::string_view> ids = {
      FloorDirs::kProgId,     ExistProbe::kProgId,   Presets::kProgId,        BeamRoster::kProgId,
      StepGuide::kProgId,     WindowPlacer::kProgId, DisplayMetrics::kProgId, ScopeKit::kProgId,
      ScopeExporter::kProgId, Presenter::kProgId,    Launch::kProgId,         ExtraBars::kProgId,
      SolverRecords::kProgId, ThroughBars::kProgId};
  return ids;
}

FakeComponents::FakeComponents() : FakeComponents(OutsideComponentIds()) {}

FakeComponents::FakeComponents(std::vector<std::string_view> ids)
    : state_(std::make_shared<State>()) {
  for (std::string_view id : ids) {
    ids_.emplace_back(id);
    Register(id, [state = state_, id = std::string(id)]() -> Object {
      int instance = ++state->created[id];
      return std::make_shared<RecordingComponent>(state, id, instance);
    });
  }
}

FakeComponents::~FakeComponents() {
  for (const std::string& id : ids_)
    Unregister(id);
  // A logged argument may be a fake object, which holds the state: a cycle.
  state_->calls.clear();
}

void FakeComponents::Answer(std::string_view id, std::string_view member, vb::Variant value) {
  Answer(id, member, [value](std::span<vb::Variant>) { return value; });
}

void FakeComponents::Answer(std::string_view id, std::string_view member, Handler handler) {
  state_->answers[std::string(id)].insert_or_assign(std::string(member), std::move(handler));
}

std::vector<std::string> FakeComponents::Log() const {
  return Log({});
}

std::vector<std::string> FakeComponents::Log(std::string_view id) const {
  std::vector<std::string> lines;
  for (const RecordedCall& call : state_->calls)
    if (id.empty() || detail::NameEqual()(call.component, id)) lines.push_back(Describe(call));
  return lines;
}

void FakeComponents::ClearLog() {
  state_->calls.clear();
}

int FakeComponents::Created(std::string_view id) const {
  auto found = state_->created.find(id);
  return found == state_->created.end() ? 0 : found->second;
}

Object MakeFakeObject(FakeComponents& fakes, std::string_view name) {
  int instance = ++fakes.state_->created[std::string(name)];
  return std::make_shared<RecordingComponent>(fakes.state_, std::string(name), instance);
}

}  // namespace seluvorne::fakes
