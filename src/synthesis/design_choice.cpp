#include "synthesis/design_choice.h"

#include <cstdio>

#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

std::string ChoiceFault(const DesignChoice& c) {
  const FamilyInfo* f = FindFamily(c.family);
  if (!f) return "No family has the code " + std::to_string(c.family) + ".";
  char text[200] = "";
  if (f->minOrder == f->maxOrder && c.order != f->minOrder)
    std::snprintf(text, sizeof text, "The %s family is of order %d only, not %d.", f->name,
                  f->minOrder, c.order);
  else if (c.order < f->minOrder || c.order > f->maxOrder)
    std::snprintf(text, sizeof text, "The %s family takes orders %d to %d, not %d.", f->name,
                  f->minOrder, f->maxOrder, c.order);
  else if (f->ripple.Offered() && !f->ripple.Holds(c.ripple))
    std::snprintf(text, sizeof text, "The %s family takes a ripple of %g to %g dB, not %g.",
                  f->name, f->ripple.low, f->ripple.high, c.ripple);
  else if (f->depth.Offered() && !f->depth.Holds(c.depth))
    std::snprintf(text, sizeof text, "The %s family takes a stopband depth of %g to %g dB, not %g.",
                  f->name, f->depth.low, f->depth.high, c.depth);
  return text;
}

EngineReport DesignInto(const DesignChoice& c, DesignRecord& d) {
  if (std::string why = ChoiceFault(c); !why.empty()) return EngineReport::Fault(why);
  const FamilyInfo& family = *FindFamily(c.family);
  const TopologyInfo* topology = FindTopology(c.topology);
  if (!topology) return EngineReport::Fault("No topology is called '" + c.topology + "'.");
  d = DesignRecord{};
  SetCircleConstants(d);
  d.Family = c.family;
  d.Order = static_cast<int16_t>(c.order);
  d.Topology = topology->name;
  d.CauerType = family.cauerType ? family.cauerType : "";
  d.CauerFlag = family.resonantArms ? 1 : 0;
  d.Apass = static_cast<float>(c.ripple);
  d.Astop = static_cast<float>(c.depth);
  d.Width = static_cast<float>(c.width);
  d.Center = static_cast<float>(c.center);
  d.Rsource = d.Rstandard = static_cast<float>(c.rsource);
  d.Rload = d.Rsource;
  d.ResonatorL = static_cast<float>(c.resonatorL);
  d.Qind = kInfiniteQind;
  if (EngineReport r = family.prototype(d); !r.Ok() || !r.notice.empty()) {
    if (r.Ok()) r.fault = r.notice;
    return r;
  }
  return Denormalize(d);
}

}  // namespace drenik
