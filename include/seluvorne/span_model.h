// SpanModel: the span geometry of one beam page, in memory.
//
// A beam page is a row of spans; a span runs from the centre of one column to
// the centre of the next, and column k stands at the left end of span k, so a
// page of n spans has the columns 0..n. X-coordinates run along the beam from
// the outer (left) face of column 0. The model holds what the page's ten
// tables say about it (span_loader.h fills it) and answers, without any
// database, the questions the calculation and drawing programs ask: the
// per-span attributes, where the column faces are, in which span or column a
// point lies, clear spans, end levels, section numbers and cut-off ratios.
//
//   SpanModel page = LoadSpanModel(db, 3);     // span_loader.h
//   std::int16_t span = page.isInSpan(x);
//   float clear = page.GetSpanUtinoriKyori(span);
//
// Every array has its full bounds from construction on: a model never loaded
// answers zeros and empty texts. Indices outside the bounds raise 9 (the
// guarded members answer "" or 0 instead, as each says); 16-bit index
// arithmetic that leaves its range raises 6. Lengths are 32-bit reals and
// every sum or difference is kept as one, as the suite's programs compute.
// The members that ask about beam depths and kinds take the beam roster (or
// a caller's list object of the same shape) as an argument.
#pragma once

#include <cstdint>
#include <string>

#include "seluvorne/array.h"
#include "seluvorne/collaborators.h"

namespace seluvorne {

class SpanModel {
 public:
  static constexpr std::int16_t kMaxSpans = 100;      // span indices 0..99
  static constexpr std::int16_t kAnkaNigeBans = 250;  // five groups of 50
  static constexpr std::int16_t kAnkaNigeGroup = 50;

  SpanModel();  // every array at its bounds, zero or empty

  // ---- The arrays (public: a value type; the loader and tests fill them) ----

  // The span frame, from KUTAIDATA.
  // (i,0) width of column i left of its centre line, (i,1) right of it,
  // (i,2) centre-to-centre length of span i.
  vb::Array<float> SpanSunpou;
  vb::Array<float> HasiraIti;  // (i): centre of column 0 to centre of column i+1
  vb::Array<std::string> SpanToorimei;
  vb::Array<std::string> HariMei;
  vb::Array<float> Tenba;   // top level of span i
  vb::Array<float> Hensin;  // (i,0) top, (i,1) bottom eccentricity
  std::int16_t SpanSuu = 0;

  // The per-span attributes, from the other tables.
  vb::Array<std::string> HantiData;       // (span, 0..3)
  vb::Array<float> StpGensun;             // (span, 0..1)
  vb::Array<float> StpJougeGensun;        // (span, 0..1)
  vb::Array<std::string> HenkatenData;    // (span, 0..13): seven (level, distance) pairs
  vb::Array<std::string> HenkatenHantiL;  // (span, 0..1)
  vb::Array<std::string> AnkaNigeData;    // (column, side, BAN 0..249)
  vb::Array<std::string> RsiteiData;      // (column)
  vb::Array<std::string> SitakinCutData;  // (2 x column + side)
  vb::Array<std::string> SpanTopData;  // (span, KihonL_Yotyou, TanbuTyuuou, SitanSyuutan, UpDown)
  vb::Array<std::string> TanbuJointLData;  // (span, 0..1)
  std::string TOORIMEI;
  std::string Kasyosuu;

  // Takes the span frame (the KUTAIDATA arrays and SpanSuu) of `other`,
  // leaving the attributes as they are.
  void TakeFrame(SpanModel&& other);

  // Counts the valid spans: the index of the first span of length exactly 0.
  // A page whose 100 spans all have a length answers 0, not 100: such a page
  // counts as holding no valid span. Negative lengths count as valid.
  std::int16_t GetYuukouSpanSuu() const;
  // SpanSuu from GetYuukouSpanSuu, then HasiraIti as the running sum of the
  // span lengths.
  void ComputeFrame();

  // ---- The page as the loader reads it: one row at a time ---------------------
  //
  // Each takes a row's SUBPAGE s, BANGOU b (and BAN) and DATA, and skips rows
  // with b below 0 or an index beyond the table's range.

  // KUTAIDATA: span i = s x 20 + (b mod 80) \ 4; below code 80 the grid-line
  // name and the three sizes, from 80 on the level, the name and the two
  // eccentricities. Codes of 160 and above fold back onto the second block.
  void StoreKutaiRow(std::int16_t s, std::int16_t b, const std::string& data);
  // HENKATEN: BAN 0..13 the change points, BAN 100 and 101 the haunch lengths.
  void StoreHenkatenRow(std::int16_t s, std::int16_t b, std::int16_t ban, const std::string& data);
  // Packs each valid span's used change-point pairs to the front, fills an
  // empty half of a used pair with "0", and clamps each distance to the
  // span's clear length. Needs the frame (ComputeFrame) first.
  void TidyHenkaten();

  // ---- Part of the page: per-span attributes ---------------------------------

  std::string GetHariMei(std::int16_t SpanNo) const;  // "" from SpanSuu on
  std::int16_t GetSpanSuu() const { return SpanSuu; }
  std::int16_t GetSpanSTPGensun(std::int16_t SpanNo, std::int16_t RightOrLeft) const;
  std::int16_t GetSpanSTPJougeGensun(std::int16_t SpanNo, std::int16_t UeOrShita) const;

  std::string GetHantiHidariUe(std::int16_t SpanNo) const;
  std::string GetHantiHidariSita(std::int16_t SpanNo) const;
  std::string GetHantiMigiUe(std::int16_t SpanNo) const;
  std::string GetHantiMigiSita(std::int16_t SpanNo) const;

  // Change point Ban: its distance and level; 0 from 2 x Ban = 13 and from
  // span 100 on.
  float GetHenkatenKyori(std::int16_t SpanNo, std::int16_t Ban) const;
  float GetHenkatenTakasa(std::int16_t SpanNo, std::int16_t Ban) const;
  // 0 unless SpanNo <= 99 and Ban is 0 or 1.
  float GetHenkatenSayuuHantiL(std::int16_t SpanNo, std::int16_t Ban) const;
  // The complete pairs before the first empty slot; 7 when none is empty.
  std::int16_t GetHenkatenSuu(std::int16_t SpanNo) const;
  float GetHensinUe(std::int16_t SpanNo) const;

  // Anchorage, relief and anchor entries of a column face, main body
  // (_Hontai) and build-out position Iti 0..3 (_Fukasi). The anchorage
  // getters answer "" for a layer outside 0..3; the relief and anchor getters
  // rely on the bounds (9).
  std::string GetTeityakuBanHidari_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuBanMigi_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuStyleHidari_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuStyleMigi_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuBanHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                          std::int16_t Updown4) const;
  std::string GetTeityakuBanMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                        std::int16_t Updown4) const;
  std::string GetTeityakuStyleHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                            std::int16_t Updown4) const;
  std::string GetTeityakuStyleMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                          std::int16_t Updown4) const;
  std::string GetTeityakuSansyouHidari_Hontai(std::int16_t HasiraNo) const;
  std::string GetTeityakuSansyouMigi_Hontai(std::int16_t HasiraNo) const;
  std::string GetTeityakuSansyouHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo) const;
  std::string GetTeityakuSansyouMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo) const;
  std::string GetNigeHidari_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetNigeMigi_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetNigeHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                   std::int16_t Updown4) const;
  std::string GetNigeMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                 std::int16_t Updown4) const;
  std::string GetAnkaHidari_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetAnkaMigi_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetAnkaHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                   std::int16_t Updown4) const;
  std::string GetAnkaMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                 std::int16_t Updown4) const;
  std::string GetTeityakuHidari_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuMigi_Hontai(std::int16_t HasiraNo, std::int16_t Updown4) const;
  std::string GetTeityakuHidari_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                       std::int16_t Updown4) const;
  std::string GetTeityakuMigi_Fukasi(std::int16_t Iti, std::int16_t HasiraNo,
                                     std::int16_t Updown4) const;

  // ---- Geometry --------------------------------------------------------------

  // Faces of the span's columns: inner and outer face of its left column,
  // inner and outer face of its right column.
  float GetKyoriSpanHidariUti(std::int16_t SpanNo) const;
  float GetKyoriSpanHidariSoto(std::int16_t SpanNo) const;
  float GetKyoriSpanMigiUti(std::int16_t SpanNo) const;
  float GetKyoriSpanMigiSoto(std::int16_t SpanNo) const;
  float GetSpanUtinoriKyori(std::int16_t SpanNo) const;  // the clear span
  // A quarter of the clear span raised to the next multiple of 10 (whole
  // millimetres assumed); 0 for a clear span of 0 or less.
  float GetSpanUtinoriL4Kyori(std::int16_t SpanNo) const;
  float GetHasiraHaba(std::int16_t HasiraNo) const;
  float GetHasiraHabaHidari(std::int16_t HasiraNo) const;
  float GetHasiraHabaMigi(std::int16_t HasiraNo) const;
  float GetSpanTyou(std::int16_t HasiraNo) const;
  // The two faces of a column; False, outputs untouched, beyond the last.
  bool GetHasiraLR(std::int16_t HasiraNo, float& HidariL, float& MigiL) const;
  float GetTenba(std::int16_t SpanNo) const;
  float GetHensinSita(std::int16_t SpanNo) const;
  std::string GetSpanToorimei(std::int16_t HasiraNo) const;
  std::string GetRsitei(std::int16_t HasiraNo) const;
  // Bottom-bar cut entries of a column's left (0) and right (1) face.
  std::string GetSitakinCutHidari(std::int16_t HasiraNo) const;
  std::string GetSitakinCutMigi(std::int16_t HasiraNo) const;
  std::string GetSitakinCutMigiHidari(std::int16_t HasiraNo, std::int16_t MigiHidari) const;
  std::string GetSpanTop(std::int16_t SpanNo, std::int16_t KihonL_Yotyou, std::int16_t TanbuTyuuou,
                         std::int16_t SitanSyuutan, std::int16_t UpDown) const;
  std::string GetSpanTanbuJointL(std::int16_t SpanNo, std::int16_t TanbuJoiL) const;

  // The column X lies strictly inside, else the nearest column whose face is
  // within KyoyouNagasa (only the next column can beat a near one; ties keep
  // the earlier), else -1.
  std::int16_t isInOrNearHasira(float X, float KyoyouNagasa) const;
  // The span whose right column centre lies beyond X (a point on a centre
  // belongs to the span on its right); the last span beyond the last column.
  std::int16_t isInSpan(float X) const;
  // Inside column k: k for a start point, k - 1 (not below 0) for an end
  // point (SitenOrSyuuten 1). Elsewhere as isInSpan, but 0 beyond the last
  // column.
  std::int16_t isInSpanHasira(float X, std::int16_t SitenOrSyuuten) const;
  // The first column whose extent widened by KyoyouNagasa on both sides
  // strictly holds X, or -1; Haba is the width of the last column tested.
  std::int16_t isInOrNearHasiraHaba(float X, float KyoyouNagasa, float& Haba) const;
  // Column widths and clear spans from the span of SX (a start point) to the
  // span of EX (an end point), in units of 10, five digits each,
  // "wwwww:lllll:...:wwwww"; the two spans are answered too.
  std::string GetSpanTokutyou(float SX, float EX, std::int16_t& HajimeSpan,
                              std::int16_t& OwariSpan) const;

  // ---- With the beam roster or a caller's list ------------------------------

  float GetHariSei(std::int16_t SpanNo, std::int16_t Iti, const frame::BeamRoster& roster) const;
  float GetHariSeiHidari(std::int16_t SpanNo, const frame::BeamRoster& roster) const;
  float GetHariSeiMigi(std::int16_t SpanNo, const frame::BeamRoster& roster) const;
  // The top level at the left / right end: a change point there, else Tenba.
  float GetSatanTenba(std::int16_t SpanNo) const;
  float GetUtanTenba(std::int16_t SpanNo) const;
  // Whether the span continues into its left / right neighbour.
  bool isRenzokuSitan(std::int16_t SpanNo, const frame::BeamRoster& roster) const;
  bool isRenzokuSyuutan(std::int16_t SpanNo, const frame::BeamRoster& roster) const;
  // The section numbers of the span's left end, middle and right end.
  void GetDanmenBangou(std::int16_t SpanNo, vb::Array<std::int16_t>& DanmenBangou,
                       const frame::BeamRoster& roster) const;
  std::int16_t GetListDanmenNoByKutaiDanmenNo(std::int16_t SpanNo, std::int16_t KutaiDanmenNo,
                                              const frame::BeamRoster& roster) const;
  // The bar cut-off point as a ratio of the clear span.
  float GetSpanRituHidari(std::int16_t Updown2, std::int16_t SpanNo,
                          const frame::BeamRoster& obList, const frame::BeamRoster& roster) const;
  float GetSpanRituMigi(std::int16_t Updown2, std::int16_t SpanNo, const frame::BeamRoster& obList,
                        const frame::BeamRoster& roster) const;
  // 1/3 for every kind code of 0 or more, 0 for a negative one.
  float GetSpanRituHidariVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                  const frame::BeamRoster& obList,
                                  const frame::BeamRoster& roster) const;
  float GetSpanRituMigiVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                const frame::BeamRoster& obList,
                                const frame::BeamRoster& roster) const;
  // Whether X lies within KyoyouNagasa of a cut-off point of its span.
  bool isTopX(std::int16_t UeOrSita, float X, float KyoyouNagasa, const frame::BeamRoster& obList,
              const frame::BeamRoster& roster) const;
  // Whether an end span is a small beam.
  bool isHasiKobari(const frame::BeamRoster& obList) const;

 private:
  float CentreOfColumn(std::int16_t k) const;  // M(k)
  // AnkaNigeData(HasiraNo, side, (Iti + 1) x 50 + slot), in 16-bit arithmetic.
  const std::string& AnkaNigeEntry(std::int16_t Iti, std::int16_t HasiraNo, std::int16_t side,
                                   std::int16_t slot) const;
  // The anchorage getters' layer check, then the entry.
  std::string LayerEntry(std::int16_t Iti, std::int16_t HasiraNo, std::int16_t side,
                         std::int16_t base, std::int16_t Updown4) const;
  std::string TeityakuEntry(std::int16_t Iti, std::int16_t HasiraNo, std::int16_t side,
                            std::int16_t Updown4) const;
};

}  // namespace seluvorne
