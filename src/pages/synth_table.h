#pragma once
// The ranked table of the design-from-a-mask window: one row a candidate,
// in the words of the command line's table.

#include <string>
#include <vector>

#include "synth/synth.h"

namespace drenik {

std::vector<std::string> SynthHeadings();

// The cells of the candidate ranked `rank` (from 1) under SynthHeadings();
// `chosen` for the one the search chose.
std::vector<std::string> SynthRow(const SynthCandidate& c, int rank, bool chosen);

// A yield to two decimals, as the command line's table gives it: near a
// 99% target one decimal would round 99.96% up to 100%.
std::string SynthPercent(double fraction);

// One line naming a candidate: "Cauer 5, 0.05 dB, 52 dB, C-input lowpass".
std::string SynthCandidateName(const SynthCandidate& c);

}  // namespace drenik
