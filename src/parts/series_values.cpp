#include "parts/series_values.h"

#include <cmath>
#include <limits>

namespace drenik {
namespace {

// A stored float is within a part in ten million of the decimal value it
// stands for; a part in a million covers it with room.
constexpr double kSameValue = 1e-6;

// 10^n exactly for |n| <= 22, so that figure * 10^n and figure / 10^-n are
// the doubles nearest the decimal values (one correctly rounded operation on
// exact operands).
double Scaled(int figure, int power) {
  double p = 1;
  const int n = power < 0 ? -power : power;
  if (n > 22) return figure * std::pow(10.0, power);
  for (int k = 0; k < n; ++k) p *= 10;
  return power < 0 ? figure / p : figure * p;
}

// The series value at `index` of the decade that starts at 10^decade (the
// index may run past either end into the next decade).
double ValueAt(const ESeriesInfo& info, int decade, int index) {
  const int count = static_cast<int>(info.values.size());
  while (index < 0) {
    index += count;
    --decade;
  }
  while (index >= count) {
    index -= count;
    ++decade;
  }
  return Scaled(info.values[static_cast<size_t>(index)], decade - (info.figures - 1));
}

}  // namespace

std::optional<Bracket> SeriesBracket(ESeries series, double v) {
  // The scan below needs a decade to start from; a value outside the
  // floats' range has none (and would spin on a decade of zeros).
  if (!(v >= std::numeric_limits<float>::min() && v <= std::numeric_limits<float>::max()))
    return std::nullopt;
  const ESeriesInfo& info = InfoOf(series);
  const int decade = static_cast<int>(std::floor(std::log10(v)));
  // Scan from the top of the decade below (log10 may land a hair either side
  // of a decade boundary) to the first value above v.
  const double limit = v * (1 + kSameValue);
  double lower = ValueAt(info, decade, -1);
  for (int i = 0;; ++i) {
    const double value = ValueAt(info, decade, i);
    if (value > limit) return Bracket{lower, value};
    lower = value;
  }
}

std::optional<double> NearestInSeries(ESeries series, double v) {
  const std::optional<Bracket> b = SeriesBracket(series, v);
  if (!b) return std::nullopt;
  return b->upper / v <= v / b->lower ? b->upper : b->lower;
}

bool InSeries(ESeries series, double v) {
  const std::optional<Bracket> b = SeriesBracket(series, v);
  return b && std::fabs(b->lower / v - 1) <= kSameValue;
}

std::vector<PartPair> PairsAround(ESeries series, double v) {
  const double trim = InfoOf(series).tolerancePercent / 100.0;
  PartPair below, above;
  const std::optional<Bracket> half = SeriesBracket(series, v / 2);
  if (!half || !SeriesBracket(series, v)) return {};
  // The larger part runs over the series values from v/2 up to just below v;
  // the smaller one is either neighbour of what is left.
  for (double larger = half->lower; larger < v; larger = SeriesBracket(series, larger)->upper) {
    if (larger < v / 2 * (1 - kSameValue)) continue;
    const std::optional<Bracket> rest = SeriesBracket(series, v - larger);
    if (!rest) continue;  // v - larger below the smallest float
    for (double smaller : {rest->lower, rest->upper}) {
      if (smaller > larger * (1 + kSameValue) || smaller < larger * trim * (1 - kSameValue))
        continue;
      const PartPair pair{larger, smaller};
      const double sum = pair.Sum();
      if (sum <= v && sum > below.Sum()) below = pair;
      if (sum > v && (above.larger == 0 || sum < above.Sum())) above = pair;
    }
  }
  std::vector<PartPair> pairs;
  if (below.larger > 0) pairs.push_back(below);
  if (above.larger > 0) pairs.push_back(above);
  return pairs;
}

}  // namespace drenik
