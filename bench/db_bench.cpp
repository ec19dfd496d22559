// The database engine beside raw SQLite, in one run: appending rows one
// Update (one commit) at a time, reading one page of a large table, and
// opening a file and running its first query, cold and again.
// Each pair works on the same table shape (and the engine's hidden indexes);
// the report at the end gives engine time / raw time for each pair.

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "ratio_reporter.h"
#include "seluvorne/dao.h"
#include "seluvorne/runtime.h"

namespace {

namespace dao = seluvorne::dao;
namespace fs = std::filesystem;

constexpr int kAppendedRows = 100000;
constexpr int kPages = 500;
constexpr int kRowsPerPage = 500;

fs::path ScratchFolder() {
  static fs::path folder = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-bench-XXXXXX").string();
    return fs::path(::mkdtemp(pattern.data()));
  }();
  return folder;
}

struct Row {
  std::int16_t page, subpage, bangou;
  std::string data;
};

// The rows of the KUTAIDATA shape, computed before any timing.
const std::vector<Row>& Rows(int count, int per_page) {
  static std::map<std::pair<int, int>, std::vector<Row>> made;
  auto& rows = made[{count, per_page}];
  if (rows.empty())
    for (int i = 0; i < count; ++i)
      rows.push_back({static_cast<std::int16_t>(i / per_page), 0,
                      static_cast<std::int16_t>(i % per_page),
                      i % 3 == 0 ? std::string() : vb::StrTrimmed(i % 9000)});
  return rows;
}

// A new engine database holding an empty KUTAIDATA.
std::shared_ptr<dao::Database> CreateFloor(const std::string& name) {
  fs::path path = ScratchFolder() / name;
  for (const char* suffix : {"", "-wal", "-shm"})
    fs::remove(path.string() + suffix);
  auto db =
      dao::DBEngine::Instance()->CreateDatabase(path.string(), std::string(dao::dbLangJapanese));
  auto table = db->CreateTableDef("KUTAIDATA");
  for (const char* name : {"PAGE", "SUBPAGE", "BANGOU"}) {
    auto field = table->CreateField(name, dao::dbInteger);
    field->SetDefaultValue("-1");
    table->Fields()->Append(field);
  }
  auto data = table->CreateField("DATA", dao::dbText, 200);
  data->SetAllowZeroLength(true);
  table->Fields()->Append(data);
  db->TableDefs()->Append(table);
  return db;
}

void Check(int result, sqlite3* db) {
  if (result != SQLITE_OK && result != SQLITE_DONE && result != SQLITE_ROW) {
    std::fprintf(stderr, "sqlite: %s\n", sqlite3_errmsg(db));
    std::abort();
  }
}

// A raw connection configured as the engine configures its own, in SQLite's
// default serialized mode: safe for threads, as the engine is through its
// library lock (the engine's own connections leave SQLite's mutex off).
sqlite3* OpenRaw(const fs::path& path) {
  sqlite3* db = nullptr;
  Check(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr),
        db);
  Check(sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr,
                     nullptr),
        db);
  return db;
}

// Inserts `rows` with one prepared statement; outside a transaction each row
// is its own commit, as each engine Update is.
void InsertRaw(sqlite3* db, const std::vector<Row>& rows) {
  sqlite3_stmt* insert = nullptr;
  Check(sqlite3_prepare_v2(db,
                           "INSERT INTO KUTAIDATA (PAGE, SUBPAGE, BANGOU, DATA) "
                           "VALUES (?, ?, ?, ?)",
                           -1, &insert, nullptr),
        db);
  for (const Row& row : rows) {
    sqlite3_reset(insert);
    sqlite3_bind_int(insert, 1, row.page);
    sqlite3_bind_int(insert, 2, row.subpage);
    sqlite3_bind_int(insert, 3, row.bangou);
    sqlite3_bind_text(insert, 4, row.data.data(), static_cast<int>(row.data.size()), SQLITE_STATIC);
    Check(sqlite3_step(insert), db);
  }
  sqlite3_finalize(insert);
}

// ---- Appending, one commit per row ------------------------------------------

void BM_AppendEngine(benchmark::State& state) {
  const auto& rows = Rows(kAppendedRows, 200);
  for (auto _ : state) {
    state.PauseTiming();
    auto db = CreateFloor("append-engine.mdb");
    state.ResumeTiming();
    auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    for (const Row& row : rows) {
      rs->AddNew();
      rs->SetValue("PAGE", row.page);
      rs->SetValue("SUBPAGE", row.subpage);
      rs->SetValue("BANGOU", row.bangou);
      rs->SetValue("DATA", row.data);
      rs->Update();
    }
    rs->Close();
    db->Close();
  }
  state.SetItemsProcessed(state.iterations() * kAppendedRows);
}
BENCHMARK(BM_AppendEngine)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void AppendRaw(benchmark::State& state, bool with_indexes) {
  const auto& rows = Rows(kAppendedRows, 200);
  for (auto _ : state) {
    state.PauseTiming();
    fs::path path = ScratchFolder() / "append-raw.db";
    for (const char* suffix : {"", "-wal", "-shm"})
      fs::remove(path.string() + suffix);
    sqlite3* db = OpenRaw(path);
    Check(sqlite3_exec(db,
                       "CREATE TABLE KUTAIDATA (PAGE INTEGER, SUBPAGE INTEGER, BANGOU INTEGER, "
                       "DATA TEXT)",
                       nullptr, nullptr, nullptr),
          db);
    if (with_indexes)
      Check(sqlite3_exec(db,
                         "CREATE INDEX i1 ON KUTAIDATA (PAGE); "
                         "CREATE INDEX i2 ON KUTAIDATA (BANGOU, SUBPAGE)",
                         nullptr, nullptr, nullptr),
            db);
    state.ResumeTiming();
    InsertRaw(db, rows);
    sqlite3_close(db);
  }
  state.SetItemsProcessed(state.iterations() * kAppendedRows);
}
void BM_AppendRaw(benchmark::State& state) {
  AppendRaw(state, true);
}
void BM_AppendRawWithoutIndexes(benchmark::State& state) {
  AppendRaw(state, false);
}
BENCHMARK(BM_AppendRaw)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_AppendRawWithoutIndexes)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- Reading one page of a 500-page table -----------------------------------

// The engine's file with 500 pages of 500 rows, filled once in one transaction.
fs::path PagedFloor() {
  static fs::path path = [] {
    CreateFloor("paged.mdb")->Close();
    fs::path file = ScratchFolder() / "paged.mdb";
    sqlite3* db = OpenRaw(file);
    Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db);
    InsertRaw(db, Rows(kPages * kRowsPerPage, kRowsPerPage));
    Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db);
    sqlite3_close(db);
    return file;
  }();
  return path;
}

void BM_SelectPageEngine(benchmark::State& state) {
  auto db = dao::DBEngine::Instance()->OpenDatabase(PagedFloor().string());
  int page = 0;
  std::int64_t read = 0;
  for (auto _ : state) {
    auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = " +
                                    vb::StrTrimmed(static_cast<std::int16_t>(page)) + ";",
                                dao::dbOpenDynaset);
    if (!(rs->IsEOF() && rs->IsBOF())) rs->MoveLast();
    std::int32_t count = rs->RecordCount();
    rs->MoveFirst();
    auto fields = rs->Fields();
    while (!rs->IsEOF()) {
      std::int16_t subpage = vb::CInt(fields->Item("SUBPAGE")->Value());
      std::int16_t bangou = vb::CInt(fields->Item("BANGOU")->Value());
      std::int16_t page_read = vb::CInt(fields->Item("PAGE")->Value());
      std::string data = vb::CStr(fields->Item("DATA")->Value());
      benchmark::DoNotOptimize(subpage + bangou + page_read + data.size());
      rs->MoveNext();
      ++read;
    }
    rs->Close();
    benchmark::DoNotOptimize(count);
    page = (page + 1) % kPages;
  }
  if (read != state.iterations() * kRowsPerPage) state.SkipWithError("wrong row count");
  state.SetItemsProcessed(read);
}
BENCHMARK(BM_SelectPageEngine)->Unit(benchmark::kMicrosecond);

void BM_SelectPageRaw(benchmark::State& state) {
  sqlite3* db = OpenRaw(PagedFloor());
  sqlite3_stmt* select = nullptr;
  Check(sqlite3_prepare_v2(db, "SELECT * FROM KUTAIDATA WHERE PAGE = ?", -1, &select, nullptr), db);
  int page = 0;
  std::int64_t read = 0;
  for (auto _ : state) {
    sqlite3_reset(select);
    sqlite3_bind_int(select, 1, page);
    while (sqlite3_step(select) == SQLITE_ROW) {
      auto page_read = static_cast<std::int16_t>(sqlite3_column_int(select, 0));
      auto subpage = static_cast<std::int16_t>(sqlite3_column_int(select, 1));
      auto bangou = static_cast<std::int16_t>(sqlite3_column_int(select, 2));
      std::string data(reinterpret_cast<const char*>(sqlite3_column_text(select, 3)),
                       static_cast<std::size_t>(sqlite3_column_bytes(select, 3)));
      benchmark::DoNotOptimize(subpage + bangou + page_read + data.size());
      ++read;
    }
    page = (page + 1) % kPages;
  }
  sqlite3_finalize(select);
  sqlite3_close(db);
  if (read != state.iterations() * kRowsPerPage) state.SkipWithError("wrong row count");
  state.SetItemsProcessed(read);
}
BENCHMARK(BM_SelectPageRaw)->Unit(benchmark::kMicrosecond);

// ---- Opening a file and running its first query -------------------------------

constexpr int kOpenedFiles = 8;  // every open is cold

const std::vector<fs::path>& OpenedFiles() {
  static const std::vector<fs::path> files = [] {
    std::vector<fs::path> made;
    for (int i = 0; i < kOpenedFiles; ++i) {
      std::string name = "opened-" + std::to_string(i) + ".mdb";
      CreateFloor(name)->Close();
      made.push_back(ScratchFolder() / name);
    }
    return made;
  }();
  return files;
}

void OpenAndQuery(const fs::path& file) {
  auto db = dao::DBEngine::Instance()->OpenDatabase(file.string());
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 0;", dao::dbOpenDynaset);
  benchmark::DoNotOptimize(rs->IsEOF());
  db->Close();
}

void BM_OpenColdEngine(benchmark::State& state) {
  const auto& files = OpenedFiles();
  std::size_t next = 0;
  for (auto _ : state)
    OpenAndQuery(files[next++ % files.size()]);
}
BENCHMARK(BM_OpenColdEngine)->Unit(benchmark::kMicrosecond);

// The same file each time, closed in between.
void BM_OpenAgainEngine(benchmark::State& state) {
  const fs::path file = OpenedFiles().front();
  for (auto _ : state)
    OpenAndQuery(file);
}
BENCHMARK(BM_OpenAgainEngine)->Unit(benchmark::kMicrosecond);

void BM_OpenColdRaw(benchmark::State& state) {
  const auto& files = OpenedFiles();
  std::size_t next = 0;
  for (auto _ : state) {
    sqlite3* db = OpenRaw(files[next++ % files.size()]);
    sqlite3_stmt* select = nullptr;
    Check(sqlite3_prepare_v2(db, "SELECT * FROM KUTAIDATA WHERE PAGE = ?", -1, &select, nullptr),
          db);
    sqlite3_bind_int(select, 1, 0);
    benchmark::DoNotOptimize(sqlite3_step(select));
    sqlite3_finalize(select);
    sqlite3_close(db);
  }
}
BENCHMARK(BM_OpenColdRaw)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  seluvorne::bench::RatioReporter reporter(
      {{"append 100,000 rows, one commit each", "BM_AppendEngine/iterations:1/real_time",
        "BM_AppendRaw/iterations:1/real_time"},
       {"read one page of 500 rows", "BM_SelectPageEngine", "BM_SelectPageRaw"},
       {"open a file and run its first query", "BM_OpenColdEngine", "BM_OpenColdRaw"},
       {"open a file again and run its first query", "BM_OpenAgainEngine", "BM_OpenColdRaw"}});
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  fs::remove_all(ScratchFolder());
}
