// The sweep around the ladder kernel: the logarithmic grid, single-precision
// storage of every result, the largest delay, and the first point's delay
// extrapolated because it was measured against frequency 0 and phase 0.

#include "analysis/sweep.h"

#include <cmath>
#include <string>

#include "analysis/ladder.h"

namespace drenik {
namespace {

// Everything the sweep would otherwise divide by zero on or index past.
std::string SweepFault(const DesignRecord& d, const Ladder& ladder) {
  if (d.Stages < 0 || d.Stages > kMaxPositions) return LadderFault(ladder);
  if (d.NrIntervals == 0) return "Cannot sweep: the number of frequency intervals is 0.";
  if (d.NrIntervals >= kSweepSlots)
    return "Cannot sweep " + std::to_string(d.NrIntervals) + " intervals: at most " +
           std::to_string(kSweepSlots - 1) + " fit in the result arrays.";
  if (d.NrIntervals < 0) return {};  // no points to compute
  if (!(d.Fstart > 0)) return "Cannot sweep: the start frequency must be above 0 Hz.";
  if (!(d.Fstop > 0)) return "Cannot sweep: the stop frequency must be above 0 Hz.";
  return LadderFault(ladder);
}

}  // namespace

EngineReport AnalyzeSweep(DesignRecord& d) {
  Ladder ladder = LadderOf(d);
  if (std::string fault = SweepFault(d, ladder); !fault.empty())
    return EngineReport::Fault(std::move(fault));
  // Reflection and VSWR are referred to the source.
  d.Rstandard = d.Rsource;
  ladder.reference = d.Rstandard;

  EngineReport report;
  const int n = d.NrIntervals;
  const double lnStart = std::log(static_cast<double>(d.Fstart));
  const double span = std::log(static_cast<double>(d.Fstop)) - lnStart;
  for (int i = 0; i <= n; ++i) d.Freq[i] = static_cast<float>(std::exp(lnStart + span * i / n));

  double prevFreq = 0;
  double prevPhase = 0;
  d.MaxDelay = 0;
  for (int i = 0; i <= n; ++i) {
    const PointResult p = AnalyzePoint(ladder, d.Freq[i], prevFreq, prevPhase, false);
    report.alerts += p.unmodelled;
    d.Transmission[i] = static_cast<float>(p.TransmissionDb);
    d.Phase[i] = p.Phase;
    d.Delay[i] = static_cast<float>(p.Delay);
    d.Reflection[i] = static_cast<float>(p.ReflectionDb);
    d.VSWR[i] = static_cast<float>(p.Vswr);
    if (d.Delay[i] > d.MaxDelay) d.MaxDelay = d.Delay[i];
    prevPhase = p.Phase;
    prevFreq = d.Freq[i];
  }
  // Point 0 was measured against frequency 0 and phase 0: extrapolate it.
  d.Delay[0] = static_cast<float>(2.0 * d.Delay[1] - d.Delay[2]);
  return report;
}

}  // namespace drenik
