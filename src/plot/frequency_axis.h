#pragma once
// The logarithmic frequency axis shared by the main plot and the VSWR and
// delay plots: positions of frequencies, vertical grid lines and the thinned
// frequency labels under a plot.

#include <cstdint>

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

// The chosen-parts stage's colours: green, the fourth after black, blue and
// red.
inline constexpr int32_t kChosenTransmissionColor = 0x009000;
inline constexpr int32_t kChosenReflectionColor = 0x70C870;

// Curve colours of a value mode (1, 2, 3, 4; others count as 1).
int32_t TransmissionColor(int valueMode);
int32_t ReflectionColor(int valueMode);

// Fraction of the way from Fstart to Fstop on the log axis; false when the
// sweep range or the frequency cannot be placed.
bool LogFraction(const DesignRecord& d, double frequency, double& fraction);

// Vertical lines at the grid frequencies between top and bottom of a plot
// spanning left..right, in the grid colour at width 1.
void DrawGridLines(const DesignRecord& d, Canvas& canvas, float left, float right, float top,
                   float bottom);

// Labels of the grid frequencies with their tops at y. A label is centred
// under its line; labels at fractions below minFraction are left out (they
// would run into the scale labels left of the plot); from 0.95 on a label ends
// at its line, and from 0.999 (the line on the right edge) at the edge, so no
// label runs past the plot. Where labels would touch, the 1-2-5 multiples of a
// decade win over 1.5, 3 and 4, and those over 6, 7, 8 and 9.
void DrawFrequencyLabels(const DesignRecord& d, Canvas& canvas, float left, float right, float y,
                         float minFraction);

}  // namespace drenik
