#pragma once
// How the chooser ranks two candidate value sets.
//
// No set may match worse than plain rounding: every capacitor to its
// nearest series value and every inductor to its nearest allowed value,
// which is what a user would build without the chooser. A set below that
// return loss loses to any set above it (between two below it, the better
// return loss wins).
//
// Then a set whose stopband stays within 1 dB of the exact design's beats
// one that does not. Between two that do not, the deeper stopband wins; or,
// for a search held to plain rounding, return loss and stopband are weighed
// as the default tolerance mask weighs them: each is held to the exact
// design's own figure less the same margin, so a dB lost from either counts
// alike, and the set whose larger loss against the exact design is smaller
// wins.
//
// Then the better worst passband return loss wins, counted no higher than
// the exact design's own: beyond that, the only way up is to move the
// cutoff, which is not keeping the response. Then the set nearer the exact
// values.

#include <algorithm>
#include <cmath>
#include <limits>

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
  // The worst passband return loss of plain rounding, dB (minus infinity:
  // not held to it).
  double roundedReturnLoss = -std::numeric_limits<double>::infinity();
  // The exact design's least stopband attenuation, dB: what a stopband
  // below the floor is weighed against (NaN: not weighed, the deeper wins).
  double exactStopband = std::numeric_limits<double>::quiet_NaN();

  bool StopbandKept(const Figures& f) const {
    return std::isnan(floor) || std::isnan(f.stopband) || f.stopband >= floor;
  }
  Merit Of(const Figures& f, double distance) const {
    if (f.returnLoss < roundedReturnLoss)
      return {-2e6 + f.returnLoss - roundedReturnLoss, distance};
    if (!StopbandKept(f)) {
      const double weighed = std::isnan(exactStopband)
                                 ? f.stopband - floor
                                 : std::min(f.returnLoss - ceiling, f.stopband - exactStopband);
      return {-1e6 + weighed, distance};
    }
    return {std::fmin(f.returnLoss, ceiling), distance};
  }
};

}  // namespace drenik
