// A design chosen elsewhere (the design-from-a-mask page) taken into the
// pages: the design page loaded with it, its order, ripple and depth taken
// as the "Other order and ripple" dialog takes them (so any the family
// allows, on the buttons or beyond them), then its responses on the display
// page, with the stock parts chosen in the series it was searched with.
#include "core/formatters.h"
#include "pages/application.h"
#include "pages/other_design.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

void Application::UseDesign(const DesignChoice& c, const std::optional<PartsRequest>& parts) {
  if (current_ == PageId::Ended || !FindFamily(c.family)) return;
  DesignRecord& d = record_;
  d.Family = c.family;
  d.Topology = c.topology;
  d.Width = static_cast<float>(c.width);
  d.Center = static_cast<float>(c.center);
  d.ResonatorL = static_cast<float>(c.resonatorL);
  d.Rsource = static_cast<float>(c.rsource);
  // The load selects what the buttons hold; the rest follows below.
  d.Order = static_cast<int16_t>(c.order);
  d.Apass = static_cast<float>(c.ripple);
  d.Astop = static_cast<float>(c.depth);
  d.ChosenRipple = d.ChosenDepth = 0;
  Enter(PageId::Design);
  // As the dialog's OK: one event of the design page, whose engine faults
  // it shows.
  std::string why;
  const bool designed = design_.Controls().RunEvent([&] {
    // The cutoff exactly, as the load writes a band's: the page's own five
    // figures (which the load has just read back) would move the design the
    // search measured.
    const float width = static_cast<float>(c.width);
    if (!IsBandDesign(d))
      design_.Box("txtBandwidth").SetText(ExactEntry(width, FormatFrequency(width)));
    why = design_.ChooseOtherDesign(
        {.family = FindFamily(c.family), .order = c.order, .ripple = c.ripple, .depth = c.depth});
  });
  if (!why.empty()) platform_.ShowMessage(why);
  if (!designed || !why.empty()) return;
  Enter(PageId::Display);
  if (parts && current_ == PageId::Display) {
    display_.SetPartsRequest(*parts);
    display_.ShowChosenParts();
  }
}

}  // namespace drenik
