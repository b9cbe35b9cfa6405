// The display page's chosen-parts stage: stock parts in the series the user
// picked, chosen from the exact design to keep its response, analysed and
// drawn over the other stages in the fourth colour and label row.

#include "pages/display_page.h"
#include "pages/report_acts.h"
#include "pages/schematic.h"
#include "plot/frequency_axis.h"
#include "plot/legends.h"
#include "plot/response_plot.h"
#include "synthesis/denormalize.h"

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
}

// The record holds the values of the last stage drawn: the chooser starts
// from the exact values, denormalized afresh beside it.
void DisplayPage::ChosenPartsStage() {
  DesignRecord exact = d_;
  Act(Denormalize(exact), controls_);
  PartsChoice choice;
  Act(ChooseParts(exact, partsRequest_, choice, partsProgress_), controls_);
  ApplyParts(choice, d_);
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
