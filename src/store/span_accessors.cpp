// The per-span attributes of the span model: haunches, change points,
// eccentricities, stirrup sizes and the anchorage, relief and anchor entries
// of each column face. They compute nothing but an index.

#include "seluvorne/runtime.h"
#include "seluvorne/span_model.h"

namespace seluvorne {

namespace {

using I16 = std::int16_t;

// Sides of a column face in AnkaNigeData.
constexpr I16 kHidari = 0;
constexpr I16 kMigi = 1;
// Slots within a group of 50 BAN values.
constexpr I16 kAnka = 0;            // + layer
constexpr I16 kNige = 5;            // + layer
constexpr I16 kTeityakuLow = 10;    // layers 0 and 1
constexpr I16 kTeityakuHigh = 11;   // layers 2 and 3
constexpr I16 kTeityakuBan = 12;    // + layer
constexpr I16 kTeityakuStyle = 16;  // + layer
constexpr I16 kTeityakuSansyou = 20;
// The main body is group 0, build-out position Iti group Iti + 1.
constexpr I16 kHontai = -1;

float ValueOf(const std::string& text) {
  return vb::CSng(vb::Val(text));
}

}  // namespace

// ---- Span frame and stirrups -------------------------------------------------

std::string SpanModel::GetHariMei(I16 SpanNo) const {
  if (SpanNo < SpanSuu) return HariMei(SpanNo);
  return "";
}

I16 SpanModel::GetSpanSTPGensun(I16 SpanNo, I16 RightOrLeft) const {
  return vb::CInt(StpGensun(SpanNo, RightOrLeft));
}

I16 SpanModel::GetSpanSTPJougeGensun(I16 SpanNo, I16 UeOrShita) const {
  return vb::CInt(StpJougeGensun(SpanNo, UeOrShita));
}

// ---- Haunches, change points, eccentricity -----------------------------------

std::string SpanModel::GetHantiHidariUe(I16 SpanNo) const {
  return HantiData(SpanNo, 0);
}
std::string SpanModel::GetHantiHidariSita(I16 SpanNo) const {
  return HantiData(SpanNo, 1);
}
std::string SpanModel::GetHantiMigiUe(I16 SpanNo) const {
  return HantiData(SpanNo, 2);
}
std::string SpanModel::GetHantiMigiSita(I16 SpanNo) const {
  return HantiData(SpanNo, 3);
}

float SpanModel::GetHenkatenKyori(I16 SpanNo, I16 Ban) const {
  const I16 slot = vb::Mul<I16>(2, Ban);
  if (slot >= 13 || SpanNo >= kMaxSpans) return 0;
  return ValueOf(HenkatenData(SpanNo, vb::Add<I16>(slot, 1)));
}

float SpanModel::GetHenkatenTakasa(I16 SpanNo, I16 Ban) const {
  const I16 slot = vb::Mul<I16>(2, Ban);
  if (slot >= 13 || SpanNo >= kMaxSpans) return 0;
  return ValueOf(HenkatenData(SpanNo, slot));
}

float SpanModel::GetHenkatenSayuuHantiL(I16 SpanNo, I16 Ban) const {
  if (SpanNo > 99 || (Ban != 0 && Ban != 1)) return 0;
  return ValueOf(HenkatenHantiL(SpanNo, Ban));
}

I16 SpanModel::GetHenkatenSuu(I16 SpanNo) const {
  for (I16 slot = 0; slot < 14; ++slot)
    if (vb::Trim(HenkatenData(SpanNo, slot)).empty()) return slot / 2;
  return 7;
}

float SpanModel::GetHensinUe(I16 SpanNo) const {
  return Hensin(SpanNo, 0);
}

// ---- Anchorage, relief, anchor -----------------------------------------------

const std::string& SpanModel::AnkaNigeEntry(I16 Iti, I16 HasiraNo, I16 side, I16 slot) const {
  const I16 ban = vb::Add<I16>(vb::Mul<I16>(vb::Add<I16>(Iti, 1), kAnkaNigeGroup), slot);
  return AnkaNigeData(HasiraNo, side, ban);
}

std::string SpanModel::LayerEntry(I16 Iti, I16 HasiraNo, I16 side, I16 base, I16 Updown4) const {
  if (Updown4 < 0 || Updown4 >= 4) return "";
  return AnkaNigeEntry(Iti, HasiraNo, side, static_cast<I16>(base + Updown4));
}

std::string SpanModel::TeityakuEntry(I16 Iti, I16 HasiraNo, I16 side, I16 Updown4) const {
  if (Updown4 < 0 || Updown4 >= 4) return "";
  return AnkaNigeEntry(Iti, HasiraNo, side, Updown4 < 2 ? kTeityakuLow : kTeityakuHigh);
}

std::string SpanModel::GetTeityakuBanHidari_Hontai(I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(kHontai, HasiraNo, kHidari, kTeityakuBan, Updown4);
}
std::string SpanModel::GetTeityakuBanMigi_Hontai(I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(kHontai, HasiraNo, kMigi, kTeityakuBan, Updown4);
}
std::string SpanModel::GetTeityakuStyleHidari_Hontai(I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(kHontai, HasiraNo, kHidari, kTeityakuStyle, Updown4);
}
std::string SpanModel::GetTeityakuStyleMigi_Hontai(I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(kHontai, HasiraNo, kMigi, kTeityakuStyle, Updown4);
}
std::string SpanModel::GetTeityakuBanHidari_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(Iti, HasiraNo, kHidari, kTeityakuBan, Updown4);
}
std::string SpanModel::GetTeityakuBanMigi_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(Iti, HasiraNo, kMigi, kTeityakuBan, Updown4);
}
std::string SpanModel::GetTeityakuStyleHidari_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(Iti, HasiraNo, kHidari, kTeityakuStyle, Updown4);
}
std::string SpanModel::GetTeityakuStyleMigi_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return LayerEntry(Iti, HasiraNo, kMigi, kTeityakuStyle, Updown4);
}

std::string SpanModel::GetTeityakuSansyouHidari_Hontai(I16 HasiraNo) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kHidari, kTeityakuSansyou);
}
std::string SpanModel::GetTeityakuSansyouMigi_Hontai(I16 HasiraNo) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kMigi, kTeityakuSansyou);
}
std::string SpanModel::GetTeityakuSansyouHidari_Fukasi(I16 Iti, I16 HasiraNo) const {
  return AnkaNigeEntry(Iti, HasiraNo, kHidari, kTeityakuSansyou);
}
std::string SpanModel::GetTeityakuSansyouMigi_Fukasi(I16 Iti, I16 HasiraNo) const {
  return AnkaNigeEntry(Iti, HasiraNo, kMigi, kTeityakuSansyou);
}

// The relief and anchor getters check no layer: 16-bit arithmetic and the
// bounds decide.
std::string SpanModel::GetNigeHidari_Hontai(I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kHidari, vb::Add<I16>(kNige, Updown4));
}
std::string SpanModel::GetNigeMigi_Hontai(I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kMigi, vb::Add<I16>(kNige, Updown4));
}
std::string SpanModel::GetNigeHidari_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(Iti, HasiraNo, kHidari, vb::Add<I16>(kNige, Updown4));
}
std::string SpanModel::GetNigeMigi_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(Iti, HasiraNo, kMigi, vb::Add<I16>(kNige, Updown4));
}
std::string SpanModel::GetAnkaHidari_Hontai(I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kHidari, vb::Add<I16>(kAnka, Updown4));
}
std::string SpanModel::GetAnkaMigi_Hontai(I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(kHontai, HasiraNo, kMigi, vb::Add<I16>(kAnka, Updown4));
}
std::string SpanModel::GetAnkaHidari_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(Iti, HasiraNo, kHidari, vb::Add<I16>(kAnka, Updown4));
}
std::string SpanModel::GetAnkaMigi_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return AnkaNigeEntry(Iti, HasiraNo, kMigi, vb::Add<I16>(kAnka, Updown4));
}

std::string SpanModel::GetTeityakuHidari_Hontai(I16 HasiraNo, I16 Updown4) const {
  return TeityakuEntry(kHontai, HasiraNo, kHidari, Updown4);
}
std::string SpanModel::GetTeityakuMigi_Hontai(I16 HasiraNo, I16 Updown4) const {
  return TeityakuEntry(kHontai, HasiraNo, kMigi, Updown4);
}
std::string SpanModel::GetTeityakuHidari_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return TeityakuEntry(Iti, HasiraNo, kHidari, Updown4);
}
std::string SpanModel::GetTeityakuMigi_Fukasi(I16 Iti, I16 HasiraNo, I16 Updown4) const {
  return TeityakuEntry(Iti, HasiraNo, kMigi, Updown4);
}

}  // namespace seluvorne
