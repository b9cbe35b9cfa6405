#include "pages/design_page.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "core/formatters.h"
#include "core/runtime_error.h"
#include "pages/band_notch.h"
#include "pages/design_choices.h"
#include "pages/other_design.h"
#include "pages/report_acts.h"
#include "pages/schematic.h"
#include "pages/user_guide.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

// Where the clause of `text` from `start` ends: after the separator's
// punctuation mark, or at the end of the text.
size_t ClauseEnd(const std::string& text, size_t start, const char* separator) {
  const size_t at = text.find(separator, start);
  return at == std::string::npos ? text.size() : at + 1;
}

template <typename T>
T& Require(T* control, const std::string& name) {
  if (!control) throw std::out_of_range("The design page has no control " + name);
  return *control;
}

}  // namespace

std::string TopologyOption(const TopologyInfo& topology) {
  return std::string("opt") + topology.name;
}

DesignPage::DesignPage(DesignRecord& d, Platform& platform, Canvas& strip, PageHost& host)
    : d_(d), platform_(platform), strip_(strip), host_(host), controls_(platform) {
  Build();
}

void DesignPage::Build() {
  ControlSet& c = controls_;
  c.AddLabel("lblTitle", "Design page");

  Frame& family = c.AddFrame("frmFamily", "Family");
  for (const FamilyInfo& f : Families()) {
    c.AddOption(f.optionName, f.name, &family).SetHandler([this, &f] { OnFamily(f); });
  }

  Frame& order = c.AddFrame("frmOrder", "Order");
  for (int n = kLowestButtonOrder; n <= kHighestButtonOrder; ++n) {
    auto& option = c.AddOption("optOrder" + std::to_string(n), std::to_string(n), &order);
    option.SetHandler([this, n] {
      d_.Order = static_cast<int16_t>(n);
      RedesignChain();
    });
  }

  Frame& topology = c.AddFrame("frmTopology", "Topology");
  for (const TopologyInfo& t : Topologies())
    c.AddOption(TopologyOption(t), t.caption, &topology).SetHandler([this, &t] { OnTopology(t); });
  // A ripple or depth button replaces one chosen beyond the buttons.
  Frame& ripple = c.AddFrame("frmRipple", "Passband ripple");
  for (const RippleChoice& r : kRippleChoices)
    c.AddOption(r.option, r.caption, &ripple).SetHandler([this, &r] {
      d_.Apass = r.value;
      d_.ChosenRipple = 0;
      RedesignChain();
    });
  Frame& stopband = c.AddFrame("frmStopbandDepth", "Stopband depth");
  for (const StopbandChoice& b : kStopbandChoices)
    c.AddOption(b.option, b.caption, &stopband).SetHandler([this, &b] {
      d_.Astop = b.value;
      d_.ChosenDepth = 0;
      RedesignChain();
    });
  // Orders, ripples and depths beyond the buttons, and the line that names
  // such a design.
  c.AddButton("cmdOtherDesign", "Other order and ripple...").SetHandler([this] {
    OnOtherDesign();
  });
  c.AddLabel("lblOtherDesign", "");

  Frame& impedance = c.AddFrame("frmImpedance", "Impedance");
  c.AddOption("optZ50", "50", &impedance).SetHandler([this] { OnZ50(); });
  c.AddOption("optZother", "Other", &impedance).SetHandler([this] { OnZother(); });
  c.AddTextBox("txtZother", "50").SetChangeHandler([this] { OnZotherChange(); });
  c.AddLabel("lblOhms", "ohms");

  c.AddFrame("frmBandwidth", "Bandwidth");
  c.AddLabel("lblMHz", "Hz:");
  c.AddTextBox("txtBandwidth", "5000000").SetChangeHandler([this] { OnBandwidthChange(); });
  c.AddLabel("lblRipple", "");

  // The band of a bandpass or bandstop: the bandwidth box gives its width
  // f2 - f1 at the family's edges, this box its geometric centre.
  c.AddFrame("frmCenter", "Band centre");
  c.AddLabel("lblCenter", "Hz:");
  c.AddTextBox("txtCenter", kDefaultCenterText).SetChangeHandler([this] { OnCenterChange(); });
  c.AddLabel("lblResonatorL", "L, H:");
  c.AddTextBox("txtResonatorL", "").SetChangeHandler([this] { OnResonatorLChange(); });
  c.AddLabel("lblBandEdges", "");
  // Or the band by its edges f1 and f2, in hertz: each pair of boxes follows
  // what the other is typed to, and the record keeps the centre and width.
  c.AddFrame("frmBandEdges", "Band edges");
  c.AddLabel("lblF1", "f1");
  c.AddTextBox("txtF1", "").SetChangeHandler([this] { OnEdgeChange(); });
  c.AddLabel("lblF2", "f2");
  c.AddTextBox("txtF2", "").SetChangeHandler([this] { OnEdgeChange(); });

  Frame& q = c.AddFrame("frmQ", "Inductor Q");
  c.AddOption("optQ1", "Infinite", &q).SetHandler([this] { OnQ1(); });
  c.AddOption("optQ2", "Other", &q).SetHandler([this] { OnQ2(); });
  c.AddTextBox("txtQother", "300").SetChangeHandler([this] { OnQotherChange(); });

  c.AddButton("cmdDesign", "Display responses").SetHandler([this] { OnDesign(); });
  c.AddButton("cmdFromMask", "Design from a mask...").SetHandler([this] { host_.ShowSynthPage(); });
  c.AddButton("cmdExit", "Exit").SetHandler([this] { host_.EndProgram(true); });
  c.AddButton("cmdZelmarSoftware", "Zelmar Software").SetHandler([this] {
    OpenUserGuide(platform_, host_.UserGuideUrl());
  });
}

OptionButton& DesignPage::Option(const std::string& name) const {
  return Require(controls_.FindOption(name), name);
}
TextBox& DesignPage::Box(const std::string& name) const {
  return Require(controls_.FindTextBox(name), name);
}
Label& DesignPage::LabelNamed(const std::string& name) const {
  return Require(controls_.FindLabel(name), name);
}
Frame& DesignPage::FrameNamed(const std::string& name) const {
  return Require(controls_.FindFrame(name), name);
}
CommandButton& DesignPage::Button(const std::string& name) const {
  return Require(controls_.FindButton(name), name);
}

void DesignPage::RedesignChain() {
  RunSynthesisDriver();
  DenormalizeOrRefuse();
  ShowBand();
  ShowOtherDesign();
  RedrawSchematic();
}

// A band design is typed a key at a time and its topology chosen before or
// after its band, so it passes through bands the engine refuses ("2" on the
// way to "2.2u" is a 2 H resonator): the design waits for one it can make,
// with the label and the strip saying why, rather than a message at every
// key. A lowpass or highpass design's fault is the run-time error as ever.
void DesignPage::DenormalizeOrRefuse() {
  EngineReport report = Denormalize(d_);
  refusal_.clear();
  if (!report.Ok() && IsBandDesign(d_)) refusal_ = std::exchange(report.fault, {});
  Act(report, controls_);
}

void DesignPage::ShowOtherDesign() {
  LabelNamed("lblOtherDesign").SetCaption(BeyondButtonsCaption(d_));
}

void DesignPage::OnOtherDesign() {
  OtherDesign o = OtherDesignOf(d_);
  if (!host_.AskOtherDesign(o)) return;
  if (const std::string why = ChooseOtherDesign(o); !why.empty())
    platform_.ShowMessage(why, "Other order and ripple", MessageIcon::Exclamation);
}

std::string DesignPage::ChooseOtherDesign(const OtherDesign& o) {
  if (o.family && o.family->code != d_.Family) return "The design's family has changed.";
  if (std::string why = OtherDesignFault(o); !why.empty()) return why;
  d_.Order = static_cast<int16_t>(o.order);
  for (int n = kLowestButtonOrder; n <= kHighestButtonOrder; ++n)
    Option("optOrder" + std::to_string(n)).SetSelectedQuietly(n == o.order);
  if (o.family->ripple.Offered()) {
    d_.Apass = d_.ChosenRipple = static_cast<float>(o.ripple);
    for (const RippleChoice& r : kRippleChoices) {
      Option(r.option).SetSelectedQuietly(r.value == d_.Apass);
      if (r.value == d_.Apass) d_.ChosenRipple = 0;
    }
  }
  if (o.family->depth.Offered()) {
    d_.Astop = d_.ChosenDepth = static_cast<float>(o.depth);
    for (const StopbandChoice& s : kStopbandChoices) {
      Option(s.option).SetSelectedQuietly(s.value == d_.Astop);
      if (s.value == d_.Astop) d_.ChosenDepth = 0;
    }
  }
  RedesignChain();
  return {};
}

void DesignPage::RedrawSchematic() {
  ++schematicRedraws_;
  if (refusal_.empty()) {
    drenik::RedrawSchematic(d_, strip_);
    return;
  }
  // The strip shows no ladder while the band has no design: the last one
  // drawn is not what the boxes ask for. The reason, a clause a line.
  strip_.FilledBox(1, 1, 12090, 3500, kWhite);
  strip_.SetForeColor(kBlack);
  strip_.SetFont("Arial", 10, true);
  strip_.SetTextPosition(1000, 1000);
  strip_.Print("No design for this band:");
  strip_.SetFont("Arial", 9, false);
  float y = 1400;
  for (size_t start = 0; start < refusal_.size(); y += 280) {
    const size_t end = std::min(ClauseEnd(refusal_, start, ". "), ClauseEnd(refusal_, start, ": "));
    strip_.SetTextPosition(1000, y);
    strip_.Print(TrimBlanks(refusal_.substr(start, end - start)));
    start = end;
  }
}

// Enabling a group covers its frame and each option in it.
void DesignPage::SetFamilyGroups(bool order, bool ripple, bool stopband) {
  const std::pair<const char*, bool> groups[] = {
      {"frmOrder", order}, {"frmRipple", ripple}, {"frmStopbandDepth", stopband}};
  for (const auto& [name, enabled] : groups) {
    Frame& frame = FrameNamed(name);
    frame.SetEnabled(enabled);
    for (OptionButton* option : controls_.OptionsOf(&frame)) option->SetEnabled(enabled);
  }
}

// A family enables its option groups. A fixed design (Zelmar) has its own
// order, which is set and locked, and no ripple or stopband choice.
void DesignPage::OnFamily(const FamilyInfo& family) {
  LabelNamed("lblRipple").SetCaption(family.cutoffLabel);
  d_.Family = family.code;
  d_.CauerFlag = family.resonantArms ? 1 : 0;
  SetFamilyGroups(family.orderChoice, family.rippleChoice, family.stopbandChoice);
  Button("cmdOtherDesign").SetEnabled(family.orderChoice);
  if (family.cauerType) d_.CauerType = family.cauerType;
  if (!family.cauerType && !family.fixedOrder) d_.StopbandEdge = 0;
  if (family.fixedOrder) {
    d_.Order = family.fixedOrder;
    Option("optOrder" + std::to_string(family.fixedOrder)).Select();
    for (OptionButton* option : controls_.OptionsOf(&FrameNamed("frmRipple"))) {
      option->SetSelectedQuietly(false);
    }
  }
  RedesignChain();
}

// A fixed design is terminated in the source resistance.
void DesignPage::MatchFixedDesignLoad() {
  const FamilyInfo* family = FindFamily(d_.Family);
  if (family && family->fixedOrder) d_.Rload = d_.Rsource;
}

void DesignPage::OnZ50() {
  d_.Rsource = 50;
  TextBox& box = Box("txtZother");
  box.SetText("50");
  box.SetEnabled(false);
  MatchFixedDesignLoad();
  RedesignChain();
}

void DesignPage::OnZother() {
  std::string text = Box("txtZother").Text();
  d_.Rsource = CheckEntry(text);
  Box("txtZother").SetEnabled(true);
  MatchFixedDesignLoad();
  RedesignChain();
}

void DesignPage::OnQ1() {
  d_.Qind = kInfiniteQind;
  TextBox& box = Box("txtQother");
  box.SetText("1M");
  box.SetEnabled(false);
  RunSynthesisDriver();
}

void DesignPage::OnQ2() {
  std::string text = Box("txtQother").Text();
  d_.Qind = CheckEntry(text);
  if (d_.Qind < 10) d_.Qind = 10;
  Box("txtQother").SetEnabled(true);
  RunSynthesisDriver();
}

// The clamped values below are not written back: the box keeps what the
// user typed.
void DesignPage::OnBandwidthChange() {
  std::string text = Box("txtBandwidth").Text();
  d_.Width = CheckEntry(text);
  if (d_.Width < kBandwidthRange.low) d_.Width = kBandwidthRange.low;
  if (d_.Width > kBandwidthRange.high) d_.Width = kBandwidthRange.high;
  if (d_.Width > 0) RedesignChain();
}

const TopologyInfo* DesignPage::SelectedBand() const {
  for (const TopologyInfo& t : Topologies())
    if (t.band && Option(TopologyOption(t)).Selected()) return &t;
  return nullptr;
}

// Read as the bandwidth box is read, and clamped to the same range.
void DesignPage::ReadCenter() {
  std::string text = Box("txtCenter").Text();
  d_.Center = CheckEntry(text);
  if (d_.Center < kBandwidthRange.low) d_.Center = kBandwidthRange.low;
  if (d_.Center > kBandwidthRange.high) d_.Center = kBandwidthRange.high;
}

// Henries; an empty or zero box leaves the choice to the design.
void DesignPage::ReadResonatorL() {
  std::string text = Box("txtResonatorL").Text();
  d_.ResonatorL = CheckEntry(text);
  if (d_.ResonatorL < 0) d_.ResonatorL = 0;
  if (d_.ResonatorL > kResonatorLMax) d_.ResonatorL = kResonatorLMax;
}

// A topology opens the boxes it reads: the band's for a band, the
// resonator inductance's for the coupled form.
void DesignPage::OnTopology(const TopologyInfo& topology) {
  d_.Topology = topology.name;
  for (const char* name :
       {"frmCenter", "lblCenter", "txtCenter", "frmBandEdges", "lblF1", "txtF1", "lblF2", "txtF2"})
    controls_.Find(name)->SetEnabled(topology.band);
  for (const char* name : {"lblResonatorL", "txtResonatorL"})
    controls_.Find(name)->SetEnabled(topology.resonatorL);
  RedesignChain();
}

void DesignPage::OnCenterChange() {
  if (!SelectedBand()) return;
  ReadCenter();
  RedesignChain();
}

void DesignPage::OnResonatorLChange() {
  const TopologyInfo* band = SelectedBand();
  if (!band || !band->resonatorL) return;
  ReadResonatorL();
  RedesignChain();
}

// The edges as typed, read like the bandwidth box, give the centre and width
// (which the centre and bandwidth boxes then show exactly, as the design
// reads them there).
void DesignPage::OnEdgeChange() {
  if (!SelectedBand()) return;
  std::string t1 = Box("txtF1").Text(), t2 = Box("txtF2").Text();
  const float f1 = std::clamp(CheckEntry(t1), kBandwidthRange.low, kBandwidthRange.high);
  const float f2 = std::clamp(CheckEntry(t2), kBandwidthRange.low, kBandwidthRange.high);
  const char* refused = "The lower band edge f1 must lie below the upper edge f2.";
  if (f2 > f1) {
    d_.Center = static_cast<float>(std::sqrt(static_cast<double>(f1) * f2));
    d_.Width = static_cast<float>(static_cast<double>(f2) - f1);
    Box("txtCenter").SetTextQuietly(ExactEntry(d_.Center, FormatFrequency(d_.Center)));
    Box("txtBandwidth").SetTextQuietly(ExactEntry(d_.Width, FormatFrequency(d_.Width)));
    refused = BandFault(d_.Center, d_.Width).empty() ? nullptr : kEdgesTooWide;
  }
  if (refused) {
    refusal_ = refused;
    ShowBand();
    RedrawSchematic();
    return;
  }
  typingEdges_ = true;
  struct Done {
    bool& flag;
    ~Done() { flag = false; }
  } done{typingEdges_};
  RedesignChain();
}

// The label under the frames names both edges (and the resonator
// inductance the coupled form chose, or where a bandstop reaches its
// depth), or the first sentence of why the band has no design.
void DesignPage::ShowBand() {
  const TopologyInfo* band = SelectedBand();
  std::string text;
  if (band && !refusal_.empty()) {
    text = refusal_.substr(0, ClauseEnd(refusal_, 0, ". "));
  } else if (band && d_.Center > 0 && BandFault(d_.Center, d_.Width).empty()) {
    const BandEdges e = EdgesOfBand(d_.Center, d_.Width);
    text = "f1 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f1))) + ", f2 " +
           TrimBlanks(FormatFrequency(static_cast<float>(e.f2)));
    if (band->resonatorL && d_.ResonatorL <= 0)
      text += ", L " + TrimBlanks(FormatInductance(static_cast<float>(DefaultResonatorL(d_))));
    if (const std::optional<BandNotch> notch = NotchOfDesign(d_)) text += ", " + NotchText(*notch);
    ShowEdges();
  }
  LabelNamed("lblBandEdges").SetCaption(text);
}

// The edge boxes follow a band typed by its centre and width, to the five
// figures the page shows frequencies in; the prefix letter without its "Hz"
// keeps the text short enough for the box.
void DesignPage::ShowEdges() {
  if (typingEdges_) return;
  const BandEdges e = EdgesOfBand(d_.Center, d_.Width);
  for (const auto& [box, f] : {std::pair{"txtF1", e.f1}, std::pair{"txtF2", e.f2}}) {
    std::string text = TrimBlanks(FormatFrequency(f));
    if (text.ends_with("Hz")) text.resize(text.size() - 2);
    Box(box).SetTextQuietly(text);
  }
}

// The strip shows the values denormalized before the new synthesis: the
// driver runs last here.
void DesignPage::OnZotherChange() {
  std::string text = Box("txtZother").Text();
  d_.Rsource = CheckEntry(text);
  if (d_.Rsource < kImpedanceRange.low) d_.Rsource = kImpedanceRange.low;
  if (d_.Rsource > kImpedanceRange.high) d_.Rsource = kImpedanceRange.high;
  if (d_.Rsource > 0) {
    DenormalizeOrRefuse();
    RedrawSchematic();
    RunSynthesisDriver();
  }
}

void DesignPage::OnQotherChange() {
  std::string text = Box("txtQother").Text();
  d_.Qind = CheckEntry(text);
  if (d_.Qind < kLeastQ) d_.Qind = kLeastQ;
}

// A band without a design gives its message here, once, and the display
// page stays shut.
void DesignPage::OnDesign() {
  MatchFixedDesignLoad();
  if (SelectedBand() && !refusal_.empty()) throw RunTimeError(refusal_);
  host_.ShowDisplayPage();
}

}  // namespace drenik
