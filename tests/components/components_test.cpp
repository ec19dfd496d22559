// The standalone components, reached by name as any host reaches them,
// through the frame's typed facades.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "error_matchers.h"
#include "fake_components.h"
#include "file_bytes.h"
#include "seluvorne/components.h"
#include "seluvorne/display.h"
#include "seluvorne/frame.h"
#include "seluvorne/member_table.h"
#include "ui/application.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::frame;
namespace fs = std::filesystem;
using seluvorne::testing::ReadBytes;
using seluvorne::testing::WriteBytes;
using vb::Variant;

// A scratch data root, registered; no settings file and no SELUVORNE_DATA.
class ComponentsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/seluvorne-components-XXXXXX";
    base_ = mkdtemp(pattern);
    root_ = (base_ / "data").string();
    fs::create_directories(root_);
    settings_ = base_ / "settings.json";
    setenv("SELUVORNE_SETTINGS", settings_.c_str(), 1);
    unsetenv("SELUVORNE_DATA");
    RegisterStandaloneComponents(root_);
  }
  void TearDown() override {
    for (std::string_view id : fakes::OutsideComponentIds())
      Unregister(id);
    Unregister(kFloorCompanionProgId);
    unsetenv("SELUVORNE_SETTINGS");
    unsetenv("SELUVORNE_DATA");
    fs::remove_all(base_);
  }

  // The through-bar file, as an interface text and as a native path.
  std::string Bars() const { return root_ + "\\Hollenbar.Dat"; }
  fs::path NativeBars() const { return base_ / "data/Hollenbar.Dat"; }
  void Put(std::int16_t page, bool value) const {
    ThroughBars::Create().SetPathPutHikiToosiSW(Bars(), page, value);
  }
  bool Get(std::int16_t page) const {
    return ThroughBars::Create().SetPathGetHikiToosiSW(Bars(), page);
  }

  fs::path base_;
  std::string root_;  // native text; interface texts append backslashed parts to it
  fs::path settings_;
};

TEST_F(ComponentsTest, RegistersEveryOutsideComponentAndTheFloorCompanion) {
  std::vector<std::string_view> ids = fakes::OutsideComponentIds();
  ids.push_back(kFloorCompanionProgId);
  for (std::string_view id : ids)
    EXPECT_NO_THROW(CreateObject(id)) << id;
}

TEST_F(ComponentsTest, DataRootIsTheArgumentThenTheEnvironmentThenTheSettings) {
  auto data_path = [] { return FloorDirs::Create().DataPath(); };
  EXPECT_EQ(data_path(), root_);
  EXPECT_RAISES(RegisterStandaloneComponents(), errc::kInvalidCall);  // none of the three
  WriteBytes(settings_, R"({"dataRoot": "/from/settings/"})");
  RegisterStandaloneComponents();
  EXPECT_EQ(data_path(), "/from/settings");
  setenv("SELUVORNE_DATA", "/from/environment", 1);
  RegisterStandaloneComponents();
  EXPECT_EQ(data_path(), "/from/environment");
  RegisterStandaloneComponents("D:\\given\\");
  EXPECT_EQ(data_path(), "D:\\given");
}

// ---- Floor folders and the file probe ----------------------------------------

TEST_F(ComponentsTest, FloorFoldersFollowTheFolderConventionAndTheSettingsOfTheMoment) {
  std::int16_t zene = 1, kouji = 20, kai = 3, negative = -1;
  const FloorDirs dirs = FloorDirs::Create();
  EXPECT_EQ(dirs.GetFullPathToKai(zene, kouji, kai), root_ + "\\Zene1\\Kouji20\\3kai");
  EXPECT_RAISES(dirs.GetFullPathToKai(zene, negative, kai), errc::kInvalidCall);
  // No current floor in the settings: a clear error, not a path at the file-system root.
  EXPECT_RAISES(dirs.CurrFloor(), errc::kInvalidCall);

  WriteBytes(settings_, R"({"currentFloor": {"zenekonNo": 2, "koujiNo": 5, "kaiNo": 12},
                           "buzaiNo": 5})");
  EXPECT_EQ(FloorDirs::Create().CurrFloor(), root_ + "\\Zene2\\Kouji5\\12kai");
  EXPECT_EQ(FloorDirs::Create().BuzaiNo(), 5);
  for (const char* content : {"{not json", R"({"currentFloor": {"zenekonNo": 1, "koujiNo": 2}})",
                              R"({"currentFloor": {"zenekonNo": 1, "koujiNo": 2, "kaiNo": 40000}})",
                              R"({"buzaiNo": "five"})", R"({"dataRoot": 7})"}) {
    WriteBytes(settings_, content);
    EXPECT_RAISES(FloorDirs::Create(), errc::kTypeMismatch) << content;
  }
}

TEST_F(ComponentsTest, ProbeAnswersTheNameOfAnExistingPathOfTheAskedKind) {
  const ExistProbe probe = ExistProbe::Create();
  const std::string floor = root_ + "\\Zene1\\Kouji2\\3kai";
  EXPECT_EQ(probe.Find_FileExists(floor, ExistProbe::kFolder), "");
  FloorDirs::Create().MakeMkDir(floor);  // with its parents
  EXPECT_EQ(probe.Find_FileExists(floor + "\\", ExistProbe::kFolder), "3kai");
  EXPECT_EQ(probe.Find_FileExists(floor), "");  // a folder is not a file

  WriteBytes(base_ / "data/Zene1/SELUVORN.mdb", "x");
  EXPECT_EQ(probe.Find_FileExists(root_ + "\\Zene1\\SELUVORN.mdb"), "SELUVORN.mdb");
  EXPECT_EQ(probe.Find_FileExists(root_ + "\\Zene1\\SELUVORN.mdb", 16), "");
  EXPECT_EQ(probe.Find_FileExists(root_ + "\\Zene1\\HARIFUKA.mdb", 0), "");
  EXPECT_RAISES(probe.Find_FileExists(""), errc::kBadFileName);
  EXPECT_RAISES(probe.Find_FileExists(root_, 2), errc::kInvalidCall);
  EXPECT_RAISES(FloorDirs::Create().MakeMkDir(root_ + "\\Zene1\\SELUVORN.mdb\\below"),
                errc::kPathNotFound);
}

// ---- Presets and the beam roster ---------------------------------------------

TEST_F(ComponentsTest, PresetsAnswerTextAndEmptyForWhatIsMissing) {
  const Presets presets = Presets::Create();
  EXPECT_EQ(presets.GetHariDefault("KutaiMaxPage"), "");  // no file
  WriteBytes(base_ / "data/presets.json",
             R"({"KutaiMaxPage": "1", "Depth": 650.5, "On": true, "None": null})");
  const std::pair<const char*, const char*> answers[] = {
      {"KutaiMaxPage", "1"}, {"Depth", "650.5"}, {"On", "True"}, {"None", ""}, {"Missing", ""}};
  for (const auto& [key, answer] : answers)
    EXPECT_EQ(presets.GetHariDefault(key), answer) << key;
  WriteBytes(base_ / "data/presets.json", R"({"KutaiMaxPage": [1]})");
  EXPECT_RAISES(presets.GetHariDefault("KutaiMaxPage"), errc::kTypeMismatch);
}

TEST_F(ComponentsTest, RosterAnswersListedBeamsAndDefaultsForOthers) {
  std::string g1 = "G1", b1 = "B1", cg1 = "CG1", unknown = "X9";
  EXPECT_EQ(BeamRoster::Create().fOobariKobariKatamoti(g1), -1);  // no file
  WriteBytes(base_ / "data/roster.json", R"({"beams": {
      "G1":  {"kind": 2, "class": "girder", "end": "外端", "depths": [700, 650, 700.5]},
      "B1":  {"kind": 3, "class": "secondary", "end": "端部", "depths": 500},
      "CG1": {"class": "cantilever"}}})");
  const BeamRoster roster = BeamRoster::Create();
  EXPECT_EQ(roster.harisei(g1, 1), 650);
  EXPECT_EQ(roster.harisei(g1, 2), 700.5);
  EXPECT_EQ(roster.harisei(b1, 2), 500);
  EXPECT_EQ(roster.GaiTanNaitan(g1, 1), "外端");
  EXPECT_EQ(roster.Kind(b1), 3);
  EXPECT_EQ(roster.fOobariKobariKatamoti(g1), 0);
  EXPECT_TRUE(roster.isKobari2(b1) && roster.isKatamoti(cg1));
  EXPECT_EQ(roster.fOobariKobariKatamoti(unknown), -1);
  // Listed without the field, or not listed at all.
  for (std::string* name : {&cg1, &unknown}) {
    EXPECT_EQ(roster.harisei(*name, 0), 0);
    EXPECT_EQ(roster.GaiTanNaitan(*name, 1), "");
    EXPECT_EQ(roster.Kind(*name), 0);
  }
  EXPECT_RAISES(roster.harisei(g1, 3), errc::kInvalidCall);
  EXPECT_RAISES(roster.GaiTanNaitan(g1, 2), errc::kInvalidCall);

  for (const char* content :
       {R"({"beams": {"G1": {"class": "column"}}})", R"({"beams": {"G1": {"depths": [700, 650]}}})",
        R"({"beams": {"G1": {"kind": -2}}})", R"({"beams": ["G1"]})"}) {
    WriteBytes(base_ / "data/roster.json", content);
    EXPECT_RAISES(BeamRoster::Create(), errc::kTypeMismatch) << content;
  }
}

// ---- The through-bar file ----------------------------------------------------

TEST_F(ComponentsTest, ThroughBarsRoundTripInPageOrderAndMissingPagesAnswerFalse) {
  EXPECT_FALSE(Get(0));  // no file yet
  Put(7, true);
  Put(2, true);
  Put(499, true);
  Put(2, false);
  EXPECT_TRUE(Get(7) && Get(499));
  EXPECT_FALSE(Get(2) || Get(3));
  EXPECT_EQ(ReadBytes(NativeBars()), "HOLLENBAR 1\n2 0\n7 -1\n499 -1\nEND\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(root_), {}), 1);  // no temporary file left
}

TEST_F(ComponentsTest, ThroughBarsRefuseBadArgumentsAndDamagedFilesAndChangeNothing) {
  EXPECT_RAISES(Put(-1, true), errc::kInvalidCall);
  bool value = true;
  EXPECT_RAISES(ThroughBars::Create().SetPathPutHikiToosiSW("", 1, value), errc::kBadFileName);
  EXPECT_RAISES(
      ThroughBars::Create().SetPathPutHikiToosiSW(root_ + "\\Zene9\\Hollenbar.Dat", 1, value),
      errc::kPathNotFound);
  for (const char* damaged :
       {"HOLLENBAR 1\n2 -1\n", "HOLLENBAR 1\n2 1\nEND\n", "HOLLENBAR 1\n7 -1\n2 0\nEND\n",
        "HOLLENBAR 1\n2 -1 x\nEND\n", "something else\n"}) {
    WriteBytes(NativeBars(), damaged);
    EXPECT_RAISES(Get(2), errc::kTypeMismatch) << damaged;
    EXPECT_RAISES(Put(3, true), errc::kTypeMismatch) << damaged;
    EXPECT_EQ(ReadBytes(NativeBars()), damaged);
  }
}

// A writer killed at any moment leaves the file as it was after some whole
// number of writes. The child sets pages 0..49 to true in order, then to false,
// and so on; so every state it can leave is "pages below r hold one value, the
// rest the other" (Get raises on a torn file). Stray temporary files are allowed.
TEST_F(ComponentsTest, ThroughBarsWriterKilledMidWriteLeavesTheOldOrTheNewFile) {
  constexpr int kPages = 50;
  for (int round = 0; round < 12; ++round) {
    fs::remove(NativeBars());
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
      for (int i = 0;; ++i)
        Put(static_cast<std::int16_t>(i % kPages), (i / kPages) % 2 == 0);
    usleep(2000 + ::random() % 30000);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    int changes = 0;
    for (std::int16_t page = 1; page < kPages; ++page)
      changes += Get(page) != Get(static_cast<std::int16_t>(page - 1));
    EXPECT_LE(changes, 1) << "round " << round;
  }
}

// ---- Placement and screen ----------------------------------------------------

// A form as the placement service sees one: geometry in twips.
class FormStandIn : public DispatchImpl<FormStandIn> {
 public:
  static const MemberTable<FormStandIn>& Members() {
    static const auto table = MemberTable<FormStandIn>("FormStandIn")
                                  .field("Left", &FormStandIn::Left)
                                  .field("Top", &FormStandIn::Top)
                                  .field("Width", &FormStandIn::Width)
                                  .field("Height", &FormStandIn::Height);
    return table;
  }
  std::int32_t Left = 300, Top = 450, Width = 6000, Height = 3000;
};

TEST_F(ComponentsTest, PlacerCentresTheFormOrMovesItOffTheWorkArea) {
  const WindowPlacer placer = WindowPlacer::Create();
  EXPECT_TRUE(placer.FormControl());
  std::int32_t left = -1, top = -1, right = -1, bottom = -1;
  placer.ScreenWorkAreaTwip(left, top, right, bottom);  // no display: 1024 x 768 pixels
  EXPECT_EQ(std::vector<std::int32_t>({left, top, right, bottom}),
            std::vector<std::int32_t>({0, 0, 15360, 11520}));

  auto form = std::make_shared<FormStandIn>();
  Object as_object = form;
  std::int32_t first = 0, second = 0;
  placer.MotoFormSetFormProperty(as_object, first, second);
  EXPECT_EQ(std::make_pair(form->Left, form->Top), std::make_pair(4680, 4260));
  EXPECT_EQ(std::make_pair(first, second), std::make_pair(300, 450));  // where it was
  placer.MotoFormMoveGamenSoto(as_object, first, second);
  EXPECT_EQ(form->Left, 15360);
  EXPECT_EQ(std::make_pair(first, second), std::make_pair(4680, 4260));
  form->Width = 20000;  // wider than the screen: the left edge stays on it
  placer.MotoFormSetFormProperty(as_object, first, second);
  EXPECT_EQ(form->Left, 0);
}

TEST_F(ComponentsTest, MetricsFifteenTwipsPerPixelOfThePrimaryScreen) {
  const DisplayMetrics metrics = DisplayMetrics::Create();
  EXPECT_EQ(metrics.ScreenTwipWidth(), 1024 * 15);  // before any display is opened
  ui::EnsureApplication();                          // the offscreen platform's screen
  EXPECT_EQ(metrics.ScreenTwipHeight(), PrimaryScreenBounds().value().height * 15);
}

// ---- The components only the suite has ---------------------------------------

TEST_F(ComponentsTest, SuiteOnlyComponentsAcceptTheirMembersAndClaimNoSuccess) {
  EXPECT_FALSE(StepGuide::Create().isAllCalc() || ScopeKit::Create().D3ViewVersionCheck());
  const ScopeExporter exporter = ScopeExporter::Create();
  exporter.psPath(root_);
  exporter.WriteData(Variant(std::int16_t{1}));
  EXPECT_EQ(exporter.GetFileName(), "");
  const Presenter presenter = Presenter::Create();
  presenter.D3MakeFileObj(exporter.object());
  EXPECT_EQ(presenter.D3MakeFileObj(), exporter.object());
  Variant v[8];
  EXPECT_FALSE(presenter.PrintKakuninzu(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]));
  const Launch launch = Launch::Create();
  launch.Selected("*001");
  launch.start();
  EXPECT_EQ(launch.Selected(), "");
  EXPECT_EQ(launch.EndStatus(), -1);

  ExtraBars::Create().CopyPathPage_KaiSitei_Ini(root_, vb::Array<std::int16_t>({0}));
  ExtraBars::Create().CopyPathPage_KaiSitei(root_, 0, 1, root_, 1);
  SolverRecords::Create().Copy_CalcFile(1, 1, 1, 0, 1, 1, 2, 0);
  FloorCompanion(CreateObject(kFloorCompanionProgId)).CreateMDB_FullPath(root_ + "\\SELUVORN.mdb");
  EXPECT_EQ(fs::directory_iterator(root_), fs::directory_iterator());  // nothing was written
}

}  // namespace
