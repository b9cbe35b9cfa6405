#include "synthesis/denormalize.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "core/runtime_error.h"
#include "synthesis/ladder_response.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

using testing::LossDb;

const char* const kTopologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};

DesignRecord Base(int16_t family, int16_t order, const std::string& topology) {
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = family;
  d.Order = order;
  d.Topology = topology;
  d.Rsource = 50;
  d.Width = 4.2e6f;
  d.Apass = 0.2f;
  d.RloadNormalized = 1;
  return d;
}

DesignRecord Designed(int16_t family, int16_t order, const std::string& topology) {
  DesignRecord d = Base(family, order, topology);
  switch (family) {
    case kButterworth:
      Butterworth(d);
      break;
    case kChebyshev:
      Chebyshev(d);
      break;
    case kZelmar:
      Zelmar(d);
      break;
    default:
      Bessel(d);
      break;
  }
  Denormalize(d);
  return d;
}

std::string Codes(const DesignRecord& d) {
  std::string s;
  for (int k = 1; k <= d.Stages; ++k) s += std::to_string(d.ElementType[k]) + " ";
  return s;
}

TEST(Denormalize, NonPositiveWidthChangesNothing) {
  for (float width : {0.0f, -5.0f}) {
    DesignRecord d = Designed(kChebyshev, 5, "Cinlowpass");
    const DesignRecord before = d;
    d.Width = width;
    d.Order = 3;
    d.Topology = "Linhighpass";
    d.Cstd[1] = 7;
    Denormalize(d);
    EXPECT_EQ(d.L, before.L);
    EXPECT_EQ(d.C, before.C);
    EXPECT_EQ(d.Cstd[1], 7);
    EXPECT_EQ(d.ElementType, before.ElementType);
    EXPECT_EQ(d.Rload, before.Rload);
    EXPECT_EQ(d.Stages, before.Stages);
    EXPECT_EQ(d.Omega, before.Omega);
  }
}

TEST(Denormalize, UnknownTopologyOnlyClears) {
  for (const char* topology : {"cinlowpass", "", "Bandpass"}) {
    DesignRecord d = Designed(kChebyshev, 5, "Cinlowpass");
    const DesignRecord before = d;
    d.Topology = topology;
    d.Lstd.fill(3);
    d.Cstd.fill(3);
    d.L[0] = 4;
    d.Order = 7;
    Denormalize(d);
    for (int i = 1; i <= kMaxPositions; ++i) {
      EXPECT_EQ(d.L[i], 0);
      EXPECT_EQ(d.C[i], 0);
      EXPECT_EQ(d.Lstd[i], 0);
      EXPECT_EQ(d.Cstd[i], 0);
    }
    EXPECT_EQ(d.L[0], 4);
    EXPECT_EQ(d.ElementType, before.ElementType);
    EXPECT_EQ(d.Stages, 5);
    EXPECT_EQ(d.Rload, before.Rload);
  }
}

TEST(Denormalize, ChebyshevScalingAndLoadInEveryTopology) {
  // Fifth order, 0.2 dB: explicit values at the first two positions.
  DesignRecord d = Designed(kChebyshev, 5, "Cinlowpass");
  const double w = 2 * std::numbers::pi * 4.2e6;
  EXPECT_FLOAT_EQ(d.Omega, static_cast<float>(w));
  EXPECT_EQ(d.Omega, (d.Pi + d.Pi) * d.Width);
  EXPECT_EQ(Codes(d), "4 1 4 1 4 ");
  EXPECT_NEAR(d.C[1], d.G[1] / (50 * w), 1e-6 * d.C[1]);
  EXPECT_NEAR(d.L[2], 50 * d.G[2] / w, 1e-6 * d.L[2]);
  EXPECT_EQ(d.L[1], 0);
  EXPECT_EQ(d.C[2], 0);
  EXPECT_EQ(d.Stages, 5);

  d = Designed(kChebyshev, 5, "Cinhighpass");
  EXPECT_EQ(Codes(d), "3 2 3 2 3 ");
  EXPECT_NEAR(d.C[1], 1 / (50 * d.G[1] * w), 1e-6 * d.C[1]);
  EXPECT_NEAR(d.L[2], 50 / (w * d.G[2]), 1e-6 * d.L[2]);
  EXPECT_EQ(Codes(Designed(kChebyshev, 5, "Linlowpass")), "1 4 1 4 1 ");
  EXPECT_EQ(Codes(Designed(kChebyshev, 5, "Linhighpass")), "2 3 2 3 2 ");

  // Even order: the load follows the dual of the ladder.
  for (const char* topology : kTopologies) {
    d = Designed(kChebyshev, 4, topology);
    const bool shuntFirst = topology[0] == 'C' ? topology[3] == 'l' : topology[3] == 'h';
    const float expected = shuntFirst ? d.RloadNormalized * 50.0f : 50.0f / d.RloadNormalized;
    EXPECT_FLOAT_EQ(d.Rload, expected) << topology;
    EXPECT_EQ(shuntFirst, d.Rload < 50) << topology;
    // Butterworth always ends in the source resistance, even if the
    // normalized load says otherwise.
    d = Base(kButterworth, 4, topology);
    Butterworth(d);
    d.RloadNormalized = 0.5f;
    Denormalize(d);
    EXPECT_EQ(d.Rload, 50) << topology;
  }
}

// The four ladders of one prototype must behave alike: the L-input lowpass is
// the dual of the C-input one, and each highpass is the lowpass-to-highpass
// image (w -> Omega^2 / w) of the lowpass that starts with the same kind of
// branch. Checked on the real, scaled ladders.
void ExpectFourTopologiesAgree(const DesignRecord& prototype) {
  DesignRecord ladder[4];
  for (int t = 0; t < 4; ++t) {
    ladder[t] = prototype;
    ladder[t].Topology = kTopologies[t];
    Denormalize(ladder[t]);
  }
  const double w0 = ladder[0].Omega;
  for (double x = 0.05; x < 20; x *= 1.1) {
    const double w = x * w0;
    const double cinLow = LossDb(ladder[0], w);
    if (cinLow > 60) continue;  // near a transmission zero: too steep to compare
    SCOPED_TRACE(::testing::Message() << "w/Omega=" << x);
    EXPECT_NEAR(LossDb(ladder[1], w), cinLow, 1e-3);
    EXPECT_NEAR(LossDb(ladder[2], w0 * w0 / w), LossDb(ladder[1], w), 1e-3);
    EXPECT_NEAR(LossDb(ladder[3], w0 * w0 / w), cinLow, 1e-3);
  }
}

TEST(Denormalize, RippleAtCutoffAndTopologiesAgree) {
  for (int16_t n : {3, 4, 7}) {
    DesignRecord d = Base(kChebyshev, n, "");
    Chebyshev(d);
    ExpectFourTopologiesAgree(d);
    d.Topology = "Linhighpass";
    Denormalize(d);
    EXPECT_NEAR(LossDb(d, d.Omega), 0.2, 1e-4) << n;
  }
  DesignRecord d = Base(kBessel, 6, "");
  Bessel(d);
  ExpectFourTopologiesAgree(d);

  // A prototype without CauerFlag whose even positions carry a partner.
  d = Base(kChebyshev, 5, "");
  d.G = {0, 1.657f, 0.76896f, 3.2137f, 0.65676f, 1.47f};
  d.H = {0, 0, 0.23424f, 0, 0.53364f, 0};
  d.RloadNormalized = 1;
  ExpectFourTopologiesAgree(d);
  d.Topology = "Linlowpass";
  Denormalize(d);
  EXPECT_EQ(Codes(d), "1 6 1 6 1 ");
  d.Topology = "Cinhighpass";
  Denormalize(d);
  EXPECT_EQ(Codes(d), "3 6 3 6 3 ");
}

TEST(Denormalize, ZelmarTrapsInEveryTopology) {
  DesignRecord d = Designed(kZelmar, 5, "Cinlowpass");
  const double r = 50, w = d.Omega;
  EXPECT_EQ(Codes(d), "4 7 4 7 4 ");
  EXPECT_NEAR(d.L[2], r * 0.76896 / w, 1e-6 * d.L[2]);
  EXPECT_NEAR(d.C[2], 0.23424 / (r * w), 1e-6 * d.C[2]);
  EXPECT_EQ(d.L[1], 0);
  EXPECT_EQ(d.L[5], 0);
  EXPECT_EQ(Designed(kZelmar, 5, "Linlowpass").ElementType[2], 6);
  EXPECT_EQ(Codes(Designed(kZelmar, 5, "Linlowpass")), "1 6 1 6 1 ");
  EXPECT_EQ(Codes(Designed(kZelmar, 5, "Cinhighpass")), "3 6 3 6 3 ");
  EXPECT_EQ(Codes(Designed(kZelmar, 5, "Linhighpass")), "2 7 2 7 2 ");

  d = Base(kZelmar, 5, "");
  Zelmar(d);
  ExpectFourTopologiesAgree(d);
  // Each trap resonates at its normalized zero times Omega.
  for (const char* topology : kTopologies) {
    d.Topology = topology;
    Denormalize(d);
    const bool high = std::string(topology).find("high") != std::string::npos;
    const double x2 = 1 / std::sqrt(0.23424 * 0.76896);
    const double x4 = 1 / std::sqrt(0.53364 * 0.65676);
    const double expect2 = high ? 1 / x2 : x2, expect4 = high ? 1 / x4 : x4;
    EXPECT_NEAR(1 / std::sqrt(double(d.L[2]) * d.C[2]) / d.Omega, expect2, 1e-5) << topology;
    EXPECT_NEAR(1 / std::sqrt(double(d.L[4]) * d.C[4]) / d.Omega, expect4, 1e-5) << topology;
    EXPECT_EQ(d.Rload, 50);
  }
}

TEST(Denormalize, EvenOrderResonantDesignsEndDifferentlyPerTopology) {
  // Fourth-order design with traps (main element in H, partner in G).
  DesignRecord p = Base(kCauer, 4, "");
  p.CauerFlag = 1;
  p.RloadNormalized = 0.8f;
  p.G = {0, 1.2f, 0.3f, 1.9f, 0.2f};
  p.H = {0, 0, 1.1f, 0, 0.9f};
  auto run = [&](const char* topology) {
    DesignRecord d = p;
    d.Topology = topology;
    d.ElementType.fill(99);
    Denormalize(d);
    return d;
  };
  const double r = 50;
  DesignRecord d = run("Cinlowpass");
  EXPECT_EQ(Codes(d), "4 7 4 1 ");
  EXPECT_EQ(d.C[4], 0);
  EXPECT_NEAR(d.L[4], r * 0.9 / d.Omega, 1e-6 * d.L[4]);
  EXPECT_FLOAT_EQ(d.Rload, 40);

  d = run("Linlowpass");  // the one branch whose last arm keeps its partner
  EXPECT_EQ(Codes(d), "1 6 1 6 ");
  EXPECT_NEAR(d.L[4], r * 0.2f / d.Omega, 1e-6 * d.L[4]);
  EXPECT_NEAR(d.C[4], 0.9f / (r * d.Omega), 1e-6 * d.C[4]);
  EXPECT_FLOAT_EQ(d.Rload, 62.5f);

  d = run("Cinhighpass");
  EXPECT_EQ(Codes(d), "3 6 3 2 ");
  EXPECT_EQ(d.C[4], 0);
  EXPECT_NEAR(d.L[4], r / (d.Omega * 0.9f), 1e-6 * d.L[4]);
  EXPECT_NEAR(d.L[2], r / (d.Omega * 1.1f), 1e-6 * d.L[2]);
  EXPECT_NEAR(d.C[2], 1 / (r * 0.3f * d.Omega), 1e-6 * d.C[2]);

  d = run("Linhighpass");
  EXPECT_EQ(Codes(d), "2 7 2 3 ");
  EXPECT_EQ(d.L[4], 0);
  EXPECT_NEAR(d.C[4], 1 / (r * 0.9f * d.Omega), 1e-6 * d.C[4]);
  EXPECT_NEAR(d.C[2], 1 / (r * 1.1f * d.Omega), 1e-6 * d.C[2]);
  EXPECT_NEAR(d.L[2], r / (d.Omega * 0.3f), 1e-6 * d.L[2]);

  // L-input lowpass with CauerFlag: a lone H becomes a shunt capacitor, a
  // negative G leaves the position as it was.
  p.G[2] = 0;
  p.G[4] = -0.2f;
  d = run("Linlowpass");
  EXPECT_EQ(Codes(d), "1 4 1 99 ");
  EXPECT_NEAR(d.C[2], 1.1f / r / d.Omega, 1e-6 * d.C[2]);
  EXPECT_EQ(d.L[2], 0);
  EXPECT_EQ(d.L[4], 0);
  EXPECT_EQ(d.C[4], 0);
  // In the highpass ladders a non-positive G at an even position decides
  // before CauerFlag does.
  d = run("Cinhighpass");
  EXPECT_EQ(Codes(d), "3 2 3 2 ");
  EXPECT_NEAR(d.L[2], r / (d.Omega * 1.1f), 1e-6 * d.L[2]);
  d = run("Linhighpass");
  EXPECT_EQ(Codes(d), "2 3 2 3 ");
  EXPECT_NEAR(d.C[4], 1 / (r * 0.9f * d.Omega), 1e-6 * d.C[4]);
}

TEST(Denormalize, FaultsAreReportedNotPropagated) {
  // An all-zero prototype: the lowpass ladders come out empty of values, the
  // highpass ones would divide by the zero at position 2.
  for (const char* topology : {"Cinhighpass", "Linhighpass"}) {
    DesignRecord d = Base(kBessel, 9, topology);
    Bessel(d);
    try {
      Denormalize(d);
      ADD_FAILURE() << topology << " did not throw";
    } catch (const RunTimeError& e) {
      EXPECT_EQ(std::string(e.what()), "Division by zero: the prototype value at position 2 is 0.");
    }
  }
  // Empty odd positions are marked 17; an even one with only a partner value
  // becomes a shunt inductor.
  DesignRecord d = Base(kBessel, 3, "Cinhighpass");
  d.H[2] = 0.5f;
  Denormalize(d);
  EXPECT_EQ(Codes(d), "17 2 17 ");
  EXPECT_EQ(d.C[1], 0);

  d = Base(kBessel, 9, "Cinlowpass");
  Bessel(d);
  Denormalize(d);
  for (int k = 1; k <= 9; ++k) {
    EXPECT_EQ(d.L[k], 0);
    EXPECT_EQ(d.C[k], 0);
  }

  d = Designed(kChebyshev, 5, "Cinlowpass");
  d.Order = 21;
  EXPECT_THROW(Denormalize(d), RunTimeError);
  d.Order = 5;
  d.Pi = 0;  // the opening page did not run
  EXPECT_THROW(Denormalize(d), RunTimeError);
  d.Pi = 3.14159274f;
  d.Rsource = 0;
  EXPECT_THROW(Denormalize(d), RunTimeError);
  d.Rsource = 50;
  d.RloadNormalized = 0;
  d.Topology = "Linlowpass";
  EXPECT_THROW(Denormalize(d), RunTimeError);
}

}  // namespace
}  // namespace drenik
