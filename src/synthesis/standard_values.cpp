// Rounding to the 5% (E24) series of stock parts.

#include "synthesis/standard_values.h"

#include <array>
#include <cmath>
#include <string>

#include "synthesis/e_series.h"

namespace drenik {
namespace {

// E24 multipliers of the decade 0.1..1, as single-precision floats. Entry 0
// is the last value of the decade below, so a value just above a decade
// boundary has a lower neighbour. A figure divided by 100 in float is the
// float nearest that decimal fraction, as the literal 0.15f is; the check
// below proves every entry the same float as the table always held.
constexpr std::array<float, 25> kStandardSeries = [] {
  std::array<float, 25> series{};
  series[0] = static_cast<float>(kE24Figures.back()) / 1000.0f;
  for (size_t i = 0; i < kE24Figures.size(); ++i)
    series[i + 1] = static_cast<float>(kE24Figures[i]) / 100.0f;
  return series;
}();
static_assert(kStandardSeries ==
              std::array<float, 25>{0.091f, 0.10f, 0.11f, 0.12f, 0.13f, 0.15f, 0.16f, 0.18f, 0.20f,
                                    0.22f,  0.24f, 0.27f, 0.30f, 0.33f, 0.36f, 0.39f, 0.43f, 0.47f,
                                    0.51f,  0.56f, 0.62f, 0.68f, 0.75f, 0.82f, 0.91f});

std::string StagesFault(const DesignRecord& d) {
  if (d.Stages > kMaxPositions)
    return "Subscript out of range: the ladder has room for " + std::to_string(kMaxPositions) +
           " positions, not " + std::to_string(d.Stages) + ".";
  return {};
}

}  // namespace

float NearestStandard(float v) {
  // The decade scan only ends once a series value exceeds v. A value that is
  // not a positive finite number has no meaningful neighbour (and infinity or
  // NaN would never be exceeded), so it comes back unchanged.
  if (!(v > 0) || !std::isfinite(v)) return v;

  // The decades are built up in single precision from 1e-13, so a standard
  // value carries that rounding (100 pF is close to, not exactly, 1e-10).
  float decade = 1e-13f;
  int i = 1;
  float upper = 0;
  for (;;) {
    for (i = 1; i <= 24; ++i) {
      upper = decade * kStandardSeries[i];
      if (upper > v) break;
    }
    if (i <= 24) break;
    decade = decade * 10.0f;
    if (std::isinf(decade)) return v;  // beyond the float range: nothing to round to
  }
  const float lower = decade * kStandardSeries[i - 1];

  // The nearer neighbour by ratio; a tie goes up.
  const double r1 = static_cast<double>(v) / lower;
  const double r2 = static_cast<double>(upper) / v;
  return r2 <= r1 ? upper : lower;
}

EngineReport NearestParts(DesignRecord& d) {
  if (std::string fault = StagesFault(d); !fault.empty()) return EngineReport::Fault(fault);
  for (int j = 1; j <= d.Stages; ++j) {
    if (d.C[j] != 0) d.Cstd[j] = NearestStandard(d.C[j]);
  }
  for (int j = 1; j <= d.Stages; ++j) {
    if (d.L[j] != 0) d.Lstd[j] = NearestStandard(d.L[j]);
  }
  return {};
}

EngineReport CapsRetuneInductors(DesignRecord& d) {
  if (std::string fault = StagesFault(d); !fault.empty()) return EngineReport::Fault(fault);
  for (int j = 1; j <= d.Stages; ++j) {
    // Keeping L*C keeps the resonance of a trap branch where it was designed.
    if (d.Cstd[j] != 0) {
      d.L[j] = static_cast<float>(static_cast<double>(d.C[j]) * d.L[j] / d.Cstd[j]);
    }
    d.C[j] = d.Cstd[j];
  }
  return {};
}

EngineReport Inductors(DesignRecord& d) {
  if (std::string fault = StagesFault(d); !fault.empty()) return EngineReport::Fault(fault);
  for (int j = 1; j <= d.Stages; ++j) d.L[j] = d.Lstd[j];
  return {};
}

}  // namespace drenik
