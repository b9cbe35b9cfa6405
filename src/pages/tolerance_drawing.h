#pragma once
// The drawn part of the tolerance page (page units, 12000 x 9000): the
// title, the response plot with the nominal curves, the envelope of the
// trials as shaded bands and the mask as limit lines, the yield in large
// type with its interval, the failures per check, a histogram for each kind
// of check the mask sets (worst passband return loss, worst passband loss,
// least stopband attenuation) with its mask line, and the sensitivity table.
// The controls take the left column; the run's progress is drawn under
// them.

#include <string>

#include "core/design_record.h"
#include "plot/canvas.h"
#include "tolerance/tolerance.h"

namespace drenik {

// The response plot.
inline constexpr float kTolPlotLeft = 4500;
inline constexpr float kTolPlotRight = 8800;
inline constexpr float kTolPlotTop = 1150;
inline constexpr float kTolPlotBottom = 4750;
// The histograms, side by side, one for each kind of check.
inline constexpr float kHistLeft = 3950;
inline constexpr float kHistRight = 7950;
inline constexpr float kHistTop = 6150;
inline constexpr float kHistBottom = 8150;
// The progress bar and status line under the controls.
inline constexpr float kStatusLeft = 150;
inline constexpr float kStatusRight = 3350;
inline constexpr float kStatusTop = 7300;
inline constexpr float kStatusBottom = 7600;

// Band colours (blue in the high byte): the transmission envelope light
// blue, the reflection envelope light red; the mask red.
inline constexpr int32_t kTransmissionBand = 0xF2D9B8;
inline constexpr int32_t kReflectionBand = 0xC8C8F5;
inline constexpr int32_t kMaskColor = 0x0000D0;

struct ToleranceFigures {
  const DesignRecord* stage = nullptr;  // the design at its value stage
  std::string stageName;                // "5% C"
  const ToleranceSetup* setup = nullptr;
  const ToleranceResult* result = nullptr;  // null before a run
  // Said in red under the heading when the display page shows another
  // design than the one drawn; empty otherwise.
  std::string outOfDate;
};

// A rectangle of the page, page units.
struct PlotArea {
  float left, top, right, bottom;
};

// The response plot in `area`, with its title above it and its frequency
// labels and legend under it (660 page units): the stage's nominal curves
// (the result's, and the envelope of its trials, when there is one) and the
// setup's mask as limit lines.
void DrawMaskedResponse(const ToleranceFigures& f, Canvas& canvas, const PlotArea& area);

// Everything right of the controls; before a run the nominal response of
// the stage (its sweep) with the mask of the setup.
void DrawToleranceFigures(const ToleranceFigures& f, Canvas& canvas);

// The settings of a run written out in the left column (for paper, where
// there are no controls), with the status line and the program's name.
void DrawToleranceSettings(Canvas& canvas, const ToleranceSetup& setup,
                           const std::string& stageName, const std::string& status);

// The progress bar filled to `fraction` (0..1) with a percentage, or, when
// fraction is below 0, the status text alone.
void DrawRunStatus(Canvas& canvas, double fraction, const std::string& text);
// The same in another place of the page (300 page units tall).
void DrawRunStatus(Canvas& canvas, double fraction, const std::string& text, const PlotArea& area);

}  // namespace drenik
