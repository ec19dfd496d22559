#include "components/settings.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "components/json_file.h"
#include "seluvorne/components.h"

namespace seluvorne {

namespace {

std::filesystem::path FromEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value ? std::filesystem::path(value) : std::filesystem::path();
}

// $HOME, else the user's home folder from the password database, so that a
// process started without HOME never reads a settings file relative to its
// working folder.
std::filesystem::path HomeFolder() {
  if (auto home = FromEnvironment("HOME"); !home.empty()) return home;
  if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir && *user->pw_dir)
    return user->pw_dir;
  return "/";
}

}  // namespace

std::filesystem::path SettingsFilePath() {
  if (auto explicit_file = FromEnvironment("SELUVORNE_SETTINGS"); !explicit_file.empty())
    return explicit_file;
  if (auto config = FromEnvironment("XDG_CONFIG_HOME"); !config.empty())
    return config / "seluvorne" / "settings.json";
  return HomeFolder() / ".config" / "seluvorne" / "settings.json";
}

namespace components {

Settings ReadSettings() {
  Settings settings;
  settings.file = SettingsFilePath();
  const std::optional<nlohmann::json> content = ReadJsonFile(settings.file);
  if (!content) return settings;
  const std::filesystem::path& file = settings.file;
  if (const auto* root = MemberOf(*content, "dataRoot", file, "the settings"))
    settings.data_root = ReadText(*root, file, "dataRoot");
  if (const auto* floor = MemberOf(*content, "currentFloor", file, "the settings")) {
    FloorNumbers numbers;
    const char* keys[] = {"zenekonNo", "koujiNo", "kaiNo"};
    std::int16_t* targets[] = {&numbers.zenekon_no, &numbers.kouji_no, &numbers.kai_no};
    for (int i = 0; i < 3; ++i) {
      const std::string where = std::string("currentFloor.") + keys[i];
      const auto* value = MemberOf(*floor, keys[i], file, "currentFloor");
      if (!value) RaiseBadContent(file, where + " is missing");
      *targets[i] = ReadCount(*value, file, where);
    }
    settings.current_floor = numbers;
  }
  if (const auto* buzai = MemberOf(*content, "buzaiNo", file, "the settings")) {
    if (!buzai->is_number()) RaiseBadContent(file, "buzaiNo must be a number");
    settings.buzai_no = buzai->get<double>();
  }
  return settings;
}

}  // namespace components

}  // namespace seluvorne
