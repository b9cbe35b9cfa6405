#pragma once

#include <string>

#include "core/design_record.h"

namespace drenik {

// Which frequency a design is built at, for a heading: ", cutoff F" for a
// lowpass or highpass; for a bandpass or bandstop ", centre f0, bandwidth BW"
// (the geometric centre, and the width between the edges the family's cutoff
// label names), with `edges` followed by " (f1 F1, f2 F2)".
std::string FrequencyHeading(const DesignRecord& d, bool edges = true);

// "Family order N Topology" and its FrequencyHeading.
std::string DesignHeading(const DesignRecord& d, bool edges = true);

}  // namespace drenik
