#include "analysis/band_frequencies.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/ladder_batch.h"

namespace drenik {

std::vector<float> BandGrid(std::span<const float> sweep, std::span<const Band> bands) {
  std::vector<float> grid(sweep.begin(), sweep.end());
  if (sweep.empty()) return grid;
  const double low = sweep.front(), high = sweep.back();
  double reachLow = low, reachHigh = high;
  std::vector<float> edges;
  for (const Band& b : bands) {
    if (b.upwards) {
      reachLow = std::min(reachLow, b.edge);
      reachHigh = std::max(reachHigh, b.edge * kBandReach);
    } else {
      reachLow = std::min(reachLow, b.edge / kBandReach);
      reachHigh = std::max(reachHigh, b.edge);
    }
    // An edge inside the sweep keeps the sweep's own points there.
    if (b.edge < low || b.edge > high) edges.push_back(static_cast<float>(b.edge));
  }
  const double step = std::exp2(1.0 / kBandPointsPerOctave);
  for (double f = low / step; f > reachLow; f /= step) grid.push_back(static_cast<float>(f));
  for (double f = high * step; f < reachHigh; f *= step) grid.push_back(static_cast<float>(f));
  if (reachLow < low) grid.push_back(static_cast<float>(reachLow));
  if (reachHigh > high) grid.push_back(static_cast<float>(reachHigh));
  grid.insert(grid.end(), edges.begin(), edges.end());
  std::sort(grid.begin(), grid.end());
  grid.erase(std::unique(grid.begin(), grid.end()), grid.end());
  return grid;
}

std::vector<float> InBand(std::span<const float> grid, const Band& band) {
  std::vector<float> in;
  for (float f : grid)
    if (band.upwards ? f >= band.edge : f <= band.edge) in.push_back(f);
  return in;
}

std::vector<float> BandFrequencies(std::span<const float> sweep, const Band& band) {
  return InBand(BandGrid(sweep, std::span(&band, 1)), band);
}

double LeastAttenuation(const Ladder& ladder, std::span<const float> frequencies) {
  if (frequencies.empty()) return std::numeric_limits<double>::quiet_NaN();
  const LadderBatch batch(ladder, frequencies);
  const int n = batch.Points();
  std::vector<double> s21(static_cast<size_t>(n) * kBatchLanes), s11(s21.size());
  batch.Evaluate(UniformBatch(ladder), 0, n, s21.data(), s11.data());
  double most = 0;
  for (int i = 0; i < n; ++i) most = std::max(most, s21[static_cast<size_t>(i) * kBatchLanes]);
  return -TransmissionDbOf(most);
}

}  // namespace drenik
