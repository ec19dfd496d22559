// Sample beams described as a detailer sees them (spans, columns, levels,
// haunches, change points), turned into the page writers' arrays
// (sample_pages.h) and written through them as the suite's editing programs
// write a page: the demo's floor and the command's tests.
//
//   sample::PageTexts texts = sample::BeamPage(beam);
//   sample::WritePage(service, 4, texts);          // after service.WriteOpen(folder)
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "seluvorne/sample_pages.h"

namespace seluvorne::sample {

struct SampleColumn {
  double left_width = 400, right_width = 400;  // about the column's centre line
  std::string grid_name;                       // the grid line through it
};

struct SampleChangePoint {
  double distance = 0;  // from the span's left column face
  double level = 0;     // the beam's top there
};

struct SampleSpan {
  SampleColumn column;  // the column at the span's left end
  double length = 0;    // centre to centre
  double top_level = 0;
  double eccentricity_top = 0, eccentricity_bottom = 0;
  std::string beam_name;  // as the roster lists it
  // Haunches as "length,depth" in mm: left top, left bottom, right top, right bottom.
  std::string haunches[4];
  std::vector<SampleChangePoint> change_points;  // at most 7
  // Anchorage entries of the span's ends (layers 0/1 and 2/3), "" for none.
  std::string anchorage_top, anchorage_bottom;
};

struct SampleBeam {
  std::string grid_name;  // the page's grid-line name
  std::string locations;  // how many such beams the floor has
  std::vector<SampleSpan> spans;
  SampleColumn last_column;  // the column at the right end
};

// The writers' arrays for `beam`, in the row layout the span model reads
// back. Raises 5 for a beam of no span or more than 99, or more than seven
// change points in a span.
PageTexts BeamPage(const SampleBeam& beam);

// One floor of a five-storey reinforced-concrete office: grid lines X1-X5 at
// 7,200 mm and Y1-Y4 at 6,000 / 8,400 / 6,000 mm, girders on every grid line
// (800-900 mm columns, 750-900 mm deep), haunches at the ends of the long
// spans, a level step in one span, change points, and two secondary beams.
std::vector<SampleBeam> OfficeFloor();

// The roster of OfficeFloor's beam names (kind, class and depths), as the
// standalone roster reads it from the data root's roster.json.
std::string OfficeRosterJson();

// Creates the floor `folder` (which must exist) through the library and
// writes `beams` as pages 0, 1, ...; adds build-outs on pages 0 and 2 and
// switches on some spans of page 1 and 4 when there are so many pages.
void WriteSampleFloor(const std::string& folder, const std::vector<SampleBeam>& beams);

}  // namespace seluvorne::sample
