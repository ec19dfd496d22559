// frmSelect driven headless: the modal dialog run with timers, mouse clicks
// and key events; the confirmation drawing through recording fakes of the
// outside components.
//
// With SELUVORNE_PICTURES set to a folder, WindowPictures writes the PNGs of
// docs/ there (scripts/window_pictures.sh).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/frame.h"
#include "seluvorne/message_box.h"
#include "seluvorne/runtime.h"
#include "ui/forms.h"
#include "ui/window_image.h"

namespace {

using namespace seluvorne;
using seluvorne::fakes::FakeComponents;
using seluvorne::ui::frmSelect;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using vb::Variant;

// Twelve beams with Japanese grid-line names, as the page directory lists them.
const char* const kBeams[] = {"  1: X1通り 1-2", "  2: X1通り 2-3", "  3: X2通り 1-2",
                              "  4: X2通り 2-3", "  5: Y1通り A-B", "  6: Y1通り B-C",
                              "  7: Y2通り A-B", "  8: Y2通り B-C", "  9: 小梁 B1",
                              " 10: 小梁 B2",    " 11: 片持梁 C1",  " 12: 片持梁 C2"};

class SelectDialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fakes.Answer(frame::WindowPlacer::kProgId, "FormControl", true);
    frame::ScheduleStart();
    frame::EnsureStarted();
    SetMessageBoxes(boxes);
  }
  void TearDown() override {
    forms.UnloadSelect();
    forms.UnloadKakunin();
    SetMessageBoxes(nullptr);
    frame::ScheduleStart();
  }

  // The dialog loaded and filled with the twelve beams in the given mode.
  frmSelect& Filled(bool multi) {
    frmSelect& dialog = forms.Select();
    dialog.ClearList();
    for (const char* beam : kBeams)
      dialog.AddItem(beam);
    dialog.SetMultiSelect(multi);
    dialog.SetEnableKakuninzu(-1);
    return dialog;
  }

  // Shows the dialog modally and plays `user` in it; answers whether the user
  // closed it (a dialog still open afterwards is closed by the test).
  bool RunModal(frmSelect& dialog, const std::function<void()>& user) {
    bool still_open = false;
    QTimer::singleShot(0, [&] {
      user();
      still_open = dialog.isVisible();
      if (still_open) dialog.reject();
    });
    dialog.ShowModal();
    return !still_open;
  }

  static void ClickItem(frmSelect& dialog, int row) {
    QListWidget& list = *dialog.lstDlist;
    const QPoint centre = list.visualItemRect(list.item(row)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centre);
  }

  static void Type(QWidget* target, const std::string& keys) {
    for (char key : keys)
      QTest::keyClick(target, static_cast<Qt::Key>(key));
  }

  FakeComponents fakes;
  ui::QtForms forms;
  std::shared_ptr<ScriptedMessageBoxes> boxes = std::make_shared<ScriptedMessageBoxes>();
};

// ---- Buttons, clicks and function keys -----------------------------------------------

// What the user does, in which mode, and what the dialog answers ("open"
// when nothing closed it).
TEST_F(SelectDialogTest, ClicksAndFunctionKeysInBothModes) {
  using Step = std::function<void(frmSelect&)>;
  auto key = [](Qt::Key k) { return Step([k](frmSelect& d) { QTest::keyClick(d.lstDlist, k); }); };
  auto click = [](int row) { return Step([row](frmSelect& d) { ClickItem(d, row); }); };
  auto button = [](QPushButton* const frmSelect::*control) {
    return Step([control](frmSelect& d) { (d.*control)->click(); });
  };
  auto all = [](int index) { return Step([index](frmSelect& d) { d.cmdAll[index]->click(); }); };
  const std::string kAllTwelve = "*001002003004005006007008009010011012";
  const auto all_keys = {key(Qt::Key_F7), key(Qt::Key_F8), key(Qt::Key_F11), key(Qt::Key_F12)};
  const struct {
    const char* name;
    bool multi;
    std::vector<Step> steps;
    std::string result;
  } cases[] = {
      {"nothing chosen", true, {button(&frmSelect::cmdEnd)}, "*"},
      {"two clicks", true, {click(2), click(9), button(&frmSelect::cmdEnd)}, "*003010"},
      {"a click twice", true, {click(2), click(2), click(4), key(Qt::Key_F11)}, "*005"},
      {"F7 then F11", true, {key(Qt::Key_F7), key(Qt::Key_F11)}, kAllTwelve},
      {"F7 F8 F11", true, {key(Qt::Key_F7), key(Qt::Key_F8), key(Qt::Key_F11)}, "*"},
      {"buttons", true, {all(0), all(1), click(11), button(&frmSelect::cmdEnd)}, "*012"},
      {"F12", true, {click(0), key(Qt::Key_F12)}, "ToMenu"},
      {"F12 on a button",
       true,
       {[](frmSelect& d) { QTest::keyClick(d.cmdEnd, Qt::Key_F12); }},
       "ToMenu"},
      {"back to the menu", true, {button(&frmSelect::cmdToMenu)}, "ToMenu"},
      {"other keys", true, {key(Qt::Key_F9), key(Qt::Key_Return), key(Qt::Key_A)}, "open"},
      {"single: a click confirms", false, {click(3)}, "*004"},
      {"single: no function key", false, all_keys, "open"},
      {"single: the menu button", false, {button(&frmSelect::cmdToMenu)}, "ToMenu"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    frmSelect& dialog = Filled(c.multi);
    const bool closed = RunModal(dialog, [&] {
      for (const Step& step : c.steps)
        step(dialog);
    });
    EXPECT_EQ(closed ? dialog.Result() : "open", c.result);
    forms.UnloadSelect();
  }
}

// ---- The hidden debug mode -------------------------------------------------------------

// ---- The confirmation drawing --------------------------------------------------------

class ConfirmationDrawingTest : public SelectDialogTest {
 protected:
  // Everything the drawing needs; the viewer ends with `status` having chosen page 2.
  void DrawingPossible(std::int16_t status) {
    fakes.Answer(frame::ScopeKit::kProgId, "D3ViewVersionCheck", true);
    fakes.Answer(frame::ScopeKit::kProgId, "EnableDX", std::int16_t{1});
    fakes.Answer(frame::DisplayMetrics::kProgId, "ScreenTwipWidth", std::int32_t{19200});
    fakes.Answer(frame::DisplayMetrics::kProgId, "ScreenTwipHeight", std::int32_t{14400});
    fakes.Answer(frame::WindowPlacer::kProgId, "ScreenWorkAreaTwip", [](std::span<Variant> args) {
      args[2] = Variant(std::int32_t{19200});
      args[3] = Variant(std::int32_t{13800});
      return Variant();
    });
    fakes.Answer(frame::ScopeExporter::kProgId, "GetFileName", "\\floor\\HARI.d3");
    fakes.Answer(frame::ExistProbe::kProgId, "Find_FileExists", "HARI.d3");
    fakes.Answer(frame::Presenter::kProgId, "PrintKakuninzu", true);
    fakes.Answer(frame::Launch::kProgId, "EndStatus", status);
    fakes.Answer(frame::Launch::kProgId, "Selected", "*002");
    fakes.Answer(frame::FloorDirs::kProgId, "CurrFloor", "\\floor");
  }
};

// The viewer's end status decides the checked value and whether the dialog closes.
TEST_F(ConfirmationDrawingTest, EachEndStatusOfTheViewer) {
  const struct {
    std::int16_t status;
    bool multi;
    std::int16_t checked;
    std::string result;  // "open" when the dialog stays
  } cases[] = {{-1, true, 0, "open"}, {0, true, 1, "ToMenu"}, {1, true, 1, "*002"},
               {1, false, 1, "open"}, {2, true, 0, "open"},   {0, false, 1, "ToMenu"}};
  for (const auto& [status, multi, checked, result] : cases) {
    SCOPED_TRACE(::testing::Message() << status << (multi ? " multi" : " single"));
    DrawingPossible(status);
    fakes.ClearLog();
    frmSelect& dialog = Filled(multi);
    dialog.SetChkKakuninzuChecked(status == 2 ? 1 : 0);
    const bool closed = RunModal(dialog, [&] { dialog.chkKakuninzu->click(); });
    EXPECT_EQ(closed ? dialog.Result() : "open", result);
    EXPECT_EQ(dialog.chkKakuninzuChecked(), checked);
    EXPECT_EQ(dialog.LastViewerStatus(), status);
    EXPECT_FALSE(dialog.chkKakuninzu->isChecked());
    EXPECT_THAT(boxes->shown(), IsEmpty());
    const auto viewer = fakes.Log(frame::Launch::kProgId);
    EXPECT_THAT(viewer,
                Contains(HasSubstr(multi ? "SelectMode = \"Multi\"" : "SelectMode = \"Single\"")));
    EXPECT_THAT(viewer, Contains(HasSubstr("FileName = \"\\floor\\HARI.d3\"")));
    EXPECT_THAT(fakes.Log(frame::Presenter::kProgId),
                ElementsAre(HasSubstr("AppendDataHEAD(\"梁\")"), HasSubstr("put D3MakeFileObj"),
                            HasSubstr("PrintKakuninzu(")));
    forms.UnloadSelect();
  }
}

// A failing viewer closes the dialog; its error reaches the caller of the window.
TEST_F(ConfirmationDrawingTest, AFailingComponentIsRaisedToTheCallerOfTheWindow) {
  DrawingPossible(1);
  fakes.Answer(frame::Launch::kProgId, "start", [](std::span<Variant>) -> Variant {
    Raise(errc::kCannotCreateObject, "(the viewer)");
  });
  frmSelect& dialog = Filled(true);
  QTimer::singleShot(0, [&] { dialog.chkKakuninzu->click(); });
  EXPECT_RAISES(dialog.ShowModal(), errc::kCannotCreateObject);
  EXPECT_FALSE(dialog.isVisible());
}

// ---- Placement ---------------------------------------------------------------------------

// ---- Pictures for docs/ --------------------------------------------------------------------

TEST_F(SelectDialogTest, WindowPictures) {
  const char* folder = std::getenv("SELUVORNE_PICTURES");
  const std::filesystem::path out = folder ? folder : ::testing::TempDir();
  forms.ShowKakunin("大梁の本体とフカシが計算されます");
  frmSelect& dialog = Filled(true);
  for (int row : {0, 2, 4, 8})
    dialog.lstDlist->item(row)->setSelected(true);
  dialog.show();
  QApplication::processEvents();
  ui::SaveWindowImage(dialog, out / "frmSelect.png");
  ui::SaveWindowImage(*forms.LoadedKakunin(), out / "frmKakunin.png");
  EXPECT_TRUE(std::filesystem::file_size(out / "frmSelect.png") > 1000);
  dialog.hide();
}

}  // namespace
