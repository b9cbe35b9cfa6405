#pragma once
// The ladders the benchmarks time, shared by the sweep and the tolerance
// benchmarks so that their figures compare.

#include <cmath>

#include "core/design_record.h"

namespace drenik::bench {

inline void SetConstants(DesignRecord& d) {
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
}

// Shunt capacitors with three parallel-resonant series arms, 50 ohms, 1 MHz
// cutoff, notches near 2.5 MHz; Q 100 inductors. 1001 points from 0.2 to
// 5 MHz, the display page's sweep.
inline DesignRecord ResonantLadder() {
  DesignRecord d;
  SetConstants(d);
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = 100;
  d.Qcap = kInfiniteQcap;
  d.Width = 1e6f;
  d.Fstart = 2e5f;
  d.Fstop = 5e6f;
  d.NrIntervals = 1000;
  d.Stages = 7;
  d.Topology = "Cinlowpass";
  const int16_t codes[] = {4, 7, 4, 7, 4, 7, 4};
  const float caps[] = {2.9e-9f, 2.2e-10f, 4.6e-9f, 7.8e-10f, 4.3e-9f, 5.1e-10f, 2.6e-9f};
  const float inds[] = {0, 9.1e-6f, 0, 7.5e-6f, 0, 8.2e-6f, 0};
  for (int k = 1; k <= 7; ++k) {
    d.ElementType[k] = codes[k - 1];
    d.C[k] = caps[k - 1];
    d.L[k] = inds[k - 1];
  }
  return d;
}

}  // namespace drenik::bench
