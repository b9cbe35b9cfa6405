#include "synthesis/denormalize.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "synthesis/families.h"
#include "synthesis/ladder_response.h"

namespace drenik {
namespace {

using testing::LossDb;
const char* const kTopologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};

DesignRecord Designed(int16_t family, int16_t order, const char* topology = "Cinlowpass") {
  DesignRecord d;
  d.Pi = 3.14159274f, d.Family = family, d.Order = order, d.Topology = topology;
  d.Rsource = 50, d.Width = 4.2e6f, d.Apass = 0.2f, d.Astop = 40;
  EXPECT_TRUE(DesignPrototype(d).Ok());
  EXPECT_TRUE(Denormalize(d).Ok());
  return d;
}

std::string Codes(const DesignRecord& d) {
  std::string s;
  for (int k = 1; k <= d.Stages; ++k) s += std::to_string(d.ElementType[k]) + " ";
  return s;
}

#define EXPECT_REL(a, b) EXPECT_NEAR((a) / (b), 1.0, 1e-6)

// C-input lowpass = prototype scaled, L-input its dual, each highpass the image (w -> Omega^2/w)
// of the lowpass that starts with the same kind of arm.
void ExpectTopologiesAgree(const DesignRecord& prototype) {
  DesignRecord t[4];
  for (int i = 0; i < 4; ++i) {
    t[i] = prototype;
    t[i].Topology = kTopologies[i];
    EXPECT_TRUE(Denormalize(t[i]).Ok());
  }
  const DesignRecord normalized = testing::PrototypeLadder(prototype);
  const double w0 = t[0].Omega;
  for (double w = 0.05 * w0; w < 20 * w0; w *= 1.1) {
    if (LossDb(t[0], w) > 60) continue;  // too steep near a transmission zero
    EXPECT_NEAR(LossDb(t[0], w), LossDb(normalized, w / w0), 1e-3) << w / w0;
    EXPECT_NEAR(LossDb(t[1], w), LossDb(t[0], w), 1e-3) << w / w0;
    EXPECT_NEAR(LossDb(t[2], w0 * w0 / w), LossDb(t[1], w), 1e-3) << w / w0;
    EXPECT_NEAR(LossDb(t[3], w0 * w0 / w), LossDb(t[0], w), 1e-3) << w / w0;
  }
}

TEST(Denormalize, FourTopologiesScaleOnePrototype) {
  DesignRecord d = Designed(kChebyshev, 5);
  EXPECT_EQ(d.Omega, static_cast<float>(2 * 3.14159274 * 4.2e6));
  for (int16_t n : {3, 4, 7}) ExpectTopologiesAgree(Designed(kChebyshev, n));
  ExpectTopologiesAgree(Designed(kBessel, 6));
  ExpectTopologiesAgree(Designed(kZelmar, 5));
  // Partner values without CauerFlag: G is the main element, H its partner.
  d.G = {0, 1.657f, 0.76896f, 3.2137f, 0.65676f, 1.47f};
  d.H = {0, 0, 0.23424f, 0, 0.53364f, 0};
  d.RloadNormalized = 1;
  ExpectTopologiesAgree(d);
  // Butterworth always ends in Rsource, whatever the normalized load.
  for (int i = 0; i < 4; ++i) {
    DesignRecord b = Designed(kButterworth, 4, kTopologies[i]);
    b.RloadNormalized = 0.5f;
    EXPECT_TRUE(Denormalize(b).Ok());
    EXPECT_EQ(b.Rload, 50);
  }
}

TEST(Denormalize, EvenOrderResonantLaddersEndDifferently) {
  DesignRecord p = Designed(kCauer, 4);
  p.CauerFlag = 1, p.RloadNormalized = 0.8f, p.G = {0, 1.2f, 0.3f, 1.9f, 0.2f};
  p.H = {0, 0, 1.1f, 0, 0.9f};
  const double r = 50, w = p.Omega;
  auto run = [&](const char* topology) {
    DesignRecord d = p;
    d.Topology = topology;
    d.ElementType.fill(99);
    EXPECT_TRUE(Denormalize(d).Ok());
    return d;
  };
  // Only the L-input lowpass keeps the partner in its last arm; the others follow the prototype
  // without it (lowpass at w, highpass at Omega^2 / w).
  DesignRecord plainEnd = p;
  plainEnd.G[4] = 0;
  const char* codes[] = {"4 7 4 1 ", "1 6 1 6 ", "3 6 3 2 ", "2 7 2 3 "};
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(kTopologies[i]);
    const DesignRecord d = run(kTopologies[i]);
    EXPECT_EQ(Codes(d), codes[i]);
    const DesignRecord normalized = testing::PrototypeLadder(i == 1 ? p : plainEnd);
    for (double x = 0.05; x < 20; x *= 1.1) {
      if (LossDb(normalized, x) > 60) continue;  // too steep near a transmission zero
      EXPECT_NEAR(LossDb(d, i < 2 ? x * w : w / x), LossDb(normalized, x), 1e-3) << x;
    }
  }

  // A lone H in the L-input lowpass is a shunt C; a negative G leaves the position alone.
  p.G[2] = 0, p.G[4] = -0.2f;
  DesignRecord d = run("Linlowpass");
  EXPECT_EQ(Codes(d), "1 4 1 99 ");
  EXPECT_REL(d.C[2], 1.1f / r / w);
  EXPECT_EQ(d.L[2] + d.L[4] + d.C[4], 0);
  d = run("Cinhighpass");
  EXPECT_EQ(Codes(d), "3 2 3 2 ");
  EXPECT_REL(d.L[2], r / (w * 1.1f));
  EXPECT_EQ(Codes(run("Linhighpass")), "2 3 2 3 ");
}

TEST(Denormalize, NoWidthUnknownTopologyAndFaults) {
  DesignRecord d = Designed(kChebyshev, 5);
  const DesignRecord before = d;
  d.Width = 0, d.Order = 3, d.Cstd[1] = 7;
  EXPECT_TRUE(Denormalize(d).Ok());  // returns at once
  EXPECT_TRUE(d.L == before.L && d.C == before.C && d.Cstd[1] == 7 && d.Omega == before.Omega);

  d.Width = 1e6f, d.Topology = "cinlowpass", d.L[0] = 4;
  EXPECT_TRUE(Denormalize(d).Ok());  // clears, then finds no ladder to build
  for (int i = 1; i <= kMaxPositions; ++i) EXPECT_EQ(d.L[i] + d.C[i] + d.Cstd[i] + d.Lstd[i], 0);
  EXPECT_EQ(d.L[0], 4);
  EXPECT_TRUE(d.ElementType == before.ElementType && d.Stages == 5 && d.Rload == before.Rload);

  // An all-zero prototype (Bessel beyond its orders): lowpasses without values, highpasses
  // refused.
  d = Designed(kBessel, 16);
  for (int k = 1; k <= 16; ++k) EXPECT_EQ(d.L[k] + d.C[k], 0);
  for (const char* topology : {"Cinhighpass", "Linhighpass"}) {
    DesignRecord z = d;
    z.Topology = topology;
    EXPECT_EQ(Denormalize(z).fault, "Division by zero: the prototype value at position 2 is 0.");
  }
  d.Topology = "Cinhighpass", d.Order = 3, d.H[2] = 0.5f;
  EXPECT_TRUE(Denormalize(d).Ok());
  EXPECT_EQ(Codes(d), "17 2 17 ");

  d = Designed(kChebyshev, 5);
  d.Order = 21;
  EXPECT_FALSE(Denormalize(d).Ok());
  d.Order = 5, d.Pi = 0;  // the opening page did not run
  EXPECT_FALSE(Denormalize(d).Ok());
  d.Pi = 3.14159274f, d.Topology = "Linlowpass", d.RloadNormalized = 0;
  EXPECT_FALSE(Denormalize(d).Ok());
}

}  // namespace
}  // namespace drenik
