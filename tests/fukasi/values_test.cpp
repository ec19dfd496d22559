// One value at the current key through the named properties, called by name
// as the suite's clients call them.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

class ValueTest : public FixtureFloorTest {
 protected:
  // A property by name; `side` holds AorB for those that take it.
  Variant Get(std::string_view name, std::vector<Variant> side = {}) {
    return Invoke(store, name, CallKind::PropertyGet, side);
  }
  void Put(std::string_view name, std::vector<Variant> side, Variant value) {
    side.push_back(std::move(value));
    Invoke(store, name, CallKind::PropertyPut, side);
  }
};

TEST_F(ValueTest, EachPropertyReplacesOneRowUnderItsCodeAndReadsItBack) {
  struct Property {
    const char* name;
    std::vector<Variant> side;
    std::int16_t code;
  };
  const Property properties[] = {
      {"KaisiKyori", {}, 0},    {"KaisiNomikomi", {}, 1}, {"KaisiAnka", {}, 2},
      {"Syuuten", {}, 3},       {"ENDNomikomi", {}, 4},   {"Kigou", {}, 6},
      {"StpKei", {0}, 7},       {"StpKei", {1}, 9},       {"StpPich", {0}, 8},
      {"StpPich", {-1}, 10},    {"SyukinKei", {0}, 11},   {"SyukinKei", {2}, 13},
      {"HaraKei", {}, 15},      {"HaraHon", {}, 16},      {"HabadomeKei", {}, 17},
      {"HabadomePich", {}, 18}, {"Atusa", {}, 19},        {"Siten", {}, 20},
      {"Haba", {}, 21}};
  Key(3, 1, 2, 4);
  std::vector<Row> expected;
  for (const Property& p : properties) {
    const std::string value = "D" + std::to_string(p.code);
    Put(p.name, p.side, "old");
    Put(p.name, p.side, value);  // replaces, not adds
    EXPECT_EQ(Get(p.name, p.side), Variant(value)) << p.name;
    expected.push_back(Row{3, 1, 2, 4, p.code, value});
  }
  EXPECT_EQ(Rows(file, " WHERE PAGE = 3"), expected);
}

TEST_F(ValueTest, ThePositionsLoopTopLeftRightBottom) {
  vb::Array<std::int16_t> loop;
  store->GetLoopHairetu(loop);
  EXPECT_THAT(loop, ElementsAre(store->ItiNoUe(), store->ItiNoHidari(), store->ItiNoMigi(),
                                store->ItiNoSita()));
}

TEST_F(ValueTest, ABadKeyOrValueRaisesBeforeTheStoredValueIsDeleted) {
  // Page 160 is beyond the page limit of 159.
  const std::vector<Row> bad_keys = {{160, 0, 0, 0, 6, "kept"}, {-1, 0, 0, 0, 6, "kept"},
                                     {0, -1, 0, 0, 6, "kept"},  {0, 0, 4, 0, 6, "kept"},
                                     {0, 0, -1, 0, 6, "kept"},  {0, 0, 0, 10, 6, "kept"}};
  Add(file, bad_keys);
  for (const auto& [page, span, iti, syurui, code, data] : bad_keys) {
    Key(page, span, iti, syurui);
    EXPECT_RAISES(Put("Kigou", {}, "x"), errc::kInvalidCall);
  }
  Key(0, 0, 2, 0);  // a good key, and a value longer than the field
  EXPECT_RAISES(Put("Kigou", {}, std::string(201, 'x')), errc::kFieldTooSmall);
  std::vector<Row> kept = fixture;
  kept.insert(kept.end(), bad_keys.begin(), bad_keys.end());
  EXPECT_EQ(Rows(file), kept);
  Key(159, 0, 0, 0);  // the last page within the limit
  Put("Kigou", {}, "last");
  EXPECT_EQ(Get("Kigou"), Variant("last"));
}

}  // namespace
}  // namespace seluvorne::testing
