// The standalone components on a demo data root: the floor folders, the
// file probe, the presets behind the page limit, the beam roster and the
// through-bar file, reached by name as the library reaches them.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/library.h"

void StandaloneTour() {
  using namespace seluvorne;
  using namespace seluvorne::frame;
  namespace fs = std::filesystem;

  const fs::path root = SELUVORNE_DEMO_DATA;
  fs::remove_all(root);
  fs::create_directories(root);
  std::ofstream(root / "presets.json") << R"({"KutaiMaxPage": "1"})" << '\n';
  std::ofstream(root / "roster.json") << R"({"beams": {
  "G1": {"kind": 2, "class": "girder", "end": "外端", "depths": [700, 650, 700]},
  "B1": {"kind": 3, "class": "secondary", "end": "端部", "depths": 500}}})"
                                      << '\n';
  // The demo's own settings file, so the tour never reads the user's.
  std::ofstream(root / "settings.json")
      << R"({"currentFloor": {"zenekonNo": 1, "koujiNo": 2, "kaiNo": 3}, "buzaiNo": 0})" << '\n';
  setenv("SELUVORNE_SETTINGS", (root / "settings.json").c_str(), 1);

  std::printf("\n-- standalone components on %s\n", root.c_str());
  RegisterStandaloneComponents(root.string());
  StartLibrary();
  EnsureStarted();
  std::printf("start routine: gPageMax = %d (preset KutaiMaxPage \"1\")\n", gPageMax);

  const std::string floor = gFloorDirs.CurrFloor();
  std::printf("CurrFloor = %s\n", floor.c_str());
  std::printf("Find_FileExists(floor, 16) before MakeMkDir = \"%s\"\n",
              gExistProbe.Find_FileExists(floor, ExistProbe::kFolder).c_str());
  gFloorDirs.MakeMkDir(floor);
  std::printf("Find_FileExists(floor, 16) after MakeMkDir  = \"%s\"\n",
              gExistProbe.Find_FileExists(floor, ExistProbe::kFolder).c_str());

  const BeamRoster roster = BeamRoster::Create();
  for (std::string name : {"G1", "B1", "X9"}) {
    const double depth = roster.harisei(name, 0);
    const std::string end = roster.GaiTanNaitan(name, 1);
    std::printf("roster %s: depth %g, end \"%s\", class %d, secondary %s\n", name.c_str(), depth,
                end.c_str(), roster.fOobariKobariKatamoti(name),
                roster.isKobari2(name) ? "yes" : "no");
  }

  const ThroughBars bars = ThroughBars::Create();
  const std::string file = floor + "\\Hollenbar.Dat";
  bool on = true;
  bars.SetPathPutHikiToosiSW(file, 4, on);
  std::printf("through-bar page 4 = %s, page 5 = %s\n",
              bars.SetPathGetHikiToosiSW(file, 4) ? "on" : "off",
              bars.SetPathGetHikiToosiSW(file, 5) ? "on" : "off");
  std::printf("3-D drawing available: %s\n",
              ScopeKit::Create().D3ViewVersionCheck() ? "yes" : "no (suite only)");
  unsetenv("SELUVORNE_SETTINGS");
}
