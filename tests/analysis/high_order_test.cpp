// The highest orders through the analysis: 15th-order Chebyshev and Cauer
// netlists against ngspice at the program's own sweep frequencies, and a
// 13th-order Chebyshev bandpass against its lowpass response mapped into
// the band.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "analysis/ladder.h"
#include "analysis/sweep.h"
#include "support/ngspice.h"
#include "synthesis/band_transform.h"
#include "synthesis/design_choice.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;

// The choice designed and swept over 1001 points between fstart and fstop,
// with ideal parts.
DesignRecord Swept(const DesignChoice& c, double fstart, double fstop) {
  DesignRecord d;
  const EngineReport r = DesignInto(c, d);
  EXPECT_TRUE(r.Ok()) << r.fault;
  d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  d.Fstart = static_cast<float>(fstart), d.Fstop = static_cast<float>(fstop);
  d.NrIntervals = 1000;
  EXPECT_TRUE(AnalyzeSweep(d).Ok());
  return d;
}

// Two decades at 500 points each: ngspice's ".ac dec 500" steps land on the
// sweep's own frequencies.
TEST(HighOrders, FifteenthOrderNetlistsAgreeWithNgspiceOnTheSweep) {
  if (!testing::HaveNgspice()) GTEST_SKIP() << "ngspice not installed";
  const fs::path dir = fs::temp_directory_path() / ("drenik_order15_" + std::to_string(getpid()));
  fs::create_directories(dir);
  const DesignChoice designs[] = {{.family = kChebyshev,
                                   .order = 15,
                                   .ripple = 0.1,
                                   .topology = "Cinlowpass",
                                   .width = 14.35e6},
                                  {.family = kCauer,
                                   .order = 15,
                                   .ripple = 0.05,
                                   .depth = 90,
                                   .topology = "Linlowpass",
                                   .width = 14.35e6}};
  double worst = 0;
  for (const DesignChoice& c : designs) {
    const DesignRecord d = Swept(c, c.width / 10, c.width * 10);
    const auto points = testing::Simulate(d, dir);
    ASSERT_EQ(points.size(), 1001u) << c.family;
    for (size_t i = 0; i < points.size(); ++i) {
      ASSERT_NEAR(points[i].first, d.Freq[i], 1e-5 * d.Freq[i]) << i;
      const double db = testing::SimulatedDb(d, points[i].second);
      if (db < -50) continue;
      worst = std::max(worst, std::fabs(d.Transmission[i] - db));
      EXPECT_NEAR(d.Transmission[i], db, 0.03) << c.family << " at " << d.Freq[i] << " Hz";
    }
  }
  RecordProperty("worst_db", std::to_string(worst));
  fs::remove_all(dir);
}

// f maps to the lowpass frequency (f^2 - f0^2) / (f B) for the band B at the
// ripple edges around the geometric centre f0.
TEST(HighOrders, ThirteenthOrderBandpassIsItsMappedLowpass) {
  const double f0 = 7.15e6, bw = 3e5, ripple = 0.1;
  const double eps2 = std::pow(10, ripple / 10) - 1;
  for (const char* topology : {"Cinbandpass", "Linbandpass"}) {
    const double k = BandSweepFactor(f0, bw);
    const DesignRecord d = Swept({.family = kChebyshev,
                                  .order = 13,
                                  .ripple = ripple,
                                  .topology = topology,
                                  .width = bw,
                                  .center = f0},
                                 f0 / k, f0 * k);
    Ladder ladder = LadderOf(d);
    ladder.qind = ladder.qcap = 1e12;  // lossless
    int compared = 0;
    for (int i = 0; i <= d.NrIntervals; ++i) {
      const double f = d.Freq[i], w = std::fabs(f * f - f0 * f0) / (f * bw);
      const double t = w <= 1 ? std::cos(13 * std::acos(w)) : std::cosh(13 * std::acosh(w));
      const double want = -10 * std::log10(1 + eps2 * t * t);
      if (want < -60) continue;
      ++compared;
      ASSERT_NEAR(AnalyzePoint(ladder, d.Freq[i], 0, 0).TransmissionDb, want, 0.02)
          << topology << " at " << f << " Hz";
    }
    EXPECT_GT(compared, 200) << topology;
  }
}

}  // namespace
}  // namespace drenik
