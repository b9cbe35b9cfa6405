// Design from a mask: the whole search for the 20 m harmonic lowpass (pass
// edge 14.35 MHz at 18 dB return loss, 50 dB from 28.7 MHz, 5% capacitors,
// 2% inductors, 99%), beside the yardstick measured in the same run: one
// 10,000-trial tolerance run of the design it chooses, on every core. The
// "vs_tolerance" counter is the search's time over that run's.

#include <benchmark/benchmark.h>

#include <chrono>

#include "synth/candidate_design.h"
#include "synth/synth.h"

namespace drenik {
namespace {

SynthRequest TwentyMetreLowpass() {
  SynthRequest r;
  r.mask.passEdge = 14.35e6;
  r.mask.passRl = 18;
  r.mask.stops = {{.frequency = 28.7e6, .depth = 50}};
  r.build.ctolPercent = 5;
  r.build.ltolPercent = 2;
  r.goal.yieldPercent = 99;
  return r;
}

template <typename Work>
double Seconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The chosen design's 10,000-trial run, as `drenik tolerance --values exact`
// runs it without the sensitivity table.
double ToleranceSeconds(const SynthRequest& r, const SynthCandidate& chosen) {
  DesignRecord d;
  if (!SynthRecord(r, chosen.choice, d).Ok()) return 0;
  const ToleranceDesign design = ToleranceDesignOf(d);
  const ToleranceSetup setup = SynthSetup(r, 10000);
  ToleranceResult result;
  double best = 1e9;
  for (int i = 0; i < 5; ++i)
    best = std::min(best, Seconds([&] { (void)RunTolerance(design, setup, result); }));
  return best;
}

void BM_SynthTwentyMetreLowpass(benchmark::State& state) {
  const SynthRequest r = TwentyMetreLowpass();
  SynthResult result;
  double search = 0;
  for (auto _ : state) {
    search += Seconds([&] { benchmark::DoNotOptimize(RunSynth(r, result)); });
  }
  search /= static_cast<double>(state.iterations());
  if (result.chosen < 0) {
    state.SkipWithError("no design chosen");
    return;
  }
  const SynthCandidate& chosen = result.candidates[result.chosen];
  const double tolerance = ToleranceSeconds(r, chosen);
  state.counters["tolerance_ms"] = 1e3 * tolerance;
  state.counters["vs_tolerance"] = search / tolerance;
  state.counters["order"] = chosen.choice.order;
  state.counters["yield"] = chosen.yield;
}
BENCHMARK(BM_SynthTwentyMetreLowpass)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

}  // namespace
}  // namespace drenik
