// The display page's part models: the dialog's entries into the record, the
// curves and the schematic redrawn with them, and each inductor's
// self-resonant frequency with its winding capacitance.

#include <algorithm>

#include "analysis/part_resonances.h"
#include "core/formatters.h"
#include "pages/band_schematic.h"
#include "pages/display_page.h"
#include "pages/part_model_entries.h"
#include "pages/resonance_column.h"

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

// The self-resonances of the values last analysed, right of the schematic
// (resonance_column.h): right of the load's texts of the widest lowpass
// ladder (they end left of x = 9500) and above the bandwidth label
// (y = 2700); right of a ladder drawn in slots down to the VSWR plot's
// heading. Ideal inductors draw nothing; a list drawn before is erased.
void DisplayPage::DrawSelfResonances() {
  const ResonanceColumns box = ResonanceColumnsOf(d_);
  if (resonancesShown_)
    canvas_.FilledBox(erasedLeft_, box.top, erasedRight_, erasedBottom_, kWhite);
  const std::vector<float> hertz = InductorResonances(d_);
  resonancesShown_ = box.count > 0;
  erasedLeft_ = box.left, erasedBottom_ = box.bottom;
  erasedRight_ =
      std::max(kResonanceRight, box.left + static_cast<float>(box.count) * kResonanceColumn);
  if (!resonancesShown_) return;
  float x = box.left, y = box.top;
  PrintAt(x, y, "Self-resonance:");
  for (size_t j = 1; j < hertz.size(); ++j) {
    if (!(hertz[j] > 0)) continue;
    y += kResonanceLine;
    if (y + kResonanceLine > box.bottom) x += kResonanceColumn, y = box.top + kResonanceLine;
    PrintAt(x, y, "L" + std::to_string(j) + "  " + TrimBlanks(FormatFrequency(hertz[j])));
  }
}

}  // namespace drenik
