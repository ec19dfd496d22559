// The geometry of the span model: column faces, clear spans, where a point
// along the beam lies, end levels, section numbers and cut-off ratios.
//
// Every length is a 32-bit real and every sum or difference is stored as
// one before it is compared, as the suite's programs compute them; the
// asymmetries (isInSpan against isInSpanHasira, isInOrNearHasira against
// isInOrNearHasiraHaba) are the clients' and are kept.

#include <cmath>

#include "seluvorne/runtime.h"
#include "seluvorne/span_model.h"

namespace seluvorne {

namespace {

using I16 = std::int16_t;

constexpr float kContinuity = 50;  // isRenzoku*: level and eccentricity threshold

// The first two characters of the roster's end designation of a beam.
const std::string kGaitan = "外端";  // outer end
const std::string kKitan = "基端";   // base end
const std::string kTanbu = "端部";   // end part

}  // namespace

// ---- Faces and lengths -------------------------------------------------------

float SpanModel::GetKyoriSpanHidariUti(I16 SpanNo) const {
  return CentreOfColumn(SpanNo) + SpanSunpou(SpanNo, 1);
}

float SpanModel::GetKyoriSpanHidariSoto(I16 SpanNo) const {
  return CentreOfColumn(SpanNo) - SpanSunpou(SpanNo, 0);
}

float SpanModel::GetKyoriSpanMigiUti(I16 SpanNo) const {
  const float centre = SpanSunpou(0, 0) + HasiraIti(SpanNo);
  return centre - SpanSunpou(vb::Add<I16>(SpanNo, 1), 0);
}

float SpanModel::GetKyoriSpanMigiSoto(I16 SpanNo) const {
  const float centre = SpanSunpou(0, 0) + HasiraIti(SpanNo);
  return centre + SpanSunpou(vb::Add<I16>(SpanNo, 1), 1);
}

float SpanModel::GetSpanUtinoriKyori(I16 SpanNo) const {
  return GetKyoriSpanMigiUti(SpanNo) - GetKyoriSpanHidariUti(SpanNo);
}

float SpanModel::GetSpanUtinoriL4Kyori(I16 SpanNo) const {
  const float clear = GetKyoriSpanMigiUti(SpanNo) - GetKyoriSpanHidariUti(SpanNo);
  if (!(clear > 0)) return 0;
  const float quarter = clear / 4;
  const float tens = (quarter + 9) / 10;
  return static_cast<float>(vb::Fix(tens) * 10);
}

float SpanModel::GetHasiraHaba(I16 HasiraNo) const {
  return SpanSunpou(HasiraNo, 1) + SpanSunpou(HasiraNo, 0);
}
float SpanModel::GetHasiraHabaHidari(I16 HasiraNo) const {
  return SpanSunpou(HasiraNo, 0);
}
float SpanModel::GetHasiraHabaMigi(I16 HasiraNo) const {
  return SpanSunpou(HasiraNo, 1);
}
float SpanModel::GetSpanTyou(I16 HasiraNo) const {
  return SpanSunpou(HasiraNo, 2);
}

bool SpanModel::GetHasiraLR(I16 HasiraNo, float& HidariL, float& MigiL) const {
  if (HasiraNo > SpanSuu) return false;
  float centre = SpanSunpou(0, 0);
  for (I16 k = 0; k < HasiraNo; ++k)
    centre = centre + SpanSunpou(k, 2);
  const float left = centre - SpanSunpou(HasiraNo, 0);
  const float right = centre + SpanSunpou(HasiraNo, 1);
  HidariL = left;
  MigiL = right;
  return true;
}

float SpanModel::GetTenba(I16 SpanNo) const {
  return Tenba(SpanNo);
}
float SpanModel::GetHensinSita(I16 SpanNo) const {
  return Hensin(SpanNo, 1);
}
std::string SpanModel::GetSpanToorimei(I16 HasiraNo) const {
  return SpanToorimei(HasiraNo);
}
std::string SpanModel::GetRsitei(I16 HasiraNo) const {
  return RsiteiData(HasiraNo);
}

// Two entries per column, left face first (SUBPAGE s holds columns 20s..20s+19).
std::string SpanModel::GetSitakinCutHidari(I16 HasiraNo) const {
  return GetSitakinCutMigiHidari(HasiraNo, 0);
}
std::string SpanModel::GetSitakinCutMigi(I16 HasiraNo) const {
  return GetSitakinCutMigiHidari(HasiraNo, 1);
}
std::string SpanModel::GetSitakinCutMigiHidari(I16 HasiraNo, I16 MigiHidari) const {
  return SitakinCutData(vb::Add<I16>(vb::Mul<I16>(HasiraNo, 2), MigiHidari));
}

std::string SpanModel::GetSpanTop(I16 SpanNo, I16 KihonL_Yotyou, I16 TanbuTyuuou, I16 SitanSyuutan,
                                  I16 UpDown) const {
  return SpanTopData(SpanNo, KihonL_Yotyou, TanbuTyuuou, SitanSyuutan, UpDown);
}

std::string SpanModel::GetSpanTanbuJointL(I16 SpanNo, I16 TanbuJoiL) const {
  return TanbuJointLData(SpanNo, TanbuJoiL);
}

// ---- Where a point lies ------------------------------------------------------

I16 SpanModel::isInOrNearHasira(float X, float KyoyouNagasa) const {
  I16 near_column = -1;
  float near_distance = 0;
  float centre = SpanSunpou(0, 0);
  for (I16 k = 0; k <= SpanSuu; ++k) {
    if (k > 0) centre = centre + SpanSunpou(k - 1, 2);
    const float left = centre - SpanSunpou(k, 0);
    const float right = centre + SpanSunpou(k, 1);
    if (left < X && X < right) return k;
    float distance = std::fabs(left - X);
    bool near = distance <= KyoyouNagasa;
    if (!near) {
      distance = std::fabs(right - X);
      near = distance <= KyoyouNagasa;
    }
    if (near) {
      if (near_column < 0) {
        near_column = k;
        near_distance = distance;
        continue;
      }
      return near_distance > distance ? k : near_column;
    }
    if (near_column >= 0) return near_column;
  }
  return near_column;
}

I16 SpanModel::isInSpan(float X) const {
  float centre = SpanSunpou(0, 0);
  for (I16 i = 0; i < SpanSuu; ++i) {
    centre = centre + SpanSunpou(i, 2);
    if (centre > X) return i;
  }
  return vb::Sub<I16>(SpanSuu, 1);
}

I16 SpanModel::isInSpanHasira(float X, I16 SitenOrSyuuten) const {
  I16 k = isInOrNearHasira(X, 0);
  if (k >= 0) {
    if (SitenOrSyuuten == 1) --k;
    return k < 0 ? 0 : k;
  }
  float centre = SpanSunpou(0, 0);
  for (I16 i = 0; i < SpanSuu; ++i) {
    centre = centre + SpanSunpou(i, 2);
    if (centre > X) return i;
  }
  return 0;
}

I16 SpanModel::isInOrNearHasiraHaba(float X, float KyoyouNagasa, float& Haba) const {
  float centre = SpanSunpou(0, 0);
  for (I16 k = 0; k <= SpanSuu; ++k) {
    if (k > 0) centre = centre + SpanSunpou(k - 1, 2);
    const float left = centre - SpanSunpou(k, 0);
    const float right = centre + SpanSunpou(k, 1);
    Haba = right - left;
    const float low = left - KyoyouNagasa;
    const float high = right + KyoyouNagasa;
    if (low < X && X < high) return k;
  }
  return -1;
}

std::string SpanModel::GetSpanTokutyou(float SX, float EX, I16& HajimeSpan, I16& OwariSpan) const {
  HajimeSpan = isInSpanHasira(SX, 0);
  OwariSpan = isInSpanHasira(EX, 1);
  auto tens = [](float length) { return vb::Format(vb::Fix(length / 10), "00000"); };
  std::string text;
  for (I16 i = HajimeSpan; i <= OwariSpan; ++i) {
    text += tens(GetHasiraHaba(i)) + ":";
    text += tens(GetSpanUtinoriKyori(i)) + ":";
  }
  text += tens(GetHasiraHaba(vb::Add<I16>(OwariSpan, 1)));
  return text;
}

// ---- Depths and levels -------------------------------------------------------

float SpanModel::GetHariSei(I16 SpanNo, I16 Iti, const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  if (name.empty()) return 0;
  vb::Array<I16> sections;
  GetDanmenBangou(SpanNo, sections, roster);
  return vb::CSng(roster.harisei(name, sections(Iti)));
}

float SpanModel::GetHariSeiHidari(I16 SpanNo, const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  if (name.empty()) return 0;
  return vb::CSng(roster.harisei(name, 0));
}

float SpanModel::GetHariSeiMigi(I16 SpanNo, const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  if (name.empty()) return 0;
  return vb::CSng(roster.harisei(name, 2));
}

float SpanModel::GetSatanTenba(I16 SpanNo) const {
  if (GetHenkatenSuu(SpanNo) > 0 && GetHenkatenKyori(SpanNo, 0) == 0)
    return GetHenkatenTakasa(SpanNo, 0);
  return Tenba(SpanNo);
}

float SpanModel::GetUtanTenba(I16 SpanNo) const {
  const I16 n = GetHenkatenSuu(SpanNo);
  if (n >= 0 && GetHenkatenKyori(SpanNo, n) == GetSpanUtinoriKyori(SpanNo))
    return GetHenkatenTakasa(SpanNo, n);
  return Tenba(SpanNo);
}

// ---- Continuity and sections -------------------------------------------------

bool SpanModel::isRenzokuSitan(I16 SpanNo, const frame::BeamRoster& roster) const {
  if (SpanNo == 0) return true;
  const I16 previous = vb::Sub<I16>(SpanNo, 1);
  const float top_meets = GetHensinUe(SpanNo) + GetHensinSita(previous);
  if (top_meets <= kContinuity) return true;
  const float bottom_meets = GetHensinSita(SpanNo) + GetHensinUe(previous);
  if (bottom_meets <= kContinuity) return true;
  const float top = Tenba(SpanNo);
  const float top_before = Tenba(previous);
  const float bottom = top - GetHariSeiHidari(SpanNo, roster);
  const float bottom_before = top_before - GetHariSeiMigi(previous, roster);
  const float top_less = top - kContinuity;
  const float bottom_more = bottom + kContinuity;
  return !(top_less >= bottom_before && bottom_more <= top_before);
}

bool SpanModel::isRenzokuSyuutan(I16 SpanNo, const frame::BeamRoster& roster) const {
  if (SpanNo == SpanSuu - 1) return true;
  const I16 next = vb::Add<I16>(SpanNo, 1);
  const float top_meets = GetHensinUe(SpanNo) + GetHensinSita(next);
  if (top_meets <= kContinuity) return true;
  const float bottom_meets = GetHensinSita(SpanNo) + GetHensinUe(next);
  if (bottom_meets <= kContinuity) return true;
  const float top = Tenba(SpanNo);
  const float top_after = Tenba(next);
  const float bottom = top - GetHariSeiMigi(SpanNo, roster);
  const float bottom_after = top_after - GetHariSeiHidari(next, roster);
  const float top_less = top - kContinuity;
  const float bottom_more = bottom + kContinuity;
  return !(top_less >= bottom_after && bottom_more <= top_after);
}

void SpanModel::GetDanmenBangou(I16 SpanNo, vb::Array<I16>& DanmenBangou,
                                const frame::BeamRoster& roster) const {
  DanmenBangou.ReDim({2});
  std::string name = HariMei(SpanNo);
  const std::string kind = vb::Left(vb::Trim(roster.GaiTanNaitan(name, 1)), 2);
  auto& d = DanmenBangou;
  if (kind == kGaitan) {
    d(0) = isRenzokuSitan(SpanNo, roster) ? 0 : 2;
    d(1) = 1;
    d(2) = isRenzokuSyuutan(SpanNo, roster) ? 0 : 2;
  } else if (kind == kKitan && SpanSuu != 1) {
    d(0) = SpanNo != 0 ? 0 : 2;
    d(1) = 0;
    d(2) = SpanNo != SpanSuu - 1 ? 0 : 2;
  } else if (kind == kKitan) {
    d(0) = GetHasiraHaba(0) != 0 ? 0 : 2;
    d(2) = GetHasiraHaba(1) != 0 ? 0 : 2;
    d(1) = d(0) == 2 && d(2) == 2 ? 2 : 0;
  } else if (kind == kTanbu || kind.empty()) {
    const bool split = vb::InStr(name, "/") > 0;
    d(0) = split ? 2 : 0;
    d(1) = 1;
    d(2) = split ? 0 : 2;
  }
}

I16 SpanModel::GetListDanmenNoByKutaiDanmenNo(I16 SpanNo, I16 KutaiDanmenNo,
                                              const frame::BeamRoster& roster) const {
  vb::Array<I16> sections;
  GetDanmenBangou(SpanNo, sections, roster);
  return sections(KutaiDanmenNo);
}

// ---- Cut-off ratios ----------------------------------------------------------

float SpanModel::GetSpanRituHidari(I16 Updown2, I16 SpanNo, const frame::BeamRoster& obList,
                                   const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  if (Updown2 == 1 && obList.isKobari2(name))
    return isRenzokuSitan(SpanNo, roster) ? 1.0f / 6 : 1.0f / 4;
  return obList.isKatamoti(name) ? 1.0f / 3 : 1.0f / 4;
}

float SpanModel::GetSpanRituMigi(I16 Updown2, I16 SpanNo, const frame::BeamRoster& obList,
                                 const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  GetYuukouSpanSuu();  // asked by the clients' rule; it does not change the ratio
  if (Updown2 == 1 && obList.isKobari2(name))
    return isRenzokuSyuutan(SpanNo, roster) ? 1.0f / 6 : 1.0f / 4;
  return obList.isKatamoti(name) ? 1.0f / 3 : 1.0f / 4;
}

// The kind code once chose among several ratios; every one now gives 1/3, and
// the questions asked on the way are still asked, so the roster sees the same
// calls.
float SpanModel::GetSpanRituHidariVARNHOLT(I16, I16 SpanNo, const frame::BeamRoster& obList,
                                           const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  const I16 kind = obList.fOobariKobariKatamoti(name);
  if (kind == 0) isRenzokuSitan(SpanNo, roster);
  if (kind > 3) obList.isKobari2(name);
  return kind >= 0 ? 1.0f / 3 : 0.0f;
}

float SpanModel::GetSpanRituMigiVARNHOLT(I16, I16 SpanNo, const frame::BeamRoster& obList,
                                         const frame::BeamRoster& roster) const {
  std::string name = HariMei(SpanNo);
  const I16 kind = obList.fOobariKobariKatamoti(name);
  if (kind == 0) isRenzokuSyuutan(SpanNo, roster);
  if (kind > 3) obList.isKobari2(name);
  return kind >= 0 ? 1.0f / 3 : 0.0f;
}

bool SpanModel::isTopX(I16 UeOrSita, float X, float KyoyouNagasa, const frame::BeamRoster& obList,
                       const frame::BeamRoster& roster) const {
  const I16 s = isInSpan(X);
  if (s == -1) return false;
  const float inner = GetKyoriSpanHidariUti(s);
  const float clear = GetSpanUtinoriKyori(s);
  const float left_cut = GetSpanRituHidari(UeOrSita, s, obList, roster) * clear + inner;
  float low = left_cut - KyoyouNagasa;
  float high = left_cut + KyoyouNagasa;
  if (low < X && X < high) return true;
  const float right_cut = inner + clear - GetSpanRituMigi(UeOrSita, s, obList, roster) * clear;
  low = right_cut - KyoyouNagasa;
  high = right_cut + KyoyouNagasa;
  return low < X && X < high;
}

bool SpanModel::isHasiKobari(const frame::BeamRoster& obList) const {
  std::string first = HariMei(0);
  if (obList.isKobari2(first)) return true;
  std::string last = HariMei(vb::Sub<I16>(GetYuukouSpanSuu(), 1));
  return obList.isKobari2(last);
}

}  // namespace seluvorne
