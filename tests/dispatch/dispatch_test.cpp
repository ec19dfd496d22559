// Late-bound calls through a member table: arguments by reference, and the
// errors of a call that cannot be made.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/member_table.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::errc;
using vb::Variant;

// A second class, for objects passed by reference with their type.
class Shelf : public DispatchImpl<Shelf> {
 public:
  static const MemberTable<Shelf>& Members() {
    static const auto table = MemberTable<Shelf>("Shelf");
    return table;
  }
};

// A small component declared through a member table, the way the library's
// classes declare theirs.
class Gauge : public DispatchImpl<Gauge> {
 public:
  static const MemberTable<Gauge>& Members() {
    static const auto table = MemberTable<Gauge>("Gauge")
                                  .method("Bump", &Gauge::Bump)
                                  .method("Sum", &Gauge::Sum)
                                  .method("Restock", &Gauge::Restock)
                                  .get("Value", &Gauge::Value)
                                  .field("pPageNo", &Gauge::pPageNo)
                                  .defaultMember("Value");
    return table;
  }

  std::int16_t pPageNo = -1;

  std::string Bump(std::int16_t& count, std::string& label) {
    count = vb::Add<std::int16_t>(count, 1);
    return label += "!";
  }
  std::int32_t Sum(std::int16_t a, std::optional<std::int16_t> b) { return a + b.value_or(100); }
  // A typed object by reference: answers whether one came in, leaves a new one.
  bool Restock(std::shared_ptr<Shelf>& shelf) {
    const bool given = shelf != nullptr;
    shelf = std::make_shared<Shelf>();
    return given;
  }
  std::int16_t Value() const { return 42; }
};

class DispatchTest : public testing::Test {
 protected:
  void SetUp() override {
    Register("Test.Gauge", [] { return std::make_shared<Gauge>(); });
    gauge = CreateObject("test.GAUGE");
  }
  void TearDown() override { Unregister("Test.Gauge"); }

  Object gauge;
};

TEST_F(DispatchTest, ByReferenceArgumentsAreWrittenBackAsTheParametersType) {
  std::vector<Variant> args{Variant(std::int32_t{5}), Variant(3.0)};  // converted copies
  EXPECT_EQ(Invoke(gauge, "bump", CallKind::Method, args), Variant("3!"));
  EXPECT_EQ(args[0], Variant(std::int16_t{6}));
  EXPECT_EQ(args[1], Variant("3!"));

  std::int16_t count = 9;
  std::string label = "x";
  EXPECT_EQ(CallByName(gauge, "Bump", CallKind::Method, Ref(count), Ref(label)), Variant("x!"));
  EXPECT_EQ(count, 10);
  EXPECT_EQ(label, "x!");
}

// What a refused argument's error says: the standard text first, then the
// member, the argument's position, its value and what the parameter takes.
TEST_F(DispatchTest, MismatchesNameTheMemberTheArgumentAndItsValue) {
  const vb::Array<std::int16_t> array{1};
  const struct {
    const char* member;
    CallKind kind;
    std::vector<Variant> args;
    const char* said;  // after "Type mismatch (Gauge.<member>: "
  } cases[] = {
      {"pPageNo",
       CallKind::PropertyPut,
       {"abc"},
       "argument 1 (value 'abc') is not a 16-bit number)"},
      {"Sum", CallKind::Method, {1, "x"}, "argument 2 (value 'x') is not a 16-bit number)"},
      {"Sum", CallKind::Method, {array}, "argument 1 (an array) is not a 16-bit number)"},
      {"Bump", CallKind::Method, {1, array}, "argument 2 (an array) is not a text)"},
      {"Restock", CallKind::Method, {2.5}, "argument 1 (value 2.5) is not an object)"}};
  for (const auto& c : cases) {
    std::vector<Variant> args = c.args;
    const std::string source = std::string("Gauge.") + c.member;
    try {
      Invoke(gauge, c.member, c.kind, args);
      ADD_FAILURE() << source << " took " << c.said;
    } catch (const Error& error) {
      EXPECT_EQ(error.number, kTypeMismatch) << c.said;
      EXPECT_EQ(error.source, source);
      EXPECT_EQ(error.description, "Type mismatch (" + source + ": " + c.said);
    }
  }
}

}  // namespace
