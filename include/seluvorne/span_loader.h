// Reading a beam page of a floor file into a SpanModel, and the three readers
// that fill a caller's arrays instead.
//
// Each table of the page is read with one statement and one forward pass.
// The loads build a new model and hand it over only when every table has
// been read: an error (a table missing, a row the runtime cannot convert)
// leaves the model as it was.
#pragma once

#include <cstdint>
#include <string>

#include "seluvorne/array.h"
#include "seluvorne/dao.h"
#include "seluvorne/span_model.h"

namespace seluvorne {

// The span frame of `page` from KUTAIDATA (sizes, names, levels,
// eccentricities, HasiraIti, SpanSuu) into `model`, whose attributes stay.
// Answers SpanSuu.
std::int16_t LoadSpanFrame(dao::Database& db, std::int16_t page, SpanModel& model);

// The whole page: the frame, then, when it has a valid span, the other
// tables in the clients' order (TOORIMEI, STPGENSUN, STPJOUGEGENSUN,
// HENKATEN, HANTI, ANKANIGE, RSITEI, SITAKINANKASETUDAN, SPANTOP,
// SPANTANJOIL). Without a valid span only the frame is replaced and the
// attributes keep what the previous load left. Answers SpanSuu.
std::int16_t LoadSpanModel(dao::Database& db, std::int16_t page, SpanModel& model);

// KUTAIDATA of `page` into the caller's arrays: every element of Sunpou is
// first set to -999999 (absent); then Sunpou(i, 0..2) takes the column widths
// and span length of span i, and G(i) its beam name, trimmed, with its first
// "/" made a blank. Answers the number of values stored.
std::int16_t ReadKutaiSunpou(dao::Database& db, std::int16_t page, vb::Array<float>& Sunpou,
                             vb::Array<std::string>& G);

// KEISANTI of `page`: BANGOU 0..2 into Keisanti(0..2), BANGOU 7..16 into
// Keisanti(3..12). Answers the number of values stored.
std::int16_t ReadKeisanti(dao::Database& db, std::int16_t page, vb::Array<float>& Keisanti);

// The grid-line name and location count of `page`, trimmed; both stay as they
// were when the page has no TOORIMEI row.
void ReadTooriMei(dao::Database& db, std::int16_t page, std::string& Toori, std::string& Kasyo);

}  // namespace seluvorne
