#pragma once
// A single-layer air-core coil, close-wound on a round form: Wheeler's
// formula L = d^2 n^2 / (18 d + 40 l) (microhenries, inches), with d the
// diameter to the wire's centre and l = n times the wire's diameter. It
// holds to about 1% where the coil is at least 0.4 of its diameter long;
// for a shorter coil it is only a first estimate (the field around the
// turns depends on the wire's own diameter, which it leaves out).

namespace drenik {

struct AirCoreForm {
  double formMm = 0;  // diameter of the form the wire is wound on
  double wireMm = 0;  // diameter of the wire, insulation included
};

// The largest form and wire taken, mm: a metre across is beyond any filter
// coil, and beyond a few thousand kilometres the formula's numbers
// overflow a double.
inline constexpr double kLargestAirCoreMm = 1000;

// Whether the form can be wound: both diameters above 0 and at most
// kLargestAirCoreMm.
bool Windable(const AirCoreForm& form);

// Henries of n close-wound turns.
double AirCoreInductance(const AirCoreForm& form, double turns);
// The (fractional) number of turns that gives `henries`.
double AirCoreTurns(const AirCoreForm& form, double henries);
// Length of n close-wound turns, mm.
double AirCoreLengthMm(const AirCoreForm& form, double turns);
// Whether Wheeler's formula holds for n turns: length at least 0.4 times
// the coil's diameter.
bool WheelerHolds(const AirCoreForm& form, double turns);

}  // namespace drenik
