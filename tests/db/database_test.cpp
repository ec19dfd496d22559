// Creating and opening database files, the catalogue and table definitions.

#include <SQLiteCpp/SQLiteCpp.h>

#include <fstream>
#include <iterator>

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TableNames(dao::Database& db) {
  std::vector<std::string> names;
  auto tables = db.TableDefs();
  for (std::int32_t i = 0; i < tables->Count(); ++i)
    names.push_back(tables->Item(i)->Name());
  return names;
}

using DatabaseTest = DbTest;

TEST_F(DatabaseTest, CatalogueKeepsFieldsInOrderWithTheirPropertiesAndTheLocale) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "TOORIMEI", {"PAGE"});
  AddFloorTable(*db, "SPANTANJOIL", {"PAGE", "SUBPAGE", "BANGOU", "BAN"}, 10);
  db->Close();

  db = Open("SELUVORN.mdb");
  EXPECT_EQ(db->Locale(), dao::dbLangJapanese);
  EXPECT_EQ(TableNames(*db), (std::vector<std::string>{"MSysProperties", "MSysTables", "MSysFields",
                                                       "TOORIMEI", "SPANTANJOIL"}));
  auto fields = db->TableDefs()->Item("SPANTANJOIL")->Fields();
  ASSERT_EQ(fields->Count(), 5);
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < fields->Count(); ++i)
    names.push_back(fields->Item(i)->Name());
  EXPECT_EQ(names, (std::vector<std::string>{"PAGE", "SUBPAGE", "BANGOU", "BAN", "DATA"}));
  auto ban = fields->Item("ban");
  EXPECT_EQ(ban->Type(), dao::dbInteger);
  EXPECT_EQ(ban->Size(), 2);
  EXPECT_EQ(ban->DefaultValue(), "-1");
  auto data = fields->Item("DATA");
  EXPECT_EQ(data->Type(), dao::dbText);
  EXPECT_EQ(data->Size(), 10);
  EXPECT_TRUE(data->AllowZeroLength());
  EXPECT_EQ(data->DefaultValue(), "");
  // An appended table's fields are fixed.
  EXPECT_RAISES(data->SetDefaultValue("x"), kInvalidOperation);
  EXPECT_RAISES(fields->Append(db->CreateTableDef("T")->CreateField("X", dao::dbInteger)),
                kInvalidOperation);
}

TEST_F(DatabaseTest, CreateOverAnExistingFileRaisesAndLeavesItByteForByte) {
  auto db = Create("HARIFUKA.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  AddRow(*db, "KUTAIDATA", 1, 0, 0, "kept");
  db->Close();
  std::string before = FileBytes(PathOf("HARIFUKA.mdb"));

  EXPECT_RAISES(Create("HARIFUKA.mdb"), kDatabaseExists);
  EXPECT_EQ(FileBytes(PathOf("HARIFUKA.mdb")), before);

  std::ofstream(PathOf("notes.txt")) << "not ours";
  EXPECT_RAISES(Create("notes.txt"), kDatabaseExists);
  EXPECT_EQ(FileBytes(PathOf("notes.txt")), "not ours");
}

TEST_F(DatabaseTest, MissingFilesAndFoldersAreNeverCreated) {
  EXPECT_RAISES(Open("SELUVORN.mdb"), kFileNotFoundDb);
  EXPECT_RAISES(Open("nofolder/SELUVORN.mdb"), kInvalidPath);
  EXPECT_RAISES(Create("nofolder/SELUVORN.mdb"), kInvalidPath);
  EXPECT_FALSE(std::filesystem::exists(PathOf("SELUVORN.mdb")));
  EXPECT_FALSE(std::filesystem::exists(PathOf("nofolder")));
  EXPECT_RAISES(Workspace()->CreateDatabase(PathOf("x.mdb"), "Japanese"), kInvalidArgument);
  EXPECT_RAISES(Workspace()->OpenDatabase(PathOf("x.mdb"), vb::Variant(true)), kInvalidArgument);
}

TEST_F(DatabaseTest, BackslashedInterfacePathsNameNativeFiles) {
  std::filesystem::create_directory(folder_ / "3kai");
  std::string floor = folder_.string() + "\\3kai";
  auto db = Workspace()->CreateDatabase(floor + "\\SELUVORN.mdb", std::string(dao::dbLangJapanese));
  EXPECT_EQ(db->Name(), floor + "\\SELUVORN.mdb");
  EXPECT_TRUE(std::filesystem::is_regular_file(folder_ / "3kai" / "SELUVORN.mdb"));
  EXPECT_NO_THROW(Open("3kai/SELUVORN.mdb"));
}

// Files that are none of ours raise 3343, never an engine crash or a new file.
class UnrecognizedFileTest : public DbTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(UnrecognizedFileTest, Raises3343) {
  std::filesystem::path source = std::filesystem::path(SELUVORNE_FIXTURES) / "jet" / GetParam();
  ASSERT_TRUE(std::filesystem::exists(source)) << "fixture missing: " << source;
  std::filesystem::copy_file(source, folder_ / "SELUVORN.mdb");
  try {
    Open("SELUVORN.mdb");
    ADD_FAILURE() << "opened " << GetParam();
  } catch (const Error& error) {
    EXPECT_EQ(error.number, kUnrecognizedFormat) << error.description;
    bool jet = GetParam().find("floor") == 0 || GetParam().find("truncated") != std::string::npos ||
               GetParam().find("zeroed") != std::string::npos;
    EXPECT_EQ(error.description.find("legacy") != std::string::npos, jet) << error.description;
  }
}

INSTANTIATE_TEST_SUITE_P(JetAndBrokenFixtures, UnrecognizedFileTest,
                         ::testing::Values("broken/empty.mdb", "broken/not-a-database.mdb",
                                           "broken/truncated.mdb", "broken/zeroed-page.mdb",
                                           "floor-basic/SELUVORN.mdb", "floor-basic/HARIFUKA.mdb",
                                           "floor-basic/SeluVorneSW.MDB",
                                           "floor-old/SELUVORN.mdb"));

TEST_F(DatabaseTest, ForeignAndCutOffSqliteFilesRaise3343) {
  {
    SQLite::Database foreign(PathOf("foreign.mdb"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    foreign.exec("CREATE TABLE KUTAIDATA (PAGE INTEGER)");
  }
  EXPECT_RAISES(Open("foreign.mdb"), kUnrecognizedFormat);

  auto db = Create("cut.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  for (std::int16_t i = 0; i < 400; ++i)
    AddRow(*db, "KUTAIDATA", i, 0, 0, std::string(150, 'x'));
  db->Close();
  auto size = std::filesystem::file_size(PathOf("cut.mdb"));
  std::filesystem::resize_file(PathOf("cut.mdb"), size / 2);
  EXPECT_RAISES(Open("cut.mdb"), kUnrecognizedFormat);
}

TEST_F(DatabaseTest, TablesDifferingOnlyInLetterCaseAreKeptApart) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "spantop");
  AddRow(*db, "spantop", 1, 0, 0, "lower");
  AddFloorTable(*db, "SPANTOP");
  AddRow(*db, "SPANTOP", 2, 0, 0, "upper");
  EXPECT_RAISES(AddFloorTable(*db, "SPANTOP"), kTableExists);
  db->Close();

  db = Open("SELUVORN.mdb");
  std::vector<std::string> names = TableNames(*db);
  EXPECT_EQ(std::vector<std::string>(names.begin() + 3, names.end()),
            (std::vector<std::string>{"spantop", "SPANTOP"}));
  EXPECT_EQ(db->TableDefs()->Item("SPANTOP")->Name(), "SPANTOP");
  EXPECT_EQ(db->TableDefs()->Item("SpanTop")->Name(), "spantop");  // the first, when none is exact
  auto upper = db->OpenRecordset("SELECT * FROM SPANTOP WHERE PAGE = 2;", dao::dbOpenSnapshot);
  EXPECT_EQ(upper->Value("DATA"), vb::Variant("upper"));
  auto lower = db->OpenRecordset("SELECT DATA FROM spantop;", dao::dbOpenSnapshot);
  EXPECT_EQ(lower->Value("DATA"), vb::Variant("lower"));
  db->Execute("DELETE * FROM SPANTOP ;", dao::dbFailOnError);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM SPANTOP;"), 0);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM spantop;"), 1);
}

TEST_F(DatabaseTest, HiddenIndexesServeThePageAndKindQueries) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  AddFloorTable(*db, "HANTI");
  db->Close();
  SQLite::Database sqlite(PathOf("SELUVORN.mdb"), SQLite::OPEN_READONLY);
  auto plan = [&](const std::string& sql) {
    std::string steps;
    SQLite::Statement explain(sqlite, "EXPLAIN QUERY PLAN " + sql);
    while (explain.executeStep())
      steps += explain.getColumn(3).getString() + "; ";
    return steps;
  };
  EXPECT_THAT(plan("SELECT * FROM KUTAIDATA WHERE PAGE = 3"), ::testing::HasSubstr("~PAGE"));
  EXPECT_THAT(plan("SELECT * FROM HANTI WHERE PAGE BETWEEN 3 AND 4"),
              ::testing::HasSubstr("~PAGE"));
  EXPECT_THAT(plan("SELECT * FROM KUTAIDATA WHERE SUBPAGE = 0 AND BANGOU = 81"),
              ::testing::HasSubstr("~BANGOU"));
  EXPECT_THAT(plan("SELECT * FROM HANTI WHERE SUBPAGE = 0 AND BANGOU = 81"),
              ::testing::Not(::testing::HasSubstr("~BANGOU")));
}

TEST_F(DatabaseTest, BadDefinitionsAreRefusedBeforeAnythingIsWritten) {
  auto db = Create("SELUVORN.mdb");
  auto table = db->CreateTableDef("T");
  EXPECT_RAISES(db->TableDefs()->Append(table), kNoFieldDefined);
  table->Fields()->Append(table->CreateField("A", dao::dbInteger));
  EXPECT_RAISES(table->Fields()->Append(table->CreateField("a", dao::dbText)), kObjectExists);
  EXPECT_RAISES(table->Fields()->Append(table->CreateField("A.B", dao::dbText)), kInvalidName);

  auto untyped = db->CreateTableDef("U");
  untyped->Fields()->Append(untyped->CreateField("X"));
  EXPECT_RAISES(db->TableDefs()->Append(untyped), kInvalidFieldType);
  auto bad_default = db->CreateTableDef("V");
  auto field = bad_default->CreateField("X", dao::dbInteger);
  field->SetDefaultValue("40000");
  bad_default->Fields()->Append(field);
  EXPECT_RAISES(db->TableDefs()->Append(bad_default), kNumericOverflow);
  auto bad_name = db->CreateTableDef("sqlite_master");
  bad_name->Fields()->Append(bad_name->CreateField("X", dao::dbInteger));
  EXPECT_RAISES(db->TableDefs()->Append(bad_name), kInvalidName);

  EXPECT_EQ(db->TableDefs()->Count(), 3);  // the catalogue's own tables only
  db->TableDefs()->Append(table);
  EXPECT_RAISES(db->TableDefs()->Append(table), kObjectExists);
  EXPECT_EQ(db->TableDefs()->Count(), 4);
  EXPECT_RAISES(db->TableDefs()->Item(4), kItemNotFound);
  EXPECT_RAISES(db->TableDefs()->Item("NOPE"), kItemNotFound);
}

TEST_F(DatabaseTest, HandlesShareOneConnectionAndCloseOnTheirOwn) {
  auto first = Create("SELUVORN.mdb");
  AddFloorTable(*first, "KUTAIDATA");
  auto second = Open("SELUVORN.mdb");
  AddRow(*first, "KUTAIDATA", 3, 0, 0, "seen");
  auto rs = second->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenDynaset);
  EXPECT_EQ(rs->Value("DATA"), vb::Variant("seen"));
  auto tables = second->TableDefs();
  auto table = tables->Item("KUTAIDATA");

  second->Close();
  EXPECT_RAISES(rs->IsEOF(), kObjectInvalid);
  EXPECT_RAISES(rs->Value("DATA"), kObjectInvalid);
  EXPECT_RAISES(tables->Count(), kObjectInvalid);
  EXPECT_RAISES(table->Fields(), kObjectInvalid);
  EXPECT_RAISES(second->Close(), kObjectInvalid);
  EXPECT_RAISES(second->Execute("DELETE * FROM KUTAIDATA ;"), kObjectInvalid);
  EXPECT_EQ(CountRows(*first, "SELECT * FROM KUTAIDATA;"), 1);  // the other handle works on
}

TEST_F(DatabaseTest, TablesAppendedByAnotherConnectionAppearInTableDefs) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  {
    // Another connection (as another process would have) adds a table.
    SQLite::Database other(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE);
    other.exec("CREATE TABLE \"X\" (A INTEGER)");
    other.exec(
        "INSERT INTO MSysTables VALUES ('X', 'X', 9); "
        "INSERT INTO MSysFields VALUES ('X', 0, 'A', 3, 2, '', 0)");
  }
  EXPECT_EQ(db->TableDefs()->Count(), 5);
  EXPECT_EQ(db->TableDefs()->Item(4)->Name(), "X");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM X;"), 0);
}

}  // namespace
}  // namespace seluvorne::testing
