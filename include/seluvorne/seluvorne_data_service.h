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

#include <cstdint>
#include <memory>
#include <string>

#include "seluvorne/collaborators.h"
#include "seluvorne/dao.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/member_table.h"

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
  clsHariSWDS& SwitchStore();        // SwStore, made on first use
  clsHariFukasiDS& BuildOutStore();  // FukasiStore, made on first use

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
};

}  // namespace seluvorne
