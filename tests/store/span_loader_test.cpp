// Loading a page into the span model: pages written through the engine in the
// page writers' layouts, then asked by name as the suite's clients ask. The
// decoding of every table, the skips, the anchorage group fill, failed
// loads, and the readers into the caller's arrays.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "error_matchers.h"
#include "floor_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/page_rows.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_pages.h"
#include "seluvorne/seluvorne_data_service.h"
#include "seluvorne/table_schema.h"

namespace {

using namespace seluvorne;
using I16 = std::int16_t;

// A row of a page table, in any layout: BAN -1 for the tables without it;
// TOORIMEI rows carry TOORI in `data`.
struct Row {
  std::string_view table;
  I16 subpage, bangou, ban;
  std::string data;
};
using Rows = std::vector<Row>;

void AddRows(dao::Database& db, I16 page, const Rows& rows) {
  static constexpr std::string_view kNames[] = {"PAGE", "TOORI", "KASYO"};
  static constexpr std::string_view kKeys[] = {"PAGE", "SUBPAGE", "BANGOU", "DATA"};
  static constexpr std::string_view kKeysWithBan[] = {"PAGE", "SUBPAGE", "BANGOU", "BAN", "DATA"};
  for (const Row& row : rows) {
    const vb::Variant data(row.data);
    if (row.table == "TOORIMEI") {
      frame::RowAppender(db, row.table, kNames)
          .Add(std::vector<vb::Variant>{page, data, std::string()});
    } else if (row.ban == -1 && row.table != "ANKANIGE") {
      frame::RowAppender(db, row.table, kKeys)
          .Add(std::vector<vb::Variant>{page, row.subpage, row.bangou, data});
    } else {
      frame::RowAppender(db, row.table, kKeysWithBan)
          .Add(std::vector<vb::Variant>{page, row.subpage, row.bangou, row.ban, data});
    }
  }
}

Row Kutai(I16 s, I16 b, std::string data) {
  return Row{"KUTAIDATA", s, b, -1, std::move(data)};
}
Row In(std::string_view table, I16 s, I16 b, I16 ban, std::string data) {
  return Row{table, s, b, ban, std::move(data)};
}

// Two spans, 6000 and 5000, on 400-wide columns: clear spans 5600 and 4600.
Rows TwoSpans() {
  Rows rows;
  for (I16 column = 0; column < 3; ++column) {
    rows.push_back(Kutai(0, static_cast<I16>(4 * column + 1), "200"));
    rows.push_back(Kutai(0, static_cast<I16>(4 * column + 2), "200"));
  }
  rows.push_back(Kutai(0, 3, "6000"));
  rows.push_back(Kutai(0, 7, "5000"));
  return rows;
}

Rows Plus(Rows rows, const Rows& more) {
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

class SpanLoaderTest : public seluvorne::testing::FloorTest {
 protected:
  void SetUp() override {
    FloorTest::SetUp();
    folder = MakeFloorFolder(1, 2, 3);
    service = std::make_shared<clsSeluVorneDataService>();
    service->SetCurrKai(folder);
  }

  void Write(I16 page, const Rows& rows) { AddRows(*service->KutaiDb, page, rows); }

  template <class... A>
  vb::Variant Ask(std::string_view member, const A&... args) {
    return CallByName(service, member, CallKind::Method, args...);
  }
  // A member whose arguments are all Integers, its answer as text.
  std::string AskText(const char* member, const std::vector<int>& numbers) {
    std::vector<vb::Variant> args;
    for (int number : numbers)
      args.emplace_back(static_cast<I16>(number));
    return vb::CStr(service->invoke(member, CallKind::Method, args));
  }
  I16 Load(I16 page) { return vb::CInt(Ask("InitKutaiData", page)); }
  const SpanModel& Model() const { return service->SpanGeometry(); }

  std::string folder;
  std::shared_ptr<clsSeluVorneDataService> service;
};

// Rows added to TwoSpans, the member asked and its answer as text. KUTAIDATA
// codes 163 and 241 fold back onto span 0; SUBPAGE 5, codes below 0 and
// ANKANIGE BAN 250 are skipped; names are trimmed, HANTI and grid names not.
struct Decoding {
  const char* member;
  std::vector<int> args;
  const char* answer;
  Rows rows;
};

TEST_F(SpanLoaderTest, EveryTableDecodesByItsIndexRule) {
  const std::string_view kCut = "SITAKINANKASETUDAN", kJoint = "SPANTANJOIL", kAnka = "ANKANIGE";
  const std::vector<Decoding> cases = {
      {"GetHensinSita", {0}, "75", {Kutai(0, 163, "75")}},
      {"GetHariMei", {0}, "2G9", {Kutai(0, 241, " 2G9 ")}},
      {"GetHensinUe", {1}, "30", {Kutai(0, 86, "30")}},
      {"GetTenba", {0}, "-45.5", {Kutai(0, 80, "-45.5")}},
      {"GetSpanToorimei", {1}, " X2 ", {Kutai(0, 4, " X2 ")}},
      {"GetSpanTyou", {0}, "6000", {Kutai(0, -1, "999"), Kutai(0, -4, "1")}},
      {"GetSpanSuu", {}, "2", {Kutai(5, 3, "4000"), Kutai(5, 81, "X")}},
      {"GetSpanTyou", {99}, "1234", {Kutai(4, 79, "1234")}},
      {"GetHantiMigiSita", {20}, " 150 ", {In("HANTI", 1, 3, -1, " 150 ")}},
      {"GetHantiHidariUe", {0}, "", {In("HANTI", 5, 0, -1, "x"), In("HANTI", 0, -2, -1, "y")}},
      {"GetSpanSTPGensun", {1, 1}, "2", {In("STPGENSUN", 0, 3, -1, "2.5")}},  // half to even
      {"GetSpanSTPJougeGensun", {40, 0}, "125", {In("STPJOUGEGENSUN", 2, 0, -1, "125")}},
      {"GetRsitei", {22}, "R1", {In("RSITEI", 1, 2, -1, " R1 ")}},
      {"GetSitakinCutMigi", {2}, "3", {In(kCut, 0, 5, -1, " 3 ")}},
      {"GetSitakinCutHidari", {20}, "4", {In(kCut, 1, 0, -1, "4"), In(kCut, 5, 0, -1, "5")}},
      {"GetSpanTanbuJointL", {1, 1}, "40", {In(kJoint, 0, 1, 1, " 40 "), In(kJoint, 0, 1, 2, "x")}},
      {"GetHenkatenSayuuHantiL", {1, 0}, "900", {In("HENKATEN", 0, 1, 100, " 900 ")}},
      {"GetTeityakuBanMigi_Hontai", {1, 0}, "D13", {In(kAnka, 0, 3, 12, " D13 ")}},
      {"GetAnkaHidari_Hontai", {0, 0}, "", {In(kAnka, 0, 0, 250, "x"), In(kAnka, 5, 0, 0, "y")}},
  };
  I16 page = 0;
  for (const Decoding& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.member << " on page " << page);
    Write(page, Plus(TwoSpans(), c.rows));
    ASSERT_EQ(Load(page++), 2);
    EXPECT_EQ(AskText(c.member, c.args), c.answer);
  }
}

TEST_F(SpanLoaderTest, AnchorageGroupZeroFillsTheGroupsNotRead) {
  Rows main_body = TwoSpans();
  for (I16 m = 0; m < 21; ++m)
    main_body.push_back(In("ANKANIGE", 0, 3, m, "M" + std::to_string(m)));
  Write(0, main_body);
  Write(1, Plus(main_body, {In("ANKANIGE", 0, 3, 101, "G2")}));
  Write(2, Plus(TwoSpans(), {In("ANKANIGE", 0, 3, 101, "G2")}));
  // Group 2 read on page 1: groups 1, 3, 4 are filled from group 0, slot 0 of
  // group 2 is not; page 2 has no group 0, so nothing is filled.
  const struct {
    I16 page;
    const char* member;
    std::vector<int> args;
    const char* answer;
  } fills[] = {{0, "GetAnkaMigi_Fukasi", {2, 1, 1}, "M1"},
               {0, "GetAnkaMigi_Fukasi", {2, 1, 0}, "M0"},
               {0, "GetTeityakuSansyouMigi_Fukasi", {3, 1}, "M20"},
               {1, "GetAnkaMigi_Fukasi", {1, 1, 1}, "G2"},
               {1, "GetAnkaMigi_Fukasi", {0, 1, 1}, "M1"},
               {1, "GetAnkaMigi_Fukasi", {1, 1, 0}, ""},
               {2, "GetAnkaMigi_Fukasi", {0, 1, 1}, ""}};
  for (const auto& f : fills) {
    SCOPED_TRACE(f.page);
    ASSERT_EQ(Load(f.page), 2);
    EXPECT_EQ(AskText(f.member, f.args), f.answer) << f.member;
  }
}

TEST_F(SpanLoaderTest, AFailedLoadKeepsTheModel) {
  Write(0, Plus(TwoSpans(), {In("HANTI", 0, 0, -1, "150")}));
  ASSERT_EQ(Load(0), 2);
  struct Bad {
    const char* label;
    Rows rows;
    int error;
  };
  I16 page = 1;
  for (const Bad& bad : std::vector<Bad>{
           {"change point BAN 14", {In("HENKATEN", 0, 0, 14, "1")}, 9},
           {"anchorage BAN -1", {In("ANKANIGE", 0, 0, -1, "1")}, 9},
           {"SUBPAGE 1639 overflows 16 bits", {Kutai(1639, 0, "1")}, 6},
           {"SUBPAGE -1", {Kutai(-1, 3, "1")}, 9},
           {"size beyond 32-bit reals", {Kutai(0, 2, "1e39")}, 6},
       }) {
    SCOPED_TRACE(bad.label);
    Write(page, Plus(TwoSpans(), bad.rows));
    EXPECT_RAISES(Load(page), bad.error);
    EXPECT_EQ(Model().SpanSuu, 2);
    EXPECT_EQ(Model().GetHantiHidariUe(0), "150");
    EXPECT_EQ(Model().GetSpanTyou(1), 5000);
    ++page;
  }
}

// ---- By name -----------------------------------------------------------------

TEST_F(SpanLoaderTest, ReadersIntoTheCallersArrays) {
  Write(4, Plus(TwoSpans(), {Kutai(0, 81, " 2G1/2G2 "), Kutai(0, 85, "2B1"), Kutai(0, 80, "-30"),
                             In("TOORIMEI", -1, -1, -1, " Y3 ")}));
  vb::Array<float> sizes({4, 2});
  vb::Array<std::string> names({4});
  vb::Variant db(Object(service->KutaiDb));
  EXPECT_EQ(vb::CInt(Ask("Read_KutaiSunpou", Ref(db), I16{4}, Ref(sizes), Ref(names))), 10);
  EXPECT_EQ(sizes(0, 2), 6000);
  EXPECT_EQ(sizes(2, 0), 200);
  EXPECT_EQ(sizes(2, 2), -999999.0f);  // absent
  EXPECT_EQ(sizes(4, 1), -999999.0f);
  EXPECT_EQ(names(0), "2G1 2G2");
  EXPECT_EQ(names(1), "2B1");
  EXPECT_EQ(Model().SpanSuu, 0);  // the model is left alone

  vb::Array<float> small({1, 2});
  EXPECT_RAISES(Ask("Read_KutaiSunpou", Ref(db), I16{4}, Ref(small), Ref(names)), 9);

  std::string toori = "kept", kasyo = "kept";
  Ask("Read_TooriMei", Ref(db), I16{4}, Ref(toori), Ref(kasyo));
  EXPECT_EQ(toori, "Y3");
  Ask("Read_TooriMei", Ref(db), I16{5}, Ref(toori), Ref(kasyo));  // no row: both stay
  EXPECT_EQ(toori, "Y3");

  vb::Array<float> values({12});
  EXPECT_RAISES(Ask("Read_Keisanti", Ref(db), I16{4}, Ref(values)), 3078);  // no KEISANTI
  static constexpr frame::FieldSchema kFields[] = {{"PAGE", dao::dbInteger},
                                                   {"SUBPAGE", dao::dbInteger},
                                                   {"BANGOU", dao::dbInteger},
                                                   {"DATA", dao::dbText, 200}};
  frame::CreateTable(*service->KutaiDb, {"KEISANTI", kFields});
  Write(4, {In("KEISANTI", -1, 1, -1, "1.5"), In("KEISANTI", -1, 7, -1, "7"),
            In("KEISANTI", -1, 16, -1, "16"), In("KEISANTI", -1, 5, -1, "5")});
  EXPECT_EQ(vb::CInt(Ask("Read_Keisanti", Ref(db), I16{4}, Ref(values))), 3);
  EXPECT_EQ(values(1), 1.5f);
  EXPECT_EQ(values(3), 7);
  EXPECT_EQ(values(12), 16);
  vb::Variant nothing{Object()};
  EXPECT_RAISES(Ask("Read_Keisanti", Ref(nothing), I16{4}, Ref(values)), 91);
}

}  // namespace
