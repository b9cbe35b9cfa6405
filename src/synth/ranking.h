#pragma once
// What "simplest" means, and the order the candidates are listed in.

#include <vector>

#include "synth/synth.h"

namespace drenik {

// The candidate's worst nominal margin, dB.
double WorstMargin(const SynthCandidate& c);

// Whether `a` is simpler than `b` by the preference (the yield aside).
bool Simpler(const SynthCandidate& a, const SynthCandidate& b, SynthPreference prefer);

// Keeps the candidates no other one beats on every count at once (parts,
// inductors, yield and margin) and the chosen one; lists the chosen first,
// then those that meet the target, then the others, each simplest first.
// `chosen` is the index before and after.
void RankCandidates(std::vector<SynthCandidate>& candidates, SynthPreference prefer, int& chosen);

}  // namespace drenik
