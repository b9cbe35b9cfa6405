// The elliptic (Cauer) lowpass prototype.
//
// The response is the elliptic rational function of the given order: its
// reflection zeros, transmission zeros and natural frequencies all come in
// closed form from Jacobi elliptic functions, so no polynomial root is ever
// searched for. From them the input admittance of the doubly terminated
// ladder is built and the ladder is extracted by zero shifting.
//
// Type letters: the record's CauerType is not read. Odd orders have one
// design (equal terminations). Even orders always give the design whose
// highest transmission zero is moved to infinity by a frequency mapping (the
// literature's type b): the ladder ends in a plain series inductor (G = 0,
// H = inductor at the last position, which the denormalization turns into a
// plain element in every topology), the DC loss equals the ripple, and the
// load is below 1 ohm. The plain even-order response (type a) has finite
// attenuation at infinity and cannot be built as this ladder; the
// equal-termination variant (type c) would not give the load below 1 ohm
// that even-order designs carry. So "A", "B" and "C" all give the type b
// design.

#include "synthesis/cauer.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "synthesis/elliptic.h"
#include "synthesis/ladder_fit.h"
#include "synthesis/prototypes.h"

namespace drenik {

namespace {

using Complex = std::complex<double>;
using Poly = std::vector<double>;  // coefficients of s^0, s^1, ...

Poly Multiply(const Poly& a, const Poly& b) {
  Poly r(a.size() + b.size() - 1, 0.0);
  for (size_t i = 0; i < a.size(); ++i)
    for (size_t j = 0; j < b.size(); ++j) r[i + j] += a[i] * b[j];
  return r;
}

// a + scale * s^shift * b
Poly AddScaled(const Poly& a, double scale, const Poly& b, size_t shift) {
  Poly r(std::max(a.size(), b.size() + shift), 0.0);
  std::copy(a.begin(), a.end(), r.begin());
  for (size_t i = 0; i < b.size(); ++i) r[i + shift] += scale * b[i];
  return r;
}

Complex Evaluate(const Poly& p, Complex s) {
  Complex r = 0;
  for (auto it = p.rbegin(); it != p.rend(); ++it) r = r * s + *it;
  return r;
}

// Quotient of p by (s^2 + w^2). The remainder, relative to the size of the
// terms of p at s = jw, goes to `residual`: it must vanish when jw is a zero.
Poly DivideByResonance(Poly p, double w, double& residual) {
  const double w2 = w * w;
  Poly q(p.size() - 2, 0.0);
  for (size_t i = p.size() - 1; i >= 2; --i) {
    q[i - 2] = p[i];
    p[i - 2] -= w2 * p[i];
  }
  double scale = 0;
  for (size_t i = 0; i < p.size(); ++i) scale += std::abs(p[i]) * std::pow(w, double(i));
  residual = std::hypot(p[0], p[1] * w) / std::max(scale, std::numeric_limits<double>::min());
  return q;
}

constexpr double kCheckTolerance = 1e-7;

bool Usable(double x) {
  return std::isfinite(x) && x > 0;
}

// Zero-shifting extraction of a shunt-capacitor-first ladder from its input
// admittance num/den. Each arm zero w takes off part of a shunt capacitor so
// that the remaining admittance vanishes at jw, then the series parallel-
// resonant arm tuned to w. The tail is a shunt capacitor and the load, or a
// shunt capacitor and a series inductor into the load.
//
// Unchecked, it runs through whatever the remainders say and only the
// degrees must come out right: the values are then a starting point.
bool Extract(Poly num, Poly den, const std::vector<double>& arms, bool seriesInductorTail,
             CauerLadder& out, bool checked = true) {
  const double tolerance = checked ? kCheckTolerance : INFINITY;
  size_t position = 1;
  for (double w : arms) {
    const Complex jw(0, w);
    const Complex shunt = Evaluate(num, jw) / (Evaluate(den, jw) * jw);
    if (std::abs(shunt.imag()) > tolerance * std::abs(shunt)) return false;
    const double c = shunt.real();
    double residual = 0;
    const Poly rest = DivideByResonance(AddScaled(num, -c, den, 1), w, residual);
    if (residual > tolerance) return false;
    const Complex tank = Evaluate(den, jw) / (jw * Evaluate(rest, jw));
    if (std::abs(tank.imag()) > tolerance * std::abs(tank)) return false;
    const double a = tank.real();  // 1 / C of the arm
    den = DivideByResonance(AddScaled(den, -a, rest, 1), w, residual);
    if (residual > tolerance) return false;
    num = rest;
    out.g[position] = c;
    out.h[position + 1] = a / (w * w);
    out.g[position + 1] = 1 / a;
    position += 2;
  }
  if (!seriesInductorTail) {
    if (num.size() != 2 || den.size() != 1) return false;
    out.g[position] = num[1] / den[0];
    out.rload = den[0] / num[0];
  } else {
    if (num.size() != 3 || den.size() != 2) return false;
    const double c = num[2] / den[1];
    const double constant = num[0];
    if (std::abs(num[1] - c * den[0]) > tolerance * std::abs(num[1])) return false;
    out.g[position] = c;
    out.h[position + 1] = den[1] / constant;
    out.g[position + 1] = 0;
    out.rload = den[0] / constant;
  }
  if (!checked) return true;
  for (size_t i = 1; i < out.g.size(); ++i) {
    const bool plainEnd = seriesInductorTail && i + 1 == out.g.size();
    if (!(plainEnd ? out.g[i] == 0 : Usable(out.g[i]))) return false;
    if (i % 2 == 0 && !Usable(out.h[i])) return false;
  }
  return Usable(out.rload);
}

// Orders of the finite arm zeros to try. First the usual one: from the
// highest down, the zeros go alternately to the source end and the load end,
// so the highest sit at the ends of the ladder and the lowest in the middle
// (a low zero next to an end would take more than the whole end capacitor).
// Then other permutations, a bounded number of them.
std::vector<double> UsualArmOrder(std::vector<double> zeros) {
  std::sort(zeros.begin(), zeros.end());
  std::vector<double> usual(zeros.size());
  size_t left = 0, right = zeros.size();
  for (size_t i = 0; i < zeros.size(); ++i)
    usual[i % 2 == 0 ? left++ : --right] = zeros[zeros.size() - 1 - i];
  return usual;
}

std::vector<std::vector<double>> ArmOrders(std::vector<double> zeros) {
  std::sort(zeros.begin(), zeros.end());
  std::vector<std::vector<double>> orders{UsualArmOrder(zeros)};
  for (int tries = 0; tries < 5040; ++tries) {
    orders.push_back(zeros);
    if (!std::next_permutation(zeros.begin(), zeros.end())) break;
  }
  return orders;
}

Poly ResonancePair(double w) {
  return {w * w, 0.0, 1.0};
}

double DecibelsToFactor(double db) {
  return std::sqrt(std::expm1(db * std::numbers::ln10 / 10));
}

}  // namespace

void CauerSelectivity(int order, double apass, double astop, double& k, double& kc) {
  const double ep = DecibelsToFactor(apass);
  const double es = DecibelsToFactor(astop);
  const double k1 = ep / es;
  const double k1c = std::sqrt((es - ep) * (es + ep)) / es;
  const double ratio = elliptic::CompleteK(k1) / elliptic::CompleteK(k1c);  // K'(k1) / K(k1)
  const elliptic::Modulus m = elliptic::FromNome(std::exp(-std::numbers::pi * ratio / order));
  k = m.k;
  kc = m.kc;
}

namespace {

// The elliptic response of a design: its natural frequencies, its finite
// transmission zeros, the stopband edge, the polynomials E (natural
// frequencies) and P (transmission zeros, monic) and the input admittance
// num / den of its ladder.
struct EllipticResponse {
  bool odd = true;
  std::vector<Complex> poles;  // one of each conjugate pair
  double realPole = 0;         // odd orders
  std::vector<double> armZeros;
  double fstop = 0;
  Poly e, pz, num, den;
};

EllipticResponse ResponseOf(int order, double epsilon, double k, double kc) {
  using elliptic::Cd;
  using elliptic::Sn;
  const int n = order;
  const int half = n / 2;
  const bool odd = n % 2 == 1;
  const elliptic::Modulus m = elliptic::FromModulus(k, kc);
  const elliptic::Modulus m1 = elliptic::FromNome(std::pow(m.q, n));

  // Natural frequencies sit at j cd((u - j v0) K, k), where v0 solves
  // sn(j v0 n K1, k1) = j / epsilon, that is sc(v0 n K1, k1') = 1 / epsilon:
  // v0 n K1 = F(atan(1/epsilon) | k1'), taken through Carlson's R_F with
  // 1 - k1'^2 sin^2 = cos^2 + k1^2 sin^2 so that nothing cancels.
  const double sinPhi = 1 / std::hypot(1.0, epsilon);
  const double cosPhi = epsilon * sinPhi;
  const double cos2 = cosPhi * cosPhi;
  const double v0 =
      sinPhi * elliptic::CarlsonRf(cos2, cos2 + std::pow(m1.k * sinPhi, 2), 1.0) / (n * m1.K);

  EllipticResponse r;
  r.odd = odd;
  std::vector<double> reflection(half), transmission(half);
  for (int i = 0; i < half; ++i) {
    const double u = double(2 * i + 1) / n;
    reflection[i] = Cd(u, m).real();
    transmission[i] = 1 / (k * reflection[i]);
    r.poles.push_back(Complex(0, 1) * Cd(Complex(u, -v0), m));
  }
  // Odd orders add the real natural frequency j sn(j v0 K, k) = -sc(v0 K, k').
  r.realPole = odd ? -std::abs((Complex(0, 1) * Sn(Complex(0, v0), m)).real()) : 0.0;

  r.fstop = 1 / k;
  r.armZeros = transmission;

  if (!odd) {
    // w^2 -> w^2 (p^2 - 1) / (p^2 - w^2) keeps DC and the passband edge and
    // sends the highest transmission zero p to infinity; the ripple values
    // in passband and stopband stay as they were.
    const double p = *std::max_element(transmission.begin(), transmission.end());
    const double p2 = p * p;
    auto map = [&](double w) { return std::sqrt(w * w * (p2 - 1) / (p2 - w * w)); };
    for (double& z : reflection) z = map(z);
    r.armZeros.clear();
    for (double t : transmission)
      if (t < p) r.armZeros.push_back(map(t));
    r.fstop = map(1 / k);
    for (Complex& s : r.poles) s = -std::sqrt(s * s * (p2 - 1) / (p2 + s * s));
  }

  // Characteristic function h F(s) / P(s): F from the reflection zeros, P from
  // the finite transmission zeros; h sets the loss at the passband edge to
  // the ripple. E (natural frequencies) has leading coefficient h, since P is
  // of lower degree than F.
  Poly f = odd ? Poly{0.0, 1.0} : Poly{1.0};
  for (double z : reflection) f = Multiply(f, ResonancePair(z));
  r.pz = {1.0};
  for (double t : r.armZeros) r.pz = Multiply(r.pz, ResonancePair(t));
  const Complex j(0, 1);
  const double h = epsilon * std::abs(Evaluate(r.pz, j)) / std::abs(Evaluate(f, j));
  r.e = odd ? Poly{-h * r.realPole, h} : Poly{h};
  for (Complex s : r.poles) r.e = Multiply(r.e, {std::norm(s), 2 * std::abs(s.real()), 1.0});
  // Input admittance (E + hF) / (E - hF); the leading terms cancel in the
  // denominator, so the ladder starts with a shunt capacitor.
  r.num = AddScaled(r.e, h, f, 0);
  r.den = AddScaled(r.e, -h, f, 0);
  r.den.pop_back();
  return r;
}

CauerLadder EmptyLadder(int n, const EllipticResponse& r) {
  CauerLadder out;
  out.g.assign(n + 1, 0.0);
  out.h.assign(n + 1, 0.0);
  out.fstop = r.fstop;
  return out;
}

}  // namespace

CauerLadder DesignCauerLadder(int order, double epsilon, double k, double kc) {
  const EllipticResponse r = ResponseOf(order, epsilon, k, kc);
  const CauerLadder out = EmptyLadder(order, r);
  for (const auto& arms : ArmOrders(r.armZeros)) {
    CauerLadder trial = out;
    if (Extract(r.num, r.den, arms, !r.odd, trial)) {
      trial.zeros = arms;
      if (!r.odd) trial.zeros.push_back(std::numeric_limits<double>::infinity());
      trial.ok = true;
      return trial;
    }
  }
  return out;
}

// Zero shifting in the usual arm order, unchecked, gives the start; the
// ladder is then fitted to the response's natural frequencies with its arms
// held on the transmission zeros.
CauerLadder FitCauerLadder(int order, double epsilon, double k, double kc) {
  const EllipticResponse r = ResponseOf(order, epsilon, k, kc);
  CauerLadder out = EmptyLadder(order, r);
  const std::vector<double> arms = UsualArmOrder(r.armZeros);
  CauerLadder start = out;
  start.rload = 1;
  Extract(r.num, r.den, arms, !r.odd, start, false);

  const LadderForm form{.order = order, .armZeros = arms, .freeLoad = !r.odd};
  LadderValues v{.element = std::vector<double>(static_cast<size_t>(order) + 1), .rload = 1};
  for (int i = 1; i <= order; ++i) v.element[i] = i % 2 ? start.g[i] : start.h[i];
  if (!r.odd) v.rload = start.rload;
  std::vector<Complex> poles = r.poles;
  if (r.odd) poles.push_back(r.realPole);
  // E with P scaled to 1 at DC: 1 for odd orders, the ripple's factor for
  // even ones.
  const PoleTarget target = PoleTargetOf(poles, r.e[0] / r.pz[0]);
  const std::optional<LadderValues> fit = FitLadder(form, target, v);
  if (!fit) return out;
  for (int i = 1; i <= order; ++i) {
    const double x = fit->element[i];
    if (i % 2) {
      out.g[i] = x;
    } else {
      out.h[i] = x;
      const size_t arm = static_cast<size_t>(i / 2 - 1);
      out.g[i] = arm < arms.size() ? 1 / (arms[arm] * arms[arm] * x) : 0.0;
    }
  }
  out.rload = fit->rload;
  out.zeros = arms;
  if (!r.odd) out.zeros.push_back(std::numeric_limits<double>::infinity());
  out.ok = true;
  return out;
}

EngineReport EllipticPrototype(DesignRecord& d) {
  if (d.Order < 3)
    return EngineReport::Notice("The Cauer family requires a minimum order of three");
  for (int i = 1; i <= kPrototypePositions; ++i) {
    d.G[i] = 0;
    d.H[i] = 0;
  }
  const double apass = d.Apass, astop = d.Astop;
  if (d.Order > kPrototypePositions)
    return EngineReport::Fault("The Cauer prototype has at most 20 positions");
  if (!(apass > 0) || !(astop > apass))
    return EngineReport::Fault(
        "The Cauer prototype needs a ripple above 0 dB and a deeper stopband");
  double k = 0, kc = 0;
  CauerSelectivity(d.Order, apass, astop, k, kc);
  // The orders of the design page's buttons keep the checked zero shifting;
  // higher orders, and any design it cannot extract, are fitted.
  const double epsilon = DecibelsToFactor(apass);
  CauerLadder ladder =
      d.Order <= kHighestButtonOrder ? DesignCauerLadder(d.Order, epsilon, k, kc) : CauerLadder{};
  if (!ladder.ok) ladder = FitCauerLadder(d.Order, epsilon, k, kc);
  if (!ladder.ok) {
    char text[320];
    std::snprintf(text, sizeof text,
                  "No Cauer ladder of order %d with %g dB ripple and %g dB stopband depth: it "
                  "would need a part of negative value, or its stopband edge (%.6g times the "
                  "cutoff) lies too close to the cutoff. Raise the stopband depth or the ripple, "
                  "or lower the order.",
                  d.Order, apass, astop, 1 / k);
    return EngineReport::Fault(text);
  }
  for (int i = 1; i <= d.Order; ++i) {
    d.G[i] = float(ladder.g[i]);
    d.H[i] = float(ladder.h[i]);
  }
  d.FstopNormalized = float(ladder.fstop);
  d.RloadNormalized = float(ladder.rload);
  d.Rload = float(double(d.RloadNormalized) * d.Rsource);
  d.CauerFlag = 1;
  return {};
}

}  // namespace drenik
