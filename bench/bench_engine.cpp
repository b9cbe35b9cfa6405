// The numeric engine: one sweep of a seven-position elliptic-style ladder,
// the whole chain the display page runs when it opens, and ngspice on the
// same ladder for comparison.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "analysis/sweep.h"
#include "export/writers.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/standard_values.h"

namespace drenik {
namespace {

void SetConstants(DesignRecord& d) {
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
}

// Shunt capacitors with three parallel-resonant series arms, 50 ohms, 1 MHz
// cutoff, notches near 2.5 MHz; Q 100 inductors.
DesignRecord ResonantLadder() {
  DesignRecord d;
  SetConstants(d);
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = 100;
  d.Qcap = kInfiniteQcap;
  d.Width = 1e6f;
  d.Fstart = 2e5f;
  d.Fstop = 5e6f;
  d.NrIntervals = 1000;
  d.Stages = 7;
  const int16_t codes[] = {4, 7, 4, 7, 4, 7, 4};
  const float caps[] = {2.9e-9f, 2.2e-10f, 4.6e-9f, 7.8e-10f, 4.3e-9f, 5.1e-10f, 2.6e-9f};
  const float inds[] = {0, 9.1e-6f, 0, 7.5e-6f, 0, 8.2e-6f, 0};
  for (int k = 1; k <= 7; ++k) {
    d.ElementType[k] = codes[k - 1];
    d.C[k] = caps[k - 1];
    d.L[k] = inds[k - 1];
  }
  return d;
}

void BM_AnalyzeSweep1001Points7Positions(benchmark::State& state) {
  DesignRecord d = ResonantLadder();
  for (auto _ : state) {
    benchmark::DoNotOptimize(AnalyzeSweep(d));
    benchmark::DoNotOptimize(d.Transmission.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * (d.NrIntervals + 1));
}
BENCHMARK(BM_AnalyzeSweep1001Points7Positions)->Unit(benchmark::kMicrosecond);

// What the display page computes when it opens: the exact design, then 5% C
// values with retuned inductors, then 5% inductors, each swept.
void BM_DisplayPipeline(benchmark::State& state) {
  DesignRecord d;
  SetConstants(d);
  d.Family = static_cast<int16_t>(state.range(0));
  d.Order = static_cast<int16_t>(state.range(1));
  d.Topology = "Cinlowpass";
  d.CauerType = "C";
  d.Apass = 0.044f;
  d.Astop = 40;
  d.Width = 4.2e6f;
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = kInfiniteQind;
  d.Qcap = kInfiniteQcap;
  d.Fstart = d.Width / 5;
  d.Fstop = d.Width * 5;
  d.NrIntervals = 1000;
  for (auto _ : state) {
    EngineReport r = DesignPrototype(d);
    r = Denormalize(d);
    r = AnalyzeSweep(d);
    r = NearestParts(d);
    r = CapsRetuneInductors(d);
    r = AnalyzeSweep(d);
    r = NearestParts(d);
    r = Inductors(d);
    r = AnalyzeSweep(d);
    benchmark::DoNotOptimize(r);
    benchmark::DoNotOptimize(d.Transmission.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_DisplayPipeline)
    ->ArgNames({"family", "order"})
    ->Args({kChebyshev, 5})
    ->Args({kCauer, 7})
    ->Unit(benchmark::kMicrosecond);

// ngspice in batch mode on the netlist of the same ladder, process start
// included: the yardstick the sweep is compared with.
void BM_NgspiceSameLadder(benchmark::State& state) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) {
    state.SkipWithError("ngspice not installed");
    return;
  }
  const DesignRecord d = ResonantLadder();
  const auto dir =
      std::filesystem::temp_directory_path() / ("drenik_bench_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  std::string net = SpiceNetlistText(d);
  net = net.substr(0, net.rfind(".end")) + ".control\nrun\nwrdata " + (dir / "v.txt").string() +
        " v(out)\n.endc\n.end\n";
  std::ofstream(dir / "ladder.cir") << net;
  const std::string cmd = "ngspice -b " + (dir / "ladder.cir").string() + " > /dev/null 2>&1";
  for (auto _ : state) benchmark::DoNotOptimize(std::system(cmd.c_str()));
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_NgspiceSameLadder)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace drenik

BENCHMARK_MAIN();
