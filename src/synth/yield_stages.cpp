#include "synth/yield_stages.h"

#include <algorithm>

namespace drenik {

std::vector<int> YieldStages(int trials) {
  // About five times more at each stage: a candidate far from the target
  // is settled by the first, one near it costs little more than its last.
  std::vector<int> stages;
  for (int n : {200, 1000, 5000})
    if (n < trials) stages.push_back(n);
  stages.push_back(trials);
  return stages;
}

EngineReport MeasureYield(const ToleranceDesign& design, ToleranceSetup setup, int trials,
                          double target, bool whole, YieldMeasure& m, long& spent) {
  for (int n : YieldStages(trials)) {
    if (n <= m.trials) continue;
    if (m.trials > 0 && m.high < target) break;
    if (m.trials > 0 && !whole && m.low >= target) break;
    setup.trials = n;
    ToleranceResult r;
    if (EngineReport report = RunTolerance(design, setup, r); !report.Ok()) return report;
    spent += n;
    m = {r.trials, r.passed, r.yield, r.yieldLow, r.yieldHigh};
  }
  return {};
}

}  // namespace drenik
