// Sample beam pages: the rows of realistic pages of a floor file, for the
// benchmarks, the tests and the demonstrations.
//
// A typical page has six spans on columns of unequal widths, eccentric
// beams, haunches, change points, stirrup sizes, span-top and end-joint
// values, and anchorage entries in all five groups (BAN 0..249) for every
// column face: about 2,700 rows over the ten page tables, laid out as the
// page writers lay them out.
//
//   auto db = dao::DBEngine::Instance()->OpenDatabase(file);   // a floor file
//   sample::FillFloor(*db, 500);                                // pages 0..499
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/dao.h"

namespace seluvorne::sample {

// One row of a page table. BAN is -1 for the tables without that field;
// TOORIMEI rows carry TOORI in `data` and KASYO in `kasyo`.
struct Row {
  std::string_view table;
  std::int16_t subpage = -1;
  std::int16_t bangou = -1;
  std::int16_t ban = -1;
  std::string data;
  std::string kasyo;
};

// The rows of a typical page of `spans` spans (1..20); `variant` varies the
// sizes, names and levels.
std::vector<Row> TypicalPage(std::int16_t spans, int variant);

// Adds `rows` as page `page`, one row at a time through the engine.
void AddRows(dao::Database& db, std::int16_t page, std::span<const Row> rows);

// Fills pages 0..pages-1 of an open floor file with typical pages of six
// spans (four variants): the first pages are written row by row, the others
// copied from them with one statement per table.
void FillFloor(dao::Database& db, std::int16_t pages);

}  // namespace seluvorne::sample
