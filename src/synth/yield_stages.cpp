#include "synth/yield_stages.h"

#include <algorithm>

namespace drenik {

std::vector<int> YieldStages(int trials) {
  // A candidate far from the target is settled by the first stage, most
  // of the others by the second; one near it costs little more than its
  // last.
  std::vector<int> stages;
  for (int n : {200, 1000})
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
    // Only the trials the last stage did not run.
    setup.firstTrial = m.trials;
    setup.trials = n - m.trials;
    ToleranceResult r;
    if (EngineReport report = RunTolerance(design, setup, r); !report.Ok()) return report;
    spent += setup.trials;
    m.trials = n, m.passed += r.passed;
    m.yield = static_cast<double>(m.passed) / n;
    WilsonInterval(m.passed, n, m.low, m.high);
  }
  return {};
}

}  // namespace drenik
