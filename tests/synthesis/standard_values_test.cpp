#include "synthesis/standard_values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "core/runtime_error.h"
#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

const double kE24[] = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0,
                       3.3, 3.6, 3.9, 4.3, 4.7, 5.1, 5.6, 6.2, 6.8, 7.5, 8.2, 9.1};

bool IsE24(double v) {
  const double mantissa = v / std::pow(10.0, std::floor(std::log10(v) + 1e-6));
  for (double e : kE24) {
    if (std::abs(mantissa / e - 1) < 1e-5) return true;
  }
  return false;
}

TEST(NearestStandard, WorkedValues) {
  EXPECT_NEAR(NearestStandard(150e-12f), 150e-12, 150e-12 * 1e-6);
  EXPECT_NEAR(NearestStandard(95e-12f), 91e-12, 91e-12 * 1e-6);
  EXPECT_NEAR(NearestStandard(2.2e-6f), 2.2e-6, 2.2e-6 * 1e-6);
  EXPECT_NEAR(NearestStandard(2.3e-6f), 2.4e-6, 2.4e-6 * 1e-6);
  // Just above a decade boundary the lower neighbour is 0.91 of the decade below.
  EXPECT_NEAR(NearestStandard(1.02e-9f), 1.0e-9, 1e-9 * 1e-6);
  EXPECT_NEAR(NearestStandard(0.94e-9f), 0.91e-9, 1e-9 * 1e-6);

  // Between 100 pF and 110 pF the switch point is their geometric mean.
  const float p100 = NearestStandard(100e-12f);
  const float p110 = NearestStandard(110e-12f);
  const double mean = std::sqrt(double(p100) * p110);
  EXPECT_NEAR(mean, 104.88e-12, 0.01e-12);
  EXPECT_EQ(NearestStandard(static_cast<float>(mean * 1.00001)), p110);
  EXPECT_EQ(NearestStandard(static_cast<float>(mean * 0.99999)), p100);
}

TEST(NearestStandard, EveryResultIsTheNearestSeriesValue) {
  // Over twelve decades: the result is an E24 value, no further than half the
  // widest step of the series (1.3 -> 1.5) away by ratio, and a standard
  // value maps onto itself.
  const double halfStep = std::sqrt(1.5 / 1.3) * (1 + 1e-6);
  for (double v = 1e-13; v < 1e-1; v *= 1.0137) {
    const float r = NearestStandard(static_cast<float>(v));
    ASSERT_TRUE(IsE24(r)) << v << " -> " << r;
    ASSERT_LE(std::max(r / v, v / r), halfStep) << v;
    // (Only nearly: 0.091 x 10^k and 0.91 x 10^(k-1) are different float
    // products, so a 9.1 value found as a lower neighbour can move by an ulp.)
    ASSERT_NEAR(NearestStandard(r), r, r * 1e-6) << r;
  }
}

TEST(NearestStandard, ValuesWithoutNeighboursComeBackUnchanged) {
  EXPECT_EQ(NearestStandard(0.0f), 0.0f);
  EXPECT_EQ(NearestStandard(-1e-9f), -1e-9f);
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_EQ(NearestStandard(inf), inf);
  EXPECT_TRUE(std::isnan(NearestStandard(std::numeric_limits<float>::quiet_NaN())));
  EXPECT_EQ(NearestStandard(3e38f), 3e38f);
}

DesignRecord Ladder() {
  DesignRecord d;
  d.Stages = 4;
  d.C = {0, 95e-12f, 0, 150e-12f, 104e-12f};
  d.L = {0, 0, 2.3e-6f, 0, 1e-6f};
  d.Cstd[2] = 5;  // left from an earlier design
  return d;
}

TEST(StandardParts, NearestPartsAndTheTwoValueModes) {
  DesignRecord d = Ladder();
  d.C[5] = 1e-9f;  // beyond Stages
  NearestParts(d);
  EXPECT_NEAR(d.Cstd[1], 91e-12, 1e-17);
  EXPECT_EQ(d.Cstd[2], 5);  // skipped: no capacitor there
  EXPECT_NEAR(d.Cstd[4], 100e-12, 1e-17);
  EXPECT_EQ(d.Cstd[5], 0);
  EXPECT_EQ(d.Lstd[1], 0);
  EXPECT_NEAR(d.Lstd[2], 2.4e-6, 1e-12);

  d = Ladder();
  d.Cstd[2] = 0;  // as the denormalization leaves it
  NearestParts(d);
  CapsRetuneInductors(d);
  EXPECT_EQ(d.C[1], d.Cstd[1]);
  EXPECT_EQ(d.C[2], 0);
  EXPECT_EQ(d.L[2], 2.3e-6f);  // an inductor alone is not retuned
  EXPECT_NEAR(double(d.L[4]) * d.C[4], 1e-6 * 104e-12, 1e-6 * 104e-12 * 1e-6);
  EXPECT_NEAR(d.L[4], 1.04e-6, 1e-12);

  NearestParts(d);
  Inductors(d);
  EXPECT_EQ(d.L[1], 0);
  EXPECT_NEAR(d.L[2], 2.4e-6, 1e-12);
  EXPECT_NEAR(d.L[4], 1.0e-6, 1e-12);

  d.Stages = 21;
  EXPECT_THROW(NearestParts(d), RunTimeError);
  EXPECT_THROW(CapsRetuneInductors(d), RunTimeError);
  EXPECT_THROW(Inductors(d), RunTimeError);
}

TEST(StandardParts, FivePercentCapacitorsKeepEveryTrapTuned) {
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    for (float width : {4.2e6f, 1.234e5f, 98.7e6f}) {
      DesignRecord d;
      d.Pi = static_cast<float>(4 * std::atan(1.0));
      d.Family = kZelmar;
      d.Order = 5;
      d.Topology = topology;
      d.Rsource = 50;
      d.Width = width;
      Zelmar(d);
      Denormalize(d);
      const DesignRecord exact = d;
      NearestParts(d);
      CapsRetuneInductors(d);
      int traps = 0;
      for (int k = 1; k <= d.Stages; ++k) {
        if (d.ElementType[k] != 6 && d.ElementType[k] != 7) continue;
        ++traps;
        const double before = double(exact.L[k]) * exact.C[k];
        const double after = double(d.L[k]) * d.C[k];
        EXPECT_NEAR(after / before, 1.0, 3e-7) << topology << " position " << k;
        EXPECT_TRUE(IsE24(d.C[k]));
      }
      EXPECT_EQ(traps, 2) << topology;
    }
  }
}

}  // namespace
}  // namespace drenik
