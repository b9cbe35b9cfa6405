#pragma once
// The figures of a tolerance run as the page and the command line word
// them, and the bins of its histograms.

#include <span>
#include <string>
#include <vector>

#include "tolerance/tolerance.h"

namespace drenik {

// "71.3%".
std::string PercentText(double fraction);
// "71.3% (1426 of 2000)".
std::string YieldText(const ToleranceResult& r);
// "95% interval 69.3% to 73.2%".
std::string IntervalText(const ToleranceResult& r);
// "1.2nF" or "4.7uH" as the schematic writes the part.
std::string PartValueText(const VariedPart& part);
// A tolerance as a percentage: "5%" for 0.05.
std::string ToleranceText(double fraction);
// The sensitivity table's gain over the run's yield in percentage points:
// "+4.7", "-0.1", "+0.0".
std::string GainText(const PartSensitivity& s, const ToleranceResult& r);
// "held at nominal" or "at 2%".
std::string TightenedText(const PartSensitivity& s);
// "C3 matters most: C3 held at nominal raises the yield from 71.3% to
// 94.0%." (or that no part's tightening changes the yield).
std::string SensitivitySentence(const ToleranceResult& r);

// Equal bins over the finite values, edges on whole multiples of the width.
struct Histogram {
  double low = 0;    // left edge of the first bin
  double width = 0;  // of each bin
  std::vector<int> counts;
  int Most() const;
};
// About `bins` bins of a 1-2-5 width; values that are not finite are left
// out. No values: no bins.
Histogram MakeHistogram(std::span<const float> values, int bins);

}  // namespace drenik
