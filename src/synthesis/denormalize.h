#pragma once
// Scales the normalized prototype into real inductors and capacitors for the
// chosen Topology, Rsource and Width; writes Omega, ElementType, L, C, Rload
// and Stages and clears Lstd and Cstd. Returns at once when Width <= 0.
// A zero prototype value where a quotient needs it is reported as a fault,
// with the arrays as far as they were written.

#include "core/design_record.h"
#include "core/engine_report.h"

namespace drenik {

[[nodiscard]] EngineReport Denormalize(DesignRecord& d);

// The quotients of the scaling at one ladder position, each formed in
// double and stored as a float. A zero denominator or a value beyond the
// float range stops the denormalization with a fault naming the position.
class PositionScaler {
 public:
  PositionScaler(double r, double w) : r_(r), w_(w) {}
  void At(int k) { k_ = k; }

  // C = g / (R W)
  float CapLowpass(float g) const;
  // C = g / R / W (one branch divides twice)
  float CapLowpassStepwise(float g) const;
  // L = R g / W
  float IndLowpass(float g) const;
  // C = 1 / (R g W)
  float CapHighpass(float g) const;
  // L = R / (W g)
  float IndHighpass(float g) const;

 private:
  double Div(double num, double den, double proto) const;
  float Store(double v) const;

  double r_;
  double w_;
  int k_ = 0;
};

// The positions of each topology (topologies.h names which is which). Odd
// positions are filled first, then even positions.
void FillCInputLowpass(DesignRecord& d, PositionScaler& s, int n);
void FillLInputLowpass(DesignRecord& d, PositionScaler& s, int n);
void FillCInputHighpass(DesignRecord& d, PositionScaler& s, int n);
void FillLInputHighpass(DesignRecord& d, PositionScaler& s, int n);

}  // namespace drenik
