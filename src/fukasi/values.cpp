// One value at the current key: the named properties, each of which reads or
// writes the value of its code (BANGOU).

#include <array>

#include "kutaidata.h"
#include "seluvorne/runtime.h"

namespace seluvorne {

using fukasi::Level;
namespace code = fukasi::code;

namespace {

// The code of a property with a side A (AorB 0) and a side B (any other).
std::int32_t SideCode(std::int16_t AorB, std::int32_t side_a_code) {
  return AorB == 0 ? side_a_code : side_a_code + code::kSideB;
}

}  // namespace

std::string clsHariFukasiDS::ReadValue(std::int32_t value_code) {
  key_.code = value_code;
  if (!EnsureOpen()) return "";
  auto set = database_->OpenRecordset("SELECT" + fukasi::RangeFilter(key_, Level::kCode),
                                      dao::dbOpenSnapshot);
  std::string value;
  // A Null left by another program reads as no value.
  if (!set->IsEOF()) {
    const vb::Variant data = set->Value(fukasi::kDataField);
    if (!data.isNull()) value = vb::CStr(data);
  }
  set->Close();
  return value;
}

void clsHariFukasiDS::WriteValue(std::int32_t value_code, const std::string& value) {
  key_.code = value_code;
  if (!EnsureOpen()) return;
  key_.page_to = key_.page_from;
  key_.span_to = key_.span_from;
  key_.iti_to = key_.iti_from;
  key_.syurui_to = key_.syurui_from;

  // Everything is checked before the old value is deleted, so that a bad key
  // or value loses nothing.
  if (key_.span_from < 0 || key_.iti_from < ItiNoHidari() || key_.iti_from > ItiNoSita() ||
      key_.syurui_from < 0 || key_.syurui_from > SyuruiMax())
    Raise(errc::kInvalidCall,
          "(span " + vb::StrTrimmed(key_.span_from) + ", position " +
              vb::StrTrimmed(key_.iti_from) + ", kind " + vb::StrTrimmed(key_.syurui_from) +
              ": a span from 0, a position 0 to 3 and a kind 0 to 9 are needed)");
  const std::array<vb::Variant, fukasi::kFieldCount> row = {
      key_.page_from, key_.span_from, key_.iti_from, key_.syurui_from, vb::CInt(value_code), value};
  fukasi::CheckRow(*database_->TableDefs()->Item(fukasi::kTable)->Fields(), row);

  database_->Execute("DELETE" + fukasi::RangeFilter(key_, Level::kCode), dao::dbFailOnError);
  auto set = database_->OpenRecordset(std::string(fukasi::kTable), dao::dbOpenDynaset);
  fukasi::AddRow(*set, row);
  set->Close();
}

std::string clsHariFukasiDS::KaisiKyori() {
  return ReadValue(code::kKaisiKyori);
}
void clsHariFukasiDS::SetKaisiKyori(const std::string& value) {
  WriteValue(code::kKaisiKyori, value);
}
std::string clsHariFukasiDS::KaisiNomikomi() {
  return ReadValue(code::kKaisiNomikomi);
}
void clsHariFukasiDS::SetKaisiNomikomi(const std::string& value) {
  WriteValue(code::kKaisiNomikomi, value);
}
std::string clsHariFukasiDS::KaisiAnka() {
  return ReadValue(code::kKaisiAnka);
}
void clsHariFukasiDS::SetKaisiAnka(const std::string& value) {
  WriteValue(code::kKaisiAnka, value);
}
std::string clsHariFukasiDS::Syuuten() {
  return ReadValue(code::kSyuuten);
}
void clsHariFukasiDS::SetSyuuten(const std::string& value) {
  WriteValue(code::kSyuuten, value);
}
std::string clsHariFukasiDS::ENDNomikomi() {
  return ReadValue(code::kENDNomikomi);
}
void clsHariFukasiDS::SetENDNomikomi(const std::string& value) {
  WriteValue(code::kENDNomikomi, value);
}

std::string clsHariFukasiDS::EndAnka() {
  // The suite's clients rely on this read filling in the start anchorage
  // from the end anchorage; what it answers is always "".
  SetKaisiAnka(ReadValue(code::kEndAnka));
  return "";
}
void clsHariFukasiDS::SetEndAnka(const std::string& value) {
  WriteValue(code::kEndAnka, value);
}

std::string clsHariFukasiDS::Kigou() {
  return ReadValue(code::kKigou);
}
void clsHariFukasiDS::SetKigou(const std::string& value) {
  WriteValue(code::kKigou, value);
}
std::string clsHariFukasiDS::StpKei(std::int16_t AorB) {
  return ReadValue(SideCode(AorB, code::kStpKei));
}
void clsHariFukasiDS::SetStpKei(std::int16_t AorB, const std::string& value) {
  WriteValue(SideCode(AorB, code::kStpKei), value);
}
std::string clsHariFukasiDS::StpPich(std::int16_t AorB) {
  return ReadValue(SideCode(AorB, code::kStpPich));
}
void clsHariFukasiDS::SetStpPich(std::int16_t AorB, const std::string& value) {
  WriteValue(SideCode(AorB, code::kStpPich), value);
}
std::string clsHariFukasiDS::SyukinKei(std::int16_t AorB) {
  return ReadValue(SideCode(AorB, code::kSyukinKei));
}
void clsHariFukasiDS::SetSyukinKei(std::int16_t AorB, const std::string& value) {
  WriteValue(SideCode(AorB, code::kSyukinKei), value);
}
std::string clsHariFukasiDS::SyukinHon(std::int16_t AorB) {
  return ReadValue(SideCode(AorB, code::kSyukinHon));
}
std::string clsHariFukasiDS::HaraKei() {
  return ReadValue(code::kHaraKei);
}
void clsHariFukasiDS::SetHaraKei(const std::string& value) {
  WriteValue(code::kHaraKei, value);
}
std::string clsHariFukasiDS::HaraHon() {
  return ReadValue(code::kHaraHon);
}
void clsHariFukasiDS::SetHaraHon(const std::string& value) {
  WriteValue(code::kHaraHon, value);
}
std::string clsHariFukasiDS::HabadomeKei() {
  return ReadValue(code::kHabadomeKei);
}
void clsHariFukasiDS::SetHabadomeKei(const std::string& value) {
  WriteValue(code::kHabadomeKei, value);
}
std::string clsHariFukasiDS::HabadomePich() {
  return ReadValue(code::kHabadomePich);
}
void clsHariFukasiDS::SetHabadomePich(const std::string& value) {
  WriteValue(code::kHabadomePich, value);
}
std::string clsHariFukasiDS::Atusa() {
  return ReadValue(code::kAtusa);
}
void clsHariFukasiDS::SetAtusa(const std::string& value) {
  WriteValue(code::kAtusa, value);
}
std::string clsHariFukasiDS::Siten() {
  return ReadValue(code::kSiten);
}
void clsHariFukasiDS::SetSiten(const std::string& value) {
  WriteValue(code::kSiten, value);
}
std::string clsHariFukasiDS::Haba() {
  return ReadValue(code::kHaba);
}
void clsHariFukasiDS::SetHaba(const std::string& value) {
  WriteValue(code::kHaba, value);
}

}  // namespace seluvorne
