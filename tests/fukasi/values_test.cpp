// The current key, the constants, and one value at the key through the
// named properties, called by name as the suite's clients call them.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vb::Variant;

class ValueTest : public FukasiTest {
 protected:
  void SetUp() override {
    FukasiTest::SetUp();
    floor = MakeFloorWith({}, 1, 1, 2);  // not the current floor
    store = std::make_shared<clsHariFukasiDS>();
    store->SetPath(floor);
  }
  // Sets the key by name: page, span, position, kind.
  void Key(int page, int span, int iti, int syurui) {
    Put("Page", {}, page);
    Put("Span", {}, span);
    Put("Iti", {}, iti);
    Put("Syurui", {}, syurui);
  }
  Variant Get(std::string_view name, std::optional<std::int16_t> aorb = {}) {
    std::vector<Variant> args;
    if (aorb) args.emplace_back(*aorb);
    return Invoke(store, name, CallKind::PropertyGet, args);
  }
  void Put(std::string_view name, std::optional<std::int16_t> aorb, Variant value) {
    std::vector<Variant> args;
    if (aorb) args.emplace_back(*aorb);
    args.push_back(std::move(value));
    Invoke(store, name, CallKind::PropertyPut, args);
  }
  std::vector<Row> Stored() {
    store->CloseDB();  // so the file is read as another process would
    return Rows(FileIn(floor));
  }

  std::string floor;
  std::shared_ptr<clsHariFukasiDS> store;
};

// ---- The key and the constants -------------------------------------------------

TEST_F(ValueTest, ConstantsPositionNamesAndTheVisitingOrderNeedNoFile) {
  EXPECT_EQ(Get("ItiNoHidari"), Variant(std::int16_t{0}));
  EXPECT_EQ(Get("ItiNoMigi"), Variant(std::int16_t{1}));
  EXPECT_EQ(Get("ItiNoUe"), Variant(std::int16_t{2}));
  EXPECT_EQ(Get("ItiNoSita"), Variant(std::int16_t{3}));
  EXPECT_EQ(Get("SyuruiMax"), Variant(std::int16_t{9}));
  frame::gPageMax = frame::kLargePageMax;
  EXPECT_EQ(Get("PageMax"), Variant(std::int16_t{499}));

  const char* names[] = {"", "左", "右", "上", "下", ""};
  for (std::int16_t iti = -1; iti <= 4; ++iti)
    EXPECT_EQ(Get("ItiName", iti), Variant(names[iti + 1])) << iti;
  EXPECT_EQ(Get("ItiName", std::int16_t{-32768}), Variant(""));

  std::vector<Variant> order(1);  // Empty: dimensioned by the call
  Invoke(store, "GetLoopHairetu", CallKind::Method, order);
  const auto& visited = order[0].array<std::int16_t>();
  EXPECT_EQ(std::vector<std::int16_t>(visited.begin(), visited.end()),
            (std::vector<std::int16_t>{2, 0, 1, 3}));
  EXPECT_THAT(fakes.Log(), IsEmpty());
}

TEST_F(ValueTest, AKeyGetAnswersWhatItsPutSet) {
  Key(7, 3, 1, 9);
  Put("pPageNo", {}, 5);
  EXPECT_EQ(Get("Page"), Variant(std::int16_t{7}));
  EXPECT_EQ(Get("Span"), Variant(std::int16_t{3}));
  EXPECT_EQ(Get("Iti"), Variant(std::int16_t{1}));
  EXPECT_EQ(Get("Syurui"), Variant(std::int16_t{9}));
  EXPECT_EQ(Get("pPageNo"), Variant(std::int16_t{5}));
  EXPECT_EQ(Get("Path"), Variant(floor));
}

// ---- Each property's code ------------------------------------------------------

struct PropertyCase {
  const char* name;
  std::optional<std::int16_t> aorb;
  std::int16_t code;
};
void PrintTo(const PropertyCase& c, std::ostream* out) {
  *out << c.name << (c.aorb ? "(" + std::to_string(*c.aorb) + ")" : "") << " -> " << c.code;
}

class PropertyCode : public ValueTest, public ::testing::WithParamInterface<PropertyCase> {};

TEST_P(PropertyCode, APutStoresOneRowUnderItsCodeAndAGetReadsItBack) {
  const PropertyCase& p = GetParam();
  Key(3, 1, 2, 4);
  Put(p.name, p.aorb, "D13");
  Put(p.name, p.aorb, "D16");  // replaces, not adds
  EXPECT_EQ(Get(p.name, p.aorb), Variant("D16"));
  EXPECT_THAT(Stored(), ElementsAre(Row{3, 1, 2, 4, p.code, "D16"}));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, PropertyCode,
    ::testing::Values(PropertyCase{"KaisiKyori", {}, 0}, PropertyCase{"KaisiNomikomi", {}, 1},
                      PropertyCase{"KaisiAnka", {}, 2}, PropertyCase{"Syuuten", {}, 3},
                      PropertyCase{"ENDNomikomi", {}, 4}, PropertyCase{"Kigou", {}, 6},
                      PropertyCase{"StpKei", 0, 7}, PropertyCase{"StpKei", 1, 9},
                      PropertyCase{"StpPich", 0, 8}, PropertyCase{"StpPich", -1, 10},
                      PropertyCase{"SyukinKei", 0, 11}, PropertyCase{"SyukinKei", 2, 13},
                      PropertyCase{"HaraKei", {}, 15}, PropertyCase{"HaraHon", {}, 16},
                      PropertyCase{"HabadomeKei", {}, 17}, PropertyCase{"HabadomePich", {}, 18},
                      PropertyCase{"Atusa", {}, 19}, PropertyCase{"Siten", {}, 20},
                      PropertyCase{"Haba", {}, 21}));

TEST_F(ValueTest, SyukinHonIsReadOnlyAndReadsCode12Or14) {
  Add(FileIn(floor), {{0, 0, 0, 0, 12, "3"}, {0, 0, 0, 0, 14, "4"}});
  EXPECT_EQ(Get("SyukinHon", 0), Variant("3"));
  EXPECT_EQ(Get("SyukinHon", 1), Variant("4"));
  EXPECT_RAISES(Put("SyukinHon", 0, "5"), errc::kMemberNotSupported);
}

// ---- Reading and writing -------------------------------------------------------

TEST_F(ValueTest, AGetWithoutARowAnswersEmptyAndAnEmptyPutIsStored) {
  Key(0, 0, 0, 0);
  EXPECT_EQ(Get("Atusa"), Variant(""));
  Put("Atusa", {}, "150");
  Put("Atusa", {}, "");
  EXPECT_EQ(Get("Atusa"), Variant(""));
  EXPECT_THAT(Stored(), ElementsAre(Row{0, 0, 0, 0, 19, ""}));
}

TEST_F(ValueTest, EndAnkaReadCopiesTheEndAnchorageIntoTheStartAndAnswersEmpty) {
  Add(FileIn(floor), {{2, 0, 2, 5, 5, "A"}, {2, 0, 2, 5, 2, "old"}});
  Key(2, 0, 2, 5);
  EXPECT_EQ(Get("EndAnka"), Variant(""));
  EXPECT_EQ(Get("KaisiAnka"), Variant("A"));
  EXPECT_THAT(Stored(), ElementsAre(Row{2, 0, 2, 5, 5, "A"}, Row{2, 0, 2, 5, 2, "A"}));
  Key(2, 0, 2, 6);  // no end anchorage there: the start one becomes empty
  EXPECT_EQ(Get("EndAnka"), Variant(""));
  EXPECT_THAT(Rows(FileIn(floor), " WHERE SYURUI = 6"), ElementsAre(Row{2, 0, 2, 6, 2, ""}));
}

TEST_F(ValueTest, TheFirstUseOpensThePathsFileOrTheCurrentFloorsWhenThereIsNoPath) {
  Key(0, 0, 0, 0);
  Put("Kigou", {}, "F1");
  store->SetPath("");
  store->CloseDB();
  EXPECT_EQ(Get("Kigou"), Variant(""));  // the current floor's new file
  EXPECT_EQ(store->Path(), FloorOf(1, 1, 1));
  EXPECT_THAT(fakes.Log(frame::FloorDirs::kProgId),
              ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor",
                          "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + FloorOf(1, 1, 1) + "\")"));
  EXPECT_THAT(Rows(FileIn(floor)), ElementsAre(Row{0, 0, 0, 0, 6, "F1"}));
}

// ---- Bad keys and values lose nothing -------------------------------------------

struct BadPutCase {
  int page, span, iti, syurui;
  std::string value;
  int error;
};
void PrintTo(const BadPutCase& c, std::ostream* out) {
  *out << c.page << "," << c.span << "," << c.iti << "," << c.syurui << " len " << vb::Len(c.value);
}

class BadPut : public ValueTest, public ::testing::WithParamInterface<BadPutCase> {};

TEST_P(BadPut, RaisesBeforeTheStoredValueIsDeleted) {
  const BadPutCase& c = GetParam();
  frame::gPageMax = frame::kSmallPageMax;
  Add(FileIn(floor), {{std::int16_t(c.page), std::int16_t(c.span), std::int16_t(c.iti),
                       std::int16_t(c.syurui), 6, "kept"}});
  Key(c.page, c.span, c.iti, c.syurui);
  EXPECT_RAISES(Put("Kigou", {}, c.value), c.error);
  EXPECT_THAT(Stored(), ElementsAre(Row{std::int16_t(c.page), std::int16_t(c.span),
                                        std::int16_t(c.iti), std::int16_t(c.syurui), 6, "kept"}));
}

INSTANTIATE_TEST_SUITE_P(
    Keys, BadPut,
    ::testing::Values(BadPutCase{160, 0, 0, 0, "x", errc::kInvalidCall},  // beyond PageMax 159
                      BadPutCase{-1, 0, 0, 0, "x", errc::kInvalidCall},
                      BadPutCase{0, -1, 0, 0, "x", errc::kInvalidCall},
                      BadPutCase{0, 0, 4, 0, "x", errc::kInvalidCall},
                      BadPutCase{0, 0, -1, 0, "x", errc::kInvalidCall},
                      BadPutCase{0, 0, 0, 10, "x", errc::kInvalidCall},
                      BadPutCase{0, 0, 0, 0, std::string(201, 'x'), errc::kFieldTooSmall}));

TEST_F(ValueTest, TwoHundredCharactersFitTheValue) {
  Key(0, 0, 0, 0);
  std::string longest;
  for (int i = 0; i < 200; ++i)
    longest += "梁";
  Put("Haba", {}, longest);
  EXPECT_EQ(Get("Haba"), Variant(longest));
}

}  // namespace
}  // namespace seluvorne::testing
