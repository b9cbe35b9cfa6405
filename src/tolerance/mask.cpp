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

std::string MaskFault(const Mask& mask, bool highpass) {
  const auto finite = [](double v) { return std::isfinite(v) && v >= 0; };
  if (!(std::isfinite(mask.passEdge) && mask.passEdge > 0))
    return "--pass-edge: the passband needs an edge that is a finite frequency above 0 Hz";
  if (mask.passRl && !finite(*mask.passRl))
    return "--pass-rl: the limit must be finite, 0 dB or more";
  if (mask.passIl && !finite(*mask.passIl))
    return "--pass-il: the limit must be finite, 0 dB or more";
  const std::string edge = TrimBlanks(FormatFrequency(mask.passEdge));
  for (const StopCheck& s : mask.stops) {
    if (!(std::isfinite(s.frequency) && s.frequency > 0))
      return "--stop: a stopband needs an edge that is a finite frequency above 0 Hz";
    if (!finite(s.depth)) return "--stop: the depth must be finite, 0 dB or more";
    // A bandpass's lower skirt must stay below its lower edge.
    const bool below = highpass || s.below;
    const double near = s.below && mask.passStart > 0 ? mask.passStart : mask.passEdge;
    // A notch must also end below a bandstop's upper passband.
    const bool inside = s.to <= 0 || mask.passResume <= 0 || s.to < mask.passResume;
    // A lower skirt needs a passband above it: a lowpass has none.
    const bool skirt = !s.below || highpass || mask.passStart > 0;
    if ((below ? s.frequency < near : s.frequency > near) && inside && skirt) continue;
    const std::string f = TrimBlanks(FormatFrequency(s.frequency));
    return (s.below ? "--stop-below " : "--stop ") + f + ":" + Db(s.depth) + ": the stopband " +
           (highpass ? "to " : "from ") + f + " overlaps the passband " +
           (highpass ? "from " : "to ") + edge + " (--pass-edge)";
  }
  return {};
}

}  // namespace drenik
