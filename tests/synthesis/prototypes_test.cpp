#include "synthesis/prototypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "core/runtime_error.h"
#include "support/recording_platform.h"
#include "synthesis/ladder_response.h"

namespace drenik {
namespace {

using testing::LossDb;
using testing::PrototypeLadder;

// Garbage everywhere the routines must clear or must leave alone.
DesignRecord Dirty(int16_t order) {
  DesignRecord d;
  d.G.fill(9);
  d.H.fill(9);
  d.Order = order;
  d.Rsource = 75;
  d.Rload = 33;
  d.Apass = 0.7f;
  d.Astop = 50;
  d.CauerFlag = 1;
  return d;
}

void ExpectClearedBeyond(const DesignRecord& d, int n) {
  for (int j = n + 1; j <= kMaxPositions; ++j) {
    EXPECT_EQ(d.G[j], 0) << j;
  }
  for (int j = 1; d.CauerFlag == 0 && j <= kMaxPositions; ++j) {
    EXPECT_EQ(d.H[j], 0) << j;
  }
  // The clearing covers 1..20 only.
  EXPECT_EQ(d.G[0], 9);
  EXPECT_EQ(d.H[0], 9);
  EXPECT_EQ(d.G[21], 9);
  EXPECT_EQ(d.H[21], 9);
}

// Loss extremes over 0 < w <= 1 sampled densely.
std::pair<double, double> PassbandExtremes(const DesignRecord& ladder) {
  double lo = 1e9, hi = -1e9;
  for (int i = 1; i <= 20000; ++i) {
    const double a = LossDb(ladder, i / 20000.0);
    lo = std::min(lo, a);
    hi = std::max(hi, a);
  }
  return {lo, hi};
}

TEST(Butterworth, TextbookValuesThreeDbCutoffAndBookkeeping) {
  // Classic maximally flat tables (symmetric, so only the first half).
  const std::vector<std::vector<double>> table = {
      {1.0, 2.0},
      {0.7654, 1.8478},
      {0.6180, 1.6180, 2.0},
      {0.5176, 1.4142, 1.9319},
      {0.4450, 1.2470, 1.8019, 2.0},
  };
  for (int16_t n = 3; n <= 7; ++n) {
    DesignRecord d = Dirty(n);
    Butterworth(d);
    const auto& half = table[n - 3];
    for (int j = 1; j <= n; ++j) {
      const int m = std::min(j, n + 1 - j);
      EXPECT_NEAR(d.G[j], half[m - 1], 5e-5) << "n=" << n << " g" << j;
    }
    ExpectClearedBeyond(d, n);
    EXPECT_EQ(d.Apass, 0);
    EXPECT_EQ(d.Astop, 0);
    EXPECT_EQ(d.RloadNormalized, 1.0f);
    EXPECT_EQ(d.CauerFlag, 0);
    EXPECT_EQ(d.Rload, 33);  // only the Bessel routine touches Rload

    const DesignRecord ladder = PrototypeLadder(d);
    EXPECT_NEAR(LossDb(ladder, 1.0), 10 * std::log10(2.0), 1e-5) << n;
    EXPECT_NEAR(LossDb(ladder, 0.1), 0, 1e-5) << n;
  }
}

// Reference g-values in the textbook arrangement: beta = ln coth(Ap / 17.37),
// gamma = sinh(beta / 2n), all in double, and the even-order load
// coth^2(beta / 4).
struct Reference {
  std::vector<double> g;
  double load;
};
Reference ChebyshevReference(double ap, int n) {
  const double beta = std::log(1.0 / std::tanh(ap * std::log(10.0) / 40.0));
  const double gamma = std::sinh(beta / (2 * n));
  auto a = [&](int k) { return std::sin((2 * k - 1) * std::numbers::pi / (2 * n)); };
  auto b = [&](int k) { return gamma * gamma + std::pow(std::sin(k * std::numbers::pi / n), 2); };
  Reference r{{0, 2 * a(1) / gamma}, 1.0};
  for (int k = 2; k <= n; ++k) r.g.push_back(4 * a(k - 1) * a(k) / (b(k - 1) * r.g[k - 1]));
  if (n % 2 == 0) r.load = std::pow(std::tanh(beta / 4), 2);
  return r;
}

TEST(Chebyshev, ValuesMatchTextbookFormulaAndRippleOfTheLadder) {
  for (const float ripple : {0.01f, 0.044f, 0.2f}) {
    for (int16_t n = 3; n <= 7; ++n) {
      DesignRecord d = Dirty(n);
      d.Apass = ripple;
      Chebyshev(d);
      SCOPED_TRACE(::testing::Message() << "ripple " << ripple << " n=" << n);
      const Reference ref = ChebyshevReference(ripple, n);
      for (int j = 1; j <= n; ++j) EXPECT_NEAR(d.G[j], ref.g[j], 5e-5) << "g" << j;
      EXPECT_NEAR(d.RloadNormalized, ref.load, 5e-6);
      ExpectClearedBeyond(d, n);
      EXPECT_EQ(d.Apass, ripple);
      EXPECT_EQ(d.Astop, 0);
      EXPECT_EQ(d.CauerFlag, 0);

      // The ladder itself: equiripple between 0 and Apass up to 1 rad/s, down
      // by exactly the ripple at 1 rad/s, and falling off above.
      const DesignRecord ladder = PrototypeLadder(d);
      const auto [lo, hi] = PassbandExtremes(ladder);
      EXPECT_NEAR(lo, 0, 1e-5);
      EXPECT_NEAR(hi, ripple, 2e-5);
      EXPECT_NEAR(LossDb(ladder, 1.0), ripple, 2e-5);
      EXPECT_NEAR(LossDb(ladder, 0.0001), n % 2 == 0 ? ripple : 0, 2e-5);
      EXPECT_GT(LossDb(ladder, 1.05), ripple);
    }
  }
}

TEST(Chebyshev, EvenOrderLoadRatio) {
  // Published source-to-load ratios of even-order ladders: 1.1007 at 0.01 dB
  // and 1.5386 at 0.2 dB, i.e. RloadNormalized = (sqrt(1 + eps^2) - eps)^2.
  DesignRecord d = Dirty(4);
  d.Apass = 0.01f;
  Chebyshev(d);
  EXPECT_NEAR(1.0 / d.RloadNormalized, 1.1007, 1e-4);
  d.Apass = 0.2f;
  d.Order = 6;
  Chebyshev(d);
  EXPECT_NEAR(1.0 / d.RloadNormalized, 1.5386, 1e-4);
  const double eps = std::sqrt(std::pow(10.0, 0.02) - 1);
  EXPECT_NEAR(d.RloadNormalized, std::pow(std::sqrt(1 + eps * eps) - eps, 2), 1e-6);
}

TEST(Chebyshev, ImpossibleInputsStopWithRunTimeError) {
  DesignRecord d = Dirty(5);
  d.Apass = 0;  // no ripple: 1 / epsilon
  EXPECT_THROW(Chebyshev(d), RunTimeError);
  d.Apass = 0.2f;
  d.Order = 0;
  EXPECT_THROW(Chebyshev(d), RunTimeError);
  d.Order = 30;
  EXPECT_THROW(Chebyshev(d), RunTimeError);
  EXPECT_THROW(Butterworth(d), RunTimeError);
}

TEST(Bessel, TableThreeDbCutoffAndDelay) {
  // The table is normalized to the 3 dB point; a Bessel ladder normalized to
  // 1 s delay has its 3 dB point at these frequencies, so here the DC delay
  // must equal them.
  const double delay[] = {1.7557, 2.1139, 2.4274, 2.7034, 2.9517};
  for (int16_t n = 3; n <= 7; ++n) {
    DesignRecord d = Dirty(n);
    Bessel(d);
    SCOPED_TRACE(n);
    ExpectClearedBeyond(d, n);
    for (int j = 2; j <= n; ++j) EXPECT_LT(d.G[j], d.G[j - 1]);
    EXPECT_EQ(d.Rload, d.Rsource);
    EXPECT_EQ(d.Apass, 0);
    EXPECT_EQ(d.Astop, 0);
    EXPECT_EQ(d.RloadNormalized, 1.0f);
    EXPECT_EQ(d.CauerFlag, 0);
    const DesignRecord ladder = PrototypeLadder(d);
    EXPECT_NEAR(LossDb(ladder, 1.0), 10 * std::log10(2.0), 5e-4);
    EXPECT_NEAR(testing::GroupDelay(ladder, 1e-4), delay[n - 3], 2e-4);
  }
  DesignRecord d = Dirty(3);
  Bessel(d);
  EXPECT_EQ(d.G[1], 2.2034f);
  EXPECT_EQ(d.G[2], 0.9705f);
  EXPECT_EQ(d.G[3], 0.3374f);

  for (int16_t n : {0, 2, 8, 100}) {
    d = Dirty(n);
    Bessel(d);
    ExpectClearedBeyond(d, 0);
    EXPECT_EQ(d.Rload, 75);
  }
}

TEST(Zelmar, FixedDesignWithTwoTraps) {
  for (int16_t n : {3, 5, 7}) {
    DesignRecord d = Dirty(n);
    Zelmar(d);
    EXPECT_EQ(d.G[1], 1.657f);
    EXPECT_EQ(d.G[2], 0.23424f);
    EXPECT_EQ(d.G[3], 3.2137f);
    EXPECT_EQ(d.G[4], 0.53364f);
    EXPECT_EQ(d.G[5], 1.47f);
    EXPECT_EQ(d.H[2], 0.76896f);
    EXPECT_EQ(d.H[4], 0.65676f);
    for (int j : {1, 3, 5, 6, 7, 20}) EXPECT_EQ(d.H[j], 0) << j;
    ExpectClearedBeyond(d, 5);
    EXPECT_EQ(d.Apass, 0.01f);
    EXPECT_EQ(d.Astop, 0);
    EXPECT_EQ(d.RloadNormalized, 1.0f);
    EXPECT_EQ(d.CauerFlag, 1);
    EXPECT_EQ(d.Rload, 33);
  }
  // Transmission zeros where each series arm resonates: 1.689 and 2.356 rad/s.
  DesignRecord d = Dirty(5);
  Zelmar(d);
  const DesignRecord ladder = PrototypeLadder(d);
  EXPECT_GT(LossDb(ladder, 1 / std::sqrt(0.53364 * 0.65676)), 80);
  EXPECT_GT(LossDb(ladder, 1 / std::sqrt(0.23424 * 0.76896)), 80);
  EXPECT_LT(LossDb(ladder, 1.0), 0.2);
  for (double w = 1.5; w < 20; w *= 1.05) EXPECT_GT(LossDb(ladder, w), 30) << w;
}

TEST(DesignPrototype, DispatchesOnFamily) {
  testing::RecordingPlatform platform;
  DesignRecord d = Dirty(4);
  d.Apass = 0.2f;
  d.Family = kChebyshev;
  DesignPrototype(d, platform);
  EXPECT_LT(d.RloadNormalized, 1);
  d.Family = kButterworth;
  DesignPrototype(d, platform);
  EXPECT_FLOAT_EQ(d.G[2], 1.8477591f);
  d.Family = kZelmar;
  DesignPrototype(d, platform);
  EXPECT_EQ(d.H[2], 0.76896f);
  d.Family = kBessel;
  DesignPrototype(d, platform);
  EXPECT_EQ(d.G[1], 2.2404f);

  const DesignRecord before = d;
  for (int16_t family : {0, 6, -1}) {
    d.Family = family;
    DesignPrototype(d, platform);
    EXPECT_EQ(d.G, before.G);
    EXPECT_EQ(d.H, before.H);
  }
  d.Family = kCauer;
  d.Order = 2;
  DesignPrototype(d, platform);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "The Cauer family requires a minimum order of three");
  EXPECT_EQ(d.G, before.G);
}

}  // namespace
}  // namespace drenik
