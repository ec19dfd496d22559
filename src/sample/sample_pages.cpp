// Made-up typical pages, written through the page writers.

#include "seluvorne/sample_pages.h"

#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne::sample {

namespace {

// A small deterministic stream of numbers (xorshift), so pages differ.
class Numbers {
 public:
  explicit Numbers(std::uint32_t seed) : state_(seed ? seed : 1) {}
  std::int32_t Next(std::int32_t below) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return static_cast<std::int32_t>(state_ % static_cast<std::uint32_t>(below));
  }

 private:
  std::uint32_t state_;
};

std::string Number(std::int32_t value) {
  return vb::StrTrimmed(value);
}

// `count` comma-separated numbers.
std::string Values(Numbers& numbers, std::int32_t count, std::int32_t below) {
  std::string text;
  for (std::int32_t i = 0; i < count; ++i)
    text += (i ? "," : "") + Number(numbers.Next(below));
  return text;
}

}  // namespace

PageTexts TypicalPage(std::int16_t page, std::uint32_t seed) {
  Numbers numbers(seed * 7919u + static_cast<std::uint32_t>(page) + 1);
  PageTexts texts;
  texts.kutai_data.ReDim({159, 2});
  for (std::int32_t i = 0; i <= 2; ++i)
    for (std::int32_t j = 0; j <= 159; ++j)
      texts.kutai_data(j, i) = j % 7 == 6 ? "" : Number(100 * (i + 1) + numbers.Next(900));
  texts.hanti.ReDim({79, 4});
  for (std::int32_t i = 0; i <= 4; ++i)
    for (std::int32_t j = 0; j <= 79; ++j)
      texts.hanti(j, i) = Number(numbers.Next(600));
  for (auto* stirrups : {&texts.stirrups, &texts.stirrups_ud}) {
    stirrups->ReDim({39, 2});
    for (std::int32_t i = 0; i <= 2; ++i)
      for (std::int32_t j = 0; j <= 39; ++j)
        (*stirrups)(j, i) = " D" + Number(10 + 3 * numbers.Next(3)) + "@" +
                            Number(100 + 50 * numbers.Next(3)) + " ";
  }
  texts.r_sitei.ReDim({59});
  for (std::int32_t n = 0; n <= 59; ++n)
    texts.r_sitei(n) = Number(numbers.Next(4));
  texts.change_points.ReDim({13, 19, 2});
  texts.haunch_lengths.ReDim({1, 19, 2});
  for (std::int32_t s = 0; s <= 2; ++s)
    for (std::int32_t b = 0; b <= 19; ++b) {
      for (std::int32_t k = 0; k < 4; ++k)
        texts.change_points(k, b, s) = Number(500 * (k + 1) + numbers.Next(400));
      for (std::int32_t k = 0; k <= 1; ++k)
        texts.haunch_lengths(k, b, s) = Number(300 + numbers.Next(300));
    }
  texts.top.ReDim({19, 0});
  for (std::int32_t j = 0; j <= 19; ++j)
    texts.top(j, 0) = Values(numbers, 24, 30);
  texts.joint_lengths.ReDim({19, 1});
  for (std::int32_t i = 0; i <= 1; ++i)
    for (std::int32_t j = 0; j <= 19; ++j)
      texts.joint_lengths(j, i) = Values(numbers, 2, 2000);
  texts.anchorage.ReDim({4, 39, 0});
  for (std::int32_t k = 0; k < 4; ++k)
    for (std::int32_t j = 0; j <= 4; ++j)
      texts.anchorage(j, k, 0) = Values(numbers, 20, 40) + (j % 2 ? ",1" : ",0");
  texts.grid_line = "X" + Number(page + 1) + "通り Y1-Y" + Number(2 + numbers.Next(8));
  texts.locations = Number(1 + numbers.Next(4));
  return texts;
}

void WritePage(clsSeluVorneDataService& service, std::int16_t page, PageTexts& texts) {
  service.Write_TooriMei(page, texts.grid_line, texts.locations);
  service.Write_KutaiData(page, texts.kutai_data);
  service.Write_Hanti(page, texts.hanti);
  service.Write_StpGensun(page, texts.stirrups);
  service.Write_StpJougeGensun(page, texts.stirrups_ud);
  service.Write_Rsitei(page, texts.r_sitei);
  service.Write_Henkaten(page, texts.change_points, texts.haunch_lengths);
  service.Write_Top(page, texts.top);
  service.Write_TanbuJointL(page, texts.joint_lengths);
  service.Write_AnkaNige(page, texts.anchorage);
}

void WriteFloor(clsSeluVorneDataService& service, const std::string& folder, std::int16_t pages,
                std::uint32_t seed) {
  service.WriteOpen(folder);
  for (std::int16_t page = 0; page < pages; ++page) {
    PageTexts texts = TypicalPage(page, seed);
    WritePage(service, page, texts);
  }
}

}  // namespace seluvorne::sample
