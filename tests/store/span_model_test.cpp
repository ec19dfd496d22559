// The span model in memory: the geometry queries on beams with unequal and
// eccentric columns, and the questions that go to the roster or the
// caller's list.
// Each group is a table of cases on one beam built by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/runtime.h"
#include "seluvorne/span_model.h"

namespace {

using namespace seluvorne;
using I16 = std::int16_t;

struct Column {
  float left, right;  // widths left and right of the centre line
};

// A page of spans on the given columns (one more column than spans).
SpanModel Beam(const std::vector<Column>& columns, const std::vector<float>& lengths) {
  SpanModel model;
  for (std::size_t k = 0; k < columns.size(); ++k) {
    model.SpanSunpou(k, 0) = columns[k].left;
    model.SpanSunpou(k, 1) = columns[k].right;
  }
  for (std::size_t i = 0; i < lengths.size(); ++i)
    model.SpanSunpou(i, 2) = lengths[i];
  model.ComputeFrame();
  return model;
}

// The worked example: 400-wide columns (200 each side), spans 6000 and 5000.
// Faces: column 0 0..400, column 1 6000..6400, column 2 11000..11400.
SpanModel Symmetric() {
  return Beam({{200, 200}, {200, 200}, {200, 200}}, {6000, 5000});
}

// Unequal, eccentric columns: centres 250, 6250, 13250, 18250; faces
// 0..600, 5850..6450, 12950..13550, 18250..18750; clear spans 5250, 6500, 4700.
SpanModel Eccentric() {
  return Beam({{250, 350}, {400, 200}, {300, 300}, {0, 500}}, {6000, 7000, 5000});
}

// A case: what to ask (its text names the case), and the answer as text or
// the error number it raises.
struct Case {
  const char* asked;
  std::function<vb::Variant(const SpanModel&)> ask;
  const char* answer;
  int error = 0;
};
#define ASK(expr) #expr, [](const SpanModel& m) { return vb::Variant(m.expr); }

void Check(const SpanModel& model, const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.asked);
    if (c.error) {
      EXPECT_RAISES(c.ask(model), c.error);
    } else {
      EXPECT_EQ(vb::CStr(c.ask(model)), c.answer);
    }
  }
}

TEST(SpanGeometry, FacesClearSpansAndColumns) {
  Check(Eccentric(), {
                         {ASK(SpanSuu), "3"},
                         {ASK(GetKyoriSpanHidariUti(1)), "6450"},  // inner face
                         {ASK(GetKyoriSpanHidariSoto(1)), "5850"},
                         {ASK(GetKyoriSpanMigiUti(1)), "12950"},
                         {ASK(GetKyoriSpanMigiSoto(2)), "18750"},
                         {ASK(GetSpanUtinoriKyori(0)), "5250"},  // clear span
                         {ASK(GetSpanUtinoriKyori(2)), "4700"},
                         {ASK(GetSpanUtinoriL4Kyori(1)), "1630"},  // quarter 1625 up
                         {ASK(GetSpanUtinoriL4Kyori(2)), "1180"},
                         {ASK(GetSpanUtinoriL4Kyori(3)), "0"},  // quarter of nothing
                         {ASK(GetHasiraHaba(1)), "600"},
                         {ASK(GetHasiraHaba(3)), "500"},  // last column, half
                         {ASK(GetKyoriSpanMigiUti(99)), "", 9},
                         {ASK(GetHasiraHaba(100)), "", 9},
                         {ASK(GetKyoriSpanHidariUti(-1)), "", 9},
                     });
}

// Symmetric, eccentric, and columns 0..400 and 500..900 between which both
// faces are near (ties keep column 0).
TEST(SpanGeometry, InOrNearColumn) {
  const SpanModel symmetric = Symmetric(), eccentric = Eccentric(),
                  close = Beam({{200, 200}, {200, 200}}, {500});
  const struct {
    const SpanModel& model;
    float x, tolerance;
    I16 column;
  } points[] = {{symmetric, 6100, 50, 1},   {symmetric, 5990, 20, 1},  {symmetric, 6400, 0, 1},
                {symmetric, 3000, 50, -1},  {symmetric, -10, 10, 0},   {symmetric, 11500, 99, -1},
                {symmetric, 11500, 100, 2}, {eccentric, 6000, 0, 1},   {eccentric, 12900, 60, 2},
                {eccentric, 18250, 0, 3},   {eccentric, 18760, 10, 3}, {eccentric, 9000, 1000, -1},
                {eccentric, 5850, 0, 1},    {close, 450, 60, 0},       {close, 460, 60, 1},
                {close, 440, 60, 0},        {close, 450, 49, -1}};
  for (const auto& p : points)
    EXPECT_EQ(p.model.isInOrNearHasira(p.x, p.tolerance), p.column) << p.x << " ~" << p.tolerance;
}

// ---- With the roster and the caller's list -----------------------------------

class SpanRosterTest : public ::testing::Test {
 protected:
  SpanRosterTest() {
    // Depth 700 for every beam; the end designation and the list's answers
    // come from the tables below.
    fakes.Answer("roster", "harisei", vb::Variant(std::string("700")));
    fakes.Answer("roster", "GaiTanNaitan",
                 [this](std::span<vb::Variant>) { return vb::Variant(designation); });
    fakes.Answer("obList", "isKobari2", [](std::span<vb::Variant> args) {
      return vb::Variant(vb::CStr(args[0]).starts_with("2B"));
    });
    fakes.Answer("obList", "isKatamoti", [](std::span<vb::Variant> args) {
      return vb::Variant(vb::CStr(args[0]).starts_with("2C"));
    });
    fakes.Answer("obList", "fOobariKobariKatamoti",
                 [this](std::span<vb::Variant>) { return vb::Variant(kind); });
  }

  fakes::FakeComponents fakes{{}};
  frame::BeamRoster roster{fakes::MakeFakeObject(fakes, "roster")};
  frame::BeamRoster list{fakes::MakeFakeObject(fakes, "obList")};
  std::string designation;
  I16 kind = 0;
};

// Span 1 of a three-span beam against its left neighbour.
TEST_F(SpanRosterTest, ContinuityByEccentricityThenLevels) {
  struct C {
    float hensin_up_1, hensin_down_0, hensin_down_1, hensin_up_0, tenba_1, tenba_0;
    bool continuous;
  };
  for (C c : {C{30, 20, 100, 100, 0, 0, true},       // top eccentricities meet (50)
              C{100, 100, 10, 40, 0, 0, true},       // bottom ones meet
              C{30, 21, 100, 100, 0, 0, false},      // 51: overlapping levels
              C{100, 100, 100, 100, -651, 0, true},  // beam drops past the overlap
              C{100, 100, 100, 100, -650, 0, false}, C{100, 100, 100, 100, 650, 0, false},
              C{100, 100, 100, 100, 651, 0, true}}) {
    SpanModel m = Symmetric();
    m.SpanSunpou(2, 2) = 4000;
    m.ComputeFrame();
    m.HariMei(0) = "2G1";
    m.HariMei(1) = "2G2";
    m.Hensin(1, 0) = c.hensin_up_1;
    m.Hensin(0, 1) = c.hensin_down_0;
    m.Hensin(1, 1) = c.hensin_down_1;
    m.Hensin(0, 0) = c.hensin_up_0;
    m.Tenba(1) = c.tenba_1;
    m.Tenba(0) = c.tenba_0;
    EXPECT_EQ(m.isRenzokuSitan(1, roster), c.continuous) << c.tenba_1 << " " << c.hensin_down_0;
    EXPECT_EQ(m.isRenzokuSyuutan(0, roster), c.continuous) << "mirror";
    // An exterior end takes section 2 where the beam does not continue.
    designation = "外端";
    vb::Array<I16> right_of_0, left_of_1;
    m.GetDanmenBangou(0, right_of_0, roster);
    m.GetDanmenBangou(1, left_of_1, roster);
    const I16 section = c.continuous ? 0 : 2;
    EXPECT_EQ(right_of_0(2), section);
    EXPECT_EQ(left_of_1(0), section);
  }
  SpanModel m = Symmetric();
  EXPECT_TRUE(m.isRenzokuSitan(0, roster));
  EXPECT_TRUE(m.isRenzokuSyuutan(1, roster));  // the last valid span
}

TEST_F(SpanRosterTest, DepthsGoToTheRosterBySection) {
  designation = "端部";
  SpanModel m = Symmetric();
  m.HariMei(0) = "2G1/2G2";  // sections (2, 1, 0)
  fakes.ClearLog();
  EXPECT_EQ(m.GetHariSei(0, 0, roster), 700);
  EXPECT_THAT(fakes.Log("roster"), ::testing::ElementsAre("roster#1 GaiTanNaitan(\"2G1/2G2\", 1%)",
                                                          "roster#1 harisei(\"2G1/2G2\", 2%)"));
  EXPECT_EQ(m.GetHariSei(1, 0, roster), 0);  // no name: no question
  EXPECT_EQ(m.GetHariSeiMigi(1, roster), 0);
  EXPECT_RAISES(m.GetHariSei(0, 3, roster), 9);
}

TEST_F(SpanRosterTest, CutOffRatios) {
  struct R {
    I16 updown;
    const char* name;
    float tenba_1;  // -651: span 1 drops clear of span 0 and so continues it
    float left, right;
  };
  for (R r : {R{1, "2B2", -651, 1.0f / 6, 1.0f / 6}, R{1, "2B2", 0, 1.0f / 4, 1.0f / 6},
              R{0, "2B2", 0, 1.0f / 4, 1.0f / 4}, R{0, "2C2", 0, 1.0f / 3, 1.0f / 3},
              R{1, "2C2", 0, 1.0f / 3, 1.0f / 3}, R{1, "2G2", 0, 1.0f / 4, 1.0f / 4}}) {
    SpanModel m = Symmetric();
    m.HariMei(0) = "2G1";
    m.HariMei(1) = r.name;
    for (I16 i = 0; i < 2; ++i)
      m.Hensin(i, 0) = m.Hensin(i, 1) = 100;
    m.Tenba(1) = r.tenba_1;
    EXPECT_FLOAT_EQ(m.GetSpanRituHidari(r.updown, 1, list, roster), r.left) << r.name;
    EXPECT_FLOAT_EQ(m.GetSpanRituMigi(r.updown, 1, list, roster), r.right) << r.name;
  }
}

TEST_F(SpanRosterTest, CutOffPointsAndEndSmallBeams) {
  SpanModel m = Symmetric();  // span 0: inner face 400, clear 5600; ratio 1/4
  m.HariMei(0) = "2G1";
  m.HariMei(1) = "2G2";
  struct T {
    float x, tolerance;
    bool top;
  };
  for (T t : {T{1790, 20, true}, T{1800, 0, false}, T{1820, 20, false}, T{4610, 20, true},
              T{3000, 500, false}, T{7555, 10, true}})
    EXPECT_EQ(m.isTopX(0, t.x, t.tolerance, list, roster), t.top) << t.x;
  EXPECT_FALSE(SpanModel().isTopX(0, 100, 10, list, roster));  // no span
  EXPECT_FALSE(m.isHasiKobari(list));
  m.HariMei(1) = "2B2";
  EXPECT_TRUE(m.isHasiKobari(list));                 // the last valid span
  EXPECT_RAISES(SpanModel().isHasiKobari(list), 9);  // no valid span: HariMei(-1)
}

}  // namespace
