// The sweep against closed forms, and real synthesized ladders in every topology.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "analysis/ladder.h"
#include "analysis/sweep.h"
#include "export/writers.h"
#include "support/ngspice.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;
using Cx = std::complex<double>;
constexpr double kPi = 3.14159265358979323846;

DesignRecord Bench(std::initializer_list<int16_t> codes = {}, float l = 0, float c = 0) {
  DesignRecord d;
  d.Pi = static_cast<float>(kPi), d.TwoPi = static_cast<float>(2 * kPi), d.Rsource = d.Rload = 50;
  d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  d.Fstart = 1000, d.Fstop = 100000, d.NrIntervals = 400;
  for (int16_t code : codes) d.ElementType[++d.Stages] = code, d.L[d.Stages] = l, d.C[d.Stages] = c;
  return d;
}

// The kernel at one frequency, measured against 0 Hz and 0 degrees.
PointResult At(const DesignRecord& d, float f) {
  return AnalyzePoint(LadderOf(d), f, 0, 0);
}

// The sweep, which must run without a fault or an alert.
void Sweep(DesignRecord& d) {
  const EngineReport r = AnalyzeSweep(d);
  ASSERT_TRUE(r.Ok() && r.alerts == 0) << r.fault;
}

// Transducer gain (dB) of one series Z or shunt Y between 50-ohm ends.
const auto SeriesDb = [](Cx z) { return -20 * std::log10(std::abs(1.0 + z / 100.0)); };
const auto ShuntDb = [](Cx y) { return -20 * std::log10(std::abs(1.0 + y * 25.0)); };

TEST(AnalyzeSweep, GridWireAndReflectionClamps) {
  DesignRecord d = Bench();
  d.Rstandard = 75;
  Sweep(d);
  EXPECT_EQ(d.Freq[0], 1000.0f);
  EXPECT_FLOAT_EQ(d.Freq[200], 10000.0f);  // geometric middle
  EXPECT_FLOAT_EQ(d.Freq[400], 100000.0f);
  EXPECT_EQ(d.Rstandard, 50.0f);
  // A straight wire: 0 dB, and Zin = Rstandard puts rho on its lower clamp.
  EXPECT_NEAR(d.Transmission[7], 0.0, 1e-9);
  EXPECT_NEAR(d.Phase[7], 0.0, 1e-6);
  EXPECT_FLOAT_EQ(d.Reflection[7], -140.0f);
  EXPECT_FLOAT_EQ(d.VSWR[7], 1.0000002f);
  EXPECT_LT(d.MaxDelay, 1e-14f);  // only the 1e-10j of Den turns the phase

  d.Rload = 200;  // Den = 1.25, rho = 0.6
  Sweep(d);
  EXPECT_NEAR(d.Transmission[3], -10 * std::log10(1.5625), 1e-5);
  EXPECT_NEAR(d.VSWR[3], 4.0, 1e-5);
  EXPECT_NEAR(d.Reflection[3], 20 * std::log10(0.6), 1e-5);

  // A missing series capacitor is 10 Mohm, not an open; rho hits its upper clamp.
  d = Bench({3});
  d.Rstandard = 50;
  const PointResult r = At(d, 5000);
  EXPECT_NEAR(r.ZinMagnitude, 1e7, 1);
  EXPECT_NEAR(r.ZinAngle, 90.0, 1e-3);
  EXPECT_NEAR(r.TransmissionDb, SeriesDb({1, 1e7}), 1e-6);
  EXPECT_NEAR(r.Vswr, 19999999.0, 1.0);
  EXPECT_NEAR(r.ReflectionDb, -8.686e-7, 1e-9);
}

TEST(AnalyzePoint, EachElementMatchesItsClosedForm) {
  const float f = 1e6f;
  const double w = static_cast<float>(2 * kPi) * f;
  const float l = 4e-6f, c = 2e-9f;
  const Cx zl(0, w * l), yc(0, w * c), lossL(w * l, 0);
  const struct {
    int16_t code;
    float qind, qcap;
    double expected;
  } cases[] = {
      {1, 1e6f, 1e7f, SeriesDb(zl)},
      {1, 10, 1e7f, SeriesDb(zl + lossL / 10.0)},
      {2, 1e6f, 1e7f, ShuntDb(1.0 / zl)},
      {2, 5, 1e7f, ShuntDb(1.0 / (zl + lossL / 5.0))},
      {3, 1e6f, 1e7f, SeriesDb(1.0 / yc)},
      {3, 1e6f, 4, SeriesDb(1.0 / (yc + w * c / 4))},
      {4, 1e6f, 8, ShuntDb(yc + w * c / 8)},
      {6, 20, 1e7f, ShuntDb(1.0 / (zl + lossL / 20.0 + 1.0 / yc))},
      {7, 1e6f, 1e7f, SeriesDb(1.0 / (1.0 / zl + yc))},
      {7, 20, 30, SeriesDb(1.0 / (1.0 / (zl + lossL / 20.0) + yc + w * c / 30))},
  };
  for (const auto& k : cases) {
    DesignRecord d = Bench({k.code}, l, c);
    d.Qind = k.qind, d.Qcap = k.qcap;
    EXPECT_NEAR(At(d, f).TransmissionDb, k.expected, 1e-4)
        << "code " << k.code << " Q " << k.qind << " " << k.qcap;
  }

  // Lossy resonant branches at resonance and a few ppm either side.
  for (int16_t code : {6, 7}) {
    DesignRecord d = Bench({code}, 1e-6f, 1e-9f);
    d.Qind = 200;
    const double f0 = 1 / (2 * kPi * std::sqrt(double{d.L[1]} * d.C[1] * (1 + 1 / 200.0 / 200)));
    for (double detune : {0.0, -3e-7, 3e-7, -3e-6, 3e-6, 1e-3}) {
      const float fd = static_cast<float>(f0 * (1 + detune));
      const double wd = static_cast<double>(d.TwoPi * fd);
      const Cx zld(wd * d.L[1] / 200, wd * d.L[1]), ycd(wd * d.C[1] / d.Qcap, wd * d.C[1]);
      const double expected =
          code == 6 ? ShuntDb(1.0 / (zld + 1.0 / ycd)) : SeriesDb(1.0 / (1.0 / zld + ycd + 1e-11));
      const double got = At(d, fd).TransmissionDb;
      EXPECT_NEAR(got, expected, 1e-3) << "code " << code << " detune " << detune;
      EXPECT_LT(got, -25);
    }
  }
}

TEST(AnalyzeSweep, UnknownCodesBeepAndActAsWires) {
  DesignRecord plain = Bench({4, 1, 4}, 1e-3f, 1e-7f);
  DesignRecord odd = Bench({4, 5, 1, 8, 4, 17}, 1e-3f, 1e-7f);
  Sweep(plain);
  const EngineReport r = AnalyzeSweep(odd);
  EXPECT_TRUE(r.Ok());
  EXPECT_EQ(r.alerts, 3 * 401);  // once per unmodelled position per point
  for (int i = 0; i <= 400; i += 50)
    EXPECT_TRUE(odd.Transmission[i] == plain.Transmission[i] && odd.Phase[i] == plain.Phase[i] &&
                odd.Reflection[i] == plain.Reflection[i])
        << i;
}

TEST(AnalyzeSweep, PhaseAndBackwardDifferenceDelay) {
  // Series L between 50-ohm ends: phase -atan(ωτ), delay τ/(1 + (ωτ)²), τ = L/2R.
  DesignRecord d = Bench({1}, 1e-3f);
  Sweep(d);
  const double tau = 1e-5;
  for (int i = 1; i <= 400; i += 37) {
    const double x = kPi * (d.Freq[i] + d.Freq[i - 1]) * tau;  // at the step's middle
    EXPECT_NEAR(d.Delay[i], tau / (1 + x * x), 2e-3 * tau) << i;
    EXPECT_NEAR(d.Phase[i], -std::atan(2 * kPi * d.Freq[i] * tau) * 180 / kPi, 1e-3);
  }
  EXPECT_EQ(d.Delay[0], static_cast<float>(2.0 * d.Delay[1] - d.Delay[2]));
  // The raw first point (against 0 Hz and 0 degrees) counts in MaxDelay.
  const double raw = At(d, d.Freq[0]).Delay;
  EXPECT_GT(raw, d.Delay[1]);
  EXPECT_EQ(d.MaxDelay, static_cast<float>(raw));

  // Seven poles: the phase wraps within (-180, 180], the delay does not jump.
  d = Bench({4, 1, 4, 1, 4, 1, 4}, 5e-4f, 2e-7f);
  Sweep(d);
  int wraps = 0;
  for (int i = 1; i <= 400; ++i) {
    EXPECT_TRUE(d.Phase[i] > -180 && d.Phase[i] <= 180 && d.Delay[i] > 0) << i;
    wraps += std::fabs(d.Phase[i] - d.Phase[i - 1]) > 180;
  }
  EXPECT_GE(wraps, 1);
}

TEST(AnalyzeSweep, RefusesWhatWouldDivideByZeroBeforeTouchingResults) {
  using Spoil = std::pair<const char*, void (*)(DesignRecord&)>;
#define SPOIL(change) Spoil(#change, [](DesignRecord& d) { change; })
  const Spoil cases[] = {SPOIL(d.Fstart = 0),
                         SPOIL(d.Fstop = -5),
                         SPOIL(d.NrIntervals = 0),
                         SPOIL(d.NrIntervals = 2001),
                         SPOIL(d.Stages = kMaxPositions + 1),
                         SPOIL(d.Stages = -1),
                         SPOIL(d.Rload = 0),
                         SPOIL(d.Rsource = 0),
                         SPOIL(d.TwoPi = 0),
                         SPOIL(d.Qind = 0),
                         SPOIL(d.Qcap = 0),
                         SPOIL(d.L[2] = 0),
                         SPOIL(d.L[3] = 0)};
#undef SPOIL
  for (const auto& [what, spoil] : cases) {
    DesignRecord d = Bench({4, 2, 7}, 1e-3f, 1e-8f);  // L[2] shunt, L[3] in a tank
    d.Freq[0] = d.Transmission[0] = d.Delay[0] = 42;
    spoil(d);
    EXPECT_FALSE(AnalyzeSweep(d).Ok()) << what;
    EXPECT_TRUE(d.Freq[0] == 42 && d.Transmission[0] == 42 && d.Delay[0] == 42) << what;
  }
  // A zero Q of a part kind not in the ladder is harmless; a zero series L is a wire.
  DesignRecord caps = Bench({3}, 0, 1e-8f), wire = Bench({1});
  caps.Qind = wire.Qcap = 0;
  Sweep(caps);
  Sweep(wire);
  EXPECT_NEAR(wire.Transmission[10], 0.0, 1e-9);
}

TEST(SpiceNetlist, LossResistorsTerminationsAndUnmodelledPositions) {
  DesignRecord d = Bench({4, 7, 5, 2});
  d.Width = 1e6f, d.Rload = 75, d.Qind = 100;
  d.Fstart = 2e5f, d.Fstop = 5e6f, d.NrIntervals = 1000;
  d.L = {0, 0, 8e-6f, 1, 2e-6f};
  d.C = {0, 3e-9f, 5e-10f, 1, 0};
  const std::string net = SpiceNetlistText(d);
  // Each value as the shortest text that reads back to its float; the loss
  // resistors follow the frequency.
  const char* lines[] = {"VGEN gen 0 DC 0 AC 2\r\n",
                         "RSOURCE gen in 50\r\n",
                         "C1 in 0 3e-09\r\n",
                         "L2 in l2 8e-06\r\n",
                         "RSER2 l2 out {hertz>0 ? 5.0265482",  // 2 pi L / Q per hertz
                         "C2 in out 5e-10\r\n",
                         "* position 3: element code 5",
                         "L4 out l4 2e-06\r\n",
                         "RSER4 l4 0 {hertz>0 ? 1.2566370",
                         "RLOAD out 0 75\r\n",
                         ".ac dec 716 200000 5000000\r\n.end\r\n"};
  for (const char* line : lines) EXPECT_NE(net.find(line), std::string::npos) << line << net;
  // A sweep two float steps wide would need 2^32 points a decade: the same
  // points linearly.
  d.Fstart = 467615.75f, d.Fstop = 467616.25f;
  EXPECT_NE(SpiceNetlistText(d).find(".ac lin 1001 467615.75 467616.25\r\n"), std::string::npos);
}

constexpr int kPoints = 2000;  // Width/20 to Width*20: point 1000 is the cutoff
struct Choice {
  int16_t family;
  float ripple, depth;
  std::string name;
};
std::vector<Choice> Choices() {
  std::vector<Choice> out = {{kButterworth, 0, 40, "Butterworth"},
                             {kChebyshev, 0.01f, 40, "Chebyshev .01"},
                             {kChebyshev, 0.2f, 40, "Chebyshev .2"},
                             {kBessel, 0, 40, "Bessel"},
                             {kZelmar, 0.01f, 40, "Zelmar"}};
  for (float ripple : {0.01f, 0.044f, 0.2f})
    for (float depth : {30.f, 40.f, 50.f, 60.f})
      out.push_back(
          {kCauer, ripple, depth, "Cauer " + std::to_string(ripple) + "/" + std::to_string(depth)});
  return out;
}
// Each lowpass with the highpass made from it by the transformation.
const std::pair<const char*, const char*> kTwins[] = {{"Cinlowpass", "Linhighpass"},
                                                      {"Linlowpass", "Cinhighpass"}};

DesignRecord Designed(const Choice& c, int order, const char* topology, float q) {
  DesignRecord d = Bench();
  d.Family = c.family, d.Order = static_cast<int16_t>(order), d.Topology = topology;
  d.Apass = c.ripple, d.Astop = c.depth, d.CauerType = "C", d.Width = 1e6f, d.Qind = d.Qcap = q;
  EXPECT_TRUE(DesignPrototype(d).Ok());
  EXPECT_TRUE(Denormalize(d).Ok());
  if (c.family == kZelmar) d.Rload = d.Rsource;
  d.Fstart = d.Width / 20, d.Fstop = d.Width * 20, d.NrIntervals = kPoints;
  Sweep(d);
  return d;
}

// Energy balance, ripple and cutoff loss; for elliptic designs also stopband and terminations.
void CheckLadder(const DesignRecord& d, bool lowpass, const std::string& what) {
  ASSERT_EQ(d.Stages, d.Order) << what;
  for (int k = 1; k <= d.Stages; ++k) {
    const int code = d.ElementType[k];
    ASSERT_TRUE(code >= 1 && code <= 8) << what << " position " << k;
    const bool hasL = code <= 2 || code >= 6, hasC = code >= 3 && code != 5;
    EXPECT_TRUE(!hasL || (std::isfinite(d.L[k]) && d.L[k] > 0)) << what << " L" << k;
    EXPECT_TRUE(!hasC || (std::isfinite(d.C[k]) && d.C[k] > 0)) << what << " C" << k;
  }
  double energy = 0, passLoss = 0, stopLoss = 1e9;
  for (int i = 0; i <= kPoints; ++i) {
    const double s21 = std::pow(10.0, d.Transmission[i] / 10);
    energy = std::max(energy, std::fabs(s21 + std::pow(10.0, d.Reflection[i] / 10) - 1));
    const double f = lowpass ? d.Freq[i] / d.Width : d.Width / d.Freq[i];  // as the lowpass sees it
    if (lowpass ? i <= kPoints / 2 : i >= kPoints / 2)
      passLoss = std::max(passLoss, -double{d.Transmission[i]});
    if (f >= d.FstopNormalized * 1.0001) stopLoss = std::min(stopLoss, -double{d.Transmission[i]});
  }
  EXPECT_LT(energy, 1e-4) << what;  // |S11|² + |S21|² = 1
  const double atCutoff = -d.Transmission[kPoints / 2];
  if (d.Family == kChebyshev || d.Family == kCauer) {
    EXPECT_NEAR(passLoss, d.Apass, 0.05 * d.Apass + 2e-4) << what;
    EXPECT_NEAR(atCutoff, d.Apass, 0.02 * d.Apass + 2e-4) << what;
  } else if (d.Family == kButterworth || d.Family == kBessel) {
    EXPECT_NEAR(atCutoff, 10 * std::log10(2.0), d.Family == kBessel ? 0.1 : 0.01) << what;
  }
  if (d.Family == kCauer) {
    EXPECT_LE(passLoss, d.Apass + 0.002) << what;
    EXPECT_TRUE(stopLoss >= d.Astop - 0.01 && stopLoss < 1e9) << what << " " << stopLoss;
    EXPECT_EQ(d.Order % 2 == 0, d.Rload != d.Rsource) << what;  // even orders are unequal
  }
}

TEST(DesignedLadders, LosslessRippleCutoffStopbandAndHighpassMirror) {
  for (const Choice& c : Choices()) {
    for (int order = 3; order <= 7; ++order) {
      if (c.family == kZelmar && order != 5) continue;  // one fixed design
      for (const auto& [lp, hp] : kTwins) {
        const std::string what = c.name + " order " + std::to_string(order) + " ";
        const DesignRecord low = Designed(c, order, lp, 1e12f);
        const DesignRecord high = Designed(c, order, hp, 1e12f);
        CheckLadder(low, true, what + lp);
        CheckLadder(high, false, what + hp);
        // A highpass at f is its lowpass twin at fc²/f (the grid is symmetric about fc).
        for (int i = 0; i <= kPoints; ++i) {
          const float a = low.Transmission[i], b = high.Transmission[kPoints - i];
          if (a < -60 && b < -60) continue;
          ASSERT_NEAR(a, b, 0.01) << what << hp << " point " << i;
        }
      }
    }
  }
}

TEST(DesignedLadders, AgreeWithNgspice) {
  if (!testing::HaveNgspice()) GTEST_SKIP() << "ngspice not installed";
  const fs::path dir = fs::temp_directory_path() / ("drenik_ngspice_" + std::to_string(getpid()));
  fs::create_directories(dir);
  for (const Choice& c : Choices()) {
    if (c.family == kCauer && (c.ripple != 0.044f || c.depth != 40)) continue;
    for (int order : {4, 5}) {
      if (c.family == kZelmar && order != 5) continue;
      for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
        const DesignRecord d = Designed(c, order, topology, kInfiniteQind);
        const std::string what = c.name + " order " + std::to_string(order) + " " + topology;
        const auto points = testing::Simulate(d, dir);
        ASSERT_GT(points.size(), 700u) << what;
        EXPECT_NEAR(points.back().first, d.Fstop, 1e-3 * d.Fstop) << what;
        for (const auto& [f, v] : points) {
          // 2 V behind Rsource: |S21|² = (Rsource/Rload)|V(out)|².
          const double db = testing::SimulatedDb(d, v);
          if (db < -60) continue;
          const PointResult r = At(d, static_cast<float>(f));
          double deg = std::fabs(r.Phase - std::arg(v) * 180 / M_PI);
          deg = std::min(deg, 360 - deg);
          ASSERT_NEAR(r.TransmissionDb, db, 0.02) << what << " at " << f << " Hz";
          ASSERT_LT(deg, 0.1) << what << " at " << f << " Hz";
        }
      }
    }
  }
  fs::remove_all(dir);
}

// Real parts written with their parasitics: ngspice follows the analysis
// with each Q law, with the largest inductor resonating at 6 times the
// cutoff and the largest capacitor at 8 times, inside the sweep.
TEST(DesignedLadders, PartModelsAgreeWithNgspice) {
  if (!testing::HaveNgspice()) GTEST_SKIP() << "ngspice not installed";
  const fs::path dir = fs::temp_directory_path() / ("drenik_models_" + std::to_string(getpid()));
  fs::create_directories(dir);
  auto expectAgreement = [&](DesignRecord& d, const std::string& what) {
    Sweep(d);
    const auto points = testing::Simulate(d, dir);
    ASSERT_GT(points.size(), 700u) << what;
    double worst = 0;
    for (const auto& [f, v] : points) {
      const double db = testing::SimulatedDb(d, v);
      if (db > -50)
        worst = std::max(worst, std::fabs(At(d, static_cast<float>(f)).TransmissionDb - db));
    }
    EXPECT_LT(worst, 0.05) << what;
  };
  const Choice chebyshev{kChebyshev, 0.2f, 40, "Chebyshev"}, cauer{kCauer, 0.044f, 40, "Cauer"};
  // A constant Q alone: the loss resistor follows the frequency too.
  DesignRecord plain = Designed(chebyshev, 5, "Cinlowpass", 50);
  expectAgreement(plain, "Q 50 alone");
  const std::pair<const Choice*, const char*> designs[] = {{&chebyshev, "Cinlowpass"},
                                                           {&chebyshev, "Linhighpass"},
                                                           {&cauer, "Cinlowpass"},
                                                           {&cauer, "Linlowpass"},
                                                           {&cauer, "Cinhighpass"}};
  for (const auto& [choice, topology] : designs) {
    for (QLaw law : {QLaw::Constant, QLaw::Sqrt, QLaw::Linear}) {
      DesignRecord d = Designed(*choice, 5, topology, 50);
      const double w = 2 * kPi * d.Width;
      const float lmax = *std::max_element(d.L.begin(), d.L.end());
      const float cmax = *std::max_element(d.C.begin(), d.C.end());
      d.InductorQLaw = law, d.CapacitorQ = 300;
      d.WindingCapacitance = static_cast<float>(1 / (36 * w * w * lmax));
      d.CapacitorEsl = static_cast<float>(1 / (64 * w * w * cmax));
      expectAgreement(d, choice->name + " " + topology + " " + FactsOf(law).word);
    }
  }
  fs::remove_all(dir);
}

}  // namespace
}  // namespace drenik
