// A legacy Jet file opened in place: its tables and rows, read through the
// reader helper, in a private in-memory SQLite database with the same
// catalogue as a file of ours, so that the object model serves it unchanged.
// Nothing is ever written back; every write raises 3027.

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <cstdint>
#include <string>

#include "connection.h"
#include "field_rules.h"
#include "legacy/jet_reader.h"
#include "legacy_tables.h"
#include "seluvorne/dao.h"

namespace seluvorne::db {

void CopyJetTables(Connection& connection, const legacy::JetFile& file) {
  for (const legacy::JetTable& table : file.tables) {
    CheckName(table.name);
    TableDefinition definition{table.name, "", {}};
    for (const legacy::JetField& field : table.fields) {
      FieldDefinition stored{field.name, field.type, field.type == dao::dbInteger ? 2 : field.size,
                             field.default_value.value_or(""), field.allow_zero_length};
      CheckName(stored.name);
      CheckFieldDefinition(stored);
      definition.fields.push_back(std::move(stored));
    }
    connection.AppendTable(definition);
  }

  Guarded(connection.shown_path(), [&] {
    SQLite::Database& sqlite = connection.sqlite();
    SQLite::Transaction transaction(sqlite);
    for (const legacy::JetTable& table : file.tables) {
      const TableDefinition& stored = *connection.catalogue().Find(table.name);
      std::string insert = "INSERT INTO " + QuoteIdentifier(stored.stored_name) + " VALUES (";
      for (std::size_t i = 0; i < stored.fields.size(); ++i)
        insert += i > 0 ? ", ?" : "?";
      SQLite::Statement statement(sqlite, insert + ")");
      for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
          int parameter = static_cast<int>(i) + 1;
          if (!row[i])
            statement.bind(parameter);
          else if (table.fields[i].type == dao::dbInteger)
            statement.bind(parameter, static_cast<std::int64_t>(std::stoll(*row[i])));
          else
            statement.bind(parameter, *row[i]);
        }
        statement.exec();
        statement.reset();
      }
    }
    transaction.commit();
  });
}

std::shared_ptr<Connection> Connection::OpenLegacy(const std::filesystem::path& path,
                                                   std::string_view shown_path) {
  legacy::JetFile file = legacy::ReadJetFile(path, shown_path);
  std::unique_ptr<Connection> connection = Guarded(shown_path, [&] {
    std::unique_ptr<Connection> made(
        new Connection(":memory:", shown_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX));
    Catalogue::Create(made->sqlite_, dao::dbLangJapanese);
    made->LoadCatalogue();
    return made;
  });
  CopyJetTables(*connection, file);
  Guarded(shown_path, [&] { connection->sqlite_.exec("PRAGMA query_only = 1"); });
  connection->read_only_ = true;  // the engine's own checks raise 3027 before SQLite sees a write
  Identify(path, connection->identity_);
  return NewLease(Register(std::move(connection)));
}

}  // namespace seluvorne::db
