// A sample beam as the page writers' arrays: the row layout the span model
// reads back (twenty spans to a SUBPAGE; four KUTAIDATA codes per span in
// two blocks of eighty, HANTI four per span, HENKATEN fourteen slots per
// span, ANKANIGE two faces per column).

#include <fmt/format.h>

#include "seluvorne/array.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/error.h"
#include "seluvorne/sample_floor.h"

namespace seluvorne::sample {
namespace {

constexpr int kSpansPerSubpage = 20;

std::string Number(double value) { return fmt::format("{:g}", value); }

template <class... A>
void Write(const Object& service, std::string_view writer, const A&... args) {
  CallByName(service, writer, CallKind::Method, args...);
}

// 21 anchorage values of one column face; the entries for layers 0/1 and
// 2/3 are the tenth and eleventh.
std::string AnchorageValues(const std::string& top, const std::string& bottom) {
  std::vector<std::string> values(21, "0");
  values[10] = top.empty() ? "0" : top;
  values[11] = bottom.empty() ? "0" : bottom;
  return fmt::format("{}", fmt::join(values, ","));
}

}  // namespace

void WriteBeam(const Object& service, std::int16_t page, const SampleBeam& beam) {
  const int spans = static_cast<int>(beam.spans.size());
  if (spans < 1 || spans > 99) Raise(errc::kInvalidCall, "(a sample beam has 1 to 99 spans)");
  const int columns = spans + 1;
  const int subpages = (columns + kSpansPerSubpage - 1) / kSpansPerSubpage;
  const int last_subpage = subpages - 1;

  // KUTAIDATA: per span its grid name and column widths and length (codes
  // 0..79), its top level, beam name and eccentricities (codes 80..159).
  vb::Array<std::string> frame{159, last_subpage};
  auto put = [&](int index, int block, int code, const std::string& text) {
    frame(block * 80 + (index % kSpansPerSubpage) * 4 + code, index / kSpansPerSubpage) = text;
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
  Write(service, "Write_KutaiData", page, frame);

  // HANTI: always five SUBPAGEs of eighty.
  vb::Array<std::string> haunches{79, 4};
  for (int k = 0; k < spans; ++k)
    for (int side = 0; side < 4; ++side)
      haunches((k % kSpansPerSubpage) * 4 + side, k / kSpansPerSubpage) = beam.spans[k].haunches[side];
  Write(service, "Write_Hanti", page, haunches);

  // HENKATEN: pairs of (level, distance) in slots 0..13.
  vb::Array<std::string> changes{13, 19, last_subpage};
  vb::Array<std::string> haunch_lengths{1, 19, last_subpage};
  for (int k = 0; k < spans; ++k) {
    const auto& points = beam.spans[k].change_points;
    if (points.size() > 7) Raise(errc::kInvalidCall, "(at most seven change points a span)");
    for (std::size_t p = 0; p < points.size(); ++p) {
      changes(static_cast<int>(2 * p), k % kSpansPerSubpage, k / kSpansPerSubpage) = Number(points[p].level);
      changes(static_cast<int>(2 * p + 1), k % kSpansPerSubpage, k / kSpansPerSubpage) =
          Number(points[p].distance);
    }
  }
  Write(service, "Write_Henkaten", page, changes, haunch_lengths);

  // ANKANIGE: the main body's group of each column face; a span's left end
  // is the right face of its column, its right end the left face of the next.
  vb::Array<std::string> anchorage{4, 39, last_subpage};
  for (int k = 0; k < spans; ++k) {
    const SampleSpan& span = beam.spans[k];
    if (span.anchorage_top.empty() && span.anchorage_bottom.empty()) continue;
    const std::string values = AnchorageValues(span.anchorage_top, span.anchorage_bottom);
    anchorage(0, (k % kSpansPerSubpage) * 2 + 1, k / kSpansPerSubpage) = values;
    const int next = k + 1;
    anchorage(0, (next % kSpansPerSubpage) * 2, next / kSpansPerSubpage) = values;
  }
  Write(service, "Write_AnkaNige", page, anchorage);

  Write(service, "Write_TooriMei", page, beam.grid_name, beam.locations);
}

}  // namespace seluvorne::sample
