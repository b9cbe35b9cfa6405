#pragma once
// The fixed texts of the display page around the response plot: the axis and
// value-mode legends left of the plot and the bandwidth label above it.

#include <string>

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

// Legend colours of the value modes (blue in the high byte).
inline constexpr int32_t kLegendTransmissionColor[3] = {0, 16711680, 255};
inline constexpr int32_t kLegendReflectionColor[3] = {8947848, 16746632, 8947967};

// Left of the plot, above the readout box: "Transmission, dB:" with
// "Exact values", "5% C values", "5% L values" in the transmission curve
// colours, the last at (800, 4500); then "Reflection, dB:" with the same three
// in the reflection colours, the last at (800, 5600). Ends with colour black.
void DrawDisplayLegends(DesignRecord& d, Canvas& canvas);

// Only the two "5% L values" lines: at (800, 4500) in red (255) and at
// (800, 5600) in light red (8947967); ends with colour black.
void DrawInductorLegends(DesignRecord& d, Canvas& canvas);

// The two "Chosen parts" lines under the three value modes: at (800, 4700)
// and (800, 5800) in the stage's transmission and reflection colours; ends
// with colour black.
void DrawChosenPartsLegends(Canvas& canvas);

// Erases (9000, 2700)..(eraseRight, 3300) in white and prints "Bandwidth: "
// followed by FormatFrequency(Width) at (9000, 2700) in black. The page
// passes 11700 after Down 1% and 11770 after Up 1%; the load may pass either.
// A band design, or a ladder longer than the design page's, prints the
// label over the plot instead (DrawBandLabel).
void DrawBandwidthLabel(DesignRecord& d, Canvas& canvas, float eraseRight = 11770);
// "Bandwidth: " and the width at (500, 3440), over the legends and the main
// plot, then for a band design f0, f1 and f2 on the same line, or f1, f2 and
// the note.
void DrawBandLabel(DesignRecord& d, Canvas& canvas, const std::string& note = {});

}  // namespace drenik
