// The sweep over ladders made by the real synthesis: energy balance, ripple,
// cutoff, the lowpass/highpass mirror, and ngspice on the same netlists.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "analysis/sweep.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

using testing::RecordingPlatform;
namespace fs = std::filesystem;

constexpr int kPoints = 1000;  // point 500 is the cutoff
const struct Choice {
  int16_t family;
  float ripple;
  const char* name;
} kFamilies[] = {
    {kButterworth, 0, "Butterworth"},
    {kChebyshev, 0.01f, "Chebyshev .01"},
    {kChebyshev, 0.044f, "Chebyshev .044"},
    {kChebyshev, 0.2f, "Chebyshev .2"},
    {kBessel, 0, "Bessel"},
    {kZelmar, 0.01f, "Zelmar"},
    {kCauer, 0.044f, "Cauer .044"},
};
// Each lowpass with the highpass made from it by the transformation.
const std::pair<const char*, const char*> kTwins[] = {{"Cinlowpass", "Linhighpass"},
                                                      {"Linlowpass", "Cinhighpass"}};

DesignRecord Designed(const Choice& c, int order, const char* topology, float q) {
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = c.family;
  d.Order = static_cast<int16_t>(order);
  d.Topology = topology;
  d.Apass = c.ripple;
  d.Astop = 40;
  d.CauerType = "C";
  d.Width = 1e6f;
  d.Rsource = d.Rload = 50;
  d.Qind = d.Qcap = q;
  RecordingPlatform p;
  DesignPrototype(d, p);
  Denormalize(d);
  if (c.family == kZelmar) d.Rload = d.Rsource;
  d.Fstart = d.Width / 5;
  d.Fstop = d.Width * 5;
  d.NrIntervals = kPoints;
  AnalyzeSweep(d, p);
  return d;
}

std::string Label(const Choice& c, int order, const std::string& topology) {
  return std::string(c.name) + " order " + std::to_string(order) + " " + topology;
}

void CheckLossless(const DesignRecord& d, bool lowpass, const std::string& what) {
  double energy = 0, passLoss = 0;
  for (int i = 0; i <= kPoints; ++i) {
    const double s21 = std::pow(10.0, d.Transmission[i] / 10);
    energy = std::max(energy, std::fabs(s21 + std::pow(10.0, d.Reflection[i] / 10) - 1));
    if (lowpass ? i <= kPoints / 2 : i >= kPoints / 2)
      passLoss = std::max(passLoss, -double{d.Transmission[i]});
  }
  EXPECT_LT(energy, 1e-4) << what;  // |S11|² + |S21|² = 1
  const double atCutoff = -d.Transmission[kPoints / 2];
  if (d.Family == kChebyshev || d.Family == kCauer) {
    EXPECT_NEAR(passLoss, d.Apass, 0.05 * d.Apass + 2e-4) << what;
    EXPECT_NEAR(atCutoff, d.Apass, 0.02 * d.Apass + 2e-4) << what;
  } else if (d.Family == kButterworth || d.Family == kBessel) {
    EXPECT_NEAR(atCutoff, 10 * std::log10(2.0), d.Family == kBessel ? 0.1 : 0.01) << what;
  }
}

TEST(DesignedLadders, LosslessRippleCutoffAndHighpassMirror) {
  for (const Choice& c : kFamilies) {
    for (int order = 3; order <= 7; ++order) {
      if (c.family == kZelmar && order != 5) continue;  // one fixed design
      for (const auto& [lp, hp] : kTwins) {
        const DesignRecord low = Designed(c, order, lp, 1e12f);
        const DesignRecord high = Designed(c, order, hp, 1e12f);
        CheckLossless(low, true, Label(c, order, lp));
        CheckLossless(high, false, Label(c, order, hp));
        // A highpass at f is its lowpass twin at fc²/f: the grid is
        // symmetric about the cutoff.
        for (int i = 0; i <= kPoints; ++i) {
          const float a = low.Transmission[i], b = high.Transmission[kPoints - i];
          if (a < -60 && b < -60) continue;
          ASSERT_NEAR(a, b, 0.01) << Label(c, order, hp) << " point " << i;
        }
      }
    }
  }
}

// ngspice in batch mode on the netlist of d; V(out) per point.
std::vector<std::pair<double, std::complex<double>>> Simulate(const DesignRecord& d,
                                                              const fs::path& dir) {
  const std::string net = SpiceNetlistText(d);
  const fs::path out = dir / "vout.txt", cir = dir / "ladder.cir";
  std::ofstream(cir) << net.substr(0, net.rfind(".end")) << ".control\nset wr_singlescale\nrun\n"
                     << "wrdata " << out.string() << " v(out)\n.endc\n.end\n";
  fs::remove(out);
  // ngspice -b exits with 1 when a netlist has no .print line: the data
  // file tells whether the run worked.
  (void)std::system(("ngspice -b " + cir.string() + " > /dev/null 2>&1").c_str());
  std::vector<std::pair<double, std::complex<double>>> points;
  std::ifstream in(out);
  double f, re, im;
  while (in >> f >> re >> im) points.push_back({f, {re, im}});
  return points;
}

TEST(DesignedLadders, AgreeWithNgspice) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "ngspice not installed";
  const fs::path dir = fs::temp_directory_path() / ("drenik_ngspice_" + std::to_string(getpid()));
  fs::create_directories(dir);
  double worstDb = 0, worstDeg = 0;
  RecordingPlatform p;
  for (const Choice& c : kFamilies) {
    for (int order : {4, 5}) {
      if (c.family == kZelmar && order != 5) continue;
      for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
        const DesignRecord d = Designed(c, order, topology, kInfiniteQind);
        const std::string what = Label(c, order, topology);
        const auto points = Simulate(d, dir);
        ASSERT_GT(points.size(), 700u) << what;
        EXPECT_NEAR(points.back().first, d.Fstop, 1e-3 * d.Fstop) << what;
        for (const auto& [f, v] : points) {
          // 2 V behind Rsource: |S21|² = (Rsource/Rload)|V(out)|².
          const double db = 20 * std::log10(std::abs(v)) + 10 * std::log10(d.Rsource / d.Rload);
          if (db < -60) continue;
          const PointResult r = AnalyzePoint(d, static_cast<float>(f), 0, 0, p);
          const double deg = std::fabs(r.Phase - std::arg(v) * 180 / M_PI);
          worstDb = std::max(worstDb, std::fabs(r.TransmissionDb - db));
          worstDeg = std::max(worstDeg, std::min(deg, 360 - deg));
          ASSERT_NEAR(r.TransmissionDb, db, 0.02) << what << " at " << f << " Hz";
          ASSERT_LT(std::min(deg, 360 - deg), 0.1) << what << " at " << f << " Hz";
        }
      }
    }
  }
  fs::remove_all(dir);
  std::printf("ngspice: worst deviation %.3g dB, %.3g degrees\n", worstDb, worstDeg);
}

TEST(SpiceNetlist, LossResistorsTerminationsAndUnmodelledPositions) {
  DesignRecord d;
  d.Pi = 3.14159274f;
  d.Width = 1e6f;
  d.Rsource = 50;
  d.Rload = 75;
  d.Qind = 100;
  d.Fstart = 2e5f;
  d.Fstop = 5e6f;
  d.NrIntervals = 1000;
  d.Stages = 4;
  d.ElementType = {0, 4, 7, 5, 2};
  d.L = {0, 0, 8e-6f, 1, 2e-6f};
  d.C = {0, 3e-9f, 5e-10f, 1, 0};
  const std::string net = SpiceNetlistText(d);
  const char* lines[] = {"VGEN gen 0 DC 0 AC 2\r\n",     "RSOURCE gen in 50\r\n",
                         "C1 in 0 3.00000003e-09\r\n",   "L2 in l2 7.99999998e-06\r\n",
                         "RSER2 l2 out 0.50265485\r\n",  // 2 pi 1 MHz L / Q, single precision
                         "C2 in out 4.99999986e-10\r\n", "* position 3: element code 5",
                         "L4 out l4 1.99999999e-06\r\n", "RSER4 l4 0 0.125663713\r\n",
                         "RLOAD out 0 75\r\n",           ".ac dec 716 200000 5000000\r\n.end\r\n"};
  for (const char* line : lines) EXPECT_NE(net.find(line), std::string::npos) << line << net;
}

}  // namespace
}  // namespace drenik
