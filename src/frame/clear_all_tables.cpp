// Emptying every table of a database, as the floor database's delete-all
// asks for it.

#include "seluvorne/dao.h"
#include "seluvorne/frame.h"

namespace seluvorne::frame {

void ClearAllTables(dao::Database& db) {
  auto tables = db.TableDefs();
  for (std::int32_t i = 0; i < tables->Count(); ++i)
    db.Execute("DELETE FORM " + tables->Item(i)->Name() + ";", dao::dbFailOnError);
}

}  // namespace seluvorne::frame
