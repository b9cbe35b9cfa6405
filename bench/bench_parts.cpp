// The stock-part chooser on seventh-order designs, against the display
// page's 5% C stage (rounding, retuning and one sweep) as the yardstick in
// the same run: the chooser's goal is 100 ms.

#include <benchmark/benchmark.h>

#include <cmath>

#include "analysis/sweep.h"
#include "core/last_session.h"
#include "parts/chooser.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/standard_values.h"
#include "synthesis/topologies.h"

namespace drenik {
namespace {

// A seventh-order design as the display page holds it: Chebyshev 0.2 dB
// (range 0) or Cauer 40 dB (range 1), in the topology of range(1).
DesignRecord Displayed(const benchmark::State& state) {
  DesignRecord d;
  SetLastSessionDefaults(d);
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = state.range(0) ? kCauer : kChebyshev;
  d.Order = 7;
  d.Topology = Topologies()[static_cast<size_t>(state.range(1))].name;
  d.Apass = 0.2f;
  d.CauerFlag = d.Family == kCauer;
  d.CauerType = "C";
  d.Rload = d.Rstandard = 50;
  d.Qcap = kInfiniteQcap;
  d.Fstart = d.Width / 5;
  d.Fstop = d.Width * 5;
  d.NrIntervals = 1000;
  if (!DesignPrototype(d).Ok() || !Denormalize(d).Ok()) std::abort();
  return d;
}

// Single capacitors or pairs of E24 and wound inductors; or (parts 2) E12
// capacitors and whole turns on T50-2, whose coarse steps the chooser walks
// one part at a time and holds to plain rounding.
void BM_ChooseParts(benchmark::State& state) {
  const DesignRecord d = Displayed(state);
  PartsRequest request;
  request.pairs = state.range(2) == 1;
  if (state.range(2) == 2) request.capacitors = ESeries::E12, request.former = CoreNamed("T50-2");
  PartsChoice choice;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ChooseParts(d, request, choice));
    benchmark::ClobberMemory();
  }
  state.counters["return_loss_dB"] = choice.chosen.returnLoss;
  state.counters["five_c_dB"] = choice.standard.returnLoss;
}
// Chebyshev and Cauer, C-input lowpass and L-input highpass (seven
// inductors: the most to polish), single capacitors, pairs and whole turns.
BENCHMARK(BM_ChooseParts)
    ->ArgsProduct({{0, 1}, {0, 3}, {0, 1, 2}})
    ->ArgNames({"cauer", "topology", "parts"})
    ->Unit(benchmark::kMillisecond);

void BM_FiveCStageYardstick(benchmark::State& state) {
  const DesignRecord exact = Displayed(state);
  for (auto _ : state) {
    DesignRecord d = exact;
    benchmark::DoNotOptimize(NearestParts(d));
    benchmark::DoNotOptimize(CapsRetuneInductors(d));
    benchmark::DoNotOptimize(AnalyzeSweep(d));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_FiveCStageYardstick)
    ->ArgsProduct({{0, 1}, {0, 3}})
    ->ArgNames({"cauer", "topology"})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace drenik
