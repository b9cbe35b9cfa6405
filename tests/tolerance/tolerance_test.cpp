// The tolerance run against answers worked out independently: a yield with
// a closed form, the nominal design at zero tolerance, the same result on
// every thread count and vector unit, and trials checked by ngspice.

#include "tolerance/tolerance.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numeric>

#include "analysis/sweep.h"
#include "export/writers.h"
#include "synthesis/band_transform.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "tolerance/tolerance_text.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;
constexpr double kPi = 3.14159265358979323846;

DesignRecord Constants() {
  DesignRecord d;
  d.Pi = static_cast<float>(kPi), d.TwoPi = static_cast<float>(2 * kPi);
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  return d;
}

// A designed ladder swept as the display page sweeps it.
ToleranceDesign Designed(int16_t family, int order, const char* topology, float width = 7e6f) {
  DesignRecord d = Constants();
  d.Family = family, d.Order = static_cast<int16_t>(order), d.Topology = topology;
  d.Apass = 0.044f, d.Astop = 40, d.CauerType = "C", d.Width = width;
  EXPECT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  d.Fstart = d.Width / 5, d.Fstop = d.Width * 5, d.NrIntervals = 1000;
  EXPECT_TRUE(AnalyzeSweep(d).Ok());
  return ToleranceDesignOf(d);
}

// One series inductor L0 between 50-ohm ends, swept 1 kHz .. 100 kHz.
ToleranceDesign SeriesInductor(double l0) {
  DesignRecord d = Constants();
  d.Stages = 1, d.ElementType[1] = 1, d.L[1] = static_cast<float>(l0);
  d.Topology = "Cinlowpass";
  d.Fstart = 1000, d.Fstop = 100000, d.NrIntervals = 400;
  EXPECT_TRUE(AnalyzeSweep(d).Ok());
  return ToleranceDesignOf(d);
}

double Phi(double z) {
  return 0.5 * std::erfc(-z / std::sqrt(2.0));
}

// A series inductor's loss rises with frequency and with L, so a stopband
// check from f1 holds exactly when L reaches the L* that gives the depth at
// f1: |S21|^2 = 4R^2 / ((2R + x/Q)^2 + x^2), solved for x = w1 L*. The yield
// is then the chance that 1 + tol u >= L*/L0.
TEST(Tolerance, YieldOfOnePartAgainstAThresholdIsTheAnalyticProbability) {
  const double l0 = 2e-3, tol = 0.2;
  ToleranceDesign design = SeriesInductor(l0);
  const double f1 = design.freq[300];  // the first point of the stopband
  const double w1 = static_cast<float>(design.ladder.twoPi * design.freq[300]);
  const double r = 50, perQ = 1 / double{kInfiniteQind};
  const double lStar = l0 * (1 + tol * 0.3);  // a threshold at u* = 0.3
  const double x = w1 * lStar;
  const double depth =
      10 * std::log10(((2 * r + x * perQ) * (2 * r + x * perQ) + x * x) / (4 * r * r));

  ToleranceSetup s;
  s.ltolPercent = 100 * tol, s.trials = 40000, s.seed = 7, s.sensitivity = false;
  s.mask.passEdge = 1000;
  s.mask.stops = {{f1, depth}};
  const double uStar = (lStar / l0 - 1) / tol;
  for (Distribution dist : {Distribution::Uniform, Distribution::Normal}) {
    s.distribution = dist;
    const double p = dist == Distribution::Uniform ? (1 - uStar) / 2
                                                   : (Phi(3) - Phi(3 * uStar)) / (Phi(3) - Phi(-3));
    ToleranceResult result;
    ASSERT_TRUE(RunTolerance(design, s, result).Ok());
    const double sigma = std::sqrt(p * (1 - p) / s.trials);
    EXPECT_NEAR(result.yield, p, 4 * sigma) << static_cast<int>(dist);
    EXPECT_TRUE(result.yieldLow < result.yield && result.yield < result.yieldHigh);
    EXPECT_NEAR(result.yieldHigh - result.yieldLow, 2 * 1.96 * sigma, 0.1 * sigma);
    EXPECT_EQ(result.checks.at(0).failures, s.trials - result.passed);
    EXPECT_EQ(result.checks.at(0).check.Points(),
              BandFrequencies(design.freq, Stopband(f1, false)).size());
    // The worst stopband attenuation of each trial decides its verdict.
    int above = 0;
    for (float a : result.worstStopAttenuation) above += a >= depth;
    EXPECT_NEAR(above, result.passed, 2);
  }
}

void ExpectSameFloats(const std::vector<float>& a, const std::vector<float>& b,
                      const std::string& what) {
  ASSERT_EQ(a.size(), b.size()) << what;
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(float)), 0) << what;
}

TEST(Tolerance, ZeroToleranceGivesTheNominalVerdictAndEnvelopesOnTheNominalCurves) {
  const ToleranceDesign design = Designed(kCauer, 5, "Cinlowpass");
  ToleranceSetup s;
  s.ctolPercent = s.ltolPercent = 0, s.trials = 100;
  s.mask = DefaultMask(design);
  ASSERT_TRUE(s.mask.passRl && s.mask.stops.size() == 1);
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  EXPECT_TRUE(r.nominalPasses);
  EXPECT_EQ(r.passed, 100);
  ExpectSameFloats(r.transmissionMin, r.nominalTransmission, "transmission min");
  ExpectSameFloats(r.transmissionMax, r.nominalTransmission, "transmission max");
  ExpectSameFloats(r.reflectionMin, r.nominalReflection, "reflection min");
  ExpectSameFloats(r.reflectionMax, r.nominalReflection, "reflection max");
  for (float rl : r.worstReturnLoss) ASSERT_EQ(rl, r.nominalReturnLoss);
  for (float loss : r.worstLoss) ASSERT_EQ(loss, r.nominalLoss);
  EXPECT_TRUE(r.nominalLoss > 0 && r.nominalLoss < 0.05f) << r.nominalLoss;  // the ripple

  // A mask the nominal design misses by a hair: every trial misses it too,
  // and the missed check carries the nominal figure.
  s.mask.passRl = r.nominalReturnLoss + 0.01;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  EXPECT_FALSE(r.nominalPasses || r.checks[0].nominalHolds);
  EXPECT_NEAR(r.checks[0].nominalDb, r.nominalReturnLoss, 1e-4);
  EXPECT_TRUE(r.passed == 0 && r.checks[0].failures == 100 && r.checks[1].failures == 0);
  EXPECT_EQ(r.sensitivity.size(), 7u);  // 3 C, and L and C of 2 tanks
  s.mask.passRl.reset();
  s.mask.passIl = r.nominalLoss - 0.001;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  EXPECT_TRUE(r.checks[0].check.kind == CheckKind::Loss && !r.checks[0].nominalHolds &&
              r.checks[1].nominalHolds);
  EXPECT_NEAR(r.checks[0].nominalDb, r.nominalLoss, 1e-4);
}

bool SameResult(const ToleranceResult& a, const ToleranceResult& b) {
  auto bits = [](const std::vector<float>& x, const std::vector<float>& y) {
    return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof(float)) == 0;
  };
  bool same = a.passed == b.passed && bits(a.transmissionMin, b.transmissionMin) &&
              bits(a.transmissionMax, b.transmissionMax) &&
              bits(a.reflectionMin, b.reflectionMin) && bits(a.reflectionMax, b.reflectionMax) &&
              bits(a.worstReturnLoss, b.worstReturnLoss) &&
              bits(a.worstStopAttenuation, b.worstStopAttenuation) &&
              a.sensitivity.size() == b.sensitivity.size();
  for (size_t c = 0; same && c < a.checks.size(); ++c)
    same = a.checks[c].failures == b.checks[c].failures;
  for (size_t i = 0; same && i < a.sensitivity.size(); ++i)
    same = a.sensitivity[i].passed == b.sensitivity[i].passed &&
           a.sensitivity[i].part.Name() == b.sensitivity[i].part.Name();
  return same;
}

// Trials are drawn per (seed, trial, part), not from one stream, and every
// vector unit gives the bits of plain doubles: the split of the work and the
// instruction set change nothing.
TEST(Tolerance, SameSeedSameResultOnEveryThreadCountAndVectorUnit) {
  const ToleranceDesign design = Designed(kCauer, 7, "Cinlowpass");
  ToleranceSetup s;
  s.trials = 203, s.seed = 99, s.mask = DefaultMask(design), s.threads = 1;
  s.ctolPercent = s.ltolPercent = 2, s.mask.stops.at(0).depth -= 2;
  s.path = BatchPath::Scalar;
  ToleranceResult reference;
  ASSERT_TRUE(RunTolerance(design, s, reference).Ok());
  ASSERT_TRUE(reference.passed > 0 && reference.passed < s.trials);
  for (BatchPath path :
       {BatchPath::Vector, BatchPath::Avx512, BatchPath::Avx2, BatchPath::Baseline}) {
    if (!BatchPathRuns(path)) continue;
    for (int threads : {1, 2, 3}) {
      s.path = path, s.threads = threads;
      ToleranceResult r;
      ASSERT_TRUE(RunTolerance(design, s, r).Ok());
      EXPECT_TRUE(SameResult(r, reference)) << static_cast<int>(path) << " " << threads;
    }
  }
  // A run that goes on from the first 100 trials draws what the whole run
  // drew for the rest: the two together pass as many.
  ToleranceResult first, rest;
  s.trials = 100;
  ASSERT_TRUE(RunTolerance(design, s, first).Ok());
  s.firstTrial = 100, s.trials = 103;
  ASSERT_TRUE(RunTolerance(design, s, rest).Ok());
  EXPECT_EQ(first.passed + rest.passed, reference.passed);
  EXPECT_EQ(first.worstReturnLoss[99], reference.worstReturnLoss[99]);
  EXPECT_EQ(rest.worstReturnLoss[0], reference.worstReturnLoss[100]);
  s.firstTrial = 0, s.trials = 203;
  s.seed = 100;
  ToleranceResult other;
  ASSERT_TRUE(RunTolerance(design, s, other).Ok());
  EXPECT_FALSE(SameResult(other, reference));
}

// One part dominates: the inductor sets the stopband, a tiny shunt capacitor
// at the load hardly matters. Holding the inductor exact lifts the yield to
// that of the capacitor alone (all); tightening it to 2% gives the analytic
// yield of a 2% part.
TEST(Tolerance, SensitivityRanksThePartThatDrivesTheFailures) {
  ToleranceDesign design = SeriesInductor(2e-3);
  design.ladder.stages = 2;
  design.ladder.kind[2] = ElementKind::ShuntC;
  design.ladder.C[2] = 1e-12;
  const double f1 = design.freq[300];
  const double x = static_cast<float>(design.ladder.twoPi * design.freq[300]) * 2e-3 * 0.99;
  ToleranceSetup s;
  s.trials = 4000, s.ltolPercent = s.ctolPercent = 10;
  s.mask.passEdge = 1000;
  s.mask.stops = {{f1, 10 * std::log10(1 + x * x / 1e4)}};  // met down to L = 0.99 L0
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  ASSERT_EQ(r.sensitivity.size(), 2u);
  EXPECT_EQ(r.sensitivity[0].part.Name(), "L1");
  EXPECT_EQ(r.sensitivity[0].passed, s.trials);
  EXPECT_EQ(r.sensitivity[1].part.Name(), "C2");
  EXPECT_NEAR(r.sensitivity[1].yield, r.yield, 0.01);
  EXPECT_NEAR(r.yield, (1 + 0.1) / 2, 0.03);  // u >= -0.1

  s.tightenPercent = 2;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  EXPECT_EQ(r.sensitivity[0].tightenedTo, 0.02);
  EXPECT_NEAR(r.sensitivity[0].yield, (1 + 0.5) / 2, 0.03);  // u >= -0.5 at 2%
}

TEST(Tolerance, ProgressRisesToTheEndAndCancelStopsWithoutFigures) {
  const ToleranceDesign design = Designed(kChebyshev, 5, "Cinhighpass");
  ToleranceSetup s;
  s.trials = 3000, s.mask = DefaultMask(design), s.threads = 2;
  std::vector<double> seen;
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, s, r, [&](double done) {
                seen.push_back(done);
                return true;
              }).Ok());
  ASSERT_GT(seen.size(), 3u);
  EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()) && seen.back() <= 1.0);
  EXPECT_FALSE(r.cancelled);

  int calls = 0;
  ASSERT_TRUE(RunTolerance(design, s, r, [&](double) { return ++calls < 2; }).Ok());
  EXPECT_TRUE(r.cancelled && r.passed == 0 && r.transmissionMin.empty() && r.sensitivity.empty());

  // Out-of-range inputs are refused before anything runs.
  for (auto spoil :
       {+[](ToleranceSetup& t) { t.ctolPercent = 50.5; },
        +[](ToleranceSetup& t) { t.tightenPercent = -1; }, +[](ToleranceSetup& t) { t.trials = 0; },
        +[](ToleranceSetup& t) { t.trials = kMaxTrials + 1; }}) {
    ToleranceSetup bad = s;
    spoil(bad);
    EXPECT_FALSE(RunTolerance(design, bad, r).Ok());
  }
}

// A highpass's passband lies at and above its edge and its stopband at and
// below the check's frequency; a point exactly on a frequency counts.
TEST(Tolerance, ChecksCoverThePointsAtOrBeyondTheirFrequencies) {
  const std::vector<float> freq = {1, 2, 3, 4, 5};
  Mask m;
  m.passEdge = 3, m.passRl = 20, m.stops = {{2, 40}, {9, 30}};
  const auto low = MaskChecks(m, freq, false), high = MaskChecks(m, freq, true);
  EXPECT_TRUE(low[0].first == 0 && low[0].last == 2 && high[0].first == 2 && high[0].last == 4);
  EXPECT_TRUE(low[1].first == 1 && low[1].last == 4 && high[1].first == 0 && high[1].last == 1);
  EXPECT_TRUE(low[2].Points() == 0 && high[2].Points() == 5);
  EXPECT_EQ(low[0].limit, 0.01);
  EXPECT_EQ(low[1].key + "|" + low[1].name, "stop 2Hz:40|attenuation 40 dB from 2Hz");
  EXPECT_EQ(high[0].name, "return loss 20 dB from 3Hz");

  // The default mask: 3 dB under the nominal return loss, the second
  // harmonic 3 dB under the nominal attenuation there.
  const ToleranceDesign design = Designed(kChebyshev, 5, "Cinlowpass");
  const Mask def = DefaultMask(design);
  ToleranceSetup s;
  s.trials = 1, s.ctolPercent = s.ltolPercent = 0, s.mask = def;
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, s, r).Ok());
  EXPECT_EQ(def.passEdge, design.cutoff);
  EXPECT_NEAR(*def.passRl, r.nominalReturnLoss - 3, 0.1);
  EXPECT_EQ(def.stops.at(0).frequency, 2 * design.cutoff);
  EXPECT_NEAR(def.stops[0].depth, r.nominalStopAttenuation - 3, 1);
}

// Nominal worst figures of a design, from a run at zero tolerance.
ToleranceResult NominalRun(const ToleranceDesign& design, const Mask& mask) {
  ToleranceSetup s;
  s.trials = 1, s.ctolPercent = s.ltolPercent = 0, s.mask = mask, s.sensitivity = false;
  ToleranceResult r;
  EXPECT_TRUE(RunTolerance(design, s, r).Ok());
  return r;
}

TEST(Tolerance, DefaultMaskFollowsTheDesign) {
  // A highpass: its passband above the cutoff, the harmonic check below it.
  const ToleranceDesign high = Designed(kChebyshev, 5, "Linhighpass");
  const Mask h = DefaultMask(high);
  ASSERT_TRUE(h.passRl && !h.passIl && h.stops.size() == 1);
  EXPECT_EQ(h.stops[0].frequency, high.cutoff / 2);
  const ToleranceResult hr = NominalRun(high, h);
  EXPECT_TRUE(hr.nominalPasses);
  EXPECT_EQ(hr.checks[0].check.Points(),
            BandFrequencies(high.freq, Passband(high.cutoff, true)).size());
  EXPECT_NEAR(h.stops[0].depth, std::floor(hr.nominalStopAttenuation - 3), 1e-9);

  // An edge at the 3 dB point leaves no return loss to ask for: a loss
  // 1 dB over the nominal instead.
  const ToleranceDesign flat = Designed(kButterworth, 5, "Cinlowpass");
  const Mask f = DefaultMask(flat);
  ASSERT_TRUE(!f.passRl && f.passIl);
  EXPECT_NEAR(*f.passIl, 10 * std::log10(2.0) + 1, 0.15);

  // A Cauer design's own edge, with the same 3 dB margin as the others: a
  // 40 dB design (40.0x dB nominal) is checked against 37 dB.
  const ToleranceDesign cauer = Designed(kCauer, 5, "Cinlowpass");
  const Mask c = DefaultMask(cauer);
  EXPECT_EQ(c.stops.at(0).frequency, cauer.stopEdge);
  EXPECT_EQ(c.stops[0].depth, 37);
  EXPECT_EQ(c.stops[0].depth, std::floor(NominalRun(cauer, c).nominalStopAttenuation - 3));
}

// A mask without a check would pass every trial: a broken nominal design
// gets none and the reason, and the run refuses such a mask, as it refuses
// a sweep whose 32-bit frequencies repeat (a band narrower than they
// resolve), which once read past the run's buffers.
TEST(Tolerance, NoCheckAndRepeatedFrequenciesAreRefused) {
  ToleranceDesign design = Designed(kChebyshev, 5, "Cinlowpass"), broken = design;
  std::string none;
  ToleranceSetup s{.trials = 8, .mask = DefaultMask(design, 0, &none)};
  EXPECT_TRUE(none.empty()) << none;
  broken.ladder.L[2] = std::numeric_limits<float>::infinity();
  EXPECT_TRUE(DefaultMask(broken, 0, &none).stops.empty());
  EXPECT_NE(none.find("not a finite number"), std::string::npos) << none;
  ToleranceResult r;
  broken = design, broken.freq[500] = broken.freq[499];
  EXPECT_NE(RunTolerance(broken, s, r).fault.find("repeated"), std::string::npos);
  s.mask.passRl.reset(), s.mask.stops.clear();
  EXPECT_NE(RunTolerance(design, s, r).fault.find("no check"), std::string::npos);
}

// Each band is judged at its own frequencies, wherever the sweep ends: a
// stopband beyond it gives the figure of a direct evaluation there, a
// passband below it a return loss; a mask that cannot be checked says why.
TEST(Tolerance, BandsAreJudgedAtTheirOwnFrequencies) {
  const ToleranceDesign design = Designed(kChebyshev, 5, "Cinlowpass");  // swept to 35 MHz
  Mask m;
  m.passEdge = 1, m.passRl = 10, m.stops = {{60e6, 40}};
  const ToleranceResult r = NominalRun(design, m);
  EXPECT_EQ(r.nominalStopAttenuation,
            static_cast<float>(LeastAttenuation(
                design.ladder, BandFrequencies(design.freq, Stopband(60e6, false)))));
  EXPECT_TRUE(r.nominalPasses && r.nominalReturnLoss > 10 && r.checks[1].check.Points() > 50);
  EXPECT_EQ(r.freq, design.freq);

  const double inf = std::numeric_limits<double>::infinity();
  const std::pair<Mask, const char*> faults[] = {
      {{.passEdge = 0, .passRl = 10}, "--pass-edge"},
      {{.passEdge = inf, .passRl = 10}, "--pass-edge"},
      {{.passEdge = 7e6, .passRl = std::nan("")}, "--pass-rl"},
      {{.passEdge = 7e6, .stops = {{-1, 40}}}, "--stop"},
      {{.passEdge = 7e6, .stops = {{14e6, inf}}}, "--stop"},
      {{.passEdge = 7e6, .stops = {{7e6, 40}}}, "overlaps the passband to 7MHz"},
      {{.passEdge = 7e6, .stops = {{14e6, 40}}}, ""},
      // A bandpass: a lower skirt below its lower edge is no overlap.
      {{.passEdge = 7.3e6, .passStart = 7e6, .stops = {{5e6, 40, true}, {10e6, 40}}}, ""},
      {{.passEdge = 7.3e6, .passStart = 7e6, .stops = {{1e6, 40, false, 5e6}}}, ""},
      {{.passEdge = 7.3e6, .passStart = 7e6, .stops = {{1e6, 40, false, 7e6}}},
       "the stopband from 1MHz to 7MHz overlaps the passband from 7MHz to 7.3MHz"},
      {{.passEdge = 7e6, .passStart = 7.3e6}, "lies at or below its lower edge 7.3MHz"},
      // A bandstop: its notch must end below the upper passband, above its start.
      {{.passEdge = 7e6, .passResume = 8e6, .stops = {{7.2e6, 40, false, 7.8e6}}}, ""},
      {{.passEdge = 7e6, .passResume = 8e6, .stops = {{7.2e6, 40}}},
       "from 7.2MHz overlaps the passband from 8MHz"},
      {{.passEdge = 7e6, .passResume = 8e6, .stops = {{7.8e6, 40, false, 7.2e6}}},
       "ends at 7.2MHz, not above its start"},
      {{.passEdge = 8e6, .passResume = 7e6}, "--pass-edge"},
  };
  for (const auto& [mask, why] : faults) {
    const std::string fault = MaskFault(mask, false);
    EXPECT_TRUE(why[0] ? fault.find(why) != std::string::npos : fault.empty()) << fault;
  }
  EXPECT_NE(MaskFault({.passEdge = 7e6, .stops = {{14e6, 40}}}, true),
            "");  // a highpass stopband lies below
}

TEST(Tolerance, HistogramBinsEveryFiniteValueOnRoundEdges) {
  const std::vector<float> values = {12.3f, 15.9f, 17.0f, 17.05f, NAN, 22.4f, INFINITY};
  const Histogram h = MakeHistogram(values, 10);
  EXPECT_EQ(h.width, 2.0);  // 10.1 dB would need 11 bins of 1 dB
  EXPECT_EQ(h.low, 12);
  ASSERT_EQ(h.counts.size(), 6u);
  EXPECT_EQ(std::accumulate(h.counts.begin(), h.counts.end(), 0), 5);
  EXPECT_TRUE(h.counts[2] == 2 && h.Most() == 2 && h.counts.back() == 1);
  EXPECT_TRUE(MakeHistogram(std::vector<float>{NAN}, 10).counts.empty());
}

// ngspice in batch mode on the netlist of a trial's ladder: V(in) and
// V(out) per frequency, behind the netlist's 2 V generator.
struct SpicePoint {
  double f;
  std::complex<double> in, out;
};
std::vector<SpicePoint> Simulate(DesignRecord d, const Ladder& trial, const fs::path& dir) {
  for (int j = 1; j <= d.Stages; ++j)
    d.L[j] = static_cast<float>(trial.L[j]), d.C[j] = static_cast<float>(trial.C[j]);
  const std::string net = SpiceNetlistText(d);
  const fs::path out = dir / "v.txt", cir = dir / "trial.cir";
  std::ofstream(cir) << net.substr(0, net.rfind(".end")) << ".control\nset wr_singlescale\nrun\n"
                     << "wrdata " << out.string() << " v(in) v(out)\n.endc\n.end\n";
  fs::remove(out);
  (void)std::system(("ngspice -b " + cir.string() + " > /dev/null 2>&1").c_str());
  std::vector<SpicePoint> points;
  std::ifstream in(out);
  SpicePoint p;
  double a, b, c, e;
  while (in >> p.f >> a >> b >> c >> e) points.push_back({p.f, {a, b}, {c, e}});
  return points;
}

// Trials of a Cauer ladder (tanks) at 10% parts: the values the run draws,
// evaluated by the batch kernel at ngspice's frequencies, against ngspice.
TEST(Tolerance, PerturbedTrialsAgreeWithNgspice) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "ngspice not installed";
  DesignRecord d = Constants();
  d.Family = kCauer, d.Order = 5, d.Topology = "Cinlowpass", d.Apass = 0.044f, d.Astop = 40;
  d.CauerType = "C", d.Width = 7e6f;
  ASSERT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  d.Fstart = d.Width / 5, d.Fstop = d.Width * 5, d.NrIntervals = 1000;
  ASSERT_TRUE(AnalyzeSweep(d).Ok());
  const ToleranceDesign design = ToleranceDesignOf(d);
  ToleranceSetup s;
  s.ctolPercent = s.ltolPercent = 10, s.trials = 50, s.mask = DefaultMask(design);
  ToleranceResult run;
  ASSERT_TRUE(RunTolerance(design, s, run).Ok());

  const fs::path dir = fs::temp_directory_path() / ("drenik_tol_" + std::to_string(getpid()));
  fs::create_directories(dir);
  double worstDb = 0;
  for (int trial : {0, 17, 49}) {
    const Ladder ladder = TrialLadder(design, s, trial);
    EXPECT_NE(ladder.C[1], design.ladder.C[1]);
    // The values are the run's: its worst stopband attenuation follows, over
    // the stopband's own frequencies.
    const auto stop = BandFrequencies(design.freq, Stopband(s.mask.stops.at(0).frequency, false));
    EXPECT_EQ(static_cast<float>(LeastAttenuation(ladder, stop)), run.worstStopAttenuation[trial]);

    const auto points = Simulate(d, ladder, dir);
    ASSERT_GT(points.size(), 900u);
    std::vector<float> freq;
    for (const SpicePoint& p : points) freq.push_back(static_cast<float>(p.f));
    const LadderBatch atSpice(ladder, freq);
    std::vector<double> s21(freq.size() * kBatchLanes), s11(s21.size());
    atSpice.Evaluate(UniformBatch(ladder), 0, atSpice.Points(), s21.data(), s11.data());
    for (size_t i = 0; i < points.size(); ++i) {
      // 2 V behind Rsource: |S21|^2 = (Rs/RL)|V(out)|^2, S11 = V(in) - 1.
      const double t = 20 * std::log10(std::abs(points[i].out));
      const double rho = 20 * std::log10(std::abs(points[i].in - 1.0));
      if (t > -60) worstDb = std::max(worstDb, std::fabs(TransmissionDbOf(s21[i * 8]) - t));
      if (rho > -40) worstDb = std::max(worstDb, std::fabs(ReflectionDbOf(s11[i * 8]) - rho));
    }
  }
  fs::remove_all(dir);
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", worstDb);
  RecordProperty("worst_db", text);
  EXPECT_LT(worstDb, 0.02);
}

TEST(TrialDraws, UniformAndTruncatedNormalDeviationsAndThePortableLog) {
  double sum = 0, sum2 = 0, lo = 1, hi = -1;
  for (Distribution dist : {Distribution::Uniform, Distribution::Normal}) {
    sum = sum2 = 0, lo = 1, hi = -1;
    const int n = 200000;
    for (int t = 0; t < n; ++t) {
      const double u = Deviation(5, t, 3, dist);
      sum += u, sum2 += u * u, lo = std::min(lo, u), hi = std::max(hi, u);
    }
    const double mean = sum / n, sd = std::sqrt(sum2 / n - mean * mean);
    EXPECT_NEAR(mean, 0, 0.005);
    EXPECT_TRUE(lo >= -1 && hi <= 1 && lo < -0.97 && hi > 0.97);
    // Uniform on [-1, 1]: 1/sqrt(3); a normal cut at 3 sigma: 0.9865 sigma.
    EXPECT_NEAR(sd, dist == Distribution::Uniform ? 1 / std::sqrt(3.0) : 0.9865 / 3, 0.003);
  }
  EXPECT_NE(Deviation(5, 0, 3, Distribution::Uniform), Deviation(5, 0, 4, Distribution::Uniform));
  for (double x : {1e-300, 1e-9, 0.1, 0.5, 0.7071, 0.99999, 1.0, 3.0})
    EXPECT_NEAR(PortableLog(x), std::log(x), 4e-16 * std::max(1.0, std::fabs(std::log(x)))) << x;
}

}  // namespace
}  // namespace drenik

namespace drenik {
namespace {

// A bandpass is checked between its edges and on both skirts; the nominal
// design meets its own default mask, and so does a build from parts ten
// times tighter than the mask's slack allows for.
TEST(ToleranceBand, BandpassMaskHasThePassbandBetweenItsEdgesAndTwoSkirts) {
  DesignRecord d;
  d.Pi = 3.14159274f, d.TwoPi = 6.28318548f, d.Family = kChebyshev, d.Order = 5;
  d.Topology = "Cinbandpass", d.Apass = 0.2f, d.Rsource = d.Rstandard = 50;
  d.Width = 1e6f, d.Center = 1e7f, d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  ASSERT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  d.Fstart = 8e6f, d.Fstop = 12.5e6f, d.NrIntervals = 1000;
  ASSERT_TRUE(AnalyzeSweep(d).Ok());
  const ToleranceDesign design = ToleranceDesignOf(d);
  const Mask mask = DefaultMask(design);
  const BandEdges e = EdgesOfBand(1e7, 1e6);
  EXPECT_TRUE(mask.passStart == e.f1 && mask.passEdge == e.f2 && mask.passRl);
  ASSERT_EQ(mask.stops.size(), 2u);
  EXPECT_TRUE(mask.stops[0].below && mask.stops[0].frequency < e.f1);
  EXPECT_TRUE(!mask.stops[1].below && mask.stops[1].frequency > e.f2);
  ToleranceSetup setup;
  setup.mask = mask, setup.trials = 64, setup.ctolPercent = setup.ltolPercent = 0.05;
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, setup, r).Ok());
  EXPECT_TRUE(r.nominalPasses && r.yield == 1.0) << r.yield;
  EXPECT_GT(r.nominalReturnLoss, *mask.passRl);
  // The stopband figure is the skirts' least attenuation, never the passband
  // between them: at least the shallower skirt's depth, in every trial.
  const double shallower = std::min(mask.stops[0].depth, mask.stops[1].depth);
  EXPECT_GE(r.nominalStopAttenuation, shallower);
  for (float a : r.worstStopAttenuation) EXPECT_GE(a, shallower);
}

// A bandstop is checked on both passbands, outside its edges, and over its
// notch between the stop edges; its own nominal design meets that mask.
TEST(ToleranceBand, BandstopMaskHasTwoPassbandsAndTheNotch) {
  DesignRecord d;
  d.Pi = 3.14159274f, d.TwoPi = 6.28318548f, d.Family = kChebyshev, d.Order = 5;
  d.Topology = "Cinbandstop", d.Apass = 0.2f, d.Rsource = d.Rstandard = 50;
  d.Width = 2e6f, d.Center = 1e7f, d.Qind = kInfiniteQind, d.Qcap = kInfiniteQcap;
  ASSERT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  d.Fstart = 6e6f, d.Fstop = 16e6f, d.NrIntervals = 1000;
  ASSERT_TRUE(AnalyzeSweep(d).Ok());
  const ToleranceDesign design = ToleranceDesignOf(d);
  const Mask mask = DefaultMask(design);
  EXPECT_TRUE(mask.passEdge == design.f1 && mask.passResume == design.f2 && mask.passRl);
  ASSERT_EQ(mask.stops.size(), 1u);
  EXPECT_TRUE(mask.stops[0].frequency == design.stopLow && mask.stops[0].to == design.stopHigh);
  EXPECT_EQ(MaskFault(mask, false), "");
  ToleranceSetup setup;
  setup.mask = mask, setup.trials = 16, setup.ctolPercent = setup.ltolPercent = 0;
  ToleranceResult r;
  ASSERT_TRUE(RunTolerance(design, setup, r).Ok());
  // Return loss over the passbands only: the notch reflects nearly all.
  EXPECT_TRUE(r.nominalPasses && r.yield == 1.0);
  EXPECT_GE(r.nominalReturnLoss, *mask.passRl);
  EXPECT_GE(r.nominalStopAttenuation, mask.stops[0].depth);
}

}  // namespace
}  // namespace drenik
