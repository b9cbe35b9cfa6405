#pragma once
// Stopband edge of the odd-order Cauer designs the design page offers, as a
// multiple of the cutoff.

namespace drenik {

// The factor for Order 3, 5 or 7, Astop 30/40/50/60 dB and Apass
// 0.01/0.044/0.2 dB (compared exactly with the stored floats); 0 for any other
// combination.
double StopbandEdgeFactor(int order, float astop, float apass);

}  // namespace drenik
