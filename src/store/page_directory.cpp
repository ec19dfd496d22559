// The page directory of a floor (table TOORIMEI), the kind of a page, and the
// beam selection through frmSelect.

#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

namespace {

using frame::gFloorDirs;

constexpr const char* kDirectory = "SELECT * FROM TOORIMEI ORDER BY PAGE;";
constexpr const char* kKindRows = "SELECT * FROM KUTAIDATA Where SUBPAGE = 0 AND BANGOU = 81 ;";
constexpr const char* kNoFile = "NoFile";
constexpr const char* kToMenu = "ToMenu";
// Written into the caller's page by the kind members when the floor has no kind rows.
constexpr std::int16_t kNoKindRows = -99;
// GetRows takes the kind rows in one piece of at most this many.
constexpr std::int32_t kKindRowsAtOnce = 9999;
// In SelectedSeluVorneNo, the excluded kind while the whole calculation runs: none.
constexpr std::int16_t kExcludeNothing = 99;

bool SecondaryBeamWork() {
  const double buzai = gFloorDirs.BuzaiNo();
  return buzai == 5 || buzai == 6;
}

std::int16_t PageOf(const dao::Recordset& rows) {
  return vb::CInt(rows.Value("PAGE"));
}

// The 1-based page as three zero-padded digits; 32767 overflows (6).
std::string PackedPage(std::int16_t page) {
  return vb::Format(vb::Add<std::int16_t>(page, 1), "000");
}

// "  1: X1": the 1-based page right-aligned in three characters, ": ", the
// trimmed grid-line name. Four-digit numbers keep their last three.
std::string ListItem(std::int16_t page, const vb::Variant& toori) {
  return vb::Right("   " + vb::Str(vb::Add<std::int16_t>(page, 1)), 3) + ": " +
         vb::Trim(vb::CStr(toori));
}

}  // namespace

// ---- Shared steps ------------------------------------------------------------

bool clsSeluVorneDataService::OpenCurrentFloor() {
  return OpenSeluVorne(gFloorDirs.CurrFloor(), KutaiDb);
}

// The kind members open the remembered floor folder, first taking it from
// the floor-path service when it is empty.
std::int16_t clsSeluVorneDataService::KindCode(std::int16_t& page, bool either_beam) {
  if (curr_kai_.empty()) curr_kai_ = gFloorDirs.CurrFloor();
  if (!OpenSeluVorne(curr_kai_, KutaiDb)) return 0;
  auto rows = KutaiDb->OpenRecordset(kKindRows);
  if (rows->RecordCount() == 0) {
    rows->Close();
    page = kNoKindRows;
    return 0;
  }
  const vb::Array<vb::Variant> table = rows->GetRows(kKindRowsAtOnce);
  rows->Close();
  std::string kind_text;
  for (std::int32_t row = 0; row <= table.UBound(2); ++row) {
    if (vb::CInt(table(0, row)) == page) {
      kind_text = vb::CStr(table(3, row));
      break;
    }
  }
  const std::int16_t kind = roster_.Kind(kind_text);
  if (either_beam) return kind == 2 || kind == 3 ? 1 : 0;
  if (kind == 2) return 0;
  if (kind == 3) return 1;
  return kind;
}

std::string clsSeluVorneDataService::PageField(std::int16_t page, std::string_view field) {
  std::string result;
  if (!OpenCurrentFloor()) return result;
  auto rows =
      KutaiDb->OpenRecordset("SELECT * FROM TOORIMEI Where PAGE = " + vb::StrTrimmed(page) + ";");
  if (!rows->IsEOF()) {
    rows->MoveFirst();
    result = vb::Trim(vb::CStr(rows->Value(field)));
  }
  rows->Close();
  return result;
}

// ---- Lists of pages ----------------------------------------------------------

std::string clsSeluVorneDataService::AllPages2() {
  if (!OpenCurrentFloor()) return kNoFile;
  std::string result = "*";
  auto rows = KutaiDb->OpenRecordset(kDirectory);
  if (rows->IsEOF() || rows->IsBOF()) return result;
  for (; !rows->IsEOF(); rows->MoveNext())
    result += PackedPage(PageOf(*rows));
  rows->Close();
  return result;
}

std::string clsSeluVorneDataService::AllPages() {
  if (!OpenCurrentFloor()) return kNoFile;
  std::string result = "*";
  auto rows = KutaiDb->OpenRecordset(kDirectory);
  if (rows->IsEOF() || rows->IsBOF()) return result;
  const std::int16_t wanted = SecondaryBeamWork() ? 1 : 0;
  for (; !rows->IsEOF(); rows->MoveNext()) {
    // The page goes by value: a -99 written back must not touch the list.
    std::int16_t page = PageOf(*rows);
    if (GetKindByPage(page) == wanted) result += PackedPage(PageOf(*rows));
  }
  rows->Close();
  return result;
}

std::int16_t clsSeluVorneDataService::GetAllPages(const std::string& sPath,
                                                  vb::Array<std::int16_t>& PageNo) {
  std::int16_t last = -1;
  if (!OpenSeluVorne(sPath, KutaiDb)) return last;
  auto rows = KutaiDb->OpenRecordset(kDirectory);
  if (rows->IsEOF() || rows->IsBOF()) return last;
  for (; !rows->IsEOF(); rows->MoveNext()) {
    last = vb::Add<std::int16_t>(last, 1);
    PageNo.ReDimPreserve({last});
    PageNo(last) = PageOf(*rows);
  }
  rows->Close();
  return last;
}

// ---- One page ----------------------------------------------------------------

std::int16_t clsSeluVorneDataService::GetKindByPage(std::int16_t& Page) {
  return KindCode(Page, false);
}

std::int16_t clsSeluVorneDataService::GetKind2ByPage(std::int16_t& Page) {
  return KindCode(Page, true);
}

std::string clsSeluVorneDataService::GetToorimeiByPage(std::int16_t Page) {
  return PageField(Page, "TOORI");
}

std::string clsSeluVorneDataService::GetKasyosuuByPage(std::int16_t Page) {
  return PageField(Page, "KASYO");
}

// ---- The beam selection ------------------------------------------------------

// Hands the dialog the two remembered values, shows it, reads them back (in
// the opposite order) and answers its result text.
std::string clsSeluVorneDataService::ShowSelection(frame::SelectDialog& dialog) {
  dialog.SetEnableKakuninzu(saved_enable_kakuninzu_);
  dialog.SetChkKakuninzuChecked(saved_kakuninzu_checked_);
  dialog.ShowModal();
  saved_kakuninzu_checked_ = dialog.chkKakuninzuChecked();
  saved_enable_kakuninzu_ = dialog.EnableKakuninzu();
  return dialog.Result();
}

std::string clsSeluVorneDataService::SelectedSeluVorneNo(std::int16_t FukusuuSentakuSW) {
  const auto navigator = frame::StepGuide::Create();
  frame::SelectDialog& dialog = frame::InstalledForms().Select();
  dialog.ClearList();
  if (!OpenCurrentFloor()) return kNoFile;
  auto rows = KutaiDb->OpenRecordset(kDirectory);
  if (rows->IsEOF() || rows->IsBOF()) return {};

  std::int16_t excluded = SecondaryBeamWork() ? 0 : 1;
  if (navigator.isAllCalc()) excluded = kExcludeNothing;
  std::int16_t page = 0;
  for (; !rows->IsEOF(); rows->MoveNext()) {
    page = PageOf(*rows);
    if (page > frame::gPageMax) break;
    if (GetKindByPage(page) != excluded) {
      if (page == kNoKindRows) break;
      dialog.AddItem(ListItem(page, rows->Value("TOORI")));
    }
  }
  if (page == kNoKindRows) {
    rows->Close();
    return "*";
  }

  dialog.SetMultiSelect(FukusuuSentakuSW > 0);
  const bool from_beam_solver = FromBeamSolver();
  if (from_beam_solver) frame::ShowCalcTargetMessage(excluded);
  std::string result = ShowSelection(dialog);
  frame::InstalledForms().UnloadSelect();
  if (from_beam_solver) frame::InstalledForms().UnloadKakunin();
  rows->Close();
  frame::DoEvents();
  return result;
}

std::int16_t clsSeluVorneDataService::SelectedSeluVorneNoByDim(std::int16_t FukusuuSentakuSW,
                                                               vb::Array<std::int16_t>& KutaiNo,
                                                               std::int16_t& ZenToorisuu) {
  frame::SelectDialog& dialog = frame::InstalledForms().Select();
  dialog.ClearList();
  if (!OpenCurrentFloor()) return 0;
  auto rows = KutaiDb->OpenRecordset(kDirectory);
  std::int16_t listed = 0;
  for (; !rows->IsEOF(); rows->MoveNext()) {
    dialog.AddItem(ListItem(PageOf(*rows), rows->Value("TOORI")));
    listed = vb::Add<std::int16_t>(listed, 1);
  }
  ZenToorisuu = listed;
  dialog.SetMultiSelect(FukusuuSentakuSW > 0);
  const std::string result = ShowSelection(dialog);

  const std::string pages = result == kToMenu ? std::string() : vb::Mid(result, 2);
  const auto count = static_cast<std::int16_t>(vb::Len(pages) / 3);
  for (std::int16_t i = 0; i < count; ++i) {
    KutaiNo.ReDimPreserve({i});
    KutaiNo(i) = vb::CInt(vb::Val(vb::Mid(pages, 3 * i + 1, 3)) - 1);
  }
  frame::InstalledForms().UnloadSelect();
  return count;
}

void clsSeluVorneDataService::SetToMenuButtonMei(const std::string& caption) {
  frame::InstalledForms().Select().SetToMenuCaption(caption);
}

// ---- Another floor -------------------------------------------------------------

bool clsSeluVorneDataService::No_IsThereHari(std::int16_t ZeneNo, std::int16_t KoujiNo,
                                             std::int16_t KaiNo) {
  bool found = false;
  const std::string file = gFloorDirs.DataPath() + "\\Zene" + vb::StrTrimmed(ZeneNo) + "\\Kouji" +
                           vb::StrTrimmed(KoujiNo) + "\\" + vb::StrTrimmed(KaiNo) + "kai" +
                           std::string(kFileName);
  if (frame::gExistProbe.Find_FileExists(file).empty()) return found;
  vb::Variant handle(
      dao::DBEngine::Instance()->Workspaces(vb::Variant(std::int16_t{0}))->OpenDatabase(file));
  clsHariSWDS& store = SwitchStore();
  if (!store.IsTopTblExist(handle)) store.CreateTopTbl(handle);
  const auto db = vb::FromVariant<std::shared_ptr<dao::Database>>(handle);
  auto rows = db->OpenRecordset(kDirectory);
  for (; !rows->IsEOF(); rows->MoveNext()) {
    if (!vb::Trim(vb::CStr(rows->Value("TOORI"))).empty()) {
      found = true;
      break;
    }
  }
  rows->Close();
  db->Close();
  return found;
}

}  // namespace seluvorne
