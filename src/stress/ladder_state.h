#pragma once
// The voltage across and the current through every part of the ladder at
// one frequency, for a source of EMF `emf` (volts RMS) behind the source
// resistance and a load of any impedance: the stress a built filter's
// parts take. The parts are modelled exactly as the analysis models them
// (analysis/element_models.h), laid out from each position's element facts.
//
// What is reported for each part is what its rating protects:
// - an inductor: the voltage across its terminals, and the current through
//   its winding (which heats the wire and the core; a winding capacitance
//   carries the rest of the terminal current);
// - a capacitor: the voltage across the capacitance itself (its dielectric;
//   a lead inductance takes the rest of the terminal voltage), and the
//   current through its terminals.
// A part dissipates through its loss resistance: the inductor's w L / Q(f)
// in series with its winding, the capacitor's Q / (w C) across it.

#include <complex>
#include <vector>

#include "analysis/ladder.h"

namespace drenik {

using Phasor = std::complex<double>;

enum class PartType : unsigned char { Inductor, Capacitor };

// A part of the ladder, named as in the SPICE netlist (L2, C3: the letter
// and the ladder position).
struct LadderPart {
  PartType type;
  int position;
  double value;  // H or F
};

// The parts in the order the schematic strip draws them: by position, the
// inductor before the capacitor of a two-part position. A position without
// a model, a missing capacitor (0 F) and a trap without its capacitor
// (open) carry no part.
std::vector<LadderPart> LadderParts(const Ladder& ladder);

// The ladder at one frequency, for any load: every quantity is linear in
// the load's voltage and current, X = X[0] Vout + X[1] Iout. The source
// sees Vin + Rs Iin = emf, which fixes Vout for a given load.
struct PartResponse {
  Phasor v[2], i[2];  // the part's voltage and current as described above
  // It dissipates loss |i|^2 (an inductor: its winding's w L / Q(f), ohms)
  // or loss |v|^2 (a capacitor: its conductance w C / Q, siemens).
  double loss = 0;
  bool inductor = false;
};

struct LadderResponse {
  double f = 0;                     // Hz
  std::vector<PartResponse> parts;  // in the order of LadderParts()
  Phasor vin[2], iin[2];            // at the ladder's input
  Phasor source[2];                 // Vin + Rs Iin
};

// The ladder at f (Hz); `parts` is LadderParts(ladder). The ladder must have
// passed LadderFault().
LadderResponse RespondAt(const Ladder& ladder, const std::vector<LadderPart>& parts, double f);

struct PartState {
  Phasor v, i;       // volts and amperes RMS
  double power = 0;  // W dissipated
};

// Everything at one load.
struct LadderState {
  std::vector<PartState> parts;
  Phasor vin, iin, vout, iout;
  double powerIn = 0, powerOut = 0;  // W
  double Dissipated() const;         // in the parts, W
};

// With a source of EMF `emf` (volts RMS) behind the source resistance and
// the load `zload` (ohms).
LadderState StateAt(const LadderResponse& r, Phasor zload, double emf);

}  // namespace drenik
