#include "pages/stopband_edge.h"

namespace drenik {

namespace {

// Rows by order (3, 5, 7) and stopband depth (30, 40, 50, 60 dB); columns by
// ripple (0.01, 0.044, 0.2 dB).
constexpr double kFactors[3][4][3] = {
    {{3.52, 2.885, 2.208}, {5.12, 4.02, 3.147}, {7.47, 5.85, 4.554}, {10.94, 8.553, 6.64}},
    {{1.4182, 1.2866, 1.1807}, {1.687, 1.504, 1.351}, {2.045, 1.803, 1.595}, {2.514, 2.199, 1.924}},
    {{1.1047, 1.0651, 1.0358},
     {1.1905, 1.1317, 1.084},
     {1.3085, 1.22861, 1.161},
     {1.463, 1.35919, 1.269}}};

}  // namespace

double StopbandEdgeFactor(int order, float astop, float apass) {
  int row = order == 3 ? 0 : order == 5 ? 1 : order == 7 ? 2 : -1;
  int depth = astop == 30.0f   ? 0
              : astop == 40.0f ? 1
              : astop == 50.0f ? 2
              : astop == 60.0f ? 3
                               : -1;
  int ripple = apass == 0.01f ? 0 : apass == 0.044f ? 1 : apass == 0.2f ? 2 : -1;
  if (row < 0 || depth < 0 || ripple < 0) return 0;
  return kFactors[row][depth][ripple];
}

}  // namespace drenik
