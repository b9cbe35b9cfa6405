// Loading the design page: every control is set from the record, selecting
// options from code so that their handlers (and the enabling rules) run.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

#include "core/formatters.h"
#include "core/last_session.h"
#include "pages/design_choices.h"
#include "pages/design_page.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

// The fewest digits under a prefix letter, within the box's twelve
// characters: a band design comes back on the same centre and width, not one
// rounded to five digits.
std::string ExactEntry(float value, const std::string& formatted) {
  auto reads = [value](std::string text) { return CheckEntry(text) == value; };
  if (reads(formatted)) return formatted;
  static constexpr std::pair<double, const char*> kPrefixes[] = {
      {1e9, "G"}, {1e6, "M"}, {1e3, "k"}, {1, ""}, {1e-3, "m"}, {1e-6, "u"}, {1e-9, "n"}};
  const auto* prefix = std::find_if(std::begin(kPrefixes), std::end(kPrefixes) - 1,
                                    [value](const auto& p) { return std::fabs(value) >= p.first; });
  for (int digits = 1; digits <= 9; ++digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*g%s", digits, value / prefix->first, prefix->second);
    if (reads(text)) return text;
  }
  return formatted;
}

// What the option selections report is dropped (the controls are half set
// then); the design the load ends with has its say, and the strip is drawn
// whatever it said.
void DesignPage::Load() {
  controls_.RunLoad([this] {
    LoadControls();
    controls_.RunStep([this] { RunSynthesisDriver(); });
    ShowOtherDesign();
    RedrawSchematic();
  });
}

void DesignPage::LoadControls() {
  controls_.RunLoad([this] {
    controls_.ResetToDefaults();
    strip_.Clear();
    refusal_.clear();
    caption_ = d_.ProgramTitle + " " + d_.Version + " - Design";

    if (d_.Width == 0) d_.Width = 4.5e6f;
    // A band design's boxes hold its band exactly; they are set before its
    // topology is selected, whose redesign reads them.
    const bool band = IsBandDesign(d_) && d_.Center > 0;
    Box("txtBandwidth")
        .SetText(band ? ExactEntry(d_.Width, FormatFrequency(d_.Width))
                      : FormatFrequency(d_.Width));
    if (band) Box("txtCenter").SetText(ExactEntry(d_.Center, FormatFrequency(d_.Center)));
    if (band && d_.ResonatorL > 0)
      Box("txtResonatorL").SetText(ExactEntry(d_.ResonatorL, FormatInductance(d_.ResonatorL)));

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
    if (d_.Order >= kLowestButtonOrder && d_.Order <= kHighestButtonOrder)
      Option("optOrder" + std::to_string(d_.Order)).Select();

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

    // A ripple and depth chosen beyond the buttons stand in for them.
    if (d_.ChosenRipple > 0) d_.Apass = d_.ChosenRipple;
    if (d_.ChosenDepth > 0) d_.Astop = d_.ChosenDepth;
    if (d_.Apass == 0) d_.Apass = kFirstStartRipple;
    const RippleChoice* ripple =
        d_.ChosenRipple > 0 ? nullptr : SnapRipple(d_.Apass, SnapBounds::Load);
    if (ripple) {
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
