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

// One line naming a candidate: "Cauer 5, 0.05 dB, 52 dB, C-input lowpass".
std::string SynthCandidateName(const SynthCandidate& c);

}  // namespace drenik
