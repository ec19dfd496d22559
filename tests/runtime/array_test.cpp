#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/array.h"

namespace {

using seluvorne::errc::kSubscriptOutOfRange;

TEST(Array, UnallocatedAndOutOfBoundsRaiseNine) {
  vb::Array<std::int16_t> a;
  EXPECT_FALSE(a.allocated());
  EXPECT_RAISES(a.UBound(), kSubscriptOutOfRange);
  EXPECT_RAISES(a(0), kSubscriptOutOfRange);
  a.ReDim({3});
  EXPECT_EQ(a.UBound(), 3);
  EXPECT_EQ(a.size(), 4u);
  EXPECT_EQ(a(3), 0);
  EXPECT_RAISES(a(4), kSubscriptOutOfRange);
  EXPECT_RAISES(a(-1), kSubscriptOutOfRange);
  EXPECT_RAISES(a(0, 0), kSubscriptOutOfRange);  // wrong number of indices
  EXPECT_RAISES(a.UBound(2), kSubscriptOutOfRange);
  EXPECT_RAISES(a.ReDim({-2}), kSubscriptOutOfRange);
}

TEST(Array, ReDimPreserveKeepsElementsAndOnlyMovesTheLastBound) {
  vb::Array<std::string> fields_by_row({5, 1});  // (field, row), as GetRows fills it
  for (int f = 0; f <= 5; ++f)
    for (int r = 0; r <= 1; ++r)
      fields_by_row(f, r) = std::to_string(f * 10 + r);
  fields_by_row.ReDimPreserve({5, 3});
  EXPECT_EQ(fields_by_row.UBound(2), 3);
  EXPECT_EQ(fields_by_row(5, 1), "51");
  EXPECT_EQ(fields_by_row(0, 0), "0");
  EXPECT_EQ(fields_by_row(2, 3), "");
  fields_by_row.ReDimPreserve({5, 0});
  EXPECT_EQ(fields_by_row(4, 0), "40");
  EXPECT_RAISES(fields_by_row.ReDimPreserve({6, 0}), kSubscriptOutOfRange);
  EXPECT_RAISES(fields_by_row.ReDimPreserve({5, 0, 0}), kSubscriptOutOfRange);

  fields_by_row.ReDim({2});  // ReDim discards
  EXPECT_EQ(fields_by_row.dims(), 1);
  EXPECT_EQ(fields_by_row(0), "");
}

TEST(Array, ThreeDimensionsAndBooleans) {
  vb::Array<bool> cube({1, 2, 3});
  cube(1, 2, 3) = true;
  EXPECT_EQ(cube.size(), 24u);
  EXPECT_TRUE(cube.end()[-1]);  // first index varies fastest: (1,2,3) is stored last
  vb::Array<bool> copy = cube;
  cube(1, 2, 3) = false;
  EXPECT_TRUE(copy(1, 2, 3));
  EXPECT_FALSE(copy == cube);
}

TEST(Array, EmptyDimension) {
  vb::Array<std::string> none({-1});
  EXPECT_TRUE(none.allocated());
  EXPECT_EQ(none.UBound(), -1);
  EXPECT_RAISES(none(0), kSubscriptOutOfRange);
}

}  // namespace
