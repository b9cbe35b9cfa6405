#pragma once
// Normalized lowpass prototypes: a ladder between a 1-ohm source and the
// normalized load, cutoff 1 rad/s. Each routine clears G(1..20) and H(1..20)
// and writes G, H, Apass, Astop, CauerFlag and RloadNormalized.

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

// 3 dB cutoff. Apass = Astop = 0.
void Butterworth(DesignRecord& d);
// Ripple cutoff at Apass dB; even orders end in RloadNormalized < 1.
void Chebyshev(DesignRecord& d);
// Table for orders 3..7 (3 dB cutoff); sets Rload = Rsource itself.
void Bessel(DesignRecord& d);
// The fixed fifth-order design with two resonant series arms.
void Zelmar(DesignRecord& d);
// Elliptic prototype from Order, Apass, Astop and CauerType. An Order below 3
// shows "The Cauer family requires a minimum order of three" and computes
// nothing.
void Cauer(DesignRecord& d, Platform& platform);

// Runs the prototype routine of d.Family (1..5); any other code does nothing.
void DesignPrototype(DesignRecord& d, Platform& platform);

}  // namespace drenik
