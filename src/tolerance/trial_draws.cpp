#include "tolerance/trial_draws.h"

#include <cmath>

namespace drenik {
namespace {

// The 64-bit finalizer of SplitMix64: every input bit reaches every output
// bit.
uint64_t Mix(uint64_t z) {
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

constexpr uint64_t kGolden = 0x9E3779B97F4A7C15ull;

// A uniform number in [0, 1) for draw `k` of (seed, trial, part).
double Uniform(uint64_t seed, uint64_t trial, uint32_t part, uint32_t k) {
  uint64_t h = Mix(seed + kGolden);
  h = Mix(h ^ (trial + 1) * kGolden);
  h = Mix(h ^ ((uint64_t{part} << 32 | k) + 1) * kGolden);
  return static_cast<double>(h >> 11) * 0x1.0p-53;
}

}  // namespace

double PortableLog(double x) {
  int e = 0;
  double m = std::frexp(x, &e);  // x = m 2^e, m in [0.5, 1): exact
  if (m < 0.70710678118654752440) {
    m *= 2;
    --e;
  }
  // ln m = 2 atanh(t) = 2 (t + t^3/3 + t^5/5 + ...) with |t| < 0.172.
  const double t = (m - 1) / (m + 1), t2 = t * t;
  double sum = 0, power = t;
  for (int k = 1; k < 40; k += 2) {
    sum += power / k;
    power *= t2;
  }
  return 2 * sum + e * 0.69314718055994530942;
}

double Deviation(uint64_t seed, uint64_t trial, uint32_t part, Distribution distribution) {
  if (distribution == Distribution::Uniform) return 2 * Uniform(seed, trial, part, 0) - 1;
  // Marsaglia's polar method, drawing again until the normal number falls
  // within three standard deviations (99.73% of the time at once).
  for (uint32_t k = 0; k < 200; k += 2) {
    const double a = 2 * Uniform(seed, trial, part, k) - 1;
    const double b = 2 * Uniform(seed, trial, part, k + 1) - 1;
    const double s = a * a + b * b;
    if (s >= 1 || s == 0) continue;
    const double z = a * std::sqrt(-2 * PortableLog(s) / s);
    if (std::fabs(z) <= 3) return z / 3;
  }
  return 0;  // a hundred misses in a row: not in this universe
}

}  // namespace drenik
