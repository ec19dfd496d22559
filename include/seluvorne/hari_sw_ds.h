// clsHariSWDS: the switch store of a floor, and the table checks that bring
// older floor files up to date.
//
// A floor folder may hold "SeluVorneSW.MDB", one table SELUVORNESW of
// per-span switch settings per page (PAGE, SPAN, DATAKIND, DATA). This class
// carries a page's switch rows along when a page is copied between floors:
// ReadDB loads the rows of pPageNo into four parallel buffers, WriteDB
// replaces the rows of pPageNo with them, and No_Copy1Page does both across
// two floors, creating a missing switch file on the way.
//
// It also hosts the existence checks and creators of the three tables that
// floor files written before them lack (SPANTOP, SPANTANJOIL,
// STPJOUGEGENSUN). They take the database as a Variant by reference, since
// they are called by name with whatever handle the caller holds.
//
// Created by name as "SeluVorneDS.clsHariSWDS" once StartLibrary has run.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "seluvorne/dao.h"
#include "seluvorne/member_table.h"
#include "seluvorne/page_rows.h"

namespace seluvorne {

class clsHariSWDS : public DispatchImpl<clsHariSWDS> {
 public:
  static const MemberTable<clsHariSWDS>& Members();

  // The switch file's name in a floor folder.
  static constexpr std::string_view kFileName = "SeluVorneSW.MDB";

  clsHariSWDS();
  // Gives the library new shared floor-path and probe services.
  ~clsHariSWDS() override;

  // The page ReadDB, WriteDB and HariSW_Del_DBTBL act on.
  std::int16_t pPageNo = 0;

  // ---- Page copy -------------------------------------------------------------

  // Copies the switch rows of one page from one floor to another, replacing
  // the destination page's rows; a missing switch file is created (so a
  // source without one empties the destination page). Leaves no database open.
  bool No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                    std::int16_t iMotoPageNo, std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                    std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo);
  // Opens the switch file at the path No_Copy1Page last set, creating it when
  // the file probe does not find it. Always true when it returns.
  bool Copy_OpenDB();
  // Loads the rows of pPageNo into the buffers: n rows fill indices 0..n-1
  // and leave a spare empty element n. True when it returns.
  bool ReadDB();
  // Buffers of one element, its text empty.
  void wBuf_Clear();
  // Closes the switch database; 91 when none is open.
  void CloseDB();
  // Deletes the rows of pPageNo.
  void HariSW_Del_DBTBL();
  // Replaces the rows of pPageNo with the buffered rows whose text is not
  // empty, under pPageNo. True when it returns.
  bool WriteDB();
  // Creates a switch file with its table at `FileName` (3204 when it exists).
  void Create_SwMDB_TBL(const std::string& FileName);

  // ---- Floor-file tables -----------------------------------------------------
  //
  // A check answers whether a table of exactly that name (letter case
  // counts) is among the database's TableDefs; a creator appends the table.
  // `mydb` holds the database; Nothing raises 91, anything else 13.

  bool IsTopTblExist(vb::Variant& mydb);
  void CreateTopTbl(vb::Variant& mydb);
  bool IsTanbuJointLTblExist(vb::Variant& mydb);
  void CreateTanbuJointLTbl(vb::Variant& mydb);
  bool IsStpJougeGensunTblExist(vb::Variant& mydb);
  void CreateStpJougeGensunTbl(vb::Variant& mydb);

 private:
  dao::Database& OpenDatabase();  // 91 when none is open

  std::string path_;  // the switch file Copy_OpenDB opens
  std::shared_ptr<dao::Database> db_;
  // One element per buffered row, in the order ReadDB read them.
  frame::PageRows buffer_;
};

}  // namespace seluvorne
