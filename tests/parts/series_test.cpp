// E-series values checked against the IEC 60063 tables written out here on
// their own: membership in every decade, neighbours across decade boundaries
// and parallel pairs.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "parts/series_values.h"

namespace drenik::testing {
namespace {

// IEC 60063, significant figures of one decade.
constexpr const char* kIecE24 =
    "10 11 12 13 15 16 18 20 22 24 27 30 33 36 39 43 47 51 56 62 68 75 82 91";
constexpr const char* kIecE96 =
    "100 102 105 107 110 113 115 118 121 124 127 130 133 137 140 143 147 150 154 158 162 165 169 "
    "174 178 182 187 191 196 200 205 210 215 221 226 232 237 243 249 255 261 267 274 280 287 294 "
    "301 309 316 324 332 340 348 357 365 374 383 392 402 412 422 432 442 453 464 475 487 499 511 "
    "523 536 549 562 576 590 604 619 634 649 665 681 698 715 732 750 768 787 806 825 845 866 887 "
    "909 931 953 976";

// The mantissas 1 <= m < 10 of a series: E12 and E6 are every second and
// fourth E24 value, E48 every second E96 value.
std::vector<double> Mantissas(ESeries s) {
  const bool three = s == ESeries::E48 || s == ESeries::E96;
  const int step = s == ESeries::E6 ? 4 : (s == ESeries::E12 || s == ESeries::E48) ? 2 : 1;
  std::istringstream in(three ? kIecE96 : kIecE24);
  std::vector<double> m;
  int k = 0;
  for (double v; in >> v; ++k)
    if (k % step == 0) m.push_back(v / (three ? 100 : 10));
  return m;
}

constexpr ESeries kAll[] = {ESeries::E6, ESeries::E12, ESeries::E24, ESeries::E48, ESeries::E96};

TEST(ESeriesValues, MembersInEveryDecadeAndNeighboursAcrossDecadeBoundaries) {
  for (ESeries s : kAll) {
    const std::vector<double> m = Mantissas(s);
    ASSERT_EQ(m.size(), InfoOf(s).values.size()) << InfoOf(s).name;
    for (int decade = -13; decade <= -4; ++decade) {
      const double scale = std::pow(10.0, decade);
      for (size_t i = 0; i < m.size(); ++i) {
        const double v = m[i] * scale;
        // Also as a stored float, which the record keeps.
        EXPECT_TRUE(InSeries(s, v) && InSeries(s, static_cast<float>(v))) << v;
        EXPECT_FALSE(InSeries(s, v * 1.004)) << v;
        // Just above a value: that value and the next, into the next decade.
        const double next = i + 1 < m.size() ? m[i + 1] * scale : m[0] * scale * 10;
        const Bracket b = SeriesBracket(s, v * 1.001).value();
        EXPECT_NEAR(b.lower / v, 1, 1e-12);
        EXPECT_NEAR(b.upper / next, 1, 1e-12);
        EXPECT_NEAR(*NearestInSeries(s, std::sqrt(v * next) * 1.0001) / next, 1, 1e-12);
      }
    }
  }
  // Three-figure values that the two-figure series round differently.
  for (double v : {2.74e-9, 3.01e-9, 3.32e-9, 4.75e-11, 8.25e-6})
    EXPECT_TRUE(InSeries(ESeries::E96, v) && !InSeries(ESeries::E24, v)) << v;
  for (double v : {2.7e-9, 3.0e-9, 3.3e-9, 4.7e-11, 8.2e-6})
    EXPECT_TRUE(InSeries(ESeries::E24, v) && !InSeries(ESeries::E48, v)) << v;
  // A value no part can have has no neighbours (once an endless scan).
  for (double v : {0.0, -1e-9, 1e-300, 1e300, HUGE_VAL, std::nan("")})
    EXPECT_FALSE(SeriesBracket(ESeries::E12, v) || NearestInSeries(ESeries::E12, v) ||
                 InSeries(ESeries::E12, v) || !PairsAround(ESeries::E12, v).empty())
        << v;
  EXPECT_EQ(ESeriesNamed("e48"), ESeries::E48);
  EXPECT_FALSE(ESeriesNamed("E7") || ESeriesNamed("E"));
}

TEST(ESeriesValues, PairsAreSeriesPartsAboveTheTrimLimitBracketingTheValue) {
  for (ESeries s : kAll) {
    for (double v : {1.3677e-10, 7.38683e-10, 9.95e-9, 1.0e-9, 4.4e-12}) {
      const std::vector<PartPair> pairs = PairsAround(s, v);
      ASSERT_FALSE(pairs.empty()) << v;
      for (const PartPair& p : pairs) {
        EXPECT_TRUE(InSeries(s, p.larger) && InSeries(s, p.smaller)) << v;
        EXPECT_GE(p.larger, p.smaller);
        EXPECT_GE(p.smaller, p.larger * InfoOf(s).tolerancePercent / 100 * (1 - 1e-9));
      }
      EXPECT_LE(pairs.front().Sum(), v * (1 + 1e-9));
      EXPECT_TRUE(pairs.size() == 1 || pairs.back().Sum() > v);
    }
  }
  // 738.683 pF from E24: 680 + 56 below, 470 + 270 (the first of three
  // ways to 740) above.
  const std::vector<PartPair> p = PairsAround(ESeries::E24, 7.38683e-10);
  ASSERT_EQ(p.size(), 2u);
  EXPECT_NEAR(p[0].larger, 6.8e-10, 1e-22);
  EXPECT_NEAR(p[0].smaller, 5.6e-11, 1e-22);
  EXPECT_NEAR(p[1].larger, 4.7e-10, 1e-22);
  EXPECT_NEAR(p[1].smaller, 2.7e-10, 1e-22);
}

}  // namespace
}  // namespace drenik::testing
