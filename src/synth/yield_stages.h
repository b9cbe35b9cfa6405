#pragma once
// A candidate's yield measured in stages: a few hundred trials first, more
// only while the 95% interval still straddles the target, all of them for a
// candidate that may be chosen. Each stage runs on from the trials of the
// last (each trial's parts come from the seed and its number alone), so
// the last stage's figure is what `drenik tolerance` gives at that number
// of trials, and costs no more.

#include <vector>

#include "core/engine_report.h"
#include "tolerance/tolerance.h"

namespace drenik {

struct YieldMeasure {
  int trials = 0, passed = 0;
  double yield = 0, low = 0, high = 0;
};

// The trial counts of the stages up to `trials`, ascending.
std::vector<int> YieldStages(int trials);

// Runs the stages after the one `m` holds until the interval lies wholly
// below the target (a share 0..1), or, unless `whole`, wholly above it;
// `whole` runs on to the last. `spent` adds the trials run.
[[nodiscard]] EngineReport MeasureYield(const ToleranceDesign& design, ToleranceSetup setup,
                                        int trials, double target, bool whole, YieldMeasure& m,
                                        long& spent);

}  // namespace drenik
