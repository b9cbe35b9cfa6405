#include "analysis/part_resonances.h"

#include <algorithm>

#include "core/element_kinds.h"
#include "core/formatters.h"

namespace drenik {

std::vector<PartResonance> PartResonances(const DesignRecord& d) {
  std::vector<PartResonance> out;
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    // The band branches (codes 5 and 8) are real parts wherever the kernel
    // takes them so: in a design with a centre.
    if (!Modelled(f, d.Center > 0)) continue;
    if (f->hasL)
      if (double hz = SelfResonance(d.L[j], d.WindingCapacitance); hz > 0)
        out.push_back({j, true, hz});
    if (f->hasC)
      if (double hz = SelfResonance(d.CapacitorEsl, d.C[j]); hz > 0) out.push_back({j, false, hz});
  }
  return out;
}

std::vector<float> InductorResonances(const DesignRecord& d) {
  std::vector<float> out(static_cast<size_t>(std::clamp<int>(d.Stages, 0, kMaxPositions)) + 1);
  for (const PartResonance& r : PartResonances(d))
    if (r.inductor) out[static_cast<size_t>(r.position)] = static_cast<float>(r.hertz);
  return out;
}

std::string ResonanceWarning(const DesignRecord& d) {
  // Two named and a count keep the line within the display page's room.
  constexpr int kNamed = 2;
  std::string within;
  int count = 0;
  for (const PartResonance& r : PartResonances(d)) {
    if (r.hertz < d.Fstart || r.hertz > d.Fstop) continue;
    if (++count <= kNamed)
      within += std::string(within.empty() ? "" : ", ") + (r.inductor ? "L" : "C") +
                std::to_string(r.position) + " at " + TrimBlanks(FormatFrequency(r.hertz));
  }
  if (count == 0) return {};
  if (count > kNamed) within += " and " + std::to_string(count - kNamed) + " more";
  return "Self-resonance inside the sweep: " + within + ".";
}

}  // namespace drenik
