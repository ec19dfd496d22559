// Assertions on the library's Error: the number a statement raises.
#pragma once

#include <gmock/gmock.h>

#include "seluvorne/error.h"

// EXPECT_RAISES(statement, number): `statement` throws seluvorne::Error with `number`.
#define EXPECT_RAISES(statement, expected_number)                            \
  EXPECT_THROW(                                                              \
      {                                                                      \
        try {                                                                \
          statement;                                                         \
        } catch (const seluvorne::Error& raised) {                           \
          EXPECT_EQ(raised.number, (expected_number)) << raised.description; \
          throw;                                                             \
        }                                                                    \
      },                                                                     \
      seluvorne::Error)
