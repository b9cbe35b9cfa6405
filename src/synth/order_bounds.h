#pragma once
// The lowest order a family can meet a mask with, nominally: the mask seen
// as a lowpass prototype's (pass ripple, stopband ratio and depth), and the
// classical order formulas on it. A bound, not a promise: the discrete
// sweep, lossy parts and the centring margin may need an order more.

#include <vector>

#include "synth/synth.h"

namespace drenik {

// One stopband check seen from the lowpass prototype: the normalized
// frequency (the passband edge at 1) where it starts, and its depth.
struct PrototypeStop {
  double omega = 0;  // > 1 for a mask that can be met at all
  double depth = 0;  // dB
};

struct PrototypeMask {
  // The largest loss the passband may have, dB: the mask's loss limit, or
  // the loss that its return loss leaves (1 - |S11|^2 through the ladder).
  double passLossDb = 3;
  std::vector<PrototypeStop> stops;
};

// The passband loss that leaves a return loss of `rl` dB in a lossless
// ladder.
double LossOfReturnLoss(double rl);

// The band transform of the request's mask: a bandpass's edges about their
// geometric centre, a bandstop's notch in the reciprocal variable.
PrototypeMask PrototypeMaskOf(const SynthRequest& request);

// The order the family's response needs for the mask (below its own least
// order: that order); above kMaxOrder when none up to it can.
int LowestOrder(int16_t family, const PrototypeMask& mask);

// Whether LowestOrder is the family's own least order (Butterworth's,
// Chebyshev's and Cauer's formulas) rather than a bound under it (the
// Chebyshev order, which no all-pole response beats, for the others).
bool LowestOrderIsExact(int16_t family);

}  // namespace drenik
