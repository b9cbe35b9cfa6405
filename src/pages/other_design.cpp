#include "pages/other_design.h"

#include "core/number_text.h"
#include "pages/design_choices.h"
#include "synthesis/design_choice.h"
#include "synthesis/families.h"

namespace drenik {

namespace {

std::string Decibels(double db) {
  return GeneralText(db) + " dB";
}

bool IsRippleButton(float apass) {
  for (const RippleChoice& r : kRippleChoices)
    if (apass == r.value) return true;
  return false;
}

bool IsDepthButton(float astop) {
  for (const StopbandChoice& s : kStopbandChoices)
    if (astop == s.value) return true;
  return false;
}

}  // namespace

OtherDesign OtherDesignOf(const DesignRecord& d) {
  return {.family = FindFamily(d.Family), .order = d.Order, .ripple = d.Apass, .depth = d.Astop};
}

std::string OtherDesignFault(const OtherDesign& o) {
  if (!o.family) return "Choose a family first.";
  return ChoiceFault(
      {.family = o.family->code, .order = o.order, .ripple = o.ripple, .depth = o.depth});
}

std::string BeyondButtonsCaption(const DesignRecord& d) {
  const FamilyInfo* f = FindFamily(d.Family);
  if (!f || !f->orderChoice) return {};
  const bool order = d.Order < kLowestButtonOrder || d.Order > kHighestButtonOrder;
  const bool ripple = f->ripple.Offered() && (d.ChosenRipple > 0 || !IsRippleButton(d.Apass));
  const bool depth = f->depth.Offered() && !IsDepthButton(d.Astop);
  if (!order && !ripple && !depth) return {};
  std::string caption = "Order " + std::to_string(d.Order);
  if (f->ripple.Offered()) caption += ", " + Decibels(d.Apass) + " ripple";
  if (f->depth.Offered()) caption += ", " + Decibels(d.Astop) + " depth";
  return caption;
}

}  // namespace drenik
