// Writing files so that a crash at any moment loses nothing already written:
// the one way the library syncs and replaces the small files it keeps beside
// its databases (journals, value files) and the folders that hold them.
// Errors come back as errno values, for each layer to raise as its own.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne {

// Makes a file's content, or a folder's entries (a file made, renamed or
// removed in it), durable. Answers 0, or the errno of what failed.
int SyncPath(const std::filesystem::path& path, bool folder);

// Replaces `file` with `content` so that a crash at any moment leaves the old
// file or the new one whole: written beside it as "<file>.<pid>.tmp",
// synced, renamed over it, and its folder synced. Answers 0, or the errno of
// the step that failed; no temporary file is left behind.
int ReplaceFileDurably(const std::filesystem::path& file, std::string_view content);

}  // namespace seluvorne
