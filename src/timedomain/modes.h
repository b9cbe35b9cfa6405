#pragma once
// The poles and residues of a ladder's transfer function, worked out from
// its state equations: H(s) = direct + sum residue[k] / (s - pole[k]).
//
// H is the voltage across the load per volt of the source, scaled by
// 2 sqrt(Rsource / Rload): the voltage a load matched to the source would
// get. With equal terminations that is 2 V(load); with unequal ones |H| is
// the square root of the transducer gain, so a lossless lowpass settles at 1
// whatever its terminations.

#include <complex>
#include <string>
#include <vector>

#include "timedomain/network.h"

namespace drenik {

struct LadderModes {
  std::vector<std::complex<double>> pole;     // rad/s
  std::vector<std::complex<double>> residue;  // 1/s
  double direct = 0;                          // H at infinite frequency
  std::string fault;                          // empty when the modes are known

  std::complex<double> At(std::complex<double> s) const;
};

// `scale` (rad/s) sets the time unit the state equations are written in;
// the cutoff in rad/s keeps their numbers near 1.
LadderModes ModesOf(const LadderNetwork& net, double scale);

}  // namespace drenik
