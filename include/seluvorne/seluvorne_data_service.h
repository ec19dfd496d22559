// clsSeluVorneDataService: the beam frame data of a building floor.
//
// A floor folder holds the floor file "SELUVORN.mdb" with the tables of every
// beam page (floor_schema.h). This class creates, opens, empties and deletes
// that file and is the one way the suite's programs read and write it.
//
//   clsSeluVorneDataService floor;      // once the library has started
//   floor.SetCurrKai(folder);           // opens (creating when missing) into KutaiDb
//   ... read and write through KutaiDb ...
//   floor.CloseDB();
//
// Two database handles: KutaiDb for reading, copying and the span model,
// WriteOpenDb for the page writers. Every open for work adds the tables that
// older files lack, through SwStore (clsHariSWDS). A floor is given either as
// its folder or as three numbers (CurZeneNo, CurKoujiNo, CurKaiNo) that the
// floor-path service turns into the folder.
//
// Created by name as "SeluVorneDS.clsSeluVorneDataService" once StartLibrary
// has run; every member is also reached by name, with the same names.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "seluvorne/collaborators.h"
#include "seluvorne/dao.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/member_table.h"
#include "seluvorne/page_rows.h"
#include "seluvorne/span_model.h"

namespace seluvorne {

class clsSeluVorneDataService : public DispatchImpl<clsSeluVorneDataService> {
 public:
  static const MemberTable<clsSeluVorneDataService>& Members();

  // The floor file's name, appended to a floor folder as it stands.
  static constexpr std::string_view kFileName = "\\SELUVORN.mdb";

  // Creates the beam roster component (429 when the host has not registered
  // BeamRoster.clsRoster).
  clsSeluVorneDataService();
  // Releases the roster and the progress bar, then gives the library new
  // shared floor-path and probe services. Closes no database: the handles
  // close with their last holder.
  ~clsSeluVorneDataService() override;

  // ---- State reached by name -------------------------------------------------

  std::shared_ptr<dao::Database> KutaiDb;      // reading, copying, span model
  std::shared_ptr<dao::Database> WriteOpenDb;  // the page writers
  // The floor OpenDB_Sitei opens; -1 until set.
  std::int16_t CurZeneNo = -1;
  std::int16_t CurKoujiNo = -1;
  std::int16_t CurKaiNo = -1;
  std::shared_ptr<clsHariSWDS> SwStore;          // made on first use
  std::shared_ptr<clsHariFukasiDS> FukasiStore;  // made on first use
  // The host's companion of a floor file: OpenDB_Sitei(1) asks it to make its
  // own file beside a new floor. Empty, that call raises 91.
  Object FloorCompanion;
  // The page of the page buffers.
  std::int16_t pPageNo = 0;

  // The current floor folder. Setting it opens the floor into KutaiDb with
  // OpenSeluVorne; on failure both keep their previous values.
  std::string CurrKai() const { return curr_kai_; }
  void SetCurrKai(const std::string& KaiPath);

  // ---- The library-wide settings ---------------------------------------------

  std::int16_t PageMax() const;  // the highest page number: 499 or 159
  bool FromBeamSolver() const;
  void SetFromBeamSolver(bool value);
  // Always 0, whatever was put: the put only tells the library that the
  // build-out alone is calculated.
  std::int16_t HontaiOrFukasi() const { return 0; }
  void SetHontaiOrFukasi(std::int16_t value);
  void SetYobidasiMoto(const std::string& value);  // names the calling program
  // The progress bar of a page copy; kept until replaced or destruction.
  void SetCopyMergeBar(const Object& progress);

  // ---- The floor file ----------------------------------------------------------

  // `KaiPath` followed by "\SELUVORN.mdb".
  std::string GetFileName(const std::string& KaiPath) const;
  // Creates the folder when the probe does not find it, then the file with
  // its nine tables (closed).
  void Create_SeluVornMDB(const std::string& KaiPath);
  // Creates the file at a full path, without a folder check.
  void Create_SeluVornMDB_FullPath(const std::string& FileName);
  // Creates the file with its nine tables and closes it. Raises the engine's
  // 3204 over an existing file (which stays as it was), 3044 without its folder.
  void Create_SeluVorneTBL(const std::string& FileName);
  // The same, leaving the new file open in KutaiDb (replacing the handle
  // there without closing it).
  void Create_SeluVorneTBL_for_Copy(const std::string& FileName);

  // Opens the floor file of folder `CurrFloor` into `mydb`, first creating
  // folder and file when the probe does not find the file, then adds the
  // tables older files lack (SPANTOP, SPANTANJOIL, STPJOUGEGENSUN). True
  // whenever it returns; on an error `mydb` keeps what it held.
  bool OpenSeluVorne(const std::string& CurrFloor, std::shared_ptr<dao::Database>& mydb);
  // Closes and clears WriteOpenDb, then opens the floor into it.
  bool WriteOpen(const std::string& KaiPath);
  // Opens the floor of CurZeneNo, CurKoujiNo, CurKaiNo into KutaiDb and adds
  // SPANTOP where missing. A missing file with Mode 1 is created, with the
  // build-out file beside it (kept when it exists) and the companion's file;
  // with any other Mode the answer is False, nothing is created and KutaiDb
  // is emptied.
  bool OpenDB_Sitei(std::int16_t Mode);
  // Opens the file at a full path into KutaiDb, creating it when missing (not
  // its folder), and adds SPANTOP and SPANTANJOIL where missing. Answers
  // False always: the page copy does not look at it.
  bool OpenDB_Sitei_Copy(const std::string& sFullPathFileName);
  // Closes KutaiDb, which keeps the closed handle; 91 when it holds none.
  void CloseDB();
  // Deletes the floor file when the probe finds it, closing and clearing
  // WriteOpenDb first. KutaiDb is left alone: a file it holds open cannot be
  // deleted (70).
  void DeleteMdbByPath(const std::string& KaiPath);
  // Sends every table of the floor file the statement "DELETE FORM <table>;"
  // through KutaiDb, opening the floor there first when WriteOpenDb holds
  // nothing. The engine refuses the statement (3131), so no row is deleted;
  // the suite's clients rely on exactly this.
  void DeleteAllDataDB(const std::string& KaiPath);

  // ---- The span model of one page (span_model.h) -----------------------------
  //
  // InitKutaiData loads a page from KutaiDb; the per-span accessors and the
  // geometry queries then answer for it, by name through the member table
  // straight from the model (SpanGeometry() for C++ clients). Those that
  // need the beam roster are forwarded here with the roster this object
  // holds; `obList` is the caller's list object of the roster's shape.

  // The loaded page. Before the first load every array is at its bounds,
  // zero and empty.
  const SpanModel& SpanGeometry() const { return span_; }
  // Loads page `Page` from KutaiDb (opening the floor-path service's current
  // floor first when CurrKai is empty) and answers its span count; a page
  // without a valid span replaces only the span frame. 91 without KutaiDb;
  // on any error the model stays as it was.
  std::int16_t InitKutaiData(std::int16_t Page);
  // Loads only the span frame (KUTAIDATA) of `Page`; answers SpanSuu.
  std::int16_t SetSpanSunpou(std::int16_t Page);
  std::string TOORIMEI() const { return span_.TOORIMEI; }
  std::string Kasyosuu() const { return span_.Kasyosuu; }
  // Write-only: remembered, read by nothing in this library.
  void SetIsVarnholt(bool value) { is_varnholt_ = value; }

  // The readers into a caller's arrays (span_loader.h), on a handle given by
  // the caller (91 when it holds none).
  std::int16_t Read_KutaiSunpou(std::shared_ptr<dao::Database>& mydb, std::int16_t Page,
                                vb::Array<float>& Sunpou, vb::Array<std::string>& G);
  std::int16_t Read_Keisanti(std::shared_ptr<dao::Database>& mydb, std::int16_t Page,
                             vb::Array<float>& Keisanti);
  void Read_TooriMei(std::shared_ptr<dao::Database>& mydb, std::int16_t Page, std::string& Toori,
                     std::string& Kasyo);

  float GetHariSei(std::int16_t SpanNo, std::int16_t Iti) const;
  float GetHariSeiHidari(std::int16_t SpanNo) const;
  float GetHariSeiMigi(std::int16_t SpanNo) const;
  bool isRenzokuSitan(std::int16_t SpanNo) const;
  bool isRenzokuSyuutan(std::int16_t SpanNo) const;
  void GetDanmenBangou(std::int16_t SpanNo, vb::Array<std::int16_t>& DanmenBangou) const;
  std::int16_t GetListDanmenNoByKutaiDanmenNo(std::int16_t SpanNo,
                                              std::int16_t KutaiDanmenNo) const;
  float GetSpanRituHidari(std::int16_t Updown2, std::int16_t SpanNo, const Object& obList) const;
  float GetSpanRituMigi(std::int16_t Updown2, std::int16_t SpanNo, const Object& obList) const;
  float GetSpanRituHidariVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                  const Object& obList) const;
  float GetSpanRituMigiVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                const Object& obList) const;
  bool isTopX(std::int16_t UeOrSita, float X, float KyoyouNagasa, const Object& obList) const;
  bool isHasiKobari(const Object& obList) const;

  // ---- Page writers (page_writers.cpp) -----------------------------------------
  //
  // One table each, for one page: the writer turns its array of texts into
  // rows of WriteOpenDb (opened by WriteOpen), numbering SUBPAGE, BANGOU and
  // BAN from the array indices. A page outside 0 to the page limit writes
  // nothing, silently. Writers only add rows: the caller empties the page
  // first. An array smaller than the writer reads raises 9 after the rows
  // before the missing element; a text longer than its field raises 3163
  // after the rows before it. Those rows stay (one transaction, committed up
  // to the failing row).

  // KUTAIDATA (j, i): SUBPAGE i to UBound(dim 2), BANGOU j 0 to 159, every
  // text as it is. Reloads the page limit from the preset first.
  void Write_KutaiData(std::int16_t Page, vb::Array<std::string>& KUTAIDATA);
  // HantiData (j, i): SUBPAGE 0 to 4, BANGOU 0 to 79, trimmed.
  void Write_Hanti(std::int16_t Page, vb::Array<std::string>& HantiData);
  // STPData (j, i): SUBPAGE i to UBound(dim 2), BANGOU 0 to 39, trimmed.
  void Write_StpGensun(std::int16_t Page, vb::Array<std::string>& STPData);
  void Write_StpJougeGensun(std::int16_t Page, vb::Array<std::string>& STPData);
  // RData (n): SUBPAGE n \ 20, BANGOU n Mod 20, trimmed.
  void Write_Rsitei(std::int16_t Page, vb::Array<std::string>& RData);
  // HenkaData (k, b, s), HantiL (k, b, s): for SUBPAGE s, BANGOU 0 to 19, a
  // row per non-blank change point (BAN k, 0 to 13, trimmed) and haunch
  // length (BAN 100 + k, 0 to 1, as given).
  void Write_Henkaten(std::int16_t Page, vb::Array<std::string>& HenkaData,
                      vb::Array<std::string>& HantiL);
  // sTopData (j, i): 24 comma-separated values per element, BAN 0 to 23 of
  // SUBPAGE i, BANGOU j (0 to 19); an element without exactly 24 gives 24 "".
  // Adds SPANTOP to a file without it first.
  void Write_Top(std::int16_t Page, vb::Array<std::string>& sTopData);
  // The same with 2 values per element, into SPANTANJOIL.
  void Write_TanbuJointL(std::int16_t Page, vb::Array<std::string>& sTanbuJointLData);
  // AnkaNige (j, k, i): five slots j of 21 comma-separated values for
  // SUBPAGE i, BANGOU k (0 to 39), at BAN j * 50 + m. A group whose five
  // slots are all blank or zero writes nothing; entry 20 "1" keeps entries 12
  // to 20, anything else stores them as "0".
  void Write_AnkaNige(std::int16_t Page, vb::Array<std::string>& AnkaNige);
  // One TOORIMEI row: the name cut to 20 code-page-932 bytes (a longer name
  // becomes its first 17 bytes and "..."), the location count as given.
  void Write_TooriMei(std::int16_t Page, const std::string& TOORIMEI, const std::string& Kasyosuu);
  // These two write nothing: they check the page and open and close their table.
  void Write_AnkaNigeData(std::int16_t Page, vb::Array<std::string>& AnkaNige);
  void Write_SitakinAnkaSetudan(std::int16_t Page, vb::Array<std::string>& SitaData);

  // ---- Page buffers (page_buffers.cpp) -----------------------------------------
  //
  // A whole page of KutaiDb in memory (wBuf): ReadDB fills it from page
  // pPageNo, WriteDB writes it as page pPageNo, possibly of another floor.

  // Reads page pPageNo: its TOORIMEI row (3021 when it has none) and its rows
  // of the ten other tables, each with a spare empty element at the end.
  // True whenever it returns.
  bool ReadDB();
  // Replaces page pPageNo with the buffer (SPANTOP and SPANTANJOIL rows are
  // added to those there, never deleted). Rows with empty DATA are dropped,
  // except in KUTAIDATA, which writes exactly the rows read. False always.
  bool WriteDB();
  // Deletes page pPageNo from every table but SPANTOP and SPANTANJOIL.
  void SeluVorne_Del_DBTBL();
  // One element per array: -1 and "" (STPJOUGEGENSUN: 0 and ""); TOORIMEI
  // -1, "", "".
  void wBuf_Clear();

  // The buffer's tables, in the order ReadDB reads them.
  static constexpr int kBufferTables = 10;
  struct PageBuffers {
    std::int16_t toori_page = -1;  // TOORIMEI
    std::string toori, kasyo;
    std::array<frame::PageRows, kBufferTables> tables;
  };
  // For C++ callers that want to look (not reached by name).
  const PageBuffers& wBuf() const { return buffers_; }

  // ---- Page copy between floors (page_copy.cpp) ------------------------------
  //
  // Floors are given by contractor, project and floor numbers (Moto the
  // source, Saki the destination). A copy of page lists checks first that no
  // page is over 499 (the large page limit, whatever PageMax says); with
  // iMode 1 it then copies each page: the beam frame rows, the build-out
  // rows, the switch rows and the through-bar value, and with WithSekouzu 1
  // the additional rebar and calculation files. The progress object handed
  // over through CopyMergeBar follows (91 without one).

  // Source pages iMotoPageNo(0 .. iMotoPageMax) to iSakiPageNo at the same
  // indices. False with sNGMsg "ページの最大数を超えます。" when a source page is over 499.
  bool No_PageCopyNo(std::int16_t iMode, std::int16_t WithSekouzu, std::string& sNGMsg,
                     std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                     vb::Array<std::int16_t>& iMotoPageNo, std::int16_t iMotoPageMax,
                     std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo, std::int16_t iSakiKaiNo,
                     vb::Array<std::int16_t>& iSakiPageNo);
  // The same onto new pages after the destination's last page; false (no
  // message) when the last of them would be over 499.
  bool No_PageCopyAddNo(std::int16_t iMode, std::int16_t WithSekouzu, std::string& sNGMsg,
                        std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo,
                        std::int16_t iMotoKaiNo, vb::Array<std::int16_t>& iMotoPageNo,
                        std::int16_t iMotoPageMax, std::int16_t iSakiZeneNo,
                        std::int16_t iSakiKoujiNo, std::int16_t iSakiKaiNo);
  // The beam frame rows of one page, through the page buffers: true when the
  // source page was read and written. A missing destination file is created.
  bool No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                    std::int16_t iMotoPageNo, std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                    std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo);
  // Opens the remembered floor file into KutaiDb (adding SPANTOP where
  // missing), or, when it is missing, OpenDB_Sitei(1). True.
  bool Copy_OpenDB();

  // ---- The floor's pages and names (page_names.cpp) --------------------------

  // The pages of a floor in ascending order with their grid-line names
  // (untrimmed), into rPageNo and rPageName (0 .. the answer); -1 when the
  // floor has no file (nothing is created) or no page. Keeps the floor open
  // in KutaiDb for the next call with the same numbers.
  std::int16_t No_GetAllPageNoName(std::int16_t ZeneNo, std::int16_t KoujiNo, std::int16_t KaiNo,
                                   vb::Array<std::int16_t>& rPageNo,
                                   vb::Array<std::string>& rPageName);
  // ---- The page directory and the beam selection ------------------------------
  //
  // The directory is the table TOORIMEI (one row per page: PAGE, TOORI, KASYO);
  // a page's kind is the DATA of its KUTAIDATA row SUBPAGE 0, BANGOU 81, as the
  // roster's Kind reads it. Pages are 0-based in the file and 1-based for the
  // user: a packed page list is "*" followed by each page + 1 as three digits
  // ("*001010123"). The current-floor members open the floor-path service's
  // CurrFloor into KutaiDb through OpenSeluVorne and leave it open; a stored
  // page of 32767 overflows the + 1 (6).

  // Every page of the current floor, packed; "NoFile" when it cannot be opened.
  std::string AllPages2();
  // The pages whose kind code (GetKindByPage) is the member kind's: 1 when the
  // floor-path service's BuzaiNo is 5 or 6, else 0. Asks the kind once per page.
  std::string AllPages();
  // Fills PageNo(0..n) with the stored page numbers of the floor at `sPath`
  // and answers n, the page count - 1; -1 for none.
  std::int16_t GetAllPages(const std::string& sPath, vb::Array<std::int16_t>& PageNo);
  // The roster's Kind of the page's kind text, 2 read as 0 and 3 as 1, others
  // as they are. On a floor without kind rows: 0, and `Page` becomes -99.
  std::int16_t GetKindByPage(std::int16_t& Page);
  // 1 when the roster's Kind is 2 or 3, else 0; -99 in `Page` as above.
  std::int16_t GetKind2ByPage(std::int16_t& Page);
  // The page's grid-line name and location count, trimmed; "" without the row.
  std::string GetToorimeiByPage(std::int16_t Page);
  std::string GetKasyosuuByPage(std::int16_t Page);
  // Lets the user choose beams of the member kind in frmSelect, several when
  // FukusuuSentakuSW > 0, and answers the packed list of the chosen pages or
  // "ToMenu". Without showing the dialog: "NoFile", "" for an empty directory,
  // "*" for a floor without kind rows.
  std::string SelectedSeluVorneNo(std::int16_t FukusuuSentakuSW);
  // The same over every page, answered as KutaiNo(0..n-1) (0-based pages) and
  // the count n; ZenToorisuu is the number of pages listed.
  std::int16_t SelectedSeluVorneNoByDim(std::int16_t FukusuuSentakuSW,
                                        vb::Array<std::int16_t>& KutaiNo,
                                        std::int16_t& ZenToorisuu);
  // The caption of frmSelect's return-to-menu button (loads the dialog).
  void SetToMenuButtonMei(const std::string& caption);
  // Whether the floor of these numbers has a floor file with at least one
  // page of a non-blank grid-line name. Opens and closes the file itself.
  bool No_IsThereHari(std::int16_t ZeneNo, std::int16_t KoujiNo, std::int16_t KaiNo);

 private:
  // How many of the tables older floor files lack an opener adds, always in
  // this order: SPANTOP, SPANTANJOIL, STPJOUGEGENSUN.
  enum class Upgrade { kSpanTop, kSpanTopAndJoint, kAll };
  // Adds those of them that `db` lacks, through SwStore.
  void UpgradeTables(std::shared_ptr<dao::Database>& db, Upgrade steps);
  // Adds one of them when `db` lacks it.
  enum class LateTable { kSpanTop, kSpanTanJoil, kStpJougeGensun };
  void AddLateTable(std::shared_ptr<dao::Database>& db, LateTable table);
  clsHariSWDS& SwitchStore();        // SwStore, made on first use
  clsHariFukasiDS& BuildOutStore();  // FukasiStore, made on first use

  // The steps both page-list copies share once the destination pages are
  // known: the check's result is `result`; answers it.
  bool CopyPageList(std::int16_t iMode, std::int16_t WithSekouzu, bool result,
                    std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                    vb::Array<std::int16_t>& iMotoPageNo, std::int16_t iMotoPageMax,
                    std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo, std::int16_t iSakiKaiNo,
                    vb::Array<std::int16_t>& iSakiPageNo, const std::string& moto_folder,
                    const std::string& saki_folder, const frame::ExtraBars& rebar);
  // The page limit check of the writers.
  static bool PageInLimit(std::int16_t Page);
  // The floor file Copy_OpenDB opens (OpenDB_Sitei and No_Copy1Page set it).
  std::string copy_path_;
  PageBuffers buffers_;
  clsHikiCopyDS& ThroughBarCopier();  // made on first use
  std::shared_ptr<clsHikiCopyDS> through_bar_copier_;
  // The directory's shared steps.
  bool OpenCurrentFloor();
  std::int16_t KindCode(std::int16_t& page, bool either_beam);
  std::string PageField(std::int16_t page, std::string_view field);
  std::string ShowSelection(frame::SelectDialog& dialog);

  std::string curr_kai_;
  frame::BeamRoster roster_;
  frame::Progress copy_merge_bar_;
  // What the selection dialog carries from one showing to the next.
  std::int16_t saved_kakuninzu_checked_ = 0;
  std::int16_t saved_enable_kakuninzu_ = -1;
  SpanModel span_;
  bool is_varnholt_ = false;
};

}  // namespace seluvorne
