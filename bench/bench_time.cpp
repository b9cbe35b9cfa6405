// The exact time response: a 7th-order bandpass (14 poles) on 2000 points,
// the step and impulse responses and their figures, beside ngspice's
// transient analysis of the same ladder over the same span, the yardstick.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench_ladders.h"
#include "timedomain/response.h"

namespace drenik {
namespace {

// A 7th-order Butterworth bandpass, 10.7 MHz, 3 % wide, 50 ohms: series L-C
// arms and shunt tanks. Its poles crowd around the centre.
LadderNetwork Bandpass() {
  const double w0 = 2 * M_PI * 10.7e6, dw = 0.03 * w0, r = 50;
  LadderNetwork net;
  net.rsource = net.rload = r;
  net.nodes = net.input = 1;
  for (int k = 1; k <= 7; ++k) {
    const double g = 2 * std::sin((2 * k - 1) * M_PI / 14);
    const int a = net.nodes;
    if (k % 2) {
      const int m = ++net.nodes, b = ++net.nodes;
      net.parts.push_back({PartKind::L, a, m, g * r / dw, w0 * g * r / dw / 100});
      net.parts.push_back({PartKind::C, m, b, dw / (w0 * w0 * g * r)});
    } else {
      net.parts.push_back({PartKind::C, a, 0, g / (r * dw)});
      net.parts.push_back(
          {PartKind::L, a, 0, r * dw / (w0 * w0 * g), w0 * r * dw / (w0 * w0 * g) / 100});
    }
  }
  net.output = net.nodes;
  return net;
}

constexpr double kSpan = 3e-6;  // the envelope has settled to 0.1 % by then
constexpr int kPoints = 2000;

void BM_TimeResponseBandpass14Poles2000Points(benchmark::State& state) {
  const LadderNetwork net = Bandpass();
  for (auto _ : state) {
    const LadderModes modes = ModesOf(net, 2 * M_PI * 10.7e6);
    TimeResponse r = ResponseOf(modes, 0, kSpan, kPoints);
    benchmark::DoNotOptimize(r.step.data());
    benchmark::DoNotOptimize(r.impulse.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_TimeResponseBandpass14Poles2000Points)->Unit(benchmark::kMicrosecond);

// The whole chain from the record's ladder for the resonant lowpass of the
// sweep benchmark, with its automatic span.
void BM_TimeResponseResonantLowpass(benchmark::State& state) {
  const DesignRecord d = bench::ResonantLadder();
  TimeRequest request;
  request.ladder = LadderOf(d);
  request.lossFrequency = d.Width;
  for (auto _ : state) {
    TimeResponse r = ComputeTimeResponse(request);
    benchmark::DoNotOptimize(r.step.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_TimeResponseResonantLowpass)->Unit(benchmark::kMicrosecond);

// ngspice .tran of the same bandpass, a step behind 50 ohms over the same
// span and the same number of points, process start included.
void BM_NgspiceTranSameBandpass(benchmark::State& state) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) {
    state.SkipWithError("ngspice not installed");
    return;
  }
  const LadderNetwork net = Bandpass();
  const auto dir =
      std::filesystem::temp_directory_path() / ("drenik_bench_tran_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  std::ofstream cir(dir / "bp.cir");
  cir << "bandpass\nVGEN gen 0 PULSE(0 2 0 1p 1p 1 2)\nRS gen n1 50\nRL n" << net.output
      << " 0 50\n";
  int i = 0;
  for (const NetworkPart& p : net.parts) {
    const std::string b = p.b ? "n" + std::to_string(p.b) : "0";
    ++i;
    if (p.kind == PartKind::L) {
      cir << "L" << i << " n" << p.a << " x" << i << " " << p.value << "\nR" << i << " x" << i
          << " " << b << " " << p.rser << "\n";
    } else {
      cir << "C" << i << " n" << p.a << " " << b << " " << p.value << "\n";
    }
  }
  cir << ".tran " << kSpan / (kPoints - 1) << " " << kSpan << "\n.control\nrun\nlinearize v(n"
      << net.output << ")\nwrdata " << (dir / "v.txt").string() << " v(n" << net.output
      << ")\n.endc\n.end\n";
  cir.close();
  const std::string cmd = "ngspice -b " + (dir / "bp.cir").string() + " > /dev/null 2>&1";
  for (auto _ : state) benchmark::DoNotOptimize(std::system(cmd.c_str()));
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_NgspiceTranSameBandpass)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace drenik
