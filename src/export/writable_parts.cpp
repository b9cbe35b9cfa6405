#include "export/writable_parts.h"

#include <algorithm>
#include <cmath>

#include "core/element_kinds.h"

namespace drenik {

std::string UnwritablePart(const DesignRecord& d) {
  for (int j = 1; j <= std::clamp<int>(d.Stages, 0, kMaxPositions); ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (!f) continue;
    const struct {
      bool has;
      float value;
      const char *name, *unit;
    } parts[] = {{f->hasL, d.L[j], "L", " H"}, {f->hasC, d.C[j], "C", " F"}};
    for (const auto& p : parts) {
      if (!p.has || (std::isfinite(p.value) && p.value != 0)) continue;
      return p.name + std::to_string(j) + " is " +
             (p.value == 0          ? std::string("0") + p.unit
              : std::isnan(p.value) ? "not a number"
                                    : "infinite");
    }
  }
  return {};
}

bool PartsWritable(const DesignRecord& d, Platform& platform, const std::string& failure) {
  const std::string part = UnwritablePart(d);
  if (part.empty()) return true;
  platform.ShowMessage(part + " in this design: there is no ladder to write. " + failure);
  return false;
}

}  // namespace drenik
