#pragma once
// The one line that tells the user where the chosen parts could not keep
// both the passband's return loss and the stopband: what was given away,
// and which finer parts would come nearer. The command line prints it; the
// display page shows it in the window's parts dialog.

#include <string>

#include "parts/chooser.h"

namespace drenik {

// The parts a request asks for: "E24 capacitors with inductors wound to
// value", "E12 capacitors and whole turns on T50-6".
std::string PartsWords(const PartsRequest& r);

// For a choice whose stopband fell short. `frequencyHz` is where the
// filter works (a lowpass's or highpass's cutoff, a band's centre): a core
// is suggested only from a mix whose range of best Q takes it in, where
// the table has one.
std::string TradeNote(const PartsChoice& choice, double frequencyHz);

}  // namespace drenik
