// Plain implementations of the outside components, for hosts without the
// suite: the command line, the demo, Python scripts. A host calls
// RegisterStandaloneComponents once; the library itself never does, and a
// host may register its own component under any identifier afterwards.
//
// The data root is where the floors live: `<root>\Zene<z>\Kouji<k>\<n>kai`.
// It is the argument given, else the environment variable SELUVORNE_DATA,
// else "dataRoot" of the settings file. The formats of the settings file and
// of the files in the data root (presets.json, roster.json) and of a floor's
// through-bar file (Hollenbar.Dat) are described in docs/components.md.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne {

// The settings file: $SELUVORNE_SETTINGS, else
// $XDG_CONFIG_HOME/seluvorne/settings.json, else
// $HOME/.config/seluvorne/settings.json (the password database's home folder
// when HOME is not set).
std::filesystem::path SettingsFilePath();

// The floor file's companion for hosts without the suite. The data service
// asks the companion a host gives it (FloorCompanion) to make its own file
// beside a new floor; this one creates nothing, as there is no suite file to
// keep. A host sets it: floor.FloorCompanion = CreateObject(kFloorCompanionProgId).
inline constexpr std::string_view kFloorCompanionProgId = "Standalone.clsFloorCompanion";

// Registers the standalone components under the outside components'
// identifiers, and the floor companion under kFloorCompanionProgId. Raises 5
// when no data root is given or configured, 13 when the settings file is
// malformed.
void RegisterStandaloneComponents(std::string_view data_root = {});

}  // namespace seluvorne
