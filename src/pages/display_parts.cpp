// The display page's chosen-parts stage: stock parts in the series the user
// picked, chosen from the exact design to keep its response, analysed and
// drawn over the other stages in the fourth colour and label row.

#include <utility>

#include "pages/display_page.h"
#include "pages/report_acts.h"
#include "pages/schematic.h"
#include "plot/frequency_axis.h"
#include "plot/legends.h"
#include "plot/response_plot.h"
#include "synthesis/denormalize.h"
#include "synthesis/design_edges.h"

namespace drenik {

void DisplayPage::OnChosenParts() {
  controls_.RunEvent([this] {
    PartsRequest request = partsRequest_;
    if (!host_.AskPartsRequest(request, "")) return;
    partsRequest_ = request;
    ChosenPartsStage();
    // Parts that gave stopband away bring the dialog back with the line
    // that says so and what would help; a changed choice is made at once.
    while (chosen_ && !chosen_->note.empty()) {
      request = partsRequest_;
      if (!host_.AskPartsRequest(request, chosen_->note) || SameParts(request, partsRequest_))
        return;
      partsRequest_ = request;
      ChosenPartsStage();
    }
  });
  Shown();
}

void DisplayPage::ShowChosenParts() {
  controls_.RunEvent([this] {
    if (!chosen_) ChosenPartsStage();
  });
  Shown();
}

// The record holds the values of the last stage drawn: the chooser starts
// from the exact values, denormalized afresh beside it.
void DisplayPage::ChosenPartsStage() {
  DesignRecord exact = d_;
  Act(Denormalize(exact), controls_);
  // A band swept the user's way is chosen for on its own sweep: swept wider
  // to show its harmonics, its passband would be judged at fewer points.
  if (std::exchange(exact.SweepSpan, 0.0f) > 0) SetDisplaySweep(exact);
  PartsChoice choice;
  Act(ChooseParts(exact, partsRequest_, choice, partsProgress_), controls_);
  ApplyParts(choice, d_);
  d_.Turns.fill(0);
  for (const PositionParts& p : choice.positions)
    if (p.position >= 1 && p.position < kComponentSlots)
      d_.Turns[static_cast<size_t>(p.position)] = static_cast<int16_t>(p.turns);
  // Another run's curves go at once: the new ones need not cover them.
  if (chosen_) {
    for (int32_t color : {kChosenTransmissionColor, kChosenReflectionColor})
      canvas_.DropLines(color, kPlotLeft, kPlotTop, kPlotRight, kPlotBottom);
  }
  chosen_ = std::move(choice);
  AnalyzeAndDraw(kChosenPartsMode);
  DrawChosenPartsLegends(canvas_);
  DrawSidePlots();
}

}  // namespace drenik
