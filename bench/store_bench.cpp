// What opening a floor for work costs: creating a new floor (folder, file,
// eleven tables), opening an existing one with its three table checks beside
// the bare open, and copying one page's switch rows between floors. The
// standalone components stand in for the suite's, on a scratch data root.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
namespace fs = std::filesystem;

const std::string& DataRoot() {
  static const std::string root = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-store-bench-XXXXXX").string();
    std::string made = ::mkdtemp(pattern.data());
    setenv("SELUVORNE_SETTINGS", (fs::path(made) / "no-settings.json").c_str(), 1);
    RegisterStandaloneComponents(made);
    frame::ScheduleStart();
    frame::EnsureStarted();
    return made;
  }();
  return root;
}

std::string Floor(int kai) {
  return DataRoot() + "\\Zene1\\Kouji1\\" + vb::StrTrimmed(kai) + "kai";
}

void BM_NewFloor(benchmark::State& state) {
  clsSeluVorneDataService service;
  int kai = 1000;
  for (auto _ : state) {
    service.SetCurrKai(Floor(++kai));
    service.CloseDB();
  }
}
BENCHMARK(BM_NewFloor)->Unit(benchmark::kMillisecond);

void BM_OpenFloorWithChecks(benchmark::State& state) {
  clsSeluVorneDataService service;
  service.SetCurrKai(Floor(1));
  service.CloseDB();
  for (auto _ : state) {
    service.SetCurrKai(Floor(1));
    service.CloseDB();
  }
}
BENCHMARK(BM_OpenFloorWithChecks)->Unit(benchmark::kMicrosecond);

void BM_OpenFloorBare(benchmark::State& state) {
  clsSeluVorneDataService service;
  service.SetCurrKai(Floor(1));
  service.CloseDB();
  const std::string file = service.GetFileName(Floor(1));
  for (auto _ : state)
    dao::DBEngine::Instance()->OpenDatabase(file)->Close();
}
BENCHMARK(BM_OpenFloorBare)->Unit(benchmark::kMicrosecond);

void BM_SwitchPageCopy(benchmark::State& state) {
  const auto rows = static_cast<std::int16_t>(state.range(0));
  frame::gFloorDirs.MakeMkDir(Floor(2));
  frame::gFloorDirs.MakeMkDir(Floor(3));
  clsHariSWDS store;
  const std::string file = Floor(2) + "\\" + std::string(clsHariSWDS::kFileName);
  if (!fs::exists(NativePath(file))) {
    store.Create_SwMDB_TBL(file);
    auto db = dao::DBEngine::Instance()->OpenDatabase(file);
    auto set = db->OpenRecordset("SELUVORNESW");
    for (std::int16_t i = 0; i < rows; ++i) {
      set->AddNew();
      set->SetValue("PAGE", std::int16_t{0});
      set->SetValue("SPAN", i);
      set->SetValue("DATAKIND", std::int16_t{1});
      set->SetValue("DATA", "1");
      set->Update();
    }
  }
  for (auto _ : state)
    store.No_Copy1Page(1, 1, 2, 0, 1, 1, 3, 0);
}
BENCHMARK(BM_SwitchPageCopy)->Arg(40)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  DataRoot();  // the components and the start routine, before any service is made
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(DataRoot());
}
