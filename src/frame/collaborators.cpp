// The member names of the outside components, each spelled once. Results are
// converted with the runtime's coercions, so a component may answer a number
// as text or a boolean as -1 and the library reads it as the suite's own
// components would.

#include "seluvorne/collaborators.h"

#include "seluvorne/runtime.h"

namespace seluvorne::frame {

using vb::CBool;
using vb::CInt;
using vb::CLng;
using vb::CStr;

// ---- FolderKit.clsFloorDirs --------------------------------------------------

std::string FloorDirs::CurrFloor() const {
  return CStr(Get("CurrFloor"));
}

std::string FloorDirs::GetFullPathToKai(std::int16_t& zenekon_no, std::int16_t& kouji_no,
                                        std::int16_t& kai_no) const {
  return CStr(Call("GetFullPathToKai", Ref(zenekon_no), Ref(kouji_no), Ref(kai_no)));
}

std::int16_t FloorDirs::ZenekonNo() const {
  return CInt(Get("ZenekonNo"));
}
std::int16_t FloorDirs::KoujiNo() const {
  return CInt(Get("KoujiNo"));
}
std::int16_t FloorDirs::KaiNo() const {
  return CInt(Get("KaiNo"));
}
double FloorDirs::BuzaiNo() const {
  return vb::CDbl(Get("BuzaiNo"));
}
std::string FloorDirs::DataPath() const {
  return CStr(Get("DataPath"));
}
void FloorDirs::MakeMkDir(const std::string& folder) const {
  Call("MakeMkDir", folder);
}

// ---- FolderKit.clsExistProbe -------------------------------------------------

std::string ExistProbe::Find_FileExists(const std::string& path) const {
  return CStr(Call("Find_FileExists", path));
}

std::string ExistProbe::Find_FileExists(const std::string& path, std::int32_t kind) const {
  return CStr(Call("Find_FileExists", path, kind));
}

// ---- PresetStore.clsPresets --------------------------------------------------

std::string Presets::GetHariDefault(const std::string& key) const {
  return CStr(Call("GetHariDefault", key));
}

// ---- BeamRoster.clsRoster ----------------------------------------------------

double BeamRoster::harisei(std::string& name, std::int16_t selector) const {
  return vb::Val(CStr(Call("harisei", Ref(name), selector)));
}

std::string BeamRoster::GaiTanNaitan(std::string& name, std::int16_t selector) const {
  return CStr(Call("GaiTanNaitan", Ref(name), selector));
}

std::int16_t BeamRoster::Kind(std::string& name) const {
  return CInt(Call("Kind", Ref(name)));
}

std::int16_t BeamRoster::fOobariKobariKatamoti(std::string& name) const {
  return CInt(Call("fOobariKobariKatamoti", Ref(name)));
}

bool BeamRoster::isKobari2(std::string& name) const {
  return CBool(Call("isKobari2", Ref(name)));
}

bool BeamRoster::isKatamoti(std::string& name) const {
  return CBool(Call("isKatamoti", Ref(name)));
}

// ---- StepGuide.clsStepGuide --------------------------------------------------

bool StepGuide::isAllCalc() const {
  return CBool(Get("isAllCalc"));
}

vb::Variant StepGuide::GetAllCalcWindowStateLastVal_isMinimized() const {
  return Get("GetAllCalcWindowStateLastVal_isMinimized");
}

// ---- FolderKit.clsWindowPlacer -----------------------------------------------

bool WindowPlacer::FormControl() const {
  return CBool(Get("FormControl"));
}

void WindowPlacer::ScreenWorkAreaTwip(std::int32_t& left, std::int32_t& top, std::int32_t& right,
                                      std::int32_t& bottom) const {
  Call("ScreenWorkAreaTwip", Ref(left), Ref(top), Ref(right), Ref(bottom));
}

void WindowPlacer::MotoFormSetFormProperty(Object& form, std::int32_t& first,
                                           std::int32_t& second) const {
  Call("MotoFormSetFormProperty", Ref(form), Ref(first), Ref(second));
}

void WindowPlacer::MotoFormMoveGamenSoto(Object& form, std::int32_t& first,
                                         std::int32_t& second) const {
  Call("MotoFormMoveGamenSoto", Ref(form), Ref(first), Ref(second));
}

vb::Variant WindowPlacer::GetAllCalcWindowStateLastVal_isMinimized() const {
  return Get("GetAllCalcWindowStateLastVal_isMinimized");
}

std::int32_t WindowPlacer::Vista_Shadow() const {
  return CLng(Get("Vista_Shadow"));
}

// ---- DisplayMetrics.clsMetrics -----------------------------------------------

std::int32_t DisplayMetrics::ScreenTwipWidth() const {
  return CLng(Get("ScreenTwipWidth"));
}
std::int32_t DisplayMetrics::ScreenTwipHeight() const {
  return CLng(Get("ScreenTwipHeight"));
}

// ---- ProofScope.clsScopeKit --------------------------------------------------

bool ScopeKit::D3ViewVersionCheck() const {
  return CBool(Get("D3ViewVersionCheck"));
}
vb::Variant ScopeKit::EnableDX() const {
  return Get("EnableDX");
}

// ---- ProofScope.clsScopeExporter ---------------------------------------------

void ScopeExporter::psPath(const std::string& folder) const {
  Put("psPath", folder);
}
void ScopeExporter::psBuzai(const std::string& member_kind) const {
  Put("psBuzai", member_kind);
}
void ScopeExporter::piSou(std::int16_t layer) const {
  Put("piSou", layer);
}
std::string ScopeExporter::GetFileName() const {
  return CStr(Call("GetFileName"));
}
void ScopeExporter::WriteData(const vb::Variant& value) const {
  Call("WriteData", value);
}

// ---- ProofPanel.clsPresenter -------------------------------------------------

std::int32_t Presenter::AppendDataHEAD(const std::string& heading) const {
  return CLng(Call("AppendDataHEAD", heading));
}

void Presenter::D3MakeFileObj(const Object& exporter) const {
  Put("D3MakeFileObj", exporter);
}
Object Presenter::D3MakeFileObj() const {
  return vb::CObj(Get("D3MakeFileObj"));
}

bool Presenter::PrintKakuninzu(vb::Variant& a1, vb::Variant& a2, vb::Variant& a3, vb::Variant& a4,
                               vb::Variant& a5, vb::Variant& a6, vb::Variant& a7,
                               vb::Variant& a8) const {
  return CBool(Call("PrintKakuninzu", Ref(a1), Ref(a2), Ref(a3), Ref(a4), Ref(a5), Ref(a6), Ref(a7),
                    Ref(a8)));
}

// ---- ProofScopeRunner.clsLaunch ----------------------------------------------

void Launch::FileName(const std::string& value) const {
  Put("FileName", value);
}
void Launch::Label1Caption(const std::string& value) const {
  Put("Label1Caption", value);
}
void Launch::Label2Caption(const std::string& value) const {
  Put("Label2Caption", value);
}
void Launch::SelectMode(const std::string& value) const {
  Put("SelectMode", value);
}
void Launch::Selected(const std::string& value) const {
  Put("Selected", value);
}
void Launch::YobidasiMoto(const std::string& value) const {
  Put("YobidasiMoto", value);
}
void Launch::BuzaiName(const std::string& value) const {
  Put("BuzaiName", value);
}
void Launch::Items(const std::string& value) const {
  Put("Items", value);
}
void Launch::FormWidth(std::int32_t value) const {
  Put("FormWidth", value);
}
void Launch::FormHeight(std::int32_t value) const {
  Put("FormHeight", value);
}
void Launch::FormLeft(std::int16_t value) const {
  Put("FormLeft", value);
}
void Launch::FormTop(std::int16_t value) const {
  Put("FormTop", value);
}
void Launch::SinkiButton(bool value) const {
  Put("SinkiButton", value);
}
void Launch::start() const {
  Call("start");
}
std::string Launch::Selected() const {
  return CStr(Get("Selected"));
}
std::int16_t Launch::EndStatus() const {
  return CInt(Get("EndStatus"));
}

// ---- The client's progress bar -----------------------------------------------

void Progress::Min(std::int16_t value) const {
  Put("Min", value);
}
void Progress::Max(std::int16_t value) const {
  Put("Max", value);
}
void Progress::Value(std::int16_t value) const {
  Put("Value", value);
}

// ---- The floor file's companion ---------------------------------------------

void FloorCompanion::CreateMDB_FullPath(const std::string& floor_file) const {
  Call("CreateMDB_FullPath", floor_file);
}

// ---- ExtraBarStore.clsExtraBars ----------------------------------------------

void ExtraBars::Buzai(const std::string& member_kind) const {
  Put("Buzai", member_kind);
}

void ExtraBars::CopyPathPage_KaiSitei_Ini(const std::string& floor_folder,
                                          const vb::Array<std::int16_t>& pages) const {
  Call("CopyPathPage_KaiSitei_Ini", floor_folder, pages);
}

void ExtraBars::CopyPathPage_KaiSitei(const std::string& from_folder, std::int16_t from_page,
                                      std::int16_t value, const std::string& to_folder,
                                      std::int16_t to_page) const {
  Call("CopyPathPage_KaiSitei", from_folder, from_page, value, to_folder, to_page);
}

// ---- BeamSolver.clsSolverRecords ---------------------------------------------

void SolverRecords::Copy_CalcFile(std::int16_t moto_zene_no, std::int16_t moto_kouji_no,
                                  std::int16_t moto_kai_no, std::int16_t moto_page_no,
                                  std::int16_t saki_zene_no, std::int16_t saki_kouji_no,
                                  std::int16_t saki_kai_no, std::int16_t saki_page_no) const {
  Call("Copy_CalcFile", moto_zene_no, moto_kouji_no, moto_kai_no, moto_page_no, saki_zene_no,
       saki_kouji_no, saki_kai_no, saki_page_no);
}

// ---- ThroughBarStore.clsThroughBars ------------------------------------------

bool ThroughBars::SetPathGetHikiToosiSW(const std::string& file, std::int16_t page) const {
  return CBool(Call("SetPathGetHikiToosiSW", file, page));
}

void ThroughBars::SetPathPutHikiToosiSW(const std::string& file, std::int16_t page,
                                        bool& value) const {
  Call("SetPathPutHikiToosiSW", file, page, Ref(value));
}

}  // namespace seluvorne::frame
