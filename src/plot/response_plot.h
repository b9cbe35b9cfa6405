#pragma once
// The display page's plots: transmission and reflection over a logarithmic
// frequency axis in the rectangle 3000..8000 x 4000..8000 (page units), its
// grid and scale labels, and the VSWR and envelope-delay plots beside it.

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

inline constexpr float kPlotLeft = 3000;
inline constexpr float kPlotRight = 8000;
inline constexpr float kPlotTop = 4000;
inline constexpr float kPlotBottom = 8000;
inline constexpr int32_t kGridColor = 13421772;

// Every drawing routine leaves the page's default font set (Arial 8,
// regular), the colour black and the width 1, so a caller's next print looks
// the same whatever was drawn before it.
inline void SetDefaultPageFont(Canvas& canvas) {
  canvas.SetFont("Arial", 8, false);
}

// The VSWR plot (upper) and the delay plot (lower) right of the main plot,
// under the bandwidth label; their scale labels stand left of their frames.
inline constexpr float kSideLeft = 9100;
inline constexpr float kSideRight = 11600;
inline constexpr float kVswrTop = 3700;
inline constexpr float kVswrBottom = 5700;
inline constexpr float kDelayTop = 6300;
inline constexpr float kDelayBottom = 8300;
// VSWR scale: 1 at the bottom to kVswrScaleTop at the top; the data readout
// limits at 2.4, which is marked by its own line.
inline constexpr float kVswrScaleTop = 3;
inline constexpr float kVswrLimit = 2.4f;

// Fills GridFrequency / GridCount with 1, 1.5, 2, 3 .. 9 times each decade
// from Fstart up to 1.0001 Fstop; in a band design sweeping less than two
// octaves with evenly spaced lines at a 1-2-5 step.
void BuildGridFrequencies(DesignRecord& d);
// Vertical grid lines and the frequency labels under the plot.
void DrawXlines(DesignRecord& d, Canvas& canvas);
// Transmission and reflection curves of the latest analysis in the colours
// of ValueMode over the grid and scale labels. Mode 1 starts a redraw
// sequence: it clears the rectangle (and the frames of the VSWR and delay
// plots that are shown) and draws the frame; modes 2 and 3 draw over it.
// Divisions of 0 or less is set from the transmission scale (10 dB each).
void DrawMainPlot(DesignRecord& d, Canvas& canvas);
// The VSWR plot (drawn only while ShowVSWR is 1) and the delay plot (while
// ShowDelay is 1), each in its own frame beside the main plot, over the
// same log frequency axis, in the transmission colour of ValueMode. The page
// draws them once per redraw sequence, after its last analysis; like the main
// plot they draw over the curves of the sequence (cleared by the mode-1 main
// plot). While switched off, each erases its area so toggling removes it.
// VSWR runs from 1 to 3 with the readout limit 2.4 marked; the delay scale
// runs from 0 to the 1-2-5 step at or above MaxDelay, in s with prefixes.
void DrawVswrPlot(DesignRecord& d, Canvas& canvas);
void DrawDelayPlot(DesignRecord& d, Canvas& canvas);

}  // namespace drenik
