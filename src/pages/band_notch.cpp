#include "pages/band_notch.h"

#include <cmath>
#include <cstdio>

#include "analysis/sweep.h"
#include "core/formatters.h"
#include "pages/display_page.h"
#include "parts/figures.h"
#include "synthesis/design_edges.h"

namespace drenik {

std::optional<BandNotch> NotchOf(const DesignRecord& analysed) {
  const Bands bands = BandsOf(analysed);
  if (!bands.band || !bands.bandstop) return std::nullopt;
  const double depth = FiguresOf(analysed, bands).stopband;
  if (!std::isfinite(depth)) return std::nullopt;
  return BandNotch{bands.stopLow, bands.stopHigh, depth};
}

std::optional<BandNotch> NotchOfDesign(const DesignRecord& d) {
  if (!BandsOf(d).bandstop) return std::nullopt;
  DesignRecord copy = d;
  SetDisplaySweep(copy);
  if (!AnalyzeSweep(copy).Ok()) return std::nullopt;
  return NotchOf(copy);
}

std::string NotchText(const BandNotch& notch) {
  char depth[32];
  std::snprintf(depth, sizeof depth, "%.1f", notch.depth);
  return std::string("notch ") + depth + " dB from " + TrimBlanks(FormatFrequency(notch.from)) +
         " to " + TrimBlanks(FormatFrequency(notch.to));
}

}  // namespace drenik
