// The data readout that follows the mouse over the display page's plot.
#include <cmath>

#include "core/formatters.h"
#include "pages/display_page.h"
#include "plot/response_plot.h"

namespace drenik {

DataReadout ComputeReadout(const DesignRecord& d, float x, float y) {
  DataReadout r;
  r.onPlot = x > kPlotLeft && x < kPlotRight && y > kPlotTop && y < kPlotBottom;
  if (!r.onPlot) return r;
  double slices = static_cast<double>(d.NrIntervals) + 1;
  int i = static_cast<int>((static_cast<double>(x) - kPlotLeft) / 5000.0 * slices);
  if (i < 0) i = 0;
  if (i > d.NrIntervals) i = d.NrIntervals;
  if (i >= kSweepSlots) i = kSweepSlots - 1;
  r.index = i;
  // FormatFrequency carries its unit already; the readout adds "Hz" again.
  r.frequency = TrimBlanks(FormatFrequency(d.Freq[i])) + "Hz";
  r.transmission = "-" + TrimBlanks(FormatValue(std::fabs(d.Transmission[i]))) + "dB";
  r.reflection = "-" + TrimBlanks(FormatValue(std::fabs(d.Reflection[i]))) + "dB:";
  float vswr = d.VSWR[i];
  if (vswr > 2.4f) vswr = 2.4f;
  r.vswr = (vswr == 2.4f ? ">" : "") + FormatValue(vswr) + ":1";
  // The prefix formatter leaves the unit to its caller: seconds here.
  r.delay = FormatPrefixed(std::fabs(d.Delay[i])) + "s";
  return r;
}

void DisplayPage::OnMouseMove(float x, float y) {
  controls_.RunEvent([this, x, y] { PrintReadout(ComputeReadout(d_, x, y)); });
}

void DisplayPage::PrintReadout(const DataReadout& r) {
  canvas_.FilledBox(400, 6000, 2300, 9000, kWhite);
  canvas_.SetForeColor(kBlack);
  if (!r.onPlot) {
    PrintAt(500, 6100, "Cursor on plot");
    PrintAt(500, 6300, "for data readout");
    return;
  }
  const std::pair<const char*, const std::string*> rows[] = {{"Frequency:", &r.frequency},
                                                             {"Transmission:", &r.transmission},
                                                             {"Reflection:", &r.reflection},
                                                             {"VSWR:", &r.vswr},
                                                             {"Env. Delay:", &r.delay}};
  float y = 6000;
  for (const auto& [label, value] : rows) {
    PrintAt(500, y, label);
    PrintAt(800, y + 200, *value);
    y += 500;
  }
}

}  // namespace drenik
