// One beam page as the command shows and draws it, read from the data
// service's span model by name (InitKutaiData, then the span members).
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "seluvorne/dispatch.h"
#include "seluvorne/drawing.h"

namespace seluvorne::cli {

struct SpanRow {
  std::string grid_name;                     // the grid line at the span's left column
  double length = 0;                         // centre to centre
  double column_left = 0, column_right = 0;  // widths of the left column about its centre line
  double clear_span = 0;
  double top_level = 0;
  double eccentricity_top = 0, eccentricity_bottom = 0;
  std::string beam_name;
  double depth_left = 0, depth_right = 0;
  std::string haunch_left_top, haunch_left_bottom, haunch_right_top, haunch_right_bottom;
  std::vector<drawing::ChangePoint> change_points;
  std::vector<std::string> anchorage_left, anchorage_right;  // layers 0/1 and 2/3 at each end
};

struct Beam {
  int page = 0;  // shown, 1-based
  std::string grid_name, locations;
  std::vector<SpanRow> spans;
  drawing::ElevationColumn last_column;  // the column at the right end
};

// Loads `page` (1-based) into `service`'s span model, which must have its
// floor open in KutaiDb, and reads it back.
Beam ReadBeam(const Object& service, int page);

nlohmann::json BeamJson(const Beam& beam);
void PrintBeam(const Beam& beam, const std::string& floor);

// A haunch text "length,depth" in mm; anything else draws no haunch.
drawing::Haunch ParseHaunch(const std::string& text);
drawing::BeamElevation Elevation(const Beam& beam, const std::string& floor);

}  // namespace seluvorne::cli
