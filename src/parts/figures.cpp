#include "parts/figures.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "synthesis/design_edges.h"

namespace drenik {
namespace {

// The sweep's points are single-precision floats: the point meant to sit on
// the cutoff may land a hair either side of it.
constexpr double kEdgeSlack = 1e-5;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace

Bands BandsOf(const DesignRecord& d) {
  const DesignEdges e = EdgesOf(d);
  Bands b{e.highpass, e.cutoff, e.stopEdge};
  // Without a designed edge the stopband starts an octave from the cutoff.
  if (b.stopEdge == 0) b.stopEdge = b.highpass ? b.cutoff / 2 : b.cutoff * 2;
  return b;
}

bool InPassband(const Bands& b, double f) {
  return b.highpass ? f >= b.cutoff * (1 - kEdgeSlack) : f <= b.cutoff * (1 + kEdgeSlack);
}

bool InStopband(const Bands& b, double f) {
  return b.highpass ? f <= b.stopEdge * (1 + kEdgeSlack) : f >= b.stopEdge * (1 - kEdgeSlack);
}

Figures FiguresOf(const DesignRecord& d, const Bands& bands) {
  ProbeResponse r;
  const int last = std::clamp<int>(d.NrIntervals, -1, kSweepSlots - 1);
  for (int i = 0; i <= last; ++i) {
    if (InPassband(bands, d.Freq[i])) r.returnLoss.push_back(-double{d.Reflection[i]});
    if (InStopband(bands, d.Freq[i])) r.attenuation.push_back(-double{d.Transmission[i]});
  }
  return r.Worst();
}

Figures ProbeResponse::Worst() const {
  Figures f{std::numeric_limits<double>::infinity(), kNaN};
  for (double rl : returnLoss) f.returnLoss = std::min(f.returnLoss, rl);
  for (double a : attenuation) f.stopband = std::isnan(f.stopband) ? a : std::min(f.stopband, a);
  return f;
}

void MeasureLadders(std::span<const Ladder> ladders, const Probe& probe,
                    std::span<ProbeResponse> out) {
  for (size_t k = 0; k < ladders.size(); ++k) {
    ProbeResponse& r = out[k];
    r.returnLoss.resize(probe.passband.size());
    r.attenuation.resize(probe.stopband.size());
    // Neither the delay nor the input impedance is wanted: the previous
    // point only feeds the delay.
    for (size_t i = 0; i < probe.passband.size(); ++i)
      r.returnLoss[i] = -AnalyzePoint(ladders[k], probe.passband[i], 0, 0, false).ReflectionDb;
    for (size_t i = 0; i < probe.stopband.size(); ++i)
      r.attenuation[i] = -AnalyzePoint(ladders[k], probe.stopband[i], 0, 0, false).TransmissionDb;
  }
}

}  // namespace drenik
