// Whole files as bytes, for the suites that compare a file before and after.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace seluvorne::testing {

// The bytes of `path`; empty when it cannot be read.
inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Writes `content` as the whole of `path`, making its folder first.
inline void WriteBytes(const std::filesystem::path& path, const std::string& content) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace seluvorne::testing
