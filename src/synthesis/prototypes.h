#pragma once
// Normalized lowpass prototypes: a ladder between a 1-ohm source and the
// normalized load, cutoff 1 rad/s. Each routine clears G(1..20) and H(1..20)
// and writes G, H, Apass, Astop, CauerFlag and RloadNormalized. The family
// registry (families.h) says which routine belongs to which family; a fault
// (an order beyond the arrays, a ripple that cannot be designed) comes back
// in the report, with the arrays as far as they were written.

#include "core/design_record.h"
#include "core/engine_report.h"

namespace drenik {

// Maximally flat magnitude, 3 dB cutoff: g(j) = 2 sin((2j - 1) pi / 2n).
// Apass = Astop = 0.
EngineReport MaximallyFlatPrototype(DesignRecord& d);
// Equal ripple of Apass dB up to the cutoff; even orders end in
// RloadNormalized < 1.
EngineReport EqualRipplePrototype(DesignRecord& d);
// Elliptic, from Order, Apass, Astop and CauerType (cauer.h). An Order below
// 3 computes nothing and reports the notice "The Cauer family requires a
// minimum order of three".
EngineReport EllipticPrototype(DesignRecord& d);
// The fixed fifth-order table with two resonant series arms (any Order).
EngineReport ZelmarPrototype(DesignRecord& d);
// Maximally flat delay (3 dB cutoff): tabulated for orders 3..7, fitted to
// the poles of the Bessel polynomial for orders 2 and 8..15 (all_pole.h);
// any other order gives an all-zero prototype. Sets Rload = Rsource itself.
EngineReport LinearPhasePrototype(DesignRecord& d);
// The steepest monotonic response of its order (Legendre, optimum L), 3 dB
// cutoff, equal terminations, orders 2..15: Darlington's synthesis from
// |H|^2 = 1 / (1 + L_n(w^2)), fitted to the poles.
EngineReport OptimumMonotonicPrototype(DesignRecord& d);

}  // namespace drenik
