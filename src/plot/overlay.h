#pragma once
// Overlay files: the display page keeps the transmission, return-loss and
// VSWR curves of one design in "Data.S21", "Data.S11" and "Data.SWR" and
// lays them later as magenta dots over the curves of another design.
//
// A file holds one point a line: the value text of the frequency and that of
// the curve's value run together (' 1000000 -.5 '), lines ended by CR LF.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "plot/canvas.h"

namespace drenik {

inline constexpr const char* kOverlayFailure = "We are unable to save an overlay file";
inline constexpr int32_t kOverlayColor = 0xCC11CC;

// Writes the three files into the folder (the working folder when empty),
// points 0..NrIntervals each. The first error stops the saving with the
// failure message; files already written stay.
void SaveOverlay(DesignRecord& d, Platform& platform, const std::string& folder = "");

// Reads the three files back and draws each one: S21 and S11 on 0..-70 dB,
// SWR on 2.4..1. Each file is read into Freq and Overlay (overwriting the
// frequencies of the current analysis) up to its end or its first pair that
// does not read as two numbers. A missing file (names are matched without
// regard to case) shows "File  is not available." titled "File Test" and
// ends the chain: later files are neither read nor drawn.
void GetOverlay(DesignRecord& d, Canvas& canvas, Platform& platform,
                const std::string& folder = "");

// Draws points 0..lastPoint of Freq/Overlay as magenta dots in the plot frame
// 3000..8000 x 4000..8000, x on the current sweep's logarithmic axis, y with
// `top` at 4000 and `bottom` at 8000, both clamped to the frame. Mode 0 and 1
// draw; any other mode draws nothing.
void DrawOverlay(DesignRecord& d, Canvas& canvas, int lastPoint, float top, float bottom, int mode);

}  // namespace drenik
