// What opening a floor for work costs: creating a new floor (folder, file,
// eleven tables), opening an existing one with its three table checks beside
// the bare open, reopening a floor the process holds, the page directory's
// pattern (the current floor opened again and its kind rows read, once per
// page of a 500-page floor) beside raw SQLite running the same query, and
// copying one page's switch rows between floors. The standalone components
// stand in for the suite's, on a scratch data root.

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "ratio_reporter.h"
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

// A floor opened for work (OpenSeluVorne and its three table checks) while
// the process already holds it open, then closed: what a member that opens
// the current floor for each call pays.
void BM_ReopenHeldFloorWithChecks(benchmark::State& state) {
  clsSeluVorneDataService service;
  service.SetCurrKai(Floor(1));  // held for the whole run
  for (auto _ : state) {
    std::shared_ptr<dao::Database> db;
    service.OpenSeluVorne(Floor(1), db);
    db->Close();
  }
}
BENCHMARK(BM_ReopenHeldFloorWithChecks)->Unit(benchmark::kMicrosecond);

// ---- The page directory's pattern --------------------------------------------

constexpr int kDirectoryPages = 500;
constexpr const char* kKindQuery = "SELECT * FROM KUTAIDATA Where SUBPAGE = 0 AND BANGOU = 81 ;";

// A floor of 500 pages: each page has its kind row (SUBPAGE 0, BANGOU 81)
// among 20 rows of KUTAIDATA.
const std::string& DirectoryFloor() {
  static const std::string floor = [] {
    clsSeluVorneDataService service;
    service.SetCurrKai(Floor(500));
    auto rows = service.KutaiDb->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    for (std::int16_t page = 0; page < kDirectoryPages; ++page)
      for (std::int16_t bangou = 70; bangou < 90; ++bangou) {
        rows->AddNew();
        rows->SetValue("PAGE", page);
        rows->SetValue("SUBPAGE", std::int16_t{0});
        rows->SetValue("BANGOU", bangou);
        rows->SetValue("DATA", bangou == 81 ? "2" : "300");
        rows->Update();
      }
    service.CloseDB();
    return Floor(500);
  }();
  return floor;
}

// The current floor opened (OpenSeluVorne, table checks included) and its
// kind rows read with RecordCount and GetRows, once per page, while the
// caller holds the floor open: the whole listing of a 500-page floor.
void BM_DirectoryKindQueries(benchmark::State& state) {
  clsSeluVorneDataService service;
  service.SetCurrKai(DirectoryFloor());
  std::int64_t read = 0;
  for (auto _ : state) {
    for (int page = 0; page < kDirectoryPages; ++page) {
      std::shared_ptr<dao::Database> db;
      service.OpenSeluVorne(DirectoryFloor(), db);
      auto kinds = db->OpenRecordset(kKindQuery, dao::dbOpenDynaset);
      if (!(kinds->IsEOF() && kinds->IsBOF())) kinds->MoveLast();
      std::int32_t count = kinds->RecordCount();
      kinds->MoveFirst();
      vb::Array<vb::Variant> rows = kinds->GetRows(9999);
      read += count;
      benchmark::DoNotOptimize(rows);
      kinds->Close();
      db->Close();
    }
  }
  if (read != state.iterations() * kDirectoryPages * kDirectoryPages)
    state.SkipWithError("wrong row count");
}
BENCHMARK(BM_DirectoryKindQueries)->Unit(benchmark::kMillisecond);

// The same reads through raw SQLite: one connection, the kind query prepared
// once and run 500 times, every value copied out.
void BM_DirectoryKindQueriesRaw(benchmark::State& state) {
  const std::string file =
      NativePath(clsSeluVorneDataService().GetFileName(DirectoryFloor())).string();
  sqlite3* db = nullptr;
  sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2(db, "SELECT * FROM KUTAIDATA WHERE SUBPAGE = 0 AND BANGOU = ?", -1, &select,
                     nullptr);
  std::int64_t read = 0;
  for (auto _ : state) {
    for (int page = 0; page < kDirectoryPages; ++page) {
      sqlite3_reset(select);
      sqlite3_bind_int(select, 1, 81);
      std::vector<vb::Variant> values;
      while (sqlite3_step(select) == SQLITE_ROW) {
        for (int column = 0; column < 3; ++column)
          values.emplace_back(static_cast<std::int16_t>(sqlite3_column_int(select, column)));
        values.emplace_back(
            std::string(reinterpret_cast<const char*>(sqlite3_column_text(select, 3)),
                        static_cast<std::size_t>(sqlite3_column_bytes(select, 3))));
        ++read;
      }
      benchmark::DoNotOptimize(values);
    }
  }
  sqlite3_finalize(select);
  sqlite3_close(db);
  if (read != state.iterations() * kDirectoryPages * kDirectoryPages)
    state.SkipWithError("wrong row count");
}
BENCHMARK(BM_DirectoryKindQueriesRaw)->Unit(benchmark::kMillisecond);

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
  seluvorne::bench::RatioReporter reporter(
      {{"open the current floor + kind query with GetRows, x 500", "BM_DirectoryKindQueries",
        "BM_DirectoryKindQueriesRaw"}});
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  fs::remove_all(DataRoot());
}
