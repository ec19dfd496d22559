// The readers of the span model: one statement and one forward pass per table.
//
// Row indexing (s = SUBPAGE, b = BANGOU; rows with b below 0 are skipped):
//   HANTI               HantiData(20s + b\4, b mod 4)
//   STPGENSUN, STPJOUGEGENSUN  (20s + b\2, b mod 2), as numbers
//   RSITEI              RsiteiData(20s + b)
//   SITAKINANKASETUDAN  SitakinCutData(40s + b)
//   ANKANIGE            AnkaNigeData(20s + b\2, b mod 2, BAN), BAN <= 249
//   SPANTANJOIL         TanbuJointLData(20s + b, BAN), BAN <= 1
//   SPANTOP             see ReadSpanTop
// KUTAIDATA and HENKATEN are decoded by the model (span_model.cpp).

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "seluvorne/runtime.h"
#include "seluvorne/span_loader.h"

namespace seluvorne {

namespace {

using I16 = std::int16_t;

// The rows of one table of a page, read forwards, with its fields looked up
// once.
class PageRows {
 public:
  PageRows(dao::Database& db, std::string_view select, I16 page,
           std::initializer_list<std::string_view> fields)
      : rows_(db.OpenRecordset(std::string(select) + vb::StrTrimmed(page) + ";")) {
    auto all = rows_->Fields();
    for (std::string_view name : fields)
      fields_.push_back(all->Item(name));
  }
  ~PageRows() {
    try {
      rows_->Close();
    } catch (...) {  // a closed database: nothing left to release
    }
  }
  PageRows(const PageRows&) = delete;
  PageRows& operator=(const PageRows&) = delete;

  bool Next() {
    if (started_) rows_->MoveNext();
    started_ = true;
    return !rows_->IsEOF();
  }
  I16 Number(std::size_t field) const { return vb::CInt(fields_[field]->Value()); }
  std::string Text(std::size_t field) const { return vb::CStr(fields_[field]->Value()); }

 private:
  std::shared_ptr<dao::Recordset> rows_;
  std::vector<std::shared_ptr<dao::Field>> fields_;
  bool started_ = false;
};

// The statements, as the suite's programs send them: the page number follows.
constexpr std::string_view kSelectKutaiData = "SELECT * FROM KUTAIDATA WHERE PAGE =";
constexpr std::string_view kSelectHanti = "SELECT * FROM HANTI WHERE PAGE =";
constexpr std::string_view kSelectStpGensun = "SELECT * FROM STPGENSUN WHERE PAGE =";
constexpr std::string_view kSelectStpJougeGensun = "SELECT * FROM STPJOUGEGENSUN WHERE PAGE =";
constexpr std::string_view kSelectAnkaNige = "SELECT * FROM ANKANIGE WHERE PAGE =";
constexpr std::string_view kSelectSpanTop = "SELECT * FROM SPANTOP WHERE PAGE =";
constexpr std::string_view kSelectSitakin = "SELECT * FROM SITAKINANKASETUDAN WHERE PAGE =";
constexpr std::string_view kSelectRsitei = "SELECT * FROM RSITEI WHERE PAGE =";
constexpr std::string_view kSelectHenkaten = "SELECT * FROM HENKATEN WHERE PAGE =";
constexpr std::string_view kSelectTanbuJointL = "SELECT * FROM SPANTANJOIL WHERE PAGE =";
constexpr std::string_view kSelectTooriMei = "SELECT * FROM TOORIMEI Where PAGE = ";
constexpr std::string_view kSelectKeisanti = "SELECT * FROM KEISANTI WHERE PAGE =";

I16 RowIndex(I16 s, I16 per, I16 offset) {
  return vb::Add<I16>(vb::Mul<I16>(s, per), offset);
}

float Number(const std::string& text) {
  return vb::CSng(vb::Val(text));
}

void ReadFrame(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectKutaiData, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next())
    model.StoreKutaiRow(rows.Number(0), rows.Number(1), rows.Text(2));
  model.ComputeFrame();
}

void ReadTooriMeiInto(dao::Database& db, I16 page, std::string& toori, std::string& kasyo) {
  PageRows rows(db, kSelectTooriMei, page, {"TOORI", "KASYO"});
  if (!rows.Next()) return;
  toori = vb::Trim(rows.Text(0));
  kasyo = vb::Trim(rows.Text(1));
}

// STPGENSUN and STPJOUGEGENSUN: two numbers per span.
void ReadPairs(dao::Database& db, std::string_view select, I16 page, vb::Array<float>& target) {
  PageRows rows(db, select, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, vb::IntDiv<I16>(b, 2));
    if (i < SpanModel::kMaxSpans) target(i, vb::Mod<I16>(b, 2)) = Number(rows.Text(2));
  }
}

void ReadHenkaten(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectHenkaten, page, {"SUBPAGE", "BANGOU", "BAN", "DATA"});
  while (rows.Next())
    model.StoreHenkatenRow(rows.Number(0), rows.Number(1), rows.Number(2), rows.Text(3));
  model.TidyHenkaten();
}

void ReadHanti(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectHanti, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, vb::IntDiv<I16>(b, 4));
    if (i <= 99) model.HantiData(i, vb::Mod<I16>(b, 4)) = rows.Text(2);
  }
}

// A page that stored only the main body (group 0, BAN 0..49) answers every
// build-out position with the main body's entries.
void ReadAnkaNige(dao::Database& db, I16 page, SpanModel& model) {
  std::array<bool, 5> group_read{};
  PageRows rows(db, kSelectAnkaNige, page, {"SUBPAGE", "BANGOU", "BAN", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, vb::IntDiv<I16>(b, 2));
    const I16 ban = rows.Number(2);
    if (i >= SpanModel::kMaxSpans || ban > 249) continue;
    model.AnkaNigeData(i, vb::Mod<I16>(b, 2), ban) = vb::Trim(rows.Text(3));
    group_read[ban / SpanModel::kAnkaNigeGroup] = true;
  }
  if (!group_read[0]) return;
  for (I16 group = 1; group < 5; ++group) {
    if (group_read[group]) continue;
    for (I16 span = 0; span < SpanModel::kMaxSpans; ++span)
      for (I16 side = 0; side < 2; ++side)
        for (I16 m = 0; m < SpanModel::kAnkaNigeGroup; ++m)
          model.AnkaNigeData(span, side, group * SpanModel::kAnkaNigeGroup + m) =
              model.AnkaNigeData(span, side, m);
  }
}

void ReadRsitei(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectRsitei, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, b);
    if (i < SpanModel::kMaxSpans) model.RsiteiData(i) = vb::Trim(rows.Text(2));
  }
}

void ReadSitakinAnkaSetudan(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectSitakin, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 40, b);
    if (i < 200) model.SitakinCutData(i) = vb::Trim(rows.Text(2));
  }
}

// SPANTOP holds 24 values per span. BAN 8..15 (top bars, UpDown 0) and
// 16..23 (bottom bars, UpDown 1) go to the slots (KihonL_Yotyou,
// TanbuTyuuou, SitanSyuutan) of r = BAN - 8 (or - 16) by kSlotsOf; r = 4
// fills two slots and r = 6 none, as the clients' programs expect.
//
// BAN 0..7 are the older layout: one set of eight values for both bar
// positions. A span whose BAN 0 is neither "" nor "0" has such a set, and it
// fills, by the same slot table and for both UpDown, exactly the slots that
// no row of BAN 8..23 gave a value. The page writer writes all 24 values of
// a span, so a page it wrote loads back with every slot as BAN 8..23 gave it.
struct Slot {
  I16 kihon, tanbu, sitan;
};
constexpr std::array<std::array<Slot, 2>, 8> kSlotsOf = {{
    {{{0, 0, 0}, {-1, 0, 0}}},
    {{{1, 0, 0}, {-1, 0, 0}}},
    {{{0, 0, 1}, {-1, 0, 0}}},
    {{{1, 0, 1}, {-1, 0, 0}}},
    {{{0, 1, 0}, {0, 1, 1}}},
    {{{1, 1, 0}, {-1, 0, 0}}},
    {{{-1, 0, 0}, {-1, 0, 0}}},
    {{{1, 1, 1}, {-1, 0, 0}}},
}};

void ReadSpanTop(dao::Database& db, I16 page, SpanModel& model) {
  vb::Array<std::string> older({99, 7});
  vb::Array<bool> given({99, 1, 1, 1, 1});  // a slot BAN 8..23 filled
  {
    PageRows rows(db, kSelectSpanTop, page, {"SUBPAGE", "BANGOU", "BAN", "DATA"});
    while (rows.Next()) {
      const I16 b = rows.Number(1);
      if (b < 0) continue;
      const I16 i = RowIndex(rows.Number(0), 20, b);
      const I16 ban = rows.Number(2);
      if (i >= SpanModel::kMaxSpans || ban > 23) continue;
      std::string text = vb::Trim(rows.Text(3));
      if (ban < 8) {
        older(i, ban) = std::move(text);
        continue;
      }
      const I16 updown = ban < 16 ? 0 : 1;
      for (const Slot& slot : kSlotsOf[ban - 8 - 8 * updown]) {
        if (slot.kihon < 0) continue;
        model.SpanTopData(i, slot.kihon, slot.tanbu, slot.sitan, updown) = text;
        given(i, slot.kihon, slot.tanbu, slot.sitan, updown) = true;
      }
    }
  }
  for (I16 span = 0; span < SpanModel::kMaxSpans; ++span) {
    const std::string& flag = older(span, 0);
    if (flag.empty() || flag == "0") continue;
    for (I16 updown = 0; updown < 2; ++updown)
      for (I16 r = 0; r < 8; ++r)
        for (const Slot& slot : kSlotsOf[r])
          if (slot.kihon >= 0 && !given(span, slot.kihon, slot.tanbu, slot.sitan, updown))
            model.SpanTopData(span, slot.kihon, slot.tanbu, slot.sitan, updown) = older(span, r);
  }
}

void ReadSpanTanbuJointL(dao::Database& db, I16 page, SpanModel& model) {
  PageRows rows(db, kSelectTanbuJointL, page, {"SUBPAGE", "BANGOU", "BAN", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, b);
    const I16 ban = rows.Number(2);
    if (i < SpanModel::kMaxSpans && ban <= 1)
      model.TanbuJointLData(i, ban) = vb::Trim(rows.Text(3));
  }
}

}  // namespace

std::int16_t LoadSpanFrame(dao::Database& db, I16 page, SpanModel& model) {
  SpanModel loaded;
  ReadFrame(db, page, loaded);
  model.TakeFrame(std::move(loaded));
  return model.SpanSuu;
}

std::int16_t LoadSpanModel(dao::Database& db, I16 page, SpanModel& model) {
  SpanModel loaded;
  ReadFrame(db, page, loaded);
  if (loaded.SpanSuu <= 0) {
    model.TakeFrame(std::move(loaded));
    return model.SpanSuu;
  }
  // Names stay when the page has no TOORIMEI row, as the clients see them.
  loaded.TOORIMEI = model.TOORIMEI;
  loaded.Kasyosuu = model.Kasyosuu;
  ReadTooriMeiInto(db, page, loaded.TOORIMEI, loaded.Kasyosuu);
  ReadPairs(db, kSelectStpGensun, page, loaded.StpGensun);
  ReadPairs(db, kSelectStpJougeGensun, page, loaded.StpJougeGensun);
  ReadHenkaten(db, page, loaded);
  ReadHanti(db, page, loaded);
  ReadAnkaNige(db, page, loaded);
  ReadRsitei(db, page, loaded);
  ReadSitakinAnkaSetudan(db, page, loaded);
  ReadSpanTop(db, page, loaded);
  ReadSpanTanbuJointL(db, page, loaded);
  model = std::move(loaded);
  return model.SpanSuu;
}

std::int16_t ReadKutaiSunpou(dao::Database& db, I16 page, vb::Array<float>& Sunpou,
                             vb::Array<std::string>& G) {
  std::fill(Sunpou.begin(), Sunpou.end(), -999999.0f);
  I16 stored = 0;
  PageRows rows(db, kSelectKutaiData, page, {"SUBPAGE", "BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(1);
    if (b < 0) continue;
    const I16 i = RowIndex(rows.Number(0), 20, vb::IntDiv<I16>(vb::Mod<I16>(b, 80), 4));
    const I16 code = vb::Mod<I16>(b, 4);
    if (i >= SpanModel::kMaxSpans || code == 0) continue;
    if (b < 80) {
      Sunpou(i, code - 1) = Number(rows.Text(2));
    } else if (code == 1) {
      std::string name = vb::Trim(rows.Text(2));
      const std::size_t slash = name.find('/');
      if (slash != std::string::npos) name[slash] = ' ';
      G(i) = vb::Trim(name);
    } else {
      continue;
    }
    stored = vb::Add<I16>(stored, 1);
  }
  return stored;
}

std::int16_t ReadKeisanti(dao::Database& db, I16 page, vb::Array<float>& Keisanti) {
  I16 stored = 0;
  PageRows rows(db, kSelectKeisanti, page, {"BANGOU", "DATA"});
  while (rows.Next()) {
    const I16 b = rows.Number(0);
    I16 slot;
    if (b >= 0 && b <= 2)
      slot = b;
    else if (b >= 7 && b <= 16)
      slot = static_cast<I16>(b - 4);
    else
      continue;
    Keisanti(slot) = Number(rows.Text(1));
    stored = vb::Add<I16>(stored, 1);
  }
  return stored;
}

void ReadTooriMei(dao::Database& db, I16 page, std::string& Toori, std::string& Kasyo) {
  ReadTooriMeiInto(db, page, Toori, Kasyo);
}

}  // namespace seluvorne
