#pragma once
// One candidate of the search as the rest of the program sees it: its
// record at the value stage the yield is measured at, swept as the display
// page sweeps it; its nominal margins to the mask; the tolerance setup that
// measures it; the command-line words that make it.

#include <string>
#include <vector>

#include "core/design_record.h"
#include "core/engine_report.h"
#include "synth/synth.h"
#include "tolerance/tolerance.h"

namespace drenik {

// The build's part models written into a designed record, as the display
// page's "Part models" and the command line's options set them.
void ApplyBuild(const SynthBuild& build, DesignRecord& d);

// The candidate's record as `drenik design` leaves it for its choices with
// the build's part models: the exact values (`--values exact`), or with
// stock parts the chooser's for the request's mask (`--values chosen`, as
// `drenik tolerance` chooses them when given that mask); the display
// page's sweep analysed.
[[nodiscard]] EngineReport SynthRecord(const SynthRequest& request, const DesignChoice& choice,
                                       DesignRecord& d);

// The Monte Carlo setup that measures a candidate's yield: the build's
// tolerances, the request's mask and seed, no sensitivity runs.
ToleranceSetup SynthSetup(const SynthRequest& request, int trials);

// A nominal design's worst-case margins to the mask, dB (positive: inside
// it): over the passband checks and over the stopband checks; +infinity
// for a side the mask does not check.
struct Margins {
  double pass = 0, stop = 0;
  double Worst() const { return pass < stop ? pass : stop; }
};
Margins NominalMargins(const ToleranceDesign& design, const Mask& mask);

// The command-line words of a choice: family, order, topology, the ripple
// and depth its family takes, the impedance, the cutoff (or a band's centre
// and width); with stock parts the value stage and the series.
std::vector<std::string> ChoiceWords(const DesignChoice& choice, const SynthBuild& build);

// The inductors and capacitors the ladder is built from.
void CountParts(const DesignRecord& d, int& inductors, int& capacitors);

}  // namespace drenik
