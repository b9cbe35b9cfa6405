#include "pages/display_page.h"

#include <algorithm>

#include "analysis/part_resonances.h"

#include "analysis/sweep.h"
#include "core/formatters.h"
#include "export/formats.h"
#include "pages/band_notch.h"
#include "pages/band_schematic.h"
#include "pages/design_choices.h"
#include "pages/report_acts.h"
#include "pages/schematic.h"
#include "plot/legends.h"
#include "plot/response_plot.h"
#include "synthesis/denormalize.h"
#include "synthesis/design_edges.h"
#include "synthesis/families.h"
#include "synthesis/standard_values.h"
#include "synthesis/stray_warning.h"
#include "synthesis/topologies.h"

namespace drenik {

DisplayPage::DisplayPage(DesignRecord& d, Platform& platform, Canvas& canvas, PageHost& host)
    : d_(d), platform_(platform), canvas_(canvas), host_(host), controls_(platform) {
  Build();
}

void DisplayPage::Build() {
  struct ButtonDef {
    const char* name;
    const char* caption;
    void (DisplayPage::*action)();
  };
  const ButtonDef buttons[] = {
      {"cmdUp", "Up 1%", &DisplayPage::OnUp},
      {"cmdDown", "Down 1%", &DisplayPage::OnDown},
      {"cmdVSWR", "VSWR", &DisplayPage::OnVswr},
      {"cmdTime", "Time", &DisplayPage::OnTime},
      {"cmdInductors", "5% inductors", &DisplayPage::OnInductors},
      {"cmdPartModels", "Part models", &DisplayPage::OnPartModels},
      {"cmdSweep", "Sweep", &DisplayPage::OnSweep},
      {"cmdChosenParts", "Chosen parts", &DisplayPage::OnChosenParts},
      {"cmdTolerance", "Tolerance", &DisplayPage::OnTolerance},
      {"cmdPrint", "Print", &DisplayPage::OnPrint},
      {"cmdSaveOverlay", "Save overlay", &DisplayPage::OnSaveOverlay},
      {"cmdGetOverlay", "Get overlay", &DisplayPage::OnGetOverlay},
      {"cmdPartsList", "Parts list", &DisplayPage::OnPartsList},
      {"cmdDesign", "Change design", &DisplayPage::OnChangeDesign},
      {"cmdExit", "Exit", &DisplayPage::OnExit},
      {"cmdTimeSmith", "Time, Smith chart", &DisplayPage::OnTimeSmith},
      {"cmdStress", "Part stress", &DisplayPage::OnStress},
  };
  for (const auto& b : buttons) {
    auto action = b.action;
    controls_.AddButton(b.name, b.caption).SetHandler([this, action] { (this->*action)(); });
  }
  for (const ExportFormat& f : ExportFormats())
    controls_.AddButton(f.button, f.caption).SetHandler([this, &f] { OnExport(f); });
}

// Once shown, the chosen-parts stage ends every redraw (the load hides it).
void DisplayPage::Event(void (DisplayPage::*action)()) {
  controls_.RunEvent([this, action] {
    (this->*action)();
    if (chosen_) ChosenPartsStage();
  });
  Shown();
}

void DisplayPage::Shown() {
  if (shownObserver_) shownObserver_();
}

bool DisplayPage::Load() {
  const bool loaded = controls_.RunLoad([this] { LoadPipeline(); });
  if (loaded) Shown();
  return loaded;
}
void DisplayPage::OnUp() {
  Event(&DisplayPage::Up);
}
void DisplayPage::OnDown() {
  Event(&DisplayPage::Down);
}
void DisplayPage::OnVswr() {
  Event(&DisplayPage::Vswr);
}
void DisplayPage::OnTime() {
  Event(&DisplayPage::Time);
}
void DisplayPage::OnInductors() {
  Event(&DisplayPage::Inductors);
}
void DisplayPage::OnChangeDesign() {
  controls_.RunEvent([this] { host_.ShowDesignPage(); });
}
void DisplayPage::OnTolerance() {
  controls_.RunEvent([this] { host_.ShowTolerancePage(); });
}
void DisplayPage::OnTimeSmith() {
  controls_.RunEvent([this] { host_.ShowTimePage(); });
}
void DisplayPage::OnStress() {
  controls_.RunEvent([this] { host_.ShowStressPage(); });
}
void DisplayPage::OnExit() {
  controls_.RunEvent([this] { host_.EndProgram(true); });
}

void DisplayPage::LoadPipeline() {
  caption_ = d_.ProgramTitle + " - Display";
  chosen_.reset();
  canvas_.Clear();
  warningShown_ = resonancesShown_ = false;
  DrawDisplayLegends(d_, canvas_);
  DrawBandwidthLabel(d_, canvas_);
  PrintReadout(DataReadout{});

  SetDisplaySweep(d_);
  d_.InductorMode = 0;
  d_.TransmissionBottom = -70;
  d_.ReflectionBottom = -70;
  d_.Divisions = 7;  // 10 dB a division: 0, -10, ... -70
  BuildGridFrequencies(d_);
  controls_.FindButton("cmdSweep")->SetEnabled(DrawsAsBand(d_));

  // Some families keep the prototype the design page computed; the Cauer
  // prototype runs here without the design page's inputs.
  const FamilyInfo* family = FindFamily(d_.Family);
  if (family && family->redesignOnDisplay) Act(family->prototype(d_), controls_);
  Act(Denormalize(d_), controls_);
  AnalyzeAndDraw(1);
  StandardCapacitors();
  AnalyzeAndDraw(2);
  DrawSidePlots();
}

// Curves of successive modes are drawn over each other.
void DisplayPage::AnalyzeAndDraw(int mode) {
  d_.ValueMode = static_cast<int16_t>(mode);
  Act(AnalyzeSweep(d_), controls_);
  DrawMainPlot(d_, canvas_);
  DrawDisplaySchematic(d_, canvas_);
  if (mode == 1) DrawNotch();
  DrawResonanceWarning();
  DrawSelfResonances();
  if (analysisObserver_) analysisObserver_(mode);
}

void DisplayPage::ExactAndStandardCurves() {
  Act(Denormalize(d_), controls_);
  AnalyzeAndDraw(1);
  StandardCapacitors();
  AnalyzeAndDraw(2);
}

// 5% capacitors, with each position's inductor retuned to keep its L*C.
void DisplayPage::StandardCapacitors() {
  Act(NearestParts(d_), controls_);
  Act(CapsRetuneInductors(d_), controls_);
}

// 5% inductors as well, on the values then current.
void DisplayPage::StandardInductors() {
  Act(NearestParts(d_), controls_);
  Act(drenik::Inductors(d_), controls_);
}

void DisplayPage::DrawSidePlots() {
  DrawVswrPlot(d_, canvas_);
  DrawDelayPlot(d_, canvas_);
}

// Up and Down use 1.01 and 0.99, which are not reciprocal: Up then Down
// leaves 0.9999 of the width.
//
// On a lowpass they move the cutoff, every part scaled alike, so the whole
// response slides along the frequency axis. A band design slides the same
// way: centre and width together, its fractional bandwidth (and so the
// shape of its skirts) kept, as retuning a built filter would. Neither may
// leave the range the design page's boxes take; at a bound the step is
// cut short for both.
void DisplayPage::Retune(double factor, float eraseRight) {
  if (IsBandDesign(d_) && d_.Center > 0) {
    const double low = std::min(d_.Center, d_.Width), high = std::max(d_.Center, d_.Width);
    factor = std::clamp(factor, std::min(1.0, kBandwidthRange.low / low),
                        std::max(1.0, kBandwidthRange.high / high));
    d_.Center = std::clamp(static_cast<float>(d_.Center * factor), kBandwidthRange.low,
                           kBandwidthRange.high);
  }
  d_.Width = static_cast<float>(static_cast<double>(d_.Width) * factor);
  d_.InductorMode = 1;
  DrawBandwidthLabel(d_, canvas_, eraseRight);
  RetuneSequence();
}

void DisplayPage::RetuneSequence() {
  Act(Denormalize(d_), controls_);
  AnalyzeAndDraw(1);
  Act(Denormalize(d_), controls_);
  StandardCapacitors();
  AnalyzeAndDraw(2);
  StandardInductors();
  AnalyzeAndDraw(3);
  DrawSidePlots();
}

void DisplayPage::Vswr() {
  d_.ShowVSWR = static_cast<int16_t>(d_.ShowVSWR + 1);
  if (d_.ShowVSWR == 2) d_.ShowVSWR = 0;
  ExactAndStandardCurves();
  DrawSidePlots();
}

void DisplayPage::Time() {
  d_.ShowDelay = static_cast<int16_t>(d_.ShowDelay + 1);
  if (d_.ShowDelay == 2) d_.ShowDelay = 0;
  ExactAndStandardCurves();
  DrawSidePlots();
}

// Mode 1 shows the 5% L curve on the values then current (5% C values with
// retuned inductors), so both kinds of part end up standard.
void DisplayPage::Inductors() {
  d_.InductorMode = static_cast<uint16_t>(d_.InductorMode + 1);
  if (d_.InductorMode == 2) d_.InductorMode = 0;
  if (d_.InductorMode == 0) {
    ExactAndStandardCurves();
    return;
  }
  StandardInductors();
  AnalyzeAndDraw(3);
  DrawInductorLegends(d_, canvas_);
}

// One line under the plot, above the buttons, when a part resonates inside
// the sweep (each inductor with its winding capacitance, each capacitor with
// its lead inductance). Between the schematic and the plot it ran into an
// elliptic ladder's lowest resonance texts and the VSWR plot's title. It ends
// left of the delay plot's frequency labels: two resonances and a count fit.
// Without a resonance the line warns of capacitors the board's strays would
// swamp. Ideal parts of a practical size draw nothing here; a warning
// already drawn is erased when it no longer holds.
void DisplayPage::DrawResonanceWarning() {
  constexpr float kLeft = 2400, kTop = 8300, kRight = 8900, kBottom = 8580;
  std::string warning = ResonanceWarning(d_);
  if (warning.empty()) warning = StrayWarning(d_);
  if (warningShown_) canvas_.FilledBox(kLeft, kTop, kRight, kBottom, kWhite);
  warningShown_ = !warning.empty();
  if (warningShown_) PrintAt(kLeft, kTop + 40, warning, kRed);
}

// Where a bandstop reaches its depth, in the band's label over the plot,
// from the exact values that each redraw analyses first.
void DisplayPage::DrawNotch() {
  if (const std::optional<BandNotch> notch = NotchOf(d_))
    DrawBandLabel(d_, canvas_, NotchText(*notch));
}

// The span as the user typed it is read like the design page's boxes; a
// span the page does not take changes nothing and says what it takes.
void DisplayPage::OnSweep() {
  controls_.RunEvent([this] {
    if (!DrawsAsBand(d_)) return;
    SweepEntry entry{d_.SweepSpan > 1 ? TrimBlanks(FormatValue(d_.SweepSpan)) : "", d_.Center,
                     OwnBandSweepSpan(d_)};
    if (!host_.AskSweep(entry)) return;
    const bool own = entry.span.find_first_not_of(' ') == std::string::npos;
    const float span = own ? 0 : CheckEntry(entry.span);
    if (!own && !(span > 1 && span <= kLargestSweepSpan)) {
      platform_.ShowMessage("The sweep runs from f0 / k to k f0: k must lie above 1 and at most " +
                                TrimBlanks(FormatValue(kLargestSweepSpan)) +
                                ", or leave it empty for the design's own sweep.",
                            "Sweep", MessageIcon::Exclamation);
      return;
    }
    d_.SweepSpan = span;
    Reload();
  });
}

// The page's load again, which clears the curves and frequency labels of
// the old sweep, then the stages it showed.
void DisplayPage::Reload() {
  const bool inductors = d_.InductorMode == 1, chosen = chosen_.has_value();
  LoadPipeline();
  if (inductors) Inductors();
  if (chosen) ChosenPartsStage();
}

// The readout's texts, always in the page's own small font.
void DisplayPage::PrintAt(float x, float y, const std::string& text, int32_t color) {
  canvas_.SetFont("Arial", 8, false);
  canvas_.SetForeColor(color);
  canvas_.SetTextPosition(x, y);
  canvas_.Print(text);
}

}  // namespace drenik
