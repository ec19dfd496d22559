// Creating and opening database files, the catalogue and table definitions.

#include <SQLiteCpp/SQLiteCpp.h>

#include "db_fixture.h"
#include "file_bytes.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using Names = std::vector<std::string>;
using Matcher = ::testing::Matcher<const std::string&>;

template <class Collection>
Names NamesOf(const Collection& items) {
  Names names;
  for (std::int32_t i = 0; i < items->Count(); ++i)
    names.push_back(items->Item(i)->Name());
  return names;
}

using DatabaseTest = DbTest;

TEST_F(DatabaseTest, CatalogueKeepsTablesAndFieldsInOrderAndHidesItsIndexes) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "TOORIMEI");
  AddFloorTable(*db, "SPANTANJOIL", 10);
  db->Close();

  db = Open("SELUVORN.mdb");
  EXPECT_EQ(db->Locale(), dao::dbLangJapanese);
  // The page indexes exist in the file but are no table definitions.
  EXPECT_EQ(NamesOf(db->TableDefs()),
            (Names{"MSysProperties", "MSysTables", "MSysFields", "TOORIMEI", "SPANTANJOIL"}));
  SQLite::Database sqlite(PathOf("SELUVORN.mdb"), SQLite::OPEN_READONLY);
  SQLite::Statement plan(sqlite, "EXPLAIN QUERY PLAN SELECT * FROM SPANTANJOIL WHERE PAGE = 3");
  ASSERT_TRUE(plan.executeStep());
  EXPECT_THAT(plan.getColumn(3).getString(), ::testing::HasSubstr("~PAGE"));
  auto fields = db->TableDefs()->Item("SPANTANJOIL")->Fields();
  EXPECT_EQ(NamesOf(fields), (Names{"PAGE", "SUBPAGE", "BANGOU", "DATA"}));
  EXPECT_EQ(fields->Item("bangou")->DefaultValue(), "-1");
  auto data = fields->Item("DATA");
  EXPECT_EQ(data->Size(), 10);
  EXPECT_TRUE(data->AllowZeroLength());
  // An appended table's fields are fixed.
  EXPECT_RAISES(data->SetDefaultValue("x"), kInvalidOperation);
}

// The plans of the stores' page and page-kind queries, numbers bound as the
// engine binds them: the kind index holds the kind rows and nothing else.
TEST_F(DatabaseTest, PageAndKindQueriesFindTheirHiddenIndexes) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  db->Close();
  const struct {
    const char* query;
    std::vector<int> numbers;
    const char* index;  // in the plan; "" for none
  } cases[] = {
      {"SELECT * FROM KUTAIDATA WHERE PAGE = ?", {3}, "~PAGE"},
      {"SELECT * FROM KUTAIDATA WHERE SUBPAGE = ? AND BANGOU = ?", {0, 81}, "~BANGOU"},
      {"SELECT * FROM KUTAIDATA WHERE SUBPAGE = ? AND BANGOU = ?", {0, 80}, ""},
      {"SELECT * FROM KUTAIDATA WHERE SUBPAGE = ? AND BANGOU = ?", {1, 81}, ""},
  };
  SQLite::Database sqlite(PathOf("SELUVORN.mdb"), SQLite::OPEN_READONLY);
  for (const auto& c : cases) {
    SQLite::Statement plan(sqlite, std::string("EXPLAIN QUERY PLAN ") + c.query);
    for (std::size_t i = 0; i < c.numbers.size(); ++i)
      plan.bind(static_cast<int>(i) + 1, c.numbers[i]);
    ASSERT_TRUE(plan.executeStep());
    const std::string used = plan.getColumn(3).getString();
    if (*c.index)
      EXPECT_THAT(used, ::testing::HasSubstr(c.index)) << c.query;
    else
      EXPECT_THAT(used, ::testing::Not(::testing::HasSubstr("~BANGOU"))) << c.query;
  }
}

// Files that are none of ours raise 3343, never an engine crash or a new
// file; Jet files that cannot be read whole say they are legacy files. A file
// of ours cut short is SQLite's to judge: the damage raises 3343 when the
// pages it lost are read.
TEST_F(DatabaseTest, FilesThatAreNotOursRaise3343) {
  SQLite::Database(PathOf("foreign.mdb"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
      .exec("CREATE TABLE KUTAIDATA (PAGE INTEGER)");
  auto db = Create("cut.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  for (std::int16_t i = 0; i < 400; ++i)
    AddRow(*db, "KUTAIDATA", i, 0, 0, std::string(150, 'x'));
  db->Close();
  std::filesystem::resize_file(PathOf("cut.mdb"),
                               std::filesystem::file_size(PathOf("cut.mdb")) / 2);

  const std::pair<std::filesystem::path, bool> files[] = {{"foreign.mdb", false},
                                                          {"broken/empty.mdb", false},
                                                          {"broken/not-a-database.mdb", false},
                                                          {"broken/truncated.mdb", true},
                                                          {"broken/zeroed-page.mdb", true}};
  for (const auto& [file, legacy] : files) {
    SCOPED_TRACE(file);
    if (file.has_parent_path())  // a fixture; a missing one fails the test
      std::filesystem::copy_file(std::filesystem::path(SELUVORNE_FIXTURES) / "jet" / file,
                                 folder_ / file.filename());
    const auto says_legacy = ::testing::HasSubstr("legacy");
    EXPECT_RAISES_THAT(Open(file.filename().string()), kUnrecognizedFormat,
                       legacy ? Matcher(says_legacy) : Matcher(::testing::Not(says_legacy)));
  }
  EXPECT_RAISES(Open("cut.mdb")->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE >= 0;",
                                               dao::dbOpenSnapshot),
                kUnrecognizedFormat);
}

// Names no file can have, or that SQLite would read as something else, are
// refused before anything is touched; a.mdb exists, and nothing else appears.
// A name with a colon is given as it is (a URI is never a folder's file).
TEST_F(DatabaseTest, BadNamesRaiseAndTouchNothing) {
  using namespace std::string_literals;
  Create("a.mdb")->Close();
  const struct {
    std::string file;  // in the scratch folder, or the whole path when it has a colon or is empty
    bool create;       // CreateDatabase, else OpenDatabase
    int error;
  } cases[] = {{"b.mdb\0.txt"s, true, kBadFileName},
               {"a.mdb\0anything"s, false, kBadFileName},
               {"file:a.mdb?mode=memory", true, kBadFileName},
               {"FILE:a.mdb", false, kBadFileName},
               {"", true, kBadFileName},
               {"", false, kBadFileName},
               {std::string(300, 'x') + ".mdb", true, kInvalidPath},
               {std::string(300, 'x') + ".mdb", false, kInvalidPath},
               {std::string(5000, 'x'), true, kInvalidPath}};
  auto engine = dao::DBEngine::Instance();
  for (const auto& [file, create, error] : cases) {
    SCOPED_TRACE((create ? "create " : "open ") + file.substr(0, 40));
    const std::string full =
        file.empty() || file.find(':') != std::string::npos ? file : PathOf(file);
    if (create)
      EXPECT_RAISES(engine->CreateDatabase(full, std::string(dao::dbLangJapanese)), error);
    else
      EXPECT_RAISES(engine->OpenDatabase(full), error);
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      files.push_back(entry.path().filename().string());
    EXPECT_EQ(files, (Names{"a.mdb"}));
    EXPECT_FALSE(std::filesystem::exists("a.mdb"));
  }
}

}  // namespace
}  // namespace seluvorne::testing
