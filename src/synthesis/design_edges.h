#pragma once
// Where a designed filter's bands lie in hertz: the cutoff, whether the
// ladder is a highpass, and the stopband edge of a design that has one (the
// elliptic prototype's normalized edge scaled like the cutoff, and mirrored
// about it for a highpass).

#include "core/design_record.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

struct DesignEdges {
  bool highpass = false;
  double cutoff = 0;    // Width, Hz
  double stopEdge = 0;  // Hz; 0 for a family without a stopband edge
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
  return e;
}

}  // namespace drenik
