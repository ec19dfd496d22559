// The page writers: each writer's row layout on small arrays, the page limit,
// and what a bad array or a text too long leaves behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "error_matchers.h"
#include "page_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::PageTest;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using Texts = vb::Array<std::string>;

// A (j, i) array whose element reads "j.i", or the texts a function gives.
Texts Grid(std::int32_t j_max, std::int32_t i_max,
           std::function<std::string(std::int32_t, std::int32_t)> text = nullptr) {
  Texts a({j_max, i_max});
  for (std::int32_t i = 0; i <= i_max; ++i)
    for (std::int32_t j = 0; j <= j_max; ++j)
      a(j, i) = text ? text(j, i) : std::to_string(j) + "." + std::to_string(i);
  return a;
}

// "0,1,...,count-1" and the like.
std::string Counting(int count, int from = 0) {
  std::string text;
  for (int m = 0; m < count; ++m)
    text += (m ? "," : "") + std::to_string(from + m);
  return text;
}

struct LayoutCase {
  const char* writer;
  const char* table;
  std::function<void(clsSeluVorneDataService&)> write;
  std::size_t rows;
  std::vector<std::string> some;  // rows that must be among them
};

const LayoutCase kLayouts[] = {
    {"Write_KutaiData",
     "KUTAIDATA",
     [](auto& s) {
       Texts a = Grid(
           159, 1, [](auto j, auto i) { return j == 5 && i == 1 ? "" : " k" + std::to_string(j); });
       s.Write_KutaiData(4, a);
     },
     320,
     {"0,0= k0", "1,5=", "1,159= k159"}},
    {"Write_Hanti",
     "HANTI",
     [](auto& s) {
       Texts a = Grid(90, 6, [](auto j, auto i) { return " " + std::to_string(j * 10 + i) + " "; });
       s.Write_Hanti(4, a);  // five sub-pages of 80 rows, whatever the array holds
     },
     400,
     {"0,0=0", "4,79=794"}},
    {"Write_StpGensun",
     "STPGENSUN",
     [](auto& s) {
       Texts a = Grid(39, 1, [](auto j, auto) { return j == 3 ? "  " : " D10@200"; });
       s.Write_StpGensun(4, a);
     },
     80,
     {"0,3=", "1,39=D10@200"}},
    {"Write_StpJougeGensun",
     "STPJOUGEGENSUN",
     [](auto& s) {
       Texts a = Grid(39, 2);
       s.Write_StpJougeGensun(4, a);
     },
     120,
     {"2,39=39.2"}},
    {"Write_Rsitei",
     "RSITEI",
     [](auto& s) {
       Texts a({21});
       for (int n = 0; n <= 21; ++n)
         a(n) = " r" + std::to_string(n);
       s.Write_Rsitei(4, a);
     },
     22,
     {"0,19=r19", "1,0=r20", "1,1=r21"}},
    {"Write_Henkaten",
     "HENKATEN",
     [](auto& s) {
       Texts points({13, 19, 1}), lengths({1, 19, 1});
       points(0, 0, 0) = " 500 ";
       points(13, 19, 1) = "x";
       points(2, 3, 0) = "   ";   // blank: no row
       lengths(1, 0, 0) = " 7 ";  // kept as given
       s.Write_Henkaten(4, points, lengths);
     },
     3,
     {"0,0,0=500", "0,0,101= 7 ", "1,19,13=x"}},
    {"Write_Top",
     "SPANTOP",
     [](auto& s) {
       Texts a({19, 0});
       a(0, 0) = " " + Counting(24) + " ";
       a(1, 0) = "1,2,3";  // not 24 values: 24 empty rows
       s.Write_Top(4, a);
     },
     480,
     {"0,0,0=0", "0,0,23=23", "0,1,0=", "0,1,23=", "0,19,5="}},
    {"Write_TanbuJointL",
     "SPANTANJOIL",
     [](auto& s) {
       Texts a({19, 1});
       a(0, 1) = "450,600";
       a(1, 1) = "450";
       s.Write_TanbuJointL(4, a);
     },
     80,
     {"1,0,0=450", "1,0,1=600", "1,1,0=", "1,1,1="}},
    {"Write_AnkaNige",
     "ANKANIGE",
     [](auto& s) {
       Texts a({4, 39, 1});
       a(0, 2, 0) = Counting(20, 1) + ",1";  // entry 20 "1": the tail kept
       a(1, 2, 0) = Counting(20, 1) + ",0";  // switched off: the tail stored as "0"
       a(2, 2, 0) = "1,2";                   // not 21 values: 21 empty rows
       a(0, 3, 0) = Counting(21, 0).replace(0, std::string::npos, std::string(20, '0'));
       for (int j = 0; j <= 4; ++j)
         a(j, 5, 1) = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
       s.Write_AnkaNige(4, a);  // groups (3, 0) and (5, 1) are all zero: nothing
     },
     105,
     {"0,2,0=1", "0,2,12=13", "0,2,20=1", "0,2,50=1", "0,2,61=12", "0,2,62=0", "0,2,70=0",
      "0,2,100=", "0,2,120=0", "0,2,220=0"}},
};

TEST_F(PageTest, EachWriterNumbersRowsFromTheArrayIndices) {
  for (const LayoutCase& c : kLayouts) {
    SCOPED_TRACE(c.writer);
    c.write(*service);
    const auto rows = Rows(c.table, 4);
    EXPECT_EQ(rows.size(), c.rows);
    EXPECT_THAT(rows, IsSupersetOf(c.some));
    c.write(*service);  // writers only add: a second call doubles the page
    EXPECT_EQ(Rows(c.table, 4).size(), 2 * c.rows);
  }
}

// ---- The page limit ----------------------------------------------------------

TEST_F(PageTest, APageOutsideTheLimitWritesNothingEvenWithoutAFile) {
  Texts grid = Grid(159, 0), one({0});
  service->WriteOpenDb.reset();  // a writer that went on would raise 91
  for (std::int16_t page : {-1, 160}) {
    service->Write_KutaiData(page, grid);
    service->Write_Hanti(page, grid);
    service->Write_Rsitei(page, one);
    service->Write_TooriMei(page, "X1", "1");
    service->Write_AnkaNigeData(page, grid);
    service->Write_SitakinAnkaSetudan(page, grid);
  }
  EXPECT_RAISES(service->Write_Rsitei(0, one), errc::kObjectNotSet);
}

// ---- Bad input ----------------------------------------------------------------

// The rows before a failing row are committed: they survive the file's last
// handle closing, which would drop a transaction left open.
std::size_t RowsAfterReopen(const std::string& folder, const std::string& table) {
  clsSeluVorneDataService reader;
  reader.WriteOpen(folder);
  return seluvorne::testing::RowsOf(*reader.WriteOpenDb, table, 4).size();
}

TEST_F(PageTest, AnArrayTooShortRaises9AfterTheRowsBeforeTheMissingElement) {
  Texts hanti = Grid(79, 1);  // sub-pages 0 and 1 of five
  EXPECT_RAISES(service->Write_Hanti(4, hanti), errc::kSubscriptOutOfRange);
  service->WriteOpenDb->Close();
  EXPECT_EQ(RowsAfterReopen(folder, "HANTI"), 160u);
}

TEST_F(PageTest, ATextTooLongRaises3163AfterTheRowsBeforeIt) {
  Texts joints({19, 0});
  joints(3, 0) = "1,12345678901";  // SPANTANJOIL.DATA holds 10 characters
  EXPECT_RAISES(service->Write_TanbuJointL(4, joints), errc::kFieldTooSmall);
  service->WriteOpenDb->Close();
  EXPECT_EQ(RowsAfterReopen(folder, "SPANTANJOIL"), 7u);
}

}  // namespace
