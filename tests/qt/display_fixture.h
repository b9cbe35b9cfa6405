#pragma once
// A display page drawn the way the page's load draws it: the design, the
// exact-value curves, the 5% C curves, the side plots and the fixed texts.

#include <string>

#include "analysis/sweep.h"
#include "core/design_record.h"
#include "core/platform.h"
#include "pages/schematic.h"
#include "plot/legends.h"
#include "plot/response_plot.h"
#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"
#include "synthesis/standard_values.h"

namespace drenik::testing {

inline DesignRecord FirstStartDesign(int16_t family, int16_t order = 5) {
  DesignRecord d;
  d.Pi = 3.14159265f;
  d.TwoPi = 6.28318531f;
  d.ProgramTitle = "Drenik Filter Designer";
  d.Version = "2.12";
  d.Family = family;
  d.Order = order;
  d.Topology = "Cinlowpass";
  d.CauerType = "C";
  d.Apass = 0.044f;
  d.Astop = 40;
  d.Width = 4.2e6f;
  d.Rsource = 50;
  d.Rload = 50;
  d.Rstandard = 50;
  d.Qind = kInfiniteQind;
  d.Qcap = kInfiniteQcap;
  return d;
}

inline void AnalyzeAndDraw(DesignRecord& d, Canvas& canvas, Platform& platform, int16_t mode) {
  d.ValueMode = mode;
  AnalyzeSweep(d, platform);
  DrawMainPlot(d, canvas);
  DrawDisplaySchematic(d, canvas);
}

inline void DrawDisplayPageLoad(DesignRecord& d, Canvas& canvas) {
  NullPlatform platform;
  d.Fstart = static_cast<float>(d.Width * 0.2);
  d.NrIntervals = 1000;
  d.Fstop = static_cast<float>(d.Width * 5.0);
  d.InductorMode = 0;
  d.TransmissionBottom = -70;
  d.ReflectionBottom = -70;
  DesignPrototype(d, platform);
  Denormalize(d);
  DrawDisplayLegends(d, canvas);
  DrawBandwidthLabel(d, canvas, 11770);
  canvas.SetFont("Arial", 8, false);
  canvas.SetTextPosition(500, 6100);
  canvas.Print("Cursor on plot");
  canvas.SetTextPosition(500, 6300);
  canvas.Print("for data readout");
  AnalyzeAndDraw(d, canvas, platform, 1);
  NearestParts(d);
  CapsRetuneInductors(d);
  AnalyzeAndDraw(d, canvas, platform, 2);
  DrawVswrPlot(d, canvas);
  DrawDelayPlot(d, canvas);
}

// One press of "5% inductors" after the load: the 5% L row and legends.
inline void DrawInductorCurves(DesignRecord& d, Canvas& canvas) {
  NullPlatform platform;
  NearestParts(d);
  Inductors(d);
  AnalyzeAndDraw(d, canvas, platform, 3);
  DrawInductorLegends(d, canvas);
}

}  // namespace drenik::testing
