#pragma once
// Design from a mask: the user says what the filter must do when built, and
// the search finds the simplest design that still does it.
//
// For each allowed family and topology the search bounds the lowest order
// that meets the mask with nominal values (the elliptic degree equation, the
// Chebyshev and Butterworth order formulas, a search for the families
// without one), centres each candidate in the mask (ripple, Cauer depth,
// where the cutoff or the band sits between the pass and stop edges: the
// largest worst-case margin on every side), screens the candidates
// nominally, and measures the yield of the promising ones by Monte Carlo
// with trials added sequentially (few first, more near the target). The
// order rises where the target is not met. The candidates are ranked by the
// preference; the chosen one is the simplest that meets the target yield.
//
// The yield of a candidate is what `drenik tolerance` measures for the same
// choices, mask, tolerances and part models: its exact values, or with stock
// parts the chooser's values for this mask.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/design_record.h"
#include "core/engine_report.h"
#include "parts/chooser.h"
#include "synthesis/design_choice.h"
#include "tolerance/mask.h"
#include "tolerance/trial_draws.h"

namespace drenik {

enum class SynthResponse { Lowpass, Highpass, Bandpass, Bandstop };

// What "simplest" means when candidates meet the target yield.
enum class SynthPreference {
  Parts,      // fewest parts, then fewest inductors, then the widest margin
  Inductors,  // fewest inductors, then fewest parts, then the widest margin
  Margin,     // the widest worst-case margin, then fewest parts
};

// How the filter is built.
struct SynthBuild {
  double ctolPercent = 5;  // capacitors, +-%
  double ltolPercent = 5;  // inductors, +-%
  Distribution distribution = Distribution::Uniform;
  // The part models, as the record keeps them: inductor Q (kInfiniteQind for
  // an ideal inductor) and its law, capacitor Q, winding capacitance (F) and
  // capacitor ESL (H).
  float qind = kInfiniteQind;
  QLaw qLaw = QLaw::Constant;
  float capacitorQ = kInfiniteQcap;
  float windingCapacitance = 0;
  float capacitorEsl = 0;
  // Stock parts: the chooser picks each candidate's values for the mask.
  // Nothing: the exact values.
  std::optional<PartsRequest> parts;
};

struct SynthGoal {
  double yieldPercent = 99;
  SynthPreference prefer = SynthPreference::Parts;
  // The search space: family codes and topology names (empty: every family
  // that takes an order, every topology of the response) and the highest
  // order tried.
  std::vector<int16_t> families;
  std::vector<std::string> topologies;
  int maxOrder = 15;
  // The most trials a candidate's yield gets; the chosen one always gets
  // them all.
  int trials = 10000;
  uint64_t seed = 1;
  int threads = 0;  // 0: one per processor core
};

struct SynthRequest {
  SynthResponse response = SynthResponse::Lowpass;
  double rsource = 50;  // ohms, both terminations
  // The mask in the tolerance command's terms: a lowpass's or highpass's
  // pass edge, a bandpass's two edges (passStart, passEdge), a bandstop's two
  // (passEdge, passResume), the pass limits and the stopband checks.
  Mask mask;
  SynthBuild build;
  SynthGoal goal;
};

struct SynthCandidate {
  DesignChoice choice;
  // The command-line words that make this design in any other command, e.g.
  // {"--family", "cauer", "--order", "7", ...}: no value stage unless stock
  // parts were asked for (then "--values", "chosen" and the series options).
  std::vector<std::string> words;
  int inductors = 0, capacitors = 0;
  // The nominal design's worst-case margins to the mask, dB: passband (the
  // return loss or loss limit) and stopband (the least over the stop checks).
  double marginPassDb = 0, marginStopDb = 0;
  int trials = 0, passed = 0;          // 0 trials: screened out nominally
  double yield = 0;                    // 0..1
  double yieldLow = 0, yieldHigh = 0;  // 95% Wilson interval
  bool meetsTarget = false;
};

struct SynthResult {
  // Ranked by the preference: the chosen candidate first when there is one.
  std::vector<SynthCandidate> candidates;
  int chosen = -1;  // index into candidates; -1 when none meets the target
  // When none does: one line naming what fails, e.g. that no design up to
  // order 15 gives 80 dB at 14.4MHz with a pass edge at 14.35MHz.
  std::string failure;
  bool cancelled = false;
};

// Called now and then with the share of the search done (0..1); returning
// false cancels it.
using SynthProgress = std::function<bool(double done)>;

// Why the request cannot be searched, in one line naming the command line's
// option (a missing `--pass-edge`, a band response with one edge, a mask
// that contradicts itself, a tolerance or yield out of range); empty when it
// can be.
std::string SynthRequestFault(const SynthRequest& request);

// The search. Faults: those of SynthRequestFault. A search that finds no
// candidate meeting the target is no fault: the result's chosen is -1.
[[nodiscard]] EngineReport RunSynth(const SynthRequest& request, SynthResult& result,
                                    const SynthProgress& progress = {});

}  // namespace drenik
