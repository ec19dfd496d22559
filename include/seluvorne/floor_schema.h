// The tables of a floor file ("SELUVORN.mdb"), as data.
//
// A new floor file gets the nine tables of kFloorTables, in that order. Three
// tables came later, and files written before them lack them: SPANTOP,
// SPANTANJOIL and STPJOUGEGENSUN, which every open for work adds where they
// are missing. STPJOUGEGENSUN is both: a new file has it, an old one gains it.
// Each table is described once here, so the file's creator and the openers
// that add the late tables cannot disagree about a field.
#pragma once

#include <array>

#include "seluvorne/table_schema.h"

namespace seluvorne::frame {

namespace floor_fields {
using dao::dbInteger;
using dao::dbText;

// One row of a page: its position in the page and its value as text.
inline constexpr FieldSchema kPageRow[] = {
    {"PAGE", dbInteger}, {"SUBPAGE", dbInteger}, {"BANGOU", dbInteger}, {"DATA", dbText, 200}};
// The same with a fourth key, the row's slot.
inline constexpr FieldSchema kPageRowWithBan[] = {{"PAGE", dbInteger},
                                                  {"SUBPAGE", dbInteger},
                                                  {"BANGOU", dbInteger},
                                                  {"BAN", dbInteger},
                                                  {"DATA", dbText, 200}};
// A page's grid-line name and location count.
inline constexpr FieldSchema kGridLine[] = {
    {"PAGE", dbInteger}, {"TOORI", dbText, 200}, {"KASYO", dbText, 200}};
// End-joint lengths: one short length value per row.
inline constexpr FieldSchema kEndJointLength[] = {{"PAGE", dbInteger},
                                                  {"SUBPAGE", dbInteger},
                                                  {"BANGOU", dbInteger},
                                                  {"BAN", dbInteger},
                                                  {"DATA", dbText, 10}};
}  // namespace floor_fields

inline constexpr TableSchema kStpJougeGensunTable{"STPJOUGEGENSUN", floor_fields::kPageRow};
inline constexpr TableSchema kSpanTopTable{"SPANTOP", floor_fields::kPageRowWithBan};
inline constexpr TableSchema kSpanTanJoilTable{"SPANTANJOIL", floor_fields::kEndJointLength};

inline constexpr std::array<TableSchema, 9> kFloorTables{{
    {"TOORIMEI", floor_fields::kGridLine},
    {"KUTAIDATA", floor_fields::kPageRow},
    {"ANKANIGE", floor_fields::kPageRowWithBan},
    {"RSITEI", floor_fields::kPageRow},
    {"STPGENSUN", floor_fields::kPageRow},
    kStpJougeGensunTable,
    {"SITAKINANKASETUDAN", floor_fields::kPageRow},
    {"HANTI", floor_fields::kPageRow},
    {"HENKATEN", floor_fields::kPageRowWithBan},
}};

}  // namespace seluvorne::frame
