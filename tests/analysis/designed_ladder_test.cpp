// The sweep over ladders made by the real synthesis: energy balance, ripple,
// cutoff, the lowpass/highpass mirror, and an independent simulation by
// ngspice of the same netlist.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "analysis/sweep.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

using testing::RecordingPlatform;

constexpr int kPoints = 1000;  // Freq(500) is the cutoff
const char* const kTopologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};

struct Choice {
  int16_t family;
  float ripple;
  const char* name;
};
const Choice kFamilies[] = {
    {kButterworth, 0, "Butterworth"},
    {kChebyshev, 0.01f, "Chebyshev .01"},
    {kChebyshev, 0.044f, "Chebyshev .044"},
    {kChebyshev, 0.2f, "Chebyshev .2"},
    {kBessel, 0, "Bessel"},
    {kZelmar, 0.01f, "Zelmar"},
};

DesignRecord Designed(const Choice& c, int order, const char* topology, float q) {
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = c.family;
  d.Order = static_cast<int16_t>(order);
  d.Topology = topology;
  d.CauerType = "C";
  d.Apass = c.ripple;
  d.Astop = 40;
  d.Width = 1e6f;
  d.Rsource = 50;
  d.Rload = 50;
  d.Qind = q;
  d.Qcap = q;
  RecordingPlatform p;
  DesignPrototype(d, p);
  if (c.family == kBessel || c.family == kZelmar) d.Rload = d.Rsource;
  Denormalize(d);
  d.Fstart = d.Width / 5;
  d.Fstop = d.Width * 5;
  d.NrIntervals = kPoints;
  AnalyzeSweep(d, p);
  return d;
}

std::string Label(const Choice& c, int order, const char* topology) {
  return std::string(c.name) + " order " + std::to_string(order) + " " + topology;
}

// True until the prototype routines are in the build (they start out as
// placeholders that compute nothing).
bool NoSynthesis() {
  DesignRecord d;
  d.Order = 3;
  Butterworth(d);
  return d.G[1] == 0;
}

bool IsLowpass(const std::string& topology) {
  return topology.find("lowpass") != std::string::npos;
}

TEST(DesignedLadders, LosslessEnergyRippleAndCutoff) {
  if (NoSynthesis()) GTEST_SKIP() << "prototype routines not built in";
  for (const Choice& c : kFamilies) {
    for (int order = 3; order <= 7; ++order) {
      if (c.family == kZelmar && order != 5) continue;
      for (const char* topology : kTopologies) {
        const DesignRecord d = Designed(c, order, topology, 1e12f);
        const std::string what = Label(c, order, topology);
        ASSERT_GT(d.Stages, 0) << what;
        double worstEnergy = 0, passLoss = 0;
        for (int i = 0; i <= kPoints; ++i) {
          const double s21 = std::pow(10.0, d.Transmission[i] / 10);
          const double s11 = std::pow(10.0, d.Reflection[i] / 10);
          worstEnergy = std::max(worstEnergy, std::fabs(s21 + s11 - 1));
          const bool inPass = IsLowpass(topology) ? i <= kPoints / 2 : i >= kPoints / 2;
          if (inPass) passLoss = std::max(passLoss, -double{d.Transmission[i]});
        }
        EXPECT_LT(worstEnergy, 1e-4) << what;
        const double atCutoff = -d.Transmission[kPoints / 2];
        if (c.family == kChebyshev) {
          EXPECT_NEAR(passLoss, d.Apass, 0.05 * d.Apass + 2e-4) << what;
          EXPECT_NEAR(atCutoff, d.Apass, 0.02 * d.Apass + 2e-4) << what;
        } else if (c.family == kButterworth) {
          EXPECT_NEAR(atCutoff, 10 * std::log10(2.0), 0.01) << what;
        } else if (c.family == kBessel) {
          EXPECT_NEAR(atCutoff, 10 * std::log10(2.0), 0.1) << what;
        }
      }
    }
  }
}

// A highpass at f is its lowpass twin at fc^2/f; the grid is symmetric about
// the cutoff, so point i of one is point kPoints - i of the other.
TEST(DesignedLadders, HighpassMirrorsItsLowpassTwin) {
  if (NoSynthesis()) GTEST_SKIP() << "prototype routines not built in";
  const std::pair<const char*, const char*> twins[] = {{"Cinlowpass", "Linhighpass"},
                                                       {"Linlowpass", "Cinhighpass"}};
  for (const Choice& c : kFamilies) {
    for (int order = 3; order <= 7; ++order) {
      if (c.family == kZelmar && order != 5) continue;
      for (const auto& [lp, hp] : twins) {
        const DesignRecord low = Designed(c, order, lp, 1e6f);
        const DesignRecord high = Designed(c, order, hp, 1e6f);
        for (int i = 0; i <= kPoints; ++i) {
          const float a = low.Transmission[i], b = high.Transmission[kPoints - i];
          if (a < -60 && b < -60) continue;
          ASSERT_NEAR(a, b, 0.01) << Label(c, order, hp) << " point " << i;
          ASSERT_NEAR(low.Reflection[i], high.Reflection[kPoints - i],
                      std::max(0.01, 1e-3 * std::fabs(low.Reflection[i])))
              << Label(c, order, hp) << " point " << i;
        }
      }
    }
  }
}

struct SpicePoint {
  double freq;
  std::complex<double> vout;
};

// Runs ngspice in batch mode on the netlist of d; returns V(out) per point.
std::vector<SpicePoint> Simulate(const DesignRecord& d, const std::filesystem::path& dir) {
  std::string net = SpiceNetlistText(d);
  const std::size_t end = net.rfind(".end");
  EXPECT_NE(end, std::string::npos);
  const auto out = dir / "vout.txt";
  net = net.substr(0, end) + ".control\nset wr_singlescale\nrun\nwrdata " + out.string() +
        " v(out)\n.endc\n.end\n";
  const auto cir = dir / "ladder.cir";
  std::ofstream(cir) << net;
  std::filesystem::remove(out);
  const std::string cmd =
      "ngspice -b " + cir.string() + " > " + (dir / "log.txt").string() + " 2>&1";
  // ngspice -b exits with 1 when the netlist has no .print line; the data
  // file tells whether the run worked.
  (void)std::system(cmd.c_str());
  EXPECT_TRUE(std::filesystem::exists(out)) << net;
  std::vector<SpicePoint> points;
  std::ifstream in(out);
  double f, re, im;
  while (in >> f >> re >> im) points.push_back({f, {re, im}});
  return points;
}

TEST(DesignedLadders, AgreeWithNgspice) {
  if (NoSynthesis()) GTEST_SKIP() << "prototype routines not built in";
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "ngspice not installed";
  const auto dir =
      std::filesystem::temp_directory_path() / ("drenik_ngspice_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  double worstDb = 0, worstDeg = 0;
  RecordingPlatform p;
  for (const Choice& c : kFamilies) {
    for (int order : {4, 5}) {
      if (c.family == kZelmar && order != 5) continue;
      for (const char* topology : kTopologies) {
        const DesignRecord d = Designed(c, order, topology, kInfiniteQind);
        const std::string what = Label(c, order, topology);
        const std::vector<SpicePoint> points = Simulate(d, dir);
        ASSERT_GT(points.size(), 500u) << what;
        EXPECT_NEAR(points.front().freq, d.Fstart, 1e-3 * d.Fstart) << what;
        EXPECT_NEAR(points.back().freq, d.Fstop, 1e-3 * d.Fstop) << what;
        for (const SpicePoint& s : points) {
          const double spiceDb =
              20 * std::log10(std::abs(s.vout)) + 10 * std::log10(double{d.Rsource} / d.Rload);
          if (spiceDb < -60) continue;
          const PointResult r = AnalyzePoint(d, static_cast<float>(s.freq), 0, 0, p);
          const double dDb = std::fabs(r.TransmissionDb - spiceDb);
          double dDeg = std::fabs(r.Phase - std::arg(s.vout) * 180 / 3.14159265358979323846);
          dDeg = std::min(dDeg, 360 - dDeg);
          worstDb = std::max(worstDb, dDb);
          worstDeg = std::max(worstDeg, dDeg);
          ASSERT_LT(dDb, 0.02) << what << " at " << s.freq << " Hz";
          ASSERT_LT(dDeg, 0.1) << what << " at " << s.freq << " Hz";
        }
      }
    }
  }
  std::filesystem::remove_all(dir);
  RecordProperty("worst_db", std::to_string(worstDb));
  std::printf("ngspice: worst deviation %.3g dB, %.3g degrees\n", worstDb, worstDeg);
}

// Hand-built ladders with every element code, losses and an unmodelled
// position: the netlist's structure and ngspice's answer.
TEST(SpiceNetlist, HandBuiltLaddersAgreeWithNgspice) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "ngspice not installed";
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Width = 1e6f;
  d.Rsource = 50;
  d.Rload = 75;
  d.Qind = 1e6f;
  d.Qcap = kInfiniteQcap;
  d.Fstart = 2e5f;
  d.Fstop = 5e6f;
  d.NrIntervals = 500;
  const struct {
    std::vector<int16_t> codes;
  } ladders[] = {{{4, 7, 4, 7, 4, 7, 4}}, {{1, 6, 1, 6, 5, 1}}, {{3, 2, 3, 7, 2, 3}}};
  const auto dir =
      std::filesystem::temp_directory_path() / ("drenik_netlist_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  RecordingPlatform p;
  for (const auto& ladder : ladders) {
    d.Stages = static_cast<int16_t>(ladder.codes.size());
    for (int k = 1; k <= d.Stages; ++k) {
      d.ElementType[k] = ladder.codes[k - 1];
      d.L[k] = 8e-6f * (1 + 0.1f * k);
      d.C[k] = (d.ElementType[k] == 7 || d.ElementType[k] == 6) ? 5e-10f : 3e-9f;
    }
    const std::string net = SpiceNetlistText(d);
    EXPECT_EQ(net.find('\n'), net.find("\r\n") + 1);
    EXPECT_NE(net.find("VGEN gen 0 DC 0 AC 2\r\n"), std::string::npos);
    EXPECT_NE(net.find("RLOAD out 0 75\r\n"), std::string::npos) << net;
    // Loss of the inductor at the cutoff: 2 pi 1 MHz L / Q.
    char rser[64];
    std::snprintf(rser, sizeof rser, " %.9g\r\n",
                  static_cast<double>(2 * d.Pi * d.Width * d.L[2] / d.Qind));
    const std::size_t at = net.find("RSER2 l2 ");
    ASSERT_NE(at, std::string::npos) << net;
    EXPECT_EQ(net.find(rser, at), net.find("\r\n", at) - (std::strlen(rser) - 2)) << net;
    const std::vector<SpicePoint> points = Simulate(d, dir);
    ASSERT_GT(points.size(), 100u);
    for (const SpicePoint& s : points) {
      const double spiceDb =
          20 * std::log10(std::abs(s.vout)) + 10 * std::log10(double{d.Rsource} / d.Rload);
      if (spiceDb < -60) continue;
      const PointResult r = AnalyzePoint(d, static_cast<float>(s.freq), 0, 0, p);
      ASSERT_NEAR(r.TransmissionDb, spiceDb, 0.02) << net << " at " << s.freq << " Hz";
    }
  }
  EXPECT_EQ(p.beeps > 0, true);  // the code-5 position
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace drenik
