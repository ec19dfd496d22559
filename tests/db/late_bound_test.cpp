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
Variant Call(const Object& object, std::string_view member, std::vector<Variant> args = {}) {
  return Invoke(object, member, CallKind::Method, args);
}

TEST_F(LateBoundTest, TheEngineCreatedByNameIsTheSharedOne) {
  StartLibrary();
  Object engine = CreateObject("DAO.DBEngine.36");
  EXPECT_EQ(engine, CreateObject("dao.dbengine"));
  EXPECT_EQ(engine, DBEngine());
  EXPECT_EQ(engine, Object(dao::DBEngine::Instance()));
}

TEST_F(LateBoundTest, ADatabaseHandleWorksThroughMemberNames) {
  Object engine = DBEngine();
  Object workspace = vb::CObj(Get(engine, "Workspaces", {Variant(std::int16_t{0})}));
  EXPECT_RAISES(Get(engine, "Workspaces", {Variant(std::int16_t{1})}), kItemNotFound);
  Object db = vb::CObj(
      Call(workspace, "CreateDatabase", {Variant(PathOf("SW.MDB")), Variant(dao::dbLangJapanese)}));

  Object table = vb::CObj(Call(db, "CreateTableDef", {Variant("SELUVORNESW")}));
  Object field = vb::CObj(Call(table, "CreateField", {Variant("PAGE"), Variant(std::int16_t{3})}));
  std::vector<Variant> put{Variant("-1")};
  Invoke(field, "DefaultValue", CallKind::PropertyPut, put);
  Call(vb::CObj(Get(table, "Fields")), "Append", {Variant(field)});
  Object data = vb::CObj(
      Call(table, "CreateField", {Variant("DATA"), Variant(std::int16_t{10}), Variant(200)}));
  Call(vb::CObj(Get(table, "Fields")), "Append", {Variant(data)});
  Call(vb::CObj(Get(db, "TableDefs")), "Append", {Variant(table)});

  // db.TableDefs(3): arguments go to the collection's Item.
  Object found = vb::CObj(Get(db, "TableDefs", {Variant(std::int16_t{3})}));
  EXPECT_EQ(Get(found, "Name"), Variant("SELUVORNESW"));
  EXPECT_EQ(Get(vb::CObj(Get(db, "TableDefs")), "Count"), Variant(std::int32_t{4}));

  Object rs = vb::CObj(Call(db, "OpenRecordset", {Variant("SELUVORNESW"), Variant(2)}));
  Call(rs, "AddNew");
  Object page = vb::CObj(Get(rs, "Fields", {Variant("PAGE")}));
  std::vector<Variant> five{Variant(std::int16_t{5})};
  Invoke(page, "Value", CallKind::PropertyPut, five);
  Call(rs, "Update");
  Call(rs, "Close");

  rs = vb::CObj(Call(db, "OpenRecordset",
                     {Variant("SELECT * FROM SELUVORNESW WHERE PAGE = 5;"), Variant(4)}));
  EXPECT_EQ(Get(rs, "EOF"), Variant(false));
  EXPECT_EQ(Get(rs, "bof"), Variant(false));
  EXPECT_EQ(Get(rs, "RecordCount"), Variant(std::int32_t{1}));
  // A field used as a value answers its Value; the set's default member is Fields.
  EXPECT_EQ(vb::CInt(Get(rs, "Fields", {Variant("PAGE")})), 5);
  std::vector<Variant> name{Variant("PAGE")};
  EXPECT_EQ(vb::CInt(rs->invoke(rs->defaultMember(), CallKind::PropertyGet, name)), 5);
  EXPECT_TRUE(Get(vb::CObj(Get(rs, "Fields", {Variant(std::int16_t{1})})), "Value").isNull());
  Variant rows = Call(rs, "GetRows", {Variant(10)});
  EXPECT_EQ(rows.array<Variant>().UBound(2), 0);
  EXPECT_EQ(Get(rs, "EOF"), Variant(true));
  Call(db, "Execute", {Variant("DELETE * FROM SELUVORNESW WHERE PAGE = 5 ;"), Variant(128)});
  Call(db, "Close");
  EXPECT_RAISES(Call(db, "Close"), kObjectInvalid);
}

}  // namespace
}  // namespace seluvorne::testing
