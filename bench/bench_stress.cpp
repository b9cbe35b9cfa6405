// The part stress of the seven-position resonant ladder, matched and at
// 2:1 VSWR (the peak over all phases is exact, so a VSWR costs little), with
// the display page's 1001-point sweep of the same ladder as the yardstick.

#include <benchmark/benchmark.h>

#include "analysis/sweep.h"
#include "bench_ladders.h"
#include "stress/stress.h"

namespace drenik {
namespace {

void BM_Stress7Positions(benchmark::State& state) {
  const DesignRecord d = bench::ResonantLadder();
  StressRequest q;
  q.power = 100;
  q.vswr = static_cast<double>(state.range(0)) / 10;
  for (auto _ : state) benchmark::DoNotOptimize(AnalyzeStress(d, q));
}
BENCHMARK(BM_Stress7Positions)->Arg(10)->Arg(20)->Unit(benchmark::kMillisecond);

void BM_StressYardstickSweep1001Points(benchmark::State& state) {
  DesignRecord d = bench::ResonantLadder();
  for (auto _ : state) {
    benchmark::DoNotOptimize(AnalyzeSweep(d));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_StressYardstickSweep1001Points)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace drenik
