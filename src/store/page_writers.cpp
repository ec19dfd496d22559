// The page writers: one table each, the rows of one page from an array of
// texts, numbered by SUBPAGE, BANGOU and BAN from the array's indices.

#include <array>
#include <span>

#include "seluvorne/frame.h"
#include "seluvorne/member_transaction.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

namespace {

constexpr std::string_view kRowFields[] = {"PAGE", "SUBPAGE", "BANGOU", "DATA"};
constexpr std::string_view kRowFieldsWithBan[] = {"PAGE", "SUBPAGE", "BANGOU", "BAN", "DATA"};
constexpr std::string_view kGridLineFields[] = {"PAGE", "TOORI", "KASYO"};

// How many BANGOU rows each writer writes per SUBPAGE.
constexpr std::int32_t kKutaiRows = 160, kHantiRows = 80, kHantiSubpages = 5, kStpRows = 40,
                       kRsiteiRows = 20, kSpanRows = 20, kAnkaRows = 40;
constexpr std::int32_t kChangePoints = 14, kHaunchLengths = 2, kHaunchBan = 100;
constexpr std::int32_t kTopValues = 24, kJointValues = 2;
constexpr std::int32_t kAnkaSlots = 5, kAnkaValues = 21, kAnkaSlotBan = 50, kAnkaKeptValues = 12;
// The name of a grid line: its width in code-page-932 bytes, and the width
// kept before "..." when it is longer.
constexpr std::int32_t kNameWidth = 20, kShortNameWidth = 17;

dao::Database& WriteDatabase(const std::shared_ptr<dao::Database>& db) {
  if (!db) Raise(errc::kObjectNotSet, "(no floor file is open for writing: WriteOpen first)");
  return *db;
}

// Adds rows to `table` in one member transaction: `rows` is given a function
// that adds one row (PAGE, SUBPAGE, BANGOU, [BAN,] DATA).
template <class F>
void AppendRows(const std::shared_ptr<dao::Database>& db, std::string_view table,
                std::span<const std::string_view> fields, F&& rows) {
  dao::Database& database = WriteDatabase(db);
  dao::InMemberTransaction(database, [&] {
    frame::RowAppender appender(database, table, fields);
    rows([&](std::initializer_list<vb::Variant> values) {
      appender.Add({values.begin(), values.size()});
    });
  });
}

// The comma-separated values of an element, trimmed first; `count` "" when
// it does not hold exactly `count` of them.
vb::Array<std::string> SplitValues(const std::string& element, std::int32_t count) {
  vb::Array<std::string> values = vb::Split(vb::Trim(element), ",");
  if (values.UBound() != count - 1) values.ReDim({count - 1});
  return values;
}

// SplitValues, and "" throughout when every value reads as zero.
vb::Array<std::string> AnkaValues(const std::string& element) {
  vb::Array<std::string> values = SplitValues(element, kAnkaValues);
  for (std::int32_t m = 0; m < kAnkaValues; ++m)
    if (vb::Val(values(m)) != 0) return values;
  values.ReDim({kAnkaValues - 1});
  return values;
}

// The writers of SPANTOP and SPANTANJOIL: `count` values per element (j, i).
template <class Add>
void AddSpanValues(vb::Array<std::string>& elements, std::int32_t count, std::int16_t page,
                   Add& add) {
  for (std::int32_t i = 0; i <= elements.UBound(2); ++i)
    for (std::int32_t j = 0; j < kSpanRows; ++j) {
      const vb::Array<std::string> values = SplitValues(elements(j, i), count);
      for (std::int32_t k = 0; k < count; ++k)
        add({page, vb::CInt(i), vb::CInt(j), vb::CInt(k), values(k)});
    }
}

// The start of `text` up to `limit` code-page-932 bytes: a double-byte
// character that crosses the limit is kept. `cut` tells whether characters
// were left over.
std::string CutByWidth(std::int32_t limit, const std::string& text, bool& cut) {
  std::int32_t width = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    width += vb::IsDoubleByte(vb::DecodeNext(text, position)) ? 2 : 1;
    if (width >= limit) break;
  }
  cut = position < text.size();
  return text.substr(0, position);
}

}  // namespace

bool clsSeluVorneDataService::PageInLimit(std::int16_t Page) {
  return Page >= 0 && Page <= frame::gPageMax;
}

void clsSeluVorneDataService::Write_KutaiData(std::int16_t Page,
                                              vb::Array<std::string>& KUTAIDATA) {
  frame::LoadPageMax();  // a change of the preset counts from this very call
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "KUTAIDATA", kRowFields, [&](auto add) {
    for (std::int32_t i = 0; i <= KUTAIDATA.UBound(2); ++i)
      for (std::int32_t j = 0; j < kKutaiRows; ++j)
        add({Page, vb::CInt(i), vb::CInt(j), KUTAIDATA(j, i)});
  });
}

void clsSeluVorneDataService::Write_Hanti(std::int16_t Page, vb::Array<std::string>& HantiData) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "HANTI", kRowFields, [&](auto add) {
    for (std::int32_t i = 0; i < kHantiSubpages; ++i)
      for (std::int32_t j = 0; j < kHantiRows; ++j)
        add({Page, vb::CInt(i), vb::CInt(j), vb::Trim(HantiData(j, i))});
  });
}

namespace {

template <class Add>
void AddStirrupRows(vb::Array<std::string>& STPData, std::int16_t page, Add& add) {
  for (std::int32_t i = 0; i <= STPData.UBound(2); ++i)
    for (std::int32_t j = 0; j < kStpRows; ++j)
      add({page, vb::CInt(i), vb::CInt(j), vb::Trim(STPData(j, i))});
}

}  // namespace

void clsSeluVorneDataService::Write_StpGensun(std::int16_t Page, vb::Array<std::string>& STPData) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "STPGENSUN", kRowFields,
             [&](auto add) { AddStirrupRows(STPData, Page, add); });
}

void clsSeluVorneDataService::Write_StpJougeGensun(std::int16_t Page,
                                                   vb::Array<std::string>& STPData) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "STPJOUGEGENSUN", kRowFields,
             [&](auto add) { AddStirrupRows(STPData, Page, add); });
}

void clsSeluVorneDataService::Write_Rsitei(std::int16_t Page, vb::Array<std::string>& RData) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "RSITEI", kRowFields, [&](auto add) {
    for (std::int32_t n = 0; n <= RData.UBound(); ++n)
      add({Page, vb::CInt(n / kRsiteiRows), vb::CInt(n % kRsiteiRows), vb::Trim(RData(n))});
  });
}

void clsSeluVorneDataService::Write_Henkaten(std::int16_t Page, vb::Array<std::string>& HenkaData,
                                             vb::Array<std::string>& HantiL) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "HENKATEN", kRowFieldsWithBan, [&](auto add) {
    for (std::int32_t s = 0; s <= HenkaData.UBound(3); ++s)
      for (std::int32_t b = 0; b < kSpanRows; ++b) {
        for (std::int32_t k = 0; k < kChangePoints; ++k) {
          std::string point = vb::Trim(HenkaData(k, b, s));
          if (!point.empty()) add({Page, vb::CInt(s), vb::CInt(b), vb::CInt(k), point});
        }
        for (std::int32_t k = 0; k < kHaunchLengths; ++k) {
          const std::string& length = HantiL(k, b, s);
          if (!vb::Trim(length).empty())
            add({Page, vb::CInt(s), vb::CInt(b), vb::CInt(kHaunchBan + k), length});
        }
      }
  });
}

void clsSeluVorneDataService::Write_Top(std::int16_t Page, vb::Array<std::string>& sTopData) {
  if (!PageInLimit(Page)) return;
  AddLateTable(WriteOpenDb, LateTable::kSpanTop);
  AppendRows(WriteOpenDb, "SPANTOP", kRowFieldsWithBan,
             [&](auto add) { AddSpanValues(sTopData, kTopValues, Page, add); });
}

void clsSeluVorneDataService::Write_TanbuJointL(std::int16_t Page,
                                                vb::Array<std::string>& sTanbuJointLData) {
  if (!PageInLimit(Page)) return;
  AddLateTable(WriteOpenDb, LateTable::kSpanTanJoil);
  AppendRows(WriteOpenDb, "SPANTANJOIL", kRowFieldsWithBan,
             [&](auto add) { AddSpanValues(sTanbuJointLData, kJointValues, Page, add); });
}

void clsSeluVorneDataService::Write_AnkaNige(std::int16_t Page, vb::Array<std::string>& AnkaNige) {
  if (!PageInLimit(Page)) return;
  AppendRows(WriteOpenDb, "ANKANIGE", kRowFieldsWithBan, [&](auto add) {
    for (std::int32_t i = 0; i <= AnkaNige.UBound(3); ++i)
      for (std::int32_t k = 0; k < kAnkaRows; ++k) {
        std::array<vb::Array<std::string>, kAnkaSlots> slots;
        bool any = false;
        for (std::int32_t j = 0; j < kAnkaSlots; ++j) {
          slots[j] = AnkaValues(AnkaNige(j, k, i));
          for (std::int32_t m = 0; m < kAnkaValues && !any; ++m)
            any = !vb::Trim(slots[j](m)).empty();
        }
        if (!any) continue;
        for (std::int32_t j = 0; j < kAnkaSlots; ++j) {
          const vb::Array<std::string>& values = slots[j];
          // Entry 20 switches entries 12 to 20 on; switched off they are stored as "0".
          const bool tail_on = values(kAnkaValues - 1) == "1";
          for (std::int32_t m = 0; m < kAnkaValues; ++m)
            add({Page, vb::CInt(i), vb::CInt(k), vb::CInt(j * kAnkaSlotBan + m),
                 m < kAnkaKeptValues || tail_on ? values(m) : std::string("0")});
        }
      }
  });
}

void clsSeluVorneDataService::Write_TooriMei(std::int16_t Page, const std::string& TOORIMEI,
                                             const std::string& Kasyosuu) {
  if (!PageInLimit(Page)) return;
  bool cut = false;
  std::string name = CutByWidth(kNameWidth, TOORIMEI, cut);
  if (cut) name = CutByWidth(kShortNameWidth, TOORIMEI, cut) + "...";
  AppendRows(WriteOpenDb, "TOORIMEI", kGridLineFields, [&](auto add) {
    add({Page, name, Kasyosuu});
  });
}

void clsSeluVorneDataService::Write_AnkaNigeData(std::int16_t Page, vb::Array<std::string>&) {
  if (!PageInLimit(Page)) return;
  WriteDatabase(WriteOpenDb).OpenRecordset("ANKANIGE", dao::dbOpenDynaset)->Close();
}

void clsSeluVorneDataService::Write_SitakinAnkaSetudan(std::int16_t Page, vb::Array<std::string>&) {
  if (!PageInLimit(Page)) return;
  WriteDatabase(WriteOpenDb).OpenRecordset("SITAKINANKASETUDAN", dao::dbOpenDynaset)->Close();
}

}  // namespace seluvorne
