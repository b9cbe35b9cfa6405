#include "synth/near_misses.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "synth/candidate_design.h"
#include "synth/centring.h"
#include "synth/search_space.h"
#include "synthesis/families.h"
#include "tolerance/tolerance.h"

namespace drenik {

namespace {

// Widths tried either way of the pass edges: steps of a quarter octave.
constexpr int kScanSteps = 8;
// Halvings of a quarter octave where the shortfalls cross: to a few parts
// in a million, about the six figures of the command line's words.
constexpr int kBisections = 16;

double Worst(const SynthCandidate& c) {
  return std::min(c.marginPassDb, c.marginStopDb);
}

// The design's passband edges on the mask's: a ripple or 3 dB edge at the
// pass edge, a band's about the geometric centre of its two edges.
void OnPassEdges(const Mask& m, DesignChoice& c) {
  const double low = m.passStart > 0 ? m.passStart : m.passEdge;
  const double high = m.passStart > 0 ? m.passEdge : m.passResume;
  if (high > 0) {
    c.center = std::sqrt(low * high);
    c.width = high - low;
  } else {
    c.width = m.passEdge;
  }
}

// A design that cannot meet both limits does best where its passband and
// stopband shortfalls are equal. The width (a cutoff or a band's width) is
// scanned over two octaves either way of the pass edges, and where the
// shortfalls cross between two steps (a steep elliptic skirt crosses
// within a fraction of a percent), bisected there. Nothing when no width
// gives a design.
std::optional<SynthCandidate> Nearest(const SynthRequest& exact, DesignChoice c) {
  OnPassEdges(exact.mask, c);
  const double edges = c.width;
  c.center = RoundedFrequency(c.center);
  std::optional<SynthCandidate> best;
  auto at = [&](double width) -> std::optional<Margins> {
    c.width = RoundedFrequency(width);
    DesignRecord d;
    if (!SynthRecord(exact, c, d).Ok()) return std::nullopt;
    const Margins m = NominalMargins(ToleranceDesignOf(d), exact.mask);
    if (!std::isfinite(m.Worst())) return std::nullopt;
    if (!best || m.Worst() > Worst(*best)) {
      best.emplace();
      best->choice = c;
      best->marginPassDb = m.pass, best->marginStopDb = m.stop;
      CountParts(d, best->inductors, best->capacitors);
    }
    return m;
  };
  double lastWidth = 0;
  std::optional<Margins> last;
  for (int k = -kScanSteps; k <= kScanSteps; ++k) {
    const double width = edges * std::pow(4.0, double(k) / kScanSteps);
    const std::optional<Margins> m = at(width);
    if (m && last && (m->pass > m->stop) != (last->pass > last->stop)) {
      double low = lastWidth, high = width;
      const bool passAboveLow = last->pass > last->stop;
      for (int i = 0; i < kBisections; ++i) {
        const double mid = std::sqrt(low * high);
        const std::optional<Margins> mm = at(mid);
        if (!mm) break;
        ((mm->pass > mm->stop) == passAboveLow ? low : high) = mid;
      }
    }
    if (m) last = m, lastWidth = width;
  }
  return best;
}

}  // namespace

std::vector<SynthCandidate> NearMisses(const SynthRequest& r, size_t count) {
  SynthRequest exact = r;
  exact.build.parts.reset();
  std::vector<SynthCandidate> misses;
  for (const FamilyInfo* f : SearchFamilies(r.goal)) {
    const int order = std::min<int>(r.goal.maxOrder, f->maxOrder);
    if (order < f->minOrder) continue;
    for (double ripple : RippleChoices(r, *f))
      for (double depth : DepthChoices(r, *f))
        for (const std::string& t : SearchTopologies(r)) {
          std::optional<SynthCandidate> c = Nearest(exact, {.family = f->code,
                                                            .order = order,
                                                            .ripple = ripple,
                                                            .depth = depth,
                                                            .topology = t,
                                                            .rsource = r.rsource});
          if (!c) continue;
          c->words = ChoiceWords(c->choice, r.build);
          misses.push_back(std::move(*c));
        }
  }
  std::stable_sort(misses.begin(), misses.end(),
                   [](const auto& a, const auto& b) { return Worst(a) > Worst(b); });
  if (misses.size() > count) misses.resize(count);
  return misses;
}

}  // namespace drenik
