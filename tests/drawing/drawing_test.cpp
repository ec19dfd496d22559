#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>

#include "error_matchers.h"
#include "file_bytes.h"
#include "seluvorne/drawing.h"

namespace {

using namespace seluvorne::drawing;

// Two spans of 7,200 and 6,000 mm on columns 800, 900 and 800 mm wide; the
// second span has haunches at its left end, the first a level step.
BeamElevation TwoSpans() {
  BeamElevation beam;
  beam.floor_name = "Z1/K1/3F";
  beam.page_name = "page 1";
  beam.grid_name = "Y1通り";
  beam.columns = {{400, 400, "X1"}, {450, 450, "X2"}, {400, 400, "X3"}};
  ElevationSpan first;
  first.length = 7200;
  first.depth_left = first.depth_right = 800;
  first.beam_name = "G1";
  first.change_points = {{3000, 0}, {3000, -50}};
  ElevationSpan second;
  second.length = 6000;
  second.top_level = -50;
  second.depth_left = 900;
  second.depth_right = 700;
  second.beam_name = "G2";
  second.left_bottom = {600, 150};
  second.left_top = {500, 100};
  beam.spans = {first, second};
  return beam;
}

// Points of an outline, each given as {index, x, y}.
struct At {
  std::size_t index;
  double x, y;
};
void ExpectPoints(const std::vector<Point>& outline, std::initializer_list<At> expected) {
  for (const At& at : expected) {
    ASSERT_LT(at.index, outline.size());
    EXPECT_DOUBLE_EQ(outline[at.index].x, at.x) << "point " << at.index;
    EXPECT_DOUBLE_EQ(outline[at.index].y, at.y) << "point " << at.index;
  }
}

TEST(ElevationLayout, BeamsRunFaceToFaceWithTheirLevelsAndDepths) {
  const ElevationLayout layout = LayoutElevation(TwoSpans());
  ASSERT_EQ(layout.beams.size(), 2u);
  // First span: the level steps down by 50 at 3,000 from its left face.
  const auto& first = layout.beams[0];
  ASSERT_EQ(first.size(), 8u);
  ExpectPoints(
      first,
      {{0, 800, 0}, {1, 3800, 0}, {2, 3800, -50}, {3, 7150, -50}, {4, 7150, -850}, {7, 800, -800}});
  ASSERT_EQ(layout.change_points.size(), 2u);
  ASSERT_EQ(layout.level_labels.size(), 1u);  // where the level changes
  EXPECT_EQ(layout.level_labels[0].text, "-50");
  // Second span: its depth runs from 900 to 700.
  const auto& second = layout.beams[1];
  ASSERT_EQ(second.size(), 4u);
  ExpectPoints(second, {{0, 8050, -50}, {1, 13200, -50}, {2, 13200, -750}, {3, 8050, -950}});
}

TEST(ElevationLayout, HaunchesGrowFromTheFaceAlongTheBeam) {
  const ElevationLayout layout = LayoutElevation(TwoSpans());
  ASSERT_EQ(layout.haunches.size(), 2u);
  ExpectPoints(layout.haunches[0], {{0, 8050, -50}, {1, 8550, -50}, {2, 8050, 50}});
  const auto& bottom = layout.haunches[1];
  // 600 into a span whose depth falls by 200 over its clear 5,150.
  EXPECT_DOUBLE_EQ(bottom[1].x, 8650);
  EXPECT_NEAR(bottom[1].y, -50 - (900 - 200 * 600.0 / 5150), 1e-9);
  ExpectPoints(bottom, {{0, 8050, -950}, {2, 8050, -1100}});
}

}  // namespace
