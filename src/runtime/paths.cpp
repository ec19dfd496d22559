#include "seluvorne/paths.h"

#include "seluvorne/error.h"

namespace seluvorne {

std::filesystem::path NativePath(std::string_view interface_text) {
  // The system cuts a name at a NUL: "a.mdb\0.txt" would name "a.mdb".
  if (interface_text.find('\0') != std::string_view::npos)
    Raise(errc::kBadFileName, "(a file name holds a NUL character)");
  std::string native(interface_text);
  for (char& c : native)
    if (c == '\\') c = std::filesystem::path::preferred_separator;
  return std::filesystem::path(native);
}

}  // namespace seluvorne
