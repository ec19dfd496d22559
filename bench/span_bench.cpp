// Loading a beam page into the span model, beside a raw SQLite program reading
// the same rows, and the geometry queries on a loaded page.
//
// The floor holds 500 typical pages written through the page writers
// (sample_pages.h: six spans, about 2,500 rows a page over the ten tables). BM_InitKutaiData loads
// page 250 through the data service; BM_ReadPageRaw reads the same rows of the same file with
// SQLiteCpp and prepared statements, one statement per table, copying every
// value out. The report at the end gives the ratio of the two medians (run
// with --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true
// on a busy machine). BM_Query/<name> calls one query for each of 1,000
// positions along the loaded page; "per_call" is the time of one call.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <vector>

#include "ratio_reporter.h"
#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_pages.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
namespace fs = std::filesystem;
using I16 = std::int16_t;

constexpr I16 kPages = 500;
constexpr I16 kMiddlePage = 250;
constexpr int kPositions = 1000;

struct Floor {
  std::string root, folder, file;
};

// A scratch data root with the standalone components, and a floor of 500
// typical pages in it.
const Floor& TheFloor() {
  static const Floor floor = [] {
    std::string pattern = (fs::temp_directory_path() / "seluvorne-span-bench-XXXXXX").string();
    Floor made;
    made.root = ::mkdtemp(pattern.data());
    setenv("SELUVORNE_SETTINGS", (fs::path(made.root) / "no-settings.json").c_str(), 1);
    std::ofstream(fs::path(made.root) / "presets.json") << R"({"KutaiMaxPage": 1})";  // 500 pages
    RegisterStandaloneComponents(made.root);
    frame::ScheduleStart();
    frame::EnsureStarted();
    made.folder = made.root + "\\Zene1\\Kouji1\\1kai";
    clsSeluVorneDataService service;
    sample::WriteFloor(service, made.folder, kPages);
    made.file = NativePath(service.GetFileName(made.folder)).string();
    return made;
  }();
  return floor;
}

void BM_InitKutaiData(benchmark::State& state) {
  clsSeluVorneDataService service;
  service.SetCurrKai(TheFloor().folder);
  for (auto _ : state)
    benchmark::DoNotOptimize(service.InitKutaiData(kMiddlePage));
  if (service.SpanGeometry().SpanSuu != 6) state.SkipWithError("the page did not load");
}
BENCHMARK(BM_InitKutaiData)->Unit(benchmark::kMicrosecond);

// The same rows, read by a program of its own: prepared once, bound, stepped,
// every value copied out.
void BM_ReadPageRaw(benchmark::State& state) {
  SQLite::Database db(TheFloor().file, SQLite::OPEN_READONLY);
  struct Table {
    const char* name;
    bool ban;
  };
  static constexpr Table kTables[] = {
      {"KUTAIDATA", false},      {"TOORIMEI", false},  {"STPGENSUN", false},
      {"STPJOUGEGENSUN", false}, {"HENKATEN", true},   {"HANTI", false},
      {"ANKANIGE", true},        {"RSITEI", false},    {"SITAKINANKASETUDAN", false},
      {"SPANTOP", true},         {"SPANTANJOIL", true}};
  std::vector<SQLite::Statement> statements;
  for (const Table& table : kTables)
    statements.emplace_back(db, std::string("SELECT * FROM ") + table.name + " WHERE PAGE = ?");
  std::vector<std::string> texts;
  texts.reserve(4096);
  std::size_t rows = 0;
  for (auto _ : state) {
    texts.clear();
    for (std::size_t t = 0; t < statements.size(); ++t) {
      SQLite::Statement& select = statements[t];
      select.reset();
      select.bind(1, kMiddlePage);
      const int columns = select.getColumnCount();
      while (select.executeStep()) {
        int keys = 0;
        for (int c = 0; c < columns; ++c) {
          SQLite::Column column = select.getColumn(c);
          if (column.isInteger())
            keys += column.getInt();
          else
            texts.emplace_back(column.getString());
        }
        benchmark::DoNotOptimize(keys);
      }
    }
    rows = texts.size();
  }
  state.counters["values"] = static_cast<double>(rows);
}
BENCHMARK(BM_ReadPageRaw)->Unit(benchmark::kMicrosecond);

// ---- The queries ---------------------------------------------------------------

struct Loaded {
  std::shared_ptr<clsSeluVorneDataService> service;
  Object list;               // the caller's obList
  std::vector<float> xs;     // 1,000 positions from before column 0 to past the last
  std::vector<I16> spans;    // the span of each position
  std::vector<I16> columns;  // a column for each position, 0..SpanSuu
};

const Loaded& ThePage() {
  static const Loaded loaded = [] {
    const Floor& floor = TheFloor();  // registers the components first
    Loaded l;
    l.service = std::make_shared<clsSeluVorneDataService>();
    l.service->SetCurrKai(floor.folder);
    l.service->InitKutaiData(kMiddlePage);
    l.list = CreateObject("BeamRoster.clsRoster");
    const SpanModel& m = l.service->SpanGeometry();
    const float end = m.GetKyoriSpanMigiSoto(static_cast<I16>(m.SpanSuu - 1));
    for (int i = 0; i < kPositions; ++i) {
      const float x = -200 + (end + 400) * static_cast<float>(i) / kPositions;
      l.xs.push_back(x);
      l.spans.push_back(std::max<I16>(0, m.isInSpan(x)));
      l.columns.push_back(static_cast<I16>(i % (m.SpanSuu + 1)));
    }
    return l;
  }();
  return loaded;
}

using Query = std::function<void(const Loaded&, int)>;

void RunQuery(benchmark::State& state, const Query& query) {
  const Loaded& page = ThePage();
  for (auto _ : state)
    for (int i = 0; i < kPositions; ++i)
      query(page, i);
  state.counters["per_call"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kPositions,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class T>
void Keep(T&& value) {
  benchmark::DoNotOptimize(value);
}

const SpanModel& M(const Loaded& l) {
  return l.service->SpanGeometry();
}

const std::vector<std::pair<const char*, Query>>& Queries() {
  static const std::vector<std::pair<const char*, Query>> queries = {
      {"GetKyoriSpanHidariUti",
       [](auto& l, int i) { Keep(M(l).GetKyoriSpanHidariUti(l.spans[i])); }},
      {"GetKyoriSpanHidariSoto",
       [](auto& l, int i) { Keep(M(l).GetKyoriSpanHidariSoto(l.spans[i])); }},
      {"GetKyoriSpanMigiUti", [](auto& l, int i) { Keep(M(l).GetKyoriSpanMigiUti(l.spans[i])); }},
      {"GetKyoriSpanMigiSoto", [](auto& l, int i) { Keep(M(l).GetKyoriSpanMigiSoto(l.spans[i])); }},
      {"GetSpanUtinoriKyori", [](auto& l, int i) { Keep(M(l).GetSpanUtinoriKyori(l.spans[i])); }},
      {"GetSpanUtinoriL4Kyori",
       [](auto& l, int i) { Keep(M(l).GetSpanUtinoriL4Kyori(l.spans[i])); }},
      {"GetHasiraHaba", [](auto& l, int i) { Keep(M(l).GetHasiraHaba(l.columns[i])); }},
      {"GetHasiraHabaHidari", [](auto& l, int i) { Keep(M(l).GetHasiraHabaHidari(l.columns[i])); }},
      {"GetHasiraHabaMigi", [](auto& l, int i) { Keep(M(l).GetHasiraHabaMigi(l.columns[i])); }},
      {"GetSpanTyou", [](auto& l, int i) { Keep(M(l).GetSpanTyou(l.spans[i])); }},
      {"GetHasiraLR",
       [](auto& l, int i) {
         float left, right;
         Keep(M(l).GetHasiraLR(l.columns[i], left, right));
         Keep(left + right);
       }},
      {"GetTenba", [](auto& l, int i) { Keep(M(l).GetTenba(l.spans[i])); }},
      {"GetHensinSita", [](auto& l, int i) { Keep(M(l).GetHensinSita(l.spans[i])); }},
      {"GetSpanToorimei", [](auto& l, int i) { Keep(M(l).GetSpanToorimei(l.columns[i])); }},
      {"GetRsitei", [](auto& l, int i) { Keep(M(l).GetRsitei(l.columns[i])); }},
      {"GetSitakinCutHidari", [](auto& l, int i) { Keep(M(l).GetSitakinCutHidari(l.columns[i])); }},
      {"GetSitakinCutMigi", [](auto& l, int i) { Keep(M(l).GetSitakinCutMigi(l.columns[i])); }},
      {"GetSitakinCutMigiHidari",
       [](auto& l, int i) { Keep(M(l).GetSitakinCutMigiHidari(l.columns[i], I16(i % 2))); }},
      {"GetSpanTop",
       [](auto& l, int i) { Keep(M(l).GetSpanTop(l.spans[i], 1, 0, 1, I16(i % 2))); }},
      {"GetSpanTanbuJointL", [](auto& l, int i) { Keep(M(l).GetSpanTanbuJointL(l.spans[i], 1)); }},
      {"GetHariSei", [](auto& l, int i) { Keep(l.service->GetHariSei(l.spans[i], I16(i % 3))); }},
      {"GetHariSeiHidari", [](auto& l, int i) { Keep(l.service->GetHariSeiHidari(l.spans[i])); }},
      {"GetHariSeiMigi", [](auto& l, int i) { Keep(l.service->GetHariSeiMigi(l.spans[i])); }},
      {"GetSatanTenba", [](auto& l, int i) { Keep(M(l).GetSatanTenba(l.spans[i])); }},
      {"GetUtanTenba", [](auto& l, int i) { Keep(M(l).GetUtanTenba(l.spans[i])); }},
      {"isRenzokuSitan", [](auto& l, int i) { Keep(l.service->isRenzokuSitan(l.spans[i])); }},
      {"isRenzokuSyuutan", [](auto& l, int i) { Keep(l.service->isRenzokuSyuutan(l.spans[i])); }},
      {"GetDanmenBangou",
       [](auto& l, int i) {
         vb::Array<I16> sections;
         l.service->GetDanmenBangou(l.spans[i], sections);
         Keep(sections(0));
       }},
      {"GetListDanmenNoByKutaiDanmenNo",
       [](auto& l, int i) { Keep(l.service->GetListDanmenNoByKutaiDanmenNo(l.spans[i], 1)); }},
      {"isInOrNearHasira", [](auto& l, int i) { Keep(M(l).isInOrNearHasira(l.xs[i], 50)); }},
      {"isInSpan", [](auto& l, int i) { Keep(M(l).isInSpan(l.xs[i])); }},
      {"isInSpanHasira", [](auto& l, int i) { Keep(M(l).isInSpanHasira(l.xs[i], I16(i % 2))); }},
      {"GetSpanRituHidari",
       [](auto& l, int i) { Keep(l.service->GetSpanRituHidari(1, l.spans[i], l.list)); }},
      {"GetSpanRituMigi",
       [](auto& l, int i) { Keep(l.service->GetSpanRituMigi(1, l.spans[i], l.list)); }},
      {"GetSpanRituHidariVARNHOLT",
       [](auto& l, int i) { Keep(l.service->GetSpanRituHidariVARNHOLT(1, l.spans[i], l.list)); }},
      {"GetSpanRituMigiVARNHOLT",
       [](auto& l, int i) { Keep(l.service->GetSpanRituMigiVARNHOLT(1, l.spans[i], l.list)); }},
      {"isTopX", [](auto& l, int i) { Keep(l.service->isTopX(0, l.xs[i], 50, l.list)); }},
      {"isHasiKobari", [](auto& l, int) { Keep(l.service->isHasiKobari(l.list)); }},
      {"GetSpanTokutyou",
       [](auto& l, int i) {
         I16 first, last;
         Keep(M(l).GetSpanTokutyou(l.xs[i], l.xs[kPositions - 1 - i], first, last));
       }},
      {"isInOrNearHasiraHaba",
       [](auto& l, int i) {
         float width;
         Keep(M(l).isInOrNearHasiraHaba(l.xs[i], 50, width));
       }},
      // One query by name, as the suite's clients call it: the late-bound cost.
      {"isInSpan_by_name",
       [](auto& l, int i) {
         std::vector<vb::Variant> args{vb::Variant(l.xs[i])};
         Keep(l.service->invoke("isInSpan", CallKind::Method, args));
       }},
  };
  return queries;
}

}  // namespace

int main(int argc, char** argv) {
  for (const auto& [name, query] : Queries())
    benchmark::RegisterBenchmark(
        (std::string("BM_Query/") + name).c_str(),
        [query = query](benchmark::State& state) { RunQuery(state, query); })
        ->Unit(benchmark::kMicrosecond);
  benchmark::Initialize(&argc, argv);
  seluvorne::bench::RatioReporter reporter(
      {{"InitKutaiData of the middle page", "BM_InitKutaiData", "BM_ReadPageRaw"}});
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  fs::remove_all(TheFloor().root);
}
