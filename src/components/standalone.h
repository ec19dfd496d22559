// The standalone components, one factory each; register.cpp registers them
// under the outside components' identifiers. `data_root` is the interface
// text of the data root (see components.h).
#pragma once

#include <string>

#include "seluvorne/dispatch.h"

namespace seluvorne::components {

Object NewFloorDirs(const std::string& data_root);
Object NewExistProbe();
Object NewPresets(const std::string& data_root);
Object NewRoster(const std::string& data_root);
Object NewThroughBars();
Object NewWindowPlacer();
Object NewDisplayMetrics();
Object NewStepGuide();
// The components that only the suite has (suite_only.cpp).
Object NewScopeKit();
Object NewScopeExporter();
Object NewPresenter();
Object NewLaunch();
Object NewCompanionData();
Object NewFloorCompanion();

}  // namespace seluvorne::components
