#include "synth/centring.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "analysis/ladder.h"
#include "synth/candidate_design.h"
#include "synth/order_bounds.h"
#include "synth/responses.h"
#include "synthesis/band_transform.h"
#include "synthesis/denormalize.h"
#include "synthesis/design_edges.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

// The display page's sweep points, without the rest of its analysis.
void SweepPoints(const DesignRecord& d, std::vector<float>& freq) {
  const int n = d.NrIntervals;
  const double lnStart = std::log(static_cast<double>(d.Fstart));
  const double span = std::log(static_cast<double>(d.Fstop)) - lnStart;
  freq.resize(static_cast<size_t>(n) + 1);
  for (int i = 0; i <= n; ++i) freq[i] = static_cast<float>(std::exp(lnStart + span * i / n));
}

// The nominal margins of the prototype in `d` at one width; a width the
// ladder cannot be made at breaks both sides.
class MarginsAtWidth {
 public:
  MarginsAtWidth(const SynthRequest& r, DesignRecord& d) : r_(r), d_(d) {}
  Margins operator()(double width) {
    // The search asks twice at a width it has just found.
    for (const auto& [w, m] : seen_)
      if (w == width) return m;
    const Margins m = At(width);
    seen_.emplace_back(width, m);
    return m;
  }

 private:
  Margins At(double width) {
    d_.Width = static_cast<float>(width);
    if (!Denormalize(d_).Ok()) return {-1e9, -1e9};
    SetDisplaySweep(d_);
    ToleranceDesign td;
    td.ladder = LadderOf(d_);
    td.ladder.reference = d_.Rsource;
    td.highpass = ResponseOf(r_.response).highpass;
    SweepPoints(d_, td.freq);
    return NominalMargins(td, r_.mask);
  }

  const SynthRequest& r_;
  DesignRecord& d_;
  std::vector<std::pair<double, Margins>> seen_;
};

// Where an increasing margin (dB) crosses 0 between u = low, where it is
// below, and u = high, where it is at or above: false position on log u
// with the Illinois step, to a tenth of a per cent. A margin is smooth
// in the width but for the sweep's points moving under a band edge; the
// bracket keeps those steps from misleading it. Returns the end that
// holds.
template <typename Margin>
double Crossing(double low, double high, double fLow, double fHigh, Margin margin) {
  double a = std::log(low), b = std::log(high);
  int side = 0;
  for (int i = 0; i < 40 && b - a > 1e-3; ++i) {
    double x = b - fHigh * (b - a) / (fHigh - fLow);
    if (!(x > a && x < b)) x = (a + b) / 2;
    const double fx = margin(std::exp(x));
    if (fx >= 0) {
      b = x, fHigh = fx;
      if (side == 1) fLow /= 2;
      side = 1;
    } else {
      a = x, fLow = fx;
      if (side == -1) fHigh /= 2;
      side = -1;
    }
  }
  return std::exp(b);
}

// Whether the design's own selectivity can meet the mask at all, before
// any search for its width: an elliptic design's stopband edge on the
// prototype (its ripple edge at 1) must lie within the mask's nearest stop
// frequency there; an equal-ripple one's order must reach what the order
// formula asks for its ripple. A hair of slack: the search decides.
bool SelectiveEnough(const SynthRequest& r, const DesignChoice& c, const DesignRecord& d) {
  const FamilyInfo* f = FindFamily(c.family);
  if (!f) return false;
  PrototypeMask pm = PrototypeMaskOf(r);
  if (f->depth.Offered()) {
    for (const PrototypeStop& s : pm.stops)
      if (d.FstopNormalized > 1.01 * s.omega) return false;
    return true;
  }
  if (!f->ripple.Offered()) return true;
  pm.passLossDb = std::min(pm.passLossDb, c.ripple);
  return c.order >= LowestOrder(kChebyshev, pm);
}

}  // namespace

double RoundedFrequency(double f) {
  if (!(f > 0) || !std::isfinite(f)) return f;
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", f);
  return std::strtod(text, nullptr);
}

namespace {

// The width placed for a given centre (0 for a lowpass or highpass).
std::optional<Placement> PlaceWidth(const SynthRequest& r, const DesignChoice& choice,
                                    double center) {
  const Mask& m = r.mask;
  const ResponseInfo& response = ResponseOf(r.response);
  const bool band = response.band;
  // A band's edges, lower and upper.
  const double low = band && !response.bandstop ? m.passStart : m.passEdge;
  const double high = band && !response.bandstop ? m.passEdge : m.passResume;
  DesignChoice c = choice;
  c.center = center;
  // The passband's own size: where the search for the width starts.
  const double scale = band ? high - low : m.passEdge;
  c.width = scale;
  DesignRecord d;
  if (!DesignInto(c, d).Ok() || !SelectiveEnough(r, c, d)) return std::nullopt;
  MarginsAtWidth margins(r, d);

  // In terms of a "wider" that always helps the passband: the width itself
  // or its reciprocal.
  const bool grows = response.passGrowsWithWidth;
  auto width = [&](double u) { return grows ? scale * u : scale / u; };
  // The cutoff or width anywhere within about two decades of the passband's
  // own: no family needs more to meet a return loss. A band's width stays
  // below twice its centre (its lower edge f0 - BW/2 above 0 Hz) and above
  // the narrowest band the program designs.
  double uLow = 1.0 / 64, uHigh = 64;
  if (band) {
    const double widest = 1.9 * c.center, narrowest = 1.01 * kLeastFractionalBandwidth * c.center;
    uLow = std::max(uLow, grows ? narrowest / scale : scale / widest);
    uHigh = std::min(uHigh, grows ? widest / scale : scale / narrowest);
  }
  // The passband holds from uPass up, the stopband from uStop down; each
  // is found from the passband's own width outwards in octaves, then
  // narrowed down.
  auto pass = [&](double u) { return margins(width(u)).pass; };
  auto stop = [&](double u) { return margins(width(u)).stop; };
  double a = std::clamp(1.0, uLow, uHigh), fa = pass(a), b = a, fb = fa;
  while (fa >= 0 && a > uLow) b = a, fb = fa, a = std::max(uLow, a / 2), fa = pass(a);
  while (fb < 0 && b < uHigh) a = b, fa = fb, b = std::min(uHigh, b * 2), fb = pass(b);
  if (fb < 0) return std::nullopt;
  const double uPass = fa >= 0 ? a : Crossing(a, b, fa, fb, pass);
  double u1 = uPass, f1 = stop(uPass), u2 = u1, f2 = f1;
  if (f1 < 0) return std::nullopt;
  while (f2 >= 0 && u2 < uHigh) u1 = u2, f1 = f2, u2 = std::min(uHigh, u2 * 2), f2 = stop(u2);
  // In v = 1 / u the stop margin grows.
  const double uStop =
      f2 >= 0 ? u2 : 1 / Crossing(1 / u2, 1 / u1, f2, f1, [&](double v) { return stop(1 / v); });
  Placement p;
  p.center = c.center;
  // A lowpass's or highpass's parts move its response by a share of its
  // cutoff: the cutoff goes to the geometric middle. A band's resonators
  // move it by a share of its centre, the same number of hertz whatever its
  // width: the width goes to the middle in hertz.
  const double w1 = width(uPass), w2 = width(uStop);
  p.width = RoundedFrequency(band ? (w1 + w2) / 2 : std::sqrt(w1 * w2));
  p.slide = band ? 1 + std::abs(w2 - w1) / (2 * c.center) : std::sqrt(uStop / uPass);
  return p;
}

// A band's centres worth trying: the passband's geometric centre, the
// stopbands' (between the nearest stop frequencies on either side, where
// the mask has both) and the geometric middle of the two. Asymmetric
// skirts give more room on one side, which a centre moved that way uses.
std::vector<double> BandCentres(const SynthRequest& r) {
  const Mask& m = r.mask;
  const bool bandpass = !ResponseOf(r.response).bandstop;
  const double pass =
      bandpass ? std::sqrt(m.passStart * m.passEdge) : std::sqrt(m.passEdge * m.passResume);
  double below = 0, above = 0;
  for (const StopCheck& s : m.stops) {
    const double from = s.frequency, to = s.to > 0 ? s.to : s.frequency;
    if (!bandpass) {
      below = below > 0 ? std::min(below, from) : from;
      above = std::max(above, to);
    } else if (s.below) {
      below = std::max(below, to);
    } else {
      above = above > 0 ? std::min(above, from) : from;
    }
  }
  std::vector<double> centres = {RoundedFrequency(pass)};
  if (below > 0 && above > below) {
    const double stop = std::sqrt(below * above);
    for (double f : {std::sqrt(pass * stop), stop})
      if (std::abs(f / pass - 1) > 1e-4) centres.push_back(RoundedFrequency(f));
  }
  return centres;
}

}  // namespace

std::optional<Placement> CentreInMask(const SynthRequest& r, const DesignChoice& choice) {
  if (!ResponseOf(r.response).band) return PlaceWidth(r, choice, 0);
  std::optional<Placement> best;
  for (double center : BandCentres(r)) {
    const std::optional<Placement> p = PlaceWidth(r, choice, center);
    if (p && (!best || p->slide > best->slide)) best = p;
  }
  return best;
}

}  // namespace drenik
