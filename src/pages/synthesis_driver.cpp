// The design page's synthesis driver and the inputs it reads before a Cauer
// prototype.
#include "core/formatters.h"
#include "pages/design_page.h"
#include "pages/stopband_edge.h"
#include "synthesis/prototypes.h"

namespace drenik {

namespace {

// A ripple that came from elsewhere (the last-session file) is moved onto the
// nearest offered value when it lies close to one; open bounds. Returns the
// index of the offered value, or -1 when the ripple was left alone.
int SnapRipple(float& apass) {
  // Bounds are compared as stored floats, so a ripple read exactly on a
  // bound stays as it is.
  float a = apass;
  if (a > 0.005f && a < 0.02f) {
    apass = 0.01f;
    return 0;
  }
  if (a > 0.04f && a < 0.05f) {
    apass = 0.044f;
    return 1;
  }
  if (a > 0.19f && a < 0.21f) {
    apass = 0.2f;
    return 2;
  }
  return -1;
}

}  // namespace

void DesignPage::RunSynthesisDriver() {
  ++driverRuns_;
  for (int n = 3; n <= 7; ++n) {
    if (Option("optOrder" + std::to_string(n)).Selected()) {
      d_.Order = static_cast<int16_t>(n);
      break;
    }
  }

  if (Option("optQ1").Selected()) {
    d_.Qcap = kInfiniteQcap;
  } else if (Option("optQ2").Selected()) {
    std::string text = Box("txtQother").Text();
    d_.Qcap = CheckEntry(text);
  }

  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    if (Option(std::string("opt") + topology).Selected()) d_.Topology = topology;
  }

  const std::pair<const char*, float> stopbands[] = {
      {"optAstop30", 30.0f}, {"optAstop40", 40.0f}, {"optAstop50", 50.0f}, {"optAstop60", 60.0f}};
  for (const auto& [name, value] : stopbands) {
    if (Option(name).Selected()) {
      d_.Astop = value;
      break;
    }
  }

  const char* rippleOptions[] = {"opt01", "opt044", "opt200"};
  const float ripples[] = {0.01f, 0.044f, 0.2f};
  for (int i = 0; i < 3; ++i) {
    if (Option(rippleOptions[i]).Selected()) {
      d_.Apass = ripples[i];
      break;
    }
  }
  // The snapped ripple is shown in its option while the ripple choice is
  // offered. The driver is already designing with that ripple, so the
  // option's own handler (which would start another design) is not run.
  int snapped = SnapRipple(d_.Apass);
  if (snapped >= 0 && FrameNamed("frmRipple").Enabled()) {
    Option(rippleOptions[snapped]).SetSelectedQuietly(true);
  }

  switch (d_.Family) {
    case kButterworth:
      Butterworth(d_);
      break;
    case kChebyshev:
      Chebyshev(d_);
      break;
    case kCauer:
      ReadDesignInputs();
      Cauer(d_, platform_);
      break;
    case kZelmar:
      Zelmar(d_);
      break;
    case kBessel:
      Bessel(d_);
      break;
    default:
      break;
  }
}

void DesignPage::ReadDesignInputs() {
  d_.Qcap = kInfiniteQcap;
  std::string text = Box("txtBandwidth").Text();
  d_.Width = CheckEntry(text);
  d_.Rstandard = d_.Rsource;
  SnapRipple(d_.Apass);
  if (d_.Family == kCauer) {
    double factor = StopbandEdgeFactor(d_.Order, d_.Astop, d_.Apass);
    if (factor > 0) d_.StopbandEdge = static_cast<float>(static_cast<double>(d_.Width) * factor);
  }
}

}  // namespace drenik
