// Typical beam pages, made up and written through the page writers: the
// realistic floors of the tests, the benchmarks and the demo.
//
// A typical page has about 2,500 rows over the ten tables: three sub-pages of
// frame data, five of haunches, change points with haunch lengths on every
// span, top-bar values on 20 spans, anchorage groups on four spans. Its texts
// are derived from the page number and a seed, so two pages differ and the
// same call gives the same page again.
//
//   clsSeluVorneDataService service;
//   service.WriteOpen(folder);
//   sample::WritePage(service, 7, sample::TypicalPage(7));
#pragma once

#include <cstdint>
#include <string>

#include "seluvorne/array.h"

namespace seluvorne {
class clsSeluVorneDataService;
}  // namespace seluvorne

namespace seluvorne::sample {

// What each writer is given for one page, in the writers' shapes.
struct PageTexts {
  vb::Array<std::string> kutai_data;      // (160, 3)
  vb::Array<std::string> hanti;           // (80, 5)
  vb::Array<std::string> stirrups;        // (40, 3)
  vb::Array<std::string> stirrups_ud;     // (40, 3)
  vb::Array<std::string> r_sitei;         // (60)
  vb::Array<std::string> change_points;   // (14, 20, 3)
  vb::Array<std::string> haunch_lengths;  // (2, 20, 3)
  vb::Array<std::string> top;             // (20, 1): 24 values each
  vb::Array<std::string> joint_lengths;   // (20, 2): 2 values each
  vb::Array<std::string> anchorage;       // (5, 40, 1): 21 values each
  std::string grid_line, locations;
};

PageTexts TypicalPage(std::int16_t page, std::uint32_t seed = 1);

// Writes `texts` as page `page` through every writer, on the floor the
// service's WriteOpen opened.
void WritePage(clsSeluVorneDataService& service, std::int16_t page, PageTexts& texts);

// Opens the floor folder for writing and writes typical pages 0 to pages - 1.
void WriteFloor(clsSeluVorneDataService& service, const std::string& folder, std::int16_t pages,
                std::uint32_t seed = 1);

}  // namespace seluvorne::sample
