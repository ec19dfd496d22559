// Legacy floors on the fixture floor-basic (3 files, 3647 rows): opening it
// read-only in place, migrating it, and the reader helper's start-up cost
// per file (its smallest file, 9 rows: almost nothing but the start).

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "legacy/jet_reader.h"
#include "seluvorne/dao.h"
#include "seluvorne/legacy.h"

namespace {

namespace fs = std::filesystem;
namespace dao = seluvorne::dao;

const fs::path kFloor = fs::path(SELUVORNE_FIXTURES) / "jet" / "floor-basic";
const char* const kFiles[] = {"SELUVORN.mdb", "HARIFUKA.mdb", "SeluVorneSW.MDB"};

fs::path ScratchFolder() {
  static fs::path folder = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-legacy-bench-XXXXXX").string();
    return fs::path(::mkdtemp(pattern.data()));
  }();
  return folder;
}

std::int64_t RowsOf(dao::Database& database) {
  std::int64_t rows = 0;
  auto tables = database.TableDefs();
  for (std::int32_t i = 3; i < tables->Count(); ++i) {  // after the three catalogue tables
    auto set = database.OpenRecordset(tables->Item(i)->Name(), dao::dbOpenSnapshot);
    if (set->IsEOF()) continue;
    set->MoveLast();
    rows += set->RecordCount();
  }
  return rows;
}

// The whole floor opened in place and every table read to its end.
void BM_OpenFloorInPlace(benchmark::State& state) {
  std::int64_t rows = 0;
  for (auto _ : state) {
    for (const char* file : kFiles) {
      auto database = dao::DBEngine::Instance()->OpenDatabase((kFloor / file).string());
      rows += RowsOf(*database);
      database->Close();
    }
  }
  state.counters["rows/s"] =
      benchmark::Counter(static_cast<double>(rows), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_OpenFloorInPlace)->Unit(benchmark::kMillisecond)->UseRealTime();

// One floor migrated, every row checked: the time of one floor.
void BM_MigrateFloor(benchmark::State& state) {
  std::int64_t rows = 0;
  int run = 0;
  for (auto _ : state) {
    state.PauseTiming();
    fs::path folder = ScratchFolder() / ("floor" + std::to_string(++run));
    fs::create_directories(folder);
    for (const char* file : kFiles)
      fs::copy_file(kFloor / file, folder / file);
    state.ResumeTiming();
    seluvorne::legacy::MigrationReport report = seluvorne::legacy::MigrateFloor(folder.string());
    state.PauseTiming();
    for (const auto& file : report.files)
      for (const auto& table : file.tables)
        rows += table.written;
    fs::remove_all(folder);
    state.ResumeTiming();
  }
  state.counters["rows/s"] =
      benchmark::Counter(static_cast<double>(rows), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_MigrateFloor)->Unit(benchmark::kMillisecond)->UseRealTime();

// CPU time of the helpers that have ended, in milliseconds.
double HelperMilliseconds() {
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

// The helper started on a file of 9 rows: its start-up cost per file
// (target: under 20 ms). Wall time depends on the machine's load; the
// helper's own CPU time per file is the counter helper_ms.
void BM_ReaderStartPerFile(benchmark::State& state) {
  const fs::path file = kFloor / "SeluVorneSW.MDB";
  double before = HelperMilliseconds();
  for (auto _ : state)
    benchmark::DoNotOptimize(seluvorne::legacy::ReadJetFile(file, file.string()));
  state.counters["helper_ms"] =
      benchmark::Counter(HelperMilliseconds() - before, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_ReaderStartPerFile)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(ScratchFolder());
  return 0;
}
