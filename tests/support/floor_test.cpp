#include "floor_test.h"

#include <cstdlib>

#include "seluvorne/frame.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::testing {

namespace fs = std::filesystem;
using frame::ExistProbe;
using frame::FloorDirs;

void FloorTest::SetUp() {
  std::string pattern = (fs::temp_directory_path() / "seluvorne-floor-XXXXXX").string();
  ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
  root = pattern;

  fakes.Answer(ExistProbe::kProgId, "Find_FileExists", [](std::span<vb::Variant> args) {
    const fs::path path = Native(vb::CStr(args[0]));
    const bool folder = args.size() > 1 && vb::CLng(args[1]) == ExistProbe::kFolder;
    const bool found = folder ? fs::is_directory(path) : fs::is_regular_file(path);
    return vb::Variant(found ? path.filename().string() : std::string());
  });
  fakes.Answer(FloorDirs::kProgId, "MakeMkDir", [](std::span<vb::Variant> args) {
    fs::create_directories(Native(vb::CStr(args[0])));
    return vb::Variant();
  });
  fakes.Answer(FloorDirs::kProgId, "GetFullPathToKai", [this](std::span<vb::Variant> args) {
    return vb::Variant(FloorFolder(vb::CInt(args[0]), vb::CInt(args[1]), vb::CInt(args[2])));
  });
  fakes.Answer(FloorDirs::kProgId, "DataPath", root.string());
  frame::ScheduleStart();
  frame::EnsureStarted();
  fakes.ClearLog();
}

void FloorTest::TearDown() {
  frame::ScheduleStart();
  fs::remove_all(root);
}

std::string FloorTest::FloorFolder(std::int16_t zene, std::int16_t kouji, std::int16_t kai) const {
  return root.string() + "\\Zene" + vb::StrTrimmed(zene) + "\\Kouji" + vb::StrTrimmed(kouji) +
         "\\" + vb::StrTrimmed(kai) + "kai";
}

std::string FloorTest::MakeFloorFolder(std::int16_t zene, std::int16_t kouji,
                                       std::int16_t kai) const {
  std::string folder = FloorFolder(zene, kouji, kai);
  fs::create_directories(Native(folder));
  return folder;
}

fs::path FloorTest::Native(const std::string& path) {
  return NativePath(path);
}

}  // namespace seluvorne::testing
