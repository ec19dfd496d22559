// Interface texts name files the way the suite's platform did, with
// backslashes ("<floor folder>\SELUVORN.mdb"). Every place that touches the
// file system maps them here, once, to the platform's own form.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace seluvorne {

// The native path for an interface text: backslashes become the platform's
// separator. A text that is already native passes unchanged. Raises 52 for
// a text holding a NUL character, which no file name can hold.
std::filesystem::path NativePath(std::string_view interface_text);

}  // namespace seluvorne
