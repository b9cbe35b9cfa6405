// The run: blocks of eight trials go through the batch kernel a stretch of
// points at a time; each block's power ratios update the per-point envelope
// and, per trial, the extreme of each check over its points. Workers take
// blocks from a shared counter and keep their own sums, which add up to the
// same totals in any order (counts, minima, maxima, per-trial figures stored
// at the trial's index).

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

#include "tolerance/tolerance.h"

namespace drenik {
namespace {

constexpr int kLanes = kBatchLanes;
constexpr int kStretch = 64;  // points per call of the kernel
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// The stretches of points that one or more checks cover, in order.
std::vector<std::pair<int, int>> Spans(const std::vector<MaskCheck>& checks) {
  std::vector<std::pair<int, int>> ranges, spans;
  for (const MaskCheck& c : checks)
    if (c.Points() > 0) ranges.push_back({c.first, c.last});
  std::sort(ranges.begin(), ranges.end());
  for (const auto& r : ranges) {
    if (!spans.empty() && r.first <= spans.back().second + 1)
      spans.back().second = std::max(spans.back().second, r.second);
    else
      spans.push_back(r);
  }
  return spans;
}

// A stopband check that covers points.
bool Stop(const MaskCheck& c) {
  return c.kind == CheckKind::Stopband && c.Points() > 0;
}

// What every worker reads; fixed for the run.
struct Plan {
  Plan(const ToleranceDesign& d, const ToleranceSetup& s)
      : design(d),
        setup(s),
        grid(BandGrid(d.freq, MaskBands(s.mask, d.highpass))),
        batch(d.ladder, grid),
        parts(VariedParts(d.ladder, s.ctolPercent, s.ltolPercent)),
        checks(MaskChecks(s.mask, grid, d.highpass)),
        points(static_cast<int>(grid.size())),
        sweepFirst(static_cast<int>(std::lower_bound(grid.begin(), grid.end(), d.freq.front()) -
                                    grid.begin())),
        blocks((s.trials + kBatchLanes - 1) / kBatchLanes),
        verdictSpans(Spans(checks)) {
    PointsBeyond(grid, s.mask.passEdge, !d.highpass, passFirst, passLast);
    if (s.mask.passStart > 0) {  // a bandpass: from its lower edge up
      int first, last;
      PointsBeyond(grid, s.mask.passStart, false, first, last);
      passFirst = std::max(passFirst, first);
    }
    passSpans.push_back({passFirst, passLast});
    if (s.mask.passResume > 0) {  // a bandstop's upper passband
      int first, last;
      PointsBeyond(grid, s.mask.passResume, false, first, last);
      passSpans.push_back({first, last});
    }
    for (const MaskCheck& c : checks) stopped = stopped || Stop(c);
    // A part already at or under the tightened tolerance keeps the yield.
    if (s.sensitivity)
      for (size_t i = 0; i < parts.size(); ++i)
        if (parts[i].tolerance > s.tightenPercent / 100) tightened.push_back(static_cast<int>(i));
  }

  const ToleranceDesign& design;
  const ToleranceSetup& setup;
  // The sweep with the points the mask's bands need beyond it: the checks
  // and the per-trial figures are taken over it, the envelope only over
  // the sweep, which starts at point sweepFirst.
  std::vector<float> grid;
  LadderBatch batch;
  std::vector<VariedPart> parts;
  std::vector<MaskCheck> checks;
  int points = 0;
  int sweepFirst = 0;
  int blocks = 0;
  int passFirst = 0, passLast = -1;  // the passband
  // The passband's stretches: one, or a bandstop's two either side of its
  // notch, whose reflection is total and no figure of the passband.
  std::vector<std::pair<int, int>> passSpans;
  // Whether some stopband check covers points. The stopband figure is the
  // least attenuation over those checks' own points: a bandpass's two
  // skirts, never the passband that lies between them.
  bool stopped = false;
  // The stretches of points any check covers: all a verdict needs.
  std::vector<std::pair<int, int>> verdictSpans;
  // Runs: 0 is the full run; run r > 0 tightens part tightened[r - 1].
  std::vector<int> tightened;
};

// The extreme power ratios of each of one block's lanes over each check,
// the passband and the stopband.
struct BlockExtremes {
  using PerLane = std::array<double, kLanes>;
  struct Extremes {
    PerLane low, high;
    Extremes() { low.fill(kInf), high.fill(0.0); }
  };
  std::vector<Extremes> check;
  Extremes pass;     // |S11|^2 over the passband
  Extremes passS21;  // |S21|^2 over the passband

  explicit BlockExtremes(size_t checks) : check(checks) {}
  // Lane k's largest |S21|^2 over every stopband check's points.
  double StopHigh(const Plan& p, int k) const {
    double high = 0;
    for (size_t c = 0; c < check.size(); ++c)
      if (Stop(p.checks[c])) high = std::max(high, check[c].high[k]);
    return high;
  }
  // Whether lane k breaks check c.
  bool Fails(const Plan& p, size_t c, int k) const {
    const MaskCheck& m = p.checks[c];
    return !m.Holds(m.kind == CheckKind::Loss ? check[c].low[k] : check[c].high[k]);
  }
  bool LaneFails(const Plan& p, int k) const {
    for (size_t c = 0; c < check.size(); ++c)
      if (Fails(p, c, k)) return true;
    return false;
  }
};

// Each worker's sums.
struct WorkerSums {
  std::vector<double> min21, max21, min11, max11;  // [point][lane]
  std::vector<int> failures;                       // per check
  std::vector<int> passed;                         // per run
  std::vector<double> s21, s11;                    // the kernel's output, one stretch

  explicit WorkerSums(const Plan& p)
      : min21(p.points * kLanes, kInf),
        max21(p.points * kLanes, 0.0),
        min11(p.points * kLanes, kInf),
        max11(p.points * kLanes, 0.0),
        failures(p.checks.size(), 0),
        passed(p.tightened.size() + 1, 0),
        s21(kStretch * kLanes),
        s11(kStretch * kLanes) {}
};

// The values of the lanes of block b: lane k is trial 8 b + k, and lanes
// past the last trial repeat the block's first trial, which leaves every
// envelope as it is. Part `tight` (none: -1) is at tolerance `tightTo` with
// its usual random numbers.
BatchValues BlockValues(const Ladder& ladder, const std::vector<VariedPart>& parts,
                        const ToleranceSetup& setup, int block, int tight, double tightTo) {
  BatchValues v = UniformBatch(ladder);
  for (int k = 0; k < kLanes; ++k) {
    const int trial = block * kLanes + k < setup.trials ? block * kLanes + k : block * kLanes;
    for (size_t i = 0; i < parts.size(); ++i) {
      const VariedPart& part = parts[i];
      const double tol = static_cast<int>(i) == tight ? tightTo : part.tolerance;
      const uint32_t stream = static_cast<uint32_t>(2 * part.position + (part.capacitor ? 1 : 0));
      const double u = Deviation(setup.seed, static_cast<uint64_t>(setup.firstTrial + trial),
                                 stream, setup.distribution);
      auto& slot = part.capacitor ? v.C[part.position][k] : v.L[part.position][k];
      slot = part.value * (1 + tol * u);
    }
  }
  return v;
}

// Points first .. first + count - 1 of one block, as the kernel left them
// in the worker's buffers: the envelope (when asked) and the extremes.
void TakeStretch(const Plan& p, int first, int count, bool envelope, WorkerSums& w,
                 BlockExtremes& e) {
  const double* s21 = w.s21.data();
  const double* s11 = w.s11.data();
  if (envelope) {
    BatchEnvelope(s21, count, &w.min21[first * kLanes], &w.max21[first * kLanes]);
    BatchEnvelope(s11, count, &w.min11[first * kLanes], &w.max11[first * kLanes]);
  }
  // The points of a range that fall into this stretch.
  auto extremes = [&](int from, int to, const double* ratio, BlockExtremes::Extremes& out) {
    from = std::max(from, first);
    to = std::min(to, first + count - 1);
    if (from <= to)
      LaneExtremes(ratio + (from - first) * kLanes, to - from + 1, out.low.data(), out.high.data());
  };
  for (size_t c = 0; c < p.checks.size(); ++c) {
    const MaskCheck& check = p.checks[c];
    extremes(check.first, check.last, check.kind == CheckKind::ReturnLoss ? s11 : s21, e.check[c]);
  }
  if (envelope)
    for (const auto& [from, to] : p.passSpans) {
      extremes(from, to, s11, e.pass);
      extremes(from, to, s21, e.passS21);
    }
}

// Run 0 on one block: every point, the envelope, the failures and the
// per-trial figures.
void FullBlock(const Plan& p, int block, WorkerSums& w, ToleranceResult& r) {
  const BatchValues v = BlockValues(p.design.ladder, p.parts, p.setup, block, -1, 0);
  BlockExtremes e(p.checks.size());
  for (int first = 0; first < p.points; first += kStretch) {
    const int count = std::min(kStretch, p.points - first);
    p.batch.Evaluate(v, first, count, w.s21.data(), w.s11.data(), p.setup.path);
    TakeStretch(p, first, count, true, w, e);
  }
  for (int k = 0; k < kLanes; ++k) {
    const int trial = block * kLanes + k;
    if (trial >= p.setup.trials) break;
    bool pass = true;
    for (size_t c = 0; c < p.checks.size(); ++c) {
      if (!e.Fails(p, c, k)) continue;
      ++w.failures[c];
      pass = false;
    }
    w.passed[0] += pass;
    const bool passband = p.passLast >= p.passFirst;
    r.worstReturnLoss[trial] =
        passband ? static_cast<float>(-ReflectionDbOf(e.pass.high[k])) : kNaN;
    r.worstLoss[trial] = passband ? static_cast<float>(-TransmissionDbOf(e.passS21.low[k])) : kNaN;
    r.worstStopAttenuation[trial] =
        p.stopped ? static_cast<float>(-TransmissionDbOf(e.StopHigh(p, k))) : kNaN;
  }
}

// A sensitivity run on one block: only the points some check covers, and
// no further once every lane has failed.
void VerdictBlock(const Plan& p, int run, int block, WorkerSums& w) {
  const int part = p.tightened[run - 1];
  const double tightTo = std::min(p.setup.tightenPercent / 100, p.parts[part].tolerance);
  const BatchValues v = BlockValues(p.design.ladder, p.parts, p.setup, block, part, tightTo);
  BlockExtremes e(p.checks.size());
  auto allFailed = [&] {
    for (int k = 0; k < kLanes; ++k)
      if (!e.LaneFails(p, k)) return false;
    return true;
  };
  for (const auto& [from, to] : p.verdictSpans) {
    for (int first = from; first <= to; first += kStretch) {
      const int count = std::min(kStretch, to - first + 1);
      p.batch.Evaluate(v, first, count, w.s21.data(), w.s11.data(), p.setup.path);
      TakeStretch(p, first, count, false, w, e);
      if (allFailed()) return;
    }
  }
  for (int k = 0; k < kLanes && block * kLanes + k < p.setup.trials; ++k)
    w.passed[run] += !e.LaneFails(p, k);
}

std::string SetupFault(const ToleranceDesign& design, const ToleranceSetup& s) {
  for (double tol : {s.ctolPercent, s.ltolPercent, s.tightenPercent})
    if (!(tol >= 0 && tol <= kMaxTolerancePercent))
      return "Cannot run the tolerance analysis: a tolerance must be 0 to 50%.";
  if (s.trials < 1 || s.trials > kMaxTrials)
    return "Cannot run the tolerance analysis: the trials must be 1 to 1,000,000.";
  if (s.firstTrial < 0 || s.firstTrial > kMaxTrials - s.trials)
    return "Cannot run the tolerance analysis: the trials must lie within the first 1,000,000.";
  if (design.freq.empty()) return "Cannot run the tolerance analysis: the sweep has no points.";
  if (!s.mask.passRl && !s.mask.passIl && s.mask.stops.empty())
    return "Cannot run the tolerance analysis: the mask has no check, and every trial would pass "
           "it.";
  // Every sweep point is a point of the run's grid, at its own place after
  // the points below the sweep: a repeated frequency would fall out of the
  // grid and shift the rest.
  const auto notRising = [](float a, float b) { return !(a < b); };
  if (std::adjacent_find(design.freq.begin(), design.freq.end(), notRising) != design.freq.end())
    return "Cannot run the tolerance analysis: the sweep's frequencies must rise, with none "
           "repeated.";
  return LadderFault(design.ladder);
}

// The nominal design: curves, verdict of each check, worst figures.
void Nominal(const Plan& p, ToleranceResult& r) {
  std::vector<double> s21(p.points * kLanes), s11(p.points * kLanes);
  p.batch.Evaluate(UniformBatch(p.design.ladder), 0, p.points, s21.data(), s11.data(),
                   p.setup.path);
  double passS11 = 0, passS21 = kInf, stopS21 = 0;
  for (int i = 0; i < p.points; ++i) {
    const double a = s21[i * kLanes], b = s11[i * kLanes];
    const size_t at = static_cast<size_t>(i - p.sweepFirst);
    if (at < r.freq.size()) {
      r.nominalTransmission[at] = static_cast<float>(TransmissionDbOf(a));
      r.nominalReflection[at] = static_cast<float>(ReflectionDbOf(b));
    }
    for (const auto& [from, to] : p.passSpans)
      if (i >= from && i <= to) passS11 = std::max(passS11, b), passS21 = std::min(passS21, a);
  }
  r.nominalPasses = true;
  for (CheckOutcome& c : r.checks) {
    const MaskCheck& m = c.check;
    double ext = m.kind == CheckKind::Loss ? kInf : 0.0;
    for (int i = m.first; i <= m.last; ++i) {
      const double v = (m.kind == CheckKind::ReturnLoss ? s11 : s21)[i * kLanes];
      ext = m.kind == CheckKind::Loss ? std::min(ext, v) : std::max(ext, v);
    }
    if (Stop(m)) stopS21 = std::max(stopS21, ext);
    c.nominalHolds = m.Holds(ext);
    c.nominalDb = m.Points() == 0                   ? kNaN
                  : m.kind == CheckKind::ReturnLoss ? -ReflectionDbOf(ext)
                                                    : -TransmissionDbOf(ext);
    r.nominalPasses = r.nominalPasses && c.nominalHolds;
  }
  const bool passband = p.passLast >= p.passFirst;
  r.nominalReturnLoss = passband ? -ReflectionDbOf(passS11) : kNaN;
  r.nominalLoss = passband ? -TransmissionDbOf(passS21) : kNaN;
  r.nominalStopAttenuation = p.stopped ? -TransmissionDbOf(stopS21) : kNaN;
}

// Puts the workers' sums together into the result.
void Gather(const Plan& p, const std::vector<WorkerSums>& sums, ToleranceResult& r) {
  for (int i = 0; i < static_cast<int>(r.freq.size()); ++i) {
    double min21 = kInf, max21 = 0, min11 = kInf, max11 = 0;
    for (const WorkerSums& w : sums) {
      for (int k = 0; k < kLanes; ++k) {
        const int at = (i + p.sweepFirst) * kLanes + k;
        min21 = std::min(min21, w.min21[at]), max21 = std::max(max21, w.max21[at]);
        min11 = std::min(min11, w.min11[at]), max11 = std::max(max11, w.max11[at]);
      }
    }
    r.transmissionMin[i] = static_cast<float>(TransmissionDbOf(min21));
    r.transmissionMax[i] = static_cast<float>(TransmissionDbOf(max21));
    r.reflectionMin[i] = static_cast<float>(ReflectionDbOf(min11));
    r.reflectionMax[i] = static_cast<float>(ReflectionDbOf(max11));
  }
  std::vector<int> passed(p.tightened.size() + 1, 0);
  for (const WorkerSums& w : sums) {
    for (size_t c = 0; c < p.checks.size(); ++c) r.checks[c].failures += w.failures[c];
    for (size_t run = 0; run < passed.size(); ++run) passed[run] += w.passed[run];
  }
  r.passed = passed[0];
  r.yield = static_cast<double>(r.passed) / r.trials;
  WilsonInterval(r.passed, r.trials, r.yieldLow, r.yieldHigh);

  if (!p.setup.sensitivity) return;
  const double tight = p.setup.tightenPercent / 100;
  for (size_t i = 0; i < p.parts.size(); ++i) {
    PartSensitivity s{p.parts[i], std::min(tight, p.parts[i].tolerance), r.passed, r.yield};
    const auto run = std::find(p.tightened.begin(), p.tightened.end(), static_cast<int>(i));
    if (run != p.tightened.end()) {
      s.passed = passed[run - p.tightened.begin() + 1];
      s.yield = static_cast<double>(s.passed) / r.trials;
    }
    r.sensitivity.push_back(s);
  }
  std::stable_sort(
      r.sensitivity.begin(), r.sensitivity.end(),
      [](const PartSensitivity& a, const PartSensitivity& b) { return a.passed > b.passed; });
}

}  // namespace

void WilsonInterval(int passed, int trials, double& low, double& high) {
  low = 0, high = 1;
  if (trials <= 0) return;
  const double z = 1.959963984540054;  // two-sided 95%
  const double n = trials, phat = passed / n, z2n = z * z / n;
  const double centre = (phat + z2n / 2) / (1 + z2n);
  const double half = z / (1 + z2n) * std::sqrt(phat * (1 - phat) / n + z2n / (4 * n));
  low = std::max(0.0, centre - half);
  high = std::min(1.0, centre + half);
}

Ladder TrialLadder(const ToleranceDesign& design, const ToleranceSetup& setup, int trial) {
  ToleranceSetup upTo = setup;
  upTo.trials = trial + 1;
  const auto parts = VariedParts(design.ladder, setup.ctolPercent, setup.ltolPercent);
  const BatchValues v = BlockValues(design.ladder, parts, upTo, trial / kLanes, -1, 0);
  Ladder ladder = design.ladder;
  for (int j = 0; j < kComponentSlots; ++j) {
    ladder.L[j] = v.L[j][trial % kLanes];
    ladder.C[j] = v.C[j][trial % kLanes];
  }
  return ladder;
}

EngineReport RunTolerance(const ToleranceDesign& design, const ToleranceSetup& setup,
                          ToleranceResult& result, const ToleranceProgress& progress) {
  if (std::string fault = SetupFault(design, setup); !fault.empty())
    return EngineReport::Fault(std::move(fault));

  const Plan p(design, setup);

  ToleranceResult& r = result;
  r = ToleranceResult{};
  r.trials = setup.trials;
  for (const MaskCheck& c : p.checks) r.checks.push_back({c, 0, true});
  r.freq = design.freq;
  for (auto* curve : {&r.nominalTransmission, &r.nominalReflection, &r.transmissionMin,
                      &r.transmissionMax, &r.reflectionMin, &r.reflectionMax})
    curve->assign(design.freq.size(), 0.0f);
  r.worstReturnLoss.assign(setup.trials, kNaN);
  r.worstLoss.assign(setup.trials, kNaN);
  r.worstStopAttenuation.assign(setup.trials, kNaN);
  Nominal(p, r);

  // Work items: every block of every run, the full run first.
  const int64_t items = static_cast<int64_t>(p.blocks) * (1 + p.tightened.size());
  int threads =
      setup.threads > 0 ? setup.threads : static_cast<int>(std::thread::hardware_concurrency());
  threads = static_cast<int>(std::clamp<int64_t>(threads, 1, items));
  std::atomic<int64_t> next{0}, done{0};
  std::atomic<bool> cancel{false};
  std::vector<WorkerSums> sums;
  sums.reserve(threads);
  for (int t = 0; t < threads; ++t) sums.emplace_back(p);

  auto work = [&](int t) {
    int lastPermille = -1;
    for (int64_t item; !cancel && (item = next++) < items;) {
      const int run = static_cast<int>(item / p.blocks), block = static_cast<int>(item % p.blocks);
      if (run == 0)
        FullBlock(p, block, sums[t], r);
      else
        VerdictBlock(p, run, block, sums[t]);
      const int64_t finished = ++done;
      // The caller's thread reports; the others only count.
      if (t != 0 || !progress) continue;
      const int permille = static_cast<int>(finished * 1000 / items);
      if (permille == lastPermille) continue;
      lastPermille = permille;
      if (!progress(static_cast<double>(finished) / items)) cancel = true;
    }
  };
  std::vector<std::thread> helpers;
  for (int t = 1; t < threads; ++t) helpers.emplace_back(work, t);
  work(0);
  for (std::thread& h : helpers) h.join();

  if (cancel) {
    const std::vector<float> freq = std::move(r.freq);
    r = ToleranceResult{};
    r.freq = freq;
    r.cancelled = true;
    return {};
  }
  Gather(p, sums, r);
  return {};
}

}  // namespace drenik
