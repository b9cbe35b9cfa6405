#pragma once
// The four ladder topologies and every fact the program keeps about each:
// the exact string of the design record and the last-session file, the
// design page's caption, the filter-file letter, the first element, whether
// it is a highpass, and the routine that fills its positions. A new topology
// is one row here and its routine (denormalize.h).

#include <span>
#include <string_view>

#include "core/element_kinds.h"
#include "core/last_session.h"
#include "synthesis/denormalize.h"

namespace drenik {

struct TopologyInfo {
  const char* name;     // the exact string, compared case-sensitively
  const char* caption;  // the design page's option
  const char* letter;   // in the filter file
  ElementKind first;    // the element next to the source
  bool highpass;
  // Fills ElementType, L and C at positions 1..n from the prototype.
  void (*fill)(DesignRecord& d, PositionScaler& s, int n);
};

inline constexpr TopologyInfo kTopologies[] = {
    {"Cinlowpass", "C-input lowpass", "A", ElementKind::ShuntC, false, &FillCInputLowpass},
    {"Linlowpass", "L-input lowpass", "B", ElementKind::SeriesL, false, &FillLInputLowpass},
    {"Cinhighpass", "C-input highpass", "I", ElementKind::SeriesC, true, &FillCInputHighpass},
    {"Linhighpass", "L-input highpass", "J", ElementKind::ShuntL, true, &FillLInputHighpass},
};
// The topology of a first start.
inline constexpr const TopologyInfo& kDefaultTopology = kTopologies[0];
static_assert(std::string_view(kDefaultTopology.name) == kFirstStartTopology);

inline std::span<const TopologyInfo> Topologies() {
  return kTopologies;
}

// The topology named exactly so; nullptr for any other text.
inline const TopologyInfo* FindTopology(std::string_view name) {
  for (const TopologyInfo& t : kTopologies)
    if (name == t.name) return &t;
  return nullptr;
}

// A ladder that begins with a shunt element, like the prototype, scales its
// normalized load as a resistance; the duals take the reciprocal.
inline bool LoadScalesDirectly(const TopologyInfo& t) {
  const ElementFacts* first = FactsOf(t.first);
  return first && first->arm == Arm::Shunt;
}

}  // namespace drenik
