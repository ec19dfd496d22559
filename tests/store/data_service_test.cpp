// clsSeluVorneDataService as a whole: what its creation and death do, the
// library-wide settings it exposes, and its members reached by name.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "floor_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/frame.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::FloorTest;
using ::testing::ElementsAre;
using vb::Variant;

using DataServiceTest = FloorTest;

TEST_F(DataServiceTest, CreationMakesTheRosterAndStartsWithNothingOpen) {
  clsSeluVorneDataService service;
  EXPECT_EQ(fakes.Created(frame::BeamRoster::kProgId), 1);
  EXPECT_EQ(service.CurZeneNo, -1);
  EXPECT_EQ(service.CurKoujiNo, -1);
  EXPECT_EQ(service.CurKaiNo, -1);
  EXPECT_FALSE(service.KutaiDb || service.WriteOpenDb || service.SwStore || service.FukasiStore ||
               service.FloorCompanion);
  EXPECT_EQ(service.CurrKai(), "");

  Unregister(frame::BeamRoster::kProgId);
  EXPECT_RAISES(clsSeluVorneDataService(), errc::kCannotCreateObject);
}

TEST_F(DataServiceTest, DeathReleasesRosterAndProgressBarBeforeReplacingTheSharedServices) {
  std::weak_ptr<Dispatch> progress;
  bool released_first = false;
  auto service = std::make_unique<clsSeluVorneDataService>();
  {
    Object bar = fakes::MakeFakeObject(fakes, "Progress");
    progress = bar;
    service->SetCopyMergeBar(bar);
  }
  EXPECT_FALSE(progress.expired());
  Register(frame::FloorDirs::kProgId, [&] {
    released_first = progress.expired();
    return fakes::MakeFakeObject(fakes, "FloorDirs");
  });
  const Object old_probe = frame::gExistProbe.object();

  service.reset();
  EXPECT_TRUE(released_first);
  EXPECT_NE(frame::gExistProbe.object(), old_probe);
}

TEST_F(DataServiceTest, LibraryWideSettingsByName) {
  Object service = std::make_shared<clsSeluVorneDataService>();
  const auto get = [&](std::string_view name) {
    return CallByName(service, name, CallKind::PropertyGet);
  };
  const auto put = [&](std::string_view name, const Variant& value) {
    CallByName(service, name, CallKind::PropertyPut, value);
  };

  EXPECT_EQ(get("PageMax"), Variant(frame::gPageMax));
  put("HontaiOrFukasi", Variant(true));
  EXPECT_EQ(frame::gFukasiOnly, -1);
  EXPECT_EQ(get("HontaiOrFukasi"), Variant(std::int16_t{0}));
  put("FromBeamSolver", Variant(true));
  EXPECT_TRUE(frame::gFromBeamSolver);
  EXPECT_EQ(get("fromBeamSolver"), Variant(true));
  put("YobidasiMoto", Variant("BeamCalc"));
  EXPECT_EQ(frame::gYobidasiMoto, "BeamCalc");
  EXPECT_RAISES(get("YobidasiMoto"), errc::kMemberNotSupported);  // put only
  EXPECT_RAISES(get("CopyMergeBar"), errc::kMemberNotSupported);

  put("CurZeneNo", Variant("7"));
  EXPECT_EQ(get("CurZeneNo"), Variant(std::int16_t{7}));
  put("pPageNo", Variant(3));
  EXPECT_EQ(get("pPageNo"), Variant(std::int16_t{3}));
  EXPECT_RAISES(put("SwStore", Variant(Object(std::make_shared<clsHikiCopyDS>()))),
                errc::kTypeMismatch);
}

TEST_F(DataServiceTest, FloorsOpenByNameWithTheHandleByReference) {
  const std::string folder = FloorFolder(1, 1, 1);
  Object service = std::make_shared<clsSeluVorneDataService>();
  Variant handle;
  EXPECT_EQ(CallByName(service, "OpenSeluVorne", CallKind::Method, folder, Ref(handle)),
            Variant(true));
  auto db = std::dynamic_pointer_cast<dao::Database>(vb::CObj(handle));
  ASSERT_TRUE(db);
  EXPECT_EQ(db->Name(), folder + "\\SELUVORN.mdb");

  Object companion = fakes::MakeFakeObject(fakes, "FloorCompanion");
  CallByName(service, "FloorCompanion", CallKind::PropertyPut, companion);
  EXPECT_EQ(vb::CObj(CallByName(service, "floorcompanion", CallKind::PropertyGet)), companion);
}

}  // namespace
