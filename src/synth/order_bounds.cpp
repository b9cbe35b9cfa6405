#include "synth/order_bounds.h"

#include <algorithm>
#include <cmath>

#include "synth/responses.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

// (10^(As/10) - 1) / (10^(Ap/10) - 1): the power discrimination the
// response must have between the passband edge and the stop frequency.
double Discrimination(double passLoss, double depth) {
  return std::expm1(depth * std::log(10.0) / 10) / std::expm1(passLoss * std::log(10.0) / 10);
}

// Maximally flat: |H|^2 = 1 / (1 + eps^2 w^2n).
double ButterworthOrder(double omega, double d) {
  return std::log(d) / (2 * std::log(omega));
}

// Equal ripple, and (as the best all-pole response) a bound for every
// all-pole family: cosh(n acosh w) must reach sqrt(d).
double ChebyshevOrder(double omega, double d) {
  return std::acosh(std::sqrt(d)) / std::acosh(omega);
}

// The elliptic degree equation n = K(k) K'(k1) / (K'(k) K(k1)), with the
// selectivity k = 1 / w and the discrimination k1 = 1 / sqrt(d).
double EllipticOrder(double omega, double d) {
  const double k = 1 / omega, k1 = 1 / std::sqrt(d);
  auto K = [](double m) { return std::comp_ellint_1(m); };
  auto Kp = [](double m) { return std::comp_ellint_1(std::sqrt(1 - m * m)); };
  return K(k) * Kp(k1) / (Kp(k) * K(k1));
}

}  // namespace

double LossOfReturnLoss(double rl) {
  return -10 * std::log10(-std::expm1(-rl * std::log(10.0) / 10));
}

PrototypeMask PrototypeMaskOf(const SynthRequest& r) {
  PrototypeMask p;
  const Mask& m = r.mask;
  if (m.passRl) p.passLossDb = LossOfReturnLoss(*m.passRl);
  if (m.passIl) p.passLossDb = m.passRl ? std::min(p.passLossDb, *m.passIl) : *m.passIl;
  const ResponseInfo& response = ResponseOf(r.response);
  const bool band = response.band;
  // A band's edges, lower and upper.
  const double low = band && !response.bandstop ? m.passStart : m.passEdge;
  const double high = band && !response.bandstop ? m.passEdge : m.passResume;
  const double f0 = band ? std::sqrt(low * high) : 0, bw = high - low;
  // |f/f0 - f0/f| f0 / B: where a bandpass's frequency lands on its
  // lowpass prototype; a bandstop's is the reciprocal.
  auto bandOmega = [&](double f) { return std::abs(f / f0 - f0 / f) * f0 / bw; };
  for (const StopCheck& s : m.stops) {
    double omega = 0;
    switch (r.response) {
      case SynthResponse::Lowpass:
        omega = s.frequency / m.passEdge;
        break;
      case SynthResponse::Highpass:
        omega = m.passEdge / (s.to > 0 ? s.to : s.frequency);
        break;
      case SynthResponse::Bandpass:
        omega = bandOmega(!s.below && s.to > 0 && s.to < f0 ? s.to : s.frequency);
        break;
      case SynthResponse::Bandstop: {
        const double to = s.to > 0 ? s.to : s.frequency;
        omega = std::min(1 / bandOmega(s.frequency), 1 / bandOmega(to));
        break;
      }
    }
    p.stops.push_back({omega, s.depth});
  }
  return p;
}

int LowestOrder(int16_t family, const PrototypeMask& mask) {
  const FamilyInfo* f = FindFamily(family);
  if (!f) return kMaxOrder + 1;
  double order = f->minOrder;
  for (const PrototypeStop& s : mask.stops) {
    if (!(s.omega > 1)) return kMaxOrder + 1;
    const double d = Discrimination(mask.passLossDb, s.depth);
    if (!(d > 1)) continue;
    const double n = family == kButterworth ? ButterworthOrder(s.omega, d)
                     : f->depth.Offered()   ? EllipticOrder(s.omega, d)
                                            : ChebyshevOrder(s.omega, d);
    if (!std::isfinite(n)) return kMaxOrder + 1;
    order = std::max(order, n);
  }
  // A hair under a whole order is that order: the formulas' own rounding.
  return std::max<int>(f->minOrder, static_cast<int>(std::ceil(order - 1e-9)));
}

bool LowestOrderIsExact(int16_t family) {
  const FamilyInfo* f = FindFamily(family);
  return f && (family == kButterworth || f->ripple.Offered());
}

}  // namespace drenik
