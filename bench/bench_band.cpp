// A 7th-order bandpass against the 7th-order lowpass it is made from, timed
// in the same run: the 1001-point sweep and a 10,000-trial tolerance run.
// The bandpass has two parts where the lowpass has one; the counter
// bandpass_over_lowpass is the ratio of their times.

#include <benchmark/benchmark.h>

#include <chrono>

#include "analysis/sweep.h"
#include "bench_ladders.h"
#include "synthesis/band_transform.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "tolerance/tolerance.h"

namespace drenik {
namespace {

// 0.2 dB Chebyshev, 50 ohms, Q 100: the lowpass with a 300 kHz cutoff, the
// bandpass 300 kHz wide at 7.15 MHz, each over its display sweep.
DesignRecord Designed(const char* topology) {
  DesignRecord d;
  bench::SetConstants(d);
  d.Family = kChebyshev, d.Order = 7, d.Topology = topology, d.Apass = 0.2f;
  d.Rsource = d.Rstandard = 50, d.Qind = 100, d.Qcap = kInfiniteQcap, d.Width = 3e5f;
  d.Center = std::string(topology) == "Cinbandpass" ? 7.15e6f : 0;
  (void)DesignPrototype(d);
  (void)Denormalize(d);
  const double k = d.Center > 0 ? BandSweepFactor(d.Center, d.Width) : 0;
  d.Fstart = static_cast<float>(d.Center > 0 ? d.Center / k : d.Width * 0.2);
  d.Fstop = static_cast<float>(d.Center > 0 ? d.Center * k : d.Width * 5);
  d.NrIntervals = 1000;
  return d;
}

double Seconds(const auto& what) {
  const auto start = std::chrono::steady_clock::now();
  what();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_BandpassVsLowpassSweep1001Points(benchmark::State& state) {
  DesignRecord lowpass = Designed("Cinlowpass"), band = Designed("Cinbandpass");
  double tl = 0, tb = 0;
  for (auto _ : state) {
    tl += Seconds([&] { benchmark::DoNotOptimize(AnalyzeSweep(lowpass)); });
    tb += Seconds([&] { benchmark::DoNotOptimize(AnalyzeSweep(band)); });
  }
  state.counters["bandpass_over_lowpass"] = tb / tl;
}
BENCHMARK(BM_BandpassVsLowpassSweep1001Points)->Unit(benchmark::kMicrosecond);

// The same mask for both: the loss over the points up to the passband's
// upper edge, every core, the widest vector unit.
void BM_BandpassVsLowpassTolerance10000Trials(benchmark::State& state) {
  auto setup = [](DesignRecord d, ToleranceDesign& design, ToleranceSetup& s) {
    (void)AnalyzeSweep(d);
    design = ToleranceDesignOf(d);
    s.trials = 10000;
    s.mask.passEdge = d.Center > 0 ? EdgesOfBand(d.Center, d.Width).f2 : d.Width;
    s.mask.passIl = 3;
  };
  ToleranceDesign ld, bd;
  ToleranceSetup ls, bs;
  setup(Designed("Cinlowpass"), ld, ls);
  setup(Designed("Cinbandpass"), bd, bs);
  ToleranceResult r;
  double tl = 0, tb = 0;
  for (auto _ : state) {
    tl += Seconds([&] { benchmark::DoNotOptimize(RunTolerance(ld, ls, r)); });
    tb += Seconds([&] { benchmark::DoNotOptimize(RunTolerance(bd, bs, r)); });
  }
  state.counters["bandpass_over_lowpass"] = tb / tl;
}
BENCHMARK(BM_BandpassVsLowpassTolerance10000Trials)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

}  // namespace
}  // namespace drenik
