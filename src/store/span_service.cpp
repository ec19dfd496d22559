// clsSeluVorneDataService and its span model: loading a page from KutaiDb,
// the readers into a caller's arrays, and the queries that need the beam
// roster this object holds or the caller's list object.

#include "seluvorne/frame.h"
#include "seluvorne/seluvorne_data_service.h"
#include "seluvorne/span_loader.h"

namespace seluvorne {

namespace {

dao::Database& Held(const std::shared_ptr<dao::Database>& db) {
  if (!db) Raise(errc::kObjectNotSet, "(no floor file is open)");
  return *db;
}

}  // namespace

std::int16_t clsSeluVorneDataService::InitKutaiData(std::int16_t Page) {
  if (curr_kai_.empty()) SetCurrKai(frame::gFloorDirs.CurrFloor());
  return LoadSpanModel(Held(KutaiDb), Page, span_);
}

std::int16_t clsSeluVorneDataService::SetSpanSunpou(std::int16_t Page) {
  return LoadSpanFrame(Held(KutaiDb), Page, span_);
}

std::int16_t clsSeluVorneDataService::Read_KutaiSunpou(std::shared_ptr<dao::Database>& mydb,
                                                       std::int16_t Page, vb::Array<float>& Sunpou,
                                                       vb::Array<std::string>& G) {
  return ReadKutaiSunpou(Held(mydb), Page, Sunpou, G);
}

std::int16_t clsSeluVorneDataService::Read_Keisanti(std::shared_ptr<dao::Database>& mydb,
                                                    std::int16_t Page, vb::Array<float>& Keisanti) {
  return ReadKeisanti(Held(mydb), Page, Keisanti);
}

void clsSeluVorneDataService::Read_TooriMei(std::shared_ptr<dao::Database>& mydb, std::int16_t Page,
                                            std::string& Toori, std::string& Kasyo) {
  ReadTooriMei(Held(mydb), Page, Toori, Kasyo);
}

// ---- With the roster ---------------------------------------------------------

float clsSeluVorneDataService::GetHariSei(std::int16_t SpanNo, std::int16_t Iti) const {
  return span_.GetHariSei(SpanNo, Iti, roster_);
}
float clsSeluVorneDataService::GetHariSeiHidari(std::int16_t SpanNo) const {
  return span_.GetHariSeiHidari(SpanNo, roster_);
}
float clsSeluVorneDataService::GetHariSeiMigi(std::int16_t SpanNo) const {
  return span_.GetHariSeiMigi(SpanNo, roster_);
}
bool clsSeluVorneDataService::isRenzokuSitan(std::int16_t SpanNo) const {
  return span_.isRenzokuSitan(SpanNo, roster_);
}
bool clsSeluVorneDataService::isRenzokuSyuutan(std::int16_t SpanNo) const {
  return span_.isRenzokuSyuutan(SpanNo, roster_);
}
void clsSeluVorneDataService::GetDanmenBangou(std::int16_t SpanNo,
                                              vb::Array<std::int16_t>& DanmenBangou) const {
  span_.GetDanmenBangou(SpanNo, DanmenBangou, roster_);
}
std::int16_t clsSeluVorneDataService::GetListDanmenNoByKutaiDanmenNo(
    std::int16_t SpanNo, std::int16_t KutaiDanmenNo) const {
  return span_.GetListDanmenNoByKutaiDanmenNo(SpanNo, KutaiDanmenNo, roster_);
}

// ---- With the caller's list --------------------------------------------------

float clsSeluVorneDataService::GetSpanRituHidari(std::int16_t Updown2, std::int16_t SpanNo,
                                                 const Object& obList) const {
  return span_.GetSpanRituHidari(Updown2, SpanNo, frame::BeamRoster(obList), roster_);
}
float clsSeluVorneDataService::GetSpanRituMigi(std::int16_t Updown2, std::int16_t SpanNo,
                                               const Object& obList) const {
  return span_.GetSpanRituMigi(Updown2, SpanNo, frame::BeamRoster(obList), roster_);
}
float clsSeluVorneDataService::GetSpanRituHidariVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                                         const Object& obList) const {
  return span_.GetSpanRituHidariVARNHOLT(Updown2, SpanNo, frame::BeamRoster(obList), roster_);
}
float clsSeluVorneDataService::GetSpanRituMigiVARNHOLT(std::int16_t Updown2, std::int16_t SpanNo,
                                                       const Object& obList) const {
  return span_.GetSpanRituMigiVARNHOLT(Updown2, SpanNo, frame::BeamRoster(obList), roster_);
}
bool clsSeluVorneDataService::isTopX(std::int16_t UeOrSita, float X, float KyoyouNagasa,
                                     const Object& obList) const {
  return span_.isTopX(UeOrSita, X, KyoyouNagasa, frame::BeamRoster(obList), roster_);
}
bool clsSeluVorneDataService::isHasiKobari(const Object& obList) const {
  return span_.isHasiKobari(frame::BeamRoster(obList));
}

}  // namespace seluvorne
