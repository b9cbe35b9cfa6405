#pragma once
// The complex chain (ABCD) matrix of the ladder at one frequency, with the
// same lossy element models and guards as the sweep. The sweep keeps only
// magnitudes and the transmission phase; the Touchstone writer needs the
// complex scattering parameters, which follow from this matrix.

#include <complex>

#include "core/design_record.h"

namespace drenik {

struct ChainMatrix {
  std::complex<double> A{1, 0}, B{0, 0}, C{0, 0}, D{1, 0};
};

// Positions 1..Stages at frequency F (Hz); codes without a model (5, 8 and
// others) are taken as a straight wire, silently. Throws RunTimeError for a
// ladder of more than 20 positions.
ChainMatrix LadderChainMatrix(const DesignRecord& d, float F);

// Scattering parameters of the ladder between a port 1 referred to Rsource
// and a port 2 referred to Rload.
struct SParameters {
  std::complex<double> S11, S21, S12, S22;
};
SParameters LadderSParameters(const DesignRecord& d, float F);

}  // namespace drenik
