#include "pages/synth_page.h"

#include <algorithm>
#include <cstdio>

#include "core/formatters.h"
#include "core/number_text.h"
#include "core/whole_number.h"
#include "pages/design_choices.h"
#include "pages/opening_page.h"
#include "pages/synth_table.h"
#include "pages/tolerance_drawing.h"
#include "parts/trade_note.h"
#include "synth/candidate_design.h"
#include "synth/mask_bands.h"
#include "synth/responses.h"
#include "synth/search_space.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

struct PreferOption {
  SynthPreference prefer;
  const char* option;
  const char* caption;
};
constexpr PreferOption kPreferences[] = {
    {SynthPreference::Parts, "optParts", "Fewest parts"},
    {SynthPreference::Inductors, "optInductors", "Fewest inductors"},
    {SynthPreference::Margin, "optMargin", "Widest margin"},
};

// The response of the design the pages hold.
SynthResponse ResponseOfDesign(const DesignRecord& d) {
  const TopologyInfo* t = FindTopology(d.Topology);
  for (const ResponseInfo& r : kResponses)
    if (t && TopologyOf(*t, r.response)) return r.response;
  return SynthResponse::Lowpass;
}

// The part models the build takes from the design, in one line.
std::string ModelsText(const SynthBuild& b) {
  std::string text = "Part models of the design: ";
  text += b.qind >= kInfiniteQind ? "ideal inductors" : "inductor Q " + GeneralText(b.qind);
  text += b.capacitorQ >= kInfiniteQcap ? ", ideal capacitors"
                                        : ", capacitor Q " + GeneralText(b.capacitorQ);
  if (b.windingCapacitance > 0)
    text += ", winding " + TrimBlanks(FormatCapacitance(b.windingCapacitance));
  if (b.capacitorEsl > 0) text += ", ESL " + TrimBlanks(FormatInductance(b.capacitorEsl));
  return text;
}

DesignChoice ChoiceOf(const DesignRecord& d) {
  return {.family = d.Family,
          .order = d.Order,
          .ripple = d.Apass,
          .depth = d.Astop,
          .topology = d.Topology,
          .width = d.Width,
          .center = IsBandDesign(d) ? d.Center : 0,
          .rsource = d.Rsource,
          .resonatorL = d.ResonatorL};
}

// The engine names the command line's option first ("--stop: the mask
// needs a stopband"), and at times in brackets after; beside the boxes the
// rest says it, as a sentence.
std::string PlainWords(std::string fault) {
  if (fault.starts_with("--")) {
    const size_t colon = fault.find(": ");
    if (colon != std::string::npos) fault.erase(0, colon + 2);
  }
  if (const size_t option = fault.find(" (--"); option != std::string::npos)
    fault.erase(option, fault.find(')', option) + 1 - option);
  if (!fault.empty() && fault[0] >= 'a' && fault[0] <= 'z')
    fault[0] = static_cast<char>(fault[0] - 'a' + 'A');
  if (!fault.empty() && fault.back() != '.') fault += '.';
  return fault;
}

constexpr PlotArea kPlot{kSynthPlotLeft, kSynthPlotTop, kSynthPlotRight, kSynthPlotBottom};
constexpr PlotArea kStatus{3450, kSynthStatusTop, 6650, kSynthStatusTop + 300};

// "Lowpass".
std::string ResponseCaption(const ResponseInfo& r) {
  std::string caption = r.word;
  if (!caption.empty()) caption[0] = static_cast<char>(caption[0] - 'a' + 'A');
  return caption;
}

}  // namespace

std::string ResponseOption(SynthResponse response) {
  return "opt" + ResponseCaption(ResponseOf(response));
}

SynthPage::SynthPage(Platform& platform, Canvas& canvas, PageHost& pages)
    : canvas_(canvas),
      pages_(pages),
      controls_(platform),
      caption_(std::string(kProgramTitle) + " - Design from a mask"),
      host_(&noHost_) {
  Build();
}

SynthPage::~SynthPage() = default;

void SynthPage::Build() {
  ControlSet& c = controls_;
  Frame& filter = c.AddFrame("frmResponse", "Filter");
  for (const ResponseInfo& r : kResponses)
    c.AddOption(ResponseOption(r.response), ResponseCaption(r), &filter).SetHandler([this, &r] {
      SelectResponse(r.response);
    });
  c.AddLabel("lblImpedance", "Impedance, ohms");
  c.AddTextBox("txtImpedance", "50");
  AddMaskBoxes(c);
  c.AddLabel("lblTrials", "Trials");
  c.AddTextBox("txtTrials", std::to_string(SynthGoal{}.trials));
  c.AddLabel("lblSeed", "Seed");
  c.AddTextBox("txtSeed", std::to_string(SynthGoal{}.seed));

  Frame& build = c.AddFrame("frmBuild", "Build");
  c.AddLabel("lblCtol", "Capacitors, +-%");
  c.AddTextBox("txtCtol", GeneralText(SynthBuild{}.ctolPercent));
  c.AddLabel("lblLtol", "Inductors, +-%");
  c.AddTextBox("txtLtol", GeneralText(SynthBuild{}.ltolPercent));
  c.AddOption("optUniform", "Uniform", &build).SetSelectedQuietly(true);
  c.AddOption("optNormal", "Normal, 3 sigma", &build);
  c.AddLabel("lblModels", ModelsText(models_));
  c.AddCheckBox("chkStock", "Stock parts", false).SetHandler([this] { ShowStock(); });
  c.AddButton("cmdStock", "Series...").SetHandler([this] {
    controls_.RunEvent([this] { OnStockSeries(); });
  });
  c.AddLabel("lblStock", "");

  Frame& goal = c.AddFrame("frmGoal", "Goal");
  c.AddLabel("lblYield", "Yield at least, %");
  c.AddTextBox("txtYield", GeneralText(SynthGoal{}.yieldPercent));
  c.AddLabel("lblMaxOrder", "Highest order");
  c.AddTextBox("txtMaxOrder", std::to_string(SynthGoal{}.maxOrder));
  for (const PreferOption& p : kPreferences) c.AddOption(p.option, p.caption, &goal);
  c.FindOption("optParts")->SetSelectedQuietly(true);

  c.AddFrame("frmSpace", "Search space");
  for (const FamilyInfo* f : SearchFamilies({}))
    c.AddCheckBox(std::string("chk") + f->cliWord, f->name, true);
  for (const TopologyInfo& t : Topologies())
    c.AddCheckBox(std::string("chk") + t.name, t.caption, true);

  c.AddButton("cmdSearch", "Search").SetHandler([this] {
    controls_.RunEvent([this] { OnSearch(); });
  });
  c.AddButton("cmdCancel", "Cancel").SetHandler([this] { OnCancel(); });
  c.AddLabel("lblFault", "");
  c.AddTable("tblCandidates", SynthHeadings()).SetHandler([this] { OnRowSelected(); });
  c.AddButton("cmdUse", "Use this design").SetHandler([this] {
    controls_.RunEvent([this] { OnUse(); });
  });
  c.AddButton("cmdClose", "Close").SetHandler([this] { OnClose(); });

  // Before a search the plot follows the mask as it is typed.
  for (const std::string& box : MaskBoxNames())
    c.FindTextBox(box)->SetChangeHandler([this] {
      if (hasResult_ || Running()) return;
      Mask mask;
      if (ReadMaskBoxes(controls_, Shape(), mask).empty()) {
        shownSetup_.mask = mask;
        Redraw();
      }
    });
  SetRunning(false);
  ShowStock();
  SelectResponse(SynthResponse::Lowpass);
}

MaskShape SynthPage::Shape() const {
  const ResponseInfo& r = ResponseOf(response_);
  return !r.band ? MaskShape::Edge : r.bandstop ? MaskShape::Bandstop : MaskShape::Bandpass;
}

void SynthPage::SelectResponse(SynthResponse response) {
  response_ = response;
  for (const ResponseInfo& r : kResponses)
    controls_.FindOption(ResponseOption(r.response))->SetSelectedQuietly(r.response == response);
  for (const TopologyInfo& t : Topologies())
    controls_.Find(std::string("chk") + t.name)->SetEnabled(TopologyOf(t, response));
  ShowMaskShape(controls_, Shape(), ResponseOf(response).highpass);
  host_->Reshaped();
}

void SynthPage::Load(const DesignRecord& d, const PartsRequest& parts) {
  // A record that has never been designed holds no Q: an ideal inductor.
  models_.qind = d.Qind > 0 ? d.Qind : kInfiniteQind;
  models_.qLaw = d.InductorQLaw;
  models_.capacitorQ = d.CapacitorQ;
  models_.windingCapacitance = d.WindingCapacitance;
  models_.capacitorEsl = d.CapacitorEsl;
  controls_.FindLabel("lblModels")->SetCaption(ModelsText(models_));
  if (!loaded_) {
    parts_ = parts;
    ShowStock();
    Prefill(d);
  }
  loaded_ = true;
}

// The design's response, impedance and edges, and the mask the tolerance
// window fills in for it (its nominal figures less a margin).
void SynthPage::Prefill(const DesignRecord& d) {
  SelectResponse(ResponseOfDesign(d));
  if (d.Rsource > 0) controls_.FindTextBox("txtImpedance")->SetText(GeneralText(d.Rsource));
  DesignRecord swept;
  SynthRequest exact;
  exact.build = models_;
  if (!SynthRecord(exact, ChoiceOf(d), swept).Ok()) return;
  shown_ = swept;
  shownName_ = "The design the pages hold, with the mask";
  FillMaskBoxes(controls_, Shape(), DefaultMask(ToleranceDesignOf(swept)));
  Redraw();
}

void SynthPage::ShowStock() {
  const bool stock = controls_.FindCheckBox("chkStock")->Checked();
  controls_.FindButton("cmdStock")->SetEnabled(stock && !Running());
  controls_.FindLabel("lblStock")
      ->SetCaption(stock ? PartsWords(parts_)
                         : "Without stock parts: the exact values at their tolerances");
}

void SynthPage::OnStockSeries() {
  PartsRequest request = parts_;
  if (!pages_.AskPartsRequest(request, "")) return;
  parts_ = request;
  ShowStock();
}

std::string SynthPage::ReadRequest(SynthRequest& r) const {
  auto box = [&](const char* name, double& value) { return ReadNumberBox(controls_, name, value); };
  auto whole = [&](const char* name) {
    return ReadWholeNumber(TrimBlanks(controls_.FindTextBox(name)->Text()));
  };
  r.response = response_;
  if (!box("txtImpedance", r.rsource) || r.rsource < kImpedanceRange.low ||
      r.rsource > kImpedanceRange.high)
    return "The impedance must be 0.1 to 1M ohms.";
  if (std::string why = ReadMaskBoxes(controls_, Shape(), r.mask); !why.empty()) return why;
  r.build = models_;
  for (const auto& [name, value, what] : {std::tuple{"txtCtol", &r.build.ctolPercent, "capacitor"},
                                          std::tuple{"txtLtol", &r.build.ltolPercent, "inductor"}})
    if (!box(name, *value) || *value < 0 || *value > kMaxTolerancePercent)
      return std::string("The ") + what + " tolerance must be 0 to 50 %.";
  r.build.distribution =
      controls_.FindOption("optNormal")->Selected() ? Distribution::Normal : Distribution::Uniform;
  if (controls_.FindCheckBox("chkStock")->Checked()) r.build.parts = parts_;

  if (!box("txtYield", r.goal.yieldPercent) || !(r.goal.yieldPercent > 0) ||
      r.goal.yieldPercent > 100)
    return "The yield must be above 0 and at most 100 %.";
  for (const PreferOption& p : kPreferences)
    if (controls_.FindOption(p.option)->Selected()) r.goal.prefer = p.prefer;
  for (const FamilyInfo* f : SearchFamilies({}))
    if (controls_.FindCheckBox(std::string("chk") + f->cliWord)->Checked())
      r.goal.families.push_back(f->code);
  if (r.goal.families.empty()) return "Tick at least one family to search.";
  for (const TopologyInfo& t : Topologies())
    if (TopologyOf(t, response_) && controls_.FindCheckBox(std::string("chk") + t.name)->Checked())
      r.goal.topologies.push_back(t.name);
  if (r.goal.topologies.empty()) return "Tick at least one topology to search.";
  const auto order = whole("txtMaxOrder");
  if (!order || *order < 2 || *order > static_cast<uint64_t>(kMaxOrder))
    return "The highest order must be a whole number from 2 to " + std::to_string(kMaxOrder) + ".";
  r.goal.maxOrder = static_cast<int>(*order);
  // Counts are whole: "10,000" is ten thousand here, never ten.
  const auto trials = whole("txtTrials");
  if (!trials || *trials < 1 || *trials > static_cast<uint64_t>(kMaxTrials))
    return "The number of trials must be a whole number from 1 to 1,000,000 (such as 10,000 or "
           "10k).";
  r.goal.trials = static_cast<int>(*trials);
  const auto seed = whole("txtSeed");
  if (!seed) return "The seed must be a whole number of 0 or more.";
  r.goal.seed = *seed;
  return PlainWords(SynthRequestFault(r));
}

void SynthPage::ShowFault(const std::string& text) {
  controls_.FindLabel("lblFault")->SetCaption(text);
}

void SynthPage::OnSearch() {
  if (Running()) return;
  SynthRequest request;
  const std::string why = ReadRequest(request);
  ShowFault(why);
  if (!why.empty()) return;
  run_.Start({.request = std::move(request)}, [](const Run::Progress& progress, RunOutcome& o) {
    o.report = RunSynth(o.request, o.result, progress);
  });
  SetRunning(true);
  DrawRunStatus(canvas_, 0, "Searching: 0%", kStatus);
  host_->RunStarted();
}

void SynthPage::OnCancel() {
  run_.Cancel();
}

void SynthPage::Poll() {
  if (!run_.Running()) return;
  if (!run_.Finished()) {
    const double done = run_.Done();
    DrawRunStatus(canvas_, done,
                  (run_.Cancelling() ? "Cancelling: " : "Searching: ") +
                      std::to_string(static_cast<int>(100 * done)) + "%",
                  kStatus);
    return;
  }
  Finish();
}

void SynthPage::Wait() {
  run_.Join();
  Poll();
}

void SynthPage::Finish() {
  double seconds = 0;
  std::optional<RunOutcome> job = run_.Take(&seconds);
  SetRunning(false);
  if (!job) return;
  if (!job->report.Ok()) {
    status_ = "Not searched";
    ShowFault(PlainWords(job->report.fault));
  } else if (job->result.cancelled) {
    status_ = "Cancelled";
  } else {
    result_ = std::move(job->result);
    searched_ = std::move(job->request);
    hasResult_ = true;
    char text[80];
    std::snprintf(text, sizeof text, "%zu candidates in %.2f s", result_.candidates.size(),
                  seconds);
    status_ = text;
    ShowFault(result_.chosen < 0 ? result_.failure : "");
    std::vector<std::vector<std::string>> rows;
    for (size_t k = 0; k < result_.candidates.size(); ++k)
      rows.push_back(SynthRow(result_.candidates[k], static_cast<int>(k) + 1,
                              static_cast<int>(k) == result_.chosen));
    TableList& table = *controls_.FindTable("tblCandidates");
    drawn_ = -1;
    table.SetRows(std::move(rows), result_.chosen);
    // The chosen design, or the nearest when none meets the target.
    table.Select(result_.candidates.empty() ? -1 : std::max(result_.chosen, 0));
  }
  controls_.FindButton("cmdUse")->SetEnabled(drawn_ >= 0);
  Redraw();
}

void SynthPage::SetRunning(bool running) {
  controls_.FindButton("cmdSearch")->SetEnabled(!running);
  controls_.FindButton("cmdCancel")->SetEnabled(running);
  controls_.FindButton("cmdUse")->SetEnabled(!running && drawn_ >= 0);
  controls_.FindButton("cmdStock")
      ->SetEnabled(!running && controls_.FindCheckBox("chkStock")->Checked());
}

// The selected candidate as built: its nominal response and the envelope of
// trials drawn within the tolerances searched with.
void SynthPage::OnRowSelected() {
  const int row = controls_.FindTable("tblCandidates")->Selected();
  if (!hasResult_ || row < 0 || row >= static_cast<int>(result_.candidates.size())) return;
  const SynthCandidate& c = result_.candidates[static_cast<size_t>(row)];
  drawn_ = row;
  controls_.FindButton("cmdUse")->SetEnabled(!Running());
  hasEnvelope_ = false;
  shownName_ = "#" + std::to_string(row + 1) + " " + SynthCandidateName(c);
  // Enough trials for the envelope's outline; the yield is the search's.
  shownSetup_ = SynthSetup(searched_, std::clamp(c.trials, 200, 2000));
  if (EngineReport r = SynthRecord(searched_, c.choice, shown_); !r.Ok()) {
    ShowFault(r.fault);
  } else {
    hasEnvelope_ = RunTolerance(ToleranceDesignOf(shown_), shownSetup_, envelope_).Ok() &&
                   !envelope_.cancelled;
  }
  Redraw();
}

void SynthPage::Redraw() {
  canvas_.Clear();
  canvas_.FilledBox(6700, 1480, kPageWidth, 5200, kWhite);
  canvas_.SetFont("Arial", 8, true);
  canvas_.SetForeColor(kBlack);
  canvas_.SetTextPosition(6800, 1520);
  canvas_.Print(shownName_);
  if (drawn_ >= 0 && hasResult_) {
    const SynthCandidate& c = result_.candidates[static_cast<size_t>(drawn_)];
    canvas_.SetFont("Arial", 8, false);
    canvas_.SetTextPosition(6800, 1730);
    canvas_.Print(c.trials > 0 ? "Yield " + SynthPercent(c.yield) + " (95% interval " +
                                     SynthPercent(c.yieldLow) + " to " + SynthPercent(c.yieldHigh) +
                                     ") of " + std::to_string(c.trials) + " trials"
                               : "Screened out on its nominal response");
  }
  if (shown_.NrIntervals > 0) {
    ToleranceFigures f;
    f.stage = &shown_;
    f.setup = &shownSetup_;
    f.result = hasEnvelope_ ? &envelope_ : nullptr;
    DrawMaskedResponse(f, canvas_, kPlot);
  }
  DrawRunStatus(canvas_, -1, status_, kStatus);
}

void SynthPage::OnUse() {
  if (!hasResult_ || drawn_ < 0 || !use_) return;
  // The stock parts in the series searched, judged over the mask as the
  // search judged them: the display page then shows the parts it measured.
  std::optional<PartsRequest> parts = searched_.build.parts;
  if (parts) parts->bands = BandsOfMask(searched_.mask, ResponseOf(searched_.response).highpass);
  use_(result_.candidates[static_cast<size_t>(drawn_)], parts);
}

void SynthPage::OnClose() {
  run_.Cancel();
  host_->Close();
}

}  // namespace drenik
