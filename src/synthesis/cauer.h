#pragma once
// The elliptic (Cauer) lowpass ladder computed from its defining parameters,
// below the record-level routine Cauer() of prototypes.h.

#include <vector>

namespace drenik {

// A normalized elliptic ladder: 1-ohm source, passband edge 1 rad/s, shunt
// capacitor at position 1. Vectors are indexed by ladder position 1..order
// (index 0 unused). Odd positions: shunt capacitor g. Even positions: series
// arm of inductor h in parallel with capacitor g; an even order ends in a
// plain series inductor (g = 0).
struct CauerLadder {
  bool ok = false;  // every element came out positive and finite
  std::vector<double> g, h;
  std::vector<double> zeros;  // resonance of each even position; infinity for a plain inductor
  double rload = 0;           // normalized load resistance
  double fstop = 0;           // normalized stopband edge: attenuation first reaches its minimum
};

// Selectivity k (stopband edge 1/k) of the elliptic response of the given
// order with passband ripple apass dB and stopband minimum astop dB, from the
// degree equation n K'(k)/K(k) = K'(k1)/K(k1), k1 = ep/es, solved through the
// nome q = q1^(1/n). Returns k and its complement.
void CauerSelectivity(int order, double apass, double astop, double& k, double& kc);

// The ladder of order 3..7 (its zero-shifting checks hold to about there) with ripple factor
// epsilon (passband ripple 10 log10(1 + epsilon^2) dB) and selectivity k with complement kc. Odd
// orders: equal terminations. Even orders: the elliptic response is mapped so that its highest
// transmission zero moves to infinity (the classic "type b" design: DC loss equal to the ripple,
// load below 1 ohm).
CauerLadder DesignCauerLadder(int order, double epsilon, double k, double kc);

// The same ladder for any order: the zero shifting gives a start and the
// ladder is fitted to the response's natural frequencies (ladder_fit.h),
// which keeps its accuracy at orders where the polynomials lose theirs.
// Not ok when the fit finds no ladder of positive elements.
CauerLadder FitCauerLadder(int order, double epsilon, double k, double kc);

}  // namespace drenik
