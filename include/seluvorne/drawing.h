// The elevation of one beam, drawn to SVG or PNG.
//
// A beam is described plainly (BeamElevation: its columns and spans in mm,
// as the span model holds them), laid out once in model coordinates
// (LayoutElevation: what stands where) and painted by one QPainter routine
// onto an SVG or a PNG. The layout is separate from the painting so that the
// geometry can be checked without looking at pictures.
//
// Coordinates: x in mm along the beam from the outer face of column 0, as
// the span queries count it; y in mm, the levels of the floor (a span's top
// level is 0 at the floor level, negative below it).
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace seluvorne::drawing {

// A haunch at one end of a span: `length` along the beam from the column
// face, `depth` beyond the beam's top or bottom line at the face.
struct Haunch {
  double length = 0;
  double depth = 0;
  bool present() const { return length > 0 && depth > 0; }
};

// A change point of the beam's top level: at `distance` from the span's left
// column face the top stands at `level`.
struct ChangePoint {
  double distance = 0;
  double level = 0;
};

struct ElevationColumn {
  double left_width = 0;   // width left of the column's centre line
  double right_width = 0;  // width right of it
  std::string grid_name;   // the grid line through the column, may be empty
};

struct ElevationSpan {
  double length = 0;     // centre to centre of its columns
  double top_level = 0;  // the beam's top level where no change point says otherwise
  double depth_left = 0, depth_right = 0;  // beam depth at the left and right face
  std::string beam_name;
  Haunch left_top, left_bottom, right_top, right_bottom;
  std::vector<ChangePoint> change_points;  // in order of distance
};

// One beam: span k runs from column k to column k + 1, so there is one
// column more than spans.
struct BeamElevation {
  std::string floor_name;  // shown in the title block
  std::string page_name;   // "page 3"
  std::string grid_name;   // the beam's grid line
  std::vector<ElevationColumn> columns;
  std::vector<ElevationSpan> spans;
};

struct Point {
  double x = 0, y = 0;
};
struct Box {
  double left = 0, bottom = 0, right = 0, top = 0;
};
struct Label {
  Point at;  // the text's centre
  std::string text;
};
// A dimension line from x0 to x1 at height y, with its text.
struct Dimension {
  double x0 = 0, x1 = 0, y = 0;
  std::string text;
};

// What stands where, in model coordinates.
struct ElevationLayout {
  std::vector<Box> columns;                  // one per column
  std::vector<std::vector<Point>> beams;     // one outline per span, closed
  std::vector<std::vector<Point>> haunches;  // triangles, closed
  std::vector<Point> change_points;          // on the top line
  std::vector<Label> grid_labels;            // above each named column
  std::vector<Label> beam_labels;            // above each span
  std::vector<Label> level_labels;           // the levels of change points
  std::vector<Dimension> dimensions;         // spans (centre to centre), then clear spans
  std::vector<std::string> title;            // the title block's lines
  Box extent;                                // everything above, with a margin
};

// Raises 5 when the columns are not one more than the spans, or a length or
// width is negative.
ElevationLayout LayoutElevation(const BeamElevation& beam);

// Writes the elevation at 1:`scale` (paper mm per model mm = 1 / scale) to
// `file`: SVG when it ends in ".svg", PNG when in ".png", else 5. Raises 75
// when the file cannot be written.
void WriteElevation(const BeamElevation& beam, const std::filesystem::path& file, double scale);

}  // namespace seluvorne::drawing
