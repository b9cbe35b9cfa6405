#pragma once
// A first-order model of how a ladder's response moves when its parts move
// by small ratios away from the exact design: the complex input reflection
// S11 at passband points and ln|S21| at the stopband points that decide the
// stopband figure. For every combination of capacitor values it gives the
// inductor correction that best keeps the exact response (least squares on
// the change of S11 and of the stopband peaks) and the figures that follow,
// so that thousands of combinations can be ranked for the cost of a few
// true analyses.

#include <complex>
#include <vector>

#include "analysis/ladder.h"
#include "parts/merit.h"

namespace drenik {

struct CapCombo {
  std::vector<int> option;            // per capacitor, the chosen option
  std::vector<double> inductorShift;  // per inductor, ln(L / exact L)
  Merit merit;                        // as predicted
};

class LinearModel {
 public:
  // caps, inductors: the ladder positions whose C, L move. The stopband
  // points should be the attenuation's local minima and the band edge.
  LinearModel(const Ladder& exact, std::vector<int> caps, std::vector<int> inductors,
              const std::vector<float>& passband, const std::vector<float>& stopband);

  // shifts[k][o] = ln(value / exact value) of capacitor k's option o. The
  // `keep` combinations of best predicted merit, best first.
  std::vector<CapCombo> Rank(const std::vector<std::vector<double>>& shifts, size_t keep,
                             const Judge& judge) const;

 private:
  using Complex = std::complex<double>;
  void Predict(const std::vector<int>& option, const std::vector<std::vector<double>>& shifts,
               const Judge& judge, CapCombo& combo) const;

  size_t caps_ = 0, inductors_ = 0;
  std::vector<Complex> s11_;             // exact S11 at the passband points
  std::vector<double> attenuation_;      // exact attenuation at the stopband points, dB
  std::vector<std::vector<Complex>> u_;  // per capacitor: dS11 / d ln C, inductors corrected
  std::vector<std::vector<double>> g_;   // per capacitor: d ln|S21| / d ln C, likewise
  std::vector<std::vector<double>> a_;   // a_[l][k]: d ln L_l / d ln C_k of the correction
};

}  // namespace drenik
