// The components that only the suite has: the 3-D confirmation drawing
// (check, exporter, presenter, viewer), the additional-rebar store and the
// beam-calculation store. Here they accept every member the library calls
// and say honestly that nothing happened:
//
//   ProofScope.clsScopeKit          D3ViewVersionCheck False (the drawing cannot run), EnableDX 0
//   ProofScope.clsScopeExporter     keeps psPath, psBuzai, piSou; GetFileName "" (no file);
//                                   WriteData writes nothing
//   ProofPanel.clsPresenter         AppendDataHEAD 0; keeps D3MakeFileObj; PrintKakuninzu
//                                   draws nothing and answers False
//   ProofScopeRunner.clsLaunch      keeps what it is given; start opens no viewer; Selected
//                                   answers "" (nothing chosen), EndStatus -1 (cancelled)
//   ExtraBarStore.clsExtraBars,     keep Buzai; CopyPathPage_KaiSitei_Ini, CopyPathPage_KaiSitei
//   BeamSolver.clsSolverRecords     and Copy_CalcFile copy nothing: without the suite there is
//                                   no additional rebar and no calculation file to copy
//   Standalone.clsFloorCompanion    CreateMDB_FullPath creates nothing: the suite's companion
//                                   keeps a file of its own beside a new floor, and without the
//                                   suite there is none to keep

#include "components/standalone.h"
#include "seluvorne/member_table.h"

namespace seluvorne::components {

namespace {

class ScopeKit : public DispatchImpl<ScopeKit> {
 public:
  static const MemberTable<ScopeKit>& Members() {
    static const auto table = MemberTable<ScopeKit>("clsScopeKit")
                                  .get("D3ViewVersionCheck", &ScopeKit::D3ViewVersionCheck)
                                  .get("EnableDX", &ScopeKit::EnableDX);
    return table;
  }
  bool D3ViewVersionCheck() const { return false; }
  std::int16_t EnableDX() const { return 0; }
};

class ScopeExporter : public DispatchImpl<ScopeExporter> {
 public:
  static const MemberTable<ScopeExporter>& Members() {
    static const auto table = MemberTable<ScopeExporter>("clsScopeExporter")
                                  .field("psPath", &ScopeExporter::psPath)
                                  .field("psBuzai", &ScopeExporter::psBuzai)
                                  .field("piSou", &ScopeExporter::piSou)
                                  .method("GetFileName", &ScopeExporter::GetFileName)
                                  .method("WriteData", &ScopeExporter::WriteData);
    return table;
  }
  std::string psPath;
  std::string psBuzai;
  std::int16_t piSou = 0;
  std::string GetFileName() const { return ""; }
  void WriteData(const vb::Variant&) const {}
};

class Presenter : public DispatchImpl<Presenter> {
 public:
  static const MemberTable<Presenter>& Members() {
    static const auto table = MemberTable<Presenter>("clsPresenter")
                                  .method("AppendDataHEAD", &Presenter::AppendDataHEAD)
                                  .field("D3MakeFileObj", &Presenter::D3MakeFileObj)
                                  .method("PrintKakuninzu", &Presenter::PrintKakuninzu);
    return table;
  }
  Object D3MakeFileObj;
  std::int32_t AppendDataHEAD(const std::string&) const { return 0; }
  bool PrintKakuninzu(vb::Variant&, vb::Variant&, vb::Variant&, vb::Variant&, vb::Variant&,
                      vb::Variant&, vb::Variant&, vb::Variant&) const {
    return false;
  }
};

class Launch : public DispatchImpl<Launch> {
 public:
  static const MemberTable<Launch>& Members() {
    static const auto table = MemberTable<Launch>("clsLaunch")
                                  .field("FileName", &Launch::FileName)
                                  .field("Label1Caption", &Launch::Label1Caption)
                                  .field("Label2Caption", &Launch::Label2Caption)
                                  .field("SelectMode", &Launch::SelectMode)
                                  .field("YobidasiMoto", &Launch::YobidasiMoto)
                                  .field("BuzaiName", &Launch::BuzaiName)
                                  .field("Items", &Launch::Items)
                                  .field("FormWidth", &Launch::FormWidth)
                                  .field("FormHeight", &Launch::FormHeight)
                                  .field("FormLeft", &Launch::FormLeft)
                                  .field("FormTop", &Launch::FormTop)
                                  .field("SinkiButton", &Launch::SinkiButton)
                                  .put("Selected", &Launch::LetSelected)
                                  .get("Selected", &Launch::GetSelected)
                                  .method("start", &Launch::start)
                                  .get("EndStatus", &Launch::EndStatus);
    return table;
  }
  std::string FileName, Label1Caption, Label2Caption, SelectMode, YobidasiMoto, BuzaiName, Items;
  std::int32_t FormWidth = 0, FormHeight = 0;
  std::int16_t FormLeft = 0, FormTop = 0;
  bool SinkiButton = false;
  // The selection handed in is for the viewer, which does not run.
  void LetSelected(const std::string&) {}
  std::string GetSelected() const { return ""; }
  void start() {}
  std::int16_t EndStatus() const { return -1; }
};

// ExtraBarStore.clsExtraBars and BeamSolver.clsSolverRecords.
class CompanionData : public DispatchImpl<CompanionData> {
 public:
  static const MemberTable<CompanionData>& Members() {
    static const auto table =
        MemberTable<CompanionData>("clsCompanionData")
            .field("Buzai", &CompanionData::Buzai)
            .method("CopyPathPage_KaiSitei_Ini", &CompanionData::CopyPathPage_KaiSitei_Ini)
            .method("CopyPathPage_KaiSitei", &CompanionData::CopyPathPage_KaiSitei)
            .method("Copy_CalcFile", &CompanionData::Copy_CalcFile);
    return table;
  }
  std::string Buzai;
  void CopyPathPage_KaiSitei_Ini(const std::string&, const vb::Variant&) {}
  void CopyPathPage_KaiSitei(const std::string&, std::int16_t, std::int16_t, const std::string&,
                             std::int16_t) {}
  void Copy_CalcFile(std::int16_t, std::int16_t, std::int16_t, std::int16_t, std::int16_t,
                     std::int16_t, std::int16_t, std::int16_t) {}
};

// The floor file's companion, which a host hands to the data service.
class FloorCompanion : public DispatchImpl<FloorCompanion> {
 public:
  static const MemberTable<FloorCompanion>& Members() {
    static const auto table =
        MemberTable<FloorCompanion>("clsFloorCompanion")
            .method("CreateMDB_FullPath", &FloorCompanion::CreateMDB_FullPath);
    return table;
  }
  void CreateMDB_FullPath(const std::string&) const {}
};

}  // namespace

Object NewScopeKit() {
  return std::make_shared<ScopeKit>();
}
Object NewScopeExporter() {
  return std::make_shared<ScopeExporter>();
}
Object NewPresenter() {
  return std::make_shared<Presenter>();
}
Object NewLaunch() {
  return std::make_shared<Launch>();
}
Object NewCompanionData() {
  return std::make_shared<CompanionData>();
}
Object NewFloorCompanion() {
  return std::make_shared<FloorCompanion>();
}

}  // namespace seluvorne::components
