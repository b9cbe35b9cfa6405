#pragma once
// The input reflection S11 of the ladder on a Smith chart: the impedance
// grid, the locus over the sweep, the cutoff point (a band design's edges)
// and the VSWR circle that the passband's return loss sets.

#include <complex>
#include <string>
#include <vector>

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

// S11 at the sweep's frequencies, referred to Rsource as in the Touchstone
// file (LadderSParameters), so the chart and the file agree point for point.
struct SmithLocus {
  std::vector<float> freq;  // Hz
  std::vector<std::complex<double>> gamma;
  // At the cutoff (Width), or at a band design's edges f1 and f2: Width is
  // then the band's width, far below the sweep.
  std::vector<std::complex<double>> marks;
  double passbandRadius = 0;  // largest |S11| in the passband
  double reference = 0;       // ohms
};

SmithLocus SmithLocusOf(const DesignRecord& d);

// Where the chart stands on the page (page units): |gamma| = 1 is the circle
// of `radius` around (cx, cy).
struct SmithPlace {
  float cx, cy, radius;
};

void DrawSmithGrid(Canvas& canvas, const SmithPlace& place);
void DrawSmithLocus(Canvas& canvas, const SmithPlace& place, const SmithLocus& locus,
                    int32_t color);

// The sweep point nearest to the page point (x, y) and its readout:
// frequency, impedance and return loss; an empty text when no point lies
// within a tenth of the chart's radius.
std::string SmithReadout(const SmithLocus& locus, const SmithPlace& place, float x, float y);

}  // namespace drenik
