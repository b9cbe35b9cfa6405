#pragma once
// Where a designed filter's bands lie in hertz: the cutoff, whether the
// ladder is a highpass, and the stopband edge of a design that has one (the
// elliptic prototype's normalized edge scaled like the cutoff, and mirrored
// about it for a highpass).

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/design_record.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

struct DesignEdges {
  bool highpass = false;
  double cutoff = 0;    // Width, Hz
  double stopEdge = 0;  // Hz; 0 for a family without a stopband edge
  // A band design: the band edges f1 and f2 and where its stopband begins
  // on either side (a bandpass) or ends (a bandstop), at the lowpass
  // frequency the stopband starts at: a Cauer design's edge, else twice the
  // cutoff.
  bool band = false, bandstop = false;
  double f1 = 0, f2 = 0, stopLow = 0, stopHigh = 0;
  double lowpassStop = 0;  // that lowpass frequency (cutoff 1)
};

inline DesignEdges EdgesOf(const DesignRecord& d) {
  DesignEdges e;
  const TopologyInfo* topology = FindTopology(d.Topology);
  e.highpass = topology && topology->highpass;
  e.cutoff = d.Width;
  // FstopNormalized is written by the elliptic prototype only, and stays
  // from an earlier design when the family changes.
  const FamilyInfo* family = FindFamily(d.Family);
  if (family && family->stopbandChoice && d.FstopNormalized > 0)
    e.stopEdge = e.highpass ? e.cutoff / d.FstopNormalized : e.cutoff * d.FstopNormalized;
  if (topology && topology->band && d.Center > 0) {
    e.band = true, e.bandstop = topology->bandstop;
    const BandEdges b = EdgesOfBand(d.Center, d.Width);
    e.f1 = b.f1, e.f2 = b.f2;
    e.lowpassStop = e.stopEdge > 0 ? d.FstopNormalized : 2.0;
    // |f/f0 - f0/f| f0 / BW is the lowpass frequency of a bandpass, its
    // reciprocal that of a bandstop.
    const double x = (e.bandstop ? 1 / e.lowpassStop : e.lowpassStop) * d.Width / d.Center;
    e.stopHigh = d.Center * (x + std::sqrt(x * x + 4)) / 2;
    e.stopLow = static_cast<double>(d.Center) * d.Center / e.stopHigh;
    e.stopEdge = 0;  // the lowpass edge means nothing here
  }
  return e;
}

// The display sweep's intervals: 1001 points.
inline constexpr int16_t kSweepIntervals = 1000;

// A band design's own sweep, f0 / k to f0 k: out to where the band maps to
// five times the lowpass cutoff, as far as a lowpass sweep reaches. A
// bandpass whose stop edge maps further out (a third-order elliptic edge
// lies up to 11 times the cutoff) is swept half as far again as that edge,
// so that its stopbands, and the default tolerance mask's checks there, lie
// inside the sweep. A bandstop's stop edges lie inside its band.
inline double OwnBandSweepSpan(const DesignRecord& d) {
  const DesignEdges e = EdgesOf(d);
  const double lowpassEnd = e.bandstop ? 5.0 : std::max(5.0, 1.5 * e.lowpassStop);
  return BandSweepFactor(d.Center, d.Width, lowpassEnd);
}

// The span the display page sweeps: the user's SweepSpan when set.
inline double BandSweepSpan(const DesignRecord& d) {
  return d.SweepSpan > 1 ? d.SweepSpan : OwnBandSweepSpan(d);
}

// The display page's sweep: 1001 points from a fifth of the cutoff to five
// times it, or for a band design over the span about its centre that
// BandSweepSpan gives. Every analysis that must judge a design as the
// display page shows it (a tolerance run, a search over designs) sweeps so.
inline void SetDisplaySweep(DesignRecord& d) {
  d.Fstart = static_cast<float>(static_cast<double>(d.Width) * 0.2);
  d.NrIntervals = kSweepIntervals;
  d.Fstop = static_cast<float>(static_cast<double>(d.Width) * 5);
  if (IsBandDesign(d) && d.Center > 0) {
    const double k = BandSweepSpan(d);
    d.Fstart = static_cast<float>(d.Center / k);
    d.Fstop = static_cast<float>(d.Center * k);
  }
}

// The points of a band design's own sweep, as the display page makes them,
// while the user's span differs; empty otherwise. The stage figures and the
// tolerance mask judge the band at these too, so that a sweep widened to
// show the harmonics never judges the passband and the stop edges at fewer
// points.
inline std::vector<float> OwnBandSweep(const DesignRecord& d) {
  std::vector<float> points;
  if (!(d.SweepSpan > 1) || !IsBandDesign(d) || !(d.Center > 0)) return points;
  const double k = OwnBandSweepSpan(d);
  const double lnStart = std::log(static_cast<double>(static_cast<float>(d.Center / k)));
  const double span = std::log(static_cast<double>(static_cast<float>(d.Center * k))) - lnStart;
  for (int i = 0; i <= kSweepIntervals; ++i)
    points.push_back(static_cast<float>(std::exp(lnStart + span * i / kSweepIntervals)));
  return points;
}

}  // namespace drenik
