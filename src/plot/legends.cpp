#include "plot/legends.h"

#include "core/formatters.h"
#include "plot/frequency_axis.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

void PrintAt(Canvas& canvas, float x, float y, int32_t color, const std::string& text) {
  canvas.SetForeColor(color);
  canvas.SetTextPosition(x, y);
  canvas.Print(text);
}

// One block of legends: a heading and the three value modes, the last line
// at `lastY`, lines 200 apart.
void DrawLegendBlock(Canvas& canvas, const char* heading, const int32_t (&colors)[3], float lastY) {
  static const char* const kModeNames[3] = {"Exact values", "5% C values", "5% L values"};
  canvas.SetFont("Arial", 8, true);
  PrintAt(canvas, 500, lastY - 650, kBlack, heading);
  canvas.SetFont("Arial", 8, false);
  for (int m = 0; m < 3; ++m)
    PrintAt(canvas, 800, lastY - 400 + 200 * static_cast<float>(m), colors[m], kModeNames[m]);
}

}  // namespace

void DrawDisplayLegends(DesignRecord&, Canvas& canvas) {
  DrawLegendBlock(canvas, "Transmission, dB:", kLegendTransmissionColor, 4500);
  DrawLegendBlock(canvas, "Reflection, dB:", kLegendReflectionColor, 5600);
  canvas.SetForeColor(kBlack);
}

void DrawInductorLegends(DesignRecord&, Canvas& canvas) {
  canvas.SetFont("Arial", 8, false);
  PrintAt(canvas, 800, 4500, kLegendTransmissionColor[2], "5% L values");
  PrintAt(canvas, 800, 5600, kLegendReflectionColor[2], "5% L values");
  canvas.SetForeColor(kBlack);
}

void DrawChosenPartsLegends(Canvas& canvas) {
  canvas.SetFont("Arial", 8, false);
  PrintAt(canvas, 800, 4700, TransmissionColor(kChosenPartsMode), "Chosen parts");
  PrintAt(canvas, 800, 5800, ReflectionColor(kChosenPartsMode), "Chosen parts");
  canvas.SetForeColor(kBlack);
}

void DrawBandwidthLabel(DesignRecord& d, Canvas& canvas, float eraseRight) {
  if (SlotLaidLadder(d)) {
    DrawBandLabel(d, canvas);
    return;
  }
  canvas.FilledBox(9000, 2700, eraseRight, 3300, kWhite);
  canvas.SetFont("Arial", 12, true);
  PrintAt(canvas, 9000, 2700, kBlack, "Bandwidth: " + FormatFrequency(d.Width));
  canvas.SetFont("Arial", 8, false);
}

// A band ladder's values (and those of a ladder longer than the design
// page's) take the schematic's whole width down to y = 3420, so the
// bandwidth and the band stand in one line over the legends and the main plot
// (left of the VSWR plot's white box from x = 8560), the width in
// the large bold font and then which centre and which edges: the geometric
// centre, the edges where the family's cutoff label says. Baselines agree
// (ascent 0.905 em). The printout's axis labels stand from y = 3670 under
// it. A note (where a bandstop reaches its depth) takes the place of the
// centre, which the schematic's resonances show. The line ends left of the
// VSWR plot's white box: where gigahertz texts make it longer, it is printed
// a point smaller, and at the last without the edges.
void DrawBandLabel(DesignRecord& d, Canvas& canvas, const std::string& note) {
  constexpr float kLeft = 500, kTop = 3440, kRight = 8550;
  canvas.FilledBox(kLeft, kTop, kRight, 3780, kWhite);
  canvas.SetFont("Arial", 12, true);
  const std::string width = "Bandwidth: " + FormatFrequency(d.Width);
  PrintAt(canvas, kLeft, kTop, kBlack, width);
  const float next = kLeft + canvas.TextWidth(width) + 300;
  if (!IsBandDesign(d) || !(d.Center > 0)) return;
  const BandEdges e = EdgesOfBand(d.Center, d.Width);
  const std::string edges = "f1 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f1))) +
                            ", f2 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f2)));
  const std::string text = note.empty()
                               ? "f0 " + TrimBlanks(FormatFrequency(d.Center)) + ", " + edges
                               : edges + ", " + note;
  const std::pair<float, std::string> tries[] = {
      {8, text}, {7, text}, {7, note.empty() ? text : note}};
  for (const auto& [points, line] : tries) {
    canvas.SetFont("Arial", points, false);
    if (next + canvas.TextWidth(line) < kRight || &line == &tries[2].second) {
      PrintAt(canvas, next, kTop + 0.905f * (12 - points) * 20, kBlack, line);
      break;
    }
  }
  canvas.SetFont("Arial", 8, false);
}

}  // namespace drenik
