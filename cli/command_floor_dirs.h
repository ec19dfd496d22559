// FolderKit.clsFloorDirs as the command registers it: the current floor and
// the member kind are the command line's, everything else is the standalone
// floor folders' answer. One object serves every request, so what the
// command sets is what the library's members see.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "context.h"
#include "seluvorne/member_table.h"

namespace seluvorne::cli {

class CommandFloorDirs : public DispatchImpl<CommandFloorDirs> {
 public:
  static const MemberTable<CommandFloorDirs>& Members();
  // The one object, made around `standalone` on first use.
  static std::shared_ptr<CommandFloorDirs> Instance(const Object& standalone);

  explicit CommandFloorDirs(Object standalone) : standalone_(std::move(standalone)) {}

  void SetCurrentFloor(const std::string& folder, const std::optional<FloorNumbers>& numbers);
  void SetMemberKind(double buzai_no) { buzai_no_ = buzai_no; }

  std::string CurrFloor() const;
  std::string GetFullPathToKai(std::int16_t& zene, std::int16_t& kouji, std::int16_t& kai) const;
  std::int16_t ZenekonNo() const { return Numbers().zene; }
  std::int16_t KoujiNo() const { return Numbers().kouji; }
  std::int16_t KaiNo() const { return Numbers().kai; }
  double BuzaiNo() const { return buzai_no_; }
  std::string DataPath() const;
  void MakeMkDir(const std::string& folder) const;

 private:
  const FloorNumbers& Numbers() const;

  Object standalone_;
  std::string current_folder_;
  std::optional<FloorNumbers> current_numbers_;
  double buzai_no_ = 0;
};

}  // namespace seluvorne::cli
