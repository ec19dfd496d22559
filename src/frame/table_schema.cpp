// Creating tables from their descriptions.

#include "seluvorne/table_schema.h"

namespace seluvorne::frame {

void CreateTable(dao::Database& db, const TableSchema& table) {
  auto definition = db.CreateTableDef(std::string(table.name));
  for (const FieldSchema& schema : table.fields) {
    std::shared_ptr<dao::Field> field;
    if (schema.type == dao::dbText) {
      field = definition->CreateField(std::string(schema.name), dao::dbText, schema.size);
      field->SetAllowZeroLength(true);
    } else {
      field = definition->CreateField(std::string(schema.name), schema.type);
      field->SetDefaultValue("-1");
    }
    definition->Fields()->Append(field);
  }
  db.TableDefs()->Append(definition);
}

std::shared_ptr<dao::Database> CreateDatabaseWithTables(const std::string& path,
                                                        std::span<const TableSchema> tables) {
  return dao::DBEngine::Instance()
      ->Workspaces(vb::Variant(std::int16_t{0}))
      ->CreateDatabaseWith(path, std::string(dao::dbLangJapanese), [&](dao::Database& db) {
        for (const TableSchema& table : tables)
          CreateTable(db, table);
      });
}

void AcceptIfAnotherDidIt(int number, const std::function<void()>& step) {
  try {
    step();
  } catch (const Error& error) {
    if (error.number != number) throw;
  }
}

}  // namespace seluvorne::frame
