#pragma once
// No file is written of a ladder with a part of no value. A refused design
// leaves its parts at 0 (and its sweep at 0 or NaN); another program would
// take such a file for a filter: a netlist with a 0 H inductor, a Touchstone
// file of NaN.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

// The first part of positions 1..Stages whose value is 0 or not a finite
// number ("L2 is 0 H", "C3 is not a number"); empty when there is none.
std::string UnwritablePart(const DesignRecord& d);

// False, after one message that names the part and ends with the writer's
// own failure text, when there is such a part.
bool PartsWritable(const DesignRecord& d, Platform& platform, const std::string& failure);

}  // namespace drenik
