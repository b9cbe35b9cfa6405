#include "pages/design_page.h"

#include <iterator>
#include <stdexcept>

#include "core/formatters.h"
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

  // One option per value: choosing it stores the value and redesigns.
  auto addChoice = [&](Frame& frame, const std::string& name, const char* caption, auto& field,
                       auto value) {
    c.AddOption(name, caption, &frame).SetHandler([this, &field, value] {
      field = value;
      RedesignChain();
    });
  };
  Frame& topology = c.AddFrame("frmTopology", "Topology");
  for (const TopologyInfo& t : Topologies())
    addChoice(topology, TopologyOption(t), t.caption, d_.Topology, t.name);
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

  Frame& q = c.AddFrame("frmQ", "Inductor Q");
  c.AddOption("optQ1", "Infinite", &q).SetHandler([this] { OnQ1(); });
  c.AddOption("optQ2", "Other", &q).SetHandler([this] { OnQ2(); });
  c.AddTextBox("txtQother", "300").SetChangeHandler([this] { OnQotherChange(); });

  c.AddButton("cmdDesign", "Display responses").SetHandler([this] { OnDesign(); });
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
  Act(Denormalize(d_), controls_);
  ShowBand();
  ShowOtherDesign();
  RedrawSchematic();
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
  drenik::RedrawSchematic(d_, strip_);
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

// Typed a key at a time, a centre passes through values whose band would
// reach below 0 Hz ("7" on the way to "7.1M"): the label beside the boxes
// says so and the design waits for a band that exists, rather than a
// message at every key. Design with such a band gives the message.
void DesignPage::OnCenterChange() {
  if (!SelectedBand()) return;
  ReadCenter();
  if (!BandFault(d_.Center, d_.Width).empty()) {
    LabelNamed("lblBandEdges").SetCaption("f1 below 0 Hz: raise the centre");
    return;
  }
  RedesignChain();
}

void DesignPage::OnResonatorLChange() {
  const TopologyInfo* band = SelectedBand();
  if (!band || !band->resonatorL) return;
  ReadResonatorL();
  RedesignChain();
}

// The label beside the band boxes names both edges (and the resonator
// inductance the coupled form chose). The boxes stay open whatever the
// topology, so that a band can be typed before its topology is chosen.
void DesignPage::ShowBand() {
  const TopologyInfo* band = SelectedBand();
  std::string edges;
  if (band && d_.Center > 0 && BandFault(d_.Center, d_.Width).empty()) {
    const BandEdges e = EdgesOfBand(d_.Center, d_.Width);
    edges = "f1 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f1))) + ", f2 " +
            TrimBlanks(FormatFrequency(static_cast<float>(e.f2)));
    if (band->resonatorL && d_.ResonatorL <= 0)
      edges += ", L " + TrimBlanks(FormatInductance(static_cast<float>(DefaultResonatorL(d_))));
  }
  LabelNamed("lblBandEdges").SetCaption(edges);
}

// The strip shows the values denormalized before the new synthesis: the
// driver runs last here.
void DesignPage::OnZotherChange() {
  std::string text = Box("txtZother").Text();
  d_.Rsource = CheckEntry(text);
  if (d_.Rsource < kImpedanceRange.low) d_.Rsource = kImpedanceRange.low;
  if (d_.Rsource > kImpedanceRange.high) d_.Rsource = kImpedanceRange.high;
  if (d_.Rsource > 0) {
    Act(Denormalize(d_), controls_);
    RedrawSchematic();
    RunSynthesisDriver();
  }
}

void DesignPage::OnQotherChange() {
  std::string text = Box("txtQother").Text();
  d_.Qind = CheckEntry(text);
  if (d_.Qind < kLeastQ) d_.Qind = kLeastQ;
}

void DesignPage::OnDesign() {
  MatchFixedDesignLoad();
  host_.ShowDisplayPage();
}

}  // namespace drenik
