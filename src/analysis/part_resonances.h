#pragma once
// Where the parts of the record's ladder stop being what they are: each
// inductor resonates with its winding capacitance, each capacitor with its
// lead inductance (a series resonance, above which it acts as an inductor).

#include <string>
#include <vector>

#include "core/design_record.h"

namespace drenik {

struct PartResonance {
  int position = 0;
  bool inductor = true;  // false: the capacitor's series resonance
  double hertz = 0;
};

// The resonances of positions 1..Stages that have a part and its parasitic,
// source side first, the inductor before the capacitor of a position.
std::vector<PartResonance> PartResonances(const DesignRecord& d);

// The inductors' self-resonant frequencies by position (Hz, index 0 unused,
// 0 where a position has no inductor or no winding capacitance is set).
std::vector<float> InductorResonances(const DesignRecord& d);

// One line for the display page when a resonance falls inside the sweep
// Fstart..Fstop; empty otherwise.
std::string ResonanceWarning(const DesignRecord& d);

}  // namespace drenik
