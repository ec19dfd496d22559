// The reader's stream format: what it accepts, and every way it refuses.

#include "legacy/jet_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace seluvorne::legacy {
namespace {

constexpr std::string_view kTable =
    "H 1 4 932\nT 1:A 2 2\nF 4:PAGE 3 2 2:-1 0\nF 4:DATA 10 3 - 1\n";

struct Malformed {
  const char* name;
  std::string stream;
  const char* message;
};

class JetStreamRefuses : public ::testing::TestWithParam<Malformed> {};

TEST_P(JetStreamRefuses, WithTheLineAtFault) {
  EXPECT_THAT([this] { ParseJetStream(GetParam().stream); },
              ::testing::ThrowsMessage<StreamError>(::testing::HasSubstr(GetParam().message)));
}

const std::string kRows = std::string(kTable);

INSTANTIATE_TEST_SUITE_P(
    Cases, JetStreamRefuses,
    ::testing::Values(
        Malformed{"Empty", "", "cut off after line 0"},
        Malformed{"NoHeader", "Z\n", "does not start with its header"},
        Malformed{"StreamVersion", "H 2 4 932\nZ\n", "stream version out of range"},
        Malformed{"JetVersion", "H 1 5 932\nZ\n", "Jet version out of range"},
        Malformed{"NoNewline", "H 1 4 932\nZ", "cut off"},
        Malformed{"EmptyLine", "H 1 4 932\n\nZ\n", "empty"},
        Malformed{"TwoBlanks", "H 1  4 932\nZ\n", "bad Jet version"},
        Malformed{"LeadingZero", "H 1 04 932\nZ\n", "bad Jet version"},
        Malformed{"TrailingText", "H 1 4 932 x\nZ\n", "unexpected text"},
        Malformed{"HelperGaveUp", "H 1 4 932\nX 4:oops\n", "the reader stopped: oops"},
        Malformed{"UnknownLine", "H 1 4 932\nQ\nZ\n", "unknown line"},
        Malformed{"TextAfterEnd", "H 1 4 932\nZ\nZ\n", "text after the end"},
        Malformed{"NoFields", "H 1 4 932\nT 1:A 0 0\nZ\n", "field count out of range"},
        Malformed{"EmptyName", "H 1 4 932\nT 0: 0 1\nZ\n", "empty table name"},
        Malformed{"NullName", "H 1 4 932\nT - 0 1\nZ\n", "table name cannot be Null"},
        Malformed{"CountPastLine", "H 1 4 932\nT 9:A 0 1\nZ\n", "table name cut off"},
        Malformed{"CountWithoutColon", "H 1 4 932\nT 1 A 0 1\nZ\n", "bad table name"},
        Malformed{"HugeCount", "H 1 4 932\nT 99999999999999999999:A 0 1\nZ\n", "bad table name"},
        Malformed{"BadUtf8", "H 1 4 932\nT 1:\xff 0 1\nZ\n", "not UTF-8"},
        Malformed{"Surrogate", "H 1 4 932\nT 3:\xed\xa0\x80 0 1\nZ\n", "not UTF-8"},
        Malformed{"CutUtf8", "H 1 4 932\nT 2:\xe3\x81 0 1\nZ\n", "not UTF-8"},
        Malformed{"TableInTable", "H 1 4 932\nT 1:A 0 1\nT 1:B 0 1\n", "inside another"},
        Malformed{"FieldType", "H 1 4 932\nT 1:A 0 1\nF 1:P 4 4 - 0\n", "has type 4"},
        Malformed{"TextSize", "H 1 4 932\nT 1:A 0 1\nF 1:P 10 0 - 0\n", "has size 0"},
        Malformed{"FlagTwo", "H 1 4 932\nT 1:A 0 1\nF 1:P 3 2 - 2\n", "flag out of range"},
        Malformed{"ExtraField", "H 1 4 932\nT 1:A 0 1\nF 1:P 3 2 - 0\nF 1:Q 3 2 - 0\n",
                  "a field out of place"},
        Malformed{"RowBeforeFields", "H 1 4 932\nT 1:A 0 2\nF 1:P 3 2 - 0\nR 1:1\n",
                  "a row out of place"},
        Malformed{"ShortRow", kRows + "R 1:0\n", "missing field"},
        Malformed{"LongRow", kRows + "R 1:0 - -\n", "unexpected text"},
        Malformed{"IntegerText", kRows + "R 2:1x -\n", "is no number"},
        Malformed{"IntegerRange", kRows + "R 5:40000 -\n", "integer value out of range"},
        Malformed{"TextTooLong", kRows + "R 1:0 4:abcd\n", "longer than field DATA"},
        Malformed{"RowsMiscounted", kRows + "R 1:0 -\nE 2\nZ\n", "does not match its rows"},
        Malformed{"EndInTable", kRows + "R 1:0 -\nZ\n", "ends inside a table"}),
    [](const ::testing::TestParamInfo<Malformed>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace seluvorne::legacy
