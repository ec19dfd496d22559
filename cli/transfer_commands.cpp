// export, import: a page's rows of every table of the floor file, as JSON,
// verbatim (nothing interpreted), so that an export imported into another
// floor gives the same rows.
//
// The file: {"format": "seluvorne-pages 1", "floor": ..., "pages": [{"page": 4,
// "tables": {"TOORIMEI": {"fields": [...], "rows": [[...], ...]}, ...}}]}.
// Numbers stay numbers, texts texts, Null is null.

#include <fmt/format.h>

#include <fstream>

#include "commands.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/dao.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {
namespace {

constexpr const char* kFormat = "seluvorne-pages 1";

std::vector<std::string> PageTables() {
  std::vector<std::string> names;
  for (const frame::TableSchema& table : frame::kFloorTables)
    names.emplace_back(table.name);
  names.emplace_back(frame::kSpanTopTable.name);
  names.emplace_back(frame::kSpanTanJoilTable.name);
  return names;
}

std::shared_ptr<dao::Database> OpenFloor(Context& context, const Floor& floor) {
  context.RequireFloorFile(floor);
  // Through the data service, so that the tables older files lack are added.
  Object service = context.NewService();
  CallByName(service, "CurrKai", CallKind::PropertyPut, floor.folder);
  CallByName(service, "CloseDB", CallKind::Method);
  return dao::DBEngine::Instance()->Workspaces(0)->OpenDatabase(floor.FloorFile().string());
}

nlohmann::json JsonValue(const vb::Variant& value) {
  if (value.isNull() || value.isEmpty()) return nullptr;
  if (value.isString()) return vb::CStr(value);
  return vb::CLng(value);
}

vb::Variant VariantValue(const nlohmann::json& value, const std::string& where) {
  if (value.is_null()) return vb::Variant(vb::NullValue{});
  if (value.is_string()) return vb::Variant(value.get<std::string>());
  if (value.is_number_integer()) return vb::Variant(value.get<std::int32_t>());
  Fail(13, "", where + ": " + value.dump());
}

nlohmann::json ExportPage(dao::Database& db, int page) {
  nlohmann::json tables = nlohmann::json::object();
  bool listed = false;
  for (const std::string& table : PageTables()) {
    auto rows =
        db.OpenRecordset(fmt::format("SELECT * FROM {} WHERE PAGE = {};", table, StoredPage(page)),
                         dao::dbOpenSnapshot);
    nlohmann::json fields = nlohmann::json::array();
    auto columns = rows->Fields();
    for (std::int32_t i = 0; i < columns->Count(); ++i)
      fields.push_back(columns->Item(i)->Name());
    nlohmann::json values = nlohmann::json::array();
    while (!rows->IsEOF()) {
      nlohmann::json row = nlohmann::json::array();
      for (std::int32_t i = 0; i < columns->Count(); ++i)
        row.push_back(JsonValue(columns->Item(i)->Value()));
      values.push_back(row);
      rows->MoveNext();
    }
    rows->Close();
    if (table == "TOORIMEI") listed = !values.empty();
    tables[table] = {{"fields", fields}, {"rows", values}};
  }
  if (!listed) Fail(3021, "", fmt::format("no page {} on the floor", page));
  return {{"page", page}, {"tables", tables}};
}

void ExportPages(Context& context, const std::string& text, const std::string& list,
                 const std::string& output) {
  const Floor floor = context.ResolveFloor(text);
  const std::vector<int> pages = ParsePageList(list);
  auto db = OpenFloor(context, floor);
  nlohmann::json exported = {
      {"format", kFormat}, {"floor", text}, {"pages", nlohmann::json::array()}};
  for (int page : pages)
    exported["pages"].push_back(ExportPage(*db, page));
  db->Close();
  const std::string dumped = exported.dump(1, ' ', false) + "\n";
  if (output.empty() || output == "-") {
    fmt::print("{}", dumped);
    return;
  }
  std::ofstream file(output, std::ios::binary | std::ios::trunc);
  file << dumped;
  if (!file.flush()) Fail(75, "", output);
  fmt::print(stderr, "exported {} page{} of {} to {}\n", pages.size(), pages.size() == 1 ? "" : "s",
             text, output);
}

void ImportPages(Context& context, const std::string& text, const std::string& input, int to) {
  std::ifstream file(input, std::ios::binary);
  if (!file) Fail(53, "", input);
  nlohmann::json document;
  try {
    document = nlohmann::json::parse(file);
  } catch (const nlohmann::json::exception& error) {
    Fail(13, "", input + " is not JSON: " + error.what());
  }
  if (!document.is_object() || document.value("format", "") != kFormat ||
      !document["pages"].is_array())
    Fail(13, "", input + " is not a page export of this tool");

  const Floor floor = context.ResolveFloor(text);
  auto db = OpenFloor(context, floor);
  const std::vector<std::string> tables = PageTables();
  int next = to;
  for (const nlohmann::json& page : document["pages"]) {
    const int shown = to > 0 ? next++ : page.at("page").get<int>();
    const std::int16_t stored = StoredPage(shown);
    // The page's rows are replaced, every table's, SPANTOP and SPANTANJOIL included.
    for (const std::string& table : tables)
      db->Execute(fmt::format("DELETE * FROM {} WHERE PAGE = {} ;", table, stored),
                  dao::dbFailOnError);
    for (const std::string& table : tables) {
      if (!page["tables"].contains(table)) continue;
      const nlohmann::json& data = page["tables"][table];
      auto rows = db->OpenRecordset(table, dao::dbOpenDynaset);
      const auto& fields = data.at("fields");
      for (const nlohmann::json& row : data.at("rows")) {
        rows->AddNew();
        for (std::size_t i = 0; i < fields.size(); ++i) {
          const std::string name = fields.at(i).get<std::string>();
          rows->Fields()->Item(name)->SetValue(
              name == "PAGE" ? vb::Variant(stored)
                             : VariantValue(row.at(i), fmt::format("{}.{}", table, name)));
        }
        rows->Update();
      }
      rows->Close();
    }
    if (!context.json)
      fmt::print("imported page {} as page {} of {}\n", page.value("page", 0), shown, text);
  }
  db->Close();
  if (context.json) PrintJson({{"floor", text}, {"pages", document["pages"].size()}});
}

}  // namespace

void AddTransferCommands(CLI::App& app, Context& context) {
  static std::string floor, pages, output, input;
  static int to = 0;
  auto* out = app.add_subcommand("export", "pages' rows of every table as JSON (verbatim)");
  out->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  out->add_option("PAGES", pages, "pages from 1: 4 or 1,3-5")->required();
  out->add_option("-o,--output", output, "the JSON file (standard output when omitted)");
  out->footer("Example: seluvorne export 1/2/3 1,3-5 -o beams.json");
  out->callback([&context] { ExportPages(context, floor, pages, output); });

  auto* in = app.add_subcommand("import", "pages from an export, replacing the pages' rows");
  in->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  in->add_option("FILE", input, "a JSON file written by export")->required();
  in->add_option("--to", to, "the first destination page (the pages' own numbers when omitted)")
      ->check(CLI::Range(1, 500));
  in->footer("Example: seluvorne import 1/2/4 beams.json --to 7");
  in->callback([&context] { ImportPages(context, floor, input, to); });
}

}  // namespace seluvorne::cli
