#include "pages/resonance_column.h"

#include <algorithm>
#include <cmath>

#include "analysis/part_resonances.h"
#include "pages/band_schematic.h"

namespace drenik {

namespace {

constexpr float kTop = 950;
// A ladder drawn in slots: down to the VSWR plot's heading (its white box
// starts at y = 3440).
constexpr float kBottom = 3400;

// The inductors with a self-resonance.
int Lines(const DesignRecord& d) {
  const std::vector<float> hertz = InductorResonances(d);
  return static_cast<int>(std::ranges::count_if(hertz, [](float f) { return f > 0; }));
}

// Each column's lines stand under the heading's.
int Columns(int lines, float bottom) {
  const int perColumn = std::max(1, static_cast<int>((bottom - kTop) / kResonanceLine) - 1);
  return (lines + perColumn - 1) / perColumn;
}

}  // namespace

// The list stands 150 right of the ladder. (The band ladders of the design
// page's orders end left of x = 10300, so they never give way to it.)
float SlotLadderRight(const DesignRecord& d) {
  const int lines = Lines(d);
  if (lines == 0) return kPageWidth;
  return kResonanceRight - 150 - static_cast<float>(Columns(lines, kBottom)) * kResonanceColumn;
}

ResonanceColumns ResonanceColumnsOf(const DesignRecord& d) {
  const int lines = Lines(d);
  if (!DrawsAsBand(d)) return {9900, kTop, 2650, Columns(lines, 2650)};
  const BandLayout band = LayOutBandLadder(d);
  const float right = SlotLadderRight(d);
  const float left = std::min(std::max(9900.f, BandLadderRight(band, right) + 150), right + 150);
  return {left, kTop, kBottom, Columns(lines, kBottom)};
}

}  // namespace drenik
