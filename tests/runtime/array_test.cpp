#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/array.h"

namespace {

using seluvorne::errc::kSubscriptOutOfRange;

TEST(Array, ReDimPreserveKeepsElementsAndOnlyMovesTheLastBound) {
  vb::Array<std::string> fields_by_row({5, 1});  // (field, row), as GetRows fills it
  for (int f = 0; f <= 5; ++f)
    for (int r = 0; r <= 1; ++r)
      fields_by_row(f, r) = std::to_string(f * 10 + r);
  EXPECT_EQ(fields_by_row.end()[-1], "51");  // the first index varies fastest
  fields_by_row.ReDimPreserve({5, 3});
  EXPECT_EQ(fields_by_row(5, 1), "51");
  EXPECT_EQ(fields_by_row(2, 3), "");
  fields_by_row.ReDimPreserve({5, 0});
  EXPECT_EQ(fields_by_row(4, 0), "40");
  EXPECT_RAISES(fields_by_row.ReDimPreserve({6, 0}), kSubscriptOutOfRange);
  vb::Array<std::string> copy = fields_by_row;  // a copy owns its elements
  fields_by_row.ReDim({2});                     // ReDim discards
  EXPECT_EQ(fields_by_row(0), "");
  EXPECT_EQ(copy(0, 0), "0");
}

}  // namespace
