#include "parts/figures.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/band_frequencies.h"
#include "analysis/ladder_batch.h"
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
  Bands b{e.highpass, e.cutoff, e.stopEdge, e.band, e.bandstop, e.f1, e.f2, e.stopLow, e.stopHigh};
  if (b.band) return b;
  // Without a designed edge the stopband starts an octave from the cutoff.
  if (b.stopEdge == 0) b.stopEdge = b.highpass ? b.cutoff / 2 : b.cutoff * 2;
  return b;
}

bool InPassband(const Bands& b, double f) {
  if (b.band && b.bandstop) return f <= b.f1 * (1 + kEdgeSlack) || f >= b.f2 * (1 - kEdgeSlack);
  if (b.band) return f >= b.f1 * (1 - kEdgeSlack) && f <= b.f2 * (1 + kEdgeSlack);
  return b.highpass ? f >= b.cutoff * (1 - kEdgeSlack) : f <= b.cutoff * (1 + kEdgeSlack);
}

bool InStopband(const Bands& b, double f) {
  if (b.band && b.bandstop)
    return f >= b.stopLow * (1 - kEdgeSlack) && f <= b.stopHigh * (1 + kEdgeSlack);
  if (b.band) return f <= b.stopLow * (1 + kEdgeSlack) || f >= b.stopHigh * (1 - kEdgeSlack);
  return b.highpass ? f <= b.stopEdge * (1 + kEdgeSlack) : f >= b.stopEdge * (1 - kEdgeSlack);
}

Probe BeyondSweep(const DesignRecord& d, const Bands& bands) {
  Probe beyond;
  // A band design's own sweep spans the passband and both skirts; swept
  // otherwise at the user's asking, the band is judged at its own points as
  // well.
  if (bands.band) {
    for (float f : OwnBandSweep(d)) {
      if (InPassband(bands, f)) beyond.passband.push_back(f);
      if (InStopband(bands, f)) beyond.stopband.push_back(f);
    }
    return beyond;
  }
  const int last = std::clamp<int>(d.NrIntervals, -1, kSweepSlots - 1);
  if (last < 0) return beyond;
  const std::span<const float> sweep(d.Freq.data(), static_cast<size_t>(last) + 1);
  const auto outside = [&](const Band& band) {
    std::vector<float> points;
    for (float f : BandFrequencies(sweep, band))
      if (f < sweep.front() || f > sweep.back()) points.push_back(f);
    return points;
  };
  beyond.passband = outside(Passband(bands.cutoff, bands.highpass));
  beyond.stopband = outside(Stopband(bands.stopEdge, bands.highpass));
  return beyond;
}

Figures FiguresOf(const DesignRecord& d, const Bands& bands) {
  ProbeResponse r;
  const int last = std::clamp<int>(d.NrIntervals, -1, kSweepSlots - 1);
  for (int i = 0; i <= last; ++i) {
    if (InPassband(bands, d.Freq[i])) r.returnLoss.push_back(-double{d.Reflection[i]});
    if (InStopband(bands, d.Freq[i])) r.attenuation.push_back(-double{d.Transmission[i]});
  }
  const Probe beyond = BeyondSweep(d, bands);
  const Ladder ladder = LadderOf(d);
  if ((!beyond.passband.empty() || !beyond.stopband.empty()) && LadderFault(ladder).empty()) {
    ProbeResponse more;
    MeasureLadders(std::span(&ladder, 1), beyond, std::span(&more, 1));
    r.returnLoss.insert(r.returnLoss.end(), more.returnLoss.begin(), more.returnLoss.end());
    r.attenuation.insert(r.attenuation.end(), more.attenuation.begin(), more.attenuation.end());
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
  if (ladders.empty()) return;
  // The candidates share the design's kinds, terminations and Qs: eight at
  // a time go through the batch kernel, passband and stopband points alike.
  std::vector<float> freqs(probe.passband);
  freqs.insert(freqs.end(), probe.stopband.begin(), probe.stopband.end());
  const LadderBatch batch(ladders[0], freqs);
  const size_t passPoints = probe.passband.size();
  std::vector<double> s21(freqs.size() * kBatchLanes), s11(freqs.size() * kBatchLanes);
  for (size_t first = 0; first < ladders.size(); first += kBatchLanes) {
    const size_t lanes = std::min<size_t>(kBatchLanes, ladders.size() - first);
    // Lanes past the last candidate repeat it: every lane must be a ladder.
    BatchValues values;
    for (size_t k = 0; k < kBatchLanes; ++k) {
      const Ladder& ladder = ladders[first + std::min(k, lanes - 1)];
      for (int j = 1; j <= ladder.stages; ++j) {
        values.L[j][k] = ladder.L[j];
        values.C[j][k] = ladder.C[j];
      }
    }
    batch.Evaluate(values, 0, batch.Points(), s21.data(), s11.data());
    for (size_t k = 0; k < lanes; ++k) {
      ProbeResponse& r = out[first + k];
      r.returnLoss.resize(passPoints);
      r.attenuation.resize(probe.stopband.size());
      for (size_t i = 0; i < passPoints; ++i)
        r.returnLoss[i] = -ReflectionDbOf(s11[i * kBatchLanes + k]);
      for (size_t i = 0; i < probe.stopband.size(); ++i)
        r.attenuation[i] = -TransmissionDbOf(s21[(passPoints + i) * kBatchLanes + k]);
    }
  }
}

}  // namespace drenik
