#include "analysis/band_figures.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/ladder.h"

namespace drenik {

double LeastAttenuation(const DesignRecord& d, std::span<const double> frequencies) {
  double least = std::numeric_limits<double>::quiet_NaN();
  const Ladder ladder = LadderOf(d);
  if (!LadderFault(ladder).empty()) return least;
  for (double f : frequencies) {
    const double a = -AnalyzePoint(ladder, static_cast<float>(f), 0, 0, false).TransmissionDb;
    least = std::isnan(least) ? a : std::min(least, a);
  }
  return least;
}

}  // namespace drenik
