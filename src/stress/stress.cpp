#include "stress/stress.h"

#include <cmath>
#include <functional>

#include "synthesis/design_edges.h"

namespace drenik {
namespace {

// Lowpass and bandstop bands start this far below their edge, highpass and
// bandstop bands end this far above theirs.
constexpr double kBelow = 0.01, kAbove = 10;
// Load phases tried for the whole filter's dissipation (a sum of the parts'
// shares, which has no closed-form peak), before refining.
constexpr int kTotalPhases = 72;
// Golden-section steps of each refinement: the bracket of two grid steps
// shrinks to 0.618^40 (1e-8) of itself.
constexpr int kRefineSteps = 40;

// Bilinear coefficients, in the load's reflection g, of a quantity
// x[0] Vout + x[1] Iout; see PeakOnCircle.
struct Bilinear {
  Phasor a, b;
};
Bilinear InReflection(const Phasor (&x)[2], double rload) {
  return {x[0] * rload + x[1], x[0] * rload - x[1]};
}

// What each part's three maxima come from at one frequency.
struct Quantity {
  int part;
  int which;  // 0 voltage, 1 current, 2 dissipation
};

class Search {
 public:
  Search(const DesignRecord& d, const StressRequest& r)
      : ladder_(LadderOf(d)),
        parts_(LadderParts(ladder_)),
        rho_((r.vswr - 1) / (r.vswr + 1)),
        emf_(2 * std::sqrt(r.power * ladder_.rsource)) {}

  const std::vector<LadderPart>& Parts() const { return parts_; }
  double Emf() const { return emf_; }

  // The quantity's largest value at f over the loads, and where.
  StressPeak At(const LadderResponse& r, const Quantity& q) const {
    const PartResponse& p = r.parts[q.part];
    const bool current = q.which == 1 || (q.which == 2 && p.inductor);
    const Bilinear x = InReflection(current ? p.i : p.v, ladder_.rload);
    const Bilinear s = InReflection(r.source, ladder_.rload);
    const CirclePeak peak = PeakOnCircle(x.a, x.b, s.a, s.b, rho_);
    double value = emf_ * peak.value;
    if (q.which == 2) value = p.loss * value * value;
    return {value, r.f, Degrees(peak.at)};
  }

  // The whole filter's dissipation at f, at the worst of the phases tried.
  StressTotals Totals(const LadderResponse& r) const {
    StressTotals best;
    const int phases = rho_ == 0 ? 1 : kTotalPhases;
    for (int k = 0; k < phases; ++k) {
      const double deg = 360.0 * k / phases;
      const Phasor g = std::polar(rho_, deg * M_PI / 180);
      // As StateAt, without keeping each part's state.
      const Phasor per = (1.0 - g) / (ladder_.rload * (1.0 + g));
      const Phasor vout = emf_ / (r.source[0] + r.source[1] * per);
      double sum = 0;
      for (const PartResponse& p : r.parts) {
        const Phasor(&x)[2] = p.inductor ? p.i : p.v;
        sum += p.loss * std::norm(vout * (x[0] + x[1] * per));
      }
      if (k == 0 || sum > best.dissipated) best = {r.f, deg, 0, 0, sum};
    }
    const Phasor g = std::polar(rho_, best.phase * M_PI / 180);
    const LadderState s = StateAt(r, ladder_.rload * (1.0 + g) / (1.0 - g), emf_);
    best.powerIn = s.powerIn, best.powerOut = s.powerOut;
    if (rho_ == 0) best.phase = 0;
    return best;
  }

  LadderResponse Respond(double f) const { return RespondAt(ladder_, parts_, f); }

 private:
  static double Degrees(Phasor g) { return g == Phasor(0) ? 0 : std::arg(g) * 180 / M_PI; }

  Ladder ladder_;
  std::vector<LadderPart> parts_;
  double rho_;
  double emf_;
};

// The grid of a band: dense towards both edges, where the ripple's peaks
// crowd and the parts take most.
std::vector<double> Grid(const FrequencyBand& b, int points) {
  std::vector<double> f(std::max(points, 2));
  for (size_t k = 0; k < f.size(); ++k) {
    const double u = static_cast<double>(k) / static_cast<double>(f.size() - 1);
    f[k] = b.from + (b.to - b.from) * (1 - std::cos(M_PI * u)) / 2;
  }
  return f;
}

// The largest value of `value` between lo and hi, by golden sections.
double Refine(double lo, double hi, const std::function<double(double)>& value) {
  const double k = (std::sqrt(5.0) - 1) / 2;
  double x1 = hi - k * (hi - lo), x2 = lo + k * (hi - lo);
  double v1 = value(x1), v2 = value(x2);
  for (int step = 0; step < kRefineSteps; ++step) {
    if (v1 < v2) {
      lo = x1, x1 = x2, v1 = v2;
      x2 = lo + k * (hi - lo), v2 = value(x2);
    } else {
      hi = x2, x2 = x1, v2 = v1;
      x1 = hi - k * (hi - lo), v1 = value(x1);
    }
  }
  return v1 < v2 ? x2 : x1;
}

std::string Check(const DesignRecord& d, const StressRequest& r) {
  if (!(r.power > 0) || !std::isfinite(r.power))
    return "Cannot work out the part stress: the power must be above 0 W.";
  if (!(r.vswr >= 1) || !std::isfinite(r.vswr))
    return "Cannot work out the part stress: the VSWR must be 1 or more.";
  for (const FrequencyBand& b : r.bands)
    if (!(b.from > 0) || !(b.to > b.from) || !std::isfinite(b.to))
      return "Cannot work out the part stress: a band must run from above 0 Hz upwards.";
  const Ladder ladder = LadderOf(d);
  if (std::string why = LadderFault(ladder); !why.empty()) return why;
  for (int j = 1; j <= ladder.stages && j < static_cast<int>(ladder.L.size()); ++j)
    if (!std::isfinite(ladder.L[j]) || !std::isfinite(ladder.C[j]) || ladder.L[j] < 0 ||
        ladder.C[j] < 0)
      return "Cannot work out the part stress: a part value is negative or not a number at "
             "ladder position " +
             std::to_string(j) + ".";
  return {};
}

}  // namespace

CirclePeak PeakOnCircle(Phasor a, Phasor b, Phasor c, Phasor d, double rho) {
  if (rho == 0) return {std::abs(a / c), 0};
  // The circle |g| = rho maps onto the circle of this centre and radius.
  const double den = std::norm(c) - rho * rho * std::norm(d);
  const Phasor centre = (a * std::conj(c) - rho * rho * b * std::conj(d)) / den;
  const double radius = rho * std::abs(a * d - b * c) / std::fabs(den);
  const double size = std::abs(centre);
  const Phasor top = size > 0 ? centre * (1 + radius / size) : Phasor(radius);
  const Phasor turn = top * d - b;
  const Phasor at = turn == Phasor(0) ? Phasor(rho) : (a - c * top) / turn;
  return {size + radius, at};
}

double PartStress::VPeak() const {
  return std::sqrt(2.0) * v.value;
}

double StressTotals::LossDb() const {
  return 10 * std::log10(powerIn / powerOut);
}

std::vector<FrequencyBand> StressBands(const DesignRecord& d) {
  const DesignEdges e = EdgesOf(d);
  if (e.band && e.bandstop) return {{e.f1 * kBelow, e.f1}, {e.f2, e.f2 * kAbove}};
  if (e.band) return {{e.f1, e.f2}};
  if (e.highpass) return {{e.cutoff, e.cutoff * kAbove}};
  return {{e.cutoff * kBelow, e.cutoff}};
}

StressResult AnalyzeStress(const DesignRecord& d, const StressRequest& request) {
  StressResult result;
  result.bands = request.bands.empty() ? StressBands(d) : request.bands;
  StressRequest r = request;
  r.bands = result.bands;
  if (std::string why = Check(d, r); !why.empty()) {
    result.report = EngineReport::Fault(why);
    return result;
  }
  const Search search(d, r);
  result.emf = search.Emf();
  const std::vector<LadderPart>& parts = search.Parts();

  // Each quantity's best grid point, then the peak refined between its
  // neighbours.
  struct Best {
    StressPeak peak;
    double lo = 0, hi = 0;
  };
  std::vector<Best> best(parts.size() * 3);
  Best total;
  StressTotals worst;
  for (const FrequencyBand& band : result.bands) {
    const std::vector<double> grid = Grid(band, r.points);
    for (size_t k = 0; k < grid.size(); ++k) {
      const LadderResponse resp = search.Respond(grid[k]);
      const double lo = grid[k == 0 ? 0 : k - 1], hi = grid[std::min(k + 1, grid.size() - 1)];
      for (size_t q = 0; q < best.size(); ++q) {
        const StressPeak peak = search.At(resp, {static_cast<int>(q / 3), static_cast<int>(q % 3)});
        if (peak.value > best[q].peak.value || best[q].hi == 0) best[q] = {peak, lo, hi};
      }
      const StressTotals t = search.Totals(resp);
      if (t.dissipated > worst.dissipated || total.hi == 0) worst = t, total = {{}, lo, hi};
    }
  }
  for (size_t q = 0; q < best.size(); ++q) {
    const Quantity quantity{static_cast<int>(q / 3), static_cast<int>(q % 3)};
    const double f = Refine(best[q].lo, best[q].hi,
                            [&](double f) { return search.At(search.Respond(f), quantity).value; });
    const StressPeak refined = search.At(search.Respond(f), quantity);
    if (refined.value > best[q].peak.value) best[q].peak = refined;
  }
  {
    const double f = Refine(total.lo, total.hi,
                            [&](double f) { return search.Totals(search.Respond(f)).dissipated; });
    const StressTotals refined = search.Totals(search.Respond(f));
    if (refined.dissipated > worst.dissipated) worst = refined;
  }

  for (size_t n = 0; n < parts.size(); ++n) {
    PartStress s;
    s.part = parts[n];
    s.name = (parts[n].type == PartType::Inductor ? "L" : "C") + std::to_string(parts[n].position);
    s.v = best[3 * n].peak, s.i = best[3 * n + 1].peak, s.p = best[3 * n + 2].peak;
    result.parts.push_back(s);
  }
  result.worst = worst;
  return result;
}

}  // namespace drenik
