// The JSON manifests beside the legacy fixtures (tests/fixtures/jet), and
// the comparison of a database's tables and rows with one.
#pragma once

#include <filesystem>
#include <string>

#include "seluvorne/dao.h"

namespace seluvorne::testing {

std::filesystem::path Fixture(const std::string& relative);  // under tests/fixtures/jet

// Adds a test failure for every table, field or row of `database` that
// differs from the manifest (Null and "" apart, fields with their type,
// size, default value and allow-zero-length).
void ExpectMatchesManifest(dao::Database& database, const std::filesystem::path& manifest);

// The number of rows the manifest lists for `table`.
int ManifestRows(const std::filesystem::path& manifest, const std::string& table);

}  // namespace seluvorne::testing
