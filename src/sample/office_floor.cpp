// The sample floors: a floor of a five-storey RC office for the demo and the
// command's tests, and typical beams for the benchmarks.

#include <fmt/format.h>

#include "seluvorne/call_by_name.h"
#include "seluvorne/components.h"
#include "seluvorne/dao.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_floor.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne::sample {
namespace {

constexpr double kXBay = 7200;
constexpr double kYBays[] = {6000, 8400, 6000};

// A girder along a grid line over `bays`, on columns named `grids`.
SampleBeam Girder(const std::string& grid_name, const std::vector<std::string>& grids,
                  const std::vector<double>& bays, const std::string& beam_name,
                  double column_width) {
  SampleBeam beam;
  beam.grid_name = grid_name;
  beam.locations = "1";
  for (std::size_t k = 0; k < bays.size(); ++k) {
    SampleSpan span;
    span.column = {column_width / 2, column_width / 2, grids[k]};
    span.length = bays[k];
    span.beam_name = beam_name;
    span.anchorage_top = "40d";
    span.anchorage_bottom = "25d";
    // The long spans get haunches at both ends, below the beam.
    if (bays[k] >= 8000) {
      span.haunches[1] = "1200,200";
      span.haunches[3] = "1200,200";
    }
    beam.spans.push_back(span);
  }
  beam.last_column = {column_width / 2, column_width / 2, grids.back()};
  return beam;
}

}  // namespace

std::vector<SampleBeam> OfficeFloor() {
  const std::vector<std::string> x_grids{"X1", "X2", "X3", "X4", "X5"};
  const std::vector<std::string> y_grids{"Y1", "Y2", "Y3", "Y4"};
  const std::vector<double> x_bays(4, kXBay);
  const std::vector<double> y_bays(std::begin(kYBays), std::end(kYBays));

  std::vector<SampleBeam> beams;
  // Girders along the Y grid lines (X direction), the outer ones on bigger columns.
  for (std::size_t y = 0; y < y_grids.size(); ++y) {
    const bool outer = y == 0 || y + 1 == y_grids.size();
    beams.push_back(Girder(y_grids[y] + "通り", x_grids, x_bays, outer ? "G1" : "G2",
                           outer ? 900 : 850));
  }
  // Girders along the X grid lines (Y direction), over the 8,400 mm bay too.
  for (std::size_t x = 0; x < x_grids.size(); ++x) {
    const bool outer = x == 0 || x + 1 == x_grids.size();
    beams.push_back(Girder(x_grids[x] + "通り", y_grids, y_bays, outer ? "G3" : "G4",
                           outer ? 900 : 800));
  }
  // The Y2 girder steps down 150 mm in its third span (a lower slab), with
  // the change point 2,500 mm from the left face.
  SampleSpan& stepped = beams[1].spans[2];
  stepped.change_points = {{2500, 0}, {2500, -150}};
  // The X3 girder rises 50 mm over its middle bay, in two change points.
  SampleSpan& sloped = beams[6].spans[1];
  sloped.change_points = {{1000, 0}, {3800, 50}};

  // Two secondary beams between X2 and X3, on the girders Y2 and Y3.
  for (const char* name : {"Y2-Y3 (X2.5)", "Y1-Y2 (X2.5)"}) {
    SampleBeam secondary;
    secondary.grid_name = std::string("小梁 ") + name;
    secondary.locations = "2";
    SampleSpan span;
    span.column = {175, 175, "G2"};
    span.length = name[1] == '2' ? 8400 : 6000;
    span.beam_name = "B1";
    secondary.spans.push_back(span);
    secondary.last_column = {175, 175, "G2"};
    beams.push_back(secondary);
  }
  return beams;
}

std::string OfficeRosterJson() {
  return R"({
  "beams": {
    "G1": {"kind": 2, "class": "girder", "end": "外端", "depths": [900, 850, 900]},
    "G2": {"kind": 2, "class": "girder", "end": "端部", "depths": [850, 800, 850]},
    "G3": {"kind": 2, "class": "girder", "end": "外端", "depths": [900, 900, 900]},
    "G4": {"kind": 2, "class": "girder", "end": "端部", "depths": [800, 750, 800]},
    "B1": {"kind": 3, "class": "secondary", "end": "端部", "depths": [600, 600, 600]}
  }
}
)";
}

void WriteSampleFloor(const std::string& folder, const std::vector<SampleBeam>& beams) {
  auto service = std::dynamic_pointer_cast<clsSeluVorneDataService>(
      CreateObject("SeluVorneDS.clsSeluVorneDataService"));
  service->SetCurrKai(folder);  // creates the floor file
  service->WriteOpen(folder);
  for (std::size_t page = 0; page < beams.size(); ++page) {
    PageTexts texts = BeamPage(beams[page]);
    WritePage(*service, static_cast<std::int16_t>(page), texts);
  }
  service->CloseDB();

  // Build-outs on the first and third beams, at the top of their second span.
  Object build_outs = CreateObject("SeluVorneDS.clsHariFukasiDS");
  CallByName(build_outs, "WriteDB_Open", CallKind::Method, folder);
  for (std::int16_t page : {std::int16_t{0}, std::int16_t{2}}) {
    if (page >= static_cast<std::int16_t>(beams.size())) continue;
    CallByName(build_outs, "Page", CallKind::PropertyPut, page);
    CallByName(build_outs, "Span", CallKind::PropertyPut, std::int16_t{1});
    CallByName(build_outs, "Iti", CallKind::PropertyPut,
               CallByName(build_outs, "ItiNoUe", CallKind::PropertyGet));
    CallByName(build_outs, "Syurui", CallKind::PropertyPut, std::int16_t{0});
    CallByName(build_outs, "Kigou", CallKind::PropertyPut, std::string("F1"));
  }
  CallByName(build_outs, "CloseDB", CallKind::Method);

  // Switches on some spans of the second and fifth beams.
  const std::string switch_file = folder + "\\SeluVorneSW.MDB";
  Object switches = CreateObject("SeluVorneDS.clsHariSWDS");
  if (!std::filesystem::exists(NativePath(switch_file)))
    CallByName(switches, "Create_SwMDB_TBL", CallKind::Method, switch_file);
  auto db = dao::DBEngine::Instance()->Workspaces(0)->OpenDatabase(switch_file);
  auto rows = db->OpenRecordset("SELUVORNESW", dao::dbOpenDynaset);
  for (std::int16_t page : {std::int16_t{1}, std::int16_t{4}}) {
    if (page >= static_cast<std::int16_t>(beams.size())) continue;
    for (std::int16_t span : {std::int16_t{0}, std::int16_t{2}}) {
      rows->AddNew();
      rows->Fields()->Item("PAGE")->SetValue(page);
      rows->Fields()->Item("SPAN")->SetValue(span);
      rows->Fields()->Item("DATAKIND")->SetValue(std::int16_t{1});
      rows->Fields()->Item("DATA")->SetValue(std::string("1"));
      rows->Update();
    }
  }
  rows->Close();
  db->Close();
}

}  // namespace seluvorne::sample
