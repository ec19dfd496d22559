#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/member_table.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::errc;
using vb::Variant;

// A small component declared through a member table, the way the library's
// classes declare theirs.
class Gauge : public DispatchImpl<Gauge> {
 public:
  static const MemberTable<Gauge>& Members() {
    static const auto table = MemberTable<Gauge>("Gauge")
                                  .method("Bump", &Gauge::Bump)
                                  .method("Fill", &Gauge::Fill)
                                  .method("Sum", &Gauge::Sum)
                                  .method("Fail", &Gauge::Fail)
                                  .method("Crash", &Gauge::Crash)
                                  .method("Me", &Gauge::Me)
                                  .method("Restock", &Gauge::Restock)
                                  .get("Label", &Gauge::GetLabel)
                                  .put("Label", &Gauge::LetLabel)
                                  .get("Value", &Gauge::Value)
                                  .field("pPageNo", &Gauge::pPageNo)
                                  .defaultMember("Value");
    return table;
  }

  std::int16_t pPageNo = -1;

  std::string Bump(std::int16_t& count, std::string& label) {
    count = vb::Add<std::int16_t>(count, 1);
    label += "!";
    return label;
  }
  bool Fill(vb::Array<std::int16_t>& values) {
    values.ReDim({3});
    for (std::int16_t i = 0; i <= 3; ++i)
      values(i) = static_cast<std::int16_t>(i * 10);
    return true;
  }
  std::int32_t Sum(std::int16_t a, std::optional<std::int16_t> b) { return a + b.value_or(100); }
  void Fail(std::int16_t& touched) {
    touched = 7;
    Raise(kNoCurrentRecord);
  }
  void Crash() { throw std::runtime_error("boom"); }
  Object Me() { return shared_from_this(); }
  // A typed object by reference: answers whether one came in, leaves a new one.
  bool Restock(std::shared_ptr<class Shelf>& shelf);
  std::string GetLabel(std::int16_t index) const { return labels_[index & 1]; }
  void LetLabel(std::int16_t index, std::string value) { labels_[index & 1] = std::move(value); }
  std::int16_t Value() const { return 42; }

 private:
  std::string labels_[2];
};

// A collection whose default member takes the index, as Fields and TableDefs do.
class Shelf : public DispatchImpl<Shelf> {
 public:
  static const MemberTable<Shelf>& Members() {
    static const auto table =
        MemberTable<Shelf>("Shelf").get("Item", &Shelf::Item).defaultMember("Item");
    return table;
  }
  std::string Item(std::int16_t index) const { return "item " + vb::StrTrimmed(index); }
};

bool Gauge::Restock(std::shared_ptr<Shelf>& shelf) {
  bool given = shelf != nullptr;
  shelf = std::make_shared<Shelf>();
  return given;
}

class Holder : public DispatchImpl<Holder> {
 public:
  static const MemberTable<Holder>& Members() {
    static const auto table =
        MemberTable<Holder>("Holder").get("Shelf", &Holder::GetShelf).get("Count", &Holder::Count);
    return table;
  }
  std::shared_ptr<Shelf> GetShelf() const { return std::make_shared<Shelf>(); }
  std::int16_t Count() const { return 2; }
};

TEST(DefaultMemberTest, ArgumentsOfAMemberWithoutParametersGoToItsResultsDefaultMember) {
  Object holder = std::make_shared<Holder>();
  std::vector<Variant> index{Variant(std::int16_t{3})};
  EXPECT_EQ(Invoke(holder, "Shelf", CallKind::PropertyGet, index), Variant("item 3"));
  EXPECT_EQ(Invoke(holder, "shelf", CallKind::Method, index), Variant("item 3"));
  EXPECT_RAISES(Invoke(holder, "Count", CallKind::PropertyGet, index), kWrongArgumentCount);
  std::vector<Variant> two{Variant(1), Variant(2)};
  EXPECT_RAISES(Invoke(holder, "Shelf", CallKind::PropertyGet, two), kWrongArgumentCount);
}

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
  EXPECT_TRUE(IsRegistered("TEST.gauge"));
  EXPECT_NE(CreateObject("Test.Gauge"), gauge);  // a new object each time
  EXPECT_RAISES(CreateObject("Test.Missing"), kCannotCreateObject);
  EXPECT_TRUE(Unregister("test.gauge"));
  EXPECT_FALSE(Unregister("test.gauge"));
  EXPECT_RAISES(CreateObject("Test.Gauge"), kCannotCreateObject);
}

TEST_F(DispatchTest, ByReferenceArgumentsAreWrittenBack) {
  std::vector<Variant> args{Variant(std::int16_t{1}), Variant("a")};
  Variant result = Invoke(gauge, "bump", CallKind::Method, args);
  EXPECT_EQ(result, Variant("a!"));
  EXPECT_EQ(args[0], Variant(std::int16_t{2}));
  EXPECT_EQ(args[1], Variant("a!"));

  // A value of another type is converted in and written back as the parameter's type.
  args = {Variant(std::int32_t{5}), Variant(3.0)};
  Invoke(gauge, "Bump", CallKind::Method, args);
  EXPECT_EQ(args[0], Variant(std::int16_t{6}));
  EXPECT_EQ(args[1], Variant("3!"));
}

TEST_F(DispatchTest, ArraysByReferenceAreDimensionedByTheCallee) {
  std::vector<Variant> args(1);  // Empty: not yet dimensioned
  EXPECT_EQ(Invoke(gauge, "Fill", CallKind::Method, args), Variant(true));
  ASSERT_EQ(args[0].arrayElementType(), vb::VarType::Integer);
  EXPECT_EQ(args[0].array<std::int16_t>().UBound(), 3);
  EXPECT_EQ(args[0].array<std::int16_t>()(3), 30);

  args[0] = Variant(vb::Array<std::string>({0}));  // another element type: mismatch
  args[0].array<std::string>()(0) = "x";
  EXPECT_RAISES(Invoke(gauge, "Fill", CallKind::Method, args), kTypeMismatch);
}

TEST_F(DispatchTest, TypedObjectsByReferenceAreWrittenBackAsObjects) {
  std::vector<Variant> args(1);  // Empty: Nothing
  EXPECT_EQ(Invoke(gauge, "Restock", CallKind::Method, args), Variant(false));
  const Object* first = args[0].peek<Object>();
  ASSERT_TRUE(first && std::dynamic_pointer_cast<Shelf>(*first));
  const Object given = *first;
  EXPECT_EQ(Invoke(gauge, "Restock", CallKind::Method, args), Variant(true));
  EXPECT_NE(*args[0].peek<Object>(), given);

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
  EXPECT_RAISES(Call("Sum", 1, 2, 3), kWrongArgumentCount);
}

TEST_F(DispatchTest, UnknownMembersAndEmptyReferences) {
  EXPECT_RAISES(Call("NoSuchMember"), kMemberNotSupported);
  std::vector<Variant> value{Variant(1)};
  EXPECT_RAISES(Invoke(gauge, "Value", CallKind::PropertyPut, value), kMemberNotSupported);
  EXPECT_RAISES(Invoke(nullptr, "Value", CallKind::PropertyGet, {}), kObjectNotSet);
  try {
    Call("Nope");
  } catch (const Error& error) {
    EXPECT_EQ(error.description, "Object doesn't support this property or method");
    EXPECT_EQ(error.source, "Gauge.Nope");
  }
}

TEST_F(DispatchTest, ErrorsPassThroughAndByReferenceChangesSurviveThem) {
  std::vector<Variant> args{Variant(std::int32_t{0})};  // converted copy, written back on raise
  EXPECT_RAISES(Invoke(gauge, "Fail", CallKind::Method, args), kNoCurrentRecord);
  EXPECT_EQ(args[0], Variant(std::int16_t{7}));
  EXPECT_RAISES(Call("Crash"), kAutomationError);
}

TEST_F(DispatchTest, PropertiesFieldsAndTheDefaultMember) {
  std::vector<Variant> put{Variant(1), Variant("left")};
  Invoke(gauge, "LABEL", CallKind::PropertyPut, put);
  std::vector<Variant> index{Variant(3)};
  EXPECT_EQ(Invoke(gauge, "Label", CallKind::PropertyGet, index), Variant("left"));

  std::vector<Variant> page{Variant("12")};
  Invoke(gauge, "ppageno", CallKind::PropertyPut, page);
  EXPECT_EQ(Invoke(gauge, "pPageNo", CallKind::PropertyGet, {}), Variant(std::int16_t{12}));

  EXPECT_EQ(vb::CInt(Variant(gauge)), 42);  // an object used as a value answers Value
  EXPECT_EQ(vb::CObj(Call("Me")), gauge);

  std::optional<MemberKinds> label = gauge->describe("label");
  ASSERT_TRUE(label);
  EXPECT_TRUE(label->get && label->put && !label->method);
  EXPECT_EQ(label->get_arguments, 1);
  EXPECT_FALSE(gauge->describe("Nope"));
  EXPECT_EQ(gauge->className(), "Gauge");
}

TEST_F(DispatchTest, CallByNameWritesTypedReferencesBack) {
  std::int16_t count = 9;
  std::string label = "x";
  Variant result = CallByName(gauge, "Bump", CallKind::Method, Ref(count), Ref(label));
  EXPECT_EQ(count, 10);
  EXPECT_EQ(label, "x!");
  EXPECT_EQ(vb::CStr(result), "x!");
  std::string unchanged = "y";
  CallByName(gauge, "Bump", CallKind::Method, Ref(count), unchanged);
  EXPECT_EQ(unchanged, "y");
}

}  // namespace

namespace {

// Members shared by several tables live in a Dispatch base that the classes
// extend through DispatchImpl<Derived, Base>.
class Shape : public seluvorne::Dispatch {
 public:
  explicit Shape(std::int32_t width) : width_(width) {}
  std::int32_t GetWidth() const { return width_; }
  void LetWidth(std::int32_t width) { width_ = width; }

 private:
  std::int32_t width_;
};

class Panel : public seluvorne::DispatchImpl<Panel, Shape> {
 public:
  using DispatchImpl::DispatchImpl;
  static const seluvorne::MemberTable<Panel>& Members() {
    using Get = std::int32_t (Panel::*)() const;
    using Let = void (Panel::*)(std::int32_t);
    static const auto table = seluvorne::MemberTable<Panel>("Panel")
                                  .get("Width", static_cast<Get>(&Shape::GetWidth))
                                  .put("Width", static_cast<Let>(&Shape::LetWidth))
                                  .method("Double", &Panel::Double);
    return table;
  }
  void Double() { LetWidth(GetWidth() * 2); }
};

TEST(DispatchImplWithBase, BaseMembersServeInTheDerivedTable) {
  seluvorne::Object panel = std::make_shared<Panel>(21);
  seluvorne::CallByName(panel, "Double", seluvorne::CallKind::Method);
  EXPECT_EQ(vb::CLng(seluvorne::CallByName(panel, "width", seluvorne::CallKind::PropertyGet)), 42);
  seluvorne::CallByName(panel, "Width", seluvorne::CallKind::PropertyPut, std::int32_t{5});
  EXPECT_EQ(static_cast<Shape&>(*panel).GetWidth(), 5);
  EXPECT_EQ(panel->className(), "Panel");
}

}  // namespace
