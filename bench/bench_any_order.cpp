// A design of any order, ripple and depth from plain values (prototype and
// ladder, design_choice.h), which a search over designs calls many times:
// the slowest of each kind beside the design page's 7th-order Cauer, the
// yardstick in the same run, and a pass over the whole family table.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "synthesis/design_choice.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

struct Case {
  const char* what;
  DesignChoice choice;
};

// The first is the design page's own; the others the highest orders of
// each route: closed form, Bessel and Legendre fits, the elliptic fit, and
// the longest band ladders.
const Case kCases[] = {
    {"page Cauer 7, 0.044 dB, 40 dB", {.family = kCauer, .order = 7}},
    {"Chebyshev 15", {.family = kChebyshev, .order = 15, .ripple = 0.1}},
    {"Bessel 15", {.family = kBessel, .order = 15}},
    {"Legendre 15", {.family = kLegendre, .order = 15}},
    {"Cauer 15, 0.05 dB, 90 dB", {.family = kCauer, .order = 15, .ripple = 0.05, .depth = 90}},
    {"Cauer 12, 0.22 dB, 44.5 dB", {.family = kCauer, .order = 12, .ripple = 0.223, .depth = 44.5}},
    {"Legendre 15 coupled bandpass",
     {.family = kLegendre,
      .order = 15,
      .topology = "Coupledbandpass",
      .width = 3e5,
      .center = 7.15e6}},
    {"Cauer 15 bandstop",
     {.family = kCauer,
      .order = 15,
      .ripple = 0.05,
      .depth = 90,
      .topology = "Cinbandstop",
      .width = 1e6,
      .center = 14.2e6}},
};

void BM_DesignFromValues(benchmark::State& state) {
  const Case& c = kCases[state.range(0)];
  state.SetLabel(c.what);
  DesignRecord d;
  for (auto _ : state) {
    benchmark::DoNotOptimize(DesignInto(c.choice, d));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_DesignFromValues)->DenseRange(0, std::size(kCases) - 1)->Unit(benchmark::kMicrosecond);

// Every family at every order it takes, three ripples and depths where it
// has them: the time per design.
void BM_EveryDesignOfTheTable(benchmark::State& state) {
  std::vector<DesignChoice> all;
  for (const FamilyInfo& f : Families())
    for (int n = f.minOrder; n <= f.maxOrder; ++n)
      for (double t : {0.0, 0.5, 1.0}) {
        DesignChoice c{.family = f.code, .order = n};
        if (f.ripple.Offered()) c.ripple = f.ripple.low * std::pow(f.ripple.high / f.ripple.low, t);
        if (f.depth.Offered()) c.depth = 40 + 60 * t;
        all.push_back(c);
      }
  DesignRecord d;
  for (auto _ : state)
    for (const DesignChoice& c : all) benchmark::DoNotOptimize(DesignInto(c, d));
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(all.size()));
}
BENCHMARK(BM_EveryDesignOfTheTable)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace drenik
