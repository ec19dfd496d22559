// The statements the stores send, and the ones the engine refuses.

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

class StatementTest : public PageTest {
 protected:
  std::vector<std::int16_t> Spans(const std::string& sql) {
    std::vector<std::int16_t> spans;
    for (auto rs = db->OpenRecordset(sql, dao::dbOpenSnapshot); !rs->IsEOF(); rs->MoveNext())
      spans.push_back(vb::CInt(rs->Value("SUBPAGE")));
    return spans;
  }
};

TEST_F(StatementTest, TheStoresStatementsDoWhatTheySay) {
  using SpanList = std::vector<std::int16_t>;
  EXPECT_EQ(Spans("SELECT * FROM [KUTAIDATA] WHERE PAGE BETWEEN 3 AND 3 AND SUBPAGE BETWEEN 1 "
                  "AND 2;"),
            (SpanList{1, 2}));
  db->Execute("DELETE * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 3 AND SUBPAGE BETWEEN 2 AND 2;",
              dao::dbFailOnError);
  db->Execute("UPDATE KUTAIDATA SET SUBPAGE = SUBPAGE - 1 Where PAGE = 3 AND SUBPAGE > 2;",
              dao::dbFailOnError);
  EXPECT_EQ(Spans("SELECT * FROM KUTAIDATA Where PAGE = 3 ORDER BY SUBPAGE ASC;"),
            (SpanList{0, 1, 2, 3}));
  // Numbers in texts and ORDER BY positions stay as they are.
  EXPECT_EQ(Spans("SELECT * FROM KUTAIDATA WHERE PAGE = 3 AND DATA <> 'd1' ORDER BY 2 DESC;"),
            (SpanList{3, 2, 0}));
  db->Execute("DELETE * FROM kutaidata WHERE PAGE = 3 ;", dao::dbFailOnError);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 1);
}

struct Refusal {
  const char* sql;
  int error;
};

class RefusedStatementTest : public StatementTest, public ::testing::WithParamInterface<Refusal> {};

TEST_P(RefusedStatementTest, RaisesAndChangesNothing) {
  try {
    db->Execute(GetParam().sql, dao::dbFailOnError);
    ADD_FAILURE() << "accepted " << GetParam().sql;
  } catch (const Error& error) {
    EXPECT_EQ(error.number, GetParam().error) << error.description;
    if (std::string_view(GetParam().sql).starts_with("DELETE FORM")) {
      EXPECT_TRUE(error.description.starts_with("Syntax error in FROM clause."))
          << error.description;
    }
  }
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 6);
  EXPECT_EQ(db->TableDefs()->Count(), 4);
}

INSTANTIATE_TEST_SUITE_P(
    Statements, RefusedStatementTest,
    ::testing::Values(Refusal{"DELETE FORM KUTAIDATA;", kSyntaxError},
                      Refusal{"DELETE FORM MSysProperties;", kSyntaxError},
                      Refusal{"DELETE * FROM KUTAIDATA WHERE NOPE = 1 ;", kSyntaxError},
                      Refusal{"DELETE * FROM NOTABLE ;", kTableNotFound},
                      Refusal{"DELETE * FROM KUTAIDATA; DROP TABLE KUTAIDATA;",
                              kTextAfterStatement},
                      Refusal{"SELECT * FROM KUTAIDATA;", kCannotExecuteSelect}));

}  // namespace
}  // namespace seluvorne::testing
