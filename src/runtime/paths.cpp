#include "seluvorne/paths.h"

namespace seluvorne {

std::filesystem::path NativePath(std::string_view interface_text) {
  std::string native(interface_text);
  for (char& c : native)
    if (c == '\\') c = std::filesystem::path::preferred_separator;
  return std::filesystem::path(native);
}

}  // namespace seluvorne
