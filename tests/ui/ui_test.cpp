#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>

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

// ---- Message boxes -----------------------------------------------------------

}  // namespace
