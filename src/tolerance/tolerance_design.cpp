// The design a tolerance run varies, its parts, and the mask it is checked
// against when the user gives none.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "synthesis/design_edges.h"
#include "tolerance/tolerance.h"

namespace drenik {
namespace {

// The nominal design's power ratios at every point (lane 0 of a batch).
void NominalPowers(const ToleranceDesign& design, std::span<const float> freq,
                   std::vector<double>& s21, std::vector<double>& s11) {
  const LadderBatch batch(design.ladder, freq);
  const int n = batch.Points();
  std::vector<double> a(n * kBatchLanes), b(n * kBatchLanes);
  batch.Evaluate(UniformBatch(design.ladder), 0, n, a.data(), b.data());
  s21.resize(n), s11.resize(n);
  for (int i = 0; i < n; ++i) s21[i] = a[i * kBatchLanes], s11[i] = b[i * kBatchLanes];
}

// A limit made from a nominal figure, or NaN where the nominal has none to
// give: a design that passes nothing has an infinite loss, and a limit of
// infinite loss would pass any trial.
double Limit(double db) {
  return std::isfinite(db) ? db : std::numeric_limits<double>::quiet_NaN();
}

// The nominal design's own figures that a default mask keeps inside of, dB:
// the worst passband return loss and the least stopband attenuation (NaN
// where it has no such band).
struct NominalFigures {
  double returnLoss = std::numeric_limits<double>::quiet_NaN();
  double attenuation = std::numeric_limits<double>::quiet_NaN();
};

// A bandpass: the passband between its edges, each skirt from where the
// lowpass stopband would start, at the nominal attenuation there less 3 dB.
Mask BandpassMask(const ToleranceDesign& design, const std::vector<double>& s21,
                  const std::vector<double>& s11, NominalFigures& nominal) {
  Mask mask;
  mask.passStart = design.f1, mask.passEdge = design.f2;
  int first, last, lo, hi;
  PointsBeyond(design.freq, design.f2, true, first, last);
  PointsBeyond(design.freq, design.f1, false, lo, hi);
  first = std::max(first, lo);
  if (first <= last) {
    const double s11Max = *std::max_element(s11.begin() + first, s11.begin() + last + 1);
    nominal.returnLoss = -ReflectionDbOf(s11Max);
    const double returnLoss = std::floor((nominal.returnLoss - 3) * 10) / 10;
    if (Limit(returnLoss) >= 3) mask.passRl = returnLoss;
  }
  for (const auto& [from, below] : {std::pair{design.stopLow, true}, {design.stopHigh, false}}) {
    PointsBeyond(design.freq, from, below, first, last);
    if (first > last) continue;
    const double s21Max = *std::max_element(s21.begin() + first, s21.begin() + last + 1);
    const double attenuation = -TransmissionDbOf(s21Max);
    nominal.attenuation = std::fmin(nominal.attenuation, attenuation);
    const double depth = std::floor(attenuation - 3);
    if (Limit(depth) > 0) mask.stops.push_back({from, depth, below});
  }
  return mask;
}

// A bandstop: return loss over both passbands, below f1 and above f2, and
// attenuation over the notch between the stop edges, each at the nominal
// figure less the margin.
Mask BandstopMask(const ToleranceDesign& design, const std::vector<double>& s21,
                  const std::vector<double>& s11, NominalFigures& nominal) {
  Mask mask;
  mask.passEdge = design.f1, mask.passResume = design.f2;
  double s11Max = -1;
  int first, last;
  for (const auto& [edge, below] : {std::pair{design.f1, true}, {design.f2, false}}) {
    PointsBeyond(design.freq, edge, below, first, last);
    if (first <= last)
      s11Max = std::max(s11Max, *std::max_element(s11.begin() + first, s11.begin() + last + 1));
  }
  if (s11Max >= 0) {
    nominal.returnLoss = -ReflectionDbOf(s11Max);
    const double returnLoss = std::floor((nominal.returnLoss - kMaskMarginDb) * 10) / 10;
    if (Limit(returnLoss) >= 3) mask.passRl = returnLoss;
  }
  int lo, hi;
  PointsBeyond(design.freq, design.stopLow, false, first, last);
  PointsBeyond(design.freq, design.stopHigh, true, lo, hi);
  last = std::min(last, hi);
  if (first <= last) {
    const double s21Max = *std::max_element(s21.begin() + first, s21.begin() + last + 1);
    nominal.attenuation = -TransmissionDbOf(s21Max);
    const double depth = std::floor(nominal.attenuation - kMaskMarginDb);
    if (Limit(depth) > 0)
      mask.stops.push_back({.frequency = design.stopLow, .depth = depth, .to = design.stopHigh});
  }
  return mask;
}

std::string Decibels(double db) {
  if (std::isinf(db)) return "an infinite number of dB (nothing passes)";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f dB", db);
  return text;
}

// Why a mask made from these figures has no check.
std::string NothingToKeep(const NominalFigures& f) {
  std::string figures;
  if (!std::isnan(f.returnLoss))
    figures = "a worst passband return loss of " + Decibels(f.returnLoss);
  if (!std::isnan(f.attenuation))
    figures += (figures.empty() ? "" : " and ") + std::string("a least stopband attenuation of ") +
               Decibels(f.attenuation);
  return "There is no default mask: the nominal design has nothing to keep" +
         (figures.empty() ? std::string(".") : ", " + figures + ".") +
         " A mask keeps a return loss of at least 3 dB and an attenuation above 0 dB, 3 dB inside "
         "the nominal figures.";
}

}  // namespace

ToleranceDesign ToleranceDesignOf(const DesignRecord& d) {
  ToleranceDesign out;
  out.ladder = LadderOf(d);
  out.ladder.reference = d.Rsource;
  const int last = std::clamp<int>(d.NrIntervals, -1, kSweepSlots - 1);
  out.freq.assign(d.Freq.begin(), d.Freq.begin() + (last + 1));
  // A band design swept wider than its own way is judged at its own sweep's
  // points as well: a view widened to the harmonics samples the passband and
  // the stop edges no more coarsely. (The curves are drawn over the sweep.)
  if (!out.freq.empty()) {
    const float first = out.freq.front(), lastPoint = out.freq.back();
    for (float f : OwnBandSweep(d))
      if (f > first && f < lastPoint) out.freq.push_back(f);
    std::sort(out.freq.begin(), out.freq.end());
    out.freq.erase(std::unique(out.freq.begin(), out.freq.end()), out.freq.end());
  }
  const DesignEdges edges = EdgesOf(d);
  out.highpass = edges.highpass;
  out.cutoff = edges.cutoff;
  out.stopEdge = edges.stopEdge;
  if (out.stopEdge > 0) out.stopDepth = d.Astop;
  out.band = edges.band, out.bandstop = edges.bandstop;
  out.f1 = edges.f1, out.f2 = edges.f2, out.stopLow = edges.stopLow, out.stopHigh = edges.stopHigh;
  return out;
}

std::vector<VariedPart> VariedParts(const Ladder& ladder, double ctolPercent, double ltolPercent) {
  std::vector<VariedPart> parts;
  const int stages = std::clamp(ladder.stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const ElementFacts* f = FactsOf(ladder.kind[j]);
    if (!Modelled(f, ladder.bandBranches)) continue;
    if (f->hasL && ladder.L[j] != 0) parts.push_back({j, false, ladder.L[j], ltolPercent / 100});
    if (f->hasC && ladder.C[j] != 0) parts.push_back({j, true, ladder.C[j], ctolPercent / 100});
  }
  return parts;
}

namespace {

Mask DefaultChecks(const ToleranceDesign& design, Mask mask, NominalFigures& nominal) {
  if (design.freq.empty() || !LadderFault(design.ladder).empty()) return mask;
  // A band design is judged on the display sweep, which spans both skirts
  // of a bandpass and both passbands of a bandstop.
  if (design.band) {
    std::vector<double> s21, s11;
    NominalPowers(design, design.freq, s21, s11);
    return design.bandstop ? BandstopMask(design, s21, s11, nominal)
                           : BandpassMask(design, s21, s11, nominal);
  }
  // A Cauer design's own edge, else the second harmonic of the cutoff; both
  // bands are judged at their own frequencies, wherever the sweep ends.
  const bool cauer = design.stopEdge > 0;
  const double from =
      cauer ? design.stopEdge : (design.highpass ? design.cutoff / 2 : design.cutoff * 2);
  const Band bands[] = {Passband(mask.passEdge, design.highpass), Stopband(from, design.highpass)};
  const std::vector<float> grid = BandGrid(design.freq, bands);
  std::vector<double> s21, s11;
  NominalPowers(design, grid, s21, s11);

  int first, last;
  PointsBeyond(grid, mask.passEdge, !design.highpass, first, last);
  if (first <= last) {
    const double s11Max = *std::max_element(s11.begin() + first, s11.begin() + last + 1);
    const double s21Min = *std::min_element(s21.begin() + first, s21.begin() + last + 1);
    nominal.returnLoss = -ReflectionDbOf(s11Max);
    const double returnLoss = std::floor((nominal.returnLoss - kMaskMarginDb) * 10) / 10;
    const double loss = std::ceil((-TransmissionDbOf(s21Min) + kLossMarginDb) * 10) / 10;
    if (Limit(returnLoss) >= 3)
      mask.passRl = returnLoss;
    else if (Limit(loss) >= 0)  // an edge at the 3 dB point reflects half the power there
      mask.passIl = loss;
  }

  PointsBeyond(grid, from, design.highpass, first, last);
  if (first > last) return mask;
  const double s21Max = *std::max_element(s21.begin() + first, s21.begin() + last + 1);
  nominal.attenuation = -TransmissionDbOf(s21Max);
  // The same margin for every family: a Cauer design's nominal depth is met
  // with almost nothing to spare, and parts off by a percent would fail it.
  const double depth = std::floor(nominal.attenuation - kMaskMarginDb);
  if (Limit(depth) > 0) mask.stops.push_back({from, depth});
  return mask;
}

}  // namespace

Mask DefaultMask(const ToleranceDesign& design, double passEdge, std::string* none) {
  Mask mask;
  mask.passEdge = passEdge > 0 ? passEdge : design.cutoff;
  NominalFigures nominal;
  Mask made = DefaultChecks(design, mask, nominal);
  if (none) {
    none->clear();
    const std::string fault = LadderFault(design.ladder);
    if (design.freq.empty())
      *none = "There is no default mask: the design has no sweep.";
    else if (!fault.empty())
      *none = "There is no default mask: the nominal design cannot be analysed. " + fault;
    else if (!made.passRl && !made.passIl && made.stops.empty())
      *none = NothingToKeep(nominal);
  }
  return made;
}

}  // namespace drenik
