#pragma once
// Frequency response of the ladder between Rsource and Rload over the
// logarithmic sweep Fstart..Fstop (NrIntervals + 1 points), by cascading the
// ABCD matrices of the positions, with lossy inductors (series R from Qind)
// and capacitors (parallel R from Qcap).

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

struct PointResult {
  double TransmissionDb = 0;
  float Phase = 0;   // degrees, (-180, 180]
  double Delay = 0;  // s, backward difference against the previous point
  double ReflectionDb = 0;
  double Vswr = 0;
  double ZinMagnitude = 0;  // ohms
  double ZinAngle = 0;      // degrees
};

// One frequency F (Hz). An unmodelled element code sounds the alert once and
// is taken as a wire.
PointResult AnalyzePoint(const DesignRecord& d, float F, double PrevFreq, double PrevPhase,
                         Platform& platform);
// The whole sweep into Freq, Transmission, Phase, Delay, Reflection, VSWR and
// MaxDelay; sets Rstandard = Rsource. Throws RunTimeError where the circuit
// would divide by zero outside the guarded places.
void AnalyzeSweep(DesignRecord& d, Platform& platform);

}  // namespace drenik
