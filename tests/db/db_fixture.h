// A scratch folder per test and the floor-table shape the stores use.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "error_matchers.h"
#include "seluvorne/dao.h"

namespace seluvorne::testing {

namespace dao = seluvorne::dao;

class DbTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "seluvorne-db-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  // A path in the scratch folder, as the stores name files.
  std::string PathOf(const std::string& file) const { return folder_.string() + "/" + file; }
  std::shared_ptr<dao::Database> Create(const std::string& file) const {
    return dao::DBEngine::Instance()->CreateDatabase(PathOf(file),
                                                     std::string(dao::dbLangJapanese));
  }
  std::shared_ptr<dao::Database> Open(const std::string& file) const {
    return dao::DBEngine::Instance()->OpenDatabase(PathOf(file));
  }

  // A table of the floor kind: PAGE, SUBPAGE, BANGOU (default -1), then DATA.
  static void AddFloorTable(dao::Database& db, const std::string& name,
                            std::int32_t data_size = 200) {
    auto table = db.CreateTableDef(name);
    for (const char* integer : {"PAGE", "SUBPAGE", "BANGOU"}) {
      auto field = table->CreateField(integer, dao::dbInteger);
      field->SetDefaultValue("-1");
      table->Fields()->Append(field);
    }
    auto data = table->CreateField("DATA", dao::dbText, data_size);
    data->SetAllowZeroLength(true);
    table->Fields()->Append(data);
    db.TableDefs()->Append(table);
  }

  static void AddRow(dao::Database& db, const std::string& table, std::int16_t page,
                     std::int16_t subpage, std::int16_t bangou, vb::Variant data) {
    auto rs = db.OpenRecordset(table, dao::dbOpenDynaset);
    rs->AddNew();
    rs->SetValue("PAGE", page);
    rs->SetValue("SUBPAGE", subpage);
    rs->SetValue("BANGOU", bangou);
    rs->SetValue("DATA", std::move(data));
    rs->Update();
  }

  // What SQLite itself answers to `sql` on `file`, past the library: an
  // integrity check, the journal mode.
  std::string AskSqlite(const std::string& file, const std::string& sql) const {
    SQLite::Database sqlite(PathOf(file), SQLite::OPEN_READONLY);
    return sqlite.execAndGet(sql).getString();
  }

  // Runs `work` in a child process; its result is the child's exit status.
  template <class F>
  static pid_t Fork(F work) {
    pid_t child = ::fork();
    if (child == 0) {
      int status = 1;
      try {
        status = work();
      } catch (...) {
      }
      ::_exit(status);
    }
    return child;
  }
  // The exit status of a child, -1 when it did not exit.
  static int ExitStatus(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static std::int32_t CountRows(dao::Database& db, const std::string& sql) {
    auto rs = db.OpenRecordset(sql, dao::dbOpenSnapshot);
    if (!rs->IsEOF()) rs->MoveLast();
    return rs->RecordCount();
  }

  std::filesystem::path folder_;
};

// An open database whose KUTAIDATA holds page 3 (SUBPAGE and BANGOU 0 to 4,
// DATA "d0" to "d4") and one row of page 4.
class PageTest : public DbTest {
 protected:
  void SetUp() override {
    DbTest::SetUp();
    db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
    for (std::int16_t row = 0; row < 5; ++row)
      AddRow(*db, "KUTAIDATA", 3, row, row, "d" + vb::StrTrimmed(row));
    AddRow(*db, "KUTAIDATA", 4, 0, 0, "other page");
  }
  std::shared_ptr<dao::Database> db;
};

}  // namespace seluvorne::testing
