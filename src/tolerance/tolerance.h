#pragma once
// Monte Carlo tolerance analysis: will the filter meet its mask when it is
// built from real parts? Every trial multiplies each inductor and capacitor
// of the ladder independently by (1 + tol u), u drawn from the chosen
// distribution; terminations and Q stay as they are. Each trial is swept
// over the display page's frequencies with the shared ladder models and
// checked against the mask. The run reports the yield with its 95% interval,
// the failures of each check, the envelope of all trials, the worst passband
// return loss and stopband attenuation of each trial, and how much each part
// drives the failures.
//
// Sensitivity: for each part, the run is repeated with the same random
// numbers but that part alone at a tighter tolerance (by default exact, its
// nominal value); the yield it then reaches ranks the parts. "C3 at 2%
// raises the yield from 71% to 94%" reads straight off it.
//
// The result does not depend on the number of threads or on the vector
// unit: each trial's numbers come from (seed, trial, part) alone, and the
// lanes of the batch kernel give the bits of plain doubles.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "analysis/ladder.h"
#include "analysis/ladder_batch.h"
#include "core/design_record.h"
#include "core/engine_report.h"
#include "tolerance/mask.h"
#include "tolerance/trial_draws.h"

namespace drenik {

inline constexpr double kMaxTolerancePercent = 50;
inline constexpr int kMaxTrials = 1000000;
inline constexpr int kDefaultTrials = 2000;

// The design at one value stage, as the display page holds it after its
// analysis.
struct ToleranceDesign {
  Ladder ladder;
  std::vector<float> freq;  // the sweep, Hz, ascending
  bool highpass = false;
  double cutoff = 0;  // Width, Hz
  // A Cauer design's stopband edge (Hz) and depth (dB); 0 for the others.
  double stopEdge = 0, stopDepth = 0;
  // A band design's edges (synthesis/design_edges.h).
  bool band = false, bandstop = false;
  double f1 = 0, f2 = 0, stopLow = 0, stopHigh = 0;
};

// The record's ladder and sweep (points 0..NrIntervals), reflection referred
// to Rsource as the sweep refers it.
ToleranceDesign ToleranceDesignOf(const DesignRecord& d);

// The margins of the default mask below the nominal design's own figures,
// dB: the return loss and stopband attenuation less kMaskMarginDb, the loss
// plus kLossMarginDb.
inline constexpr double kMaskMarginDb = 3;
inline constexpr double kLossMarginDb = 1;

// The mask when the user gives none, from the nominal design's response:
// the passband to the cutoff (or to passEdge, Hz, when above 0); a return
// loss kMaskMarginDb under the nominal worst there (rounded down to 0.1 dB)
// where that leaves at least 3 dB, else a loss kLossMarginDb over the
// nominal worst (rounded up to 0.1 dB); from a Cauer design's stopband edge,
// for the others from twice the cutoff (to half of it for a highpass), the
// nominal least attenuation there less kMaskMarginDb, rounded down to a
// whole dB. A broken nominal design (one the analysis refuses, a
// self-resonance in its passband) can leave it no check at all; `none`,
// when given, then says why, and is empty otherwise.
Mask DefaultMask(const ToleranceDesign& design, double passEdge = 0, std::string* none = nullptr);

struct ToleranceSetup {
  double ctolPercent = 5;  // capacitors, +-%
  double ltolPercent = 5;  // inductors, +-%
  Distribution distribution = Distribution::Uniform;
  int trials = kDefaultTrials;
  uint64_t seed = 1;
  // The number of the first trial: a run that goes on from an earlier one
  // of `firstTrial` trials draws the parts the longer run would, so the two
  // together count as that run.
  int firstTrial = 0;
  Mask mask;
  // Sensitivity: the tolerance (%) one part at a time is tightened to; 0
  // holds it at its nominal value.
  bool sensitivity = true;
  double tightenPercent = 0;
  int threads = 0;  // 0: one per processor core
  BatchPath path = BatchPath::Vector;
};

// A part that varies: the inductor or capacitor of one ladder position.
struct VariedPart {
  int position = 0;
  bool capacitor = false;
  double value = 0;      // nominal, H or F
  double tolerance = 0;  // fraction (0.05 for 5%)
  std::string Name() const { return (capacitor ? "C" : "L") + std::to_string(position); }
};

// The parts the trials vary: every non-zero L and C that its position's
// model uses, source side first, inductor before capacitor.
std::vector<VariedPart> VariedParts(const Ladder& ladder, double ctolPercent, double ltolPercent);

struct CheckOutcome {
  MaskCheck check;
  int failures = 0;  // trials that break it
  bool nominalHolds = true;
  // The nominal design's worst over the check's points, dB (positive): the
  // least return loss or attenuation, the most loss. NaN without points.
  double nominalDb = 0;
};

struct PartSensitivity {
  VariedPart part;
  double tightenedTo = 0;  // fraction
  int passed = 0;          // trials that pass with the part tightened
  double yield = 0;
};

struct ToleranceResult {
  int trials = 0;
  int passed = 0;
  double yield = 0;                    // 0..1
  double yieldLow = 0, yieldHigh = 0;  // 95% Wilson interval
  bool nominalPasses = false;
  bool cancelled = false;
  std::vector<CheckOutcome> checks;
  // Per point: the nominal design and the envelope of the trials, dB.
  std::vector<float> freq;
  std::vector<float> nominalTransmission, nominalReflection;
  std::vector<float> transmissionMin, transmissionMax, reflectionMin, reflectionMax;
  // Per trial (NaN where the sweep has no passband or stopband points):
  // worst passband return loss, worst passband loss and worst stopband
  // attenuation, dB (positive). The stopband is every point that any
  // stopband check covers.
  std::vector<float> worstReturnLoss, worstLoss, worstStopAttenuation;
  float nominalReturnLoss = 0, nominalLoss = 0, nominalStopAttenuation = 0;
  // The parts, the one whose tightening gains the most yield first.
  std::vector<PartSensitivity> sensitivity;
};

// Called now and then with the share of the work done (0..1); returning
// false cancels the run (the result then says so and holds no figures).
using ToleranceProgress = std::function<bool(double done)>;

// Faults: a tolerance outside 0..50%, a trial count outside 1..1,000,000, a
// ladder the kernel cannot solve, a sweep without points or with a repeated
// frequency, a mask without a check (against which every trial would pass).
[[nodiscard]] EngineReport RunTolerance(const ToleranceDesign& design, const ToleranceSetup& setup,
                                        ToleranceResult& result,
                                        const ToleranceProgress& progress = {});

// The ladder of one trial (0-based), as the run evaluates it.
Ladder TrialLadder(const ToleranceDesign& design, const ToleranceSetup& setup, int trial);

// The 95% Wilson score interval of a yield of passed out of trials.
void WilsonInterval(int passed, int trials, double& low, double& high);

}  // namespace drenik
