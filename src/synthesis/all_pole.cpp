#include "synthesis/all_pole.h"

#include <algorithm>
#include <cmath>
#include <unsupported/Eigen/Polynomials>

namespace drenik::allpole {

namespace {

using Complex = std::complex<double>;

Poly Multiply(const Poly& a, const Poly& b) {
  Poly r(a.size() + b.size() - 1, 0.0);
  for (size_t i = 0; i < a.size(); ++i)
    for (size_t j = 0; j < b.size(); ++j) r[i + j] += a[i] * b[j];
  return r;
}

// a + scale * b
void AddTo(Poly& a, double scale, const Poly& b) {
  if (a.size() < b.size()) a.resize(b.size(), 0.0);
  for (size_t i = 0; i < b.size(); ++i) a[i] += scale * b[i];
}

Complex Evaluate(const Poly& p, Complex x) {
  Complex r = 0;
  for (auto it = p.rbegin(); it != p.rend(); ++it) r = r * x + *it;
  return r;
}

// Legendre polynomials P_0 .. P_k in x, by Bonnet's recursion
// (i + 1) P_(i+1) = (2i + 1) x P_i - i P_(i-1).
std::vector<Poly> LegendrePolynomials(int k) {
  std::vector<Poly> p{{1.0}, {0.0, 1.0}};
  for (int i = 1; i < k; ++i) {
    Poly next = Multiply({0.0, (2.0 * i + 1) / (i + 1)}, p[static_cast<size_t>(i)]);
    AddTo(next, -static_cast<double>(i) / (i + 1), p[static_cast<size_t>(i) - 1]);
    p.push_back(next);
  }
  return p;
}

// q(x) written in u = x + 1.
Poly ShiftedByOne(const Poly& q) {
  Poly r(q.size(), 0.0), power{1.0};
  for (double c : q) {
    AddTo(r, c, power);
    power = Multiply(power, {-1.0, 1.0});
  }
  return r;
}

}  // namespace

Poly LegendreCharacteristic(int n) {
  // Odd n = 2k + 1: the integrand is (sum of (2i + 1) P_i, i = 0..k)^2.
  // Even n = 2k + 2: (x + 1) (sum over the i of k's parity)^2. The weights
  // are those that make the slope at the cutoff the steepest a monotonic
  // response allows; constant factors drop out in the normalization.
  const bool odd = n % 2 == 1;
  const int k = odd ? (n - 1) / 2 : (n - 2) / 2;
  const std::vector<Poly> legendre = LegendrePolynomials(std::max(k, 1));
  Poly sum{0.0};
  for (int i = 0; i <= k; ++i)
    if (odd || i % 2 == k % 2) AddTo(sum, 2.0 * i + 1, legendre[static_cast<size_t>(i)]);
  Poly integrand = Multiply(sum, sum);
  if (!odd) integrand = Multiply(integrand, {1.0, 1.0});
  // Integrated from x = -1 to 2w - 1, that is from u = 0 to u = 2w: the
  // antiderivative in u has no constant, so L_n(0) = 0 exactly.
  const Poly inU = ShiftedByOne(integrand);
  Poly l(inU.size() + 1, 0.0);
  for (size_t j = 0; j < inU.size(); ++j)
    l[j + 1] = inU[j] * std::pow(2.0, static_cast<double>(j + 1)) / static_cast<double>(j + 1);
  double atCutoff = 0;
  for (double c : l) atCutoff += c;
  for (double& c : l) c /= atCutoff;
  l.resize(static_cast<size_t>(n) + 1);
  return l;
}

std::vector<Complex> Roots(Poly p) {
  while (p.size() > 1 && p.back() == 0) p.pop_back();
  if (p.size() < 2) return {};
  Eigen::VectorXd c(static_cast<Eigen::Index>(p.size()));
  for (size_t i = 0; i < p.size(); ++i) c[static_cast<Eigen::Index>(i)] = p[i];
  const Eigen::PolynomialSolver<double, Eigen::Dynamic> solver(c);
  Poly slope(p.size() - 1);
  for (size_t i = 1; i < p.size(); ++i) slope[i - 1] = p[i] * static_cast<double>(i);
  std::vector<Complex> roots;
  for (Complex z : solver.roots()) {
    for (int step = 0; step < 3; ++step) {
      const Complex d = Evaluate(slope, z);
      if (d == 0.0) break;
      const Complex next = z - Evaluate(p, z) / d;
      if (!std::isfinite(next.real()) || !std::isfinite(next.imag())) break;
      z = next;
    }
    roots.push_back(z);
  }
  return roots;
}

std::vector<Complex> LeftHalfPlaneRoots(const Poly& d) {
  std::vector<Complex> poles;
  for (Complex w : Roots(d)) poles.push_back(-std::sqrt(-w));  // sqrt: real part >= 0
  return poles;
}

Poly BesselDenominator(int n) {
  // theta_n(s) = sum (2n - k)! / (2^(n-k) k! (n-k)!) s^k, taken in ratios
  // of neighbouring coefficients from theta(0) = 1 so that nothing overflows.
  Poly b(static_cast<size_t>(n) + 1);
  b[0] = 1;
  for (int k = 1; k <= n; ++k)
    b[static_cast<size_t>(k)] = b[static_cast<size_t>(k) - 1] * 2.0 * (n - k + 1) /
                                (static_cast<double>(k) * (2.0 * n - k + 1));
  // The 3 dB frequency: |theta(j w)|^2 = 2, bisected.
  auto loss = [&](double w) { return std::norm(Evaluate(b, Complex(0, w))); };
  double low = 0, high = 1;
  while (loss(high) < 2) high *= 2;
  for (int i = 0; i < 100; ++i) {
    const double mid = (low + high) / 2;
    (loss(mid) < 2 ? low : high) = mid;
  }
  const double w3 = (low + high) / 2;
  for (size_t k = 1; k < b.size(); ++k) b[k] *= std::pow(w3, static_cast<double>(k));
  return b;
}

Poly MagnitudeSquared(const Poly& e) {
  // E(s) E(-s) = sum over k + l even of e_k e_l (-1)^l s^(k+l), and
  // s^(2i) = (-w)^i on the axis.
  Poly d(e.size(), 0.0);
  for (size_t k = 0; k < e.size(); ++k)
    for (size_t l = 0; l < e.size(); ++l)
      if ((k + l) % 2 == 0) {
        const size_t i = (k + l) / 2;
        d[i] += e[k] * e[l] * (l % 2 ? -1.0 : 1.0) * (i % 2 ? -1.0 : 1.0);
      }
  while (d.size() > 1 && d.back() == 0) d.pop_back();
  return d;
}

Poly ReflectionPolynomial(const Poly& d, double lead) {
  size_t atDc = 0;
  while (atDc + 1 < d.size() && d[atDc] == 0) ++atDc;
  std::vector<Complex> zeros =
      LeftHalfPlaneRoots(Poly(d.begin() + static_cast<long>(atDc), d.end()));
  zeros.insert(zeros.end(), atDc, 0.0);
  return FromRoots(zeros, lead);
}

Poly FromRoots(const std::vector<Complex>& roots, double lead) {
  std::vector<Complex> c{lead};
  for (Complex z : roots) {
    std::vector<Complex> next(c.size() + 1, 0.0);
    for (size_t i = 0; i < c.size(); ++i) {
      next[i + 1] += c[i];
      next[i] -= z * c[i];
    }
    c = next;
  }
  Poly out;
  for (Complex x : c) out.push_back(x.real());
  return out;
}

namespace {

// The continued fraction of (E + F) / (E - F): the element values from the
// end whose reflection is F / E, nearest first.
std::vector<double> ContinuedFraction(const Poly& e, const Poly& f) {
  Poly num(e.size()), den(e.size());
  for (size_t i = 0; i < e.size(); ++i) {
    num[i] = e[i] + (i < f.size() ? f[i] : 0.0);
    den[i] = e[i] - (i < f.size() ? f[i] : 0.0);
  }
  den.pop_back();  // the leading terms cancel
  std::vector<double> g;
  while (!den.empty() && den.back() != 0 && num.size() == den.size() + 1) {
    // Take the pole at infinity off: N / D - s g = R / D.
    const double q = num.back() / den.back();
    g.push_back(q);
    for (size_t j = 0; j < den.size(); ++j) num[j + 1] -= q * den[j];
    num.pop_back();
    if (den.size() == 1) break;  // the termination is left
    num.pop_back();              // the remainder is of two degrees less
    std::swap(num, den);
  }
  return g;
}

}  // namespace

std::vector<double> DarlingtonStart(const Poly& e, const Poly& f) {
  const size_t n = e.size() - 1;
  Poly output(f.size());  // (-1)^n F(-s)
  for (size_t k = 0; k < f.size(); ++k) output[k] = (n + k) % 2 ? -f[k] : f[k];
  const std::vector<double> fromSource = ContinuedFraction(e, f);
  const std::vector<double> fromLoad = ContinuedFraction(e, output);
  std::vector<double> g(n + 1, 0.0);
  for (size_t k = 1; k <= n; ++k) {
    const bool sourceHalf = k <= (n + 1) / 2;
    const std::vector<double>& from = sourceHalf ? fromSource : fromLoad;
    const size_t at = sourceHalf ? k - 1 : n - k;
    g[k] = at < from.size() ? from[at] : 1.0;
  }
  return g;
}

}  // namespace drenik::allpole
