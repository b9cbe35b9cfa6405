#include "synth/ranking.h"

#include <algorithm>
#include <tuple>

namespace drenik {

double WorstMargin(const SynthCandidate& c) {
  return std::min(c.marginPassDb, c.marginStopDb);
}

bool Simpler(const SynthCandidate& a, const SynthCandidate& b, SynthPreference prefer) {
  const int partsA = a.inductors + a.capacitors, partsB = b.inductors + b.capacitors;
  const double ma = -WorstMargin(a), mb = -WorstMargin(b);
  switch (prefer) {
    case SynthPreference::Parts:
      return std::tie(partsA, a.inductors, ma) < std::tie(partsB, b.inductors, mb);
    case SynthPreference::Inductors:
      return std::tie(a.inductors, partsA, ma) < std::tie(b.inductors, partsB, mb);
    case SynthPreference::Margin:
      return std::tie(ma, partsA, a.inductors) < std::tie(mb, partsB, b.inductors);
  }
  return false;
}

namespace {

// `a` is at least as good as `b` on every count and better on one.
bool Dominates(const SynthCandidate& a, const SynthCandidate& b) {
  const int pa = a.inductors + a.capacitors, pb = b.inductors + b.capacitors;
  const double ma = WorstMargin(a), mb = WorstMargin(b);
  const bool noWorse = pa <= pb && a.inductors <= b.inductors && a.yield >= b.yield && ma >= mb;
  const bool better = pa < pb || a.inductors < b.inductors || a.yield > b.yield || ma > mb;
  return noWorse && better;
}

}  // namespace

void RankCandidates(std::vector<SynthCandidate>& candidates, SynthPreference prefer, int& chosen) {
  std::vector<std::pair<SynthCandidate, bool>> kept;
  for (size_t i = 0; i < candidates.size(); ++i) {
    const bool isChosen = static_cast<int>(i) == chosen;
    const bool beaten = std::any_of(candidates.begin(), candidates.end(), [&](const auto& other) {
      return Dominates(other, candidates[i]);
    });
    if (isChosen || !beaten) kept.emplace_back(candidates[i], isChosen);
  }
  std::stable_sort(kept.begin(), kept.end(), [&](const auto& a, const auto& b) {
    if (a.second != b.second) return a.second;
    if (a.first.meetsTarget != b.first.meetsTarget) return a.first.meetsTarget;
    return Simpler(a.first, b.first, prefer);
  });
  candidates.clear();
  chosen = -1;
  for (auto& [c, isChosen] : kept) {
    if (isChosen) chosen = static_cast<int>(candidates.size());
    candidates.push_back(std::move(c));
  }
}

}  // namespace drenik
