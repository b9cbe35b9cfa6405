#pragma once
// A mask's bands in the stock-part chooser's terms, so that the chooser
// keeps what the mask asks (its passband's return loss, its stopbands'
// depth) rather than the designed response as a whole.

#include "parts/figures.h"
#include "tolerance/mask.h"

namespace drenik {

// The passband to (or from) the pass edge, a bandpass's between its edges,
// a bandstop's outside them; the stopband from the nearest stop check on
// each side. A side the mask does not check lies beyond every frequency.
Bands BandsOfMask(const Mask& mask, bool highpass);

}  // namespace drenik
