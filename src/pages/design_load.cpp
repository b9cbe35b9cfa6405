// Loading the design page: every control is set from the record, selecting
// options from code so that their handlers (and the enabling rules) run.
#include "core/formatters.h"
#include "core/last_session.h"
#include "pages/design_choices.h"
#include "pages/design_page.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

// What the option selections report is dropped (the controls are half set
// then); the design the load ends with has its say, and the strip is drawn
// whatever it said.
void DesignPage::Load() {
  controls_.RunLoad([this] {
    LoadControls();
    controls_.RunStep([this] { RunSynthesisDriver(); });
    RedrawSchematic();
  });
}

void DesignPage::LoadControls() {
  controls_.RunLoad([this] {
    controls_.ResetToDefaults();
    strip_.Clear();
    caption_ = d_.ProgramTitle + " " + d_.Version + " - Design";

    if (d_.Width == 0) d_.Width = 4.5e6f;
    Box("txtBandwidth").SetText(FormatFrequency(d_.Width));

    if (d_.Rsource == 0) {
      d_.Rsource = 50;
      Option("optZ50").Select();
    }
    Box("txtZother").SetText(FormatValue(d_.Rsource));
    if (d_.Rsource != 50) {
      Option("optZother").Select();
    } else {
      Option("optZ50").Select();
    }

    MatchFixedDesignLoad();

    if (d_.Order == 0) {
      d_.Order = 5;
      Option("optOrder5").Select();
    }
    if (d_.Order >= 3 && d_.Order <= 7) Option("optOrder" + std::to_string(d_.Order)).Select();

    if (d_.Qind == 0) {
      d_.Qind = kInfiniteQind;
      Option("optQ1").Select();
      Option("optQ2").SetSelectedQuietly(false);
    }
    Box("txtQother").SetText(FormatValue(d_.Qind));
    if (d_.Qind >= kInfiniteQind) {
      d_.Qind = kInfiniteQind;
      Box("txtQother").SetText("1M");
      Option("optQ1").Select();
      Option("optQ2").SetSelectedQuietly(false);
    } else {
      Option("optQ1").SetSelectedQuietly(false);
      Option("optQ2").Select();
    }

    if (d_.Topology.empty()) d_.Topology = kDefaultTopology.name;
    if (const TopologyInfo* topology = FindTopology(d_.Topology)) {
      Option(TopologyOption(*topology)).Select();
    }

    if (d_.Family == 0) d_.Family = kDefaultFamily;
    if (const FamilyInfo* family = FindFamily(d_.Family)) {
      Option(family->optionName).Select();
      if (family->cauerType) d_.CauerType = family->cauerType;
    }

    if (d_.Apass == 0) d_.Apass = kFirstStartRipple;
    if (const RippleChoice* ripple = SnapRipple(d_.Apass, SnapBounds::Load)) {
      Option(ripple->option).Select();
    }

    const FamilyInfo* family = FindFamily(d_.Family);
    if (family && family->fixedOrder) {
      for (OptionButton* option : controls_.OptionsOf(&FrameNamed("frmRipple"))) {
        option->SetSelectedQuietly(false);
      }
    }

    if (d_.Astop == 0) d_.Astop = kFirstStartDepth;
    for (const StopbandChoice& c : kStopbandChoices) {
      if (d_.Astop == c.value) Option(c.option).Select();
    }

    if (family) LabelNamed("lblRipple").SetCaption(family->cutoffLabel);
  });
}

}  // namespace drenik
