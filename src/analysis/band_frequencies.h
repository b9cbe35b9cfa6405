#pragma once
// The frequencies at which a band of a response is judged. The ladder can be
// evaluated anywhere, so a band is never judged by whether the display
// sweep happens to reach it: where the sweep covers the band its own points
// are used (a band inside the sweep is judged as the display page shows
// it), and where the band reaches past the sweep, points go on beyond it,
// kBandPointsPerOctave of them, out to kBandReach times the band's edge (or
// its edge divided by that for a band that runs downwards). The last
// minimum of an elliptic stopband lies at most 3.8 times its edge (order 7,
// 60 dB), and the spacing finds each minimum to within 0.001 dB; the band's
// edge itself is always a point.

#include <span>
#include <vector>

#include "analysis/ladder.h"

namespace drenik {

inline constexpr double kBandReach = 8;
inline constexpr int kBandPointsPerOctave = 32;

// A band from its edge upwards (a lowpass stopband, a highpass passband) or
// downwards towards 0 Hz (a lowpass passband, a highpass stopband).
struct Band {
  double edge = 0;  // Hz, finite and above 0
  bool upwards = false;
};

// The bands a lowpass or highpass judges: the passband from the cutoff, the
// stopband from its edge.
inline Band Passband(double cutoff, bool highpass) {
  return {cutoff, highpass};
}
inline Band Stopband(double edge, bool highpass) {
  return {edge, !highpass};
}

// The ascending frequencies (Hz) that judge all the bands at once: the
// sweep (ascending), with the points the bands need below and above it.
std::vector<float> BandGrid(std::span<const float> sweep, std::span<const Band> bands);

// The points of a grid that lie in a band.
std::vector<float> InBand(std::span<const float> grid, const Band& band);

// One band's own frequencies: InBand(BandGrid(sweep, {band}), band).
std::vector<float> BandFrequencies(std::span<const float> sweep, const Band& band);

// The least attenuation (dB, positive) of the ladder over the frequencies,
// through the ladder kernel; NaN when there are none.
double LeastAttenuation(const Ladder& ladder, std::span<const float> frequencies);

}  // namespace drenik
