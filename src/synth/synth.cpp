// The search: the order bound per family, centred candidates order by
// order, their yields measured level by level of simplicity, the chosen
// one the first that meets the target.

#include "synth/synth.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

#include "core/box_ranges.h"
#include "core/formatters.h"
#include "synth/candidate_design.h"
#include "synth/centring.h"
#include "synth/near_misses.h"
#include "synth/order_bounds.h"
#include "synth/ranking.h"
#include "synth/search_space.h"
#include "synth/yield_stages.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"
#include "tolerance/tolerance.h"

namespace drenik {
namespace {

std::string Hz(double f) {
  return TrimBlanks(FormatFrequency(f));
}

// The nearest designs listed when none meets the mask even nominally.
constexpr size_t kNearMisses = 3;

// A candidate waiting for its yield, with what measures it.
struct Pending {
  int id = 0;
  SynthCandidate candidate;
  ToleranceDesign design;
  bool stockPartsDue = false;  // the design holds the exact values yet
  YieldMeasure measure;
};

class Search {
 public:
  Search(const SynthRequest& r, SynthResult& result, const SynthProgress& progress)
      : r_(r), exact_(r), result_(result), progress_(progress), topologies_(SearchTopologies(r)) {
    exact_.build.parts.reset();
    const PrototypeMask pm = PrototypeMaskOf(r);
    for (const FamilyInfo* f : SearchFamilies(r.goal)) {
      const int last = std::min<int>({r.goal.maxOrder, f->maxOrder, kMaxOrder});
      families_.push_back({f, std::max<int>(LowestOrder(f->code, pm), f->minOrder), last, 0});
    }
  }

  EngineReport Run() {
    while (true) {
      if (EngineReport e = Generate(); !e.Ok() || result_.cancelled) return e;
      if (pool_.empty()) break;
      std::vector<Pending> level = NextLevel();
      if (EngineReport e = MeasureLevel(level); !e.Ok() || result_.cancelled) return e;
      for (Pending& p : level) done_.push_back(std::move(p));
      if (result_.chosen >= 0) break;
    }
    Finish();
    return {};
  }

 private:
  struct FamilyState {
    const FamilyInfo* family;
    int next, last;
    int feasibleOrders;  // orders that gave a nominal candidate so far
    int quota = 0;       // with margin preferred: the feasible orders wanted
  };

  // No family may hold back a candidate simpler than the pool's simplest:
  // a family's next order is made while its least possible count (parts,
  // or inductors) is no more than the pool's least. With margin preferred,
  // three more feasible orders of each family at each call.
  EngineReport Generate() {
    const bool margin = r_.goal.prefer == SynthPreference::Margin;
    for (FamilyState& s : families_) s.quota = s.feasibleOrders + 3;
    for (bool grown = true; grown;) {
      grown = false;
      int least = std::numeric_limits<int>::max();
      for (const Pending& p : pool_) least = std::min(least, Primary(p.candidate));
      for (FamilyState& s : families_) {
        const int bound = LeastCount(*s.family, s.next);
        if (s.next > s.last || (margin ? s.feasibleOrders >= s.quota : bound > least)) continue;
        const size_t before = pool_.size();
        if (EngineReport e = GenerateOrder(*s.family, s.next++); !e.Ok()) return e;
        if (pool_.size() > before) ++s.feasibleOrders;
        if (!Report()) return {};
        grown = true;
      }
    }
    return {};
  }

  // The fewest parts (or inductors) an order-n ladder of the family can
  // have: n elements, each resonant arm of an elliptic ladder a part more
  // ((n - 1) / 2 of them), a band's resonators two parts each; at least
  // every other element an inductor. A higher order never has fewer.
  int LeastCount(const FamilyInfo& f, int n) const {
    const int band = ResponseOf(r_.response).band ? 2 : 1;
    if (r_.goal.prefer == SynthPreference::Inductors) return band * (n / 2);
    return band * (n + (f.resonantArms ? (n - 1) / 2 : 0));
  }

  int Primary(const SynthCandidate& c) const {
    return r_.goal.prefer == SynthPreference::Inductors ? c.inductors : c.inductors + c.capacitors;
  }

  EngineReport GenerateOrder(const FamilyInfo& f, int order) {
    for (double ripple : RippleChoices(r_, f)) {
      for (double depth : DepthChoices(r_, f)) {
        DesignChoice c{.family = f.code,
                       .order = order,
                       .ripple = ripple,
                       .depth = depth,
                       .topology = topologies_.front(),
                       .rsource = r_.rsource};
        const std::optional<Placement> place = CentreInMask(r_, c);
        if (!place) continue;
        c.width = place->width, c.center = place->center;
        for (const std::string& t : topologies_) {
          c.topology = t;
          Pending p;
          p.id = nextId_++;
          p.candidate.choice = c;
          DesignRecord d;
          // The exact values first: stock parts are chosen only for the
          // candidates the search comes to measure.
          if (!SynthRecord(exact_, c, d).Ok()) continue;
          p.design = ToleranceDesignOf(d);
          const Margins m = NominalMargins(p.design, r_.mask);
          if (m.Worst() < 0) continue;  // lossy parts took it out of the mask
          p.candidate.marginPassDb = m.pass, p.candidate.marginStopDb = m.stop;
          p.stockPartsDue = r_.build.parts.has_value();
          CountParts(d, p.candidate.inductors, p.candidate.capacitors);
          p.candidate.words = ChoiceWords(c, r_.build);
          pool_.push_back(std::move(p));
        }
      }
    }
    return {};
  }

  // The pool's simplest candidates: those of the fewest parts and
  // inductors; with margin preferred, the whole pool.
  std::vector<Pending> NextLevel() {
    std::vector<Pending> level;
    if (r_.goal.prefer == SynthPreference::Margin) {
      level.swap(pool_);
      return level;
    }
    auto key = [&](const SynthCandidate& c) {
      const int parts = c.inductors + c.capacitors;
      return r_.goal.prefer == SynthPreference::Parts ? std::pair{parts, c.inductors}
                                                      : std::pair{c.inductors, parts};
    };
    auto least = std::min_element(pool_.begin(), pool_.end(), [&](const auto& a, const auto& b) {
      return key(a.candidate) < key(b.candidate);
    });
    const auto k = key(least->candidate);
    auto split = std::stable_partition(pool_.begin(), pool_.end(),
                                       [&](const Pending& p) { return key(p.candidate) != k; });
    level.assign(std::make_move_iterator(split), std::make_move_iterator(pool_.end()));
    pool_.erase(split, pool_.end());
    return level;
  }

  // A few hundred trials each; then, best margin first, the whole run for
  // those whose interval reaches the target, until one meets it.
  EngineReport MeasureLevel(std::vector<Pending>& level) {
    const double target = r_.goal.yieldPercent / 100;
    const int first = YieldStages(r_.goal.trials).front();
    const ToleranceSetup setup = SynthSetup(r_, r_.goal.trials);
    for (Pending& p : level) {
      if (EngineReport e = ChooseStockParts(p); !e.Ok()) return e;
      if (EngineReport e = MeasureYield(p.design, setup, first, target, false, p.measure, spent_);
          !e.Ok())
        return e;
      if (!Report()) return {};
    }
    std::vector<Pending*> order;
    for (Pending& p : level) order.push_back(&p);
    std::stable_sort(order.begin(), order.end(), [&](const Pending* a, const Pending* b) {
      return Simpler(a->candidate, b->candidate, r_.goal.prefer);
    });
    for (Pending* p : order) {
      if (p->measure.high < target) continue;
      if (EngineReport e =
              MeasureYield(p->design, setup, r_.goal.trials, target, true, p->measure, spent_);
          !e.Ok())
        return e;
      if (!Report()) return {};
      if (p->measure.yield >= target) {
        p->candidate.meetsTarget = true;
        chosenId_ = p->id;
        break;
      }
    }
    for (Pending& p : level) {
      SynthCandidate& c = p.candidate;
      c.trials = p.measure.trials, c.passed = p.measure.passed;
      c.yield = p.measure.yield, c.yieldLow = p.measure.low, c.yieldHigh = p.measure.high;
      c.meetsTarget = c.trials > 0 && c.yield >= target && c.trials == r_.goal.trials;
    }
    if (chosenId_ >= 0) result_.chosen = 0;  // placed by Finish
    return {};
  }

  // With stock parts: the candidate's design and nominal margins with the
  // parts the chooser picks for the mask.
  EngineReport ChooseStockParts(Pending& p) {
    if (!std::exchange(p.stockPartsDue, false)) return {};
    DesignRecord d;
    if (EngineReport e = SynthRecord(r_, p.candidate.choice, d); !e.Ok()) return e;
    p.design = ToleranceDesignOf(d);
    const Margins m = NominalMargins(p.design, r_.mask);
    p.candidate.marginPassDb = m.pass, p.candidate.marginStopDb = m.stop;
    return {};
  }

  // Progress: the trials run against about four full runs, which a search
  // rarely exceeds; false when the caller cancels.
  bool Report() {
    if (!progress_) return true;
    const double budget = 4.0 * r_.goal.trials;
    const double share = std::min(0.99, static_cast<double>(spent_) / (spent_ + budget));
    if (progress_(share)) return true;
    result_.cancelled = true;
    return false;
  }

  void Finish() {
    result_.candidates.clear();
    int chosen = -1;
    for (Pending& p : done_) {
      if (p.id == chosenId_) chosen = static_cast<int>(result_.candidates.size());
      result_.candidates.push_back(p.candidate);
    }
    RankCandidates(result_.candidates, r_.goal.prefer, chosen);
    result_.chosen = chosen;
    if (chosen < 0) result_.failure = FailureText();
    if (result_.candidates.empty()) result_.candidates = NearMisses(r_, kNearMisses);
    if (progress_) progress_(1);
  }

  std::string FailureText() const {
    char text[400];
    const int top = r_.goal.maxOrder;
    if (result_.candidates.empty()) {
      // Nothing meets the mask even nominally: name the stop check that
      // needs the highest order (by the elliptic degree equation, which no
      // family beats), beside the passband's edges.
      const PrototypeMask pm = PrototypeMaskOf(r_);
      size_t worst = 0;
      int worstOrder = 0;
      for (size_t i = 0; i < pm.stops.size(); ++i) {
        const int n = LowestOrder(kCauer, {.passLossDb = pm.passLossDb, .stops = {pm.stops[i]}});
        if (n > worstOrder) worst = i, worstOrder = n;
      }
      const StopCheck& s = r_.mask.stops.at(worst);
      std::string edge = "a pass edge at " + Hz(r_.mask.passEdge);
      if (r_.mask.passStart > 0)
        edge = "pass edges at " + Hz(r_.mask.passStart) + " and " + Hz(r_.mask.passEdge);
      if (r_.mask.passResume > 0)
        edge = "pass edges at " + Hz(r_.mask.passEdge) + " and " + Hz(r_.mask.passResume);
      // Where some searched family's ideal ladder meets the selectivity
      // within the orders allowed, the part models' losses and strays are
      // what took every design out of the mask.
      const SynthBuild& b = r_.build;
      const bool idealParts = b.qind >= kInfiniteQind && b.capacitorQ >= kInfiniteQcap &&
                              b.windingCapacitance == 0 && b.capacitorEsl == 0;
      int ideal = std::numeric_limits<int>::max();
      for (const FamilyState& f : families_)
        if (LowestOrderIsExact(f.family->code))
          ideal = std::min(ideal, LowestOrder(f.family->code, pm));
      if (!idealParts && ideal <= top) {
        std::snprintf(text, sizeof text,
                      "No %s design up to order %d meets the mask with %s and these part models "
                      "(with ideal parts, order %d would).",
                      ResponseOf(r_.response).word, top, edge.c_str(), ideal);
        return text;
      }
      std::snprintf(text, sizeof text, "No %s design up to order %d gives %g dB at %s with %s.",
                    ResponseOf(r_.response).word, top, s.depth, Hz(s.frequency).c_str(),
                    edge.c_str());
      return text;
    }
    const SynthCandidate& best = *std::max_element(
        result_.candidates.begin(), result_.candidates.end(),
        [](const SynthCandidate& a, const SynthCandidate& b) { return a.yield < b.yield; });
    std::snprintf(text, sizeof text,
                  "No design up to order %d yields %g%% with capacitors +-%g%% and inductors "
                  "+-%g%%; the best, %s order %d, yields %.1f%%.",
                  top, r_.goal.yieldPercent, r_.build.ctolPercent, r_.build.ltolPercent,
                  FamilyName(best.choice.family), best.choice.order, 100 * best.yield);
    return text;
  }

  const SynthRequest& r_;
  SynthRequest exact_;  // the request without stock parts
  SynthResult& result_;
  const SynthProgress& progress_;
  std::vector<std::string> topologies_;
  std::vector<FamilyState> families_;
  std::vector<Pending> pool_, done_;
  int nextId_ = 0, chosenId_ = -1;
  long spent_ = 0;
};

}  // namespace

std::string SynthRequestFault(const SynthRequest& r) {
  const Mask& m = r.mask;
  const ResponseInfo& response = ResponseOf(r.response);
  const bool band = response.band;
  if (!(m.passEdge > 0)) return "--pass-edge: the passband edge is missing.";
  if (band && !(m.passStart > 0) && !(m.passResume > 0))
    return std::string("--pass-edge: a ") + response.word +
           " needs two, its lower and its upper edge.";
  if (!band && (m.passStart > 0 || m.passResume > 0))
    return std::string("--pass-edge: a ") + response.word + " takes one.";
  if (!m.passRl && !m.passIl)
    return "--pass-rl or --pass-il: the passband needs a least return loss or a most loss.";
  if (m.stops.empty()) return "--stop: the mask needs a stopband to design for.";
  if (std::string fault = MaskFault(m, response.highpass); !fault.empty()) return fault;
  // A candidate's cutoff, centre and width lie between the mask's
  // frequencies (a band's width at least its passband's, or its notch's),
  // so a mask within the design page's range gives words every other
  // command takes as they are, never clamped.
  auto beyond = [](double f) { return f < kBandwidthRange.low || f > kBandwidthRange.high; };
  const std::string range = " the program designs from " + Hz(kBandwidthRange.low) + " to " +
                            Hz(kBandwidthRange.high) + ".";
  for (double edge : {m.passStart, m.passEdge, m.passResume})
    if (edge > 0 && beyond(edge)) return "--pass-edge: " + Hz(edge) + " is beyond what" + range;
  for (const StopCheck& s : m.stops) {
    if (beyond(s.frequency) || (s.to > 0 && beyond(s.to)))
      return "--stop: " + Hz(s.frequency) + " is beyond what" + range;
    if (s.to > 0 && s.to - s.frequency < kBandwidthRange.low)
      return "--stop: a notch narrower than " + Hz(kBandwidthRange.low) + ".";
  }
  if (band && m.passStart > 0 && m.passEdge - m.passStart < kBandwidthRange.low)
    return "--pass-edge: a passband narrower than " + Hz(kBandwidthRange.low) + ".";
  if (!(r.rsource >= kImpedanceRange.low && r.rsource <= kImpedanceRange.high))
    return "--impedance: from 0.1 to 1M ohms.";
  for (const PrototypeStop& s : PrototypeMaskOf(r).stops)
    if (!(s.omega > 1)) return "--stop: a stopband check lies inside the passband the edges give.";
  const SynthBuild& b = r.build;
  if (!(b.ctolPercent >= 0 && b.ctolPercent <= kMaxTolerancePercent))
    return "--ctol: a tolerance of 0 to 50 %.";
  if (!(b.ltolPercent >= 0 && b.ltolPercent <= kMaxTolerancePercent))
    return "--ltol: a tolerance of 0 to 50 %.";
  const SynthGoal& g = r.goal;
  if (!(g.yieldPercent > 0 && g.yieldPercent <= 100))
    return "--yield: a share above 0 and at most 100 %.";
  if (g.trials < 1 || g.trials > kMaxTrials) return "--trials: 1 to 1,000,000.";
  if (g.maxOrder < 2 || g.maxOrder > kMaxOrder)
    return "--max-order: 2 to " + std::to_string(kMaxOrder) + ".";
  for (int16_t code : g.families)
    if (!FindFamily(code))
      return "--families: no family has the code " + std::to_string(code) + ".";
  for (const std::string& t : g.topologies) {
    const TopologyInfo* info = FindTopology(t);
    if (!info) return "--topologies: no topology is called '" + t + "'.";
    if (!TopologyOf(*info, r.response))
      return "--topologies: " + t + " is not a " + response.word + " topology.";
  }
  if (SearchTopologies(r).empty())
    return "--topologies: none for a " + std::string(response.word) + ".";
  if (SearchFamilies(g).empty()) return "--families: none to search.";
  return {};
}

EngineReport RunSynth(const SynthRequest& request, SynthResult& result,
                      const SynthProgress& progress) {
  result = SynthResult{};
  if (std::string fault = SynthRequestFault(request); !fault.empty())
    return EngineReport::Fault(fault);
  Search search(request, result, progress);
  return search.Run();
}

}  // namespace drenik
