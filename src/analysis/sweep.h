#pragma once
// Frequency response of the record's ladder over the logarithmic sweep
// Fstart..Fstop (NrIntervals + 1 points), one call of the ladder kernel per
// point, stored as the display page keeps it.

#include "core/design_record.h"
#include "core/engine_report.h"

namespace drenik {

// Freq, Transmission, Phase, Delay, Reflection, VSWR and MaxDelay; sets
// Rstandard = Rsource. Reports a fault, before any result array is touched,
// where the circuit would divide by zero outside the guarded places, and one
// alert per unmodelled position per point.
[[nodiscard]] EngineReport AnalyzeSweep(DesignRecord& d);

}  // namespace drenik
