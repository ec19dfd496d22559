// The span model in memory: the per-span accessors' guards and index
// arithmetic, the geometry queries on beams with unequal and eccentric
// columns, and the questions that go to the roster or the caller's list.
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

// One span whose clear length is the first number: columns of width 0 and 400.
TEST(SpanGeometry, QuarterSpanRoundsUpWholeMillimetresOnly) {
  for (auto [clear, quarter] : std::vector<std::pair<float, float>>{
           {4000, 1000}, {4004, 1010}, {4002, 1000}, {0, 0}, {-400, 0}})
    EXPECT_EQ(Beam({{0, 0}, {400, 0}}, {clear + 400}).GetSpanUtinoriL4Kyori(0), quarter) << clear;
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

TEST(SpanGeometry, InOrNearColumnWidenedHasNoNearAnswer) {
  SpanModel m = Eccentric();
  struct H {
    float x, tolerance;
    I16 column;
    float width;
  };
  for (H h : {H{12900, 60, 2, 600}, H{3000, 0, -1, 500}, H{5850, 0, -1, 500}, H{5850, 1, 1, 600},
              H{18300, 0, 3, 500}, H{18250, 0, -1, 500}}) {
    float width = -1;
    EXPECT_EQ(m.isInOrNearHasiraHaba(h.x, h.tolerance, width), h.column) << h.x;
    EXPECT_EQ(width, h.width) << h.x;
  }
}

TEST(SpanGeometry, SpanOfAPointAndItsAsymmetry) {
  SpanModel m = Eccentric();
  struct S {
    float x;
    I16 span, start, end;  // isInSpan, isInSpanHasira start point, end point
  };
  for (S s : {S{0, 0, 0, 0}, S{100, 0, 0, 0}, S{3000, 0, 0, 0}, S{6000, 0, 1, 0}, S{6250, 1, 1, 0},
              S{10000, 1, 1, 1}, S{13000, 1, 2, 1}, S{18000, 2, 2, 2}, S{18500, 2, 3, 2},
              S{20000, 2, 0, 0}}) {
    EXPECT_EQ(m.isInSpan(s.x), s.span) << s.x;
    EXPECT_EQ(m.isInSpanHasira(s.x, 0), s.start) << s.x;
    EXPECT_EQ(m.isInSpanHasira(s.x, 1), s.end) << s.x;
  }
  SpanModel symmetric = Symmetric();
  EXPECT_EQ(symmetric.isInSpan(6200), 1);  // a column centre belongs to the span on its right
  EXPECT_EQ(SpanModel().isInSpan(0), -1);  // no span: SpanSuu - 1
}

TEST(SpanGeometry, FeatureTextOfAStretch) {
  const struct {
    SpanModel model;
    float from, to;
    const char* text;
    I16 first, last;
  } cases[] = {{Beam({{300, 300}, {300, 300}}, {6000}), 100, 6000, "00060:00540:00060", 0, 0},
               {Eccentric(), 100, 18000, "00060:00525:00060:00650:00060:00470:00050", 0, 2},
               {Eccentric(), 6300, 13000, "00060:00650:00060", 1, 1}};
  for (const auto& c : cases) {
    I16 first = -1, last = -1;
    EXPECT_EQ(c.model.GetSpanTokutyou(c.from, c.to, first, last), c.text);
    EXPECT_EQ(std::pair(first, last), std::pair(c.first, c.last)) << c.text;
  }
}

// ---- Per-span accessors ------------------------------------------------------

SpanModel WithAttributes() {
  SpanModel m = Symmetric();
  for (I16 side = 0; side < 2; ++side)
    for (I16 ban = 0; ban < 250; ++ban)
      m.AnkaNigeData(3, side, ban) = (side ? "R" : "L") + std::to_string(ban);
  const char* points[] = {"-100", "1200", "-150", "2400", "", "", "", "", "", "", "", "", "", "7"};
  for (I16 slot = 0; slot < 14; ++slot)
    m.HenkatenData(0, slot) = points[slot];
  m.HenkatenHantiL(0, 1) = " 900 ";
  m.HariMei(2) = "2G3";  // stored beyond SpanSuu
  m.StpGensun(1, 0) = 2.5f;
  m.StpGensun(1, 1) = 3.5f;
  for (I16 i = 0; i < 8; ++i)
    m.SitakinCutData(i) = "C" + std::to_string(i);
  return m;
}

// Layer 4 of relief is BAN 9, anchorage layers 0/1 and 2/3 share a slot,
// build-out n starts at BAN 50 n; an Iti of 700 overflows 16 bits.
TEST(SpanAccessors, AnchorageReliefAndAnchorEntries) {
  Check(WithAttributes(), {
                              {ASK(GetTeityakuBanHidari_Hontai(3, 4)), ""},
                              {ASK(GetNigeHidari_Hontai(3, 4)), "L9"},
                              {ASK(GetTeityakuBanMigi_Hontai(3, 1)), "R13"},
                              {ASK(GetTeityakuStyleHidari_Fukasi(1, 3, 3)), "L119"},
                              {ASK(GetTeityakuHidari_Hontai(3, 1)), "L10"},
                              {ASK(GetTeityakuMigi_Fukasi(3, 3, 2)), "R211"},
                              {ASK(GetTeityakuMigi_Fukasi(9, 3, -1)), ""},
                              {ASK(GetTeityakuSansyouMigi_Hontai(3)), "R20"},
                              {ASK(GetTeityakuSansyouHidari_Fukasi(3, 3)), "L220"},
                              {ASK(GetAnkaMigi_Hontai(3, 49)), "R49"},
                              {ASK(GetAnkaHidari_Fukasi(0, 3, 2)), "L52"},
                              {ASK(GetAnkaHidari_Fukasi(4, 3, 0)), "", 9},
                              {ASK(GetAnkaHidari_Hontai(3, -1)), "", 9},
                              {ASK(GetNigeMigi_Hontai(100, 0)), "", 9},
                              {ASK(GetTeityakuBanHidari_Fukasi(32767, 3, 0)), "", 6},
                              {ASK(GetNigeHidari_Hontai(3, 32767)), "", 6},
                              {ASK(GetTeityakuSansyouMigi_Fukasi(700, 3)), "", 6},
                          });
}

// Change point n is slots 2n/2n+1 and the count stops at the first gap;
// stirrup sizes round half to even; names are answered below SpanSuu only.
TEST(SpanAccessors, ChangePointsStirrupsNamesAndCuts) {
  Check(WithAttributes(), {
                              {ASK(GetHenkatenKyori(0, 0)), "1200"},
                              {ASK(GetHenkatenTakasa(0, 1)), "-150"},
                              {ASK(GetHenkatenKyori(0, 6)), "7"},
                              {ASK(GetHenkatenKyori(0, 7)), "0"},
                              {ASK(GetHenkatenTakasa(100, 0)), "0"},
                              {ASK(GetHenkatenTakasa(0, -1)), "", 9},
                              {ASK(GetHenkatenSuu(0)), "2"},
                              {ASK(GetHenkatenSuu(1)), "0"},
                              {ASK(GetHenkatenSayuuHantiL(0, 1)), "900"},  // untrimmed
                              {ASK(GetHenkatenSayuuHantiL(0, 2)), "0"},
                              {ASK(GetHenkatenSayuuHantiL(100, 0)), "0"},
                              {ASK(GetSpanSTPGensun(1, 0)), "2"},
                              {ASK(GetSpanSTPGensun(1, 1)), "4"},
                              {ASK(GetHariMei(2)), ""},
                              {ASK(GetSitakinCutHidari(2)), "C4"},
                              {ASK(GetSitakinCutMigiHidari(2, 1)), "C5"},
                              {ASK(GetSitakinCutMigi(100)), "", 9},
                          });
  SpanModel full;
  for (I16 slot = 0; slot < 14; ++slot)
    full.HenkatenData(5, slot) = "1";
  EXPECT_EQ(full.GetHenkatenSuu(5), 7);
}

TEST(SpanAccessors, EndLevelsLookAtChangePointZeroAndN) {
  SpanModel m = Symmetric();  // span 0 clear 5600
  m.Tenba(0) = -30;
  EXPECT_EQ(m.GetSatanTenba(0), -30);
  EXPECT_EQ(m.GetUtanTenba(0), -30);
  m.HenkatenData(0, 0) = "-80";
  m.HenkatenData(0, 1) = "0";
  EXPECT_EQ(m.GetSatanTenba(0), -80);  // change point 0 at distance 0
  m.HenkatenData(0, 2) = "-90";
  m.HenkatenData(0, 3) = "5600";
  EXPECT_EQ(m.GetUtanTenba(0), -30);  // point n = 2 (the count), not the last one
  for (I16 slot = 4; slot < 14; slot += 2) {
    m.HenkatenData(0, slot) = "-95";
    m.HenkatenData(0, slot + 1) = "100";
  }
  EXPECT_EQ(m.GetUtanTenba(0), -30);  // seven points: point 7 answers distance 0
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

TEST_F(SpanRosterTest, SectionNumbersByEndDesignation) {
  struct D {
    const char* designation;
    const char* name;
    std::vector<Column> columns;
    I16 span;
    std::vector<I16> sections;
  };
  const std::vector<Column> three = {{200, 200}, {200, 200}, {200, 200}, {200, 200}};
  for (const D& d : std::vector<D>{
           {" 外端 ", "2G1", three, 0, {0, 1, 0}},
           {"基端", "2G1", three, 0, {2, 0, 0}},
           {"基端", "2G1", three, 1, {0, 0, 0}},
           {"基端", "2G1", three, 2, {0, 0, 2}},
           {"基端", "2G1", {{0, 0}, {0, 0}}, 0, {2, 2, 2}},
           {"基端", "2G1", {{0, 0}, {200, 200}}, 0, {2, 0, 0}},
           {"端部", "2G1/2G2", three, 1, {2, 1, 0}},
           {"", "2G1", three, 1, {0, 1, 2}},
           {"中間", "2G1", three, 1, {0, 0, 0}},
       }) {
    designation = d.designation;
    std::vector<float> lengths(d.columns.size() - 1, 5000);
    SpanModel m = Beam(d.columns, lengths);
    for (I16 i = 0; i < m.SpanSuu; ++i)
      m.HariMei(i) = d.name;
    vb::Array<I16> sections;
    m.GetDanmenBangou(d.span, sections, roster);
    EXPECT_THAT(std::vector<I16>(sections.begin(), sections.end()),
                ::testing::ElementsAreArray(d.sections))
        << d.designation << " span " << d.span;
    EXPECT_EQ(m.GetListDanmenNoByKutaiDanmenNo(d.span, 2, roster), d.sections[2]);
  }
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

TEST_F(SpanRosterTest, VarnholtRatiosAreAThirdForEveryKind) {
  SpanModel m = Symmetric();
  m.HariMei(0) = "2G1";
  for (I16 k : {0, 1, 3, 4, 9, -1}) {
    kind = k;
    fakes.ClearLog();
    const float expected = k >= 0 ? 1.0f / 3 : 0.0f;
    EXPECT_FLOAT_EQ(m.GetSpanRituHidariVARNHOLT(1, 0, list, roster), expected) << k;
    EXPECT_FLOAT_EQ(m.GetSpanRituMigiVARNHOLT(0, 0, list, roster), expected) << k;
    // The questions asked on the way are still asked: isKobari2 above kind 3.
    const auto calls = fakes.Log("obList");
    EXPECT_EQ(calls.size(), k > 3 ? 4u : 2u) << k;
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
