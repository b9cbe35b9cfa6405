#pragma once
// What a built filter must meet: a least return loss and a largest loss over
// the passband, and a least attenuation beyond any number of stopband
// frequencies, each checked at its band's own frequencies
// (analysis/band_frequencies.h).

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/band_frequencies.h"

namespace drenik {

// Transmission at or below -depth dB at every point at or above frequency
// (lowpass), or at or below it (highpass).
struct StopCheck {
  double frequency = 0;  // Hz
  double depth = 0;      // dB of attenuation
  // The lower skirt of a bandpass: the points at or below the frequency.
  bool below = false;
  // A bandstop's notch: the points from the frequency up to this one, Hz.
  // 0 for a skirt, which runs on to the end of the sweep.
  double to = 0;
};

struct Mask {
  // The passband is the points at or below this frequency (lowpass) or at or
  // above it (highpass), Hz.
  double passEdge = 0;
  // A bandpass's lower edge, Hz: its passband is the points from here up to
  // passEdge. 0 for a lowpass or highpass.
  double passStart = 0;
  // A bandstop's upper edge, Hz: its passband is the points at or below
  // passEdge and those at or above this. 0 for any other filter.
  double passResume = 0;
  std::optional<double> passRl{};  // reflection at or below -passRl dB over the passband
  std::optional<double> passIl{};  // transmission at or above -passIl dB over the passband
  std::vector<StopCheck> stops{};
};

enum class CheckKind { ReturnLoss, Loss, Stopband };

// One check of a mask on a sweep: the points it covers and its limit as a
// power ratio, so that a trial is checked without a logarithm per point.
struct MaskCheck {
  CheckKind kind = CheckKind::ReturnLoss;
  double frequency = 0;  // the passband edge or the stopband's start, Hz
  double db = 0;         // the limit as given, dB (positive)
  int first = 0;         // points covered: first..last (none when last < first)
  int last = -1;
  // |S11|^2 at most (return loss), |S21|^2 at least (loss) or at most
  // (stopband).
  double limit = 0;
  std::string name;  // "return loss 17 dB to 7MHz", "attenuation 40 dB from 14MHz"
  std::string key;   // the command line's words: "pass-rl", "pass-il", "stop 14MHz:40"

  int Points() const { return last < first ? 0 : last - first + 1; }
  // Whether an extreme power ratio over the covered points meets the limit
  // (largest |S11|^2 or |S21|^2, or smallest |S21|^2 for the loss). A NaN
  // fails.
  bool Holds(double extreme) const {
    return kind == CheckKind::Loss ? extreme >= limit : extreme <= limit;
  }
};

// The points first..last of an ascending sweep that lie at or below
// (`below`) or at or above a frequency.
void PointsBeyond(std::span<const float> freq, double frequency, bool below, int& first, int& last);

// The checks of a mask on ascending frequencies (the mask's BandGrid),
// passband ones first.
std::vector<MaskCheck> MaskChecks(const Mask& mask, std::span<const float> freq, bool highpass);

// The passband and each stopband of the mask.
std::vector<Band> MaskBands(const Mask& mask, bool highpass);

// The frequencies one band of a mask covers, Hz: low 0 for a band that
// runs down to 0 Hz, high infinite for one that runs on upwards.
struct Span {
  double low = 0, high = 0;
};
// A stop check's span: a notch or any stopband with an upper end runs from
// its frequency to that end.
Span StopSpan(const StopCheck& stop, bool highpass);
// The passband's span; a bandstop has two, below and above its notch.
std::vector<Span> PassSpans(const Mask& mask, bool highpass);
// Whether two spans share a frequency. A shared edge counts: at that
// frequency the filter would be held to both limits at once.
inline bool Overlap(const Span& a, const Span& b) {
  return a.low <= b.high && b.low <= a.high;
}
// "to 7MHz", "from 14MHz", "from 7MHz to 7.3MHz".
std::string SpanText(const Span& span);

// Why a mask cannot be checked, in one line naming the command line's
// option: a band edge or limit that is not a finite number, a band with no
// frequencies in it (an edge at or below 0 Hz, a band edge at or beyond the
// band's other edge), a stopband that reaches into the passband. Empty when
// it can be checked.
std::string MaskFault(const Mask& mask, bool highpass);

}  // namespace drenik
