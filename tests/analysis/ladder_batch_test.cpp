// The batch kernel: every vector unit gives the bits of the plain double
// path, and the figures of the one-point kernel the sweep uses.

#include "analysis/ladder_batch.h"

#include "analysis/element_models.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace drenik {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Every kind of position, lossy parts, unequal terminations; a missing
// series capacitor among them, and the series L-C branch and the tank of a
// band design, which have no model in any other ladder.
Ladder EveryKind(bool band) {
  Ladder l;
  l.pi = static_cast<float>(kPi), l.twoPi = static_cast<float>(2 * kPi);
  l.rsource = l.reference = 50, l.rload = 75, l.qind = 50, l.qcap = 200;
  const int16_t codes[] = {4, 1, 7, 2, 3, 6, 5, 3, 7, 8};
  const double inds[] = {0, 3e-6, 2e-6, 9e-6, 0, 1.5e-6, 1e-6, 0, 1.2e-6, 2e-6};
  const double caps[] = {1e-9, 0, 8e-10, 0, 2e-9, 6e-10, 1e-9, 0, 4e-10, 5e-10};
  for (int j = 1; j <= 10; ++j)
    l.kind[j] = KindOf(codes[j - 1]), l.L[j] = inds[j - 1], l.C[j] = caps[j - 1];
  l.stages = 10;
  l.bandBranches = band;
  return l;
}

class LadderBatchKinds : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(BandBranches, LadderBatchKinds, ::testing::Bool());

TEST_P(LadderBatchKinds, EveryVectorUnitGivesThePlainDoubleBitsAndTheOnePointFigures) {
  const Ladder ladder = EveryKind(GetParam());
  std::vector<float> freq;
  for (int i = 0; i <= 120; ++i)
    freq.push_back(static_cast<float>(1e5 * std::pow(100.0, i / 120.0)));
  BatchValues v = UniformBatch(ladder);
  for (int k = 0; k < kBatchLanes; ++k)
    for (int j = 1; j <= ladder.stages; ++j)
      v.L[j][k] *= 1 + 0.013 * k - 0.004 * j, v.C[j][k] *= 1 - 0.011 * k + 0.003 * j;
  // Lane 5's last tank resonates exactly on point 60: its capacitor's
  // reactance cancels the inductor's parallel equivalent to the last bit,
  // where the tank is detuned by 1.00001 as the sweep detunes it.
  const double w60 = static_cast<float>(ladder.twoPi * freq[60]);
  auto exact = [&](double l, double c) {
    double rpar, xpar;
    models::SeriesToParallel(std::fabs(w60 * l / 50), w60 * l, rpar, xpar);
    return -1 / (w60 * c) + xpar == 0;
  };
  double l = v.L[9][5], c = 0;
  for (bool found = false; !found; l = std::nextafter(l, 1.0)) {
    double rpar, xpar;
    models::SeriesToParallel(std::fabs(w60 * l / 50), w60 * l, rpar, xpar);
    c = 1 / (w60 * xpar);
    for (int ulps = 0; ulps < 8 && !(found = exact(l, c)); ++ulps) c = std::nextafter(c, 1.0);
    if (found) v.L[9][5] = l;
  }
  ASSERT_TRUE(exact(v.L[9][5], c));
  v.C[9][5] = c;

  const int n = static_cast<int>(freq.size());
  const LadderBatch batch(ladder, freq);
  std::vector<double> ref21(n * kBatchLanes), ref11(ref21.size());
  batch.Evaluate(v, 0, n, ref21.data(), ref11.data(), BatchPath::Scalar);
  const size_t bytes = ref21.size() * sizeof(double);
  for (BatchPath path :
       {BatchPath::Vector, BatchPath::Avx512, BatchPath::Avx2, BatchPath::Baseline}) {
    if (!BatchPathRuns(path)) continue;
    std::vector<double> s21(ref21.size()), s11(ref21.size());
    batch.Evaluate(v, 0, n, s21.data(), s11.data(), path);
    EXPECT_EQ(std::memcmp(s21.data(), ref21.data(), bytes), 0) << static_cast<int>(path);
    EXPECT_EQ(std::memcmp(s11.data(), ref11.data(), bytes), 0) << static_cast<int>(path);
    // A stretch from the middle is the same stretch of the whole.
    batch.Evaluate(v, 13, 37, s21.data(), s11.data(), path);
    EXPECT_EQ(std::memcmp(s21.data(), &ref21[13 * kBatchLanes], 37 * 8 * sizeof(double)), 0);
  }

  for (int k = 0; k < kBatchLanes; ++k) {
    Ladder lane = ladder;
    for (int j = 1; j <= ladder.stages; ++j) lane.L[j] = v.L[j][k], lane.C[j] = v.C[j][k];
    for (int i = 0; i < n; ++i) {
      const PointResult p = AnalyzePoint(lane, freq[i], 0, 0);
      ASSERT_NEAR(TransmissionDbOf(ref21[i * kBatchLanes + k]), p.TransmissionDb, 1e-9)
          << "lane " << k << " point " << i;
      ASSERT_NEAR(ReflectionDbOf(ref11[i * kBatchLanes + k]), p.ReflectionDb, 1e-9)
          << "lane " << k << " point " << i;
    }
  }
  EXPECT_LT(TransmissionDbOf(ref21[60 * kBatchLanes + 5]), -20);  // the trap of the tank

  // Running extremes per point and lane, and per lane over points.
  std::vector<double> low(ref21.size(), 1e300), high(ref21.size(), 0);
  BatchEnvelope(ref21.data(), n, low.data(), high.data());
  BatchEnvelope(ref11.data(), n, low.data(), high.data());
  double lo[kBatchLanes], hi[kBatchLanes];
  std::fill(lo, lo + kBatchLanes, 1e300), std::fill(hi, hi + kBatchLanes, 0.0);
  LaneExtremes(ref21.data() + 10 * kBatchLanes, 20, lo, hi);
  for (int k = 0; k < kBatchLanes; ++k) {
    double l2 = 1e300, h2 = 0;
    for (int i = 10; i < 30; ++i)
      l2 = std::min(l2, ref21[i * 8 + k]), h2 = std::max(h2, ref21[i * 8 + k]);
    EXPECT_TRUE(lo[k] == l2 && hi[k] == h2) << k;
    EXPECT_EQ(low[77 * 8 + k], std::min(ref21[77 * 8 + k], ref11[77 * 8 + k]));
    EXPECT_EQ(high[77 * 8 + k], std::max(ref21[77 * 8 + k], ref11[77 * 8 + k]));
  }
}

// With a Q law, a winding capacitance and a lead inductance the lanes still
// carry the plain double bits, and the one-point kernel's figures.
TEST(LadderBatch, PartModelsKeepTheBitsOnEveryVectorUnit) {
  std::vector<float> freq;
  for (int i = 0; i <= 90; ++i) freq.push_back(static_cast<float>(1e5 * std::pow(300.0, i / 90.0)));
  const int n = static_cast<int>(freq.size());
  for (QLaw law : {QLaw::Constant, QLaw::Sqrt, QLaw::Linear}) {
    Ladder ladder = EveryKind(true);  // band branches too: they are built from the same parts
    ladder.qLaw = law, ladder.qReference = 2e6, ladder.lcp = 2e-12, ladder.cesl = 5e-9;
    BatchValues v = UniformBatch(ladder);
    for (int k = 0; k < kBatchLanes; ++k)
      for (int j = 1; j <= ladder.stages; ++j) v.L[j][k] *= 1 + 0.02 * k, v.C[j][k] *= 1 - 0.01 * k;
    const LadderBatch batch(ladder, freq);
    std::vector<double> ref21(n * kBatchLanes), ref11(ref21.size()), s21(ref21.size()),
        s11(ref21.size());
    batch.Evaluate(v, 0, n, ref21.data(), ref11.data(), BatchPath::Scalar);
    for (BatchPath path : {BatchPath::Avx512, BatchPath::Avx2, BatchPath::Baseline}) {
      if (!BatchPathRuns(path)) continue;
      batch.Evaluate(v, 0, n, s21.data(), s11.data(), path);
      EXPECT_EQ(std::memcmp(s21.data(), ref21.data(), s21.size() * 8), 0);
      EXPECT_EQ(std::memcmp(s11.data(), ref11.data(), s11.size() * 8), 0);
    }
    Ladder lane = ladder;
    for (int j = 1; j <= ladder.stages; ++j) lane.L[j] = v.L[j][3], lane.C[j] = v.C[j][3];
    for (int i = 0; i < n; ++i)
      ASSERT_NEAR(TransmissionDbOf(ref21[i * kBatchLanes + 3]),
                  AnalyzePoint(lane, freq[i], 0, 0).TransmissionDb, 1e-9);
  }
}

// An inductor's Q away from the reference frequency follows its law, and
// its winding capacitance resonates it at 1 / (2 pi sqrt(L Cp)).
TEST(ElementModels, QLawsAndSelfResonance) {
  Ladder ladder;
  ladder.twoPi = static_cast<float>(2 * kPi), ladder.qReference = 7e6, ladder.qind = 100;
  const double w0 = ReferenceOmega(ladder), perQ = 1 / ladder.qind;
  const double ratios[] = {1, std::sqrt(2.0), 2};
  for (QLaw law : {QLaw::Constant, QLaw::Sqrt, QLaw::Linear}) {
    const models::Losses<double> base{100, 1e7, perQ, 1e-7};
    for (double w : {w0, 2 * w0}) {
      const auto q = law == QLaw::Constant
                         ? base
                         : models::LossesAt(base, models::PerQindAt(law, perQ, w, w0));
      const auto z = models::SeriesInductor(w, 1e-6, q);
      const double expected = w == w0 ? 100 : 100 * ratios[static_cast<int>(law)];
      EXPECT_NEAR(z.im / z.re, expected, expected * 1e-12);
    }
  }
  models::Losses<double> q{1e6, 1e7, 1e-6, 1e-7, 1e-12, 0};
  const double wr = 2 * kPi * SelfResonance(1e-6, 1e-12);
  EXPECT_NEAR(wr, 1e9, 1e-3);
  EXPECT_NEAR(models::ShuntInductor(wr, 1e-6, q).im, 0, 1e-12);  // open at resonance
  q.cp = 0, q.esl = 1e-9;
  EXPECT_NEAR(models::SeriesCapacitor(1 / std::sqrt(1e-9 * 1e-9), 1e-9, q).im, 0, 1e-6);
}

}  // namespace
}  // namespace drenik
