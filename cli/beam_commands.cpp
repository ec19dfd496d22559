// pages, show, draw, select: the beams of one floor, through the library's
// page directory and span model.

#include <fmt/format.h>

#include <charconv>

#include "beam.h"
#include "commands.h"
#include "seluvorne/array.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {
namespace {

template <class... A>
vb::Variant Call(const Object& object, std::string_view member, const A&... args) {
  return CallByName(object, member, CallKind::Method, args...);
}

// "*001002" as 1-based pages; "NoFile" is the library's word for a floor it
// could not open.
std::vector<int> UnpackPages(const std::string& packed, const Floor& floor) {
  if (packed == "NoFile") Raise(3024, floor.FloorFile().string(), "seluvorne");
  std::vector<int> pages;
  for (std::size_t i = 1; i + 3 <= packed.size(); i += 3)
    pages.push_back(std::stoi(packed.substr(i, 3)));
  return pages;
}

const char* KindName(std::int16_t kind) {
  return kind == 0 ? "girder" : kind == 1 ? "secondary" : "other";
}

// The data service on `floor`, opened into KutaiDb; raises 3021 when the
// floor's directory does not list `page`.
Object OpenPage(Context& context, const Floor& floor, int page) {
  context.RequireFloorFile(floor);
  Object service = context.NewService();
  CallByName(service, "CurrKai", CallKind::PropertyPut, floor.folder);
  vb::Array<std::int16_t> listed;
  const std::int16_t last = vb::CInt(Call(service, "GetAllPages", floor.folder, Ref(listed)));
  const std::int16_t stored = StoredPage(page);
  for (std::int16_t i = 0; i <= last; ++i)
    if (listed(i) == stored) return service;
  Fail(3021, "", fmt::format("floor {} has no page {}", floor.text, page));
}

void ListPages(Context& context, const std::string& text, const std::string& kind) {
  const Floor floor = context.ResolveFloor(text);
  context.RequireFloorFile(floor);
  context.SetCurrentFloor(floor);
  if (kind == "girder") context.SetMemberKind(0);
  if (kind == "secondary") context.SetMemberKind(5);
  Object service = context.NewService();
  const std::string packed = vb::CStr(Call(service, kind == "all" ? "AllPages2" : "AllPages"));
  nlohmann::json rows = nlohmann::json::array();
  if (!context.json)
    fmt::print("{:>4}  {:<20} {:>9}  {:<9} {:>5} {:>9}\n", "page", "grid line", "locations", "kind",
               "spans", "length");
  for (int page : UnpackPages(packed, floor)) {
    std::int16_t stored = StoredPage(page);
    const std::string grid = vb::CStr(Call(service, "GetToorimeiByPage", stored));
    const std::string locations = vb::CStr(Call(service, "GetKasyosuuByPage", stored));
    std::int16_t asked = stored;
    const std::int16_t kind_code = vb::CInt(Call(service, "GetKindByPage", Ref(asked)));
    const std::int16_t spans = vb::CInt(Call(service, "InitKutaiData", stored));
    double length = 0;
    for (std::int16_t k = 0; k < spans; ++k)
      length += vb::CDbl(Call(service, "GetSpanTyou", k));
    if (context.json)
      rows.push_back({{"page", page},
                      {"grid_name", grid},
                      {"locations", locations},
                      {"kind", KindName(kind_code)},
                      {"kind_code", kind_code},
                      {"spans", spans},
                      {"length", length}});
    else
      fmt::print("{:>4}  {} {:>9}  {:<9} {:>5} {:>9}\n", page, PadRight(grid, 20), locations,
                 KindName(kind_code), spans, fmt::format("{:g}", length));
  }
  if (context.json) PrintJson({{"floor", text}, {"pages", rows}});
}

void ShowBeam(Context& context, const std::string& text, int page) {
  const Floor floor = context.ResolveFloor(text);
  Object service = OpenPage(context, floor, page);
  const Beam beam = ReadBeam(service, page);
  if (context.json)
    PrintJson({{"floor", text}, {"beam", BeamJson(beam)}});
  else
    PrintBeam(beam, floor.text);
}

double ParseScale(const std::string& text) {
  const std::string digits = text.rfind("1:", 0) == 0 ? text.substr(2) : text;
  int scale = 0;
  auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), scale);
  if (error != std::errc() || end != digits.data() + digits.size() || scale < 1 || scale > 10000)
    throw UsageError("a scale is 1:N with N from 1 to 10000, not '" + text + "'");
  return scale;
}

void DrawBeam(Context& context, const std::string& text, int page, const std::string& output,
              const std::string& scale) {
  const double ratio = ParseScale(scale);
  const Floor floor = context.ResolveFloor(text);
  Object service = OpenPage(context, floor, page);
  const Beam beam = ReadBeam(service, page);
  if (beam.spans.empty())
    Fail(5, "", fmt::format("page {} of {} has no spans to draw", page, floor.text));
  drawing::WriteElevation(Elevation(beam, floor.text), output, ratio);
  if (context.json)
    PrintJson({{"floor", text}, {"page", page}, {"file", output}, {"scale", ratio}});
  else
    fmt::print("drew page {} of {} at 1:{:g} to {}\n", page, floor.text, ratio, output);
}

void SelectPages(Context& context, const std::string& text, bool multi) {
  const Floor floor = context.ResolveFloor(text);
  context.RequireFloorFile(floor);
  context.SetCurrentFloor(floor);
  Object service = context.NewService();
  const std::string packed =
      vb::CStr(Call(service, "SelectedSeluVorneNo", static_cast<std::int16_t>(multi ? 1 : 0)));
  if (context.json)
    PrintJson({{"floor", text}, {"result", packed}});
  else
    fmt::print("{}\n", packed);
}

}  // namespace

void AddBeamCommands(CLI::App& app, Context& context) {
  static std::string floor, kind = "all", output, scale = "1:50";
  static int page = 0;
  static bool multi = false;

  auto* pages = app.add_subcommand("pages",
                                   "the floor's beams: page, grid line, locations, kind, "
                                   "spans, length");
  pages->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  pages->add_option("--kind", kind, "girder, secondary or all")
      ->check(CLI::IsMember({"girder", "secondary", "all"}));
  pages->footer("Example: seluvorne pages 1/2/3 --kind girder");
  pages->callback([&context] { ListPages(context, floor, kind); });

  auto* show = app.add_subcommand("show", "a beam's span table from the span model");
  show->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  show->add_option("PAGE", page, "the page, from 1")->required();
  show->footer("Example: seluvorne show 1/2/3 4 --json");
  show->callback([&context] { ShowBeam(context, floor, page); });

  auto* draw = app.add_subcommand("draw", "the beam's elevation to SVG or PNG");
  draw->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  draw->add_option("PAGE", page, "the page, from 1")->required();
  draw->add_option("-o,--output", output, "FILE.svg or FILE.png")->required();
  draw->add_option("--scale", scale, "drawing scale, 1:N");
  draw->footer("Example: seluvorne draw 1/2/3 4 -o beam.svg --scale 1:50");
  draw->callback([&context] { DrawBeam(context, floor, page, output, scale); });

  auto* select = app.add_subcommand("select",
                                    "open the beam selection dialog; prints the packed "
                                    "page list it answers");
  select->add_option("FLOOR", floor, "Z/K/F or a floor folder")->required();
  select->add_flag("--multi", multi, "let several beams be chosen");
  select->footer("Example: seluvorne select 1/2/3 --multi   (prints e.g. *001004)");
  select->callback([&context] { SelectPages(context, floor, multi); });
}

}  // namespace seluvorne::cli
