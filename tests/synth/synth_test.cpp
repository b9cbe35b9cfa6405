// The search against an exhaustive walk of the same space: every family,
// order, ripple, depth and topology centred, every candidate measured with
// all the trials, the simplest that meets the target picked.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "synth/candidate_design.h"
#include "synth/centring.h"
#include "synth/mask_bands.h"
#include "synth/order_bounds.h"
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
  r.goal.maxOrder = 6;
  r.goal.trials = 300;
  r.goal.yieldPercent = 90;
  return r;
}

TEST(Synth, ChoosesWhatAnExhaustiveSearchOfTheSameSpaceChooses) {
  // At 99% the lowest order falls short and the next one is chosen.
  SynthRequest lowpass = SmallRequest(SynthResponse::Lowpass, 1e6, 2.2e6, 35);
  lowpass.goal.yieldPercent = 99;
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
    ASSERT_TRUE(best.has_value());
    ASSERT_GE(result.chosen, 0) << result.failure;
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
    // The same request and seed give the same answer.
    SynthResult again;
    ASSERT_TRUE(RunSynth(r, again).Ok());
    ASSERT_EQ(again.candidates.size(), result.candidates.size());
    EXPECT_EQ(again.candidates.at(again.chosen).words, c.words);
    EXPECT_EQ(again.candidates.at(again.chosen).passed, c.passed);
    for (const SynthCandidate& other : result.candidates) {
      if (Simpler(other, c, r.goal.prefer)) {
        EXPECT_FALSE(other.meetsTarget);
      }
    }
  }
}

// The order formulas on the 20 m harmonic lowpass (18 dB return loss to
// 14.35 MHz, 50 dB from 28.7 MHz): the textbook orders, and one order
// below each no ripple or depth the search tries meets the mask nominally.
TEST(Synth, OrderBoundsAreTheLowestNominalOrders) {
  SynthRequest r = SmallRequest(SynthResponse::Lowpass, 14.35e6, 28.7e6, 50);
  r.mask.passRl = 18;
  const PrototypeMask pm = PrototypeMaskOf(r);
  EXPECT_NEAR(pm.passLossDb, 0.0694, 1e-4);  // 1 - |S11|^2 at 18 dB
  const std::pair<int16_t, int> expected[] = {{kCauer, 5}, {kChebyshev, 7}, {kButterworth, 12}};
  for (const auto& [family, order] : expected) {
    EXPECT_EQ(LowestOrder(family, pm), order) << FamilyName(family);
    const FamilyInfo& f = *FindFamily(family);
    for (double ripple : RippleChoices(r, f))
      for (double depth : DepthChoices(r, f)) {
        const DesignChoice c{
            .family = family, .order = order - 1, .ripple = ripple, .depth = depth};
        EXPECT_FALSE(CentreInMask(r, c)) << FamilyName(family) << " " << ripple << " " << depth;
      }
  }
}

// The centred cutoff leaves the response room to slide by its slide factor
// either way and still meet the mask nominally, and no more: a little past
// it one side breaks. Each side of a bandpass's skirts and a bandstop's
// notch becomes the chooser's stopband, the passband lies between (or
// outside) the pass edges.
TEST(Synth, CentringLeavesEqualRoomAndMaskBandsFollowTheMask) {
  const SynthRequest r = SmallRequest(SynthResponse::Lowpass, 1e6, 2.2e6, 35);
  DesignChoice c{.family = kChebyshev, .order = 5, .ripple = 0.0875};
  const std::optional<Placement> place = CentreInMask(r, c);
  ASSERT_TRUE(place);
  ASSERT_GT(place->slide, 1.01);
  auto worstAt = [&](double width) {
    c.width = width;
    DesignRecord d;
    EXPECT_TRUE(SynthRecord(r, c, d).Ok());
    return NominalMargins(ToleranceDesignOf(d), r.mask);
  };
  const double inside = std::pow(place->slide, 0.98), beyond = std::pow(place->slide, 1.05);
  EXPECT_GE(worstAt(place->width * inside).Worst(), 0);
  EXPECT_GE(worstAt(place->width / inside).Worst(), 0);
  EXPECT_LT(worstAt(place->width * beyond).stop, 0);
  EXPECT_LT(worstAt(place->width / beyond).pass, 0);

  Mask bandpass{.passEdge = 7.3e6, .passStart = 7e6, .stops = {{5.5e6, 30, true}, {9.5e6, 30}}};
  Bands b = BandsOfMask(bandpass, false);
  EXPECT_TRUE(b.band && !b.bandstop);
  EXPECT_EQ(b.f1, 7e6);
  EXPECT_EQ(b.f2, 7.3e6);
  EXPECT_EQ(b.stopLow, 5.5e6);
  EXPECT_EQ(b.stopHigh, 9.5e6);
  Mask notch{.passEdge = 70e6, .passResume = 130e6, .stops = {{88e6, 30, false, 108e6}}};
  b = BandsOfMask(notch, false);
  EXPECT_TRUE(b.band && b.bandstop);
  EXPECT_EQ(b.stopLow, 88e6);
  EXPECT_EQ(b.stopHigh, 108e6);
  b = BandsOfMask({.passEdge = 3.5e6, .stops = {{1.7e6, 40}}}, true);
  EXPECT_EQ(b.cutoff, 3.5e6);
  EXPECT_EQ(b.stopEdge, 1.7e6);
}

// Cancelling stops the search at once with nothing chosen.
TEST(Synth, CancelStopsTheSearch) {
  SynthResult result;
  int calls = 0;
  ASSERT_TRUE(RunSynth(SmallRequest(SynthResponse::Lowpass, 1e6, 2.2e6, 35), result, [&](double) {
                return ++calls < 3;
              }).Ok());
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.chosen, -1);
  EXPECT_EQ(calls, 3);
}

}  // namespace
}  // namespace drenik
