#include "components/file_errors.h"

#include <cerrno>
#include <string>

#include "seluvorne/error.h"

namespace seluvorne::components {

void RaiseFileError(std::error_code error, std::string_view path) {
  int number = errc::kPathFileAccess;
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
    number = errc::kPathNotFound;
  else if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
           error == std::errc::read_only_file_system)
    number = errc::kPermissionDenied;
  Raise(number, "(" + std::string(path) + ": " + error.message() + ")");
}

void RaiseFileError(int errno_value, std::string_view path) {
  RaiseFileError(std::error_code(errno_value, std::generic_category()), path);
}

}  // namespace seluvorne::components
