// clsHariFukasiDS: the build-out (ふかし) store of one floor.
//
// A floor folder holds "HARIFUKA.mdb" with one table, KUTAIDATA: one row per
// value, keyed by page, span, position around the section (ITI: 0 left,
// 1 right, 2 top, 3 bottom), build-out kind (SYURUI, 0 to 9) and value code
// (BANGOU, 0 to 21), the value itself as text (DATA). The class keeps a
// current key, reads and writes one value at that key through named
// properties (KaisiKyori, StpKei(AorB), ...), queries, deletes and copies
// ranges of it, renumbers spans, buffers a whole page to write it back under
// another page number, and copies pages between floors.
//
//   auto store = std::make_shared<seluvorne::clsHariFukasiDS>();
//   store->WriteDB_Open(floor_folder);          // creates the file when needed
//   store->SetPage(3); store->SetSpan(0); store->SetIti(store->ItiNoUe()); store->SetSyurui(0);
//   store->SetKigou("F1");                      // one row: (3, 0, 2, 0, 6, "F1")
//   bool has_build_outs = store->isYuukou();
//   store->CloseDB();
//
// Files are named with backslashes as the suite names them; the file layer
// maps them. The operations that need the file open it on first use (the
// floor folder in Path, else the floor-path service's current floor). Errors
// of the database engine and of the outside components reach the caller
// unchanged; results report only "no file" or "no rows". docs/fukasi.md has
// the developer's notes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "seluvorne/dao.h"
#include "seluvorne/member_table.h"
#include "seluvorne/page_rows.h"

namespace seluvorne {

class clsHariFukasiDS : public DispatchImpl<clsHariFukasiDS> {
 public:
  static const MemberTable<clsHariFukasiDS>& Members();

  // The build-out file of a floor folder and the work copy beside it.
  static constexpr std::string_view kFileName = "HARIFUKA.mdb";
  static constexpr std::string_view kWorkFileName = "WorkHariFuka.mdb";

  // Makes nothing: the file is opened on first use. Hosts create the class by
  // name, which runs the library's start routine first.
  clsHariFukasiDS();
  // Closes an open database, then gives the library new shared floor-path and
  // probe objects.
  ~clsHariFukasiDS() override;
  clsHariFukasiDS(const clsHariFukasiDS&) = delete;
  clsHariFukasiDS& operator=(const clsHariFukasiDS&) = delete;

  // The page the page buffer is written under (WriteDB) and read from (ReadDB).
  std::int16_t pPageNo = 0;

  // ---- The current key and the constants (key.cpp) -------------------------
  // A put sets both ends of that range; a get answers the lower end.
  std::int16_t Page() const;
  void SetPage(std::int16_t Page);
  std::int16_t Span() const;
  void SetSpan(std::int16_t Span);
  std::int16_t Iti() const;
  void SetIti(std::int16_t Iti);
  std::int16_t Syurui() const;
  void SetSyurui(std::int16_t Syurui);
  // The floor folder of the file.
  std::string Path() const;
  void SetPath(const std::string& Path);

  std::int16_t ItiNoHidari() const;  // 0
  std::int16_t ItiNoMigi() const;    // 1
  std::int16_t ItiNoUe() const;      // 2
  std::int16_t ItiNoSita() const;    // 3
  std::int16_t SyuruiMax() const;    // 9
  // The library's page limit (499 or 159).
  std::int16_t PageMax() const;
  // "左", "右", "上", "下" for positions 0 to 3; "" for any other.
  std::string ItiName(std::int16_t Iti) const;
  // R = {2, 0, 1, 3}: the order positions are visited in (top, left, right, bottom).
  void GetLoopHairetu(vb::Array<std::int16_t>& R) const;

  // ---- One value at the current key (values.cpp) ---------------------------
  // A get reads the value of its code under the current ranges ("" when there
  // is none, or no file); a put collapses every range to its lower end and
  // replaces the value there ("" is stored, not skipped). AorB 0 is side A,
  // any other side B.
  std::string KaisiKyori();  // 0 start distance
  void SetKaisiKyori(const std::string& value);
  std::string KaisiNomikomi();  // 1 start embedment
  void SetKaisiNomikomi(const std::string& value);
  std::string KaisiAnka();  // 2 start anchorage
  void SetKaisiAnka(const std::string& value);
  std::string Syuuten();  // 3 end point
  void SetSyuuten(const std::string& value);
  std::string ENDNomikomi();  // 4 end embedment
  void SetENDNomikomi(const std::string& value);
  // 5 end anchorage. The get copies the value into KaisiAnka (code 2) and
  // answers "", as the suite's clients rely on.
  std::string EndAnka();
  void SetEndAnka(const std::string& value);
  std::string Kigou();  // 6 symbol; a non-blank one makes the page count (isYuukou)
  void SetKigou(const std::string& value);
  std::string StpKei(std::int16_t AorB);  // 7 / 9 stirrup diameter
  void SetStpKei(std::int16_t AorB, const std::string& value);
  std::string StpPich(std::int16_t AorB);  // 8 / 10 stirrup pitch
  void SetStpPich(std::int16_t AorB, const std::string& value);
  std::string SyukinKei(std::int16_t AorB);  // 11 / 13 main-bar diameter
  void SetSyukinKei(std::int16_t AorB, const std::string& value);
  std::string SyukinHon(std::int16_t AorB);  // 12 / 14 main-bar count (read only)
  std::string HaraKei();                     // 15 web-bar diameter
  void SetHaraKei(const std::string& value);
  std::string HaraHon();  // 16 web-bar count
  void SetHaraHon(const std::string& value);
  std::string HabadomeKei();  // 17 width-tie diameter
  void SetHabadomeKei(const std::string& value);
  std::string HabadomePich();  // 18 width-tie pitch
  void SetHabadomePich(const std::string& value);
  std::string Atusa();  // 19 thickness
  void SetAtusa(const std::string& value);
  std::string Siten();  // 20 start point
  void SetSiten(const std::string& value);
  std::string Haba();  // 21 width
  void SetHaba(const std::string& value);

  // ---- Files and opening (files.cpp) ---------------------------------------
  // Creates the file at a full path (3204 when it exists, 3044 without its folder).
  void Create_HariFukasi_TBL(const std::string& FileName);
  void Create_HariFukasiMDB_FullPath(const std::string& FileName);
  // Creates the floor folder when the probe misses it, then the file in it.
  void Create_HariFukasiMDB(const std::string& KaiPath);
  // Opens the file of KaiPath (the current floor when ""), creating it when
  // needed; Path becomes that folder. True.
  bool WriteDB_Open(const std::string& KaiPath);
  // Closes the database; 91 when none is open.
  void CloseDB();
  // Deletes the floor's file when it exists, closing the database first. True.
  bool Kill_DB(const std::string& FloorPath);

  // ---- Ranges of the current key (ranges.cpp) ------------------------------
  // Each opens the file on first use and answers false when it cannot.
  // Snapshot sets of the whole table, the page's span, position, kind; true
  // when the set has a row (it is on the first).
  bool GetRecordAll(std::shared_ptr<dao::Recordset>& CopySet);
  bool GetRecordSpan(std::shared_ptr<dao::Recordset>& CopySet);
  bool GetRecordIti(std::shared_ptr<dao::Recordset>& CopySet);
  bool GetRecordSyurui(std::shared_ptr<dao::Recordset>& CopySet);
  // The current page's rows as an array (field, row), fields in table order;
  // false and vCopySet untouched when the page has none.
  bool GetRecordPage(vb::Variant& vCopySet);
  bool DeletePage();
  bool DeleteSpan();
  bool DeleteIti();
  bool DeleteSyurui();
  // Appends the rows of an array laid out as GetRecordPage gives it. The
  // whole array is checked before the first row is added.
  bool CopyRecordPage(const vb::Variant& CopySet);
  // These three copy nothing: they close the caller's record set. Clients
  // copy a range with GetRecordPage, UpdatePage and CopyRecordPage.
  bool CopyRecordSpan(std::shared_ptr<dao::Recordset>& CopySet);
  bool CopyRecordIti(std::shared_ptr<dao::Recordset>& CopySet);
  bool CopyRecordSyurui(std::shared_ptr<dao::Recordset>& CopySet);
  // Sets the page field of every row of an array from GetRecordPage to Page;
  // nothing when Myset is no array.
  void UpdatePage(vb::Variant& Myset, std::int16_t Page);
  // Removes the current span of the current page and moves the later spans
  // down by one.
  bool TumeruSpan();
  // Moves the current span and the later ones of the current page up by one.
  bool InsertSpan();
  // Whether the current page has a symbol (code 6) that is not blank.
  bool isYuukou();

  // ---- The page buffer (page_buffer.cpp) -----------------------------------
  // These work on the open database (91 when none is).
  // Reads page pPageNo into the buffer (one spare entry at the end); false,
  // buffer unchanged, when the page has no rows.
  bool ReadDB();
  // Replaces page pPageNo with the buffer's entries that hold a value. True.
  bool WriteDB();
  // One empty entry.
  void wBuf_Clear();
  // Deletes page pPageNo.
  void HariFukasi_Del_DBTBL();

  // The page buffer: parallel arrays, one entry per row of a page; keys in
  // table order (PAGE, SPANNO, ITI, SYURUI, BANGOU). For C++ callers that
  // want to look at it (not one of the late-bound members).
  const frame::PageRows& wBuf() const { return buffer_; }

  // ---- Floor copy (floor_copy.cpp) -----------------------------------------
  // Copies a page's rows from one floor's file into another's, replacing the
  // destination page; false, destination untouched, when the source page has
  // none. The floors are given by contractor, project and floor numbers.
  bool No_Copy1Page(std::int16_t& iMotoZeneNo, std::int16_t& iMotoKoujiNo, std::int16_t& iMotoKaiNo,
                    std::int16_t& iMotoPageNo, std::int16_t& iSakiZeneNo,
                    std::int16_t& iSakiKoujiNo, std::int16_t& iSakiKaiNo,
                    std::int16_t& iSakiPageNo);
  // Opens the file No_Copy1Page names (created when missing) as the database,
  // dropping the one open before without closing it. True.
  bool Copy_OpenDB();
  // KaiFg false: snapshots the live file of Path as the work file; true:
  // closes the database.
  void Copy_Kaisitei_Ini(bool KaiFg);
  // GetRecordPage, read from the work file.
  bool GetRecordPage_KaiSitei(vb::Variant& vCopySet);
  // Deletes the work file.
  void Copy_Kaisitei_End();

  // The range filter's levels: each adds one field of the key.
  enum Level : int { kAll = 0, kPage, kSpan, kIti, kSyurui, kCode };
  // The key as ranges (a put sets both ends) and the value code.
  struct Key {
    std::int16_t page_from = 0, page_to = 0;
    std::int16_t span_from = 0, span_to = 0;
    std::int16_t iti_from = 0, iti_to = 0;
    std::int16_t syurui_from = 0, syurui_to = 0;
    std::int32_t code = 0;
  };

 private:
  // Opens the file of Path when no database is open; false when it cannot.
  bool EnsureOpen();
  // The open database; 91 naming `operation` when none is.
  dao::Database& OpenDatabase(std::string_view operation);
  std::shared_ptr<dao::Recordset> Snapshot(Level level);
  bool GetRecordRange(Level level, std::shared_ptr<dao::Recordset>& CopySet);
  bool DeleteRange(Level level);
  bool CopyRecordRange(Level level, std::shared_ptr<dao::Recordset>& CopySet);
  std::string ReadValue(std::int32_t value_code);
  void WriteValue(std::int32_t value_code, const std::string& value);

  std::shared_ptr<dao::Database> database_;
  std::string path_;
  Key key_;
  frame::PageRows buffer_;
  std::string copy_file_name_;  // the file Copy_OpenDB opens
};

}  // namespace seluvorne
