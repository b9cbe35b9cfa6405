#pragma once
// Rounding to the 5% (E24) series of standard parts. A ladder longer than
// the arrays is reported as a fault.

#include "core/design_record.h"
#include "core/engine_report.h"

namespace drenik {

// The nearer E24 neighbour of v > 0 by ratio (a tie goes up), found by the
// single-precision decade scan from 1e-13 upwards.
float NearestStandard(float v);
// Fills Cstd from C and Lstd from L (positions with 0 are skipped).
[[nodiscard]] EngineReport NearestParts(DesignRecord& d);
// C = Cstd and L retuned so that every position keeps its L*C.
[[nodiscard]] EngineReport CapsRetuneInductors(DesignRecord& d);
// L = Lstd at every position.
[[nodiscard]] EngineReport Inductors(DesignRecord& d);

}  // namespace drenik
