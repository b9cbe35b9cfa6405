#include "synthesis/elliptic.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace drenik::elliptic {

double Agm(double a, double b) {
  for (int i = 0; i < 64 && std::abs(a - b) > 1e-16 * a; ++i) {
    const double mean = 0.5 * (a + b);
    b = std::sqrt(a * b);
    a = mean;
  }
  return 0.5 * (a + b);
}

double CompleteK(double kc) {
  return std::numbers::pi / (2.0 * Agm(1.0, kc));
}

Modulus FromNome(double q) {
  // theta2 = 2 q^(1/4) sum q^(m(m+1)), theta3 = 1 + 2 sum q^(m^2),
  // theta4 = 1 + 2 sum (-1)^m q^(m^2).
  double theta2 = 0;
  for (int m = 0; m < 200; ++m) {
    const double term = std::pow(q, double(m) * (m + 1));
    theta2 += term;
    if (term < 1e-18 * theta2) break;
  }
  theta2 *= 2.0 * std::pow(q, 0.25);
  double theta3 = 1, theta4 = 1;
  for (int m = 1; m < 200; ++m) {
    const double term = 2.0 * std::pow(q, double(m) * m);
    theta3 += term;
    theta4 += (m % 2 ? -term : term);
    if (term < 1e-18) break;
  }
  Modulus r;
  r.q = q;
  r.k = (theta2 * theta2) / (theta3 * theta3);
  r.kc = (theta4 * theta4) / (theta3 * theta3);
  r.K = 0.5 * std::numbers::pi * theta3 * theta3;
  r.Kp = -r.K * std::log(q) / std::numbers::pi;
  return r;
}

Modulus FromModulus(double k, double kc) {
  Modulus r;
  r.k = k;
  r.kc = kc;
  r.K = CompleteK(kc);
  r.Kp = CompleteK(k);
  r.q = std::exp(-std::numbers::pi * r.Kp / r.K);
  return r;
}

double CarlsonRf(double x, double y, double z) {
  for (int i = 0; i < 100; ++i) {
    const double mean = (x + y + z) / 3.0;
    const double dx = 1 - x / mean, dy = 1 - y / mean, dz = 1 - z / mean;
    const double spread = std::max({std::abs(dx), std::abs(dy), std::abs(dz)});
    if (spread < 1e-4) {
      // Fifth-order Taylor tail: error below spread^6 / 4.
      const double e2 = dx * dy - dz * dz;
      const double e3 = dx * dy * dz;
      return (1 - e2 / 10 + e3 / 14 + e2 * e2 / 24 - 3 * e2 * e3 / 44) / std::sqrt(mean);
    }
    const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const double lambda = sx * sy + sy * sz + sz * sx;
    x = 0.25 * (x + lambda);
    y = 0.25 * (y + lambda);
    z = 0.25 * (z + lambda);
  }
  return 1 / std::sqrt((x + y + z) / 3.0);
}

namespace {

// Descending Landen moduli k1, k2, ... of k, until they vanish. Each step
// k_n = (1 - k'_(n-1)) / (1 + k'_(n-1)), k'_n = 2 sqrt(k'_(n-1)) / (1 + k'_(n-1)),
// written so that neither the modulus nor its complement is formed by
// cancellation.
std::vector<double> LandenModuli(const Modulus& m) {
  std::vector<double> v;
  double k = m.k, kc = m.kc;
  while (k > 1e-18 && v.size() < 32) {
    const double next = (k / (1 + kc)) * (k / (1 + kc));
    kc = 2 * std::sqrt(kc) / (1 + kc);
    k = next;
    v.push_back(k);
  }
  return v;
}

// Ascending recurrence from the circular function of the vanishing modulus
// back to the modulus itself.
std::complex<double> Ascend(std::complex<double> w, const Modulus& m) {
  const std::vector<double> v = LandenModuli(m);
  for (auto it = v.rbegin(); it != v.rend(); ++it) w = (1 + *it) * w / (1.0 + *it * w * w);
  return w;
}

}  // namespace

std::complex<double> Cd(std::complex<double> u, const Modulus& m) {
  return Ascend(std::cos(u * (0.5 * std::numbers::pi)), m);
}

std::complex<double> Sn(std::complex<double> u, const Modulus& m) {
  return Ascend(std::sin(u * (0.5 * std::numbers::pi)), m);
}

}  // namespace drenik::elliptic
