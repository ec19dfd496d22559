#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/message_box.h"
#include "ui/application.h"
#include "ui/forms.h"
#include "ui/window_image.h"

namespace {

using namespace seluvorne;
using seluvorne::fakes::FakeComponents;
using seluvorne::frame::WindowPlacer;
using seluvorne::ui::frmKakunin;
using ::testing::ElementsAre;
using vb::Variant;

class KakuninTest : public ::testing::Test {
 protected:
  void SetUp() override { fakes.Answer(WindowPlacer::kProgId, "FormControl", true); }
  void TearDown() override { forms.UnloadKakunin(); }

  FakeComponents fakes;
  ui::QtForms forms;
};

TEST_F(KakuninTest, LoadedOnceShownHeadlessWithEveryGlyphOfItsCaptions) {
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
  forms.ShowKakunin("大梁の本体とフカシが計算されます");
  forms.ShowKakunin("小梁のフカシのみ計算されます");
  frmKakunin& form = *forms.LoadedKakunin();
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(form.lblKakunin->text().toStdString(), "小梁のフカシのみ計算されます");
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsWindowPlacer#1 get FormControl"));

  const QFontMetrics metrics(form.lblKakunin->font());
  for (char32_t c : QString::fromUtf8("大小梁の本体とフカシのみが計算されます").toUcs4())
    EXPECT_TRUE(metrics.inFontUcs4(c)) << form.lblKakunin->font().family().toStdString();
  const std::string picture = testing::TempDir() + "frmKakunin.png";
  ui::SaveWindowImage(form, picture);
  const QImage image(QString::fromStdString(picture));
  EXPECT_EQ(image.size(), form.size());
  int dark = 0;  // a caption rendered as nothing leaves no dark pixels
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      dark += qGray(image.pixel(x, y)) < 100;
  EXPECT_GT(dark, 200);
  EXPECT_RAISES(ui::SaveWindowImage(form, "/no/such/folder/x.png"), errc::kPathFileAccess);

  // Unloading releases it; the next showing loads a new one with a new placement object.
  forms.UnloadKakunin();
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
  forms.ShowKakunin("x");
  EXPECT_EQ(fakes.Created(WindowPlacer::kProgId), 2);
  // A load that fails leaves no form.
  forms.UnloadKakunin();
  Unregister(WindowPlacer::kProgId);
  EXPECT_RAISES(forms.ShowKakunin("x"), errc::kCannotCreateObject);
  EXPECT_EQ(forms.LoadedKakunin(), nullptr);
}

// ---- Placement ---------------------------------------------------------------

TEST_F(KakuninTest, PlacementIsFollowedWithTheFormItselfAndTheRecordKeptBetweenCalls) {
  Object received;
  fakes.Answer(WindowPlacer::kProgId, "MotoFormMoveGamenSoto", [&](std::span<Variant> args) {
    received = vb::CObj(args[0]);
    args[1] = Variant(std::int32_t{120});
    args[2] = Variant(std::int32_t{-45});
    return Variant();
  });
  frmKakunin& hidden = forms.Kakunin();  // loaded, not shown: nothing to follow
  hidden.FollowPlacement(-1);
  hidden.FollowPlacement(0);
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

  // Placement not active: nothing is placed.
  fakes.Answer(WindowPlacer::kProgId, "FormControl", false);
  forms.UnloadKakunin();
  forms.ShowKakunin("x");
  Object other = fakes::MakeFakeObject(fakes, "OtherForm");
  forms.LoadedKakunin()->FollowPlacement(0);
  forms.LoadedKakunin()->PlaceForm(other, -1);
  EXPECT_EQ(fakes.Log(WindowPlacer::kProgId).back(), "FolderKit.clsWindowPlacer#2 get FormControl");
}

// The form as the late-bound object the placement service works on.
TEST_F(KakuninTest, AnswersThePlacementServiceInTwips) {
  forms.ShowKakunin("x");
  frmKakunin& form = *forms.LoadedKakunin();
  const Object object = form.AsObject();
  auto get = [&](std::string_view member) {
    return CallByName(object, member, CallKind::PropertyGet);
  };
  CallByName(object, "Left", CallKind::PropertyPut, std::int32_t{1500});
  CallByName(object, "top", CallKind::PropertyPut, std::int32_t{3000});
  EXPECT_EQ(form.pos(), QPoint(100, 200));
  EXPECT_EQ(vb::CLng(get("Left")), 1500);
  EXPECT_EQ(vb::CLng(get("Width")), form.frameGeometry().width() * 15);
  EXPECT_EQ(vb::CStr(get("Name")), "frmKakunin");
  const Object label = vb::CObj(get("lblKakunin"));
  CallByName(label, "Caption", CallKind::PropertyPut,
             std::string("小梁の本体とフカシが計算されます"));
  EXPECT_EQ(form.lblKakunin->text().toStdString(), "小梁の本体とフカシが計算されます");
  CallByName(object, "Visible", CallKind::PropertyPut, false);
  EXPECT_FALSE(form.isVisible());
  EXPECT_RAISES(CallByName(object, "WindowState", CallKind::PropertyPut, std::int16_t{7}),
                errc::kInvalidCall);

  forms.UnloadKakunin();
  EXPECT_RAISES(get("Left"), errc::kObjectNotSet);
  EXPECT_RAISES(CallByName(label, "Caption", CallKind::PropertyGet), errc::kObjectNotSet);
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
