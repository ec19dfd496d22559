// Typed access to the outside components the library calls.
//
// The suite's other components are reached only by name: created from their
// programmatic identifier and called by member name. Each class here wraps one
// such component and spells its member names exactly once, with the argument
// order, by-reference arguments and result conversions the library relies on,
// so the stores call `gFloorDirs.GetFullPathToKai(z, k, n)` and never a member
// name as a string. A facade holding Nothing raises 91 on every call; errors
// the component raises pass through unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "seluvorne/call_by_name.h"
#include "seluvorne/dispatch.h"

namespace seluvorne::frame {

// The shared part of every facade: the reference and the three ways to call.
template <class Self>
class Collaborator {
 public:
  Collaborator() = default;
  explicit Collaborator(Object object) : object_(std::move(object)) {}

  // A new object of the component, created by its identifier (429 when the
  // host has not registered it).
  static Self Create() { return Self(CreateObject(Self::kProgId)); }

  const Object& object() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 protected:
  template <class... A>
  vb::Variant Call(std::string_view member, const A&... args) const {
    return CallByName(object_, member, CallKind::Method, args...);
  }
  template <class... A>
  vb::Variant Get(std::string_view member, const A&... args) const {
    return CallByName(object_, member, CallKind::PropertyGet, args...);
  }
  template <class V>
  void Put(std::string_view member, const V& value) const {
    CallByName(object_, member, CallKind::PropertyPut, value);
  }

 private:
  Object object_;
};

// The floor-path service: where the floors of the data root are.
class FloorDirs : public Collaborator<FloorDirs> {
 public:
  static constexpr std::string_view kProgId = "FolderKit.clsFloorDirs";
  using Collaborator::Collaborator;

  std::string CurrFloor() const;
  // The folder of a floor; the three numbers are passed by reference.
  std::string GetFullPathToKai(std::int16_t& zenekon_no, std::int16_t& kouji_no,
                               std::int16_t& kai_no) const;
  std::int16_t ZenekonNo() const;
  std::int16_t KoujiNo() const;
  std::int16_t KaiNo() const;
  // The member kind of the current work; a number, compared with 5 and 6.
  double BuzaiNo() const;
  std::string DataPath() const;
  void MakeMkDir(const std::string& folder) const;
};

// The file probe. Find_FileExists answers a text that is empty when the file
// (kind 0 or omitted) or folder (kind 16) is missing; callers compare it with "".
class ExistProbe : public Collaborator<ExistProbe> {
 public:
  static constexpr std::string_view kProgId = "FolderKit.clsExistProbe";
  static constexpr std::int32_t kFile = 0;
  static constexpr std::int32_t kFolder = 16;
  using Collaborator::Collaborator;

  std::string Find_FileExists(const std::string& path) const;
  std::string Find_FileExists(const std::string& path, std::int32_t kind) const;
};

// The suite's presets.
class Presets : public Collaborator<Presets> {
 public:
  static constexpr std::string_view kProgId = "PresetStore.clsPresets";
  using Collaborator::Collaborator;

  std::string GetHariDefault(const std::string& key) const;
};

// The beam roster. The data service holds one; a caller's `obList` of the same
// shape is wrapped with BeamRoster(obList). Beam names go by reference.
class BeamRoster : public Collaborator<BeamRoster> {
 public:
  static constexpr std::string_view kProgId = "BeamRoster.clsRoster";
  using Collaborator::Collaborator;

  // The component answers text; this is its number as Val reads it.
  double harisei(std::string& name, std::int16_t selector) const;
  // Untrimmed: callers trim.
  std::string GaiTanNaitan(std::string& name, std::int16_t selector) const;
  std::int16_t Kind(std::string& name) const;
  std::int16_t fOobariKobariKatamoti(std::string& name) const;
  bool isKobari2(std::string& name) const;
  bool isKatamoti(std::string& name) const;
};

// The calculation navigator.
class StepGuide : public Collaborator<StepGuide> {
 public:
  static constexpr std::string_view kProgId = "StepGuide.clsStepGuide";
  using Collaborator::Collaborator;

  bool isAllCalc() const;
  vb::Variant GetAllCalcWindowStateLastVal_isMinimized() const;
};

// The window-placement service; one per form instance.
class WindowPlacer : public Collaborator<WindowPlacer> {
 public:
  static constexpr std::string_view kProgId = "FolderKit.clsWindowPlacer";
  using Collaborator::Collaborator;

  bool FormControl() const;
  // Fills the four bounds of the screen work area, in twips.
  void ScreenWorkAreaTwip(std::int32_t& left, std::int32_t& top, std::int32_t& right,
                          std::int32_t& bottom) const;
  // Both take the form and the form's two-value placement record, all by reference.
  void MotoFormSetFormProperty(Object& form, std::int32_t& first, std::int32_t& second) const;
  void MotoFormMoveGamenSoto(Object& form, std::int32_t& first, std::int32_t& second) const;
  vb::Variant GetAllCalcWindowStateLastVal_isMinimized() const;
  std::int32_t Vista_Shadow() const;
};

// Screen metrics.
class DisplayMetrics : public Collaborator<DisplayMetrics> {
 public:
  static constexpr std::string_view kProgId = "DisplayMetrics.clsMetrics";
  using Collaborator::Collaborator;

  std::int32_t ScreenTwipWidth() const;
  std::int32_t ScreenTwipHeight() const;
};

// The 3-D drawing check.
class ScopeKit : public Collaborator<ScopeKit> {
 public:
  static constexpr std::string_view kProgId = "ProofScope.clsScopeKit";
  using Collaborator::Collaborator;

  bool D3ViewVersionCheck() const;
  vb::Variant EnableDX() const;
};

// Writes the 3-D drawing file.
class ScopeExporter : public Collaborator<ScopeExporter> {
 public:
  static constexpr std::string_view kProgId = "ProofScope.clsScopeExporter";
  using Collaborator::Collaborator;

  void psPath(const std::string& folder) const;
  void psBuzai(const std::string& member_kind) const;
  void piSou(std::int16_t layer) const;
  std::string GetFileName() const;
  void WriteData(const vb::Variant& value) const;
};

// Draws the 3-D confirmation drawing.
class Presenter : public Collaborator<Presenter> {
 public:
  static constexpr std::string_view kProgId = "ProofPanel.clsPresenter";
  using Collaborator::Collaborator;

  std::int32_t AppendDataHEAD(const std::string& heading) const;
  void D3MakeFileObj(const Object& exporter) const;
  Object D3MakeFileObj() const;
  // Eight arguments by reference; their meaning belongs to the component.
  bool PrintKakuninzu(vb::Variant& a1, vb::Variant& a2, vb::Variant& a3, vb::Variant& a4,
                      vb::Variant& a5, vb::Variant& a6, vb::Variant& a7, vb::Variant& a8) const;
};

// The 3-D viewer.
class Launch : public Collaborator<Launch> {
 public:
  static constexpr std::string_view kProgId = "ProofScopeRunner.clsLaunch";
  using Collaborator::Collaborator;

  void FileName(const std::string& value) const;
  void Label1Caption(const std::string& value) const;
  void Label2Caption(const std::string& value) const;
  void SelectMode(const std::string& value) const;
  void Selected(const std::string& value) const;
  void YobidasiMoto(const std::string& value) const;
  void BuzaiName(const std::string& value) const;
  void Items(const std::string& value) const;
  void FormWidth(std::int32_t value) const;
  void FormHeight(std::int32_t value) const;
  void FormLeft(std::int16_t value) const;
  void FormTop(std::int16_t value) const;
  void SinkiButton(bool value) const;
  void start() const;
  std::string Selected() const;
  std::int16_t EndStatus() const;
};

// The progress bar a client hands to a page copy (no identifier: the client
// creates it).
class Progress : public Collaborator<Progress> {
 public:
  using Collaborator::Collaborator;

  void Min(std::int16_t value) const;
  void Max(std::int16_t value) const;
  void Value(std::int16_t value) const;
};

// The suite's companion of a floor file, which the data service asks to make
// its own file beside a new floor (no identifier: the host hands it over).
class FloorCompanion : public Collaborator<FloorCompanion> {
 public:
  using Collaborator::Collaborator;

  void CreateMDB_FullPath(const std::string& floor_file) const;
};

// The additional-rebar store.
class ExtraBars : public Collaborator<ExtraBars> {
 public:
  static constexpr std::string_view kProgId = "ExtraBarStore.clsExtraBars";
  using Collaborator::Collaborator;

  void Buzai(const std::string& member_kind) const;
  void CopyPathPage_KaiSitei_Ini(const std::string& floor_folder,
                                 const vb::Array<std::int16_t>& pages) const;
  void CopyPathPage_KaiSitei(const std::string& from_folder, std::int16_t from_page,
                             std::int16_t value, const std::string& to_folder,
                             std::int16_t to_page) const;
};

// The beam-calculation store.
class SolverRecords : public Collaborator<SolverRecords> {
 public:
  static constexpr std::string_view kProgId = "BeamSolver.clsSolverRecords";
  using Collaborator::Collaborator;

  void Copy_CalcFile(std::int16_t moto_zene_no, std::int16_t moto_kouji_no,
                     std::int16_t moto_kai_no, std::int16_t moto_page_no, std::int16_t saki_zene_no,
                     std::int16_t saki_kouji_no, std::int16_t saki_kai_no,
                     std::int16_t saki_page_no) const;
};

// The through-bar file of a floor.
class ThroughBars : public Collaborator<ThroughBars> {
 public:
  static constexpr std::string_view kProgId = "ThroughBarStore.clsThroughBars";
  using Collaborator::Collaborator;

  bool SetPathGetHikiToosiSW(const std::string& file, std::int16_t page) const;
  // The value goes by reference.
  void SetPathPutHikiToosiSW(const std::string& file, std::int16_t page, bool& value) const;
};

}  // namespace seluvorne::frame
