// The JSON files of the standalone components (settings, presets, roster):
// reading them, and reading their values with errors that say where.
#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace seluvorne::components {

// The file's content; nullopt when there is no such file. Raises 13 (Type
// mismatch) naming the file when it is no JSON, the file errors when it
// cannot be read.
std::optional<nlohmann::json> ReadJsonFile(const std::filesystem::path& file);

// Raises 13 with "(<file>: <what>)".
[[noreturn]] void RaiseBadContent(const std::filesystem::path& file, std::string_view what);

// A member of a JSON object; null when absent. Raises 13 when `object` is no object.
const nlohmann::json* MemberOf(const nlohmann::json& object, const std::string& key,
                               const std::filesystem::path& file, std::string_view where);

// A whole number in 0..32767 (what `where` names, for the message).
std::int16_t ReadCount(const nlohmann::json& value, const std::filesystem::path& file,
                       std::string_view where);
std::string ReadText(const nlohmann::json& value, const std::filesystem::path& file,
                     std::string_view where);
// A number as the text a component answers for it ("700", "650.5").
std::string NumberText(const nlohmann::json& value, const std::filesystem::path& file,
                       std::string_view where);

}  // namespace seluvorne::components
