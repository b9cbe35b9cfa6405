#include "tolerance/tolerance_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/formatters.h"

namespace drenik {

std::string PercentText(double fraction) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f%%", 100 * fraction);
  return text;
}

std::string YieldText(const ToleranceResult& r) {
  return PercentText(r.yield) + " (" + std::to_string(r.passed) + " of " +
         std::to_string(r.trials) + ")";
}

std::string IntervalText(const ToleranceResult& r) {
  return "95% interval " + PercentText(r.yieldLow) + " to " + PercentText(r.yieldHigh);
}

std::string PartValueText(const VariedPart& part) {
  return TrimBlanks(part.capacitor ? FormatCapacitance(part.value) : FormatInductance(part.value));
}

std::string ToleranceText(double fraction) {
  char text[32];
  std::snprintf(text, sizeof text, "%g%%", 100 * fraction);
  return text;
}

std::string GainText(const PartSensitivity& s, const ToleranceResult& r) {
  // Rounded first, so that a hair under zero reads +0.0, not -0.0.
  char text[32];
  std::snprintf(text, sizeof text, "%+.1f", std::round(1000 * (s.yield - r.yield)) / 10 + 0.0);
  return text;
}

std::string TightenedText(const PartSensitivity& s) {
  return s.tightenedTo == 0 ? "held at nominal" : "at " + ToleranceText(s.tightenedTo);
}

std::string SensitivitySentence(const ToleranceResult& r) {
  if (r.sensitivity.empty()) return {};
  const PartSensitivity& top = r.sensitivity.front();
  if (top.passed == r.passed) return "Tightening any one part alone leaves the yield as it is.";
  const std::string name = top.part.Name();
  return name + " matters most: " + name + " " + TightenedText(top) +
         (top.passed > r.passed ? " raises" : " changes") + " the yield from " +
         PercentText(r.yield) + " to " + PercentText(top.yield) + ".";
}

int Histogram::Most() const {
  return counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
}

Histogram MakeHistogram(std::span<const float> values, int bins) {
  Histogram h;
  double lo = INFINITY, hi = -INFINITY;
  for (float v : values) {
    if (!std::isfinite(v)) continue;
    lo = std::min<double>(lo, v), hi = std::max<double>(hi, v);
  }
  if (!(lo <= hi) || bins < 1) return h;
  // The smallest 1-2-5 width that covers the span in `bins` bins.
  const double span = std::max(hi - lo, 1e-6);
  const double decade = std::pow(10.0, std::floor(std::log10(span / bins)));
  for (double step : {1.0, 2.0, 5.0, 10.0}) {
    h.width = step * decade;
    if (span / h.width <= bins) break;
  }
  h.low = std::floor(lo / h.width) * h.width;
  const int n = static_cast<int>(std::floor((hi - h.low) / h.width)) + 1;
  h.counts.assign(n, 0);
  for (float v : values) {
    if (!std::isfinite(v)) continue;
    const int bin = static_cast<int>(std::floor((v - h.low) / h.width));
    ++h.counts[std::clamp(bin, 0, n - 1)];
  }
  return h;
}

}  // namespace drenik
