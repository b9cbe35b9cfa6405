#include "pages/tolerance_page.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "core/formatters.h"
#include "core/whole_number.h"
#include "pages/design_heading.h"
#include "pages/opening_page.h"
#include "pages/tolerance_drawing.h"

namespace drenik {

namespace {

// The mask frame's caption once the mask is the user's rather than filled in.
constexpr const char* kOwnMask = "Mask (as you set it)";

std::string Trimmed(const std::string& text) {
  const size_t a = text.find_first_not_of(" \t");
  if (a == std::string::npos) return {};
  return text.substr(a, text.find_last_not_of(" \t") - a + 1);
}

std::string Number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

constexpr ValueStage kStages[] = {ValueStage::Exact, ValueStage::FiveC, ValueStage::FiveL,
                                  ValueStage::Chosen};
const char* OptionOf(ValueStage stage) {
  constexpr const char* names[] = {"optExact", "opt5C", "opt5L", "optChosen"};
  return names[static_cast<int>(stage)];
}

// Whether two designs analyse alike at every value stage: the same ladder,
// terminations, losses and sweep.
bool SameLadders(const ValueStages& a, const ValueStages& b) {
  if (a.chosen.has_value() != b.chosen.has_value()) return false;
  for (ValueStage stage : kStages) {
    const DesignRecord &x = a.At(stage), &y = b.At(stage);
    if (x.Stages != y.Stages || x.ElementType != y.ElementType || x.L != y.L || x.C != y.C ||
        x.Rsource != y.Rsource || x.Rload != y.Rload || x.Qind != y.Qind || x.Qcap != y.Qcap ||
        x.Freq != y.Freq || x.Topology != y.Topology || x.Family != y.Family ||
        x.InductorQLaw != y.InductorQLaw || x.CapacitorQ != y.CapacitorQ ||
        x.WindingCapacitance != y.WindingCapacitance || x.CapacitorEsl != y.CapacitorEsl)
      return false;
  }
  return true;
}

}  // namespace

std::string ToleranceHost::SavePicture(const RecordingCanvas&, const std::string&) {
  return "Saving pictures is available in the designer window.";
}

TolerancePage::TolerancePage(Platform& platform, Canvas& canvas)
    : platform_(platform),
      canvas_(canvas),
      controls_(platform),
      caption_(std::string(kProgramTitle) + " - Tolerance"),
      host_(&noHost_) {
  Build();
}

TolerancePage::~TolerancePage() = default;

void TolerancePage::Build() {
  Frame* values = &controls_.AddFrame("frmValues", "Values");
  for (ValueStage stage : kStages)
    controls_.AddOption(OptionOf(stage), ValueStageName(stage), values).SetHandler([this, stage] {
      controls_.RunEvent([this, stage] {
        if (stage == ValueStage::Chosen)
          PickChosen();
        else
          SelectStage(stage);
      });
    });
  Frame* parts = &controls_.AddFrame("frmParts", "Part tolerances");
  controls_.AddLabel("lblCtol", "Capacitors, +-%");
  controls_.AddTextBox("txtCtol", "5");
  controls_.AddLabel("lblLtol", "Inductors, +-%");
  controls_.AddTextBox("txtLtol", "5");
  controls_.AddOption("optUniform", "Uniform", parts);
  controls_.AddOption("optNormal", "Normal, 3 sigma", parts);
  controls_.AddFrame("frmTrials", "Trials");
  controls_.AddLabel("lblTrials", "Trials");
  controls_.AddTextBox("txtTrials", std::to_string(kDefaultTrials));
  controls_.AddLabel("lblSeed", "Seed");
  controls_.AddTextBox("txtSeed", "1");
  controls_.AddLabel("lblTighten", "Sensitivity: tighten to, %");
  controls_.AddTextBox("txtTighten", "0");
  AddMaskBoxes(controls_);
  // Before a run the plot follows the mask as it is typed. A mask the user
  // typed is kept for later designs of its shape and the next start.
  const std::vector<std::string> mask = MaskBoxNames();
  for (const auto& control : controls_.All()) {
    if (control->Kind() != ControlKind::TextBox) continue;
    const bool inMask = std::ranges::find(mask, control->Name()) != mask.end();
    static_cast<TextBox&>(*control).SetChangeHandler([this, inMask] {
      if (prefilling_) return;
      if (inMask && !maskSet_) controls_.FindFrame("frmMask")->SetCaption(kOwnMask);
      maskSet_ = maskSet_ || inMask;
      if (hasResult_ || Running()) return;
      if (ReadSetup(setup_, true)) Redraw();
    });
  }
  controls_.FindOption("optUniform")->SetSelectedQuietly(true);

  struct ButtonDef {
    const char* name;
    const char* caption;
    void (TolerancePage::*action)();
  };
  const ButtonDef buttons[] = {
      {"cmdRun", "Run", &TolerancePage::OnRun},
      {"cmdCancel", "Cancel", &TolerancePage::OnCancel},
      {"cmdPrint", "Print", &TolerancePage::OnPrint},
      {"cmdSave", "Save picture", &TolerancePage::OnSave},
      {"cmdClose", "Close", &TolerancePage::OnClose},
  };
  for (const auto& b : buttons) {
    auto action = b.action;
    controls_.AddButton(b.name, b.caption).SetHandler([this, action] {
      controls_.RunEvent([this, action] { (this->*action)(); });
    });
  }
  controls_.FindButton("cmdCancel")->SetEnabled(false);
}

void TolerancePage::Load(const DesignRecord& d) {
  ValueStages stages = MakeValueStages(d);
  // The same design again (the window closed and opened): the user's
  // settings, a run in progress and its result stay.
  if (loaded_ && SameLadders(stages, stages_)) {
    DropPending();
    return;
  }
  Adopt(std::move(stages));
}

// Back to the design analysed: the out-of-date mark goes.
void TolerancePage::DropPending() {
  if (!pending_) return;
  pending_.reset();
  SetRunning(Running());
  Redraw();
}

void TolerancePage::Follow(const DesignRecord& d) {
  if (!loaded_) return;
  ValueStages stages = MakeValueStages(d);
  if (SameLadders(stages, stages_)) {
    DropPending();
    return;
  }
  // Nothing to keep: the page shows the design at once. A design that
  // cannot be analysed waits for Run again, which names why.
  if (!hasResult_ && !Running() && stages.fault.empty()) {
    Adopt(std::move(stages));
    return;
  }
  const std::string heading = DesignHeading(stages.fiveC, false);
  pendingNote_ =
      heading == DesignHeading(stages_.fiveC, false)
          ? "Out of date: the display page shows other parts now; Run again analyses "
            "them."
          : "Out of date: the display page shows " + heading + " now; Run again analyses it.";
  pending_ = std::move(stages);
  SetRunning(Running());
  Redraw();
}

bool TolerancePage::TakePending() {
  if (!pending_) return true;
  ValueStages next = std::move(*pending_);
  Adopt(std::move(next));
  return stages_.fault.empty();
}

void TolerancePage::Adopt(ValueStages stages) {
  run_.Stop();
  pending_.reset();
  SetRunning(false);
  stages_ = std::move(stages);
  if (!stages_.fault.empty()) platform_.ShowMessage(stages_.fault);
  // The values chosen stay, where the new design has them.
  if (!loaded_ || (stage_ == ValueStage::Chosen && !stages_.chosen)) stage_ = ValueStage::FiveC;
  ShowStageOption();
  const MaskShape before = shape_;
  ShowShape();
  if (!loaded_) PrefillSettings();
  if (!loaded_ || !maskSet_ || shape_ != before) PrefillMask();
  loaded_ = true;
  if (!ReadSetup(setup_, true)) setup_ = ToleranceSetup{};
  hasResult_ = false;
  status_ = "Ready";
  Redraw();
}

void TolerancePage::ShowStageOption() {
  for (ValueStage stage : kStages)
    controls_.FindOption(OptionOf(stage))->SetSelectedQuietly(stage == stage_);
}

void TolerancePage::ShowShape() {
  const ToleranceDesign design = ToleranceDesignOf(Stage());
  shape_ = !design.band      ? MaskShape::Edge
           : design.bandstop ? MaskShape::Bandstop
                             : MaskShape::Bandpass;
  ShowMaskShape(controls_, shape_, design.highpass);
}

void TolerancePage::PrefillSettings() {
  prefilling_ = true;
  const ToleranceSetup defaults;
  auto set = [&](const char* box, const std::string& text) {
    controls_.FindTextBox(box)->SetText(text);
  };
  set("txtCtol", Number(defaults.ctolPercent));
  set("txtLtol", Number(defaults.ltolPercent));
  set("txtTrials", std::to_string(defaults.trials));
  set("txtSeed", std::to_string(defaults.seed));
  set("txtTighten", Number(defaults.tightenPercent));
  controls_.FindOption("optUniform")->SetSelectedQuietly(true);
  controls_.FindOption("optNormal")->SetSelectedQuietly(false);
  prefilling_ = false;
}

void TolerancePage::PrefillMask() {
  prefilling_ = true;
  maskSet_ = false;
  const ToleranceDesign design = ToleranceDesignOf(Stage());
  const Mask mask = DefaultMask(design, 0, &noMask_);
  // Which margin the filled-in mask keeps from the nominal design's figures.
  controls_.FindFrame("frmMask")->SetCaption(
      "Mask (filled in " + Number(kMaskMarginDb) + " dB inside the nominal" +
      (mask.passIl ? ", loss " + Number(kLossMarginDb) + " dB" : "") + ")");
  FillMaskBoxes(controls_, shape_, mask);
  prefilling_ = false;
  ApplyKeptMask();
}

// The last session's mask, in place of the filled-in one, for the first
// design of its shape.
void TolerancePage::ApplyKeptMask() {
  if (static_cast<int>(keptMask_[0]) != static_cast<int>(shape_) + 1) return;
  prefilling_ = true;
  const std::vector<std::string> boxes = MaskBoxNames();
  for (size_t k = 0; k < boxes.size(); ++k) {
    const float v = keptMask_[k + 1];
    controls_.FindTextBox(boxes[k])->SetText(!(v > 0)            ? ""
                                             : MaskDecibelBox(k) ? Number(v)
                                                                 : TrimBlanks(FormatFrequency(v)));
  }
  prefilling_ = false;
  controls_.FindFrame("frmMask")->SetCaption(kOwnMask);
  keptMask_.fill(0);
  maskSet_ = true;
}

std::array<float, kKeptMaskFields> TolerancePage::KeptMask() const {
  if (!maskSet_) return keptMask_;
  std::array<float, kKeptMaskFields> kept{};
  kept[0] = static_cast<float>(static_cast<int>(shape_) + 1);
  const std::vector<std::string> boxes = MaskBoxNames();
  for (size_t k = 0; k < boxes.size(); ++k) {
    double v = 0;
    if (ReadNumberBox(controls_, boxes[k], v) && v > 0 && std::isfinite(v))
      kept[k + 1] = static_cast<float>(v);
  }
  return kept;
}

void TolerancePage::SelectStage(ValueStage stage) {
  if (!TakePending()) return;
  stage_ = stage;
  ShowStageOption();
  hasResult_ = false;
  status_ = "Ready";
  ReadSetup(setup_, true);
  Redraw();
}

// The chosen parts are the display page's: without them the page asks for
// them, and they arrive through Follow().
void TolerancePage::PickChosen() {
  if (!stages_.chosen && !pending_ && chosenSource_) chosenSource_();
  const bool chosen = pending_ ? pending_->chosen.has_value() : stages_.chosen.has_value();
  if (!chosen) {
    ShowStageOption();
    platform_.ShowMessage(
        "The display page has no chosen parts for this design: press Chosen parts there.");
    return;
  }
  SelectStage(ValueStage::Chosen);
}

bool TolerancePage::ReadSetup(ToleranceSetup& out, bool quiet) {
  ToleranceSetup s;
  auto fail = [&](const std::string& why) {
    if (!quiet) platform_.ShowMessage(why);
    return false;
  };
  auto percent = [&](const char* box, double& value, const char* what) {
    if (!ReadNumberBox(controls_, box, value) || value < 0 || value > kMaxTolerancePercent)
      return fail(std::string("The ") + what + " must be 0 to 50 %.");
    return true;
  };
  if (!percent("txtCtol", s.ctolPercent, "capacitor tolerance") ||
      !percent("txtLtol", s.ltolPercent, "inductor tolerance") ||
      !percent("txtTighten", s.tightenPercent, "tightened tolerance"))
    return false;
  s.distribution =
      controls_.FindOption("optNormal")->Selected() ? Distribution::Normal : Distribution::Uniform;
  // Counts are whole: "10,000" is ten thousand here, never ten.
  const auto trials = ReadWholeNumber(Trimmed(controls_.FindTextBox("txtTrials")->Text()));
  if (!trials || *trials < 1 || *trials > static_cast<uint64_t>(kMaxTrials))
    return fail(
        "The number of trials must be a whole number from 1 to 1,000,000 (such as 10,000 "
        "or 10k).");
  s.trials = static_cast<int>(*trials);
  const auto seed = ReadWholeNumber(Trimmed(controls_.FindTextBox("txtSeed")->Text()));
  if (!seed) return fail("The seed must be a whole number of 0 or more.");
  s.seed = *seed;

  if (const std::string why = ReadMaskBoxes(controls_, shape_, s.mask); !why.empty())
    return fail(why);
  out = s;
  return true;
}

void TolerancePage::OnRun() {
  if (Running()) return;
  if (!TakePending()) return;
  ToleranceSetup setup;
  if (!ReadSetup(setup, false)) return;
  const Mask& m = setup.mask;
  if (!m.passRl && !m.passIl && m.stops.empty() && !noMask_.empty()) {
    platform_.ShowMessage(noMask_ + " Fill in the mask's limits.");
    return;
  }
  run_.Start({.design = ToleranceDesignOf(Stage()), .setup = setup},
             [](const Run::Progress& progress, RunOutcome& o) {
               o.report = RunTolerance(o.design, o.setup, o.result, progress);
             });
  SetRunning(true);
  DrawRunStatus(canvas_, 0, "Running: 0%");
  host_->RunStarted();
}

void TolerancePage::OnCancel() {
  run_.Cancel();
}

void TolerancePage::Poll() {
  if (!run_.Running()) return;
  if (!run_.Finished()) {
    const double done = run_.Done();
    DrawRunStatus(canvas_, done,
                  (run_.Cancelling() ? "Cancelling: " : "Running: ") +
                      std::to_string(static_cast<int>(100 * done)) + "%");
    return;
  }
  Finish();
}

void TolerancePage::Wait() {
  run_.Join();
  Poll();
}

void TolerancePage::Finish() {
  double seconds = 0;
  std::optional<RunOutcome> job = run_.Take(&seconds);
  SetRunning(false);
  if (!job) return;
  if (!job->report.Ok()) {
    status_ = "Not run";
    platform_.ShowMessage(job->report.fault);
  } else if (job->result.cancelled) {
    status_ = "Cancelled";
  } else {
    result_ = std::move(job->result);
    setup_ = job->setup;
    hasResult_ = true;
    char text[80];
    std::snprintf(text, sizeof text, "%d trials in %.2f s", result_.trials, seconds);
    status_ = text;
  }
  Redraw();
}

void TolerancePage::SetRunning(bool running) {
  controls_.FindButton("cmdRun")->SetEnabled(!running);
  controls_.FindButton("cmdRun")->SetCaption(pending_ ? "Run again" : "Run");
  controls_.FindButton("cmdCancel")->SetEnabled(running);
  // A run keeps the values it was started with.
  for (ValueStage stage : kStages) controls_.FindOption(OptionOf(stage))->SetEnabled(!running);
}

void TolerancePage::DrawFigures(Canvas& canvas) const {
  ToleranceFigures f;
  f.stage = &Stage();
  f.stageName = ValueStageName(stage_);
  f.setup = &setup_;
  f.result = hasResult_ ? &result_ : nullptr;
  if (pending_) f.outOfDate = pendingNote_;
  DrawToleranceFigures(f, canvas);
}

void TolerancePage::Redraw() {
  canvas_.Clear();
  DrawFigures(canvas_);
  DrawRunStatus(canvas_, -1, status_);
}

RecordingCanvas TolerancePage::PaperDrawing() const {
  RecordingCanvas paper;
  DrawFigures(paper);
  DrawToleranceSettings(paper, setup_, ValueStageName(stage_), status_);
  return paper;
}

void TolerancePage::OnPrint() {
  if (!host_->Print(PaperDrawing()))
    platform_.ShowMessage("Printing is available in the designer window.");
}

void TolerancePage::OnSave() {
  std::string name = platform_.SaveFileDialog(
      "Save tolerance page",
      "PNG image (*.png)|*.png|PDF document (*.pdf)|*.pdf|SVG drawing (*.svg)|*.svg",
      "Tolerance.png");
  if (name.empty()) return;
  const size_t dot = name.find_last_of("./\\");
  if (dot == std::string::npos || name[dot] != '.') name += ".png";
  const std::string error = host_->SavePicture(PaperDrawing(), name);
  if (!error.empty()) platform_.ShowMessage("We could not save the picture. " + error);
}

void TolerancePage::OnClose() {
  run_.Cancel();
  host_->Close();
}

}  // namespace drenik
