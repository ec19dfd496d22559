#include "command_floor_dirs.h"

#include "seluvorne/call_by_name.h"
#include "seluvorne/error.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {

const MemberTable<CommandFloorDirs>& CommandFloorDirs::Members() {
  static const auto table = MemberTable<CommandFloorDirs>("clsFloorDirs")
                                .get("CurrFloor", &CommandFloorDirs::CurrFloor)
                                .method("GetFullPathToKai", &CommandFloorDirs::GetFullPathToKai)
                                .get("ZenekonNo", &CommandFloorDirs::ZenekonNo)
                                .get("KoujiNo", &CommandFloorDirs::KoujiNo)
                                .get("KaiNo", &CommandFloorDirs::KaiNo)
                                .get("BuzaiNo", &CommandFloorDirs::BuzaiNo)
                                .get("DataPath", &CommandFloorDirs::DataPath)
                                .method("MakeMkDir", &CommandFloorDirs::MakeMkDir);
  return table;
}

std::shared_ptr<CommandFloorDirs> CommandFloorDirs::Instance(const Object& standalone) {
  static const auto instance = std::make_shared<CommandFloorDirs>(standalone);
  return instance;
}

void CommandFloorDirs::SetCurrentFloor(const std::string& folder,
                                       const std::optional<FloorNumbers>& numbers) {
  current_folder_ = folder;
  current_numbers_ = numbers;
}

std::string CommandFloorDirs::CurrFloor() const {
  if (current_folder_.empty()) Raise(errc::kInvalidCall, "(the command named no floor)");
  return current_folder_;
}

std::string CommandFloorDirs::GetFullPathToKai(std::int16_t& zene, std::int16_t& kouji,
                                               std::int16_t& kai) const {
  return vb::CStr(CallByName(standalone_, "GetFullPathToKai", CallKind::Method, zene, kouji, kai));
}

std::string CommandFloorDirs::DataPath() const {
  return vb::CStr(CallByName(standalone_, "DataPath", CallKind::PropertyGet));
}

void CommandFloorDirs::MakeMkDir(const std::string& folder) const {
  CallByName(standalone_, "MakeMkDir", CallKind::Method, folder);
}

const FloorNumbers& CommandFloorDirs::Numbers() const {
  if (!current_numbers_)
    Raise(errc::kInvalidCall, "(the floor " + current_folder_ + " has no Z/K/F numbers)");
  return *current_numbers_;
}

}  // namespace seluvorne::cli
