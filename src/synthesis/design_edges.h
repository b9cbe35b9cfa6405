#pragma once
// Where a designed filter's bands lie in hertz: the cutoff, whether the
// ladder is a highpass, and the stopband edge of a design that has one (the
// elliptic prototype's normalized edge scaled like the cutoff, and mirrored
// about it for a highpass).

#include <cmath>

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
    const double lowpassStop = e.stopEdge > 0 ? d.FstopNormalized : 2.0;
    // |f/f0 - f0/f| f0 / BW is the lowpass frequency of a bandpass, its
    // reciprocal that of a bandstop.
    const double x = (e.bandstop ? 1 / lowpassStop : lowpassStop) * d.Width / d.Center;
    e.stopHigh = d.Center * (x + std::sqrt(x * x + 4)) / 2;
    e.stopLow = static_cast<double>(d.Center) * d.Center / e.stopHigh;
    e.stopEdge = 0;  // the lowpass edge means nothing here
  }
  return e;
}

}  // namespace drenik
