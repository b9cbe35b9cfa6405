#pragma once
// How the chooser ranks two candidate value sets.
//
// A set whose stopband stays within 1 dB of the exact design's beats one
// that does not (between two that do not, the deeper stopband wins). Then
// the better worst passband return loss wins, counted no higher than the
// exact design's own: beyond that, the only way up is to move the cutoff,
// which is not keeping the response. Then the set nearer the exact values.

#include <cmath>

#include "parts/figures.h"

namespace drenik {

struct Merit {
  double primary = -1e300;  // dB
  double distance = 0;      // sum of squared log ratios to the exact values

  bool Beats(const Merit& other) const {
    if (primary != other.primary) return primary > other.primary;
    return distance < other.distance;
  }
};

struct Judge {
  double ceiling = 0;  // the exact design's worst passband return loss, dB
  double floor = 0;    // the least stopband attenuation allowed, dB (NaN: no stopband)

  bool StopbandKept(const Figures& f) const {
    return std::isnan(floor) || std::isnan(f.stopband) || f.stopband >= floor;
  }
  Merit Of(const Figures& f, double distance) const {
    if (!StopbandKept(f)) return {-1e6 + f.stopband - floor, distance};
    return {std::fmin(f.returnLoss, ceiling), distance};
  }
};

}  // namespace drenik
