#include "beam.h"

#include <fmt/format.h>

#include "context.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {
namespace {

template <class... A>
vb::Variant Call(const Object& object, std::string_view member, const A&... args) {
  return CallByName(object, member, CallKind::Method, args...);
}
double Real(const vb::Variant& value) {
  return vb::CDbl(value);
}
std::string Text(const vb::Variant& value) {
  return vb::CStr(value);
}

std::string Number(double value) {
  return fmt::format("{:g}", value);
}

}  // namespace

Beam ReadBeam(const Object& service, int page) {
  Beam beam;
  beam.page = page;
  std::int16_t stored = StoredPage(page);
  const std::int16_t spans = vb::CInt(Call(service, "InitKutaiData", stored));
  beam.grid_name = Text(CallByName(service, "TOORIMEI", CallKind::PropertyGet));
  beam.locations = Text(CallByName(service, "Kasyosuu", CallKind::PropertyGet));
  for (std::int16_t k = 0; k < spans; ++k) {
    SpanRow span;
    span.grid_name = Text(Call(service, "GetSpanToorimei", k));
    span.length = Real(Call(service, "GetSpanTyou", k));
    span.column_left = Real(Call(service, "GetHasiraHabaHidari", k));
    span.column_right = Real(Call(service, "GetHasiraHabaMigi", k));
    span.clear_span = Real(Call(service, "GetSpanUtinoriKyori", k));
    span.top_level = Real(Call(service, "GetTenba", k));
    span.eccentricity_top = Real(Call(service, "GetHensinUe", k));
    span.eccentricity_bottom = Real(Call(service, "GetHensinSita", k));
    span.beam_name = Text(Call(service, "GetHariMei", k));
    span.depth_left = Real(Call(service, "GetHariSeiHidari", k));
    span.depth_right = Real(Call(service, "GetHariSeiMigi", k));
    span.haunch_left_top = Text(Call(service, "GetHantiHidariUe", k));
    span.haunch_left_bottom = Text(Call(service, "GetHantiHidariSita", k));
    span.haunch_right_top = Text(Call(service, "GetHantiMigiUe", k));
    span.haunch_right_bottom = Text(Call(service, "GetHantiMigiSita", k));
    const std::int16_t points = vb::CInt(Call(service, "GetHenkatenSuu", k));
    for (std::int16_t b = 0; b < points; ++b)
      span.change_points.push_back({Real(Call(service, "GetHenkatenKyori", k, b)),
                                    Real(Call(service, "GetHenkatenTakasa", k, b))});
    // The span's left end is the right face of its left column, and its right
    // end the left face of the next column.
    const std::int16_t next = static_cast<std::int16_t>(k + 1);
    for (std::int16_t layer : {std::int16_t{0}, std::int16_t{2}}) {
      span.anchorage_left.push_back(Text(Call(service, "GetTeityakuMigi_Hontai", k, layer)));
      span.anchorage_right.push_back(Text(Call(service, "GetTeityakuHidari_Hontai", next, layer)));
    }
    beam.spans.push_back(std::move(span));
  }
  beam.last_column = {Real(Call(service, "GetHasiraHabaHidari", spans)),
                      Real(Call(service, "GetHasiraHabaMigi", spans)),
                      Text(Call(service, "GetSpanToorimei", spans))};
  return beam;
}

nlohmann::json BeamJson(const Beam& beam) {
  nlohmann::json spans = nlohmann::json::array();
  for (std::size_t k = 0; k < beam.spans.size(); ++k) {
    const SpanRow& s = beam.spans[k];
    nlohmann::json points = nlohmann::json::array();
    for (const auto& point : s.change_points)
      points.push_back({{"distance", point.distance}, {"level", point.level}});
    spans.push_back(
        {{"span", k + 1},
         {"grid_name", s.grid_name},
         {"length", s.length},
         {"column_left", s.column_left},
         {"column_right", s.column_right},
         {"clear_span", s.clear_span},
         {"top_level", s.top_level},
         {"eccentricity", {{"top", s.eccentricity_top}, {"bottom", s.eccentricity_bottom}}},
         {"beam_name", s.beam_name},
         {"depth", {{"left", s.depth_left}, {"right", s.depth_right}}},
         {"haunches",
          {{"left_top", s.haunch_left_top},
           {"left_bottom", s.haunch_left_bottom},
           {"right_top", s.haunch_right_top},
           {"right_bottom", s.haunch_right_bottom}}},
         {"change_points", points},
         {"anchorage", {{"left", s.anchorage_left}, {"right", s.anchorage_right}}}});
  }
  return {{"page", beam.page},
          {"grid_name", beam.grid_name},
          {"locations", beam.locations},
          {"last_column",
           {{"grid_name", beam.last_column.grid_name},
            {"left", beam.last_column.left_width},
            {"right", beam.last_column.right_width}}},
          {"spans", spans}};
}

void PrintBeam(const Beam& beam, const std::string& floor) {
  fmt::print("{}  page {}  {}  ({} locations)\n", floor, beam.page, beam.grid_name, beam.locations);
  fmt::print("{:>4} {:<8} {:>7} {:>6} {:>6} {:>7} {:>6} {:>9} {:<8} {:>9}  {}\n", "span", "grid",
             "length", "col.L", "col.R", "clear", "top", "ecc.t/b", "beam", "depth", "haunches");
  for (std::size_t k = 0; k < beam.spans.size(); ++k) {
    const SpanRow& s = beam.spans[k];
    std::string haunches;
    for (const auto& [name, text] : {std::pair{"LT", &s.haunch_left_top},
                                     {"LB", &s.haunch_left_bottom},
                                     {"RT", &s.haunch_right_top},
                                     {"RB", &s.haunch_right_bottom}})
      if (!text->empty()) haunches += fmt::format("{}={} ", name, *text);
    fmt::print("{:>4} {:<8} {:>7} {:>6} {:>6} {:>7} {:>6} {:>9} {:<8} {:>9}  {}\n", k + 1,
               s.grid_name, Number(s.length), Number(s.column_left), Number(s.column_right),
               Number(s.clear_span), Number(s.top_level),
               Number(s.eccentricity_top) + "/" + Number(s.eccentricity_bottom), s.beam_name,
               Number(s.depth_left) + "/" + Number(s.depth_right), haunches);
    for (const auto& point : s.change_points)
      fmt::print("       change point at {} mm: top {}\n", Number(point.distance),
                 Number(point.level));
    auto anchorage = [](const std::vector<std::string>& entries) {
      return fmt::format("{}", fmt::join(entries, " / "));
    };
    if (!(s.anchorage_left[0] + s.anchorage_left[1] + s.anchorage_right[0] + s.anchorage_right[1])
             .empty())
      fmt::print("       anchorage left {}  right {}\n", anchorage(s.anchorage_left),
                 anchorage(s.anchorage_right));
  }
  fmt::print("{:>4} {:<8} (last column {} / {})\n", "", beam.last_column.grid_name,
             Number(beam.last_column.left_width), Number(beam.last_column.right_width));
}

drawing::Haunch ParseHaunch(const std::string& text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) return {};
  return {vb::Val(text.substr(0, comma)), vb::Val(text.substr(comma + 1))};
}

drawing::BeamElevation Elevation(const Beam& beam, const std::string& floor) {
  drawing::BeamElevation elevation;
  elevation.floor_name = floor;
  elevation.page_name = fmt::format("page {}", beam.page);
  elevation.grid_name = beam.grid_name;
  for (const SpanRow& s : beam.spans) {
    elevation.columns.push_back({s.column_left, s.column_right, s.grid_name});
    drawing::ElevationSpan span;
    span.length = s.length;
    span.top_level = s.top_level;
    span.depth_left = s.depth_left;
    span.depth_right = s.depth_right;
    span.beam_name = s.beam_name;
    span.left_top = ParseHaunch(s.haunch_left_top);
    span.left_bottom = ParseHaunch(s.haunch_left_bottom);
    span.right_top = ParseHaunch(s.haunch_right_top);
    span.right_bottom = ParseHaunch(s.haunch_right_bottom);
    span.change_points = s.change_points;
    elevation.spans.push_back(std::move(span));
  }
  elevation.columns.push_back(beam.last_column);
  return elevation;
}

}  // namespace seluvorne::cli
