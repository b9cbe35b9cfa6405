#pragma once
// The exact time response of a ladder: the step and impulse responses from
// its poles and residues, or for a bandpass the envelope of a carrier at its
// centre frequency switched on at t = 0, and the figures a pulse filter is
// judged by.
//
// The step is the voltage a matched load would get (see modes.h): a
// lossless lowpass settles at 1, a highpass jumps to 1 and settles at 0.
// The impulse response is its derivative in 1/s, without the impulse of
// weight H(infinity) at t = 0 that a highpass passes straight through.

#include <string>
#include <vector>

#include "analysis/ladder.h"
#include "timedomain/modes.h"

namespace drenik {

struct TimeRequest {
  Ladder ladder;
  double lossFrequency = 0;  // Hz: the cutoff; part losses are taken there
  double carrier = 0;        // Hz: a band design's centre; 0 for the plain step
  double span = 0;           // s; 0: to where the response has settled to 0.1 %
  int points = 2000;         // time points from 0 to the span
};

// Figures of the step (of the envelope with a carrier), in seconds and
// percent; NaN where the response has no such figure (a bandpass step
// settles where it started). The response is measured from its value just
// after t = 0 to its final value: for a highpass the fall from 1 to 0, so
// that its overshoot is the undershoot below 0.
struct TimeFigures {
  double overshootPct, rise1090, delay50, settling1pct, settling01pct, peakTime;
};

struct TimeResponse {
  std::vector<double> t, step, impulse;
  // With a carrier: `step` holds the envelope, `carrierWave` the response
  // itself, `impulse` the plain impulse response.
  std::vector<double> carrierWave;
  double initial = 0, final = 0;  // the step (or envelope) just after 0 and at the end
  TimeFigures figures{};
  int unmodelled = 0;
  std::string fault;  // empty when the response is known
};

TimeResponse ComputeTimeResponse(const TimeRequest& request);

// The same from the modes of any network (a band design's centre as the
// carrier, in Hz).
TimeResponse ResponseOf(const LadderModes& modes, double carrier, double span, int points);

// The figures alone, from the modes (carrier in Hz, 0 for the plain step).
TimeFigures FiguresOf(const LadderModes& modes, double carrier);

}  // namespace drenik
