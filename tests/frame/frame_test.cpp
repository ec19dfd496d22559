#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "fake_components.h"
#include "fake_forms.h"
#include "seluvorne/frame.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::frame;
using seluvorne::fakes::FakeComponents;
using seluvorne::fakes::MakeFakeObject;
using seluvorne::fakes::RecordingForms;
using ::testing::ElementsAre;
using vb::Variant;

class FrameTest : public ::testing::Test {
 protected:
  void SetUp() override { ScheduleStart(); }
  void TearDown() override {
    ScheduleStart();
    gForms.reset();
  }
  FakeComponents fakes;
};

// ---- Start-up and the page limit ---------------------------------------------

// The large limit when the preset's leading number, rounded half to even, is
// not zero; the preset is read from a new presets object each time.
TEST_F(FrameTest, PageMaxFollowsThePresetsLeadingNumber) {
  const struct {
    Variant preset;
    std::int16_t page_max;
  } cases[] = {{"0", 159},    {"", 159},        {"abc", 159}, {"0.5", 159},
               {"-0.5", 159}, {Variant(), 159}, {"1", 499},   {"-3", 499},
               {"7abc", 499}, {"1.5", 499},     {" 2", 499},  {Variant(2.5), 499}};
  for (const auto& [preset, page_max] : cases) {
    SCOPED_TRACE(vb::CStr(preset));
    fakes.Answer(Presets::kProgId, "GetHariDefault", preset);
    LoadPageMax();
    EXPECT_EQ(gPageMax, page_max);
  }
  fakes.Answer(Presets::kProgId, "GetHariDefault", "40000");
  EXPECT_RAISES(LoadPageMax(), errc::kOverflow);
  EXPECT_EQ(gPageMax, 499);  // unchanged
  EXPECT_EQ(fakes.Created(Presets::kProgId), static_cast<int>(std::size(cases)) + 1);
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
    EXPECT_FALSE(gFloorDirs || gExistProbe || gPageMax || gFromBeamSolver || gFukasiOnly);
    EXPECT_EQ(gYobidasiMoto, "");
    EnsureStarted();
    EXPECT_EQ(presets.Created(Presets::kProgId), 2);
  }
  ScheduleStart();
}

// A class of the library as the later layers write them: it reads the
// globals at each use and replaces the shared services when it dies.
class StoreLike {
 public:
  ~StoreLike() { ReplaceSharedCollaborators(); }
  std::string Floor() const { return gFloorDirs.CurrFloor(); }
};

// The start routine makes the shared services, then reads the preset; an
// instance that dies gives the survivors new shared services.
TEST_F(FrameTest, MainMakesTheSharedServicesEachDeathReplacesThem) {
  fakes.Answer(Presets::kProgId, "GetHariDefault", "1");
  Main();
  EXPECT_EQ(gPageMax, 499);
  StoreLike survivor;
  survivor.Floor();
  StoreLike().Floor();  // dies at once
  survivor.Floor();
  gExistProbe.Find_FileExists("f");
  EXPECT_THAT(fakes.Log(), ElementsAre("PresetStore.clsPresets#1 GetHariDefault(\"KutaiMaxPage\")",
                                       "FolderKit.clsFloorDirs#1 get CurrFloor",
                                       "FolderKit.clsFloorDirs#1 get CurrFloor",
                                       "FolderKit.clsFloorDirs#2 get CurrFloor",
                                       "FolderKit.clsExistProbe#2 Find_FileExists(\"f\")"));

  // A replacement that cannot be made keeps the old service.
  const Object old_floor_dirs = gFloorDirs.object();
  Unregister(FloorDirs::kProgId);
  ReplaceSharedCollaborators();
  EXPECT_EQ(gFloorDirs.object(), old_floor_dirs);
  EXPECT_EQ(fakes.Created(ExistProbe::kProgId), 3);  // the probe was still replaced
}

TEST_F(FrameTest, CalcTargetMessageTellsWhatTheCalculationCovers) {
  EXPECT_RAISES(ShowCalcTargetMessage(0), errc::kCannotCreateObject);  // no display layer
  DoEvents();                                                          // nothing to run
  auto forms = std::make_shared<RecordingForms>();
  gForms = forms;
  // The selection passes its excluded kind: 1 and 99 count as true.
  const std::pair<std::int16_t, std::int16_t> is_oobari_and_fukasi_only[] = {
      {-1, -1}, {-1, 0}, {0, -1}, {0, 0}, {1, 1}, {99, 0}};
  for (const auto& [is_oobari, fukasi_only] : is_oobari_and_fukasi_only) {
    gFukasiOnly = fukasi_only;
    ShowCalcTargetMessage(is_oobari);
  }
  EXPECT_THAT(forms->kakunin_captions,
              ElementsAre("大梁のフカシのみ計算されます", "大梁の本体とフカシが計算されます",
                          "小梁のフカシのみ計算されます", "小梁の本体とフカシが計算されます",
                          "大梁のフカシのみ計算されます", "大梁の本体とフカシが計算されます"));
  DoEvents();
  EXPECT_EQ(forms->event_rounds, 1);
}

// ---- The facades -------------------------------------------------------------

// A scripted answer that sets every argument it receives to `changed`.
fakes::Handler Overwrite(Variant changed, Variant answer) {
  return [=](std::span<Variant> args) {
    for (Variant& arg : args)
      arg = changed;
    return answer;
  };
}

// By-reference arguments come back from the component; the log shows the arguments as passed, with
// their types, and the call kinds.
TEST_F(FrameTest, FacadesPassArgumentsByReferenceAndWithTheirTypes) {
  fakes.Answer(FloorDirs::kProgId, "GetFullPathToKai", Overwrite(std::int16_t{9}, "D:\\9kai"));
  fakes.Answer(BeamRoster::kProgId, "harisei", Overwrite("G1'", "650.5mm"));
  fakes.Answer(Presenter::kProgId, "PrintKakuninzu", Overwrite("h!", std::int16_t{-1}));
  fakes.Answer(ThroughBars::kProgId, "SetPathPutHikiToosiSW", Overwrite(false, Variant()));
  std::int16_t zene = 1, kouji = 2, kai = 3;
  EXPECT_EQ(FloorDirs::Create().GetFullPathToKai(zene, kouji, kai), "D:\\9kai");
  EXPECT_EQ(std::vector<int>({zene, kouji, kai}), std::vector<int>({9, 9, 9}));
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  WindowPlacer::Create().ScreenWorkAreaTwip(left, top, right, bottom);
  std::string name = "G1";
  EXPECT_EQ(BeamRoster::Create().harisei(name, 2), 650.5);  // Val of the answer
  EXPECT_EQ(name, "G1'");
  Variant v[8];
  EXPECT_TRUE(Presenter::Create().PrintKakuninzu(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]));
  EXPECT_EQ(v[0], Variant("h!"));
  EXPECT_EQ(v[7], Variant("h!"));
  bool value = true;
  ThroughBars::Create().SetPathPutHikiToosiSW("x\\Hollenbar.Dat", 4, value);
  EXPECT_FALSE(value);

  ExistProbe::Create().Find_FileExists("p", ExistProbe::kFolder);
  Presenter::Create().D3MakeFileObj(MakeFakeObject(fakes, "Form"));
  vb::Array<std::int16_t> pages({1});
  pages(1) = 7;
  ExtraBars::Create().CopyPathPage_KaiSitei_Ini("D:\\a", pages);
  EXPECT_THAT(
      fakes.Log(),
      ElementsAre(
          "FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
          "FolderKit.clsWindowPlacer#1 ScreenWorkAreaTwip(0&, 0&, 0&, 0&)",
          "BeamRoster.clsRoster#1 harisei(\"G1\", 2%)",
          "ProofPanel.clsPresenter#1 PrintKakuninzu(Empty, Empty, Empty, Empty, Empty, Empty, "
          "Empty, Empty)",
          "ThroughBarStore.clsThroughBars#1 SetPathPutHikiToosiSW(\"x\\Hollenbar.Dat\", 4%, True)",
          "FolderKit.clsExistProbe#1 Find_FileExists(\"p\", 16&)",
          "ProofPanel.clsPresenter#2 put D3MakeFileObj = <Form>",
          "ExtraBarStore.clsExtraBars#1 CopyPathPage_KaiSitei_Ini(\"D:\\a\", {0%, 7%})"));
}

TEST_F(FrameTest, AnswersAreReadWithTheRuntimesCoercions) {
  fakes.Answer(FloorDirs::kProgId, "KaiNo", "12");
  fakes.Answer(ExistProbe::kProgId, "Find_FileExists", Variant());
  fakes.Answer(StepGuide::kProgId, "isAllCalc", "abc");
  EXPECT_EQ(FloorDirs::Create().KaiNo(), 12);
  EXPECT_EQ(ExistProbe::Create().Find_FileExists("p"), "");  // Empty reads as ""
  EXPECT_RAISES(StepGuide::Create().isAllCalc(), errc::kTypeMismatch);
  EXPECT_RAISES(FloorDirs().CurrFloor(), errc::kObjectNotSet);  // a facade holding Nothing
}

}  // namespace
