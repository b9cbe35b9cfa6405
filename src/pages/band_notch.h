#pragma once
// Where a bandstop reaches its depth. Its response falls from the band edges
// f1 and f2 (where the family's cutoff label says) and reaches its stopband
// only between the stop edges inside them, at the lowpass frequency a
// stopband starts at (a Cauer design's edge, else twice the cutoff): an FM
// notch of 88-108 MHz is 30 dB deep only from about 92.9 to 102.9 MHz.

#include <optional>
#include <string>

#include "core/design_record.h"

namespace drenik {

struct BandNotch {
  double from = 0, to = 0;  // the stop edges, Hz
  double depth = 0;         // the least attenuation between them, dB
};

// From a record analysed over the display sweep with the values it holds:
// the figure the command line's design table gives for them. Nothing for a
// design that is not a bandstop, or without sweep points in its notch.
std::optional<BandNotch> NotchOf(const DesignRecord& analysed);
// The same for a design the display page has not analysed yet (the design
// page's exact values): analysed on a copy over the sweep that page makes.
std::optional<BandNotch> NotchOfDesign(const DesignRecord& d);

// "notch 31.3 dB from 92.878MHz to 102.88MHz"
std::string NotchText(const BandNotch& notch);

}  // namespace drenik
