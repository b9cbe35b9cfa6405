#pragma once
// The least attenuation of a design's ladder over a set of frequencies: the
// stopband figure of the design table. The caller decides which frequencies
// make up the stopband (the sweep's points there, or a grid of its own).

#include <span>

#include "core/design_record.h"

namespace drenik {

// dB, positive for a passive ladder; NaN without frequencies or for a
// ladder the kernel cannot solve.
double LeastAttenuation(const DesignRecord& d, std::span<const double> frequencies);

}  // namespace drenik
