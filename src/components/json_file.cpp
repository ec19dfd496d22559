#include "components/json_file.h"

#include <fstream>

#include "components/file_errors.h"
#include "seluvorne/error.h"

namespace seluvorne::components {

using nlohmann::json;

std::optional<json> ReadJsonFile(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) {
    if (error) RaiseFileError(error, file.string());
    return std::nullopt;
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) RaiseFileError(errno, file.string());
  try {
    return json::parse(in);
  } catch (const json::parse_error& failure) {
    RaiseBadContent(file, failure.what());
  }
}

void RaiseBadContent(const std::filesystem::path& file, std::string_view what) {
  Raise(errc::kTypeMismatch, "(" + file.string() + ": " + std::string(what) + ")");
}

const json* MemberOf(const json& object, const std::string& key, const std::filesystem::path& file,
                     std::string_view where) {
  if (!object.is_object()) RaiseBadContent(file, std::string(where) + " must be an object");
  auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

std::int16_t ReadCount(const json& value, const std::filesystem::path& file,
                       std::string_view where) {
  if (!value.is_number_integer() || value.get<long long>() < 0 || value.get<long long>() > 32767)
    RaiseBadContent(file, std::string(where) + " must be a whole number from 0 to 32767");
  return static_cast<std::int16_t>(value.get<long long>());
}

std::string ReadText(const json& value, const std::filesystem::path& file, std::string_view where) {
  if (!value.is_string()) RaiseBadContent(file, std::string(where) + " must be a text");
  return value.get<std::string>();
}

std::string NumberText(const json& value, const std::filesystem::path& file,
                       std::string_view where) {
  if (!value.is_number()) RaiseBadContent(file, std::string(where) + " must be a number");
  return value.dump();
}

}  // namespace seluvorne::components
