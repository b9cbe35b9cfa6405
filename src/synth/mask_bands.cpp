#include "synth/mask_bands.h"

#include <algorithm>
#include <limits>

namespace drenik {

Bands BandsOfMask(const Mask& mask, bool highpass) {
  constexpr double kBeyond = std::numeric_limits<double>::infinity();
  Bands b;
  b.highpass = highpass;
  b.cutoff = mask.passEdge;
  if (mask.passStart > 0 || mask.passResume > 0) {
    b.band = true;
    b.bandstop = mask.passResume > 0;
    b.f1 = b.bandstop ? mask.passEdge : mask.passStart;
    b.f2 = b.bandstop ? mask.passResume : mask.passEdge;
  }
  // Lowpass: the stopband from the lowest stop frequency; highpass: to the
  // highest. A bandpass's skirts: up to the highest check below it, from
  // the lowest above it; a bandstop's notch: from the lowest start to the
  // highest end.
  double below = 0, above = kBeyond;
  for (const StopCheck& s : mask.stops) {
    if (b.bandstop) {
      above = above == kBeyond ? s.frequency : std::min(above, s.frequency);
      below = std::max(below, s.to > 0 ? s.to : s.frequency);
    } else if (s.below || (highpass && !b.band)) {
      below = std::max(below, s.to > 0 ? s.to : s.frequency);
    } else {
      above = std::min(above, s.frequency);
    }
  }
  if (b.bandstop) {
    b.stopLow = above, b.stopHigh = below;
  } else if (b.band) {
    b.stopLow = below, b.stopHigh = above;
  } else {
    b.stopEdge = highpass ? below : above;
    // No check on the stopband's side: an octave out, as for a design
    // without a stopband edge.
    if (!(b.stopEdge > 0) || b.stopEdge == kBeyond)
      b.stopEdge = highpass ? b.cutoff / 2 : b.cutoff * 2;
  }
  return b;
}

}  // namespace drenik
