// A client that needs code from every installed header: each header below is
// included and one of its functions (or a class's member) is referenced, so
// that linking against the installed libseluvorne fails for a header whose
// code the library does not carry. package_test.sh checks that every
// installed header is included here. Linked and run; the calls are not made.

#include "seluvorne/array.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/collaborators.h"
#include "seluvorne/components.h"
#include "seluvorne/dao.h"
#include "seluvorne/dispatch.h"
#include "seluvorne/display.h"
#include "seluvorne/drawing.h"
#include "seluvorne/durable_file.h"
#include "seluvorne/entry_lock.h"
#include "seluvorne/error.h"
#include "seluvorne/files.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/held_files.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/integrity.h"
#include "seluvorne/legacy.h"
#include "seluvorne/library.h"
#include "seluvorne/member_table.h"
#include "seluvorne/member_transaction.h"
#include "seluvorne/message_box.h"
#include "seluvorne/page_rows.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_floor.h"
#include "seluvorne/sample_pages.h"
#include "seluvorne/seluvorne_data_service.h"
#include "seluvorne/span_loader.h"
#include "seluvorne/span_model.h"
#include "seluvorne/table_schema.h"
#include "seluvorne/typed.h"
#include "seluvorne/ui.h"
#include "seluvorne/variant.h"
#include "seluvorne/version.h"

using namespace seluvorne;

int main(int argc, char**) {
  if (argc < 100) return 0;                             // only the link is the test
  vb::Array<std::int16_t> array{{3}};                   // array.h
  CallByName(Object(), "Name", CallKind::PropertyGet);  // call_by_name.h
  frame::FloorDirs::Create();                           // collaborators.h
  RegisterStandaloneComponents();                       // components.h
  dao::DBEngine::Instance();                            // dao.h
  Register("A.B", {});                                  // dispatch.h
  PrimaryScreenBounds();                                // display.h
  drawing::LayoutElevation({});                         // drawing.h
  SyncPath("a", true);                                  // durable_file.h
  EntryLock lock;                                       // entry_lock.h
  MakeError(5);                                         // error.h
  files::FileExists("a");                               // files.h
  frame::CreateTable(*dao::DBEngine::Instance()->OpenDatabase("a"),
                     frame::kFloorTables[0]);  // floor_schema.h, table_schema.h
  frame::LoadPageMax();                        // frame.h
  clsHariFukasiDS().SetPage(0);                // hari_fukasi_ds.h
  clsHariSWDS().CloseDB();                     // hari_sw_ds.h
  dao::HeldFiles held;                         // held_files.h
  clsHikiCopyDS::Members();                    // hiki_copy_ds.h
  files::ForeignObjects("a");                  // integrity.h
  legacy::MigrateFloor("a");                   // legacy.h
  StartLibrary();                              // library.h
  detail::DescribeArgument(vb::Variant());     // member_table.h
  InMemberTransaction(*dao::DBEngine::Instance()->OpenDatabase("a"),
                      [] {});                 // member_transaction.h
  QtMessageBoxes();                           // message_box.h
  frame::PageRows rows;                       // page_rows.h
  NativePath("a");                            // paths.h
  vb::CInt(1.0);                              // runtime.h
  sample::OfficeFloor();                      // sample_floor.h
  sample::TypicalPage(0);                     // sample_pages.h
  clsSeluVorneDataService().SetCurrKai("a");  // seluvorne_data_service.h
  SpanModel model;                            // span_model.h
  LoadSpanModel(*dao::DBEngine::Instance()->OpenDatabase("a"), 0, model);  // span_loader.h
  vb::FromVariant<std::int16_t>(vb::Variant());                            // typed.h
  ui::CreateForms();                                                       // ui.h
  vb::ElementType(vb::AnyArray());                                         // variant.h
  return LibraryVersion()[0];                                              // version.h
}
