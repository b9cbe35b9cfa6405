#pragma once
// Where a design of a given family, order, ripple and depth sits in the
// mask. A lowpass's cutoff (a highpass's, a band's width about its
// centre) can lie anywhere between the lowest value that keeps the
// passband inside its limits and the highest that keeps every stopband
// check; part tolerances slide the response along the frequency axis by
// about their own size, so the design goes where it can slide furthest
// either way: the geometric middle of that range for a lowpass or
// highpass, the middle in hertz for a band. A band's centre is the
// passband's geometric centre, the stopbands' or halfway, whichever leaves
// the most room.

#include <optional>

#include "synth/synth.h"

namespace drenik {

struct Placement {
  double width = 0;   // the cutoff or the band's width, Hz
  double center = 0;  // a band's geometric centre, Hz; 0 otherwise
  // The factor the response may slide by, either way, before the nominal
  // design breaks the mask (1: it just fits); a band's, as a share of its
  // centre, plus 1.
  double slide = 1;
};

// The centred placement of the choice's family, order, ripple, depth and
// topology (its width and centre are ignored); nothing when no placement
// meets the mask nominally.
std::optional<Placement> CentreInMask(const SynthRequest& request, const DesignChoice& choice);

// A frequency rounded to six significant figures: the command line's
// words stay short and read back to the design that was measured.
double RoundedFrequency(double f);

}  // namespace drenik
