#pragma once
// The network solution of a ladder at one frequency: a pure function over a
// small ladder value, shared by the display page's sweep, the Touchstone
// writer and the analyses that evaluate many value sets (tolerance, stock
// parts). No design record, no allocation, no desktop.
//
// Losses are modelled per part: an inductor has a series resistance
// omega L / Q(f) and its winding capacitance across both, a capacitor a
// parallel resistance Qcap / (omega C) and its lead inductance in series. A
// capacitance of exactly 0 stands for a missing capacitor and takes fixed
// stand-in reactances (see element_models.h).

#include <array>
#include <complex>
#include <string>

#include "analysis/element_models.h"
#include "core/design_record.h"
#include "core/element_kinds.h"

namespace drenik {

// Positions 1..stages (index 0 unused), source side first.
struct Ladder {
  int stages = 0;
  std::array<ElementKind, kComponentSlots> kind{};
  std::array<double, kComponentSlots> L{};  // H
  std::array<double, kComponentSlots> C{};  // F
  double rsource = 0;                       // ohms
  double rload = 0;                         // ohms
  double reference = 0;                     // ohms; the reflection and VSWR are referred to it
  double qind = 0;                          // inductor Q (1e6 stands for ideal)
  double qcap = 0;                          // capacitor Q (1e7 stands for ideal)
  // The inductor's Q is qind at qReference (Hz: the cutoff, the centre of a
  // band design) and follows qLaw elsewhere.
  QLaw qLaw = QLaw::Constant;
  double qReference = 0;
  double lcp = 0;   // F, winding capacitance across every inductor
  double cesl = 0;  // H, lead inductance in series with every capacitor
  // Codes 5 and 8 are the series L-C branch and the shunt tank of a band
  // design; in any other ladder they have no model (a wire and an alert).
  bool bandBranches = false;
  // The program's single-precision constants: omega is formed as TwoPi F in
  // single precision, angles are converted with Pi.
  float pi = 0;
  float twoPi = 0;
};

// The element models' part parameters at w (rad/s, formed as the kernel
// forms it): the two Qs (the inductor's that of its law there), the winding
// capacitance and the lead inductance.
models::Losses<double> PartLossesAt(const Ladder& ladder, double w);

// The reference frequency of the inductor's Q law as an angular frequency,
// formed in single precision as the kernel forms every w, so that the Q at
// twice the reference is exactly the law's.
inline double ReferenceOmega(const Ladder& ladder) {
  return static_cast<float>(ladder.twoPi * static_cast<float>(ladder.qReference));
}

// The ladder the record holds (positions 1..Stages, codes converted to
// kinds, Rstandard as the reference, band branches when Center is set). Positions beyond the arrays
// are not copied; LadderFault() reports them.
Ladder LadderOf(const DesignRecord& d);

// Why the kernel could not solve this ladder (a division by zero that the
// element models do not guard, a ladder longer than the arrays), or an empty
// text when it can.
std::string LadderFault(const Ladder& ladder);

// The kernel's result at one frequency. Delay is the one-sided backward
// difference of the phase against (prevFreq, prevPhase).
struct PointResult {
  double TransmissionDb = 0;  // transducer gain, dB (0 or below)
  float Phase = 0;            // degrees, (-180, 180]
  double Delay = 0;           // s
  double ReflectionDb = 0;    // dB, negative: the return loss
  double Vswr = 0;
  double ZinMagnitude = 0;  // ohms
  double ZinAngle = 0;      // degrees
  // Positions met that have no model (taken as a wire); the alert sounds
  // once for each.
  int unmodelled = 0;
};

// F in Hz; the ladder must have passed LadderFault(). The input impedance's
// magnitude and angle are formed only when asked for (the sweep does not
// keep them).
PointResult AnalyzePoint(const Ladder& ladder, float F, double prevFreq, double prevPhase,
                         bool withInputImpedance = true);

// The complex chain (ABCD) matrix of the ladder at F (Hz), with the same
// element models; positions without a model are wires.
struct ChainMatrix {
  std::complex<double> A{1, 0}, B{0, 0}, C{0, 0}, D{1, 0};
};
ChainMatrix LadderChain(const Ladder& ladder, float F);

// Scattering parameters between a port 1 referred to Rsource and a port 2
// referred to Rload: |S21|^2 is the transducer gain of SolvePoint.
struct SParameters {
  std::complex<double> S11, S21, S12, S22;
};
SParameters LadderSParameters(const Ladder& ladder, float F);

}  // namespace drenik
