#include "manifest.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

namespace seluvorne::testing {

namespace {

nlohmann::json Load(const std::filesystem::path& manifest) {
  std::ifstream in(manifest);
  return nlohmann::json::parse(in);
}

void ExpectEqualValue(const vb::Variant& value, const nlohmann::json& expected,
                      const std::string& where) {
  if (expected.is_null())
    EXPECT_TRUE(value.isNull()) << where;
  else if (expected.is_string())
    EXPECT_TRUE(value.isString() && *value.peek<std::string>() == expected.get<std::string>())
        << where << " expected \"" << expected.get<std::string>() << "\"";
  else
    EXPECT_TRUE(value.isNumber() && vb::CLng(value) == expected.get<long>())
        << where << " expected " << expected.dump();
}

}  // namespace

std::filesystem::path Fixture(const std::string& relative) {
  return std::filesystem::path(SELUVORNE_FIXTURES) / "jet" / relative;
}

int ManifestRows(const std::filesystem::path& manifest, const std::string& table) {
  const nlohmann::json tables = Load(manifest)["tables"];
  for (const auto& entry : tables)
    if (entry["name"] == table) return static_cast<int>(entry["rows"].size());
  return -1;
}

void ExpectMatchesManifest(dao::Database& database, const std::filesystem::path& manifest) {
  const nlohmann::json tables = Load(manifest)["tables"];
  auto defs = database.TableDefs();
  constexpr int kCatalogueTables = 3;  // MSysProperties, MSysTables, MSysFields come first
  ASSERT_EQ(defs->Count(), kCatalogueTables + static_cast<int>(tables.size()));
  for (std::size_t t = 0; t < tables.size(); ++t) {
    const nlohmann::json& table = tables[t];
    const std::string name = table["name"];
    auto def = defs->Item(static_cast<std::int32_t>(kCatalogueTables + t));
    ASSERT_EQ(def->Name(), name);
    auto fields = def->Fields();
    ASSERT_EQ(fields->Count(), static_cast<int>(table["columns"].size())) << name;
    for (std::size_t f = 0; f < table["columns"].size(); ++f) {
      const nlohmann::json& column = table["columns"][f];
      auto field = fields->Item(static_cast<std::int32_t>(f));
      const std::string where = name + "." + column["name"].get<std::string>();
      EXPECT_EQ(field->Name(), column["name"]) << where;
      EXPECT_EQ(field->Type(), column["dao_type"]) << where;
      if (column["dao_type"] == dao::dbText) {
        EXPECT_EQ(field->Size(), column["length"]) << where;
      }
      const nlohmann::json& properties = column["properties"];
      EXPECT_EQ(field->DefaultValue(), properties.value("DefaultValue", "")) << where;
      EXPECT_EQ(field->AllowZeroLength(), properties.value("AllowZeroLength", false)) << where;
    }

    auto rows = database.OpenRecordset("SELECT * FROM " + name + ";", dao::dbOpenSnapshot);
    std::size_t row = 0;
    for (; !rows->IsEOF(); rows->MoveNext(), ++row) {
      ASSERT_LT(row, table["rows"].size()) << name << " has more rows than its manifest";
      const nlohmann::json& expected = table["rows"][row];
      for (std::size_t f = 0; f < expected.size(); ++f)
        ExpectEqualValue(rows->Fields()->Item(static_cast<std::int32_t>(f))->Value(), expected[f],
                         name + " row " + std::to_string(row + 1) + " field " + std::to_string(f));
    }
    EXPECT_EQ(row, table["rows"].size()) << name;
  }
}

}  // namespace seluvorne::testing
