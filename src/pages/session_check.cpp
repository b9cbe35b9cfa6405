#include "pages/session_check.h"

#include <cmath>
#include <memory>

#include "analysis/ladder.h"
#include "core/last_session.h"
#include "pages/design_choices.h"
#include "pages/opening_page.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

bool Within(float value, BoxRange range) {
  return value >= range.low && value <= range.high;
}

// NaN fails every comparison, so each test is written to pass only for a
// number in range.
// An order the family takes, or one of the page's buttons (a family of one
// fixed order sets its own).
bool OrderInRange(const DesignRecord& s) {
  const FamilyInfo* f = FindFamily(s.Family);
  return f && ((s.Order >= f->minOrder && s.Order <= f->maxOrder) ||
               (s.Order >= kLowestButtonOrder && s.Order <= kHighestButtonOrder));
}

bool FieldsInRange(const DesignRecord& s) {
  return OrderInRange(s) && FindTopology(s.Topology) && Within(s.Width, kBandwidthRange) &&
         Within(s.Rsource, kImpedanceRange) && s.Qind >= kLeastQ && std::isfinite(s.Qind) &&
         s.Apass >= 0 && std::isfinite(s.Apass) && s.Astop >= 0 && std::isfinite(s.Astop) &&
         (s.Center == 0 || Within(s.Center, kBandwidthRange)) && s.ResonatorL >= 0 &&
         s.ResonatorL <= kResonatorLMax;
}

// The design the page's load would start from, as far as the prototype, the
// scaling and the display page's analysis of the ladder see it (an extreme
// ripple can leave a load resistance that no float holds).
bool Designable(const DesignRecord& session) {
  auto trial = std::make_unique<DesignRecord>(session);
  DesignRecord& t = *trial;
  SetProgramConstants(t);
  const FamilyInfo& family = *FindFamily(t.Family);
  if (family.fixedOrder) t.Order = family.fixedOrder;
  if (family.cauerType) t.CauerType = family.cauerType;
  t.CauerFlag = family.resonantArms ? 1 : 0;
  if (t.Apass == 0) t.Apass = kFirstStartRipple;
  if (t.Astop == 0) t.Astop = kFirstStartDepth;
  if (t.ChosenRipple > 0) t.Apass = t.ChosenRipple;
  if (t.ChosenDepth > 0) t.Astop = t.ChosenDepth;
  if (family.readsDesignInputs && !(t.ChosenRipple > 0)) SnapRipple(t.Apass, SnapBounds::Driver);
  t.Qcap = kInfiniteQcap;
  // A band design from a file that kept no centre takes the page's own.
  if (IsBandDesign(t) && t.Center == 0) t.Center = kDefaultCenter;
  const EngineReport prototype = family.prototype(t);
  return prototype.Ok() && prototype.notice.empty() && Denormalize(t).Ok() &&
         LadderFault(LadderOf(t)).empty();
}

}  // namespace

bool IsUsableSession(const DesignRecord& session) {
  return FieldsInRange(session) && Designable(session);
}

}  // namespace drenik
