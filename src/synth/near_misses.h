#pragma once
// When no design of any allowed family meets the mask even nominally, the
// user still wants to see how close the search came: the highest order of
// each family, placed where its passband and stopband fall equally short,
// with those shortfalls.

#include <vector>

#include "synth/synth.h"

namespace drenik {

// The `count` designs of the search space at its highest orders with the
// least shortfall, nearest first: candidates with negative margins and no
// trials.
std::vector<SynthCandidate> NearMisses(const SynthRequest& request, size_t count);

}  // namespace drenik
