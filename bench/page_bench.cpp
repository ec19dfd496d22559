// Writing, moving and copying whole pages on a floor of 500 typical pages
// (about 2,500 rows a page over the ten tables), each beside what it costs
// without the library:
//   - one typical page through every writer, beside raw SQLite doing the same
//     inserts (prepared statements, one transaction per table) and, for the
//     record, with a commit per row;
//   - ReadDB on one floor and WriteDB on another;
//   - No_PageCopyNo of 100 pages with build-outs and switches, and the four
//     page copiers of those pages alone, with and without the files held
//     open across the pages: where the time goes.
// Standalone components on a scratch data root. Runs are interleaved with
// repetitions, so that a loaded machine weighs on both sides alike.

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/held_files.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_pages.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
namespace fs = std::filesystem;

constexpr std::int16_t kFloorPages = 499;  // pages 0 to 498; 499 is the page written
constexpr std::int16_t kWrittenPage = 499;
constexpr std::int16_t kCopiedPages = 100;
const std::vector<std::string> kTables = {
    "ANKANIGE",  "HANTI",          "HENKATEN", "KUTAIDATA",   "RSITEI",  "SITAKINANKASETUDAN",
    "STPGENSUN", "STPJOUGEGENSUN", "SPANTOP",  "SPANTANJOIL", "TOORIMEI"};

// A progress bar that takes the three puts and nothing else.
class Progress : public DispatchImpl<Progress> {
 public:
  static const MemberTable<Progress>& Members() {
    static const auto table = MemberTable<Progress>("Progress")
                                  .field("Min", &Progress::min)
                                  .field("Max", &Progress::max)
                                  .field("Value", &Progress::value);
    return table;
  }
  std::int16_t min = 0, max = 0, value = 0;
};

struct Floors {
  std::string root, source, destination, copies;
};

std::string Folder(const std::string& root, int kai) {
  return root + "\\Zene1\\Kouji1\\" + vb::StrTrimmed(kai) + "kai";
}

// The floor of 499 typical pages, with build-out and switch rows on the
// first 100, made once per run.
const Floors& TheFloors() {
  static const Floors floors = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-page-bench-XXXXXX").string();
    Floors made;
    made.root = ::mkdtemp(pattern.data());
    std::ofstream(fs::path(made.root) / "presets.json") << R"({"KutaiMaxPage": 1})";
    setenv("SELUVORNE_SETTINGS", (fs::path(made.root) / "no-settings.json").c_str(), 1);
    RegisterStandaloneComponents(made.root);
    frame::ScheduleStart();
    frame::EnsureStarted();
    made.source = Folder(made.root, 1);
    made.destination = Folder(made.root, 2);
    made.copies = Folder(made.root, 3);
    for (const std::string* folder : {&made.source, &made.destination, &made.copies})
      frame::gFloorDirs.MakeMkDir(*folder);

    clsSeluVorneDataService service;
    sample::WriteFloor(service, made.source, kFloorPages);
    service.WriteOpenDb->Close();
    clsSeluVorneDataService().OpenSeluVorne(made.destination, service.KutaiDb);
    service.KutaiDb->Close();

    clsHariFukasiDS build_outs;
    build_outs.WriteDB_Open(made.source);
    for (std::int16_t page = 0; page < kCopiedPages; ++page)
      for (std::int16_t span = 0; span < 5; ++span) {
        build_outs.SetPage(page);
        build_outs.SetSpan(span);
        build_outs.SetIti(build_outs.ItiNoUe());
        build_outs.SetSyurui(0);
        build_outs.SetKigou("F" + vb::StrTrimmed(span));
        build_outs.SetAtusa("150");
        build_outs.SetHaba("300");
      }
    build_outs.CloseDB();
    const std::string switches = made.source + "\\" + std::string(clsHariSWDS::kFileName);
    clsHariSWDS().Create_SwMDB_TBL(switches);
    auto db = dao::DBEngine::Instance()->OpenDatabase(switches);
    auto rows = db->OpenRecordset("SELUVORNESW");
    for (std::int16_t page = 0; page < kCopiedPages; ++page)
      for (std::int16_t span = 0; span < 10; ++span) {
        rows->AddNew();
        rows->SetValue("PAGE", page);
        rows->SetValue("SPAN", span);
        rows->SetValue("DATAKIND", std::int16_t{1});
        rows->SetValue("DATA", "1");
        rows->Update();
      }
    db->Close();
    return made;
  }();
  return floors;
}

// The rows a typical page is, per table, as the writers stored them for page 0.
struct RawRows {
  std::string table;
  int width;  // fields after PAGE
  std::vector<vb::Variant> values;
};

std::vector<RawRows> PageZeroRows(const std::string& file) {
  std::vector<RawRows> tables;
  SQLite::Database db(NativePath(file).string());
  for (const std::string& table : kTables) {
    SQLite::Statement query(db, "SELECT * FROM \"" + table + "\" WHERE PAGE = 0");
    RawRows rows{table, query.getColumnCount() - 1, {}};
    while (query.executeStep())
      for (int c = 1; c < query.getColumnCount(); ++c) {
        const SQLite::Column column = query.getColumn(c);
        rows.values.push_back(column.isInteger()
                                  ? vb::Variant(static_cast<std::int16_t>(column.getInt()))
                                  : vb::Variant(column.getString()));
      }
    tables.push_back(std::move(rows));
  }
  return tables;
}

void DeletePage(const std::string& file, std::int16_t page) {
  SQLite::Database db(NativePath(file).string(), SQLite::OPEN_READWRITE);
  for (const std::string& table : kTables)
    db.exec("DELETE FROM \"" + table + "\" WHERE PAGE = " + std::to_string(page));
}

void BM_WritePageThroughWriters(benchmark::State& state) {
  const Floors& floors = TheFloors();
  clsSeluVorneDataService service;
  service.WriteOpen(floors.source);
  sample::PageTexts texts = sample::TypicalPage(kWrittenPage);
  const std::string file = service.GetFileName(floors.source);
  for (auto _ : state) {
    sample::WritePage(service, kWrittenPage, texts);
    state.PauseTiming();
    DeletePage(file, kWrittenPage);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_WritePageThroughWriters)->Unit(benchmark::kMillisecond);

// The same inserts with SQLiteCpp; `per_row` commits every row on its own.
void RawWrite(benchmark::State& state, bool per_row) {
  const Floors& floors = TheFloors();
  const std::string file = Folder(floors.root, 1) + "\\SELUVORN.mdb";
  const std::vector<RawRows> tables = PageZeroRows(file);
  SQLite::Database db(NativePath(file).string(), SQLite::OPEN_READWRITE);
  db.exec("PRAGMA synchronous = NORMAL");
  std::size_t rows_per_page = 0;
  for (auto _ : state) {
    rows_per_page = 0;
    for (const RawRows& rows : tables) {
      std::string marks = "?";
      for (int c = 0; c < rows.width; ++c)
        marks += ", ?";
      SQLite::Statement insert(db, "INSERT INTO \"" + rows.table + "\" VALUES (" + marks + ")");
      std::optional<SQLite::Transaction> transaction;
      if (!per_row) transaction.emplace(db);
      for (std::size_t at = 0; at < rows.values.size(); at += rows.width) {
        insert.bind(1, kWrittenPage);
        for (int c = 0; c < rows.width; ++c) {
          const vb::Variant& value = rows.values[at + c];
          if (auto number = value.peek<std::int16_t>())
            insert.bind(c + 2, *number);
          else
            insert.bind(c + 2, vb::CStr(value));
        }
        insert.exec();
        insert.reset();
        ++rows_per_page;
      }
      if (transaction) transaction->commit();
    }
    state.PauseTiming();
    DeletePage(file, kWrittenPage);
    state.ResumeTiming();
  }
  state.counters["rows"] = static_cast<double>(rows_per_page);
}

void BM_WritePageRawSqlite(benchmark::State& state) {
  RawWrite(state, false);
}
BENCHMARK(BM_WritePageRawSqlite)->Unit(benchmark::kMillisecond);

void BM_WritePageRawSqliteCommitPerRow(benchmark::State& state) {
  RawWrite(state, true);
}
BENCHMARK(BM_WritePageRawSqliteCommitPerRow)->Unit(benchmark::kMillisecond);

void BM_ReadDBWriteDBBetweenFloors(benchmark::State& state) {
  const Floors& floors = TheFloors();
  clsSeluVorneDataService service;
  std::shared_ptr<dao::Database> source, destination;
  service.OpenSeluVorne(floors.source, source);
  service.OpenSeluVorne(floors.destination, destination);
  std::int16_t page = 0;
  for (auto _ : state) {
    service.KutaiDb = source;
    service.pPageNo = page;
    service.ReadDB();
    service.KutaiDb = destination;
    service.WriteDB();
    page = static_cast<std::int16_t>((page + 1) % kFloorPages);
  }
}
BENCHMARK(BM_ReadDBWriteDBBetweenFloors)->Unit(benchmark::kMillisecond);

vb::Array<std::int16_t> CopiedPages() {
  vb::Array<std::int16_t> pages({kCopiedPages - 1});
  for (std::int16_t i = 0; i < kCopiedPages; ++i)
    pages(i) = i;
  return pages;
}

void BM_PageCopyNo100Pages(benchmark::State& state) {
  TheFloors();
  clsSeluVorneDataService service;
  service.SetCopyMergeBar(std::make_shared<Progress>());
  vb::Array<std::int16_t> from = CopiedPages(), to = CopiedPages();
  std::string message;
  for (auto _ : state)
    service.No_PageCopyNo(1, 0, message, 1, 1, 1, from, kCopiedPages - 1, 1, 1, 3, to);
}
BENCHMARK(BM_PageCopyNo100Pages)->Unit(benchmark::kMillisecond)->Iterations(1);

// Each page copier alone over the same 100 pages: opening and closing its
// files for every page, as a client calling No_Copy1Page does, or with the
// files held open across the pages, as No_PageCopyNo holds them.
template <class Copier, bool kHeld = false>
void CopyPagesWith(benchmark::State& state) {
  TheFloors();
  Copier copier;
  for (auto _ : state) {
    std::optional<dao::HeldFiles> held;
    if (kHeld) held.emplace();
    for (std::int16_t page = 0; page < kCopiedPages; ++page) {
      std::int16_t zene = 1, kouji = 1, from_kai = 1, to_kai = 3, from = page, to = page;
      copier.No_Copy1Page(zene, kouji, from_kai, from, zene, kouji, to_kai, to);
    }
  }
}
BENCHMARK(CopyPagesWith<clsSeluVorneDataService>)
    ->Name("BM_Copy100/frame_rows")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsHariFukasiDS>)
    ->Name("BM_Copy100/build_outs")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsHariSWDS>)
    ->Name("BM_Copy100/switches")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsHikiCopyDS>)
    ->Name("BM_Copy100/through_bar_file")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsSeluVorneDataService, true>)
    ->Name("BM_Copy100Held/frame_rows")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsHariFukasiDS, true>)
    ->Name("BM_Copy100Held/build_outs")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(CopyPagesWith<clsHariSWDS, true>)
    ->Name("BM_Copy100Held/switches")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  // Interleaved repetitions, medians reported, unless the command line says otherwise.
  std::vector<char*> args(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  std::string repetitions = "--benchmark_repetitions=5";
  std::string aggregates = "--benchmark_report_aggregates_only=true";
  if (argc == 1)
    args.insert(args.end(), {interleave.data(), repetitions.data(), aggregates.data()});
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  TheFloors();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(TheFloors().root);
}
