#pragma once
// Rounding to the 5% (E24) series of standard parts.

#include "core/design_record.h"

namespace drenik {

// The nearer E24 neighbour of v > 0 by ratio (a tie goes up), found by the
// single-precision decade scan from 1e-13 upwards.
float NearestStandard(float v);
// Fills Cstd from C and Lstd from L (positions with 0 are skipped).
void NearestParts(DesignRecord& d);
// C = Cstd and L retuned so that every position keeps its L*C.
void CapsRetuneInductors(DesignRecord& d);
// L = Lstd at every position.
void Inductors(DesignRecord& d);

}  // namespace drenik
