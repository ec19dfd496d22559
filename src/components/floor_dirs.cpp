// FolderKit.clsFloorDirs: where the floors of the data root are, and which
// floor is current (from the settings file, read when the object is made, so
// a new object sees a changed file).

#include <filesystem>

#include "components/file_errors.h"
#include "components/settings.h"
#include "components/standalone.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::components {

namespace {

class FloorDirs : public DispatchImpl<FloorDirs> {
 public:
  FloorDirs(std::string data_root, Settings settings)
      : data_root_(std::move(data_root)), settings_(std::move(settings)) {}

  static const MemberTable<FloorDirs>& Members() {
    static const auto table = MemberTable<FloorDirs>("clsFloorDirs")
                                  .get("CurrFloor", &FloorDirs::CurrFloor)
                                  .method("GetFullPathToKai", &FloorDirs::GetFullPathToKai)
                                  .get("ZenekonNo", &FloorDirs::ZenekonNo)
                                  .get("KoujiNo", &FloorDirs::KoujiNo)
                                  .get("KaiNo", &FloorDirs::KaiNo)
                                  .get("BuzaiNo", &FloorDirs::BuzaiNo)
                                  .get("DataPath", &FloorDirs::DataPath)
                                  .method("MakeMkDir", &FloorDirs::MakeMkDir);
    return table;
  }

  std::string CurrFloor() const {
    FloorNumbers floor = CurrentFloor();
    return PathToKai(floor.zenekon_no, floor.kouji_no, floor.kai_no);
  }

  // By reference, as the suite's clients pass them; only read.
  std::string GetFullPathToKai(std::int16_t& zenekon_no, std::int16_t& kouji_no,
                               std::int16_t& kai_no) const {
    return PathToKai(zenekon_no, kouji_no, kai_no);
  }

  std::int16_t ZenekonNo() const { return CurrentFloor().zenekon_no; }
  std::int16_t KoujiNo() const { return CurrentFloor().kouji_no; }
  std::int16_t KaiNo() const { return CurrentFloor().kai_no; }
  double BuzaiNo() const { return settings_.buzai_no; }
  std::string DataPath() const { return data_root_; }

  // Creates the folder and any missing parents.
  void MakeMkDir(const std::string& folder) const {
    if (folder.empty()) Raise(errc::kBadFileName);
    std::error_code error;
    std::filesystem::create_directories(NativePath(folder), error);
    if (error) RaiseFileError(error, folder);
  }

 private:
  FloorNumbers CurrentFloor() const {
    if (!settings_.current_floor)
      Raise(errc::kInvalidCall,
            "(no current floor: set currentFloor in " + settings_.file.string() + ")");
    return *settings_.current_floor;
  }

  std::string PathToKai(std::int16_t zenekon_no, std::int16_t kouji_no, std::int16_t kai_no) const {
    if (zenekon_no < 0 || kouji_no < 0 || kai_no < 0)
      Raise(errc::kInvalidCall, "(floor numbers " + vb::StrTrimmed(zenekon_no) + ", " +
                                    vb::StrTrimmed(kouji_no) + ", " + vb::StrTrimmed(kai_no) + ")");
    return data_root_ + "\\Zene" + vb::StrTrimmed(zenekon_no) + "\\Kouji" +
           vb::StrTrimmed(kouji_no) + "\\" + vb::StrTrimmed(kai_no) + "kai";
  }

  std::string data_root_;
  Settings settings_;
};

}  // namespace

Object NewFloorDirs(const std::string& data_root) {
  return std::make_shared<FloorDirs>(data_root, ReadSettings());
}

}  // namespace seluvorne::components
