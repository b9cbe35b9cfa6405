// The tolerance analysis: 10,000 trials of the seven-position resonant
// ladder at the display page's 1001 points, on every core and on one, the
// plain double path as the yardstick, the run with the sensitivity of its
// ten parts, and ngspice running the same 1001-point AC analysis in a loop
// in one process. The "vs_ngspice" counter is ngspice's time for as many
// analyses as the run has trials over the run's time, both measured in the
// same run of the benchmarks.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "analysis/sweep.h"
#include "bench_ladders.h"
#include "export/writers.h"
#include "tolerance/tolerance.h"

namespace drenik {
namespace {

constexpr int kTrials = 10000;

// Seconds of one 1001-point AC analysis in ngspice: one process loops the
// analysis; two loop counts cancel the start-up. 0 without ngspice.
double NgspiceSecondsPerAnalysis() {
  static const double seconds = [] {
    if (std::system("ngspice -v > /dev/null 2>&1") != 0) return 0.0;
    const auto dir =
        std::filesystem::temp_directory_path() / ("drenik_bench_tol_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const std::string net = SpiceNetlistText(bench::ResonantLadder());
    const size_t ac = net.rfind(".ac ");
    const std::string analysis = net.substr(ac + 1, net.find('\r', ac) - ac - 1);
    auto timed = [&](int loops) {
      const auto cir = dir / ("loop" + std::to_string(loops) + ".cir");
      std::ofstream(cir) << net.substr(0, ac) << ".control\nlet k = 0\nwhile k < " << loops << "\n"
                         << analysis << "\ndestroy all\nlet k = k + 1\nend\nquit\n"
                         << ".endc\n.end\n";
      const std::string command = "ngspice -b " + cir.string() + " > /dev/null 2>&1";
      const auto start = std::chrono::steady_clock::now();
      (void)std::system(command.c_str());
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const double few = timed(10), many = timed(110);
    std::filesystem::remove_all(dir);
    return (many - few) / 100;
  }();
  return seconds;
}

struct Bench {
  ToleranceDesign design;
  ToleranceSetup setup;
};

Bench MakeBench(int threads, BatchPath path, bool sensitivity) {
  DesignRecord d = bench::ResonantLadder();
  (void)AnalyzeSweep(d);
  Bench b{ToleranceDesignOf(d), {}};
  b.setup.trials = kTrials;
  b.setup.mask = DefaultMask(b.design);
  b.setup.threads = threads;
  b.setup.path = path;
  b.setup.sensitivity = sensitivity;
  return b;
}

void Run(benchmark::State& state, const Bench& b) {
  ToleranceResult r;
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state) {
    benchmark::DoNotOptimize(RunTolerance(b.design, b.setup, r));
    benchmark::ClobberMemory();
  }
  const double perRun =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
      static_cast<double>(state.iterations());
  // ngspice's time for as many analyses as the run has trials, over the run.
  if (const double ngspice = NgspiceSecondsPerAnalysis(); ngspice > 0)
    state.counters["vs_ngspice"] = ngspice * kTrials / perRun;
  state.counters["yield"] = r.yield;
}

// The figure that matters: every core, the widest vector unit.
void BM_Tolerance10000Trials(benchmark::State& state) {
  NgspiceSecondsPerAnalysis();  // measured before the timing starts
  Run(state, MakeBench(static_cast<int>(state.range(0)), BatchPath::Vector, false));
}
BENCHMARK(BM_Tolerance10000Trials)
    ->ArgName("threads")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(7)
    ->DisplayAggregatesOnly(true)
    ->UseRealTime();

// The yardstick: one lane at a time in plain doubles, one core.
void BM_Tolerance10000TrialsPlainDoubles(benchmark::State& state) {
  Run(state, MakeBench(1, BatchPath::Scalar, false));
}
BENCHMARK(BM_Tolerance10000TrialsPlainDoubles)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2)
    ->UseRealTime();

// With the sensitivity: the run again for each of the ten parts held at
// nominal, every core.
void BM_Tolerance10000TrialsWithSensitivity(benchmark::State& state) {
  Run(state, MakeBench(0, BatchPath::Vector, true));
}
BENCHMARK(BM_Tolerance10000TrialsWithSensitivity)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

// One ngspice analysis of the same ladder, from the looping process.
void BM_NgspiceLoopedAnalysis(benchmark::State& state) {
  const double seconds = NgspiceSecondsPerAnalysis();
  if (seconds <= 0) {
    state.SkipWithError("ngspice not installed");
    return;
  }
  for (auto _ : state) state.SetIterationTime(seconds);
}
BENCHMARK(BM_NgspiceLoopedAnalysis)->Unit(benchmark::kMillisecond)->Iterations(1)->UseManualTime();

}  // namespace
}  // namespace drenik
