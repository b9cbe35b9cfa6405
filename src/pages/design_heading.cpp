#include "pages/design_heading.h"

#include "core/formatters.h"
#include "synthesis/design_edges.h"
#include "synthesis/families.h"

namespace drenik {

std::string FrequencyHeading(const DesignRecord& d, bool edges) {
  const auto hz = [](double f) { return TrimBlanks(FormatFrequency(static_cast<float>(f))); };
  const DesignEdges e = EdgesOf(d);
  // A band design's Width is f2 - f1 about its geometric centre, not a
  // cutoff.
  if (e.band)
    return ", centre " + hz(d.Center) + ", bandwidth " + hz(d.Width) +
           (edges ? " (f1 " + hz(e.f1) + ", f2 " + hz(e.f2) + ")" : "");
  return ", cutoff " + TrimBlanks(FormatFrequency(d.Width));
}

std::string DesignHeading(const DesignRecord& d, bool edges) {
  return std::string(FamilyName(d.Family)) + " order " + std::to_string(d.Order) + " " +
         d.Topology + FrequencyHeading(d, edges);
}

}  // namespace drenik
