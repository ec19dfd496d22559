// File-system failures as the runtime's errors.
#pragma once

#include <string_view>
#include <system_error>

namespace seluvorne::components {

// 76 (Path not found) for a missing file or folder, 70 (Permission denied)
// for refused access, 75 (Path/File access error) for anything else; the
// detail names the path and the system's reason.
[[noreturn]] void RaiseFileError(std::error_code error, std::string_view path);

// The same for the errno of a failed system call.
[[noreturn]] void RaiseFileError(int errno_value, std::string_view path);

}  // namespace seluvorne::components
