#include "synthesis/standard_values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

bool IsE24(double v) {
  const double e24[] = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0,
                        3.3, 3.6, 3.9, 4.3, 4.7, 5.1, 5.6, 6.2, 6.8, 7.5, 8.2, 9.1};
  const double mantissa = v / std::pow(10.0, std::floor(std::log10(v) + 1e-6));
  for (double e : e24) {
    if (std::abs(mantissa / e - 1) < 1e-5) return true;
  }
  return false;
}

#define EXPECT_REL(a, b) EXPECT_NEAR((a) / (b), 1.0, 1e-6)

TEST(NearestStandard, WorkedValuesAndSwitchPoint) {
  EXPECT_REL(NearestStandard(150e-12f), 150e-12);
  EXPECT_REL(NearestStandard(95e-12f), 91e-12);  // 91 / 100 pF, nearer by ratio
  EXPECT_REL(NearestStandard(2.3e-6f), 2.4e-6);
  EXPECT_REL(NearestStandard(1.02e-9f), 1.0e-9);
  const float p100 = NearestStandard(100e-12f), p110 = NearestStandard(110e-12f);
  const double mean = std::sqrt(double(p100) * p110);  // about 104.88 pF
  EXPECT_NEAR(mean, 104.88e-12, 0.01e-12);
  EXPECT_EQ(NearestStandard(static_cast<float>(mean * 1.00001)), p110);
  EXPECT_EQ(NearestStandard(static_cast<float>(mean * 0.99999)), p100);

  // Twelve decades: E24, within half the widest step (1.3 to 1.5), stable to an ulp.
  const double halfStep = std::sqrt(1.5 / 1.3) * (1 + 1e-6);
  for (double v = 1e-13; v < 1e-1; v *= 1.0137) {
    const float r = NearestStandard(static_cast<float>(v));
    ASSERT_TRUE(IsE24(r)) << v;
    ASSERT_LE(std::max(r / v, v / r), halfStep) << v;
    ASSERT_NEAR(NearestStandard(r), r, r * 1e-6) << v;
  }

  // Nothing to round to: returned unchanged instead of scanning forever.
  const float inf = std::numeric_limits<float>::infinity();
  for (float v : {0.0f, -1e-9f, inf, 3e38f}) EXPECT_EQ(NearestStandard(v), v);
  EXPECT_TRUE(std::isnan(NearestStandard(std::nanf(""))));
}

TEST(StandardParts, FivePercentCapacitorsThenInductors) {
  DesignRecord d;
  d.Stages = 4;
  d.C = {0, 95e-12f, 0, 150e-12f, 104e-12f, 1e-9f};
  d.L = {0, 0, 2.3e-6f, 0, 1e-6f};
  ASSERT_TRUE(NearestParts(d).Ok());
  EXPECT_EQ(d.Cstd[2] + d.Cstd[5] + d.Lstd[1], 0);  // empty or beyond Stages: skipped
  ASSERT_TRUE(CapsRetuneInductors(d).Ok());         // retuned traps: see the test below
  EXPECT_REL(d.C[1], 91e-12);
  EXPECT_EQ(d.L[2], 2.3e-6f);  // an inductor alone is not retuned
  ASSERT_TRUE(NearestParts(d).Ok());
  ASSERT_TRUE(Inductors(d).Ok());
  EXPECT_EQ(d.L[1], 0);
  EXPECT_REL(d.L[2], 2.4e-6);
  EXPECT_REL(d.L[4], 1.0e-6);
  d.Stages = kMaxPositions + 1;
  EXPECT_FALSE(NearestParts(d).Ok());
  EXPECT_FALSE(CapsRetuneInductors(d).Ok());
  EXPECT_FALSE(Inductors(d).Ok());
}

TEST(StandardParts, FivePercentCapacitorsKeepEveryTrapTuned) {
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    for (float width : {4.2e6f, 1.234e5f, 98.7e6f}) {
      DesignRecord d;
      d.Pi = 3.14159274f, d.Order = 5, d.Topology = topology, d.Rsource = 50, d.Width = width;
      ASSERT_TRUE(ZelmarPrototype(d).Ok() && Denormalize(d).Ok());
      const DesignRecord exact = d;
      ASSERT_TRUE(NearestParts(d).Ok());
      ASSERT_TRUE(CapsRetuneInductors(d).Ok());
      int traps = 0;
      for (int k = 1; k <= d.Stages; ++k) {
        if (d.ElementType[k] != 6 && d.ElementType[k] != 7) continue;
        ++traps;
        EXPECT_NEAR(double(d.L[k]) * d.C[k] / (double(exact.L[k]) * exact.C[k]), 1, 3e-7);
        EXPECT_TRUE(IsE24(d.C[k]));
      }
      EXPECT_EQ(traps, 2) << topology;
    }
  }
}

}  // namespace
}  // namespace drenik
