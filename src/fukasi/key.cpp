// The current key, the floor folder, and the store's constants.

#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"

namespace seluvorne {

std::int16_t clsHariFukasiDS::Page() const {
  return key_.page_from;
}
void clsHariFukasiDS::SetPage(std::int16_t Page) {
  key_.page_from = key_.page_to = Page;
}
std::int16_t clsHariFukasiDS::Span() const {
  return key_.span_from;
}
void clsHariFukasiDS::SetSpan(std::int16_t Span) {
  key_.span_from = key_.span_to = Span;
}
std::int16_t clsHariFukasiDS::Iti() const {
  return key_.iti_from;
}
void clsHariFukasiDS::SetIti(std::int16_t Iti) {
  key_.iti_from = key_.iti_to = Iti;
}
std::int16_t clsHariFukasiDS::Syurui() const {
  return key_.syurui_from;
}
void clsHariFukasiDS::SetSyurui(std::int16_t Syurui) {
  key_.syurui_from = key_.syurui_to = Syurui;
}

std::string clsHariFukasiDS::Path() const {
  return path_;
}
void clsHariFukasiDS::SetPath(const std::string& Path) {
  path_ = Path;
}

std::int16_t clsHariFukasiDS::ItiNoHidari() const {
  return 0;
}
std::int16_t clsHariFukasiDS::ItiNoMigi() const {
  return 1;
}
std::int16_t clsHariFukasiDS::ItiNoUe() const {
  return 2;
}
std::int16_t clsHariFukasiDS::ItiNoSita() const {
  return 3;
}
std::int16_t clsHariFukasiDS::SyuruiMax() const {
  return 9;
}

std::int16_t clsHariFukasiDS::PageMax() const {
  return frame::gPageMax;
}

std::string clsHariFukasiDS::ItiName(std::int16_t Iti) const {
  switch (Iti) {
    case 0:
      return "左";
    case 1:
      return "右";
    case 2:
      return "上";
    case 3:
      return "下";
    default:
      return "";
  }
}

void clsHariFukasiDS::GetLoopHairetu(vb::Array<std::int16_t>& R) const {
  R.ReDim({3});
  R(0) = ItiNoUe();
  R(1) = ItiNoHidari();
  R(2) = ItiNoMigi();
  R(3) = ItiNoSita();
}

}  // namespace seluvorne
