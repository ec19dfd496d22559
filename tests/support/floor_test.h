// A scratch data root and recording fakes whose file-system members act on
// real files, for the suites of the stores.
//
// Find_FileExists looks at the file or folder (kind 0 or omitted, 16),
// MakeMkDir creates the folder, DataPath answers the root, and GetFullPathToKai answers
// "<root>\Zene<z>\Kouji<k>\<n>kai": interface texts with backslashes, as the
// suite's floor-path service answers them. Every call is still recorded, so a
// test can assert the calls the library made.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "fake_components.h"

namespace seluvorne::testing {

class FloorTest : public ::testing::Test {
 protected:
  // Arms and runs the start routine with the fakes, so the library-wide
  // services are fakes; the log starts empty.
  void SetUp() override;
  void TearDown() override;

  // The folder of a floor, as GetFullPathToKai answers it (not created).
  std::string FloorFolder(std::int16_t zene, std::int16_t kouji, std::int16_t kai) const;
  // Creates the folder of a floor and answers it.
  std::string MakeFloorFolder(std::int16_t zene, std::int16_t kouji, std::int16_t kai) const;
  // The native path of an interface text.
  static std::filesystem::path Native(const std::string& path);

  fakes::FakeComponents fakes;
  std::filesystem::path root;
};

}  // namespace seluvorne::testing
