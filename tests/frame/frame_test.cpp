#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/dao.h"
#include "seluvorne/frame.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::frame;
using seluvorne::fakes::FakeComponents;
using seluvorne::fakes::MakeFakeObject;
using ::testing::ElementsAre;
using vb::Variant;

// The windows as a recording stand-in, so the frame runs without a display.
class RecordingForms : public Forms {
 public:
  void ShowKakunin(const std::string& caption) override { shown.push_back(caption); }
  void UnloadKakunin() override { ++unloads; }
  void DoEvents() override { ++event_rounds; }
  std::vector<std::string> shown;
  int unloads = 0;
  int event_rounds = 0;
};

class FrameTest : public ::testing::Test {
 protected:
  void SetUp() override { ScheduleStart(); }
  void TearDown() override {
    ScheduleStart();
    gForms.reset();
  }
  FakeComponents fakes;
};

// ---- The page limit ----------------------------------------------------------

struct PresetCase {
  Variant preset;  // what the presets component answers
  std::int16_t page_max;
};
void PrintTo(const PresetCase& c, std::ostream* out) {
  *out << (c.preset.isEmpty() ? "Empty" : "\"" + vb::CStr(c.preset) + "\"") << " -> " << c.page_max;
}

class PageMaxPreset : public FrameTest, public ::testing::WithParamInterface<PresetCase> {};

TEST_P(PageMaxPreset, NonZeroRoundedLeadingNumberChoosesTheLargeLimit) {
  fakes.Answer(Presets::kProgId, "GetHariDefault", GetParam().preset);
  LoadPageMax();
  EXPECT_EQ(gPageMax, GetParam().page_max);
  EXPECT_THAT(fakes.Log(),
              ElementsAre("PresetStore.clsPresets#1 GetHariDefault(\"KutaiMaxPage\")"));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PageMaxPreset,
    ::testing::Values(PresetCase{"1", 499}, PresetCase{"-3", 499}, PresetCase{"7abc", 499},
                      PresetCase{"1.5", 499}, PresetCase{" 2", 499}, PresetCase{"0", 159},
                      PresetCase{"", 159}, PresetCase{"abc", 159}, PresetCase{"0.4", 159},
                      PresetCase{"0.5", 159}, PresetCase{"-0.5", 159},
                      // a component answering a number, or nothing at all
                      PresetCase{Variant(2.5), 499}, PresetCase{Variant(), 159}));

TEST_F(FrameTest, PresetReadFreshEachTimeAndOverflowRaisesWithoutChangingTheLimit) {
  fakes.Answer(Presets::kProgId, "GetHariDefault", "0");
  LoadPageMax();
  EXPECT_EQ(gPageMax, 159);
  fakes.Answer(Presets::kProgId, "GetHariDefault", "40000");
  EXPECT_RAISES(LoadPageMax(), errc::kOverflow);
  EXPECT_EQ(gPageMax, 159);
  fakes.Answer(Presets::kProgId, "GetHariDefault", "1");
  LoadPageMax();
  EXPECT_EQ(gPageMax, 499);
  EXPECT_EQ(fakes.Created(Presets::kProgId), 3);
}

// ---- Start-up ----------------------------------------------------------------

TEST_F(FrameTest, MainCreatesTheSharedServicesThenReadsThePreset) {
  fakes.Answer(Presets::kProgId, "GetHariDefault", "1");
  fakes.Answer(FloorDirs::kProgId, "CurrFloor", "C:\\Data\\Zene1\\Kouji2\\3kai");
  Main();
  EXPECT_EQ(fakes.Created(FloorDirs::kProgId), 1);
  EXPECT_EQ(fakes.Created(ExistProbe::kProgId), 1);
  EXPECT_EQ(gPageMax, 499);
  EXPECT_EQ(gFloorDirs.CurrFloor(), "C:\\Data\\Zene1\\Kouji2\\3kai");
  gExistProbe.Find_FileExists("x");
  EXPECT_THAT(fakes.Log(), ElementsAre("PresetStore.clsPresets#1 GetHariDefault(\"KutaiMaxPage\")",
                                       "FolderKit.clsFloorDirs#1 get CurrFloor",
                                       "FolderKit.clsExistProbe#1 Find_FileExists(\"x\")"));
}

TEST(StartUp, RunsOnceUntilRescheduledAndRetriesAfterAFailure) {
  ScheduleStart();
  FakeComponents folders({FloorDirs::kProgId, ExistProbe::kProgId});
  EXPECT_RAISES(EnsureStarted(), errc::kCannotCreateObject);  // no presets registered
  {
    FakeComponents presets({Presets::kProgId});
    EnsureStarted();
    EnsureStarted();
    EXPECT_EQ(presets.Created(Presets::kProgId), 1);
    EXPECT_EQ(folders.Created(FloorDirs::kProgId), 2);  // the failed run had made one

    gFromBeamSolver = true;
    gFukasiOnly = -1;
    gYobidasiMoto = "caller";
    ScheduleStart();  // a fresh library
    EXPECT_FALSE(gFloorDirs);
    EXPECT_FALSE(gExistProbe);
    EXPECT_EQ(gPageMax, 0);
    EXPECT_FALSE(gFromBeamSolver);
    EXPECT_EQ(gFukasiOnly, 0);
    EXPECT_EQ(gYobidasiMoto, "");
    EnsureStarted();
    EXPECT_EQ(presets.Created(Presets::kProgId), 2);
    EXPECT_EQ(gPageMax, 159);
  }
  ScheduleStart();
}

// ---- Destruction -------------------------------------------------------------

// A class of the library as the later layers write them: it reads the
// globals at each use and replaces the shared services when it dies.
class StoreLike {
 public:
  ~StoreLike() { ReplaceSharedCollaborators(); }
  std::string Floor() const { return gFloorDirs.CurrFloor(); }
  std::string Probe() const { return gExistProbe.Find_FileExists("f"); }
};

TEST_F(FrameTest, AnInstanceThatDiesGivesTheSurvivorsNewSharedServices) {
  Main();
  StoreLike survivor;
  survivor.Floor();
  {
    StoreLike dying;
    dying.Floor();
  }
  survivor.Floor();
  survivor.Probe();
  EXPECT_THAT(fakes.Log(FloorDirs::kProgId), ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor",
                                                         "FolderKit.clsFloorDirs#1 get CurrFloor",
                                                         "FolderKit.clsFloorDirs#2 get CurrFloor"));
  EXPECT_THAT(fakes.Log(ExistProbe::kProgId),
              ElementsAre("FolderKit.clsExistProbe#2 Find_FileExists(\"f\")"));
}

TEST_F(FrameTest, AReplacementThatCannotBeCreatedKeepsTheOldService) {
  Main();
  const Object old_floor_dirs = gFloorDirs.object();
  Unregister(FloorDirs::kProgId);
  ReplaceSharedCollaborators();
  EXPECT_EQ(gFloorDirs.object(), old_floor_dirs);
  EXPECT_EQ(fakes.Created(ExistProbe::kProgId), 2);  // the probe was still replaced
}

// ---- The confirmation message ------------------------------------------------

struct CaptionCase {
  std::int16_t is_oobari;
  std::int16_t fukasi_only;
  const char* caption;
};
void PrintTo(const CaptionCase& c, std::ostream* out) {
  *out << c.is_oobari << "," << c.fukasi_only;
}

class CalcTargetCaption : public FrameTest, public ::testing::WithParamInterface<CaptionCase> {};

TEST_P(CalcTargetCaption, TellsWhatTheCalculationCovers) {
  auto forms = std::make_shared<RecordingForms>();
  gForms = forms;
  gFukasiOnly = GetParam().fukasi_only;
  ShowCalcTargetMessage(GetParam().is_oobari);
  EXPECT_THAT(forms->shown, ElementsAre(GetParam().caption));
}

INSTANTIATE_TEST_SUITE_P(
    Flags, CalcTargetCaption,
    ::testing::Values(CaptionCase{-1, -1, "大梁のフカシのみ計算されます"},
                      CaptionCase{-1, 0, "大梁の本体とフカシが計算されます"},
                      CaptionCase{0, -1, "小梁のフカシのみ計算されます"},
                      CaptionCase{0, 0, "小梁の本体とフカシが計算されます"},
                      // the selection passes its excluded kind: 1 and 99 count as true
                      CaptionCase{1, 1, "大梁のフカシのみ計算されます"},
                      CaptionCase{99, 0, "大梁の本体とフカシが計算されます"}));

TEST_F(FrameTest, WithoutADisplayLayerTheMessageRaisesAndEventsAreNoOp) {
  EXPECT_RAISES(ShowCalcTargetMessage(0), errc::kCannotCreateObject);
  DoEvents();
  auto forms = std::make_shared<RecordingForms>();
  gForms = forms;
  DoEvents();
  EXPECT_EQ(forms->event_rounds, 1);
}

// ---- The facades -------------------------------------------------------------

TEST_F(FrameTest, ByReferenceArgumentsComeBackFromTheComponent) {
  fakes.Answer(FloorDirs::kProgId, "GetFullPathToKai", [](std::span<Variant> args) {
    args[2] = Variant(std::int16_t{9});
    return Variant("D:\\Zene1\\Kouji2\\9kai");
  });
  fakes.Answer(WindowPlacer::kProgId, "ScreenWorkAreaTwip", [](std::span<Variant> args) {
    for (int i = 0; i < 4; ++i)
      args[i] = Variant(std::int32_t{1000 * (i + 1)});
    return Variant();
  });
  fakes.Answer(BeamRoster::kProgId, "harisei", [](std::span<Variant> args) {
    args[0] = Variant("G1'");
    return Variant("650.5mm");
  });
  fakes.Answer(Presenter::kProgId, "PrintKakuninzu", [](std::span<Variant> args) {
    for (Variant& arg : args)
      arg = Variant(vb::CStr(arg) + "!");
    return Variant(std::int16_t{-1});
  });
  fakes.Answer(ThroughBars::kProgId, "SetPathPutHikiToosiSW", [](std::span<Variant> args) {
    args[2] = Variant(false);
    return Variant();
  });

  std::int16_t zene = 1, kouji = 2, kai = 3;
  EXPECT_EQ(FloorDirs::Create().GetFullPathToKai(zene, kouji, kai), "D:\\Zene1\\Kouji2\\9kai");
  EXPECT_EQ(kai, 9);

  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  WindowPlacer::Create().ScreenWorkAreaTwip(left, top, right, bottom);
  EXPECT_EQ(std::vector<std::int32_t>({left, top, right, bottom}),
            std::vector<std::int32_t>({1000, 2000, 3000, 4000}));

  std::string name = "G1";
  EXPECT_EQ(BeamRoster::Create().harisei(name, 2), 650.5);
  EXPECT_EQ(name, "G1'");

  std::vector<Variant> eight = {"a", "b", "c", "d", "e", "f", "g", "h"};
  EXPECT_TRUE(Presenter::Create().PrintKakuninzu(eight[0], eight[1], eight[2], eight[3], eight[4],
                                                 eight[5], eight[6], eight[7]));
  EXPECT_EQ(eight[7], Variant("h!"));

  bool value = true;
  ThroughBars::Create().SetPathPutHikiToosiSW("x\\Hollenbar.Dat", 4, value);
  EXPECT_FALSE(value);
}

TEST_F(FrameTest, EveryFacadeMemberCallsItsNameWithItsArgumentsInOrder) {
  std::int16_t z = 1, k = 2, n = 3;
  std::string beam = "G1";
  std::int32_t a = 0, b = 0, c = 0, d = 0;
  Variant v[8];
  Object form = MakeFakeObject(fakes, "Form");
  vb::Array<std::int16_t> pages({1});
  pages(1) = 7;

  const FloorDirs dirs = FloorDirs::Create();
  const BeamRoster roster = BeamRoster::Create();
  const WindowPlacer placer = WindowPlacer::Create();
  const ScopeExporter exporter = ScopeExporter::Create();
  const Presenter presenter = Presenter::Create();
  const Launch launch = Launch::Create();
  const Progress progress(MakeFakeObject(fakes, "Progress"));
  const ExtraBars extra = ExtraBars::Create();

  struct Row {
    std::function<void()> call;
    const char* expected;
  };
  const std::vector<Row> rows = {
      {[&] { dirs.CurrFloor(); }, "FolderKit.clsFloorDirs#1 get CurrFloor"},
      {[&] { dirs.GetFullPathToKai(z, k, n); },
       "FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)"},
      {[&] { dirs.ZenekonNo(); }, "FolderKit.clsFloorDirs#1 get ZenekonNo"},
      {[&] { dirs.KoujiNo(); }, "FolderKit.clsFloorDirs#1 get KoujiNo"},
      {[&] { dirs.KaiNo(); }, "FolderKit.clsFloorDirs#1 get KaiNo"},
      {[&] { dirs.BuzaiNo(); }, "FolderKit.clsFloorDirs#1 get BuzaiNo"},
      {[&] { dirs.DataPath(); }, "FolderKit.clsFloorDirs#1 get DataPath"},
      {[&] { dirs.MakeMkDir("D:\\x"); }, "FolderKit.clsFloorDirs#1 MakeMkDir(\"D:\\x\")"},
      {[&] { ExistProbe::Create().Find_FileExists("p"); },
       "FolderKit.clsExistProbe#1 Find_FileExists(\"p\")"},
      {[&] { ExistProbe::Create().Find_FileExists("p", ExistProbe::kFolder); },
       "FolderKit.clsExistProbe#2 Find_FileExists(\"p\", 16&)"},
      {[&] { roster.harisei(beam, 0); }, "BeamRoster.clsRoster#1 harisei(\"G1\", 0%)"},
      {[&] { roster.GaiTanNaitan(beam, 1); }, "BeamRoster.clsRoster#1 GaiTanNaitan(\"G1\", 1%)"},
      {[&] { roster.Kind(beam); }, "BeamRoster.clsRoster#1 Kind(\"G1\")"},
      {[&] { roster.fOobariKobariKatamoti(beam); },
       "BeamRoster.clsRoster#1 fOobariKobariKatamoti(\"G1\")"},
      {[&] { roster.isKobari2(beam); }, "BeamRoster.clsRoster#1 isKobari2(\"G1\")"},
      {[&] { roster.isKatamoti(beam); }, "BeamRoster.clsRoster#1 isKatamoti(\"G1\")"},
      {[&] { StepGuide::Create().isAllCalc(); }, "StepGuide.clsStepGuide#1 get isAllCalc"},
      {[&] { StepGuide::Create().GetAllCalcWindowStateLastVal_isMinimized(); },
       "StepGuide.clsStepGuide#2 get GetAllCalcWindowStateLastVal_isMinimized"},
      {[&] { placer.FormControl(); }, "FolderKit.clsWindowPlacer#1 get FormControl"},
      {[&] { placer.ScreenWorkAreaTwip(a, b, c, d); },
       "FolderKit.clsWindowPlacer#1 ScreenWorkAreaTwip(0&, 0&, 0&, 0&)"},
      {[&] { placer.MotoFormSetFormProperty(form, a, b); },
       "FolderKit.clsWindowPlacer#1 MotoFormSetFormProperty(<Form>, 0&, 0&)"},
      {[&] { placer.MotoFormMoveGamenSoto(form, a, b); },
       "FolderKit.clsWindowPlacer#1 MotoFormMoveGamenSoto(<Form>, 0&, 0&)"},
      {[&] { placer.GetAllCalcWindowStateLastVal_isMinimized(); },
       "FolderKit.clsWindowPlacer#1 get GetAllCalcWindowStateLastVal_isMinimized"},
      {[&] { placer.Vista_Shadow(); }, "FolderKit.clsWindowPlacer#1 get Vista_Shadow"},
      {[&] { DisplayMetrics::Create().ScreenTwipWidth(); },
       "DisplayMetrics.clsMetrics#1 get ScreenTwipWidth"},
      {[&] { DisplayMetrics::Create().ScreenTwipHeight(); },
       "DisplayMetrics.clsMetrics#2 get ScreenTwipHeight"},
      {[&] { ScopeKit::Create().D3ViewVersionCheck(); },
       "ProofScope.clsScopeKit#1 get D3ViewVersionCheck"},
      {[&] { ScopeKit::Create().EnableDX(); }, "ProofScope.clsScopeKit#2 get EnableDX"},
      {[&] { exporter.psPath("D:\\f"); }, "ProofScope.clsScopeExporter#1 put psPath = \"D:\\f\""},
      {[&] { exporter.psBuzai("HARI"); }, "ProofScope.clsScopeExporter#1 put psBuzai = \"HARI\""},
      {[&] { exporter.piSou(2); }, "ProofScope.clsScopeExporter#1 put piSou = 2%"},
      {[&] { exporter.GetFileName(); }, "ProofScope.clsScopeExporter#1 GetFileName()"},
      {[&] { exporter.WriteData(Variant(std::int16_t{1})); },
       "ProofScope.clsScopeExporter#1 WriteData(1%)"},
      {[&] { presenter.AppendDataHEAD("梁"); }, "ProofPanel.clsPresenter#1 AppendDataHEAD(\"梁\")"},
      {[&] { presenter.D3MakeFileObj(form); },
       "ProofPanel.clsPresenter#1 put D3MakeFileObj = <Form>"},
      {[&] { presenter.D3MakeFileObj(); }, "ProofPanel.clsPresenter#1 get D3MakeFileObj"},
      {[&] { presenter.PrintKakuninzu(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]); },
       "ProofPanel.clsPresenter#1 PrintKakuninzu(Empty, Empty, Empty, Empty, Empty, Empty, "
       "Empty, Empty)"},
      {[&] { launch.FileName("f"); }, "ProofScopeRunner.clsLaunch#1 put FileName = \"f\""},
      {[&] { launch.Label1Caption("計算"); },
       "ProofScopeRunner.clsLaunch#1 put Label1Caption = \"計算\""},
      {[&] { launch.Label2Caption("施工図"); },
       "ProofScopeRunner.clsLaunch#1 put Label2Caption = \"施工図\""},
      {[&] { launch.SelectMode("Multi"); },
       "ProofScopeRunner.clsLaunch#1 put SelectMode = \"Multi\""},
      {[&] { launch.Selected("*001"); }, "ProofScopeRunner.clsLaunch#1 put Selected = \"*001\""},
      {[&] { launch.YobidasiMoto("3D表示"); },
       "ProofScopeRunner.clsLaunch#1 put YobidasiMoto = \"3D表示\""},
      {[&] { launch.BuzaiName("大梁"); }, "ProofScopeRunner.clsLaunch#1 put BuzaiName = \"大梁\""},
      {[&] { launch.Items("1"); }, "ProofScopeRunner.clsLaunch#1 put Items = \"1\""},
      {[&] { launch.FormWidth(9000); }, "ProofScopeRunner.clsLaunch#1 put FormWidth = 9000&"},
      {[&] { launch.FormHeight(6000); }, "ProofScopeRunner.clsLaunch#1 put FormHeight = 6000&"},
      {[&] { launch.FormLeft(0); }, "ProofScopeRunner.clsLaunch#1 put FormLeft = 0%"},
      {[&] { launch.FormTop(0); }, "ProofScopeRunner.clsLaunch#1 put FormTop = 0%"},
      {[&] { launch.SinkiButton(false); }, "ProofScopeRunner.clsLaunch#1 put SinkiButton = False"},
      {[&] { launch.start(); }, "ProofScopeRunner.clsLaunch#1 start()"},
      {[&] { launch.Selected(); }, "ProofScopeRunner.clsLaunch#1 get Selected"},
      {[&] { launch.EndStatus(); }, "ProofScopeRunner.clsLaunch#1 get EndStatus"},
      {[&] { progress.Min(0); }, "Progress#1 put Min = 0%"},
      {[&] { progress.Max(3); }, "Progress#1 put Max = 3%"},
      {[&] { progress.Value(1); }, "Progress#1 put Value = 1%"},
      {[&] { extra.Buzai("SELU_VORNE"); },
       "ExtraBarStore.clsExtraBars#1 put Buzai = \"SELU_VORNE\""},
      {[&] { extra.CopyPathPage_KaiSitei_Ini("D:\\a", pages); },
       "ExtraBarStore.clsExtraBars#1 CopyPathPage_KaiSitei_Ini(\"D:\\a\", {0%, 7%})"},
      {[&] { extra.CopyPathPage_KaiSitei("D:\\a", 7, 1, "D:\\b", 8); },
       "ExtraBarStore.clsExtraBars#1 CopyPathPage_KaiSitei(\"D:\\a\", 7%, 1%, \"D:\\b\", 8%)"},
      {[&] { SolverRecords::Create().Copy_CalcFile(1, 2, 3, 4, 5, 6, 7, 8); },
       "BeamSolver.clsSolverRecords#1 Copy_CalcFile(1%, 2%, 3%, 4%, 5%, 6%, 7%, 8%)"},
      {[&] { ThroughBars::Create().SetPathGetHikiToosiSW("D:\\Hollenbar.Dat", 4); },
       "ThroughBarStore.clsThroughBars#1 SetPathGetHikiToosiSW(\"D:\\Hollenbar.Dat\", 4%)"},
  };
  for (const Row& row : rows) {
    fakes.ClearLog();
    row.call();
    EXPECT_THAT(fakes.Log(), ElementsAre(row.expected));
  }
}

TEST_F(FrameTest, AnswersAreReadWithTheRuntimesCoercions) {
  fakes.Answer(FloorDirs::kProgId, "KaiNo", "12");
  fakes.Answer(FloorDirs::kProgId, "BuzaiNo", "5");
  fakes.Answer(BeamRoster::kProgId, "isKobari2", std::int16_t{-1});
  fakes.Answer(BeamRoster::kProgId, "Kind", 3.0);
  fakes.Answer(ExistProbe::kProgId, "Find_FileExists", Variant());
  fakes.Answer(StepGuide::kProgId, "isAllCalc", "abc");

  std::string beam = "B1";
  EXPECT_EQ(FloorDirs::Create().KaiNo(), 12);
  EXPECT_EQ(FloorDirs::Create().BuzaiNo(), 5.0);
  EXPECT_TRUE(BeamRoster::Create().isKobari2(beam));
  EXPECT_EQ(BeamRoster::Create().Kind(beam), 3);
  EXPECT_EQ(ExistProbe::Create().Find_FileExists("p"), "");  // Empty reads as ""
  EXPECT_RAISES(StepGuide::Create().isAllCalc(), errc::kTypeMismatch);
  EXPECT_RAISES(FloorDirs().CurrFloor(), errc::kObjectNotSet);  // a facade holding Nothing
}

// ---- Emptying a database ----------------------------------------------------

TEST(ClearAllTables, TheEnginesFirstVerdictReachesTheCallerAndNoRowIsDeleted) {
  char pattern[] = "/tmp/seluvorne-frame-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern);
  auto db = dao::DBEngine::Instance()->CreateDatabase((folder / "floor.mdb").string(),
                                                      std::string(dao::dbLangJapanese));
  for (const char* name : {"TOORIMEI", "KUTAIDATA"}) {
    auto table = db->CreateTableDef(name);
    table->Fields()->Append(table->CreateField("PAGE", dao::dbInteger));
    db->TableDefs()->Append(table);
    auto rows = db->OpenRecordset(name, dao::dbOpenDynaset);
    rows->AddNew();
    rows->SetValue("PAGE", std::int16_t{1});
    rows->Update();
  }
  try {
    ClearAllTables(*db);
    ADD_FAILURE() << "ClearAllTables did not raise";
  } catch (const Error& error) {
    EXPECT_EQ(error.number, errc::kSyntaxError);
    EXPECT_THAT(error.description, ::testing::StartsWith("Syntax error in FROM clause."));
  }
  for (const char* name : {"TOORIMEI", "KUTAIDATA"}) {
    auto rows = db->OpenRecordset(std::string("SELECT * FROM ") + name + ";", dao::dbOpenSnapshot);
    EXPECT_FALSE(rows->IsEOF()) << name;
  }
  db->Close();
  std::filesystem::remove_all(folder);
}

}  // namespace
