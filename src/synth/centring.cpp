#include "synth/centring.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "analysis/sweep.h"
#include "synth/candidate_design.h"
#include "synthesis/denormalize.h"
#include "synthesis/design_edges.h"

namespace drenik {
namespace {

bool IsBand(SynthResponse r) {
  return r == SynthResponse::Bandpass || r == SynthResponse::Bandstop;
}

// The passband gains as the width grows for a lowpass and a bandpass; it
// loses for a highpass (the cutoff moves up into it) and a bandstop (the
// notch widens into it).
bool PassGrowsWithWidth(SynthResponse r) {
  return r == SynthResponse::Lowpass || r == SynthResponse::Bandpass;
}

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
    d_.Width = static_cast<float>(width);
    if (!Denormalize(d_).Ok()) return {-1e9, -1e9};
    SetDisplaySweep(d_);
    ToleranceDesign td = ToleranceDesignOf(d_);
    SweepPoints(d_, td.freq);
    td.ladder.reference = d_.Rsource;
    return NominalMargins(td, r_.mask);
  }

 private:
  const SynthRequest& r_;
  DesignRecord& d_;
};

// The width in [low, high] (log scale) where `holds` changes from false to
// true, when it is false at `low` and true at `high`.
template <typename Holds>
double Boundary(double low, double high, Holds holds) {
  for (int i = 0; i < 20; ++i) {
    const double mid = std::sqrt(low * high);
    (holds(mid) ? high : low) = mid;
  }
  return high;
}

}  // namespace

double RoundedFrequency(double f) {
  if (!(f > 0) || !std::isfinite(f)) return f;
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", f);
  return std::strtod(text, nullptr);
}

std::optional<Placement> CentreInMask(const SynthRequest& r, const DesignChoice& choice) {
  const Mask& m = r.mask;
  const bool band = IsBand(r.response);
  const double low = r.response == SynthResponse::Bandpass ? m.passStart : m.passEdge;
  const double high = r.response == SynthResponse::Bandpass ? m.passEdge : m.passResume;
  DesignChoice c = choice;
  c.center = band ? RoundedFrequency(std::sqrt(low * high)) : 0;
  // The passband's own size: where the search for the width starts.
  const double scale = band ? high - low : m.passEdge;
  c.width = scale;
  DesignRecord d;
  if (!DesignInto(c, d).Ok()) return std::nullopt;
  MarginsAtWidth margins(r, d);

  // In terms of a "wider" that always helps the passband: the width itself
  // or its reciprocal.
  const bool grows = PassGrowsWithWidth(r.response);
  auto width = [&](double u) { return grows ? scale * u : scale / u; };
  // The cutoff or width anywhere within about two decades of the passband's
  // own: no family needs more to meet a return loss.
  const double uLow = 1.0 / 64, uHigh = 64;
  auto passHolds = [&](double u) { return margins(width(u)).pass >= 0; };
  auto stopHolds = [&](double u) { return margins(width(u)).stop >= 0; };
  if (!passHolds(uHigh)) return std::nullopt;
  const double uPass = passHolds(uLow) ? uLow : Boundary(uLow, uHigh, passHolds);
  if (!stopHolds(uPass)) return std::nullopt;
  // The stopband holds from uPass up to uStop.
  const double uStop = stopHolds(uHigh) ? uHigh : 1 / Boundary(1 / uHigh, 1 / uPass, [&](double v) {
                                                    return stopHolds(1 / v);
                                                  });
  Placement p;
  p.center = c.center;
  p.width = RoundedFrequency(width(std::sqrt(uPass * uStop)));
  p.slide = std::sqrt(uStop / uPass);
  return p;
}

}  // namespace drenik
