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
#include "bench_ladders.h"
#include "export/writers.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/standard_values.h"

namespace drenik {
namespace {

using bench::ResonantLadder;
using bench::SetConstants;

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
