// The part-stress engine on its own: the peak of a bilinear quantity over
// every load phase, the energy balance of every element kind and part
// model, agreement with the ladder kernel, and the flat-line figure of a
// matched lossless ladder. Its agreement with ngspice is in the command
// line's tests.

#include "stress/stress.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "analysis/ladder.h"
#include "stress/ratings.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

DesignRecord Designed(int16_t family, const char* topology, float width, float center = 0) {
  DesignRecord d;
  d.Pi = 3.14159265f, d.TwoPi = 6.2831853f;
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  d.Family = family, d.Order = 5, d.Topology = topology;
  d.Apass = 0.044f, d.Astop = 40, d.CauerType = "C", d.Width = width, d.Center = center;
  EXPECT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok()) << topology;
  return d;
}

TEST(Stress, PeakOverEveryLoadPhaseIsExact) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> u(-1, 1);
  for (int trial = 0; trial < 20; ++trial) {
    const Phasor a(u(random), u(random)), b(u(random), u(random)), d(u(random), u(random));
    const Phasor c = Phasor(3 + u(random), u(random));  // the pole stays outside the circle
    const double rho = (trial % 4) * 0.25;
    double brute = 0;
    for (int k = 0; k < 36000; ++k) {
      const Phasor g = std::polar(rho, 2 * M_PI * k / 36000);
      brute = std::max(brute, std::abs((a + b * g) / (c + d * g)));
    }
    const CirclePeak peak = PeakOnCircle(a, b, c, d, rho);
    EXPECT_NEAR(peak.value, brute, 1e-6 * brute);
    EXPECT_NEAR(std::abs(peak.at), rho, 1e-9);
    EXPECT_NEAR(std::abs((a + b * peak.at) / (c + d * peak.at)), peak.value, 1e-9);
  }
}

// Every element kind (1 to 8: lowpass, highpass, elliptic traps and tanks,
// band branches, the coupled form), with every part model: the parts
// dissipate what goes in less what comes out, and into a matched load the
// ladder passes what the kernel says.
TEST(Stress, EveryKindBalancesItsPowerAndAgreesWithTheKernel) {
  const struct {
    int16_t family;
    const char* topology;
    float width, center;
  } designs[] = {{2, "Cinlowpass", 14.35e6f, 0},       {3, "Linhighpass", 3e6f, 0},
                 {3, "Cinlowpass", 7e6f, 0},           {2, "Linbandpass", 1e6f, 14.2e6f},
                 {2, "Cinbandstop", 1e6f, 14.2e6f},    {3, "Linbandstop", 1e6f, 14.2e6f},
                 {2, "Coupledbandpass", 3e5f, 7.15e6f}};
  for (const auto& c : designs) {
    DesignRecord d = Designed(c.family, c.topology, c.width, c.center);
    d.Qind = 80, d.InductorQLaw = QLaw::Sqrt, d.CapacitorQ = 900;
    d.WindingCapacitance = 0.3e-12f, d.CapacitorEsl = 2e-9f;
    const Ladder ladder = LadderOf(d);
    ASSERT_EQ(LadderFault(ladder), "");
    const std::vector<LadderPart> parts = LadderParts(ladder);
    for (const FrequencyBand& band : StressBands(d)) {
      for (double f : {band.from, std::sqrt(band.from * band.to), band.to}) {
        const LadderResponse r = RespondAt(ladder, parts, f);
        for (Phasor load : {Phasor(50), Phasor(20, 35)}) {
          const LadderState s = StateAt(r, load, 100);
          EXPECT_NEAR(s.Dissipated(), s.powerIn - s.powerOut, 1e-6 * s.powerIn)
              << c.topology << " at " << f;
        }
        // The kernel forms w in single precision: on a steep skirt that is
        // a few 1e-5 dB.
        const LadderState matched = StateAt(r, 50, 2);  // 20 mW available
        const double gainDb = 10 * std::log10(matched.powerOut / 0.02);
        EXPECT_NEAR(gainDb, AnalyzePoint(ladder, static_cast<float>(f), 0, 0).TransmissionDb, 1e-3)
            << c.topology << " at " << f;
      }
    }
  }
}

// A lossless Butterworth lowpass well below its cutoff is a straight line:
// 100 W into 50 ohms is 70.7 V and 1.41 A everywhere.
TEST(Stress, FlatLineFigureAndBadRequests) {
  const DesignRecord d = Designed(1, "Cinlowpass", 30e6f);
  auto request = [](double power, double vswr, std::vector<FrequencyBand> bands) {
    StressRequest q;
    q.power = power, q.vswr = vswr, q.bands = std::move(bands);
    return q;
  };
  const StressResult r = AnalyzeStress(d, request(100, 1, {{1e3, 1e4}}));
  ASSERT_TRUE(r.report.Ok()) << r.report.fault;
  ASSERT_EQ(r.parts.size(), 5u);
  EXPECT_EQ(r.parts[0].name, "C1");
  EXPECT_EQ(r.parts[1].name, "L2");
  for (const PartStress& p : r.parts) {
    const bool capacitor = p.part.type == PartType::Capacitor;
    EXPECT_NEAR(capacitor ? p.v.value : p.i.value, capacitor ? std::sqrt(5000.0) : std::sqrt(2.0),
                1e-3);
  }
  EXPECT_NEAR(r.worst.powerOut, 100, 1e-3);

  for (const StressRequest& bad :
       {request(0, 1, {}), request(5, 0.9, {}), request(5, 1, {{2e6, 1e6}})})
    EXPECT_FALSE(AnalyzeStress(d, bad).report.Ok());
  // Twice the peak, rounded up to a standard rating.
  EXPECT_EQ(CapacitorRating(100), 200);
  EXPECT_EQ(CapacitorRating(251), 630);
  EXPECT_EQ(RatingText(1600), "over 3000 V");
}

}  // namespace
}  // namespace drenik
