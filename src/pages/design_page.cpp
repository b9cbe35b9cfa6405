#include "pages/design_page.h"

#include <iterator>
#include <stdexcept>

#include "core/formatters.h"
#include "pages/schematic.h"
#include "synthesis/denormalize.h"

namespace drenik {

namespace {

struct OptionDef {
  const char* name;
  const char* caption;
};

constexpr OptionDef kFamilyOptions[] = {{"optButterworth", "Butterworth"},
                                        {"optChebycheff", "Chebyshev"},
                                        {"optCauer", "Cauer"},
                                        {"optZelmar", "Zelmar"},
                                        {"optBessel", "Bessel"}};
constexpr OptionDef kTopologyOptions[] = {{"optCinlowpass", "C-input lowpass"},
                                          {"optLinlowpass", "L-input lowpass"},
                                          {"optCinhighpass", "C-input highpass"},
                                          {"optLinhighpass", "L-input highpass"}};
constexpr const char* kTopologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};
constexpr OptionDef kRippleOptions[] = {
    {"opt01", ".01 dB (RF)"}, {"opt044", ".044 dB (RF)"}, {"opt200", ".200 dB (AF)"}};
constexpr float kRipples[] = {0.01f, 0.044f, 0.2f};
constexpr OptionDef kStopbandOptions[] = {{"optAstop30", "30 dB"},
                                          {"optAstop40", "40 dB"},
                                          {"optAstop50", "50 dB"},
                                          {"optAstop60", "60 dB"}};
constexpr float kStopbands[] = {30, 40, 50, 60};

template <typename T>
T& Require(T* control, const std::string& name) {
  if (!control) throw std::out_of_range("The design page has no control " + name);
  return *control;
}

}  // namespace

const char* RippleCaption(int16_t family) {
  switch (family) {
    case kButterworth:
    case kBessel:
      return "(3 dB)";
    case kChebyshev:
    case kCauer:
      return "(ripple)";
    case kZelmar:
      return "(0.2 dB)";
    default:
      return "";
  }
}

DesignPage::DesignPage(DesignRecord& d, Platform& platform, Canvas& strip, PageHost& host)
    : d_(d), platform_(platform), strip_(strip), host_(host), controls_(platform) {
  Build();
}

void DesignPage::Build() {
  ControlSet& c = controls_;
  c.AddLabel("lblTitle", "Design page");

  Frame& family = c.AddFrame("frmFamily", "Family");
  for (int i = 0; i < 5; ++i) {
    auto& option = c.AddOption(kFamilyOptions[i].name, kFamilyOptions[i].caption, &family);
    auto code = static_cast<int16_t>(i + 1);
    if (code == kZelmar) {
      option.SetHandler([this] { OnZelmar(); });
    } else {
      option.SetHandler([this, code] { OnFamily(code); });
    }
  }

  Frame& order = c.AddFrame("frmOrder", "Order");
  for (int n = 3; n <= 7; ++n) {
    auto& option = c.AddOption("optOrder" + std::to_string(n), std::to_string(n), &order);
    option.SetHandler([this, n] {
      d_.Order = static_cast<int16_t>(n);
      RedesignChain();
    });
  }

  // One option per value: choosing it stores the value and redesigns.
  auto addChoices = [&](Frame& frame, const auto& defs, const auto& values, auto& field) {
    for (size_t i = 0; i < std::size(defs); ++i) {
      auto value = values[i];
      c.AddOption(defs[i].name, defs[i].caption, &frame).SetHandler([this, &field, value] {
        field = value;
        RedesignChain();
      });
    }
  };
  addChoices(c.AddFrame("frmTopology", "Topology"), kTopologyOptions, kTopologies, d_.Topology);
  addChoices(c.AddFrame("frmRipple", "Passband ripple"), kRippleOptions, kRipples, d_.Apass);
  addChoices(c.AddFrame("frmStopbandDepth", "Stopband depth"), kStopbandOptions, kStopbands,
             d_.Astop);

  Frame& impedance = c.AddFrame("frmImpedance", "Impedance");
  c.AddOption("optZ50", "50", &impedance).SetHandler([this] { OnZ50(); });
  c.AddOption("optZother", "Other", &impedance).SetHandler([this] { OnZother(); });
  c.AddTextBox("txtZother", "50").SetChangeHandler([this] { OnZotherChange(); });
  c.AddLabel("lblOhms", "ohms");

  c.AddFrame("frmBandwidth", "Bandwidth");
  c.AddLabel("lblMHz", "Hz:");
  c.AddTextBox("txtBandwidth", "5000000").SetChangeHandler([this] { OnBandwidthChange(); });
  c.AddLabel("lblRipple", "");

  Frame& q = c.AddFrame("frmQ", "Inductor Q");
  c.AddOption("optQ1", "Infinite", &q).SetHandler([this] { OnQ1(); });
  c.AddOption("optQ2", "Other", &q).SetHandler([this] { OnQ2(); });
  c.AddTextBox("txtQother", "300").SetChangeHandler([this] { OnQotherChange(); });

  c.AddButton("cmdDesign", "Display responses").SetHandler([this] { OnDesign(); });
  c.AddButton("cmdExit", "Exit").SetHandler([this] { host_.EndProgram(true); });
  c.AddButton("cmdZelmarSoftware", "Zelmar Software").SetHandler([this] {
    platform_.OpenUrl(host_.UserGuideUrl());
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
  Denormalize(d_);
  RedrawSchematic();
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

void DesignPage::OnFamily(int16_t family) {
  LabelNamed("lblRipple").SetCaption(RippleCaption(family));
  d_.Family = family;
  d_.CauerFlag = family == kCauer ? 1 : 0;
  SetFamilyGroups(true, family == kChebyshev || family == kCauer, family == kCauer);
  if (family == kCauer) {
    d_.CauerType = "C";
  } else {
    d_.StopbandEdge = 0;
  }
  RedesignChain();
}

// Zelmar is a fixed fifth-order design with its own ripple: the order is set
// to 5 and locked, the ripple and stopband choices do not apply.
void DesignPage::OnZelmar() {
  LabelNamed("lblRipple").SetCaption(RippleCaption(kZelmar));
  d_.Family = kZelmar;
  d_.CauerFlag = 1;
  SetFamilyGroups(false, false, false);
  d_.Order = 5;
  Option("optOrder5").Select();
  for (OptionButton* option : controls_.OptionsOf(&FrameNamed("frmRipple"))) {
    option->SetSelectedQuietly(false);
  }
  RedesignChain();
}

void DesignPage::OnZ50() {
  d_.Rsource = 50;
  TextBox& box = Box("txtZother");
  box.SetText("50");
  box.SetEnabled(false);
  if (d_.Family == kZelmar) d_.Rload = d_.Rsource;
  RedesignChain();
}

void DesignPage::OnZother() {
  std::string text = Box("txtZother").Text();
  d_.Rsource = CheckEntry(text);
  Box("txtZother").SetEnabled(true);
  if (d_.Family == kZelmar) d_.Rload = d_.Rsource;
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
  if (d_.Width < 0.1f) d_.Width = 0.1f;
  if (d_.Width > 1e10f) d_.Width = 1e10f;
  if (d_.Width > 0) RedesignChain();
}

// The strip shows the values denormalized before the new synthesis: the
// driver runs last here.
void DesignPage::OnZotherChange() {
  std::string text = Box("txtZother").Text();
  d_.Rsource = CheckEntry(text);
  if (d_.Rsource < 0.1f) d_.Rsource = 0.1f;
  if (d_.Rsource > 1e6f) d_.Rsource = 1e6f;
  if (d_.Rsource > 0) {
    Denormalize(d_);
    RedrawSchematic();
    RunSynthesisDriver();
  }
}

void DesignPage::OnQotherChange() {
  std::string text = Box("txtQother").Text();
  d_.Qind = CheckEntry(text);
  if (d_.Qind < 2) d_.Qind = 2;
}

void DesignPage::OnDesign() {
  if (d_.Family == kZelmar) d_.Rload = d_.Rsource;
  host_.ShowDisplayPage();
}

}  // namespace drenik
