#pragma once
// Scales the normalized prototype into real inductors and capacitors for the
// chosen Topology, Rsource and Width; writes Omega, ElementType, L, C, Rload
// and Stages and clears Lstd and Cstd. Returns at once when Width <= 0.
// A zero prototype value where a quotient needs it throws RunTimeError.

#include "core/design_record.h"

namespace drenik {

void Denormalize(DesignRecord& d);

}  // namespace drenik
