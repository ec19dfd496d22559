// The span model's bounds, its span frame (KUTAIDATA) and the change-point
// rows and tidy, which need the frame.

#include "seluvorne/span_model.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

namespace {

using I16 = std::int16_t;

// s x per + offset in 16-bit arithmetic, as the suite's programs index rows.
I16 RowIndex(I16 s, I16 per, I16 offset) {
  return vb::Add<I16>(vb::Mul<I16>(s, per), offset);
}

}  // namespace

SpanModel::SpanModel()
    : SpanSunpou({99, 2}),
      HasiraIti({99}),
      SpanToorimei({99}),
      HariMei({99}),
      Tenba({99}),
      Hensin({99, 1}),
      HantiData({99, 3}),
      StpGensun({99, 1}),
      StpJougeGensun({99, 1}),
      HenkatenData({99, 13}),
      HenkatenHantiL({99, 1}),
      AnkaNigeData({99, 1, 249}),
      RsiteiData({99}),
      SitakinCutData({199}),
      SpanTopData({99, 1, 1, 1, 1}),
      TanbuJointLData({99, 1}) {}

void SpanModel::TakeFrame(SpanModel&& other) {
  SpanSunpou = std::move(other.SpanSunpou);
  HasiraIti = std::move(other.HasiraIti);
  SpanToorimei = std::move(other.SpanToorimei);
  HariMei = std::move(other.HariMei);
  Tenba = std::move(other.Tenba);
  Hensin = std::move(other.Hensin);
  SpanSuu = other.SpanSuu;
}

std::int16_t SpanModel::GetYuukouSpanSuu() const {
  for (I16 i = 0; i < kMaxSpans; ++i)
    if (SpanSunpou(i, 2) == 0.0f) return i;
  return 0;
}

void SpanModel::ComputeFrame() {
  SpanSuu = GetYuukouSpanSuu();
  HasiraIti(0) = SpanSunpou(0, 2);
  for (I16 i = 1; i < SpanSuu; ++i)
    HasiraIti(i) = SpanSunpou(i, 2) + HasiraIti(i - 1);
}

void SpanModel::StoreKutaiRow(I16 s, I16 b, const std::string& data) {
  if (b < 0) return;
  const I16 i = RowIndex(s, 20, vb::IntDiv<I16>(vb::Mod<I16>(b, 80), 4));
  if (i >= kMaxSpans) return;
  const I16 code = vb::Mod<I16>(b, 4);
  if (b < 80) {
    if (code == 0)
      SpanToorimei(i) = data;
    else
      SpanSunpou(i, code - 1) = vb::CSng(vb::Val(data));
  } else {
    switch (code) {
      case 0:
        Tenba(i) = vb::CSng(vb::Val(data));
        break;
      case 1:
        HariMei(i) = vb::Trim(data);
        break;
      default:
        Hensin(i, code - 2) = vb::CSng(vb::Val(data));
        break;
    }
  }
}

void SpanModel::StoreHenkatenRow(I16 s, I16 b, I16 ban, const std::string& data) {
  if (b < 0) return;
  const I16 i = RowIndex(s, 20, b);
  if (i > 99) return;
  if (ban == 100 || ban == 101)
    HenkatenHantiL(i, ban - 100) = data;
  else
    HenkatenData(i, ban) = vb::Trim(data);
}

void SpanModel::TidyHenkaten() {
  for (I16 i = 0; i < SpanSuu; ++i) {
    const float clear = GetSpanUtinoriKyori(i);
    I16 n = 0;
    for (I16 k = 0; k < 7; ++k) {
      std::string level = HenkatenData(i, 2 * k);
      std::string distance = HenkatenData(i, 2 * k + 1);
      if (level.empty() && distance.empty()) continue;
      if (level.empty()) level = "0";
      if (distance.empty()) distance = "0";
      if (vb::CSng(vb::Val(distance)) > clear) distance = vb::StrTrimmed(clear);
      if (2 * k > 2 * n) {
        HenkatenData(i, 2 * k) = "";
        HenkatenData(i, 2 * k + 1) = "";
      }
      HenkatenData(i, 2 * n) = std::move(level);
      HenkatenData(i, 2 * n + 1) = std::move(distance);
      ++n;
    }
  }
}

float SpanModel::CentreOfColumn(I16 k) const {
  const float w0 = SpanSunpou(0, 0);
  if (k == 0) return w0;
  return w0 + HasiraIti(vb::Sub<I16>(k, 1));
}

}  // namespace seluvorne
