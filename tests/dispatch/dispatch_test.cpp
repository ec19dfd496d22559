// Late-bound calls through a member table: the registry, arguments by value and
// by reference, coercion, and the errors of a call that cannot be made.

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

  template <class... A>
  Variant Call(std::string_view name, A... args) {
    std::vector<Variant> list{Variant(args)...};
    return Invoke(gauge, name, CallKind::Method, list);
  }

  Object gauge;
};

TEST_F(DispatchTest, RegistryCreatesByNameWithoutRegardToCase) {
  EXPECT_NE(CreateObject("Test.Gauge"), gauge);  // a new object each time
  EXPECT_RAISES(CreateObject("Test.Missing"), kCannotCreateObject);
  EXPECT_TRUE(Unregister("test.gauge"));
  EXPECT_RAISES(CreateObject("Test.Gauge"), kCannotCreateObject);
}

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

TEST_F(DispatchTest, TypedObjectsByReferenceAreWrittenBackAsObjects) {
  std::vector<Variant> args(1);  // Empty: Nothing
  EXPECT_EQ(Invoke(gauge, "Restock", CallKind::Method, args), Variant(false));
  const Object given = vb::CObj(args[0]);
  ASSERT_TRUE(std::dynamic_pointer_cast<Shelf>(given));
  EXPECT_EQ(Invoke(gauge, "Restock", CallKind::Method, args), Variant(true));
  EXPECT_NE(vb::CObj(args[0]), given);
  args[0] = Variant(gauge);  // an object of another class
  EXPECT_RAISES(Invoke(gauge, "Restock", CallKind::Method, args), kTypeMismatch);
  EXPECT_EQ(args[0], Variant(gauge));
}

TEST_F(DispatchTest, ArgumentsAreCoercedWithTheRuntimesRules) {
  EXPECT_EQ(Call("Sum", "12", 2.5), Variant(std::int32_t{14}));  // 2.5 rounds to 2
  EXPECT_EQ(Call("Sum", 1), Variant(std::int32_t{101}));         // optional left out
  EXPECT_RAISES(Call("Sum", "abc"), kTypeMismatch);
  EXPECT_RAISES(Call("Sum", 40000), kOverflow);
  EXPECT_RAISES(Call("Sum", Variant(vb::Null)), kInvalidUseOfNull);
  EXPECT_RAISES(Call("Sum"), kWrongArgumentCount);
  std::vector<Variant> page{Variant("12")};
  Invoke(gauge, "ppageno", CallKind::PropertyPut, page);
  EXPECT_EQ(Invoke(gauge, "pPageNo", CallKind::PropertyGet, {}), Variant(std::int16_t{12}));
  EXPECT_EQ(vb::CInt(Variant(gauge)), 42);  // an object used as a value answers Value
}

TEST_F(DispatchTest, UnknownMembersAndEmptyReferences) {
  EXPECT_RAISES(Call("NoSuchMember"), kMemberNotSupported);
  std::vector<Variant> value{Variant(1)};
  EXPECT_RAISES(Invoke(gauge, "Value", CallKind::PropertyPut, value), kMemberNotSupported);
  EXPECT_RAISES(Invoke(nullptr, "Value", CallKind::PropertyGet, {}), kObjectNotSet);
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

TEST_F(DispatchTest, AnUnregisteredNameSaysHowToRegisterIt) {
  using ::testing::HasSubstr;
  EXPECT_RAISES_THAT(
      CreateObject("FolderKit.clsExistProbe"), kCannotCreateObject,
      ::testing::AllOf(::testing::StartsWith("ActiveX component can't create object "
                                             "(FolderKit.clsExistProbe is not registered:"),
                       HasSubstr("Register("), HasSubstr("seluvorne.register("),
                       HasSubstr("RegisterStandaloneComponents("),
                       HasSubstr("seluvorne.register_standalone(")));
}

}  // namespace
