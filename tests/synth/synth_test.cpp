// The search against an exhaustive walk of the same space: every family,
// order, ripple, depth and topology centred, every candidate measured with
// all the trials, the simplest that meets the target picked.

#include <gtest/gtest.h>

#include <optional>

#include "synth/candidate_design.h"
#include "synth/centring.h"
#include "synth/ranking.h"
#include "synth/search_space.h"
#include "synth/synth.h"

namespace drenik {
namespace {

struct Found {
  SynthCandidate candidate;
  int passed = 0;
};

std::optional<Found> BruteForce(const SynthRequest& r) {
  std::optional<Found> best;
  for (const FamilyInfo* f : SearchFamilies(r.goal))
    for (int order = f->minOrder; order <= r.goal.maxOrder; ++order)
      for (double ripple : RippleChoices(r, *f))
        for (double depth : DepthChoices(r, *f)) {
          DesignChoice c{.family = f->code,
                         .order = order,
                         .ripple = ripple,
                         .depth = depth,
                         .topology = SearchTopologies(r).front(),
                         .rsource = r.rsource};
          const std::optional<Placement> place = CentreInMask(r, c);
          if (!place) continue;
          c.width = place->width, c.center = place->center;
          for (const std::string& t : SearchTopologies(r)) {
            c.topology = t;
            DesignRecord d;
            EXPECT_TRUE(SynthRecord(r, c, d).Ok()) << t << order;
            const ToleranceDesign td = ToleranceDesignOf(d);
            const Margins m = NominalMargins(td, r.mask);
            if (m.Worst() < 0) continue;
            ToleranceResult y;
            EXPECT_TRUE(RunTolerance(td, SynthSetup(r, r.goal.trials), y).Ok());
            Found found;
            found.candidate.choice = c;
            found.candidate.marginPassDb = m.pass, found.candidate.marginStopDb = m.stop;
            found.passed = y.passed;
            CountParts(d, found.candidate.inductors, found.candidate.capacitors);
            if (y.yield >= r.goal.yieldPercent / 100 &&
                (!best || Simpler(found.candidate, best->candidate, r.goal.prefer)))
              best = found;
          }
        }
  return best;
}

SynthRequest SmallRequest(SynthResponse response, double passEdge, double stop, double depth) {
  SynthRequest r;
  r.response = response;
  r.mask.passEdge = passEdge;
  r.mask.passRl = 14;
  r.mask.stops = {{.frequency = stop, .depth = depth}};
  r.goal.families = {kButterworth, kChebyshev};
  r.goal.maxOrder = 7;
  r.goal.trials = 1000;
  r.goal.yieldPercent = 90;
  return r;
}

TEST(Synth, ChoosesWhatAnExhaustiveSearchOfTheSameSpaceChooses) {
  SynthRequest lowpass = SmallRequest(SynthResponse::Lowpass, 1e6, 2.2e6, 35);
  SynthRequest highpass = SmallRequest(SynthResponse::Highpass, 3.5e6, 1.7e6, 30);
  highpass.goal.prefer = SynthPreference::Inductors;
  SynthRequest loss = SmallRequest(SynthResponse::Lowpass, 10e6, 25e6, 40);
  loss.mask.passRl.reset();
  loss.mask.passIl = 0.5;
  loss.build.qind = 150;
  for (const SynthRequest& r : {lowpass, highpass, loss}) {
    SynthResult result;
    ASSERT_TRUE(RunSynth(r, result).Ok());
    const std::optional<Found> best = BruteForce(r);
    ASSERT_EQ(result.chosen >= 0, best.has_value()) << result.failure;
    if (!best) continue;
    const SynthCandidate& c = result.candidates.at(result.chosen);
    EXPECT_EQ(c.choice.family, best->candidate.choice.family);
    EXPECT_EQ(c.choice.order, best->candidate.choice.order);
    EXPECT_EQ(c.choice.topology, best->candidate.choice.topology);
    EXPECT_EQ(c.choice.ripple, best->candidate.choice.ripple);
    EXPECT_EQ(c.choice.width, best->candidate.choice.width);
    EXPECT_EQ(c.passed, best->passed);
    EXPECT_EQ(c.trials, r.goal.trials);
    EXPECT_TRUE(c.meetsTarget);
    // Every simpler candidate listed falls short.
    for (const SynthCandidate& other : result.candidates) {
      if (Simpler(other, c, r.goal.prefer)) {
        EXPECT_FALSE(other.meetsTarget);
      }
    }
  }
}

}  // namespace
}  // namespace drenik
