// Sample beam pages, laid out row for row as the page writers lay them out.

#include "seluvorne/sample_pages.h"

#include <array>

#include "seluvorne/runtime.h"

namespace seluvorne::sample {

namespace {

using I16 = std::int16_t;

std::string Text(double value) {
  return vb::StrTrimmed(value);
}

void Add(std::vector<Row>& rows, std::string_view table, I16 s, I16 b, I16 ban, std::string data) {
  rows.push_back(Row{table, s, b, ban, std::move(data), {}});
}

// KUTAIDATA: one SUBPAGE of 160 codes, every row written, empty ones too.
void KutaiData(std::vector<Row>& rows, I16 spans, int variant) {
  static constexpr std::array<double, 6> kLengths = {6000, 7200, 5400, 6600, 8000, 4800};
  static constexpr std::array<double, 4> kHalfWidths = {300, 350, 400, 450};
  for (I16 b = 0; b < 160; ++b) {
    const I16 i = static_cast<I16>((b % 80) / 4);
    const int code = b % 4;
    std::string data;
    if (b < 80 && i <= spans) {
      const double left = kHalfWidths[(i + variant) % 4];
      const double right = kHalfWidths[(i + variant + 1) % 4];
      switch (code) {
        case 0:
          data = "X" + std::to_string(i + 1);
          break;
        case 1:
          data = Text(left);
          break;
        case 2:
          data = Text(right);
          break;
        default:
          if (i < spans) data = Text(kLengths[(i + variant) % 6]);
          break;
      }
    } else if (b >= 80 && i < spans) {
      switch (code) {
        case 0:
          data = Text(-50.0 * ((i + variant) % 3));
          break;
        case 1:
          data = (i % 3 == 2 ? "2B" : "2G") + std::to_string(i + 1 + variant);
          break;
        case 2:
          data = Text(100.0 * ((i + variant) % 2));
          break;
        default:
          data = Text(75.0 * ((i + 1) % 2));
          break;
      }
    }
    Add(rows, "KUTAIDATA", 0, b, -1, std::move(data));
  }
}

}  // namespace

std::vector<Row> TypicalPage(I16 spans, int variant) {
  std::vector<Row> rows;
  rows.reserve(2800);
  KutaiData(rows, spans, variant);

  // HANTI: five SUBPAGEs of 80 codes, always written.
  for (I16 s = 0; s < 5; ++s)
    for (I16 b = 0; b < 80; ++b) {
      const int span = s * 20 + b / 4;
      Add(rows, "HANTI", s, b, -1, span < spans && b % 2 == 0 ? Text(150 + 50 * (span % 3)) : "");
    }

  // Stirrup sizes: two values per span.
  for (std::string_view table : {"STPGENSUN", "STPJOUGEGENSUN"})
    for (I16 b = 0; b < 40; ++b)
      Add(rows, table, 0, b, -1, b / 2 < spans ? Text(100 + 25 * ((b + variant) % 3)) : "");

  // RSITEI: one value per column.
  for (I16 n = 0; n < 20; ++n)
    Add(rows, "RSITEI", 0, n, -1, n <= spans ? "R" + Text(n % 2) : "");

  // HENKATEN: two change points and both haunch lengths per span.
  for (I16 span = 0; span < spans; ++span) {
    const std::array<std::string, 4> points = {"-100", Text(1200 + 100 * span), "-150",
                                               Text(3000 + 100 * variant)};
    for (I16 k = 0; k < 4; ++k)
      Add(rows, "HENKATEN", 0, span, k, points[k]);
    Add(rows, "HENKATEN", 0, span, 100, "900");
    Add(rows, "HENKATEN", 0, span, 101, "900");
  }

  // SPANTOP: 24 values per BANGOU; the older layout (BAN 0..7) is "0".
  for (I16 b = 0; b < 20; ++b)
    for (I16 k = 0; k < 24; ++k) {
      std::string data;
      if (b < spans) data = k < 8 ? "0" : Text(1000 + 10 * k + b);
      Add(rows, "SPANTOP", 0, b, k, std::move(data));
    }

  // SPANTANJOIL: two values per BANGOU.
  for (I16 b = 0; b < 20; ++b)
    for (I16 k = 0; k < 2; ++k)
      Add(rows, "SPANTANJOIL", 0, b, k, b < spans ? Text(40 + k) : "");

  // ANKANIGE: every face of every column, five groups of 21 entries; entry 20
  // switches entries 12..20 on.
  for (I16 column = 0; column <= spans; ++column)
    for (I16 side = 0; side < 2; ++side)
      for (I16 group = 0; group < 5; ++group)
        for (I16 m = 0; m <= 20; ++m) {
          std::string data = m == 20 ? "1" : Text(10 * group + m + column);
          Add(rows, "ANKANIGE", 0, static_cast<I16>(2 * column + side),
              static_cast<I16>(group * 50 + m), std::move(data));
        }

  // SITAKINANKASETUDAN: both faces of every column.
  for (I16 b = 0; b <= 2 * spans + 1; ++b)
    Add(rows, "SITAKINANKASETUDAN", 0, b, -1, Text(b % 3));

  rows.push_back(Row{"TOORIMEI", -1, -1, -1, "Y" + Text(variant + 1) + " 通り", Text(spans + 1)});
  return rows;
}

void AddRows(dao::Database& db, I16 page, std::span<const Row> rows) {
  std::shared_ptr<dao::Recordset> set;
  std::string_view open;
  for (const Row& row : rows) {
    if (!set || row.table != open) {
      if (set) set->Close();
      set = db.OpenRecordset(std::string(row.table));
      open = row.table;
    }
    set->AddNew();
    set->SetValue("PAGE", vb::Variant(page));
    if (row.table == "TOORIMEI") {
      set->SetValue("TOORI", vb::Variant(row.data));
      set->SetValue("KASYO", vb::Variant(row.kasyo));
    } else {
      set->SetValue("SUBPAGE", vb::Variant(row.subpage));
      set->SetValue("BANGOU", vb::Variant(row.bangou));
      if (row.ban != -1 || row.table == "ANKANIGE" || row.table == "HENKATEN" ||
          row.table == "SPANTOP" || row.table == "SPANTANJOIL")
        set->SetValue("BAN", vb::Variant(row.ban));
      set->SetValue("DATA", vb::Variant(row.data));
    }
    set->Update();
  }
  if (set) set->Close();
}

void FillFloor(dao::Database& db, I16 pages) {
  constexpr I16 kTemplates = 4;
  for (I16 page = 0; page < pages && page < kTemplates; ++page) {
    const auto rows = TypicalPage(6, page);
    AddRows(db, page, rows);
  }
  struct Table {
    std::string_view name, fields;
  };
  static constexpr std::array<Table, 11> kTables = {{
      {"KUTAIDATA", "SUBPAGE, BANGOU, DATA"},
      {"HANTI", "SUBPAGE, BANGOU, DATA"},
      {"STPGENSUN", "SUBPAGE, BANGOU, DATA"},
      {"STPJOUGEGENSUN", "SUBPAGE, BANGOU, DATA"},
      {"RSITEI", "SUBPAGE, BANGOU, DATA"},
      {"SITAKINANKASETUDAN", "SUBPAGE, BANGOU, DATA"},
      {"HENKATEN", "SUBPAGE, BANGOU, BAN, DATA"},
      {"ANKANIGE", "SUBPAGE, BANGOU, BAN, DATA"},
      {"SPANTOP", "SUBPAGE, BANGOU, BAN, DATA"},
      {"SPANTANJOIL", "SUBPAGE, BANGOU, BAN, DATA"},
      {"TOORIMEI", "TOORI, KASYO"},
  }};
  for (I16 page = kTemplates; page < pages; ++page)
    for (const Table& table : kTables) {
      const std::string fields(table.fields);
      db.Execute("INSERT INTO " + std::string(table.name) + " (PAGE, " + fields + ") SELECT " +
                     vb::StrTrimmed(page) + ", " + fields + " FROM " + std::string(table.name) +
                     " WHERE PAGE = " + vb::StrTrimmed(static_cast<I16>(page % kTemplates)) + " ;",
                 128);
    }
}

}  // namespace seluvorne::sample
