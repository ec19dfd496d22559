// A floor root in a scratch folder, the recording fakes of the outside
// components answering from it, and helpers to fill and read build-out files.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "error_matchers.h"
#include "fake_components.h"
#include "kutaidata.h"
#include "seluvorne/dao.h"
#include "seluvorne/files.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::testing {

// One build-out row: PAGE, SPANNO, ITI, SYURUI, BANGOU, DATA.
struct Row {
  std::int16_t page, span, iti, syurui, code;
  std::string data;
  friend bool operator==(const Row&, const Row&) = default;
  friend void PrintTo(const Row& row, std::ostream* out) {
    *out << "(" << row.page << "," << row.span << "," << row.iti << "," << row.syurui << ","
         << row.code << ",\"" << row.data << "\")";
  }
};

class FukasiTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "seluvorne-fukasi-XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
    ASSERT_FALSE(root_.empty());
    // Floor folders as the suite names them: root\Zene<z>\Kouji<k>\<n>kai.
    fakes.Answer(frame::FloorDirs::kProgId, "GetFullPathToKai", [this](std::span<vb::Variant> a) {
      return vb::Variant(FloorOf(vb::CInt(a[0]), vb::CInt(a[1]), vb::CInt(a[2])));
    });
    fakes.Answer(frame::FloorDirs::kProgId, "CurrFloor", vb::Variant(FloorOf(1, 1, 1)));
    fakes.Answer(frame::FloorDirs::kProgId, "MakeMkDir", [](std::span<vb::Variant> a) {
      std::filesystem::create_directories(NativePath(vb::CStr(a[0])));
      return vb::Variant();
    });
    // The probe answers the last part of an existing file (or folder, kind 16).
    fakes.Answer(frame::ExistProbe::kProgId, "Find_FileExists", [](std::span<vb::Variant> a) {
      const std::string path = vb::CStr(a[0]);
      const bool folder = a.size() > 1 && vb::CLng(a[1]) == frame::ExistProbe::kFolder;
      const bool exists = folder ? files::FolderExists(path) : files::FileExists(path);
      return vb::Variant(exists ? NativePath(path).filename().string() : std::string());
    });
    frame::ScheduleStart();
    frame::Main();
    fakes.ClearLog();
  }
  void TearDown() override {
    frame::ScheduleStart();
    std::filesystem::remove_all(root_);
  }

  // A floor folder as an interface text (backslashes); not created.
  std::string FloorOf(int zene, int kouji, int kai) const {
    return root_.string() + "\\Zene" + std::to_string(zene) + "\\Kouji" + std::to_string(kouji) +
           "\\" + std::to_string(kai) + "kai";
  }
  // A floor folder made on disk.
  std::string MakeFloor(int zene = 1, int kouji = 1, int kai = 1) const {
    std::string floor = FloorOf(zene, kouji, kai);
    std::filesystem::create_directories(NativePath(floor));
    return floor;
  }
  static std::string FileIn(const std::string& floor) { return floor + "\\HARIFUKA.mdb"; }

  // The rows of the build-out fixture (floor-basic/HARIFUKA.mdb), from its
  // manifest: pages 0 and 4; page 4 has only blank symbols. Empty when the
  // manifest cannot be read (the caller fails).
  static std::vector<Row> FixtureRows() {
    std::ifstream manifest(SELUVORNE_FIXTURES "/jet/floor-basic/HARIFUKA.mdb.json");
    if (!manifest) return {};
    const nlohmann::json content = nlohmann::json::parse(manifest);
    std::vector<Row> rows;
    for (const auto& row : content["tables"][0]["rows"])
      rows.push_back(Row{row[0], row[1], row[2], row[3], row[4], row[5]});
    return rows;
  }

  static std::shared_ptr<dao::Database> Open(const std::string& file) {
    return dao::DBEngine::Instance()->OpenDatabase(file);
  }

  // A floor with a build-out file holding `rows`.
  std::string MakeFloorWith(const std::vector<Row>& rows, int zene = 1, int kouji = 1,
                            int kai = 1) {
    std::string floor = MakeFloor(zene, kouji, kai);
    maker_.Create_HariFukasi_TBL(FileIn(floor));
    Add(FileIn(floor), rows);
    return floor;
  }
  static void Add(const std::string& file, const std::vector<Row>& rows) {
    auto database = Open(file);
    auto set = database->OpenRecordset(std::string(fukasi::kTable), dao::dbOpenDynaset);
    for (const Row& row : rows) {
      set->AddNew();
      set->SetValue("PAGE", row.page);
      set->SetValue("SPANNO", row.span);
      set->SetValue("ITI", row.iti);
      set->SetValue("SYURUI", row.syurui);
      set->SetValue("BANGOU", row.code);
      set->SetValue("DATA", row.data);
      set->Update();
    }
    database->Close();
  }
  // The rows of a file in stored order, or those `where` selects.
  static std::vector<Row> Rows(const std::string& file, const std::string& where = "") {
    auto database = Open(file);
    auto set =
        database->OpenRecordset("SELECT * FROM KUTAIDATA" + where + ";", dao::dbOpenSnapshot);
    std::vector<Row> rows;
    for (; !set->IsEOF(); set->MoveNext())
      rows.push_back(Row{vb::CInt(set->Value("PAGE")), vb::CInt(set->Value("SPANNO")),
                         vb::CInt(set->Value("ITI")), vb::CInt(set->Value("SYURUI")),
                         vb::CInt(set->Value("BANGOU")), vb::CStr(set->Value("DATA"))});
    database->Close();
    return rows;
  }

  fakes::FakeComponents fakes;
  std::filesystem::path root_;
  // Makes the files tests start from; alive for the whole test, so that no
  // store dies (and renews the shared services) behind a test's back.
  clsHariFukasiDS maker_;
};

}  // namespace seluvorne::testing
