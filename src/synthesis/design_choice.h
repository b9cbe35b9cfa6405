#pragma once
// A design from plain values, without the pages: the prototype of a family
// at any order, ripple and depth it takes, scaled into the ladder of a
// topology. What the design page's redesign chain computes, for callers that
// try many designs (a search over orders, ripples and band edges) and need
// no controls, drawing or sweep.

#include <string>

#include "core/design_record.h"
#include "core/engine_report.h"
#include "synthesis/families.h"

namespace drenik {

struct DesignChoice {
  int16_t family = kChebyshev;
  int order = 5;
  double ripple = 0.044;  // dB, for a family with a passband ripple
  double depth = 40;      // dB, for a family with a stopband depth
  std::string topology = "Cinlowpass";
  double width = 4.2e6;   // Hz: the cutoff, or a band's width f2 - f1
  double center = 0;      // Hz: a band's geometric centre
  double rsource = 50;    // ohms
  double resonatorL = 0;  // H, a coupled bandpass's resonators; 0 for the design's own
};

// Why the family does not take the choice's order, ripple or depth (one
// line naming the value and the family's range), or empty.
std::string ChoiceFault(const DesignChoice& c);

// Fills `d` afresh with the prototype (G, H, Apass, Astop, CauerFlag,
// RloadNormalized, FstopNormalized) and the ladder (Omega, ElementType, L,
// C, Rload, Stages) of the choice. A fault when the family, the topology or
// the values are not ones the program designs, or the engine refused.
EngineReport DesignInto(const DesignChoice& c, DesignRecord& d);

}  // namespace drenik
