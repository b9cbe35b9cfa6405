#pragma once
// Part stress: the largest voltage, current and dissipation every inductor
// and capacitor of the ladder takes at a transmit power, over the band the
// filter passes, into a matched load or into every load of a given VSWR.
//
// The source has the design's source resistance and an EMF of
// 2 sqrt(W Rs) volts RMS, so that it delivers W into a matched load (its
// available power). A mismatched load of VSWR S reflects (S - 1) / (S + 1)
// of the wave referred to the load resistance, at any phase: every quantity
// of the ladder is a bilinear function of that reflection, so its largest
// value over all phases is found exactly (the image of the circle of
// reflections is a circle), not by trying phases.

#include <string>
#include <vector>

#include "core/design_record.h"
#include "core/engine_report.h"
#include "stress/ladder_state.h"

namespace drenik {

struct FrequencyBand {
  double from = 0, to = 0;  // Hz
};

struct StressRequest {
  double power = 0;  // W available from the source
  double vswr = 1;   // of the load; 1 is matched
  // The band searched; empty: the design's passband (StressBands).
  std::vector<FrequencyBand> bands;
  // Frequencies tried in each band before each maximum is refined.
  int points = 600;
};

// A largest value, where it falls: the frequency and the phase of the
// load's reflection (degrees; 0 into a matched load).
struct StressPeak {
  double value = 0, f = 0, phase = 0;
};

struct PartStress {
  LadderPart part;
  std::string name;      // as in the SPICE netlist: "L2", "C3"
  StressPeak v;          // V RMS
  StressPeak i;          // A RMS
  StressPeak p;          // W dissipated
  double VPeak() const;  // of a sine: sqrt(2) times the RMS value
};

// Where the whole filter dissipates most.
struct StressTotals {
  double f = 0, phase = 0;
  double powerIn = 0, powerOut = 0;  // W into the filter and into the load
  double dissipated = 0;             // W, the sum over the parts
  double LossDb() const;             // 10 log10(powerIn / powerOut)
};

struct StressResult {
  std::vector<PartStress> parts;  // in the schematic strip's order
  std::vector<FrequencyBand> bands;
  double emf = 0;  // V RMS
  StressTotals worst;
  EngineReport report;
};

// The band a transmit filter passes: a lowpass up to its cutoff (from a
// hundredth of it: below that every part is at its direct-current share to
// a part in ten thousand), a highpass from its cutoff to ten times it, a
// bandpass from f1 to f2, a bandstop up to f1 and from f2 to ten times f2.
std::vector<FrequencyBand> StressBands(const DesignRecord& d);

// The stress of the parts the record holds (its value stage). A fault: the
// ladder cannot be analysed, or the power, VSWR or band make no sense.
StressResult AnalyzeStress(const DesignRecord& d, const StressRequest& request);

// The largest |(A + B g) / (C + D g)| over |g| = rho, and the g where it
// falls; C + D g must not vanish inside the circle.
struct CirclePeak {
  double value;
  Phasor at;
};
CirclePeak PeakOnCircle(Phasor a, Phasor b, Phasor c, Phasor d, double rho);

}  // namespace drenik
