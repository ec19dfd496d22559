// The shared floor root and fakes, with the current floor 1-1-1 and the
// small page limit; the store under test; helpers to fill and read
// build-out files.
#pragma once

#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <tuple>

#include "error_matchers.h"
#include "floor_test.h"
#include "kutaidata.h"
#include "seluvorne/files.h"
#include "seluvorne/frame.h"
#include "seluvorne/runtime.h"

namespace seluvorne::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using vb::Variant;

// One build-out row: PAGE, SPANNO, ITI, SYURUI, BANGOU, DATA.
using Row =
    std::tuple<std::int16_t, std::int16_t, std::int16_t, std::int16_t, std::int16_t, std::string>;

class FukasiTest : public FloorTest {
 protected:
  void SetUp() override {
    FloorTest::SetUp();
    fakes.Answer(frame::FloorDirs::kProgId, "CurrFloor", Variant(FloorFolder(1, 1, 1)));
    frame::gPageMax = frame::kSmallPageMax;  // 159: pages from 160 on are bad
  }

  static std::string FileIn(const std::string& floor) { return floor + "\\HARIFUKA.mdb"; }
  // The call the probe logs; `kind` is ", 16&" for a folder.
  static std::string Probe(const std::string& path, const char* kind = "") {
    return "FolderKit.clsExistProbe#1 Find_FileExists(\"" + path + "\"" + kind + ")";
  }

  // A floor with a build-out file holding `rows`.
  std::string MakeFloorWith(const std::vector<Row>& rows, std::int16_t kai = 1) {
    std::string floor = MakeFloorFolder(1, 1, kai);
    store->Create_HariFukasi_TBL(FileIn(floor));
    Add(FileIn(floor), rows);
    return floor;
  }
  static void Add(const std::string& file, const std::vector<Row>& rows) {
    auto database = dao::DBEngine::Instance()->OpenDatabase(file);
    auto set = database->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    for (const Row& row : rows) {
      set->AddNew();
      int field = 0;
      std::apply([&](auto... value) { (set->Fields()->Item(field++)->SetValue(value), ...); }, row);
      set->Update();
    }
    database->Close();
  }
  // The rows of a file in stored order, or those `where` selects.
  static std::vector<Row> Rows(const std::string& file, const std::string& where = "") {
    auto database = dao::DBEngine::Instance()->OpenDatabase(file);
    auto set =
        database->OpenRecordset("SELECT * FROM KUTAIDATA" + where + ";", dao::dbOpenSnapshot);
    std::vector<Row> rows;
    for (; !set->IsEOF(); set->MoveNext())
      rows.emplace_back(vb::CInt(set->Value("PAGE")), vb::CInt(set->Value("SPANNO")),
                        vb::CInt(set->Value("ITI")), vb::CInt(set->Value("SYURUI")),
                        vb::CInt(set->Value("BANGOU")), vb::CStr(set->Value("DATA")));
    database->Close();
    return rows;
  }

  // The store under test, which also makes the files tests start from. It
  // lives as long as the test, so that no store dies (and renews the shared
  // services) behind a test's back.
  std::shared_ptr<clsHariFukasiDS> store = std::make_shared<clsHariFukasiDS>();
};

// The current floor with the rows of the build-out fixture
// (floor-basic/HARIFUKA.mdb, from its manifest): pages 0 and 4; page 4 has
// only blank symbols. The store's Path is that floor.
class FixtureFloorTest : public FukasiTest {
 protected:
  void SetUp() override {
    FukasiTest::SetUp();
    std::ifstream manifest(SELUVORNE_FIXTURES "/jet/floor-basic/HARIFUKA.mdb.json");
    ASSERT_TRUE(manifest) << "the build-out fixture's manifest is not there";
    const nlohmann::json content = nlohmann::json::parse(manifest);
    for (const auto& row : content["tables"][0]["rows"])
      fixture.emplace_back(row[0], row[1], row[2], row[3], row[4], row[5]);
    floor = MakeFloorWith(fixture);
    file = FileIn(floor);
    store->SetPath(floor);
  }
  void Key(std::int16_t page, std::int16_t span, std::int16_t iti, std::int16_t syurui) {
    store->SetPage(page);
    store->SetSpan(span);
    store->SetIti(iti);
    store->SetSyurui(syurui);
  }
  // The fixture's rows of `page` under page `as`; only those with a value
  // unless `all`.
  std::vector<Row> PageAs(std::int16_t page, std::int16_t as, bool all = false) const {
    std::vector<Row> rows;
    for (const auto& [row_page, span, iti, syurui, code, data] : fixture)
      if (row_page == page && (all || !data.empty()))
        rows.emplace_back(as, span, iti, syurui, code, data);
    return rows;
  }

  std::vector<Row> fixture;
  std::string floor, file;
};

}  // namespace seluvorne::testing
