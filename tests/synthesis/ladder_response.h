#pragma once
// Independent check for the synthesis tests: the ladder in d by a plain ABCD chain.

#include <cmath>
#include <complex>

#include "core/design_record.h"

namespace drenik::testing {

inline std::complex<double> LadderGain(const DesignRecord& d, double w) {
  using Cx = std::complex<double>;
  const Cx s(0, w);
  Cx a = 1, b = 0, c = 0, dd = 1;
  for (int k = 1; k <= d.Stages; ++k) {
    // Series impedance z or shunt admittance y of the position; other codes are empty.
    const int t = d.ElementType[k];
    const Cx zl = s * double(d.L[k]), yc = s * double(d.C[k]);
    const Cx z = t == 1 ? zl : t == 3 ? 1.0 / yc : t == 7 ? 1.0 / (1.0 / zl + yc) : 0.0;
    const Cx y = t == 2 ? 1.0 / zl : t == 4 ? yc : t == 6 ? 1.0 / (zl + 1.0 / yc) : 0.0;
    b += a * z, dd += c * z;  // times [1 z; 0 1]
    a += b * y, c += dd * y;  // times [1 0; y 1]
  }
  const double rs = d.Rsource, rl = d.Rload;
  return 2.0 * std::sqrt(rs * rl) / (a * rl + b + c * rs * rl + dd * rs);
}

// Loss in dB relative to a matched source and load.
inline double LossDb(const DesignRecord& d, double w) {
  return -20.0 * std::log10(std::abs(LadderGain(d, w)));
}

// The prototype of p as a C-input lowpass at 1 rad/s between 1 ohm and its normalized load:
// shunt C = G at odd positions, series L at even ones (H if CauerFlag, else G) with its partner.
inline DesignRecord PrototypeLadder(const DesignRecord& p) {
  DesignRecord d = p;
  d.Rsource = 1, d.Rload = p.RloadNormalized, d.Stages = p.Order;
  for (int k = 1; k <= p.Order; ++k) {
    const bool swap = k % 2 == 0 && p.CauerFlag == 1;
    d.L[k] = k % 2 ? 0 : swap ? p.H[k] : p.G[k];
    d.C[k] = k % 2 ? p.G[k] : swap ? p.G[k] : p.H[k];
    d.ElementType[k] = k % 2 ? 4 : d.C[k] > 0 ? 7 : 1;
  }
  return d;
}

}  // namespace drenik::testing
