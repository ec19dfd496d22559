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
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/member_table.h"
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

 private:
  // How many of the tables older floor files lack an opener adds, always in
  // this order: SPANTOP, SPANTANJOIL, STPJOUGEGENSUN.
  enum class Upgrade { kSpanTop, kSpanTopAndJoint, kAll };
  // Adds those of them that `db` lacks, through SwStore.
  void UpgradeTables(std::shared_ptr<dao::Database>& db, Upgrade steps);
  clsHariSWDS& SwitchStore();        // SwStore, made on first use
  clsHariFukasiDS& BuildOutStore();  // FukasiStore, made on first use

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
