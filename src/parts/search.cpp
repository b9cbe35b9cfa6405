#include "parts/search.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "parts/linear_model.h"
#include "parts/series_values.h"
#include "parts/simplex.h"

namespace drenik {
namespace {

// Capacitor combinations that the true analysis polishes, best predicted first.
constexpr size_t kShortlist = 6;
// The inductor polish moves ln L by up to 1% at first, at most 4%, and
// stops once its moves are below 0.01%, well inside any part's tolerance.
constexpr double kFirstStep = 0.01;
constexpr double kLargestStep = 0.04;
constexpr double kLastStep = 1e-4;
// How near the exact design's return loss counts as reaching it, dB.
constexpr double kCeilingTolerance = 0.01;
// Every start is polished down to moves of 0.1%, the best one further.
constexpr double kCoarseStep = 1e-3;
// A polish gives up after this many steps (it rarely needs a dozen).
constexpr int kMaxSteps = 40;
// A refit after one capacitor changed starts from small moves.
constexpr double kRefitStep = 0.002;
// The step of the finite differences, in ln L.
constexpr double kNudge = 1e-3;
// In the linearised step, a stopband transmission 0.1% (0.01 dB) above its
// floor weighs as much as a passband reflection coefficient of 1: the floor
// comes first.
constexpr double kStopbandWeight = 1000;
// The linearised step aims this far above the stopband floor, dB, so that
// the curvature it leaves out does not carry the true step below the floor.
constexpr double kFloorMargin = 0.02;
// The first-order ranking lets the stopband fall this much further, dB: its
// inductor correction is a compromise that the polish improves on.
constexpr double kRankingSlack = 1.0;
// A second capacitor at a position must gain this much return loss, dB.
constexpr double kPairGain = 0.05;
// Up to this many inductors every rounding up or down is tried.
constexpr size_t kMaxRoundedInductors = 5;
// A neighbouring allowed value lies beyond this ratio of the present one
// (a stored float sits within a part in ten million of its value).
constexpr double kNextValue = 1e-5;
// The one-part-at-a-time descent stops after this many moves.
constexpr int kMaxMoves = 60;

struct State {
  std::vector<int> cap;
  std::vector<double> L;
  Merit merit;
};

class Searcher {
 public:
  explicit Searcher(const SearchInput& in) : in_(in) {}

  // Sets the merit of every state, measured in one batch; their responses
  // at the probe's points go to `responses` when asked for.
  void Measure(std::vector<State>& states, std::vector<ProbeResponse>* responses = nullptr) const {
    std::vector<Ladder> ladders;
    ladders.reserve(states.size());
    for (const State& s : states) ladders.push_back(LadderFor(s));
    std::vector<ProbeResponse> measured(states.size());
    MeasureLadders(ladders, in_.probe, measured);
    for (size_t i = 0; i < states.size(); ++i)
      states[i].merit = in_.judge.Of(measured[i].Worst(), Distance(states[i]));
    if (responses) *responses = std::move(measured);
  }

  void Measure(State& s) const {
    std::vector<State> one{s};
    Measure(one);
    s.merit = one[0].merit;
  }

  // The inductors for the state's capacitors: polished as continuous values,
  // then rounded to the series when they come from one.
  // False where the inductors cannot be rounded (Round).
  bool Fit(State& s, double firstStep, double lastStep) const {
    Polish(s, firstStep, lastStep);
    return !in_.inductorValues.Restricted() || Round(s, in_.inductorValues);
  }

  // Within a hundredth of a dB of the exact design's return loss, which
  // the polish only ever approaches.
  bool AtCeiling(const State& s) const {
    return s.merit.primary >= in_.judge.ceiling - kCeilingTolerance;
  }

  Ladder LadderFor(const State& s) const {
    Ladder ladder = in_.exact;
    for (size_t k = 0; k < in_.caps.size(); ++k)
      ladder.C[static_cast<size_t>(in_.caps[k].position)] =
          in_.caps[k].options[static_cast<size_t>(s.cap[k])].value;
    for (size_t i = 0; i < in_.inductors.size(); ++i)
      ladder.L[static_cast<size_t>(in_.inductors[i].position)] = s.L[i];
    return ladder;
  }

  double Distance(const State& s) const {
    double d = 0;
    for (size_t k = 0; k < in_.caps.size(); ++k) {
      const double r =
          std::log(in_.caps[k].options[static_cast<size_t>(s.cap[k])].value / in_.caps[k].exact);
      d += r * r;
    }
    for (size_t i = 0; i < in_.inductors.size(); ++i) {
      const double r = std::log(s.L[i] / in_.inductors[i].exact);
      d += r * r;
    }
    return d;
  }

  // Sequential linear programming on ln L within a trust region: the
  // return loss at every passband point and the attenuation at every
  // stopband point, linearised from finite differences, give the step that
  // raises the worst return loss most while the stopband stays above its
  // floor. The worst return loss is a maximum over frequencies, with corners
  // where gradients fail; the linear programme walks along them. A step that
  // does not help the true analysis shrinks the region.
  void Polish(State& s, double radius, double lastRadius) const {
    const size_t n = s.L.size();
    for (int k = 0; k < kMaxSteps && n > 0 && radius >= lastRadius; ++k) {
      if (AtCeiling(s)) return;  // as good as the exact design
      std::vector<State> nudged(n + 1, s);
      std::vector<double> h(n);
      for (size_t i = 0; i < n; ++i) {
        nudged[i + 1].L[i] = Stored(s.L[i] * std::exp(kNudge));
        h[i] = std::log(nudged[i + 1].L[i] / s.L[i]);
      }
      std::vector<ProbeResponse> r;
      Measure(nudged, &r);
      const std::vector<double> step = LinearStep(r, h, radius);
      State trial = s;
      for (size_t i = 0; i < n; ++i) trial.L[i] = Stored(s.L[i] * std::exp(step[i]));
      if (Buildable(trial)) Measure(trial);
      if (Buildable(trial) && trial.merit.Beats(s.merit)) {
        s = trial;
        radius = std::min(2 * radius, kLargestStep);
      } else {
        radius /= 4;
      }
    }
  }

  // The linearised step, on magnitudes rather than dB (a reflection or
  // transmission zero has a bounded slope in magnitude but not in dB): with
  // rho the passband reflection and tau the stopband transmission, maximise
  // t over the moves d (|d_i| <= radius) with t <= -(rho_p + drho_p.d) at
  // every passband point, t <= -rho at the ceiling, and
  // t <= -rho_ceiling - W ((tau_q + dtau_q.d) / tau_floor - 1) at every
  // stopband point. The programme is shifted so that its corner at
  // d = -radius is feasible.
  std::vector<double> LinearStep(const std::vector<ProbeResponse>& r, const std::vector<double>& h,
                                 double radius) const {
    const size_t n = h.size();
    auto magnitude = [](double db) { return std::pow(10.0, -db / 20); };
    const double rhoCeiling = magnitude(in_.judge.ceiling);
    std::vector<std::vector<double>> rows;  // gradients a of t - a.d <= b
    std::vector<double> rhs;
    auto row = [&](const std::vector<double> ProbeResponse::*values, size_t p, double scale,
                   double offset) {
      const double base = magnitude((r[0].*values)[p]);
      std::vector<double> a(n);
      for (size_t i = 0; i < n; ++i)
        a[i] = -scale * (magnitude((r[i + 1].*values)[p]) - base) / h[i];
      rows.push_back(std::move(a));
      rhs.push_back(offset - scale * base);
    };
    for (size_t p = 0; p < r[0].returnLoss.size(); ++p) row(&ProbeResponse::returnLoss, p, 1, 0);
    if (!std::isnan(in_.judge.floor)) {
      const double scale = kStopbandWeight / magnitude(in_.judge.floor + kFloorMargin);
      for (size_t q = 0; q < r[0].attenuation.size(); ++q)
        row(&ProbeResponse::attenuation, q, scale, kStopbandWeight - rhoCeiling);
    }
    rows.push_back(std::vector<double>(n));
    rhs.push_back(-rhoCeiling);

    // Unknowns y = d + radius (0..2 radius) and t' = t - tmin.
    double tmin = 1e300;
    for (size_t k = 0; k < rows.size(); ++k) {
      double sum = 0;
      for (double a : rows[k]) sum += a;
      rhs[k] -= radius * sum;
      tmin = std::min(tmin, rhs[k]);
    }
    std::vector<std::vector<double>> lp;
    std::vector<double> b;
    for (size_t k = 0; k < rows.size(); ++k) {
      std::vector<double> a(n + 1, 1.0);
      for (size_t i = 0; i < n; ++i) a[i] = -rows[k][i];
      lp.push_back(std::move(a));
      b.push_back(rhs[k] - tmin);
    }
    for (size_t i = 0; i < n; ++i) {
      std::vector<double> a(n + 1, 0.0);
      a[i] = 1;
      lp.push_back(std::move(a));
      b.push_back(2 * radius);
    }
    std::vector<double> c(n + 1, 0.0), x;
    c[n] = 1;
    MaximizeLinear(lp, b, c, x);
    std::vector<double> step(n);
    for (size_t i = 0; i < n; ++i) step[i] = x[i] - radius;
    return step;
  }

  // Moves one part at a time to a neighbouring value, the move that helps
  // most first, while any helps: a capacitor to another of its options, an
  // inductor one allowed value up or down. The polish rounds its
  // continuous inductors once, to their two neighbours; where the allowed
  // values are coarse (a few whole turns, an E12 series) a better set may
  // lie a step further, or with another capacitor.
  void Descend(State& s, const InductorValues& values) const {
    for (int move = 0; move < kMaxMoves; ++move) {
      std::vector<State> moves;
      for (size_t k = 0; k < s.cap.size(); ++k)
        for (size_t o = 0; o < in_.caps[k].options.size(); ++o)
          if (static_cast<int>(o) != s.cap[k]) {
            moves.push_back(s);
            moves.back().cap[k] = static_cast<int>(o);
          }
      for (size_t i = 0; i < s.L.size(); ++i)
        for (const bool up : {false, true}) {
          const std::optional<Bracket> b =
              InductorBracket(values, s.L[i] * (up ? 1 + kNextValue : 1 - kNextValue));
          if (!b) continue;
          const double next = up ? b->upper : b->lower;
          if (Stored(next) == s.L[i]) continue;
          moves.push_back(s);
          moves.back().L[i] = Stored(next);
          // A resonator's inductor and capacitor together: alone, either
          // detunes it.
          for (size_t k = 0; k < s.cap.size(); ++k) {
            if (in_.caps[k].position != in_.inductors[i].position) continue;
            for (size_t o = 0; o < in_.caps[k].options.size(); ++o)
              if (static_cast<int>(o) != s.cap[k]) {
                moves.push_back(s);
                moves.back().L[i] = Stored(next);
                moves.back().cap[k] = static_cast<int>(o);
              }
          }
        }
      if (moves.empty()) return;
      Measure(moves);
      const State& best =
          *std::max_element(moves.begin(), moves.end(),
                            [](const State& a, const State& b) { return b.merit.Beats(a.merit); });
      if (!best.merit.Beats(s.merit)) return;
      s = best;
    }
  }

  // Each inductor to its lower or upper series neighbour: every combination
  // when there are few, otherwise one inductor at a time from the nearest.
  // False, leaving the state as it was, where an inductor has no neighbours
  // (a value no part can have).
  bool Round(State& s, const InductorValues& values) const {
    const size_t n = s.L.size();
    std::vector<Bracket> brackets;
    for (double l : s.L) {
      const std::optional<Bracket> b = InductorBracket(values, l);
      if (!b) return false;
      brackets.push_back(*b);
    }
    auto pick = [&](State& t, size_t i, bool up) {
      t.L[i] = Stored(up ? brackets[i].upper : brackets[i].lower);
    };
    std::vector<State> trials;
    if (n <= kMaxRoundedInductors) {
      for (size_t mask = 0; mask < (size_t{1} << n); ++mask) {
        State t = s;
        for (size_t i = 0; i < n; ++i) pick(t, i, (mask >> i) & 1);
        trials.push_back(std::move(t));
      }
      Measure(trials);
    } else {
      State t = s;
      for (size_t i = 0; i < n; ++i) t.L[i] = Stored(*NearestInductor(values, s.L[i]));
      Measure(t);
      for (bool moved = true; moved;) {
        moved = false;
        for (size_t i = 0; i < n; ++i) {
          State u = t;
          pick(u, i, u.L[i] != Stored(brackets[i].upper));
          Measure(u);
          if (u.merit.Beats(t.merit)) t = u, moved = true;
        }
      }
      trials.push_back(t);
    }
    s = *std::max_element(trials.begin(), trials.end(),
                          [](const State& a, const State& b) { return b.merit.Beats(a.merit); });
    return true;
  }

  // Whether every inductor is a value a part can have, as the record keeps
  // it: the first-order model's corrections can overflow.
  static bool Buildable(const State& s) {
    for (double l : s.L)
      if (!(l >= std::numeric_limits<float>::min() && l <= std::numeric_limits<float>::max()))
        return false;
    return true;
  }

 private:
  const SearchInput& in_;
};

// ln(option / exact value) of every capacitor's options.
std::vector<std::vector<double>> CapShifts(const SearchInput& in) {
  std::vector<std::vector<double>> shifts;
  for (const CapSlot& slot : in.caps) {
    std::vector<double> s;
    for (const CapOption& o : slot.options) s.push_back(std::log(o.value / slot.exact));
    shifts.push_back(std::move(s));
  }
  return shifts;
}

// The nearest option of every capacitor, and each inductor retuned so that
// its position keeps its L C product (as the 5% C stage does).
State NearestStart(const SearchInput& in) {
  State s;
  s.cap.assign(in.caps.size(), 0);
  for (const InductorSlot& ind : in.inductors) {
    double l = ind.exact;
    for (const CapSlot& slot : in.caps)
      if (slot.position == ind.position) l = l * slot.exact / slot.options[0].value;
    s.L.push_back(Stored(l));
  }
  return s;
}

// Replaces a pair by a single part where the single one, with its inductors
// refitted, loses no more than kPairGain of return loss.
void PreferSingleParts(const SearchInput& in, const Searcher& searcher, State& best) {
  for (size_t k = 0; k < in.caps.size(); ++k) {
    const auto& options = in.caps[k].options;
    if (options[static_cast<size_t>(best.cap[k])].parts.size() < 2) continue;
    State single;
    for (size_t o = 0; o < options.size(); ++o) {
      if (options[o].parts.size() != 1) continue;
      State t = best;
      t.cap[k] = static_cast<int>(o);
      searcher.Measure(t);
      if (!searcher.Fit(t, kRefitStep, kLastStep)) continue;
      if (single.cap.empty() || t.merit.Beats(single.merit)) single = t;
    }
    if (!single.cap.empty() && single.merit.primary >= best.merit.primary - kPairGain)
      best = single;
  }
}

// Why no start gave a set of parts: the first inductor of the nearest
// start that has no value to round to.
std::string UnbuildableFault(const SearchInput& in, const State& nearest) {
  for (size_t i = 0; i < nearest.L.size(); ++i) {
    if (InductorBracket(in.inductorValues, nearest.L[i])) continue;
    char value[32];
    std::snprintf(value, sizeof value, "%g", nearest.L[i]);
    return "Cannot choose parts: L" + std::to_string(in.inductors[i].position) + " would need " +
           value + " H, which no inductor can be.";
  }
  return "Cannot choose parts: no set of the chosen values keeps the response.";
}

}  // namespace

SearchResult SearchParts(const SearchInput& in) {
  Searcher searcher(in);
  std::vector<int> capPositions, inductorPositions;
  for (const CapSlot& slot : in.caps) capPositions.push_back(slot.position);
  for (const InductorSlot& ind : in.inductors) inductorPositions.push_back(ind.position);
  const LinearModel model(in.exact, capPositions, inductorPositions, in.probe.passband,
                          in.stopPeaks);

  Judge ranking = in.judge;
  ranking.floor -= kRankingSlack;
  std::vector<State> starts{NearestStart(in)};
  for (const CapCombo& combo : model.Rank(CapShifts(in), kShortlist, ranking)) {
    State s{combo.option, {}, {}};
    for (size_t i = 0; i < in.inductors.size(); ++i)
      s.L.push_back(Stored(in.inductors[i].exact * std::exp(combo.inductorShift[i])));
    if (Searcher::Buildable(s)) starts.push_back(std::move(s));
  }
  // Plain rounding, measured as it stands before it is polished: the
  // search never ends below it.
  State best, rounded;
  if (in.HeldToRounding()) {
    rounded.cap.assign(in.caps.size(), 0);
    rounded.L = in.roundedInductors;
    searcher.Measure(rounded);
    starts.push_back(best = rounded);
  }
  searcher.Measure(starts);

  // Polish the starts in turn, and stop once one is as good as the exact
  // design: the others could only come out the same or further from it.
  // Rounding to a series only loses, so a start whose continuous inductors
  // do no better than the best rounded set is not rounded.
  // The polishing of the starts is nearly all of the search's work.
  const double share = 1.0 / static_cast<double>(starts.size() + 1);
  for (size_t k = 0; k < starts.size(); ++k) {
    if (in.progress) in.progress(share * static_cast<double>(k));
    State& s = starts[k];
    searcher.Polish(s, kFirstStep, kCoarseStep);
    if (!Searcher::Buildable(s)) continue;
    if (!best.cap.empty() && !s.merit.Beats(best.merit)) continue;
    if (in.inductorValues.Restricted() && !searcher.Round(s, in.inductorValues)) continue;
    if (best.cap.empty() || s.merit.Beats(best.merit)) best = s;
    if (searcher.AtCeiling(best)) break;
  }
  if (in.progress) in.progress(1 - share);
  if (best.cap.empty()) return {{}, {}, {}, UnbuildableFault(in, starts.front())};
  if (!in.inductorValues.Restricted()) searcher.Fit(best, kCoarseStep, kLastStep);
  if (in.inductorValues.Restricted() && in.HeldToRounding()) {
    // From the best set and from plain rounding, which may lie in another
    // valley of the response.
    searcher.Descend(best, in.inductorValues);
    searcher.Descend(rounded, in.inductorValues);
    if (rounded.merit.Beats(best.merit)) best = rounded;
  }
  PreferSingleParts(in, searcher, best);
  return {best.cap, best.L, best.merit};
}

SearchResult RefineParts(const SearchInput& in, const SearchResult& from) {
  Searcher searcher(in);
  State s{from.capOption, from.inductors, {}};
  searcher.Measure(s);
  const State kept = s;
  if (!searcher.Fit(s, kRefitStep, kLastStep)) s = kept;
  if (in.inductorValues.Restricted() && in.HeldToRounding()) searcher.Descend(s, in.inductorValues);
  return {s.cap, s.L, s.merit};
}

}  // namespace drenik
