#pragma once
// Independent check for the synthesis tests: the loss of the ladder in d
// (ElementType, L, C at 1..Stages, ideal parts, Rsource to Rload) by a plain
// ABCD chain, in dB relative to a matched source and load.

#include <cmath>
#include <complex>

#include "core/design_record.h"

namespace drenik::testing {

inline std::complex<double> LadderGain(const DesignRecord& d, double w) {
  using Cx = std::complex<double>;
  const Cx s(0, w);
  Cx a = 1, b = 0, c = 0, dd = 1;
  for (int k = 1; k <= d.Stages; ++k) {
    const double l = d.L[k], cap = d.C[k];
    Cx z = 0, y = 0;  // series impedance or shunt admittance of the position
    switch (d.ElementType[k]) {
      case 1:
        z = s * l;
        break;
      case 2:
        y = 1.0 / (s * l);
        break;
      case 3:
        z = 1.0 / (s * cap);
        break;
      case 4:
        y = s * cap;
        break;
      case 6:
        y = 1.0 / (s * l + 1.0 / (s * cap));
        break;
      case 7:
        z = 1.0 / (1.0 / (s * l) + s * cap);
        break;
      default:
        continue;
    }
    b += a * z, dd += c * z;  // times [1 z; 0 1]
    a += b * y, c += dd * y;  // times [1 0; y 1]
  }
  const double rs = d.Rsource, rl = d.Rload;
  return 2.0 * std::sqrt(rs * rl) / (a * rl + b + c * rs * rl + dd * rs);
}

inline double LossDb(const DesignRecord& d, double w) {
  return -20.0 * std::log10(std::abs(LadderGain(d, w)));
}

// The prototype of p as a C-input lowpass between 1 ohm and its normalized
// load at 1 rad/s: shunt C = G at odd positions, series L at even ones (H
// when CauerFlag is 1, else G) with its partner capacitor across it.
inline DesignRecord PrototypeLadder(const DesignRecord& p) {
  DesignRecord d = p;
  d.Rsource = 1;
  d.Rload = p.RloadNormalized;
  d.Stages = p.Order;
  for (int k = 1; k <= p.Order; ++k) {
    const bool swap = k % 2 == 0 && p.CauerFlag == 1;
    d.L[k] = k % 2 ? 0 : swap ? p.H[k] : p.G[k];
    d.C[k] = k % 2 ? p.G[k] : swap ? p.G[k] : p.H[k];
    d.ElementType[k] = k % 2 ? 4 : d.C[k] > 0 ? 7 : 1;
  }
  return d;
}

}  // namespace drenik::testing
