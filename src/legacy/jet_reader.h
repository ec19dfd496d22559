// Reading a legacy Jet file through the helper program, which runs as a
// child process under a time limit and a memory limit. Whatever goes wrong
// there (the helper crashes, hangs, runs out of memory, writes a malformed
// stream, or the file is no readable Jet database) becomes error 3343 with
// the file named; the host is never harmed.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "jet_stream.h"

namespace seluvorne::legacy {

struct ReaderLimits {
  std::chrono::milliseconds time{30000};      // wall-clock time of one file
  std::uint64_t memory_bytes = 1ull << 30;    // address space of the helper
  std::uint64_t output_bytes = 512ull << 20;  // the stream the host accepts
};

// The limits every read uses; tests shorten them.
ReaderLimits& Limits();

// The helper program: SELUVORNE_JET_READER when set, else
// "seluvorne-jet-reader" beside the library's binary, else the one of the
// build tree.
std::filesystem::path ReaderProgram();

// Runs the helper on `path` and returns the parsed stream. Raises 3343 for
// `shown_path` with the reason when anything fails. Unless `salvage`, a
// table whose rows read differ from the count its definition records fails
// too (libmdb skips an unreadable page with no more than a warning).
JetFile ReadJetFile(const std::filesystem::path& path, std::string_view shown_path,
                    bool salvage = false);

}  // namespace seluvorne::legacy
