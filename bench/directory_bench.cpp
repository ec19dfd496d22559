// The page directory on a floor of 500 pages, each with its directory row and
// its kind row: AllPages, which asks every listed page's kind and so opens
// the floor once per page, beside AllPages2, which lists without kinds; and
// SelectedSeluVorneNo up to the showing of the dialog, whose list it fills
// with the same 500 kind questions (a stand-in dialog answers at once). The
// standalone components stand in for the suite's, on a scratch data root.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
namespace fs = std::filesystem;

constexpr std::int16_t kPages = 500;

// The windows without a display: the dialog keeps its items and answers "*".
class InstantForms : public frame::Forms, public frame::SelectDialog {
 public:
  frame::SelectDialog& Select() override { return *this; }
  void UnloadSelect() override {}
  void ShowKakunin(const std::string&) override {}
  void UnloadKakunin() override {}
  void DoEvents() override {}

  void ClearList() override { items = 0; }
  void AddItem(const std::string&) override { ++items; }
  void SetMultiSelect(bool) override {}
  void SetToMenuCaption(const std::string&) override {}
  std::int16_t EnableKakuninzu() const override { return -1; }
  void SetEnableKakuninzu(std::int16_t) override {}
  std::int16_t chkKakuninzuChecked() const override { return 0; }
  void SetChkKakuninzuChecked(std::int16_t) override {}
  void ShowModal() override {}
  std::string Result() const override { return "*"; }

  int items = 0;
};

// The data root with the current floor of 500 pages, made once.
const std::string& CurrentFloor() {
  static const std::string floor = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-dir-bench-XXXXXX").string();
    std::string root = ::mkdtemp(pattern.data());
    const fs::path settings = fs::path(root) / "settings.json";
    std::ofstream(settings) << R"({"currentFloor": {"zenekonNo": 1, "koujiNo": 1, "kaiNo": 1}})";
    setenv("SELUVORNE_SETTINGS", settings.c_str(), 1);
    RegisterStandaloneComponents(root);
    frame::ScheduleStart();
    frame::EnsureStarted();
    frame::gPageMax = frame::kLargePageMax;
    std::string folder = frame::gFloorDirs.CurrFloor();
    clsSeluVorneDataService writer;
    writer.SetCurrKai(folder);
    auto names = writer.KutaiDb->OpenRecordset("TOORIMEI");
    auto kinds = writer.KutaiDb->OpenRecordset("KUTAIDATA");
    for (std::int16_t page = 0; page < kPages; ++page) {
      names->AddNew();
      names->SetValue("PAGE", page);
      names->SetValue("TOORI", "X" + vb::StrTrimmed(page) + "通り");
      names->SetValue("KASYO", "1");
      names->Update();
      kinds->AddNew();
      kinds->SetValue("PAGE", page);
      kinds->SetValue("SUBPAGE", std::int16_t{0});
      kinds->SetValue("BANGOU", std::int16_t{81});
      kinds->SetValue("DATA", "G" + vb::StrTrimmed(page % 7));
      kinds->Update();
    }
    writer.KutaiDb->Close();
    return folder;
  }();
  return floor;
}

void BM_AllPages(benchmark::State& state) {
  CurrentFloor();
  clsSeluVorneDataService service;
  std::size_t length = 0;
  for (auto _ : state)
    length = service.AllPages().size();
  if (length != 1 + 3 * kPages) state.SkipWithError("not every page listed");
}
BENCHMARK(BM_AllPages)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_AllPages2(benchmark::State& state) {
  CurrentFloor();
  clsSeluVorneDataService service;
  for (auto _ : state)
    benchmark::DoNotOptimize(service.AllPages2());
}
BENCHMARK(BM_AllPages2)->Unit(benchmark::kMillisecond);

void BM_SelectedSeluVorneNoUpToTheDialog(benchmark::State& state) {
  CurrentFloor();
  auto forms = std::make_shared<InstantForms>();
  frame::gForms = forms;
  clsSeluVorneDataService service;
  for (auto _ : state)
    benchmark::DoNotOptimize(service.SelectedSeluVorneNo(1));
  if (forms->items != kPages) state.SkipWithError("not every page listed");
  frame::gForms.reset();
}
BENCHMARK(BM_SelectedSeluVorneNoUpToTheDialog)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  CurrentFloor();  // the components, the start routine and the floor, before any service
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(seluvorne::NativePath(seluvorne::frame::gFloorDirs.DataPath()));
}
