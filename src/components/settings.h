// The settings file of the standalone components (components.h says where
// it is; docs/components.md shows its format).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace seluvorne::components {

struct FloorNumbers {
  std::int16_t zenekon_no = 0;
  std::int16_t kouji_no = 0;
  std::int16_t kai_no = 0;
};

struct Settings {
  std::filesystem::path file;  // where they were read from
  std::string data_root;       // empty when not set
  std::optional<FloorNumbers> current_floor;
  double buzai_no = 0;
};

// The settings as the file holds them now; defaults when there is no file.
Settings ReadSettings();

}  // namespace seluvorne::components
