#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/display.h"
#include "seluvorne/message_box.h"
#include "ui/application.h"
#include "ui/forms.h"
#include "ui/japanese_font.h"
#include "ui/window_image.h"

namespace {

using namespace seluvorne;
using seluvorne::fakes::FakeComponents;
using seluvorne::frame::WindowPlacer;
using seluvorne::ui::frmKakunin;
using seluvorne::ui::QtForms;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vb::Variant;

constexpr const char* kCaptions[] = {
    "大梁のフカシのみ計算されます", "大梁の本体とフカシが計算されます",
    "小梁のフカシのみ計算されます", "小梁の本体とフカシが計算されます", frmKakunin::kDesignCaption};

class KakuninTest : public ::testing::Test {
 protected:
  void SetUp() override { fakes.Answer(WindowPlacer::kProgId, "FormControl", true); }
  void TearDown() override { forms.UnloadKakunin(); }

  Variant Get(const Object& object, std::string_view member) {
    return CallByName(object, member, CallKind::PropertyGet);
  }
  template <class V>
  void Put(const Object& object, std::string_view member, const V& value) {
    CallByName(object, member, CallKind::PropertyPut, value);
  }

  FakeComponents fakes;
  QtForms forms;
};

TEST(Application, OneForTheProcessCreatedWhenTheHostHasNone) {
  QApplication& first = ui::EnsureApplication();
  EXPECT_EQ(&first, QCoreApplication::instance());
  EXPECT_EQ(&ui::EnsureApplication(), &first);

  bool ran = false;
  QTimer::singleShot(0, [&] { ran = true; });
  ui::ProcessPendingEvents();
  EXPECT_TRUE(ran);

  // The offscreen platform's screen, seen without Qt types.
  std::optional<ScreenRect> screen = PrimaryScreenBounds();
  ASSERT_TRUE(screen);
  EXPECT_GT(screen->width, 0);
  EXPECT_TRUE(PrimaryScreenWorkArea());
}

TEST_F(KakuninTest, LoadedOnceOnFirstShowAndAskedWhetherPlacementIsActive) {
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
  forms.ShowKakunin("大梁の本体とフカシが計算されます");
  forms.ShowKakunin("小梁のフカシのみ計算されます");
  frmKakunin* form = forms.LoadedKakunin();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(form->lblKakunin->text().toStdString(), "小梁のフカシのみ計算されます");
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsWindowPlacer#1 get FormControl"));

  // Unloading releases it; the next showing loads a new one with a new placement object.
  forms.UnloadKakunin();
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
  forms.ShowKakunin("x");
  EXPECT_EQ(fakes.Created(WindowPlacer::kProgId), 2);
}

TEST_F(KakuninTest, ALoadThatFailsLeavesNoForm) {
  Unregister(WindowPlacer::kProgId);
  EXPECT_RAISES(forms.ShowKakunin("x"), errc::kCannotCreateObject);
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
}

TEST_F(KakuninTest, DesignTimeLabelAndAFontThatHasEveryGlyph) {
  frmKakunin& form = forms.Kakunin();
  EXPECT_FALSE(form.isVisible());  // loaded, not shown
  EXPECT_EQ(form.lblKakunin->text().toStdString(), frmKakunin::kDesignCaption);
  const QFont font = form.lblKakunin->font();
  const QFontMetrics metrics(font);
  for (const char* caption : kCaptions)
    for (char32_t c : QString::fromUtf8(caption).toUcs4())
      EXPECT_TRUE(metrics.inFontUcs4(c)) << caption << " in " << font.family().toStdString();

  // A family that is not installed falls back to one with Japanese glyphs.
  const QFont fallback = ui::JapaneseFont("No Such Family", 9);
  EXPECT_NE(fallback.family(), "No Such Family");
  EXPECT_TRUE(QFontMetrics(fallback).inFontUcs4(U'梁'));
  EXPECT_EQ(fallback.pointSizeF(), 9);
}

TEST_F(KakuninTest, RendersItsCaptionToPng) {
  forms.ShowKakunin("大梁の本体とフカシが計算されます");
  frmKakunin& form = *forms.LoadedKakunin();
  ui::SaveWindowImage(form, "frmKakunin.png");
  QImage image("frmKakunin.png");
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(image.size(), form.size());
  // The glyphs are drawn: a caption rendered as nothing leaves no dark pixels.
  int dark_in_text = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qGray(image.pixel(x, y)) < 100) ++dark_in_text;
  EXPECT_GT(dark_in_text, 200);
  EXPECT_RAISES(ui::SaveWindowImage(form, "/no/such/folder/x.png"), errc::kPathFileAccess);
}

// ---- Placement ---------------------------------------------------------------

struct PlacementCase {
  bool form_control;  // what the placement service says
  bool visible;
  std::int16_t set_property;
  std::vector<std::string> calls;  // on the placement service, after FormControl
};
void PrintTo(const PlacementCase& c, std::ostream* out) {
  *out << "FormControl " << c.form_control << ", visible " << c.visible << ", setProperty "
       << c.set_property;
}

class Placement : public KakuninTest, public ::testing::WithParamInterface<PlacementCase> {};

TEST_P(Placement, FollowsOnlyWhenActiveAndVisible) {
  const PlacementCase& c = GetParam();
  fakes.Answer(WindowPlacer::kProgId, "FormControl", c.form_control);
  frmKakunin& form = forms.Kakunin();
  form.setVisible(c.visible);
  fakes.ClearLog();
  form.FollowPlacement(c.set_property);
  EXPECT_EQ(fakes.Log(), c.calls);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Placement,
    ::testing::Values(
        PlacementCase{false, true, -1, {}}, PlacementCase{false, true, 0, {}},
        PlacementCase{true, false, -1, {}}, PlacementCase{true, false, 0, {}},
        PlacementCase{
            true,
            true,
            -1,
            {"FolderKit.clsWindowPlacer#1 MotoFormSetFormProperty(<frmKakunin>, 0&, 0&)"}},
        PlacementCase{
            true,
            true,
            0,
            {"FolderKit.clsWindowPlacer#1 MotoFormMoveGamenSoto(<frmKakunin>, 0&, 0&)"}}));

TEST_F(KakuninTest, PlacementRecordIsKeptBetweenCallsAndTheFormIsPassedItself) {
  Object received;
  fakes.Answer(WindowPlacer::kProgId, "MotoFormMoveGamenSoto", [&](std::span<Variant> args) {
    received = vb::CObj(args[0]);
    args[1] = Variant(std::int32_t{120});
    args[2] = Variant(std::int32_t{-45});
    return Variant();
  });
  forms.ShowKakunin("x");
  frmKakunin& form = *forms.LoadedKakunin();
  form.FollowPlacement(0);
  form.FollowPlacement(-1);
  EXPECT_EQ(received, form.AsObject());
  EXPECT_THAT(fakes.Log(WindowPlacer::kProgId),
              ElementsAre("FolderKit.clsWindowPlacer#1 get FormControl",
                          "FolderKit.clsWindowPlacer#1 MotoFormMoveGamenSoto(<frmKakunin>, 0&, 0&)",
                          "FolderKit.clsWindowPlacer#1 MotoFormSetFormProperty(<frmKakunin>, "
                          "120&, -45&)"));
}

TEST_F(KakuninTest, PlaceFormWithoutActivePlacementCallsNothing) {
  fakes.Answer(WindowPlacer::kProgId, "FormControl", false);
  forms.ShowKakunin("x");
  Object other = fakes::MakeFakeObject(fakes, "OtherForm");
  fakes.ClearLog();
  forms.LoadedKakunin()->PlaceForm(other, -1);
  EXPECT_THAT(fakes.Log(), IsEmpty());
}

// ---- The form as a late-bound object -----------------------------------------

TEST_F(KakuninTest, AnswersThePlacementServiceInTwips) {
  forms.ShowKakunin("x");
  frmKakunin& form = *forms.LoadedKakunin();
  const Object object = form.AsObject();
  Put(object, "Left", std::int32_t{1500});
  Put(object, "top", std::int32_t{3000});
  EXPECT_EQ(form.pos(), QPoint(100, 200));
  EXPECT_EQ(vb::CLng(Get(object, "Left")), 1500);
  EXPECT_EQ(vb::CLng(Get(object, "Width")), form.frameGeometry().width() * 15);
  EXPECT_EQ(vb::CLng(Get(object, "ScaleHeight")), form.height() * 15);
  EXPECT_EQ(Get(object, "Visible"), Variant(true));
  EXPECT_EQ(vb::CStr(Get(object, "Name")), "frmKakunin");
  CallByName(object, "Move", CallKind::Method, std::int32_t{0}, std::int32_t{15});
  EXPECT_EQ(form.pos(), QPoint(0, 1));

  const Object label = vb::CObj(Get(object, "lblKakunin"));
  Put(label, "Caption", std::string("小梁の本体とフカシが計算されます"));
  EXPECT_EQ(form.lblKakunin->text().toStdString(), "小梁の本体とフカシが計算されます");
  EXPECT_EQ(vb::CStr(Get(label, "Name")), "lblKakunin");

  CallByName(object, "FollowPlacement", CallKind::Method, std::int16_t{-1});
  EXPECT_EQ(fakes.Log(WindowPlacer::kProgId).size(), 2u);  // FormControl, then the placement

  Put(object, "Visible", false);
  EXPECT_FALSE(form.isVisible());
  EXPECT_RAISES(Put(object, "WindowState", std::int16_t{7}), errc::kInvalidCall);

  forms.UnloadKakunin();
  EXPECT_RAISES(Get(object, "Left"), errc::kObjectNotSet);
  EXPECT_RAISES(Get(label, "Caption"), errc::kObjectNotSet);
}

// ---- Message boxes -----------------------------------------------------------

TEST(MessageBoxes, ScriptedBoxesAnswerFromTheScriptThenTheFirstButton) {
  auto scripted = std::make_shared<ScriptedMessageBoxes>();
  SetMessageBoxes(scripted);
  scripted->Script(MessageAnswer::No);
  EXPECT_EQ(MsgBox("続けますか", MessageButtons::YesNo), MessageAnswer::No);
  EXPECT_EQ(MsgBox("デバッグモード"), MessageAnswer::Ok);
  scripted->Script(MessageAnswer::Cancel);
  EXPECT_RAISES(MsgBox("only OK"), errc::kInvalidCall);
  ASSERT_EQ(scripted->shown().size(), 3u);
  EXPECT_EQ(scripted->shown()[1].text, "デバッグモード");
  SetMessageBoxes(nullptr);
}

TEST(MessageBoxes, TheQtBoxAnswersTheButtonPressed) {
  ui::EnsureApplication();
  SetMessageBoxes(nullptr);
  std::string seen_text;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    seen_text = box->text().toStdString();
    EXPECT_EQ(box->icon(), QMessageBox::Warning);
    box->button(QMessageBox::Cancel)->click();
  });
  EXPECT_EQ(
      MsgBox("確認伏図ファイルが有りません。", MessageButtons::OkCancel, MessageIcon::Warning),
      MessageAnswer::Cancel);
  EXPECT_EQ(seen_text, "確認伏図ファイルが有りません。");
}

}  // namespace
