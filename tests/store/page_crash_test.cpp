// A process killed in the middle of a page writer, of WriteDB or of a page
// copy leaves every page as it was before the member or complete, never
// half-written: a child writes pages one member at a time and is killed
// at a random moment; the parent then reads every page.
//
// Rounds per scenario: SELUVORNE_CRASH_ROUNDS (2 when unset; `make
// crash-pages` runs many).

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <random>

#include "page_test.h"
#include "seluvorne/sample_pages.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::kPageTables;
using seluvorne::testing::PageTest;
using seluvorne::testing::RowsOf;

constexpr std::int16_t kFirstPage = 10, kLastPage = 150;

int Rounds() {
  const char* text = std::getenv("SELUVORNE_CRASH_ROUNDS");
  return text ? std::max(1, std::atoi(text)) : 2;
}

using Tables = std::vector<std::vector<std::string>>;  // per table, TOORIMEI last

Tables PageOf(dao::Database& db, std::int16_t page) {
  Tables tables;
  for (const std::string& table : kPageTables)
    tables.push_back(RowsOf(db, table, page));
  tables.push_back(RowsOf(db, "TOORIMEI", page));
  return tables;
}

enum class Whole { kPage, kTable };  // what one member writes

class PageCrashTest : public PageTest {
 protected:
  // Reference page 0 on floor 1-2-3, written by the writers; every handle
  // closed, so the child opens its own connections.
  void SetUp() override {
    PageTest::SetUp();
    texts = sample::TypicalPage(0);
    sample::WritePage(*service, 0, texts);
    reference = PageOf(*service->WriteOpenDb, 0);
    service->WriteOpenDb->Close();
    service.reset();
  }

  // Runs `member(page)` for the pages in a child, each page's end reported
  // through a pipe; kills it after a few pages at a random moment, then checks
  // the pages of `check_folder`.
  void KillRounds(
      const std::string& check_folder, Whole whole, const std::function<void(std::int16_t)>& member,
      const std::function<void()>& prepare = [] {}) {
    std::mt19937 random(12345);
    std::int16_t next = kFirstPage;
    for (int round = 0; round < Rounds() && next < kLastPage - 10; ++round) {
      int pipe_ends[2];
      ASSERT_EQ(::pipe(pipe_ends), 0);
      const std::int16_t first = next;
      const pid_t child = ::fork();
      ASSERT_GE(child, 0);
      if (child == 0) {
        ::close(pipe_ends[0]);
        prepare();
        for (std::int16_t page = first; page < kLastPage; ++page) {
          member(page);
          const char done = 1;
          if (::write(pipe_ends[1], &done, 1) != 1) break;
        }
        ::_exit(0);
      }
      ::close(pipe_ends[1]);
      const int pages_before_kill = 1 + static_cast<int>(random() % 3);
      char done;
      for (int seen = 0; seen < pages_before_kill && ::read(pipe_ends[0], &done, 1) == 1; ++seen) {
      }
      ::usleep(random() % 4000);  // somewhere inside the next member
      ::kill(child, SIGKILL);
      int status = 0;
      ::waitpid(child, &status, 0);
      int completed = pages_before_kill;
      while (::read(pipe_ends[0], &done, 1) == 1)
        ++completed;
      ::close(pipe_ends[0]);
      next = static_cast<std::int16_t>(first + completed + 1);  // the killed page left behind

      clsSeluVorneDataService reader;
      reader.WriteOpen(check_folder);
      for (std::int16_t page = first; page < next; ++page) {
        const Tables found = PageOf(*reader.WriteOpenDb, page);
        if (whole == Whole::kPage) {
          const bool empty = std::all_of(found.begin(), found.end(),
                                         [](const auto& rows) { return rows.empty(); });
          EXPECT_TRUE(empty || found == reference) << "page " << page << " is half-written";
        } else {
          for (std::size_t t = 0; t < found.size(); ++t)
            EXPECT_TRUE(found[t].empty() || found[t] == reference[t])
                << "page " << page << " table " << t << " is half-written";
        }
      }
      reader.WriteOpenDb->Close();
    }
  }

  sample::PageTexts texts;
  Tables reference;
};

TEST_F(PageCrashTest, AKilledWriterLeavesEachTableOfAPageEmptyOrComplete) {
  KillRounds(folder, Whole::kTable, [&](std::int16_t page) {
    clsSeluVorneDataService writer;
    writer.WriteOpen(folder);
    sample::WritePage(writer, page, texts);
  });
}

TEST_F(PageCrashTest, AKilledWriteDBLeavesEachPageAsBeforeOrComplete) {
  clsSeluVorneDataService copier;
  KillRounds(
      folder, Whole::kPage,
      [&](std::int16_t page) {
        copier.pPageNo = page;
        copier.WriteDB();
      },
      [&] {
        copier.WriteOpen(folder);
        copier.KutaiDb = copier.WriteOpenDb;
        copier.pPageNo = 0;
        copier.ReadDB();
      });
}

TEST_F(PageCrashTest, AKilledPageCopyLeavesEachPageAsBeforeOrComplete) {
  const std::string destination = MakeFloorFolder(1, 2, 4);
  clsSeluVorneDataService copier;
  KillRounds(destination, Whole::kPage,
             [&](std::int16_t page) { copier.No_Copy1Page(1, 2, 3, 0, 1, 2, 4, page); });
}

}  // namespace
