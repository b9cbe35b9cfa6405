#pragma once
// A normalized lowpass ladder fitted to the natural frequencies of a
// response: the element values whose ladder has exactly those poles (and,
// with its arms tuned to the response's transmission zeros, exactly that
// transmission).
//
// The textbook routes to the element values (a continued fraction of the
// input impedance, zero shifting) work on polynomial coefficients. At high
// orders those coefficients are large numbers whose differences are the
// response: the passband of a 15th-order design is a cancellation of terms
// a million times larger, and the remainder of each division step loses
// digits to it. Here the ladder is only ever evaluated, at the poles, through
// its chain matrix, and Newton's method moves the elements until the ladder's
// natural frequencies sit on the response's. The polynomial routes still
// give the starting values.

#include <complex>
#include <optional>
#include <vector>

namespace drenik {

// The C-input form of the prototype: a 1-ohm source, shunt capacitors at
// the odd positions and series arms at the even ones.
struct LadderForm {
  int order = 0;
  // The resonance (rad/s) of the parallel tank at each even position, in
  // position order; even positions beyond the list hold plain inductors.
  std::vector<double> armZeros{};
  // The load resistance is found with the elements (an even-order elliptic
  // ladder); otherwise it is 1 ohm.
  bool freeLoad = false;
};

struct LadderValues {
  // Index 1..order: the shunt capacitor at an odd position, the inductor of
  // the arm at an even one (its tank capacitor is 1 / (zero^2 L)).
  std::vector<double> element{};
  double rload = 1;
};

struct PoleTarget {
  // One pole of each conjugate pair and every real pole; together with the
  // conjugates, order poles in the left half plane.
  std::vector<std::complex<double>> poles;
  // |E(0)|, the loss at DC as a factor (1 for a matched DC response), with
  // the transmission's numerator 1 at DC.
  double dcLevel = 1;
};

// The target of the given poles (conjugates may be listed or not; a pole
// within 1e-9 of the real axis counts as real).
PoleTarget PoleTargetOf(const std::vector<std::complex<double>>& poles, double dcLevel);

// Newton's method from `start`; nothing when it does not settle on a ladder
// whose poles lie within a relative 1e-8 of the target's (no ladder of
// positive elements has them, or the start is too far away).
std::optional<LadderValues> FitLadder(const LadderForm& form, const PoleTarget& target,
                                      LadderValues start);

// The denominator E(s) of the ladder's transmission, scaled so that its
// numerator (the product of the arms' 1 + s^2 / zero^2) is 1 at DC.
std::complex<double> LadderDenominator(const LadderForm& form, const LadderValues& v,
                                       std::complex<double> s);

}  // namespace drenik
