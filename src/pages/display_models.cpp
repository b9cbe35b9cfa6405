// The display page's part models: the dialog's entries into the record, the
// curves and the schematic redrawn with them, and each inductor's
// self-resonant frequency with its winding capacitance.

#include <algorithm>

#include "analysis/part_resonances.h"
#include "core/formatters.h"
#include "pages/band_schematic.h"
#include "pages/display_page.h"
#include "pages/part_model_entries.h"

namespace drenik {

void DisplayPage::OnPartModels() {
  controls_.RunEvent([this] {
    PartModelEntries entries = EntriesOf(d_, partsRequest_.former);
    if (!host_.AskPartModels(entries)) return;
    if (const std::string bad = ReadEntries(entries, d_, partsRequest_.former); !bad.empty()) {
      platform_.ShowMessage(bad, "Part models", MessageIcon::Exclamation);
      return;
    }
    Remodel();
    if (chosen_) ChosenPartsStage();
  });
  Shown();
}

// Every stage on the page is analysed again with the new parts: with the 5% L
// curve shown the whole retune sequence (exact, 5% C, 5% L), otherwise the
// exact and 5% C curves. The first draw clears the plots.
void DisplayPage::Remodel() {
  if (d_.InductorMode == 1) {
    RetuneSequence();
    return;
  }
  ExactAndStandardCurves();
  DrawSidePlots();
}

// A column right of the schematic, for the values last analysed: right of
// the load's texts of the widest ladder (they end left of x = 9500) and
// above the bandwidth label (y = 2700); seven inductors and the heading fit.
// A band ladder may reach further right, and its band label stands over the
// main plot instead: the column starts right of the ladder and runs down to
// the VSWR plot's heading, room for a Cauer band ladder's ten inductors.
// Ideal inductors draw nothing; a column drawn before is erased.
void DisplayPage::DrawSelfResonances() {
  constexpr float kTop = 950, kRight = 11950, kLine = 180;
  float left = 9900, bottom = 2650;
  if (DrawsAsBand(d_)) {
    const BandLayout band = LayOutBandLadder(d_);
    left = std::max(left, BandLadderOrigin(band) + band.right + 150);
    bottom = 3400;
  }
  if (resonancesShown_) canvas_.FilledBox(left, kTop, kRight, bottom, kWhite);
  const std::vector<float> hertz = InductorResonances(d_);
  resonancesShown_ = std::ranges::any_of(hertz, [](float f) { return f > 0; });
  if (!resonancesShown_) return;
  float y = kTop;
  PrintAt(left, y, "Self-resonance:");
  for (size_t j = 1; j < hertz.size(); ++j) {
    if (!(hertz[j] > 0)) continue;
    y += kLine;
    PrintAt(left, y, "L" + std::to_string(j) + "  " + TrimBlanks(FormatFrequency(hertz[j])));
  }
}

}  // namespace drenik
