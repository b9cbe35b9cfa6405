#pragma once
// Bandpass and bandstop ladders from the lowpass prototype.
//
// The band is given by its geometric centre f0 = sqrt(f1 f2) (Center) and
// its width BW = f2 - f1 (Width), both in hertz; the edges are where the
// family's cutoff label says (3 dB, the ripple edge, 0.2 dB). The direct
// transforms map the lowpass ladder of the same input form element by
// element: in a bandpass a series inductor becomes a series L-C branch and a
// shunt capacitor a shunt tank; in a bandstop a series inductor becomes a
// series tank and a shunt capacitor a shunt L-C branch to ground. A resonant
// arm of a Cauer or Zelmar prototype becomes two resonators tuned to the two
// transmission zeros either side of the band, taking two ladder positions.
//
// The coupled-resonator bandpass is the practical form for narrow bands:
// shunt tanks of one inductance coupled by series capacitors.

#include <string>

#include "core/design_record.h"
#include "core/engine_report.h"

namespace drenik {

// The band edges of a design, Hz: f1 = -BW/2 + sqrt(BW^2/4 + f0^2) and
// f2 = f1 + BW.
struct BandEdges {
  double f1 = 0, f2 = 0;
};
BandEdges EdgesOfBand(double center, double width);

// The display sweep runs from f0 / k to f0 k, with k chosen so that the
// lowpass frequency the band maps to reaches `lowpassEnd` at both ends (5 by
// default: the lowpass sweep runs from a fifth of the cutoff to five times
// it).
double BandSweepFactor(double center, double width, double lowpassEnd = 5);

// The narrowest band designed, as a share of its centre (0.01 %). The
// display sweep's 1001 points span about five bandwidths, and a 32-bit
// frequency resolves about 6e-8 of the centre: here the points are still
// four or more float steps apart; much narrower they repeat, and the
// resonators' stored values detune them by a sizeable part of the band.
// No LC ladder comes near (inductor Q is 100 to 300).
inline constexpr double kLeastFractionalBandwidth = 1e-4;

// Whether the width is under kLeastFractionalBandwidth of the centre.
bool BandTooNarrow(double center, double width);

// Why a band of this centre and width cannot be designed (a centre of 0, a
// width so large that the arithmetic lower edge f0 - BW/2 is at or below
// 0 Hz, a band too narrow), or an empty text.
std::string BandFault(double center, double width);
// The same fault for a band given by its edges: f0 - BW/2 lies above 0 Hz
// while f2 stays below (3 + 2 sqrt 2) f1.
inline constexpr const char* kEdgesTooWide =
    "Too wide a band for the band designs: f2 must lie below about 5.8 times f1.";

// The fill routines of the band topologies (topologies.h): element codes
// and values from position 1, Rload and Stages. They read Center, Width,
// Rsource, the prototype and, for the coupled form, ResonatorL.
[[nodiscard]] EngineReport FillCInputBandpass(DesignRecord& d);
[[nodiscard]] EngineReport FillLInputBandpass(DesignRecord& d);
[[nodiscard]] EngineReport FillCInputBandstop(DesignRecord& d);
[[nodiscard]] EngineReport FillLInputBandstop(DesignRecord& d);
[[nodiscard]] EngineReport FillCoupledBandpass(DesignRecord& d);

// The resonator inductance the coupled form uses when none is set, H.
double DefaultResonatorL(const DesignRecord& d);

}  // namespace drenik
