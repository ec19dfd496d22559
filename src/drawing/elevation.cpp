// The layout of a beam elevation: where columns, beams, haunches, change
// points, names and dimension lines stand, in model millimetres.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "seluvorne/drawing.h"
#include "seluvorne/error.h"

namespace seluvorne::drawing {
namespace {

// How far the columns reach beyond the beams, and the rows of the texts and
// dimension lines, in model mm.
constexpr double kColumnReach = 600;
constexpr double kGridRow = 900;       // grid names above the columns
constexpr double kBeamNameRise = 450;  // beam names above the span's highest top
constexpr double kLevelOffset = 150;   // a changed level's text, right of and above its point
constexpr double kFirstDimension = 500;
constexpr double kDimensionStep = 600;
constexpr double kTitleDrop = 900;
constexpr double kMargin = 400;

std::string Millimetres(double value) {
  char text[32];
  if (std::fabs(value - std::round(value)) < 1e-6)
    std::snprintf(text, sizeof text, "%.0f", value);
  else
    std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string Level(double value) {
  return (value > 0 ? "+" : "") + Millimetres(value);
}

// The top line of a span from face to face: its level, then each change
// point, and the last level held to the right face.
std::vector<Point> TopLine(const ElevationSpan& span, double left_face, double right_face) {
  const double clear = right_face - left_face;
  std::vector<Point> line;
  double level = span.top_level;
  if (!span.change_points.empty() && span.change_points.front().distance <= 0)
    level = span.change_points.front().level;
  line.push_back({left_face, level});
  for (const ChangePoint& point : span.change_points) {
    if (point.distance <= 0 || point.distance >= clear) continue;
    line.push_back({left_face + point.distance, point.level});
    level = point.level;
  }
  if (!span.change_points.empty() && span.change_points.back().distance >= clear)
    level = span.change_points.back().level;
  line.push_back({right_face, level});
  return line;
}

double DepthAt(const ElevationSpan& span, double left_face, double right_face, double x) {
  const double clear = right_face - left_face;
  if (clear <= 0) return span.depth_left;
  const double t = std::clamp((x - left_face) / clear, 0.0, 1.0);
  return span.depth_left + (span.depth_right - span.depth_left) * t;
}

// The level of a polyline at x (the first segment that holds x).
double LevelAt(const std::vector<Point>& line, double x) {
  for (std::size_t k = 1; k < line.size(); ++k) {
    const Point& a = line[k - 1];
    const Point& b = line[k];
    if (x <= b.x) {
      if (b.x <= a.x) return a.y;
      return a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x);
    }
  }
  return line.back().y;
}

void Check(bool condition, const char* what) {
  if (!condition)
    RaiseExplained(5, "", std::string("invalid beam: ") + what, "SeluVorneDS.drawing");
}

}  // namespace

ElevationLayout LayoutElevation(const BeamElevation& beam) {
  Check(!beam.spans.empty(), "no span");
  Check(beam.columns.size() == beam.spans.size() + 1, "one column more than spans is needed");
  for (const ElevationColumn& column : beam.columns)
    Check(column.left_width >= 0 && column.right_width >= 0, "negative column width");
  for (const ElevationSpan& span : beam.spans)
    Check(span.length >= 0 && span.depth_left >= 0 && span.depth_right >= 0,
          "negative length or depth");

  ElevationLayout layout;
  std::vector<double> centres;
  double x = beam.columns.front().left_width;
  for (std::size_t k = 0; k < beam.columns.size(); ++k) {
    centres.push_back(x);
    if (k < beam.spans.size()) x += beam.spans[k].length;
  }

  double lowest = std::numeric_limits<double>::max();
  double highest = std::numeric_limits<double>::lowest();
  auto take = [&](const Point& point) {
    lowest = std::min(lowest, point.y);
    highest = std::max(highest, point.y);
  };

  for (std::size_t k = 0; k < beam.spans.size(); ++k) {
    const ElevationSpan& span = beam.spans[k];
    const double left_face = centres[k] + beam.columns[k].right_width;
    const double right_face = centres[k + 1] - beam.columns[k + 1].left_width;
    const std::vector<Point> top = TopLine(span, left_face, right_face);

    std::vector<Point> outline = top;
    for (auto point = top.rbegin(); point != top.rend(); ++point)
      outline.push_back({point->x, point->y - DepthAt(span, left_face, right_face, point->x)});
    for (const Point& point : outline)
      take(point);
    layout.beams.push_back(outline);

    // A haunch widens the beam at a face: a triangle on the top or bottom line.
    auto haunch = [&](const Haunch& h, double face, double direction, bool on_top) {
      if (!h.present()) return;
      const double inner = face + direction * std::min(h.length, right_face - left_face);
      auto edge = [&](double at) {
        const double level = LevelAt(top, at);
        return on_top ? level : level - DepthAt(span, left_face, right_face, at);
      };
      const double grow = on_top ? h.depth : -h.depth;
      std::vector<Point> triangle{
          {face, edge(face)}, {inner, edge(inner)}, {face, edge(face) + grow}};
      for (const Point& point : triangle)
        take(point);
      layout.haunches.push_back(triangle);
    };
    haunch(span.left_top, left_face, +1, true);
    haunch(span.left_bottom, left_face, +1, false);
    haunch(span.right_top, right_face, -1, true);
    haunch(span.right_bottom, right_face, -1, false);

    // Every change point is marked; a level is written where it changes.
    for (std::size_t p = 1; p + 1 < top.size(); ++p) {
      layout.change_points.push_back(top[p]);
      if (top[p].y != top[p - 1].y)
        layout.level_labels.push_back(
            {{top[p].x + 2 * kLevelOffset, top[p].y + kLevelOffset}, Level(top[p].y)});
    }
    if (!span.beam_name.empty()) {
      double highest_top = top.front().y;
      for (const Point& point : top)
        highest_top = std::max(highest_top, point.y);
      layout.beam_labels.push_back(
          {{(left_face + right_face) / 2, highest_top + kBeamNameRise}, span.beam_name});
    }
  }

  const double column_bottom = lowest - kColumnReach;
  const double column_top = highest + kColumnReach;
  for (std::size_t k = 0; k < beam.columns.size(); ++k) {
    const ElevationColumn& column = beam.columns[k];
    layout.columns.push_back({centres[k] - column.left_width, column_bottom,
                              centres[k] + column.right_width, column_top});
    if (!column.grid_name.empty())
      layout.grid_labels.push_back({{centres[k], column_top + kGridRow}, column.grid_name});
  }

  const double span_row = column_bottom - kFirstDimension;
  const double clear_row = span_row - kDimensionStep;
  for (std::size_t k = 0; k < beam.spans.size(); ++k)
    layout.dimensions.push_back(
        {centres[k], centres[k + 1], span_row, Millimetres(beam.spans[k].length)});
  for (std::size_t k = 0; k < beam.spans.size(); ++k) {
    const double left_face = centres[k] + beam.columns[k].right_width;
    const double right_face = centres[k + 1] - beam.columns[k + 1].left_width;
    layout.dimensions.push_back(
        {left_face, right_face, clear_row, Millimetres(right_face - left_face)});
  }

  layout.title = {beam.grid_name.empty() ? beam.page_name : beam.page_name + "  " + beam.grid_name,
                  beam.floor_name};
  const double right_end = centres.back() + beam.columns.back().right_width;
  layout.extent = {-kMargin, clear_row - kTitleDrop - kMargin, right_end + kMargin,
                   column_top + kGridRow + kMargin};
  return layout;
}

}  // namespace seluvorne::drawing
