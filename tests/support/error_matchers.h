// Assertions on the library's Error: the number a statement raises, and what
// its description says.
#pragma once

#include <gmock/gmock.h>

#include "seluvorne/error.h"

// EXPECT_RAISES_THAT(statement, number, matcher): `statement` throws
// seluvorne::Error with `number` and a description that `matcher` accepts.
#define EXPECT_RAISES_THAT(statement, expected_number, description_matcher)  \
  EXPECT_THROW(                                                              \
      {                                                                      \
        try {                                                                \
          statement;                                                         \
        } catch (const seluvorne::Error& raised) {                           \
          EXPECT_EQ(raised.number, (expected_number)) << raised.description; \
          EXPECT_THAT(raised.description, (description_matcher));            \
          throw;                                                             \
        }                                                                    \
      },                                                                     \
      seluvorne::Error)

// EXPECT_RAISES(statement, number): `statement` throws seluvorne::Error with `number`.
#define EXPECT_RAISES(statement, expected_number) \
  EXPECT_RAISES_THAT(statement, expected_number, ::testing::_)
