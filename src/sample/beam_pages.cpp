// A sample beam as the page writers' arrays: the row layout the span model
// reads back (twenty spans to a SUBPAGE; four KUTAIDATA codes per span in
// two blocks of eighty, HANTI four per span, HENKATEN fourteen slots per
// span, ANKANIGE two faces per column).

#include <fmt/format.h>

#include "seluvorne/error.h"
#include "seluvorne/sample_floor.h"

namespace seluvorne::sample {
namespace {

constexpr int kSpansPerSubpage = 20;

std::string Number(double value) { return fmt::format("{:g}", value); }

// 21 anchorage values of one column face; the entries for layers 0/1 and
// 2/3 are the tenth and eleventh.
std::string AnchorageValues(const std::string& top, const std::string& bottom) {
  std::vector<std::string> values(21, "0");
  values[10] = top.empty() ? "0" : top;
  values[11] = bottom.empty() ? "0" : bottom;
  return fmt::format("{}", fmt::join(values, ","));
}

}  // namespace

PageTexts BeamPage(const SampleBeam& beam) {
  const int spans = static_cast<int>(beam.spans.size());
  if (spans < 1 || spans > 99) Raise(errc::kInvalidCall, "(a sample beam has 1 to 99 spans)");
  const int columns = spans + 1;
  const int last_subpage = (columns + kSpansPerSubpage - 1) / kSpansPerSubpage - 1;
  PageTexts texts;
  texts.grid_line = beam.grid_name;
  texts.locations = beam.locations;

  // KUTAIDATA: per column its grid name, widths and span length (codes
  // 0..79); per span its top level, beam name and eccentricities (80..159).
  texts.kutai_data.ReDim({159, last_subpage});
  auto put = [&](int index, int block, int code, const std::string& text) {
    texts.kutai_data(block * 80 + (index % kSpansPerSubpage) * 4 + code, index / kSpansPerSubpage) =
        text;
  };
  for (int k = 0; k < columns; ++k) {
    const bool last = k == spans;
    const SampleColumn& column = last ? beam.last_column : beam.spans[k].column;
    put(k, 0, 0, column.grid_name);
    put(k, 0, 1, Number(column.left_width));
    put(k, 0, 2, Number(column.right_width));
    put(k, 0, 3, last ? "0" : Number(beam.spans[k].length));
    if (last) continue;
    const SampleSpan& span = beam.spans[k];
    put(k, 1, 0, Number(span.top_level));
    put(k, 1, 1, span.beam_name);
    put(k, 1, 2, Number(span.eccentricity_top));
    put(k, 1, 3, Number(span.eccentricity_bottom));
  }

  // HANTI: always five SUBPAGEs of eighty.
  texts.hanti.ReDim({79, 4});
  for (int k = 0; k < spans; ++k)
    for (int side = 0; side < 4; ++side)
      texts.hanti((k % kSpansPerSubpage) * 4 + side, k / kSpansPerSubpage) = beam.spans[k].haunches[side];

  // Stirrups and R settings: one size for every span.
  for (auto* stirrups : {&texts.stirrups, &texts.stirrups_ud}) {
    stirrups->ReDim({39, last_subpage});
    for (int k = 0; k < spans; ++k)
      for (int half = 0; half < 2; ++half)
        (*stirrups)((k % kSpansPerSubpage) * 2 + half, k / kSpansPerSubpage) = "D10@200";
  }
  texts.r_sitei.ReDim({spans - 1});

  // HENKATEN: pairs of (level, distance) in slots 0..13.
  texts.change_points.ReDim({13, 19, last_subpage});
  texts.haunch_lengths.ReDim({1, 19, last_subpage});
  for (int k = 0; k < spans; ++k) {
    const auto& points = beam.spans[k].change_points;
    if (points.size() > 7) Raise(errc::kInvalidCall, "(at most seven change points a span)");
    for (std::size_t p = 0; p < points.size(); ++p) {
      const int slot = static_cast<int>(2 * p);
      texts.change_points(slot, k % kSpansPerSubpage, k / kSpansPerSubpage) = Number(points[p].level);
      texts.change_points(slot + 1, k % kSpansPerSubpage, k / kSpansPerSubpage) =
          Number(points[p].distance);
    }
  }

  // SPANTOP and SPANTANJOIL: no values (a malformed element writes empties).
  texts.top.ReDim({19, 0});
  texts.joint_lengths.ReDim({19, 0});

  // ANKANIGE: the main body's group of each column face; a span's left end
  // is the right face of its column, its right end the left face of the next.
  texts.anchorage.ReDim({4, 39, last_subpage});
  for (int k = 0; k < spans; ++k) {
    const SampleSpan& span = beam.spans[k];
    if (span.anchorage_top.empty() && span.anchorage_bottom.empty()) continue;
    const std::string values = AnchorageValues(span.anchorage_top, span.anchorage_bottom);
    texts.anchorage(0, (k % kSpansPerSubpage) * 2 + 1, k / kSpansPerSubpage) = values;
    const int next = k + 1;
    texts.anchorage(0, (next % kSpansPerSubpage) * 2, next / kSpansPerSubpage) = values;
  }
  return texts;
}

}  // namespace seluvorne::sample
