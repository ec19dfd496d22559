// The object model called by name, as the suite's clients and Python call it.

#include "db_fixture.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/library.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using vb::Variant;

using LateBoundTest = DbTest;

Variant Get(const Object& object, std::string_view member, std::vector<Variant> args = {}) {
  return Invoke(object, member, CallKind::PropertyGet, args);
}
Object Call(const Object& object, std::string_view member, std::vector<Variant> args = {}) {
  Variant answer = Invoke(object, member, CallKind::Method, args);
  return answer.isObject() ? vb::CObj(answer) : nullptr;
}

TEST_F(LateBoundTest, ADatabaseHandleWorksThroughMemberNames) {
  StartLibrary();
  Object engine = CreateObject("dao.dbengine");
  EXPECT_EQ(engine, Object(dao::DBEngine::Instance()));
  Object workspace = vb::CObj(Get(engine, "Workspaces", {Variant(std::int16_t{0})}));
  Object db =
      Call(workspace, "CreateDatabase", {Variant(PathOf("SW.MDB")), Variant(dao::dbLangJapanese)});
  Object table = Call(db, "CreateTableDef", {Variant("SELUVORNESW")});
  for (const char* name : {"PAGE", "DATA"}) {
    Object field = Call(table, "CreateField", {Variant(name), Variant(std::int16_t{10})});
    Call(vb::CObj(Get(table, "Fields")), "Append", {Variant(field)});
  }
  Call(vb::CObj(Get(db, "TableDefs")), "Append", {Variant(table)});
  // db.TableDefs(3): arguments go to the collection's Item.
  EXPECT_EQ(Get(vb::CObj(Get(db, "TableDefs", {Variant(std::int16_t{3})})), "Name"),
            Variant("SELUVORNESW"));

  Object rs = Call(db, "OpenRecordset", {Variant("SELUVORNESW"), Variant(2)});
  Call(rs, "AddNew");
  std::vector<Variant> five{Variant("5")};
  Invoke(vb::CObj(Get(rs, "Fields", {Variant("PAGE")})), "Value", CallKind::PropertyPut, five);
  Call(rs, "Update");
  rs = Call(db, "OpenRecordset", {Variant("SELECT * FROM SELUVORNESW;"), Variant(4)});
  EXPECT_EQ(Get(rs, "eof"), Variant(false));
  // A field used as a value answers its Value; the set's default member is Fields.
  std::vector<Variant> name{Variant("PAGE")};
  EXPECT_EQ(vb::CStr(rs->invoke(rs->defaultMember(), CallKind::PropertyGet, name)), "5");
  Call(db, "Close");
  EXPECT_RAISES(Call(db, "Close"), kObjectInvalid);
}

}  // namespace
}  // namespace seluvorne::testing
