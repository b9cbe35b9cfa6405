#pragma once
// A small, independent evaluation of a ladder for the synthesis tests: the
// ABCD chain of the positions in d (ElementType, L, C, 1..Stages) between
// Rsource and Rload, with ideal parts. Returns the insertion loss in dB
// relative to a matched source and load, and the group delay in seconds.

#include <cmath>
#include <complex>
#include <numbers>

#include "core/design_record.h"

namespace drenik::testing {

using Complex = std::complex<double>;

struct Abcd {
  Complex a{1}, b{0}, c{0}, d{1};
  Abcd Then(const Abcd& o) const {
    return {a * o.a + b * o.c, a * o.b + b * o.d, c * o.a + d * o.c, c * o.b + d * o.d};
  }
};

// Transfer function V2 / (Vs / 2 * sqrt(RL / Rs)): magnitude 1 when all power
// reaches the load.
inline Complex LadderGain(const DesignRecord& d, double w) {
  const Complex s(0, w);
  Abcd m;
  for (int k = 1; k <= d.Stages; ++k) {
    const double l = d.L[k];
    const double c = d.C[k];
    Complex z;  // series impedance
    Complex y;  // shunt admittance
    switch (d.ElementType[k]) {
      case 1:
        z = s * l;
        break;
      case 2:
        y = 1.0 / (s * l);
        break;
      case 3:
        z = 1.0 / (s * c);
        break;
      case 4:
        y = s * c;
        break;
      case 6:
        y = 1.0 / (s * l + 1.0 / (s * c));
        break;
      case 7:
        z = 1.0 / (1.0 / (s * l) + s * c);
        break;
      default:
        continue;
    }
    m = m.Then(y == Complex{} ? Abcd{1, z, 0, 1} : Abcd{1, 0, y, 1});
  }
  const double rs = d.Rsource;
  const double rl = d.Rload;
  return 2.0 * std::sqrt(rs * rl) / (m.a * rl + m.b + m.c * rs * rl + m.d * rs);
}

inline double LossDb(const DesignRecord& d, double w) {
  return -20.0 * std::log10(std::abs(LadderGain(d, w)));
}

inline double GroupDelay(const DesignRecord& d, double w) {
  const double h = 1e-5 * (w > 0 ? w : 1.0);
  const double lo = w > h ? w - h : w;
  const double p0 = std::arg(LadderGain(d, lo));
  const double p1 = std::arg(LadderGain(d, w + h));
  double dp = p1 - p0;
  while (dp > std::numbers::pi) dp -= 2 * std::numbers::pi;
  while (dp < -std::numbers::pi) dp += 2 * std::numbers::pi;
  return -dp / (w + h - lo);
}

// The prototype of d laid out as a C-input lowpass between 1 ohm and its
// normalized load at 1 rad/s, exactly as the prototype values stand: odd
// positions shunt C = G, even positions series L (G, or H when CauerFlag is
// 1) with the partner capacitor across it when there is one.
inline DesignRecord PrototypeLadder(const DesignRecord& p) {
  DesignRecord d = p;
  d.Rsource = 1;
  d.Rload = p.RloadNormalized;
  d.Stages = p.Order;
  for (int k = 1; k <= p.Order; ++k) {
    d.L[k] = 0;
    d.C[k] = 0;
    if (k % 2 == 1) {
      d.ElementType[k] = 4;
      d.C[k] = p.G[k];
    } else {
      const float main = p.CauerFlag == 1 ? p.H[k] : p.G[k];
      const float partner = p.CauerFlag == 1 ? p.G[k] : p.H[k];
      d.L[k] = main;
      d.C[k] = partner;
      d.ElementType[k] = partner > 0 ? 7 : 1;
    }
  }
  return d;
}

}  // namespace drenik::testing
