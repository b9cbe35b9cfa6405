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

// Fills GridFrequency / GridCount with 1, 1.5, 2, 3 .. 9 times each decade
// from Fstart up to 1.0001 Fstop.
void BuildGridFrequencies(DesignRecord& d);
// Vertical grid lines and the frequency labels under the plot.
void DrawXlines(DesignRecord& d, Canvas& canvas);
// Transmission and reflection curves of the latest analysis in the colours
// of ValueMode; clears the rectangle and draws frame, grid and scale only in
// mode 1.
void DrawMainPlot(DesignRecord& d, Canvas& canvas);
// The VSWR plot (drawn only while ShowVSWR is 1) and the delay plot (while
// ShowDelay is 1), each in its own frame beside the main plot.
void DrawVswrPlot(DesignRecord& d, Canvas& canvas);
void DrawDelayPlot(DesignRecord& d, Canvas& canvas);

}  // namespace drenik
