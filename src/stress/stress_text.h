#pragma once
// The part-stress figures as text, the same in the command line's table and
// the window's view.

#include <string>

#include "stress/stress.h"

namespace drenik {

// "2.2uH", "150pF"
std::string PartValueText(const PartStress& s);
// Volts, amperes and watts to a readable precision, without the unit.
std::string VoltsText(double v);
std::string AmpsText(double a);
std::string WattsText(double w);
// A frequency without blanks: "14.2MHz".
std::string HertzText(double f);

// "100 W available from 50 ohms (EMF 141.4 V RMS), matched load" or
// "..., every load of VSWR 2:1 (every phase of a reflection of 0.333)".
std::string StressConditions(const StressResult& r, const StressRequest& q, double rsource);
// "up to 14.35MHz", "from 7MHz to 7.3MHz", several joined by " and ".
std::string BandsText(const StressResult& r);
// "Total dissipation 0.85 W at 14.2MHz (power in 100 W, out 99.2 W: in less
// out 0.85 W)"
std::string TotalsText(const StressResult& r);
// "Insertion loss there 0.037 dB"
std::string LossText(const StressResult& r);

}  // namespace drenik
