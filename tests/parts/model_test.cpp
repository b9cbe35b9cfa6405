// The chooser's tools: the bands it judges, the linear programme of its
// polish, and the first-order model that ranks capacitor combinations.
#include <gtest/gtest.h>

#include <cmath>

#include "analysis/sweep.h"
#include "core/last_session.h"
#include "parts/figures.h"
#include "parts/linear_model.h"
#include "parts/simplex.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"

namespace drenik::testing {
namespace {

TEST(Bands, PassbandToTheCutoffStopbandFromTheCauerEdgeOrAnOctave) {
  DesignRecord d;
  d.Width = 1e6f;
  d.Family = kCauer;
  d.FstopNormalized = 1.5f;
  d.Topology = "Cinlowpass";
  Bands b = BandsOf(d);
  EXPECT_TRUE(InPassband(b, 1e6f) && !InPassband(b, 1.01e6) && InStopband(b, 1.5e6f));
  EXPECT_FALSE(InStopband(b, 1.49e6));
  d.Topology = "Linhighpass";
  b = BandsOf(d);
  EXPECT_TRUE(InPassband(b, 1e6f) && !InPassband(b, 0.99e6) && InStopband(b, 1e6 / 1.5));
  // A Chebyshev keeps the FstopNormalized of an earlier Cauer design: an octave.
  d.Family = kChebyshev;
  EXPECT_FLOAT_EQ(BandsOf(d).stopEdge, 5e5f);
}

TEST(LinearProgramme, FindsTheCornerAndReportsAnUnboundedOne) {
  // max 3x + 2y with x + y <= 4, x + 3y <= 6, x <= 3: the corner (3, 1).
  std::vector<double> x;
  ASSERT_TRUE(MaximizeLinear({{1, 1}, {1, 3}, {1, 0}}, {4, 6, 3}, {3, 2}, x));
  EXPECT_NEAR(x[0], 3, 1e-12);
  EXPECT_NEAR(x[1], 1, 1e-12);
  // A degenerate corner at the origin, then on to (0, 2).
  ASSERT_TRUE(MaximizeLinear({{1, -1}, {0, 1}}, {0, 2}, {1, 1}, x));
  EXPECT_NEAR(x[0] + x[1], 4, 1e-12);
  EXPECT_FALSE(MaximizeLinear({{1, -1}}, {1}, {1, 1}, x));
}

// Cauer 5, C-input lowpass: two parallel-resonant series arms among three
// shunt capacitors. Moving an arm's capacitor, the model moves that arm's
// inductor the other way (towards keeping the notch) more than the other
// arm's, and predicts the return loss the analysis then finds.
TEST(LinearModel, CorrectsTheInductorsAndPredictsTheAnalysis) {
  DesignRecord d;
  SetLastSessionDefaults(d);
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = kCauer;
  d.CauerFlag = 1;
  d.CauerType = "C";
  d.Rload = d.Rstandard = 50;
  d.Fstart = d.Width / 5;
  d.Fstop = d.Width * 5;
  d.NrIntervals = 1000;
  ASSERT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok() && AnalyzeSweep(d).Ok());
  const Ladder exact = LadderOf(d);
  std::vector<float> pass, stop;
  for (int i = 0; i <= 1000; i += 10) (d.Freq[i] <= d.Width ? pass : stop).push_back(d.Freq[i]);
  const LinearModel model(exact, {1, 2, 3, 4, 5}, {2, 4}, pass, stop);
  const Judge judge{100, std::nan("")};
  // Option 1 moves the arm capacitor at position 2 up by 2%.
  const std::vector<std::vector<double>> shifts = {{0}, {0, 0.02}, {0}, {0}, {0}};
  const std::vector<CapCombo> ranked = model.Rank(shifts, 2, judge);
  ASSERT_EQ(ranked.size(), 2u);
  EXPECT_EQ(ranked[0].option[1], 0);  // unmoved is best
  const CapCombo& moved = ranked[1];
  EXPECT_TRUE(moved.inductorShift[0] < -0.005 && moved.inductorShift[0] > -0.03);
  EXPECT_LT(std::fabs(moved.inductorShift[1]), std::fabs(moved.inductorShift[0]));

  Ladder l = exact;
  l.C[2] *= std::exp(0.02);
  l.L[2] *= std::exp(moved.inductorShift[0]);
  l.L[4] *= std::exp(moved.inductorShift[1]);
  Probe probe{pass, {}};
  ProbeResponse r;
  MeasureLadders({&l, 1}, probe, {&r, 1});
  EXPECT_NEAR(moved.merit.primary, r.Worst().returnLoss, 0.3);
}

}  // namespace
}  // namespace drenik::testing
