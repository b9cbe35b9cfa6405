#pragma once
// Capacitors too small to build as drawn: a board's pads and traces and the
// neighbouring parts add a few tenths of a picofarad at every node, so a
// part of about a picofarad or less is swamped by them and the filter is
// no longer the one designed.

#include <string>

#include "core/design_record.h"

namespace drenik {

inline constexpr double kLeastPracticalCapacitance = 1e-12;  // F

// One line naming the smallest capacitor of positions 1..Stages below
// kLeastPracticalCapacitance (and how many more there are); empty when
// there is none.
std::string StrayWarning(const DesignRecord& d);

}  // namespace drenik
