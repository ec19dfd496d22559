// PresetStore.clsPresets: presets read from the data root's presets.json, a
// JSON object of preset names and values, read at every call.

#include "components/json_file.h"
#include "components/standalone.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"

namespace seluvorne::components {

namespace {

class Presets : public DispatchImpl<Presets> {
 public:
  explicit Presets(const std::string& data_root)
      : file_(NativePath(data_root + "\\presets.json")) {}

  static const MemberTable<Presets>& Members() {
    static const auto table =
        MemberTable<Presets>("clsPresets").method("GetHariDefault", &Presets::GetHariDefault);
    return table;
  }

  // The preset as text: a text as it stands, a number as written, true and
  // false as "True" and "False"; "" for a missing file, key or null.
  std::string GetHariDefault(const std::string& key) const {
    const std::optional<nlohmann::json> presets = ReadJsonFile(file_);
    if (!presets) return "";
    const nlohmann::json* value = MemberOf(*presets, key, file_, "the presets");
    if (!value || value->is_null()) return "";
    if (value->is_string()) return value->get<std::string>();
    if (value->is_boolean()) return value->get<bool>() ? "True" : "False";
    return NumberText(*value, file_, key);
  }

 private:
  std::filesystem::path file_;
};

}  // namespace

Object NewPresets(const std::string& data_root) {
  return std::make_shared<Presets>(data_root);
}

}  // namespace seluvorne::components
