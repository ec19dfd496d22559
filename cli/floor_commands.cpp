// floors, new, check, sample, migrate: the floors of the data root, making
// a floor (empty or the sample office floor), the soundness of a floor's
// files (and removing what other programs planted in them), and the
// migration of legacy floors.

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <regex>

#include "commands.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/components.h"
#include "seluvorne/dao.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/integrity.h"
#include "seluvorne/legacy.h"
#include "seluvorne/library.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_floor.h"

namespace seluvorne::cli {
namespace {

namespace fs = std::filesystem;
using files::DatabaseFormat;

constexpr const char* kFloorFiles[] = {"SELUVORN.mdb", "HARIFUKA.mdb", "SeluVorneSW.MDB"};

const char* FormatName(DatabaseFormat format) {
  switch (format) {
    case DatabaseFormat::kMissing:
      return "missing";
    case DatabaseFormat::kNative:
      return "native";
    case DatabaseFormat::kLegacy:
      return "legacy";
    case DatabaseFormat::kOther:
      return "unknown";
  }
  return "unknown";
}

std::shared_ptr<dao::Database> OpenFile(const fs::path& file) {
  return dao::DBEngine::Instance()->Workspaces(0)->OpenDatabase(file.string());
}

// The rows of a query, read to the end.
std::int32_t CountRows(dao::Database& db, const std::string& sql) {
  auto rows = db.OpenRecordset(sql, dao::dbOpenSnapshot);
  std::int32_t count = 0;
  while (!rows->IsEOF()) {
    ++count;
    rows->MoveNext();
  }
  rows->Close();
  return count;
}

// Subfolders of `folder` whose names match `pattern`, by their number.
std::vector<std::pair<int, fs::path>> Numbered(const fs::path& folder, const std::regex& pattern) {
  std::vector<std::pair<int, fs::path>> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    std::smatch match;
    const std::string name = entry.path().filename().string();
    if (entry.is_directory() && std::regex_match(name, match, pattern))
      found.emplace_back(std::stoi(match[1]), entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

void ListFloors(Context& context) {
  const fs::path root = fs::path(context.DataRoot());
  nlohmann::json floors = nlohmann::json::array();
  if (!context.json) fmt::print("{}\n", root.string());
  static const std::regex zene(R"(Zene(\d{1,5}))"), kouji(R"(Kouji(\d{1,5}))"),
      kai(R"((\d{1,5})kai)");
  for (const auto& [z, zene_folder] : Numbered(root, zene)) {
    if (!context.json) fmt::print("  Zene{}\n", z);
    for (const auto& [k, kouji_folder] : Numbered(zene_folder, kouji)) {
      if (!context.json) fmt::print("    Kouji{}\n", k);
      for (const auto& [f, floor_folder] : Numbered(kouji_folder, kai)) {
        nlohmann::json files = nlohmann::json::object();
        std::string shown_files;
        for (const char* name : kFloorFiles) {
          const DatabaseFormat format = files::FormatOf(floor_folder / name);
          files[name] = FormatName(format);
          if (format != DatabaseFormat::kMissing)
            shown_files += fmt::format(
                " {}{}", name,
                format == DatabaseFormat::kNative ? "" : fmt::format(" ({})", FormatName(format)));
        }
        nlohmann::json pages = nullptr;
        try {
          if (files::FormatOf(floor_folder / kFloorFiles[0]) != DatabaseFormat::kMissing) {
            auto db = OpenFile(floor_folder / kFloorFiles[0]);
            pages = CountRows(*db, "SELECT * FROM TOORIMEI ORDER BY PAGE;");
            db->Close();
          }
        } catch (const Error&) {
          // A file the engine cannot read shows its kind and no page count.
        }
        floors.push_back({{"floor", fmt::format("{}/{}/{}", z, k, f)},
                          {"folder", floor_folder.string()},
                          {"pages", pages},
                          {"files", files}});
        if (!context.json)
          fmt::print("      {}kai  {}  {}\n", f,
                     pages.is_null() ? std::string("-") : fmt::format("{} pages", int(pages)),
                     shown_files.empty() ? " (no files)" : shown_files);
      }
    }
  }
  if (context.json) PrintJson({{"data_root", root.string()}, {"floors", floors}});
}

}  // namespace

bool MakeFloor(Context& context, const Floor& floor) {
  if (!floor.numbers)
    throw UsageError("a new floor is named Z/K/F, or by its folder under the data root");
  const bool existed = fs::exists(floor.FloorFile());
  // The library makes the floor's files, not its folder.
  std::error_code error;
  fs::create_directories(floor.native_folder, error);
  if (error) Fail(75, "", floor.native_folder.string() + ": " + error.message());
  Object service = context.NewService();
  CallByName(service, "FloorCompanion", CallKind::PropertyPut, CreateObject(kFloorCompanionProgId));
  CallByName(service, "CurZeneNo", CallKind::PropertyPut, floor.numbers->zene);
  CallByName(service, "CurKoujiNo", CallKind::PropertyPut, floor.numbers->kouji);
  CallByName(service, "CurKaiNo", CallKind::PropertyPut, floor.numbers->kai);
  CallByName(service, "OpenDB_Sitei", CallKind::Method, std::int16_t{1});
  // Opened again as a client reading the floor opens it, which adds the
  // tables the single upgrade step of OpenDB_Sitei leaves out: a new floor
  // has every table the other members use.
  CallByName(service, "CurrKai", CallKind::PropertyPut, floor.folder);
  CallByName(service, "CloseDB", CallKind::Method);
  return existed;
}

namespace {

void NewFloor(Context& context, const std::string& text) {
  const Floor floor = context.ResolveFloor(text);
  const bool existed = MakeFloor(context, floor);
  if (context.json)
    PrintJson({{"floor", text}, {"folder", floor.native_folder.string()}, {"created", !existed}});
  else
    fmt::print("{} {}\n", existed ? "exists:" : "created:", floor.native_folder.string());
}

// What is wrong with a floor's files, one line each.
std::vector<std::string> FloorProblems(const Floor& floor) {
  std::vector<std::string> problems;
  for (const char* name : kFloorFiles) {
    const fs::path file = floor.native_folder / name;
    switch (files::FormatOf(file)) {
      case DatabaseFormat::kMissing:
        if (name == kFloorFiles[0]) problems.push_back(fmt::format("{}: missing", name));
        continue;
      case DatabaseFormat::kLegacy:
        problems.push_back(
            fmt::format("{}: a legacy Jet file (seluvorne migrate {})", name, floor.text));
        continue;
      case DatabaseFormat::kOther:
        problems.push_back(fmt::format("{}: not a database", name));
        continue;
      case DatabaseFormat::kNative:
        break;
    }
    for (const std::string& line : files::IntegrityProblems(file))
      problems.push_back(fmt::format("{}: {}", name, line));
    for (const std::string& line : files::ForeignObjects(file))
      problems.push_back(fmt::format("{}: {} (not made by the library)", name, line));
  }
  const fs::path floor_file = floor.FloorFile();
  if (files::FormatOf(floor_file) != DatabaseFormat::kNative || !problems.empty()) return problems;

  auto db = OpenFile(floor_file);
  auto tables = db->TableDefs();
  std::vector<frame::TableSchema> expected(frame::kFloorTables.begin(), frame::kFloorTables.end());
  expected.push_back(frame::kSpanTopTable);
  expected.push_back(frame::kSpanTanJoilTable);
  for (const frame::TableSchema& table : expected) {
    std::shared_ptr<dao::TableDef> found;
    try {
      found = tables->Item(std::string(table.name));
    } catch (const Error&) {
      // The tables older files lack are added by the next open for work.
      const bool added_on_open =
          &table == &expected[expected.size() - 1] || &table == &expected[expected.size() - 2];
      if (!added_on_open)
        problems.push_back(fmt::format("SELUVORN.mdb: table {} is missing", table.name));
      continue;
    }
    auto fields = found->Fields();
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
      const frame::FieldSchema& want = table.fields[i];
      std::shared_ptr<dao::Field> field;
      try {
        field = fields->Item(std::string(want.name));
      } catch (const Error&) {
        problems.push_back(fmt::format("SELUVORN.mdb: {}.{} is missing", table.name, want.name));
        continue;
      }
      if (field->Type() != want.type || (want.type == dao::dbText && field->Size() != want.size))
        problems.push_back(fmt::format("SELUVORN.mdb: {}.{} is of type {} size {}, not {} size {}",
                                       table.name, want.name, field->Type(), field->Size(),
                                       want.type, want.size));
    }
    if (table.name == "TOORIMEI") continue;
    // Rows of a page that the directory does not list are invisible to
    // every program of the suite.
    auto orphans = db->OpenRecordset(
        fmt::format("SELECT DISTINCT PAGE FROM {} WHERE PAGE NOT IN (SELECT PAGE FROM TOORIMEI);",
                    table.name),
        dao::dbOpenSnapshot);
    while (!orphans->IsEOF()) {
      const int page = vb::CInt(orphans->Fields()->Item("PAGE")->Value());
      problems.push_back(
          fmt::format("SELUVORN.mdb: {} holds rows of page {}, which has no "
                      "TOORIMEI row",
                      table.name, page + 1));
      orphans->MoveNext();
    }
    orphans->Close();
  }
  db->Close();
  return problems;
}

// Removes from each of the floor's files what the library did not make,
// each file kept first as it was beside it.
void RemoveForeign(const Floor& floor, bool json) {
  for (const char* name : kFloorFiles) {
    const fs::path file = floor.native_folder / name;
    if (files::FormatOf(file) != DatabaseFormat::kNative) continue;
    const std::vector<std::string> removed = files::RemoveForeignObjects(file);
    if (!json && !removed.empty())
      fmt::print("{}: removed {} object{}, every row kept (the file as it was: {}.bak)\n", name,
                 removed.size(), removed.size() == 1 ? "" : "s", name);
  }
}

void CheckFloor(Context& context, const std::string& text, bool fix) {
  const Floor floor = context.ResolveFloor(text);
  std::vector<std::string> problems = FloorProblems(floor);
  if (fix && !problems.empty()) {
    if (!context.json)
      for (const std::string& line : problems)
        fmt::print("{}\n", line);
    RemoveForeign(floor, context.json);
    problems = FloorProblems(floor);
  }
  if (context.json)
    PrintJson({{"floor", text}, {"ok", problems.empty()}, {"problems", problems}});
  else if (problems.empty())
    fmt::print("{}: ok\n", floor.native_folder.string());
  else
    for (const std::string& line : problems)
      fmt::print("{}\n", line);
  if (!problems.empty())
    throw CommandFailed(fmt::format("check: {} problem{} in {}", problems.size(),
                                    problems.size() == 1 ? "" : "s", floor.native_folder.string()));
}

// Writes the sample office floor into a new floor, and the roster of its
// beam names into the data root when it has none.
void WriteSampleFloor(Context& context, const std::string& text) {
  const Floor floor = context.ResolveFloor(text);
  if (fs::exists(floor.FloorFile()))
    Fail(3204, "", floor.FloorFile().string() + "; the sample goes into a new floor");
  const fs::path roster = fs::path(context.DataRoot()) / "roster.json";
  const bool new_roster = !fs::exists(roster);
  std::error_code error;
  fs::create_directories(floor.native_folder, error);
  if (error) Fail(75, "", floor.native_folder.string() + ": " + error.message());
  if (new_roster) {
    std::ofstream file(roster, std::ios::binary);
    file << sample::OfficeRosterJson();
    if (!file.flush()) Fail(75, "", roster.string());
  }
  const std::vector<sample::SampleBeam> beams = sample::OfficeFloor();
  sample::WriteSampleFloor(floor.folder, beams);
  if (context.json) {
    PrintJson({{"floor", text}, {"pages", beams.size()}, {"roster_written", new_roster}});
    return;
  }
  fmt::print("wrote {} beams of a five-storey RC office floor to {}\n", beams.size(),
             floor.native_folder.string());
  if (new_roster) fmt::print("wrote the roster of their beam names to {}\n", roster.string());
}

// The floors of the data root that still hold a legacy file.
std::vector<std::string> LegacyFloors(Context& context) {
  std::vector<std::string> floors;
  const fs::path root = fs::path(context.DataRoot());
  static const std::regex zene(R"(Zene(\d{1,5}))"), kouji(R"(Kouji(\d{1,5}))"),
      kai(R"((\d{1,5})kai)");
  for (const auto& [z, zene_folder] : Numbered(root, zene))
    for (const auto& [k, kouji_folder] : Numbered(zene_folder, kouji))
      for (const auto& [f, floor_folder] : Numbered(kouji_folder, kai))
        for (const char* name : kFloorFiles)
          if (files::FormatOf(floor_folder / name) == DatabaseFormat::kLegacy) {
            floors.push_back(fmt::format("{}/{}/{}", z, k, f));
            break;
          }
  return floors;
}

void MigrateFloors(Context& context, const std::string& text, bool all, bool salvage) {
  if (all == !text.empty()) throw UsageError("migrate takes one FLOOR or --all");
  const std::vector<std::string> floors = all ? LegacyFloors(context) : std::vector{text};
  nlohmann::json reports = nlohmann::json::array();
  for (const std::string& name : floors) {
    const Floor floor = context.ResolveFloor(name);
    const legacy::MigrationReport report = legacy::MigrateFloor(floor.folder, salvage);
    nlohmann::json files = nlohmann::json::array();
    for (const legacy::FileReport& file : report.files) {
      nlohmann::json tables = nlohmann::json::array();
      for (const legacy::TableReport& table : file.tables)
        tables.push_back({{"table", table.table},
                          {"recorded", table.recorded},
                          {"read", table.read},
                          {"written", table.written}});
      files.push_back({{"file", file.file}, {"migrated", file.migrated}, {"tables", tables}});
      if (context.json) continue;
      if (!file.migrated) {
        fmt::print("{}  {}: already native\n", name, file.file);
        continue;
      }
      std::int64_t rows = 0;
      for (const legacy::TableReport& table : file.tables)
        rows += table.written;
      fmt::print("{}  {}: migrated, {} tables, {} rows (original kept as {}.jet)\n", name,
                 file.file, file.tables.size(), rows, file.file);
      for (const legacy::TableReport& table : file.tables)
        if (table.written < table.recorded)
          fmt::print("      {}: LOST {} of {} rows\n", table.table, table.recorded - table.written,
                     table.recorded);
    }
    if (!report.report_file.empty() && !context.json)
      fmt::print("{}  report: {}\n", name, report.report_file);
    reports.push_back({{"floor", name}, {"files", files}, {"report_file", report.report_file}});
  }
  if (context.json)
    PrintJson({{"floors", reports}});
  else if (floors.empty())
    fmt::print("no legacy floor under {}\n", context.DataRoot());
}

}  // namespace

void AddFloorCommands(CLI::App& app, Context& context) {
  auto* floors =
      app.add_subcommand("floors", "every floor under the data root, with its pages and files");
  floors->footer("Example: seluvorne --data ~/beams floors");
  floors->callback([&context] { ListFloors(context); });

  static std::string new_floor, check_floor;
  static bool check_fix = false;
  auto* create = app.add_subcommand("new", "create a floor (its floor file and build-out file)");
  create->add_option("FLOOR", new_floor, "Z/K/F, or a floor folder under the data root")
      ->required();
  create->footer("Example: seluvorne new 1/2/3");
  create->callback([&context] { NewFloor(context, new_floor); });

  static std::string sample_floor;
  auto* sample = app.add_subcommand("sample",
                                    "write a sample floor (a five-storey RC office's) "
                                    "into a new floor, to try the other commands on");
  sample->add_option("FLOOR", sample_floor, "Z/K/F or a floor folder; it must not exist yet")
      ->required();
  sample->footer("Example: seluvorne sample 1/1/3 && seluvorne pages 1/1/3");
  sample->callback([&context] { WriteSampleFloor(context, sample_floor); });

  static std::string migrate_floor;
  static bool migrate_all = false, salvage = false;
  auto* migrate = app.add_subcommand("migrate",
                                     "convert a floor's legacy Jet files to the native "
                                     "format, every row checked; originals kept as *.jet");
  migrate->add_option("FLOOR", migrate_floor, "Z/K/F or a floor folder");
  migrate->add_flag("--all", migrate_all, "every floor of the data root that holds a legacy file");
  migrate->add_flag("--salvage", salvage,
                    "migrate what a damaged file still gives; the losses are reported");
  migrate->footer("Example: seluvorne migrate 1/1/3   or   seluvorne migrate --all");
  migrate->callback([&context] { MigrateFloors(context, migrate_floor, migrate_all, salvage); });

  auto* check = app.add_subcommand("check",
                                   "check a floor's files: storage, tables and fields, "
                                   "rows of pages the directory does not list");
  check->add_option("FLOOR", check_floor, "Z/K/F or a floor folder")->required();
  check->add_flag(
      "--fix", check_fix,
      "remove what the library did not make (triggers, views, foreign tables and "
      "indexes, changed table definitions), keeping every row; originals kept as *.bak");
  check->footer("Example: seluvorne check 1/2/3 (exit status 1 when something is wrong)");
  check->callback([&context] { CheckFloor(context, check_floor, check_fix); });
}

}  // namespace seluvorne::cli
