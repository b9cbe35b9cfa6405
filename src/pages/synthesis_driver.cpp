// The design page's synthesis driver and the inputs it reads before a Cauer
// prototype.
#include "core/formatters.h"
#include "pages/design_choices.h"
#include "pages/design_page.h"
#include "pages/report_acts.h"
#include "pages/stopband_edge.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

void DesignPage::RunSynthesisDriver() {
  ++driverRuns_;
  for (int n = kLowestButtonOrder; n <= kHighestButtonOrder; ++n) {
    if (Option("optOrder" + std::to_string(n)).Selected()) {
      d_.Order = static_cast<int16_t>(n);
      break;
    }
  }

  if (Option("optQ1").Selected()) {
    d_.Qcap = kInfiniteQcap;
  } else if (Option("optQ2").Selected()) {
    std::string text = Box("txtQother").Text();
    d_.Qcap = CheckEntry(text);
  }

  for (const TopologyInfo& t : Topologies()) {
    if (Option(TopologyOption(t)).Selected()) d_.Topology = t.name;
  }
  if (SelectedBand()) {
    ReadCenter();
    ReadResonatorL();
  }

  for (const StopbandChoice& c : kStopbandChoices) {
    if (Option(c.option).Selected()) {
      d_.Astop = c.value;
      break;
    }
  }

  for (const RippleChoice& c : kRippleChoices) {
    if (Option(c.option).Selected()) {
      d_.Apass = c.value;
      break;
    }
  }
  // A ripple or depth chosen beyond the buttons stands in for a selected
  // button (none is selected then), and such a ripple is kept as it is.
  if (d_.ChosenDepth > 0) d_.Astop = d_.ChosenDepth;
  if (d_.ChosenRipple > 0) d_.Apass = d_.ChosenRipple;
  // The snapped ripple is shown in its option while the ripple choice is
  // offered. The driver is already designing with that ripple, so the
  // option's own handler (which would start another design) is not run.
  const RippleChoice* snapped =
      d_.ChosenRipple > 0 ? nullptr : SnapRipple(d_.Apass, SnapBounds::Driver);
  if (snapped && FrameNamed("frmRipple").Enabled()) {
    Option(snapped->option).SetSelectedQuietly(true);
  }

  const FamilyInfo* family = FindFamily(d_.Family);
  if (!family) return;
  if (family->readsDesignInputs) ReadDesignInputs();
  Act(family->prototype(d_), controls_);
}

void DesignPage::ReadDesignInputs() {
  d_.Qcap = kInfiniteQcap;
  std::string text = Box("txtBandwidth").Text();
  d_.Width = CheckEntry(text);
  d_.Rstandard = d_.Rsource;
  if (!(d_.ChosenRipple > 0)) SnapRipple(d_.Apass, SnapBounds::Driver);
  const FamilyInfo* family = FindFamily(d_.Family);
  if (family && family->stopbandChoice) {
    double factor = StopbandEdgeFactor(d_.Order, d_.Astop, d_.Apass);
    if (factor > 0) d_.StopbandEdge = static_cast<float>(static_cast<double>(d_.Width) * factor);
  }
}

}  // namespace drenik
