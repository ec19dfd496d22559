// RegisterStandaloneComponents: the data root, then one registration per
// outside component, under the identifiers the frame calls.

#include <cstdlib>

#include "components/settings.h"
#include "components/standalone.h"
#include "seluvorne/collaborators.h"
#include "seluvorne/components.h"

namespace seluvorne {

namespace {

// The argument, else SELUVORNE_DATA, else the settings; without its
// trailing separators.
std::string ResolveDataRoot(std::string_view argument) {
  std::string root(argument);
  if (root.empty())
    if (const char* variable = std::getenv("SELUVORNE_DATA")) root = variable;
  if (root.empty()) root = components::ReadSettings().data_root;
  if (root.empty())
    Raise(errc::kInvalidCall, "(no data root: give one, set SELUVORNE_DATA, or set dataRoot in " +
                                  SettingsFilePath().string() + ")");
  while (root.size() > 1 && (root.back() == '\\' || root.back() == '/'))
    root.pop_back();
  return root;
}

}  // namespace

void RegisterStandaloneComponents(std::string_view data_root) {
  using namespace frame;
  using namespace components;
  const std::string root = ResolveDataRoot(data_root);
  Register(FloorDirs::kProgId, [root] { return NewFloorDirs(root); });
  Register(ExistProbe::kProgId, [] { return NewExistProbe(); });
  Register(Presets::kProgId, [root] { return NewPresets(root); });
  Register(BeamRoster::kProgId, [root] { return NewRoster(root); });
  Register(ThroughBars::kProgId, [] { return NewThroughBars(); });
  Register(WindowPlacer::kProgId, [] { return NewWindowPlacer(); });
  Register(DisplayMetrics::kProgId, [] { return NewDisplayMetrics(); });
  Register(StepGuide::kProgId, [] { return NewStepGuide(); });
  Register(ScopeKit::kProgId, [] { return NewScopeKit(); });
  Register(ScopeExporter::kProgId, [] { return NewScopeExporter(); });
  Register(Presenter::kProgId, [] { return NewPresenter(); });
  Register(Launch::kProgId, [] { return NewLaunch(); });
  Register(ExtraBars::kProgId, [] { return NewCompanionData(); });
  Register(SolverRecords::kProgId, [] { return NewCompanionData(); });
  Register(kFloorCompanionProgId, [] { return NewFloorCompanion(); });
}

}  // namespace seluvorne
