#include "context.h"

#include <locale.h>
#include <wchar.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cwchar>
#include <regex>

#include "command_floor_dirs.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/components.h"
#include "seluvorne/error.h"
#include "seluvorne/library.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {
namespace {

constexpr int kHighestShownPage = 500;

std::int16_t FloorNumber(const std::string& text, const std::string& whole) {
  int value = -1;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > 32767)
    throw UsageError("not a floor number in '" + whole + "': " + text);
  return static_cast<std::int16_t>(value);
}

}  // namespace

void Context::Start() {
  if (standalone_floor_dirs_) return;
  StartLibrary();
  if (!data_root_option.empty())
    data_root_option = std::filesystem::absolute(data_root_option).lexically_normal().string();
  RegisterStandaloneComponents(data_root_option);
  // The command answers the current floor and member kind itself, and leaves
  // the rest to the standalone floor folders.
  standalone_floor_dirs_ = CreateObject("FolderKit.clsFloorDirs");
  Object inner = standalone_floor_dirs_;
  Register("FolderKit.clsFloorDirs", [inner] { return CommandFloorDirs::Instance(inner); });
}

std::string Context::DataRoot() {
  Start();
  return vb::CStr(CallByName(standalone_floor_dirs_, "DataPath", CallKind::PropertyGet));
}

Floor Context::ResolveFloor(const std::string& text) {
  Start();
  Floor floor;
  floor.text = text;
  static const std::regex numbered(R"((\d+)/(\d+)/(\d+))");
  std::smatch parts;
  if (std::regex_match(text, parts, numbered)) {
    FloorNumbers numbers{FloorNumber(parts[1], text), FloorNumber(parts[2], text),
                         FloorNumber(parts[3], text)};
    floor.numbers = numbers;
    floor.folder = vb::CStr(CallByName(standalone_floor_dirs_, "GetFullPathToKai", CallKind::Method,
                                       numbers.zene, numbers.kouji, numbers.kai));
  } else {
    if (text.empty()) throw UsageError("a floor is Z/K/F or a floor folder");
    floor.folder = std::filesystem::absolute(NativePath(text)).lexically_normal().string();
    while (floor.folder.size() > 1 && floor.folder.back() == '/')
      floor.folder.pop_back();
    // A folder under the data root laid out as Zene<z>/Kouji<k>/<f>kai has numbers too.
    const auto root = std::filesystem::absolute(NativePath(DataRoot())).lexically_normal();
    const auto relative = std::filesystem::path(floor.folder).lexically_relative(root);
    static const std::regex layout(R"(Zene(\d+)/Kouji(\d+)/(\d+)kai)");
    const std::string relative_text = relative.generic_string();
    if (std::regex_match(relative_text, parts, layout))
      floor.numbers = FloorNumbers{FloorNumber(parts[1], text), FloorNumber(parts[2], text),
                                   FloorNumber(parts[3], text)};
  }
  floor.native_folder = NativePath(floor.folder).lexically_normal();
  return floor;
}

void Context::RequireFloorFile(const Floor& floor) {
  if (!std::filesystem::exists(floor.FloorFile()))
    Fail(3024, floor.FloorFile().string(),
         "no floor " + floor.text + "; `seluvorne new " + floor.text + "` creates it");
}

void Context::SetCurrentFloor(const Floor& floor) {
  Start();
  CommandFloorDirs::Instance(standalone_floor_dirs_)->SetCurrentFloor(floor.folder, floor.numbers);
}

void Context::SetMemberKind(double buzai_no) {
  Start();
  CommandFloorDirs::Instance(standalone_floor_dirs_)->SetMemberKind(buzai_no);
}

Object Context::NewService() {
  Start();
  return CreateObject("SeluVorneDS.clsSeluVorneDataService");
}

namespace {

// The columns a terminal gives `text`: wcwidth's count of each character
// under a UTF-8 locale, whatever the process's own locale (wide East Asian
// characters take two, half-width katakana one; a CP932 byte count, the
// runtime's TextWidth, gives half-width katakana two). An undecodable byte
// takes one.
int TerminalWidth(const std::string& text) {
  static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
  if (!utf8) return static_cast<int>(text.size());
  const locale_t previous = uselocale(utf8);
  std::mbstate_t state{};
  int width = 0;
  for (std::size_t at = 0; at < text.size();) {
    wchar_t character = 0;
    std::size_t length = std::mbrtowc(&character, text.data() + at, text.size() - at, &state);
    if (length == static_cast<std::size_t>(-1) || length == static_cast<std::size_t>(-2)) {
      state = {};
      length = 1;
      ++width;
    } else {
      width += std::max(0, wcwidth(character));
      length = std::max<std::size_t>(length, 1);
    }
    at += length;
  }
  uselocale(previous);
  return width;
}

}  // namespace

std::string PadRight(const std::string& text, int columns) {
  const int width = TerminalWidth(text);
  return width >= columns ? text : text + std::string(columns - width, ' ');
}

std::vector<int> ParsePageList(const std::string& text) {
  std::vector<int> pages;
  auto number = [&](const std::string& part) {
    int value = 0;
    auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
    if (part.empty() || error != std::errc() || end != part.data() + part.size())
      throw UsageError("not a page number: '" + part + "' in '" + text + "'");
    if (value < 1 || value > kHighestShownPage)
      throw UsageError("page " + part + " is outside 1.." + std::to_string(kHighestShownPage));
    return value;
  };
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    const std::string item = text.substr(start, comma - start);
    const std::size_t dash = item.find('-');
    if (dash == std::string::npos) {
      pages.push_back(number(item));
    } else {
      const int first = number(item.substr(0, dash));
      const int last = number(item.substr(dash + 1));
      if (last < first) throw UsageError("a page range runs upwards: '" + item + "'");
      for (int page = first; page <= last; ++page)
        pages.push_back(page);
    }
    start = comma + 1;
  }
  return pages;
}

std::int16_t StoredPage(int shown_page) {
  if (shown_page < 1 || shown_page > kHighestShownPage)
    throw UsageError("page " + std::to_string(shown_page) + " is outside 1.." +
                     std::to_string(kHighestShownPage));
  return static_cast<std::int16_t>(shown_page - 1);
}

}  // namespace seluvorne::cli
