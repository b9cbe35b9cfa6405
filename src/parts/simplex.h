#pragma once
// A small dense linear programme: maximise c.x subject to A x <= b and
// x >= 0, with b >= 0 so that x = 0 is a corner to start from. The chooser
// solves one per step of its inductor polish, with a handful of unknowns and
// a few hundred rows.

#include <vector>

namespace drenik {

// Returns false when the programme is unbounded; x then holds the last corner.
bool MaximizeLinear(const std::vector<std::vector<double>>& a, const std::vector<double>& b,
                    const std::vector<double>& c, std::vector<double>& x);

}  // namespace drenik
