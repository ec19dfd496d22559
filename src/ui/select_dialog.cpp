#include "ui/select_dialog.h"

#include <QCheckBox>
#include <QEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <utility>

#include "seluvorne/display.h"
#include "seluvorne/message_box.h"
#include "seluvorne/runtime.h"
#include "ui/application.h"
#include "ui/japanese_font.h"
#include "ui/widget_object.h"

namespace seluvorne::ui {

namespace {

using frame::gFloorDirs;

constexpr const char* kNoEnvironment = "お客様のパソコン環境では、確認伏図表示は動作できません。";
constexpr const char* kNoDrawingFile = "確認伏図ファイルが有りません。";
constexpr const char* kDebugMessage = "デバッグモード";
// The smallest screen the 3-D viewer runs on, in twips (800 x 600 pixels).
constexpr std::int32_t kViewerMinWidth = 800 * kTwipsPerPixel;
constexpr std::int32_t kViewerMinHeight = 600 * kTwipsPerPixel;

// The dialog as a late-bound object: the members of every window.
class SelectObject : public DispatchImpl<SelectObject, WidgetMembers> {
 public:
  using DispatchImpl::DispatchImpl;
  static const MemberTable<SelectObject>& Members() {
    static const auto table = WidgetMemberTable<SelectObject>("frmSelect");
    return table;
  }
};

// The runtime's key code of a key: letters, digits and blank as their
// character, F1..F24 from 112; any other key 0.
int RuntimeKeyCode(const QKeyEvent& key) {
  const int code = key.key();
  if (code >= Qt::Key_F1 && code <= Qt::Key_F24) return 112 + (code - Qt::Key_F1);
  if (code >= 0x20 && code <= 0x5A) return code;
  return 0;
}

// The work of members 5 and 6 (secondary beams) and of every other kind (girders).
bool SecondaryBeamWork() {
  const double buzai = gFloorDirs.BuzaiNo();
  return buzai == 5 || buzai == 6;
}

QPushButton* MakeButton(const char* caption, QWidget* parent, int left, const char* name) {
  auto* button = new QPushButton(QString::fromUtf8(caption), parent);
  button->setObjectName(name);
  button->setGeometry(left, 30, 80, 32);
  return button;
}

QLabel* MakeFunctionLabel(const char* caption, QWidget* parent, int left) {
  auto* label = new QLabel(QString::fromUtf8(caption), parent);
  label->setObjectName("lblFuncKey");
  label->setGeometry(left, 8, 80, 18);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

}  // namespace

template <class Action>
void frmSelect::Guarded(Action&& action) {
  try {
    action();
  } catch (...) {
    if (!pending_error_) pending_error_ = std::current_exception();
    reject();
  }
}

frmSelect::frmSelect(std::function<void(std::int16_t)> follow)
    : lstDlist(new QListWidget(this)),
      fraCmd(new QFrame(this)),
      cmdAll{MakeButton("全選択", fraCmd, 8, "cmdAll"), MakeButton("全解除", fraCmd, 92, "cmdAll")},
      cmdEnd(MakeButton("決定", fraCmd, 176, "cmdEnd")),
      cmdToMenu(MakeButton("メニューへ", fraCmd, 260, "cmdToMenu")),
      chkKakuninzu(new QCheckBox(QString::fromUtf8("確認伏図を表示する"), this)),
      chkD3MakeFile(new QCheckBox(QString::fromUtf8("3D作図ファイルを残す"), this)),
      lblFuncKey{MakeFunctionLabel("[ F7 ]", fraCmd, 8), MakeFunctionLabel("[ F8 ]", fraCmd, 92),
                 MakeFunctionLabel("[ F11 ]", fraCmd, 176),
                 MakeFunctionLabel("[ F12 ]", fraCmd, 260)},
      lblFukusuu(new QLabel(QString::fromUtf8("複数の梁を選択できます"), this)),
      Label1(new QLabel(QString::fromUtf8("梁を選択してください"), this)),
      follow_(std::move(follow)) {
  setObjectName("frmSelect");
  setWindowTitle(QString::fromUtf8("梁の選択"));
  setFont(JapaneseFont(QString::fromUtf8("ＭＳ Ｐゴシック"), 10));
  setFixedSize(364, 494);

  Label1->setObjectName("Label1");
  Label1->setGeometry(12, 8, 340, 20);
  lblFukusuu->setObjectName("lblFukusuu");
  lblFukusuu->setGeometry(12, 30, 340, 20);
  lstDlist->setObjectName("lstDlist");
  lstDlist->setGeometry(12, 54, 340, 322);
  lstDlist->setSelectionMode(QAbstractItemView::MultiSelection);
  chkKakuninzu->setObjectName("chkKakuninzu");
  chkKakuninzu->setGeometry(12, 384, 340, 22);
  chkD3MakeFile->setObjectName("chkD3MakeFile");
  chkD3MakeFile->setGeometry(0, 0, 200, 22);
  chkD3MakeFile->hide();
  fraCmd->setObjectName("fraCmd");
  fraCmd->setFrameShape(QFrame::StyledPanel);
  fraCmd->setGeometry(6, 414, 352, 72);

  connect(cmdAll[0], &QPushButton::clicked, this, [this] { cmdAll_Click(0); });
  connect(cmdAll[1], &QPushButton::clicked, this, [this] { cmdAll_Click(1); });
  connect(cmdEnd, &QPushButton::clicked, this, [this] { cmdEnd_Click(); });
  connect(cmdToMenu, &QPushButton::clicked, this, [this] { cmdToMenu_Click(); });
  connect(lstDlist, &QListWidget::itemClicked, this, [this] { lstDlist_Click(); });
  connect(chkKakuninzu, &QCheckBox::stateChanged, this, [this](int state) {
    if (state == Qt::Checked) Guarded([this] { ConfirmationDrawing(); });
  });
  for (QWidget* control : {static_cast<QWidget*>(lstDlist), static_cast<QWidget*>(cmdAll[0]),
                           static_cast<QWidget*>(cmdAll[1]), static_cast<QWidget*>(cmdEnd),
                           static_cast<QWidget*>(cmdToMenu), static_cast<QWidget*>(chkKakuninzu)})
    control->installEventFilter(this);

  object_ = std::make_shared<SelectObject>(this);
}

frmSelect::~frmSelect() = default;

void frmSelect::Load() {
  placer_ = frame::WindowPlacer::Create();
  placement_active_ = placer_.FormControl();
  Place(-1);
}

void frmSelect::Place(std::int16_t setProperty) {
  if (placement_active_) {
    Object self = object_;
    if (setProperty != 0)
      placer_.MotoFormSetFormProperty(self, placement_first_, placement_second_);
    else
      placer_.MotoFormMoveGamenSoto(self, placement_first_, placement_second_);
  }
  ProcessPendingEvents();
  if (follow_) follow_(setProperty);
}

// ---- As the page directory drives it -------------------------------------------

void frmSelect::ClearList() {
  lstDlist->clear();
}

void frmSelect::AddItem(const std::string& item) {
  lstDlist->addItem(QString::fromStdString(item));
}

void frmSelect::SetMultiSelect(bool multi) {
  for (QWidget* control : {static_cast<QWidget*>(cmdAll[0]), static_cast<QWidget*>(cmdAll[1]),
                           static_cast<QWidget*>(cmdEnd), static_cast<QWidget*>(lblFukusuu)})
    control->setVisible(multi);
  for (QLabel* label : lblFuncKey)
    label->setVisible(multi);
}

void frmSelect::SetToMenuCaption(const std::string& caption) {
  cmdToMenu->setText(QString::fromStdString(caption));
}

void frmSelect::SetEnableKakuninzu(std::int16_t value) {
  enable_kakuninzu_ = value;
  chkKakuninzu->setVisible(value != 0);
}

void frmSelect::ShowModal() {
  setModal(true);
  pending_error_ = nullptr;
  exec();
  if (std::exception_ptr error = std::exchange(pending_error_, nullptr))
    std::rethrow_exception(error);
}

// ---- What the controls do --------------------------------------------------------

void frmSelect::cmdAll_Click(std::int16_t Index) {
  for (int i = 0; i < lstDlist->count(); ++i)
    lstDlist->item(i)->setSelected(Index <= 0);
}

void frmSelect::cmdEnd_Click() {
  result_ = SelectedPages();
  accept();
}

void frmSelect::cmdToMenu_Click() {
  result_ = "ToMenu";
  accept();
}

void frmSelect::lstDlist_Click() {
  if (!Shows(cmdAll[0])) cmdEnd_Click();
}

void frmSelect::FunctionKey(int key_code) {
  switch (key_code) {
    case kKeyF7:
      if (Shows(cmdAll[0]) && Shows(lblFuncKey[0])) cmdAll_Click(0);
      break;
    case kKeyF8:
      if (Shows(cmdAll[1]) && Shows(lblFuncKey[1])) cmdAll_Click(1);
      break;
    case kKeyF11:
      if (Shows(cmdEnd) && Shows(lblFuncKey[2])) cmdEnd_Click();
      break;
    case kKeyF12:
      if (Shows(cmdToMenu) && Shows(lblFuncKey[3])) cmdToMenu_Click();
      break;
    default:
      break;
  }
}

// A wrong key empties the entry and is not tried again as a first letter; the
// key after the complete word empties it too. The debug mode stays on.
void frmSelect::chkKakuninzu_KeyDown(int key_code) {
  const std::string word = kDebugWord;
  const std::string expected = vb::Mid(word, vb::Len(typed_keys_) + 1, 1);
  if (key_code > 0 && expected == std::string(1, static_cast<char>(key_code)))
    typed_keys_ += expected;
  else
    typed_keys_.clear();
  if (typed_keys_ == word) {
    debug_mode_ = true;
    MsgBox(kDebugMessage, MessageButtons::Ok);
    chkD3MakeFile->move(0, 0);
    chkD3MakeFile->show();
    chkD3MakeFile->raise();
  }
}

bool frmSelect::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key_code = RuntimeKeyCode(static_cast<const QKeyEvent&>(*event));
    Guarded([&] {
      if (watched == chkKakuninzu)
        chkKakuninzu_KeyDown(key_code);
      else
        FunctionKey(key_code);
    });
  }
  return QDialog::eventFilter(watched, event);
}

// On activation: while the whole calculation runs and its window was last
// minimised, the dialog goes off the screen with it.
bool frmSelect::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    Guarded([this] {
      const auto navigator = frame::StepGuide::Create();
      const bool all_calc = navigator.isAllCalc();
      const bool minimized = vb::CBool(navigator.GetAllCalcWindowStateLastVal_isMinimized());
      if (all_calc && minimized) Place(0);
    });
  }
  return QDialog::event(event);
}

// ---- The confirmation drawing ----------------------------------------------------

bool frmSelect::CanDraw(std::int32_t& width, std::int32_t& height) {
  const auto metrics = frame::DisplayMetrics::Create();
  const std::int32_t screen_width = metrics.ScreenTwipWidth();
  const std::int32_t screen_height = metrics.ScreenTwipHeight();
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  if (!placer_) placer_ = frame::WindowPlacer::Create();
  placer_.ScreenWorkAreaTwip(left, top, right, bottom);
  if (!scope_kit_) scope_kit_ = frame::ScopeKit::Create();
  const bool possible = scope_kit_.D3ViewVersionCheck() && vb::CBool(scope_kit_.EnableDX()) &&
                        screen_width >= kViewerMinWidth && screen_height >= kViewerMinHeight;
  if (!possible) {
    MsgBox(kNoEnvironment, MessageButtons::Ok, MessageIcon::Warning);
    return false;
  }
  // The viewer fills the work area, or the screen when the service knows none.
  width = right > left ? right - left : screen_width;
  height = bottom > top ? bottom - top : screen_height;
  return true;
}

void frmSelect::ConfirmationDrawing() {
  std::int32_t width = 0, height = 0;
  if (CanDraw(width, height)) {
    const std::string floor = gFloorDirs.CurrFloor();
    const auto exporter = frame::ScopeExporter::Create();
    exporter.psPath(floor);
    exporter.psBuzai("HARI");
    exporter.piSou(gFloorDirs.KaiNo());
    const std::string file = exporter.GetFileName();
    if (file.empty() || frame::gExistProbe.Find_FileExists(file).empty()) {
      MsgBox(kNoDrawingFile, MessageButtons::Ok, MessageIcon::Warning);
    } else {
      const bool multi = Shows(cmdAll[0]);
      const bool secondary = SecondaryBeamWork();
      const auto presenter = frame::Presenter::Create();
      presenter.AppendDataHEAD("梁");
      presenter.D3MakeFileObj(exporter.object());
      // What the presenter draws: the floor, the listed and the selected beams,
      // the mode, the caller and the calculation, the member kind, debug mode.
      vb::Variant folder(floor), items(ItemsText()), selected(SelectedPages()), multi_select(multi),
          from_solver(frame::gFromBeamSolver), fukasi_only(frame::gFukasiOnly),
          secondary_beam(secondary), keep_file(vb::BoolToInt(chkD3MakeFile->isChecked()));
      const bool drawn =
          presenter.PrintKakuninzu(folder, items, selected, multi_select, from_solver, fukasi_only,
                                   secondary_beam, keep_file);
      exporter.WriteData(keep_file);
      if (!drawn) {
        ViewerEnded(-1, {});  // nothing drawn: as a cancelled viewer
      } else {
        const auto viewer = frame::Launch::Create();
        viewer.FileName(file);
        viewer.FormWidth(width);
        viewer.FormHeight(height);
        viewer.FormLeft(0);
        viewer.FormTop(0);
        const bool display_only = vb::InStr(frame::gYobidasiMoto, "3D表示") > 0;
        viewer.Label1Caption(display_only ? "3D表示" : "計算");
        viewer.Label2Caption("施工図");
        viewer.SelectMode(multi ? "Multi" : "Single");
        viewer.Selected(SelectedPages());
        viewer.YobidasiMoto(frame::gYobidasiMoto);
        viewer.SinkiButton(false);
        viewer.BuzaiName(secondary ? "小梁" : "大梁");
        viewer.Items(ItemsText());
        viewer.start();
        const std::string chosen = viewer.Selected();
        ViewerEnded(viewer.EndStatus(), chosen);
      }
    }
  }
  chkKakuninzu->setChecked(false);
  Place(-1);
}

// -1: cancelled. 0: back to the menu. 1: the beams chosen in the viewer are
// confirmed (in multi-select mode). Any other status counts as cancelled.
void frmSelect::ViewerEnded(std::int16_t status, const std::string& chosen) {
  viewer_status_ = status;
  switch (status) {
    case 0:
      kakuninzu_checked_ = 1;
      cmdToMenu_Click();
      break;
    case 1:
      kakuninzu_checked_ = 1;
      SelectPages(chosen);
      if (Shows(cmdAll[0])) cmdEnd_Click();
      break;
    default:
      kakuninzu_checked_ = 0;
      break;
  }
}

// ---- Helpers -----------------------------------------------------------------------

// The packed list of the selected items: the page number each item begins
// with, right-aligned in three characters, written as three digits.
std::string frmSelect::SelectedPages() const {
  std::string pages = "*";
  for (int i = 0; i < lstDlist->count(); ++i)
    if (lstDlist->item(i)->isSelected())
      pages += vb::Format(vb::Val(vb::Left(lstDlist->item(i)->text().toStdString(), 3)), "000");
  return pages;
}

// The list's items for the viewer, one per line.
std::string frmSelect::ItemsText() const {
  std::string items;
  for (int i = 0; i < lstDlist->count(); ++i) {
    if (i > 0) items += "\r\n";
    items += lstDlist->item(i)->text().toStdString();
  }
  return items;
}

// Selects exactly the items whose page is in the packed list `packed`.
void frmSelect::SelectPages(const std::string& packed) {
  const std::string pages = vb::Mid(packed, 2);
  for (int i = 0; i < lstDlist->count(); ++i) {
    const double page = vb::Val(lstDlist->item(i)->text().toStdString());
    bool chosen = false;
    for (std::int32_t at = 1; at + 2 <= vb::Len(pages); at += 3)
      chosen = chosen || vb::Val(vb::Mid(pages, at, 3)) == page;
    lstDlist->item(i)->setSelected(chosen);
  }
}

// A control's own Visible setting, whether or not the dialog shows.
bool frmSelect::Shows(const QWidget* control) const {
  return !control->isHidden();
}

}  // namespace seluvorne::ui
