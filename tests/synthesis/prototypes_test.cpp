#include "synthesis/prototypes.h"

#include "synthesis/families.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "synthesis/ladder_response.h"

namespace drenik {
namespace {

using testing::LossDb;
using testing::PrototypeLadder;
const double k3dB = 10 * std::log10(2.0);

// Garbage everywhere a routine must clear or leave alone.
DesignRecord Dirty(int16_t order, float apass = 0.7f) {
  DesignRecord d;
  d.G.fill(9), d.H.fill(9);
  d.Order = order, d.Apass = apass, d.Astop = 50, d.CauerFlag = 1;
  d.Rsource = 75, d.Rload = 33;
  return d;
}

void ExpectBookkeeping(const DesignRecord& d, int n, float apass, float rloadNorm) {
  for (int j = 1; j <= kPrototypePositions; ++j)
    EXPECT_TRUE((j <= n || d.G[j] == 0) && (d.CauerFlag != 0 || d.H[j] == 0)) << j;
  EXPECT_EQ(d.G[0] + d.H[0] + d.G[21] + d.H[21], 36);  // outside 1..20: untouched
  EXPECT_TRUE(d.Apass == apass && d.Astop == 0);
  EXPECT_TRUE(rloadNorm == 0 || d.RloadNormalized == rloadNorm);
}

TEST(Prototypes, ChebyshevAgainstTextbookFormulaAndLadderRipple) {
  for (const float ap : {0.01f, 0.044f, 0.2f}) {
    // Textbook: beta = ln coth(Ap / 17.37), gamma = sinh(beta / 2n), even load tanh^2(beta / 4).
    const double beta = std::log(1 / std::tanh(ap * std::log(10.0) / 40));
    for (int16_t n = 3; n <= 7; ++n) {
      SCOPED_TRACE(::testing::Message() << ap << " dB, n=" << n);
      DesignRecord d = Dirty(n, ap);
      ASSERT_TRUE(EqualRipplePrototype(d).Ok());
      const double gamma = std::sinh(beta / (2 * n)), pi = std::numbers::pi;
      double ref = 0;
      for (int k = 1; k <= n; ++k) {
        const double a0 = std::sin((2 * k - 3) * pi / (2 * n)),
                     a1 = std::sin((2 * k - 1) * pi / (2 * n));
        const double b0 = gamma * gamma + std::pow(std::sin((k - 1) * pi / n), 2);
        ref = k == 1 ? 2 * a1 / gamma : 4 * a0 * a1 / (b0 * ref);
        EXPECT_NEAR(d.G[k], ref, 5e-5) << k;
      }
      ExpectBookkeeping(d, n, ap, n % 2 ? 1.0f : 0);
      EXPECT_NEAR(d.RloadNormalized, n % 2 ? 1 : std::pow(std::tanh(beta / 4), 2), 5e-6);
      EXPECT_EQ(d.CauerFlag, 0);
      // The ladder loses Ap at the cutoff, and at DC too for even orders.
      const DesignRecord ladder = PrototypeLadder(d);
      EXPECT_NEAR(LossDb(ladder, 1.0), ap, 2e-5);
      EXPECT_NEAR(LossDb(ladder, 1e-4), n % 2 ? 0 : ap, 2e-5);
    }
  }
  // Published source-to-load ratios of even orders: 1.1007 at 0.01 dB, 1.5386 at 0.2 dB.
  DesignRecord d = Dirty(4, 0.01f), e = Dirty(6, 0.2f);
  ASSERT_TRUE(EqualRipplePrototype(d).Ok() && EqualRipplePrototype(e).Ok());
  EXPECT_NEAR(1 / d.RloadNormalized, 1.1007, 1e-4);
  EXPECT_NEAR(1 / e.RloadNormalized, 1.5386, 1e-4);
  // Faults are reported instead of leaving inf or NaN behind.
  for (auto [ap, n] : {std::pair{0.0f, 5}, {0.2f, 0}, {0.2f, 30}}) {
    d.Apass = ap, d.Order = int16_t(n);
    EXPECT_FALSE(EqualRipplePrototype(d).Ok()) << ap << " dB, n=" << n;
  }
  EXPECT_FALSE(MaximallyFlatPrototype(d).Ok());
}

TEST(Prototypes, ButterworthAndBesselTablesCutOffAtThreeDb) {
  const double half[5][4] = {{1, 2},
                             {0.7654, 1.8478},
                             {0.6180, 1.6180, 2},
                             {0.5176, 1.4142, 1.9319},
                             {0.4450, 1.2470, 1.8019, 2}};
  // Bessel at 3 dB at 1 rad/s: its DC delay is the 3 dB frequency of the 1-second-delay ladders.
  const double delay[] = {1.7557, 2.1139, 2.4274, 2.7034, 2.9517};
  for (int16_t n = 3; n <= 7; ++n) {
    DesignRecord b = Dirty(n), t = Dirty(n);
    ASSERT_TRUE(MaximallyFlatPrototype(b).Ok() && LinearPhasePrototype(t).Ok());
    for (int j = 1; j <= n; ++j) EXPECT_NEAR(b.G[j], half[n - 3][std::min(j, n + 1 - j) - 1], 5e-5);
    for (int j = 2; j <= n; ++j) EXPECT_LT(t.G[j], t.G[j - 1]);
    ExpectBookkeeping(b, n, 0, 1), ExpectBookkeeping(t, n, 0, 1);
    EXPECT_EQ(b.CauerFlag + t.CauerFlag, 0);
    EXPECT_TRUE(b.Rload == 33 && t.Rload == 75);  // only the Bessel routine sets Rload
    EXPECT_NEAR(LossDb(PrototypeLadder(b), 1.0), k3dB, 1e-5);
    const DesignRecord ladder = PrototypeLadder(t);
    EXPECT_NEAR(LossDb(ladder, 1.0), k3dB, 5e-4) << n;
    EXPECT_NEAR(-std::arg(testing::LadderGain(ladder, 1e-4)) / 1e-4, delay[n - 3], 2e-4) << n;
  }
  for (int16_t n : {0, 1, 16}) {  // no Bessel design of these orders
    DesignRecord d = Dirty(n);
    ASSERT_TRUE(LinearPhasePrototype(d).Ok());
    ExpectBookkeeping(d, 0, 0, 1);
  }
}

TEST(Prototypes, ZelmarAndDispatch) {
  DesignRecord d = Dirty(7);
  d.Family = kZelmar;
  ASSERT_TRUE(DesignPrototype(d).Ok());
  ExpectBookkeeping(d, 5, 0.01f, 1);
  EXPECT_EQ(d.CauerFlag, 1);
  d.Order = 5;  // passband to 1 rad/s, two traps, 30 dB from 1.5 rad/s up
  const DesignRecord ladder = PrototypeLadder(d);
  EXPECT_LT(LossDb(ladder, 1.0), 0.2);
  for (double w = 1.5; w < 20; w *= 1.05) EXPECT_GT(LossDb(ladder, w), 30) << w;

  d.Family = kBessel;
  ASSERT_TRUE(DesignPrototype(d).Ok());
  EXPECT_EQ(d.G[1], 2.2582f);
  const DesignRecord before = d;
  for (int16_t family : {0, 99}) {
    d.Family = family;
    ASSERT_TRUE(DesignPrototype(d).Ok());
    EXPECT_EQ(d.G, before.G);
  }
  d.Family = kCauer, d.Order = 2;
  EXPECT_FALSE(DesignPrototype(d).notice.empty());  // reached the Cauer routine's warning
}

}  // namespace
}  // namespace drenik
