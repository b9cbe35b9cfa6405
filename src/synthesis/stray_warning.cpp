#include "synthesis/stray_warning.h"

#include <algorithm>

#include "core/element_kinds.h"
#include "core/formatters.h"

namespace drenik {

std::string StrayWarning(const DesignRecord& d) {
  int smallest = 0, count = 0;
  for (int j = 1; j <= std::clamp<int>(d.Stages, 0, kMaxPositions); ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (!f || !f->hasC || !(d.C[j] > 0) || d.C[j] >= kLeastPracticalCapacitance) continue;
    ++count;
    if (smallest == 0 || d.C[j] < d.C[smallest]) smallest = j;
  }
  if (count == 0) return {};
  return "C" + std::to_string(smallest) + " " + TrimBlanks(FormatCapacitance(d.C[smallest])) +
         (count > 1 ? " and " + std::to_string(count - 1) + " more" : "") +
         " below 1 pF: swamped by the board's strays.";
}

}  // namespace drenik
