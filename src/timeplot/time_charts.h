#pragma once
// A chart of responses over time: frame, grid, time labels with their unit,
// value labels and one curve per stage in its colour.

#include <cstdint>
#include <string>
#include <vector>

#include "plot/canvas.h"

namespace drenik {

struct ChartBox {
  float left, top, right, bottom;  // page units
};

struct TimeCurve {
  const std::vector<double>* t;  // s
  const std::vector<double>* y;
  int32_t color;
};

// `scale` divides every value (1 for the step; the impulse's peak to draw
// it relative to that). The time axis runs to the longest curve's end.
void DrawTimeChart(Canvas& canvas, const ChartBox& box, const std::string& title,
                   const std::vector<TimeCurve>& curves, double scale);

// A time with a unit prefix, four digits ("83.45 ns"); "-" for none.
std::string SecondsText(double s);

// 1, 2 or 5 times a power of ten, at least `span` / `divisions`.
double NiceStep(double span, int divisions);

}  // namespace drenik
