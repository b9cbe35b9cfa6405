// Loading the design page: every control is set from the record, selecting
// options from code so that their handlers (and the enabling rules) run.
#include "core/formatters.h"
#include "pages/design_page.h"

namespace drenik {

// Narrower than the driver's snap for 0.01 dB on purpose.
const char* LoadRippleOption(float& apass) {
  // Bounds are compared as stored floats, so a ripple read exactly on a
  // bound stays as it is.
  float a = apass;
  if (a > 0.009f && a < 0.011f) {
    apass = 0.01f;
    return "opt01";
  }
  if (a > 0.04f && a < 0.05f) {
    apass = 0.044f;
    return "opt044";
  }
  if (a > 0.19f && a < 0.21f) {
    apass = 0.2f;
    return "opt200";
  }
  return nullptr;
}

void DesignPage::Load() {
  controls_.RunEvent([this] {
    LoadControls();
    RunSynthesisDriver();
    RedrawSchematic();
  });
}

void DesignPage::LoadControls() {
  controls_.RunEvent([this] {
    controls_.ResetToDefaults();
    strip_.Clear();
    caption_ = d_.ProgramTitle + " " + d_.Version + " - Design";

    if (d_.Width == 0) d_.Width = 4.5e6f;
    Box("txtBandwidth").SetText(FormatFrequency(d_.Width));

    if (d_.Rsource == 0) {
      d_.Rsource = 50;
      Option("optZ50").Select();
    }
    Box("txtZother").SetText(FormatValue(d_.Rsource));
    if (d_.Rsource != 50) {
      Option("optZother").Select();
    } else {
      Option("optZ50").Select();
    }

    if (d_.Family == kZelmar) d_.Rload = d_.Rsource;

    if (d_.Order == 0) {
      d_.Order = 5;
      Option("optOrder5").Select();
    }
    if (d_.Order >= 3 && d_.Order <= 7) Option("optOrder" + std::to_string(d_.Order)).Select();

    if (d_.Qind == 0) {
      d_.Qind = kInfiniteQind;
      Option("optQ1").Select();
      Option("optQ2").SetSelectedQuietly(false);
    }
    Box("txtQother").SetText(FormatValue(d_.Qind));
    if (d_.Qind >= kInfiniteQind) {
      d_.Qind = kInfiniteQind;
      Box("txtQother").SetText("1M");
      Option("optQ1").Select();
      Option("optQ2").SetSelectedQuietly(false);
    } else {
      Option("optQ1").SetSelectedQuietly(false);
      Option("optQ2").Select();
    }

    if (d_.Topology.empty()) d_.Topology = "Cinlowpass";
    if (auto* option = controls_.FindOption("opt" + d_.Topology)) {
      if (option->GetFrame() == &FrameNamed("frmTopology")) option->Select();
    }

    if (d_.Family == 0) d_.Family = kChebyshev;
    static const char* const kFamilies[] = {"optButterworth", "optChebycheff", "optCauer",
                                            "optZelmar", "optBessel"};
    if (d_.Family >= 1 && d_.Family <= 5) {
      Option(kFamilies[d_.Family - 1]).Select();
      if (d_.Family == kCauer) d_.CauerType = "C";
    }

    if (d_.Apass == 0) d_.Apass = 0.044f;
    if (const char* ripple = LoadRippleOption(d_.Apass)) Option(ripple).Select();

    if (d_.Family == kZelmar) {
      for (OptionButton* option : controls_.OptionsOf(&FrameNamed("frmRipple"))) {
        option->SetSelectedQuietly(false);
      }
    }

    if (d_.Astop == 0) d_.Astop = 40;
    const std::pair<const char*, float> stopbands[] = {
        {"optAstop30", 30.0f}, {"optAstop40", 40.0f}, {"optAstop50", 50.0f}, {"optAstop60", 60.0f}};
    for (const auto& [name, value] : stopbands) {
      if (d_.Astop == value) Option(name).Select();
    }

    if (d_.Family >= 1 && d_.Family <= 5) {
      LabelNamed("lblRipple").SetCaption(RippleCaption(d_.Family));
    }
  });
}

}  // namespace drenik
