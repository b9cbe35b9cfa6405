#include "tolerance/mask.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/formatters.h"

namespace drenik {
namespace {

std::string Db(double db) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", db);
  return text;
}

// A limit in dB below 0 dB as a power ratio.
double PowerRatio(double db) {
  return std::pow(10.0, -db / 10);
}

}  // namespace

void PointsBeyond(std::span<const float> freq, double frequency, bool below, int& first,
                  int& last) {
  const int n = static_cast<int>(freq.size());
  first = 0, last = n - 1;
  if (below) {
    while (last >= 0 && freq[last] > frequency) --last;
  } else {
    while (first < n && freq[first] < frequency) ++first;
  }
}

std::vector<MaskCheck> MaskChecks(const Mask& mask, std::span<const float> freq, bool highpass) {
  std::vector<MaskCheck> checks;
  // "to" the edge for a lowpass passband, "from" it for a highpass one.
  const std::string passWord = highpass ? " from " : " to ";
  const std::string edge = TrimBlanks(FormatFrequency(mask.passEdge));
  auto passband = [&](CheckKind kind, double db, const char* what, const char* key) {
    MaskCheck c;
    c.kind = kind, c.frequency = mask.passEdge, c.db = db, c.limit = PowerRatio(db);
    PointsBeyond(freq, mask.passEdge, !highpass, c.first, c.last);
    c.name = what + (" " + Db(db)) + " dB" + passWord + edge;
    if (mask.passStart > 0) {
      int first, last;
      PointsBeyond(freq, mask.passStart, false, first, last);
      c.first = std::max(c.first, first);
      c.name = what + (" " + Db(db)) + " dB from " + TrimBlanks(FormatFrequency(mask.passStart)) +
               " to " + edge;
    }
    c.key = key;
    checks.push_back(c);
    if (mask.passResume > 0) {  // a bandstop's upper passband, its own check
      c.frequency = mask.passResume;
      PointsBeyond(freq, mask.passResume, false, c.first, c.last);
      c.name = what + (" " + Db(db)) + " dB from " + TrimBlanks(FormatFrequency(mask.passResume));
      c.key = key + std::string(" upper");
      checks.push_back(c);
    }
  };
  if (mask.passRl) passband(CheckKind::ReturnLoss, *mask.passRl, "return loss", "pass-rl");
  if (mask.passIl) passband(CheckKind::Loss, *mask.passIl, "loss", "pass-il");
  for (const StopCheck& s : mask.stops) {
    MaskCheck c;
    c.kind = CheckKind::Stopband, c.frequency = s.frequency, c.db = s.depth;
    c.limit = PowerRatio(s.depth);
    const bool below = highpass || s.below;
    PointsBeyond(freq, s.frequency, below, c.first, c.last);
    const std::string f = TrimBlanks(FormatFrequency(s.frequency));
    c.name = "attenuation " + Db(s.depth) + " dB" + (below ? " to " : " from ") + f;
    c.key = "stop " + f + ":" + Db(s.depth);
    if (s.to > 0) {  // a notch ends at its upper stop edge
      int first, last;
      PointsBeyond(freq, s.to, true, first, last);
      c.last = std::min(c.last, last);
      c.name += " to " + TrimBlanks(FormatFrequency(s.to));
    }
    checks.push_back(c);
  }
  return checks;
}

std::vector<Band> MaskBands(const Mask& mask, bool highpass) {
  std::vector<Band> bands;
  if (mask.passEdge > 0) bands.push_back(Passband(mask.passEdge, highpass));
  if (mask.passResume > 0) bands.push_back(Passband(mask.passResume, true));
  for (const StopCheck& s : mask.stops)
    if (s.frequency > 0) bands.push_back(Stopband(s.frequency, highpass || s.below));
  return bands;
}

Span StopSpan(const StopCheck& stop, bool highpass) {
  if (highpass || stop.below) return {0, stop.frequency};
  return {stop.frequency, stop.to > 0 ? stop.to : HUGE_VAL};
}

std::vector<Span> PassSpans(const Mask& mask, bool highpass) {
  if (highpass) return {{mask.passEdge, HUGE_VAL}};
  if (mask.passResume > 0) return {{0, mask.passEdge}, {mask.passResume, HUGE_VAL}};
  return {{mask.passStart, mask.passEdge}};
}

std::string SpanText(const Span& span) {
  const auto hz = [](double f) { return TrimBlanks(FormatFrequency(f)); };
  if (span.low <= 0) return "to " + hz(span.high);
  if (!std::isfinite(span.high)) return "from " + hz(span.low);
  return "from " + hz(span.low) + " to " + hz(span.high);
}

std::string MaskFault(const Mask& mask, bool highpass) {
  const auto finite = [](double v) { return std::isfinite(v) && v >= 0; };
  if (!(std::isfinite(mask.passEdge) && mask.passEdge > 0))
    return "--pass-edge: the passband needs an edge that is a finite frequency above 0 Hz";
  if (mask.passRl && !finite(*mask.passRl))
    return "--pass-rl: the limit must be finite, 0 dB or more";
  if (mask.passIl && !finite(*mask.passIl))
    return "--pass-il: the limit must be finite, 0 dB or more";
  const auto hz = [](double f) { return TrimBlanks(FormatFrequency(f)); };
  // A band's two edges: a bandpass's lower one below its upper one, a
  // bandstop's upper passband above its lower one.
  if (!finite(mask.passStart) || mask.passStart >= mask.passEdge)
    return "--pass-edge: the passband's upper edge " + hz(mask.passEdge) +
           " lies at or below its lower edge " + hz(mask.passStart);
  if (!finite(mask.passResume) || (mask.passResume > 0 && mask.passResume <= mask.passEdge))
    return "--pass-edge: the lower passband's edge " + hz(mask.passEdge) +
           " lies at or above the upper passband's edge " + hz(mask.passResume);
  const std::vector<Span> passbands = PassSpans(mask, highpass);
  for (const StopCheck& s : mask.stops) {
    if (!(std::isfinite(s.frequency) && s.frequency > 0))
      return "--stop: a stopband needs an edge that is a finite frequency above 0 Hz";
    if (!finite(s.depth)) return "--stop: the depth must be finite, 0 dB or more";
    const std::string key =
        (s.below ? "--stop-below " : "--stop ") + hz(s.frequency) + ":" + Db(s.depth);
    if (!finite(s.to) || (s.to > 0 && s.to <= s.frequency))
      return key + ": the stopband ends at " + hz(s.to) + ", not above its start";
    const Span stop = StopSpan(s, highpass);
    for (const Span& pass : passbands)
      if (Overlap(stop, pass))
        return key + ": the stopband " + SpanText(stop) + " overlaps the passband " +
               SpanText(pass) + " (--pass-edge)";
  }
  return {};
}

}  // namespace drenik
