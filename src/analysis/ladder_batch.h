#pragma once
// Many value sets of one ladder evaluated side by side: the same kinds,
// terminations, Qs and parasitics, a different L and C per set (the trials of a
// tolerance run, the candidates of a stock-part choice). Each set is a lane;
// eight lanes go through the element models together in one vector, on the
// widest vector unit the processor has (chosen when the program runs).
//
// The results are power ratios in the linear domain, |S21|^2 (transducer
// gain) and |S11|^2, so that a caller compares them against limits without
// a logarithm per point. Every lane gives exactly the bits of the plain
// double path, on any processor.

#include <array>
#include <span>
#include <vector>

#include "analysis/ladder.h"

namespace drenik {

inline constexpr int kBatchLanes = 8;

// The L (henries) and C (farads) of every position for each lane:
// L[j][k] is position j of value set k.
struct BatchValues {
  std::array<std::array<double, kBatchLanes>, kComponentSlots> L{}, C{};
};

// Every lane holding the ladder's own values.
BatchValues UniformBatch(const Ladder& ladder);

// How the lanes are computed. All give the same bits.
enum class BatchPath {
  Vector,    // the widest vector unit this processor has (one of the next three)
  Avx512,    // one 8-double register per operation
  Avx2,      // two 4-double registers
  Baseline,  // four 2-double SSE2 registers: every x86-64 processor
  Scalar,    // one lane at a time in plain doubles: the reference
};

// Whether this processor can run the path (Vector, Baseline and Scalar
// always can).
bool BatchPathRuns(BatchPath path);
// The path Vector stands for here.
BatchPath BestBatchPath();

class LadderBatch {
 public:
  // The ladder gives the kinds, terminations and Qs (its own L and C are not
  // used); every value set must pass LadderFault() with it. The frequencies
  // are in Hz, single precision as the sweep keeps them.
  LadderBatch(const Ladder& ladder, std::span<const float> frequencies);

  int Points() const { return static_cast<int>(omega_.size()); }
  const Ladder& Shape() const { return ladder_; }

  // Points first .. first + count - 1 of every lane, written as
  // [point - first][lane] into s21 and s11 (count * kBatchLanes each).
  // Reflection is referred to Rsource, as the sweep refers it.
  void Evaluate(const BatchValues& values, int first, int count, double* s21, double* s11,
                BatchPath path = BatchPath::Vector) const;

 private:
  Ladder ladder_;
  std::vector<double> omega_;    // rad/s, formed in single precision as the kernel forms it
  std::vector<double> perQind_;  // 1 / Q of the inductors per point; empty for a constant Q
};

// Running extremes of `count` points of batch results ([point][lane], as
// Evaluate writes them), exact on any vector unit:
// per point and lane, low[i][k] = min(low[i][k], ratio[i][k]) and high the
// max (the envelope over value sets);
void BatchEnvelope(const double* ratio, int count, double* low, double* high);
// per lane over the points, low[k] = min(low[k], ratio[i][k]) and high the
// max (the worst point of each value set).
void LaneExtremes(const double* ratio, int count, double* low, double* high);

// The sweep's dB figures of the power ratios: transmission 10 log10 |S21|^2,
// and reflection with the reflection coefficient held in 1e-7 .. 0.9999999
// (-140 dB for a perfect match) as the sweep holds it.
double TransmissionDbOf(double s21);
double ReflectionDbOf(double s11);

}  // namespace drenik
