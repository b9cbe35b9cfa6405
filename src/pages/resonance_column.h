#pragma once
// The display page's list of the inductors' self-resonances, right of the
// schematic: a heading and one line per inductor, in as many columns as the
// height there needs. A ladder drawn in slots keeps the room clear.

#include "core/design_record.h"

namespace drenik {

struct ResonanceColumns {
  float left, top, bottom;  // the list's box; its right edge is the page's margin
  int count = 0;            // columns of lines; 0 without a winding capacitance
};

inline constexpr float kResonanceLine = 180;     // one 8-point line
inline constexpr float kResonanceColumn = 1300;  // "L31  888.89MHz" and a gap
inline constexpr float kResonanceRight = 11950;  // the page's right margin

// Where the list stands for the record's ladder: right of a lowpass
// ladder's load from x = 9900, above the bandwidth label; right of a ladder
// drawn in slots, down to the VSWR plot's heading.
ResonanceColumns ResonanceColumnsOf(const DesignRecord& d);

// How far right a ladder drawn in slots may reach on the display page.
float SlotLadderRight(const DesignRecord& d);

}  // namespace drenik
