#pragma once
// The ladder topologies and every fact the program keeps about each:
// the exact string of the design record and the last-session file, the
// design page's caption, the filter-file letter, the first element, whether
// it is a highpass, and the routine that fills its positions. A new topology
// is one row here and its routine (denormalize.h).

#include <span>
#include <string_view>

#include "core/element_kinds.h"
#include "core/last_session.h"
#include "synthesis/band_transform.h"
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
  // A band design (Center and Width give the band) fills the whole ladder,
  // its load and its length through bandFill instead.
  bool band = false;
  bool bandstop = false;
  EngineReport (*bandFill)(DesignRecord& d) = nullptr;
  // The coupled form takes a resonator inductance.
  bool resonatorL = false;
};

inline constexpr TopologyInfo kTopologies[] = {
    {"Cinlowpass", "C-input lowpass", "A", ElementKind::ShuntC, false, &FillCInputLowpass},
    {"Linlowpass", "L-input lowpass", "B", ElementKind::SeriesL, false, &FillLInputLowpass},
    {"Cinhighpass", "C-input highpass", "I", ElementKind::SeriesC, true, &FillCInputHighpass},
    {"Linhighpass", "L-input highpass", "J", ElementKind::ShuntL, true, &FillLInputHighpass},
    {.name = "Cinbandpass",
     .caption = "C-in bandpass",
     .letter = "E",
     .first = ElementKind::ShuntLC,
     .highpass = false,
     .fill = nullptr,
     .band = true,
     .bandFill = &FillCInputBandpass},
    {.name = "Linbandpass",
     .caption = "L-in bandpass",
     .letter = "F",
     .first = ElementKind::SeriesLC,
     .highpass = false,
     .fill = nullptr,
     .band = true,
     .bandFill = &FillLInputBandpass},
    {.name = "Cinbandstop",
     .caption = "C-in bandstop",
     .letter = "M",
     .first = ElementKind::ShuntTrap,
     .highpass = false,
     .fill = nullptr,
     .band = true,
     .bandstop = true,
     .bandFill = &FillCInputBandstop},
    {.name = "Linbandstop",
     .caption = "L-in bandstop",
     .letter = "N",
     .first = ElementKind::SeriesTank,
     .highpass = false,
     .fill = nullptr,
     .band = true,
     .bandstop = true,
     .bandFill = &FillLInputBandstop},
    {.name = "Coupledbandpass",
     .caption = "Coupled bandpass",
     .letter = "G",
     .first = ElementKind::SeriesC,
     .highpass = false,
     .fill = nullptr,
     .band = true,
     .bandFill = &FillCoupledBandpass,
     .resonatorL = true},
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

// Whether the record holds a band design (its Center then means something).
inline bool IsBandDesign(const DesignRecord& d) {
  const TopologyInfo* t = FindTopology(d.Topology);
  return t && t->band;
}

// Whether the schematics lay the ladder out in slots (pages/band_schematic.h)
// rather than at the fixed places of the design page's ladders: a band
// design, or a ladder of an order above the page's highest, which those
// places would run off the page. (The order, not the ladder's length, so
// that the answer holds before the ladder is scaled as well.)
inline bool SlotLaidLadder(const DesignRecord& d) {
  return (IsBandDesign(d) && d.Center > 0) || d.Order > kHighestButtonOrder;
}

// A ladder that begins with a shunt element, like the prototype, scales its
// normalized load as a resistance; the duals take the reciprocal.
inline bool LoadScalesDirectly(const TopologyInfo& t) {
  const ElementFacts* first = FactsOf(t.first);
  return first && first->arm == Arm::Shunt;
}

}  // namespace drenik
