// BeamRoster.clsRoster: the beams of the data root's roster.json, read when
// the object is made. A name the roster does not list answers kind 0, class
// -1 (neither girder, secondary beam nor cantilever), end designation "" and
// depth "" (which reads as 0).

#include <array>
#include <unordered_map>

#include "components/json_file.h"
#include "components/standalone.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::components {

namespace {

// The class codes fOobariKobariKatamoti answers.
constexpr std::int16_t kUnlisted = -1;
constexpr std::int16_t kGirder = 0;
constexpr std::int16_t kSecondary = 1;
constexpr std::int16_t kCantilever = 2;

struct Beam {
  std::int16_t kind = 0;
  std::int16_t beam_class = kUnlisted;
  std::string end;                    // outer/inner end designation ("外端", "基端", "端部")
  std::array<std::string, 3> depths;  // left end, middle, right end
};

std::int16_t ClassCode(const std::string& name, const std::filesystem::path& file,
                       const std::string& where) {
  if (name == "girder") return kGirder;
  if (name == "secondary") return kSecondary;
  if (name == "cantilever") return kCantilever;
  RaiseBadContent(file, where + " must be girder, secondary or cantilever");
}

Beam ReadBeam(const nlohmann::json& entry, const std::filesystem::path& file,
              const std::string& where) {
  Beam beam;
  if (const auto* kind = MemberOf(entry, "kind", file, where))
    beam.kind = ReadCount(*kind, file, where + ".kind");
  if (const auto* beam_class = MemberOf(entry, "class", file, where))
    beam.beam_class =
        ClassCode(ReadText(*beam_class, file, where + ".class"), file, where + ".class");
  if (const auto* end = MemberOf(entry, "end", file, where))
    beam.end = ReadText(*end, file, where + ".end");
  if (const auto* depths = MemberOf(entry, "depths", file, where)) {
    if (depths->is_array()) {
      if (depths->size() != 3) RaiseBadContent(file, where + ".depths must hold three depths");
      for (std::size_t i = 0; i < 3; ++i)
        beam.depths[i] = NumberText((*depths)[i], file, where + ".depths");
    } else {
      beam.depths.fill(NumberText(*depths, file, where + ".depths"));
    }
  }
  return beam;
}

class Roster : public DispatchImpl<Roster> {
 public:
  explicit Roster(const std::string& data_root) {
    const std::filesystem::path file = NativePath(data_root + "\\roster.json");
    const std::optional<nlohmann::json> content = ReadJsonFile(file);
    if (!content) return;
    const nlohmann::json* beams = MemberOf(*content, "beams", file, "the roster");
    if (!beams) return;
    if (!beams->is_object()) RaiseBadContent(file, "beams must be an object of beam names");
    for (const auto& [name, entry] : beams->items())
      beams_.emplace(name, ReadBeam(entry, file, "beams." + name));
  }

  static const MemberTable<Roster>& Members() {
    static const auto table = MemberTable<Roster>("clsRoster")
                                  .method("harisei", &Roster::harisei)
                                  .method("GaiTanNaitan", &Roster::GaiTanNaitan)
                                  .method("Kind", &Roster::Kind)
                                  .method("fOobariKobariKatamoti", &Roster::fOobariKobariKatamoti)
                                  .method("isKobari2", &Roster::isKobari2)
                                  .method("isKatamoti", &Roster::isKatamoti);
    return table;
  }

  // The depth at a section: 0 left end, 1 middle, 2 right end.
  std::string harisei(std::string& name, std::int16_t section) const {
    if (section < 0 || section > 2)
      Raise(errc::kInvalidCall,
            "(section " + vb::StrTrimmed(section) + ": 0 left end, 1 middle, 2 right end)");
    return Find(name).depths[section];
  }

  // Only the designation 1 (outer/inner end) is kept.
  std::string GaiTanNaitan(std::string& name, std::int16_t designation) const {
    if (designation != 1)
      Raise(errc::kInvalidCall, "(designation " + vb::StrTrimmed(designation) + ": only 1)");
    return Find(name).end;
  }

  std::int16_t Kind(std::string& name) const { return Find(name).kind; }
  std::int16_t fOobariKobariKatamoti(std::string& name) const { return Find(name).beam_class; }
  bool isKobari2(std::string& name) const { return Find(name).beam_class == kSecondary; }
  bool isKatamoti(std::string& name) const { return Find(name).beam_class == kCantilever; }

 private:
  const Beam& Find(const std::string& name) const {
    static const Beam unlisted;
    auto found = beams_.find(name);
    return found == beams_.end() ? unlisted : found->second;
  }

  std::unordered_map<std::string, Beam> beams_;
};

}  // namespace

Object NewRoster(const std::string& data_root) {
  return std::make_shared<Roster>(data_root);
}

}  // namespace seluvorne::components
