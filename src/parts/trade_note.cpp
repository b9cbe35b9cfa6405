#include "parts/trade_note.h"

#include <cstdio>
#include <vector>

namespace drenik {
namespace {

std::string Db(double db) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f dB", db);
  return text;
}

// The next series up: more values a decade, so nearer the exact ones.
const ESeriesInfo* Finer(ESeries s) {
  const size_t next = static_cast<size_t>(s) + 1;
  return next < std::size(kESeries) ? &kESeries[next] : nullptr;
}

// A core with a smaller AL needs more turns for the same inductance, so one
// turn more or less is a smaller step: the smallest AL below this core's
// from a mix at its best at the filter's frequency (none where no such
// core has a smaller AL: a core out of its range loses more to its Q).
const ToroidCore* SmallerAl(const ToroidCore& core, double frequencyHz) {
  const ToroidCore* best = nullptr;
  for (const ToroidCore& c : ToroidCores())
    if (c.alNanohenry < core.alNanohenry && frequencyHz >= c.fLowHz && frequencyHz <= c.fHighHz &&
        (!best || c.alNanohenry < best->alNanohenry))
      best = &c;
  return best;
}

std::vector<std::string> Remedies(const PartsRequest& r, double frequencyHz) {
  std::vector<std::string> remedies;
  if (!r.pairs) remedies.push_back("two capacitors in parallel");
  if (const ESeriesInfo* finer = Finer(r.capacitors))
    remedies.push_back(std::string(finer->name) + " capacitors");
  if (r.former && r.former->core) {
    if (const ToroidCore* core = SmallerAl(*r.former->core, frequencyHz))
      remedies.push_back(std::string("a core with a smaller AL (") + core->name + ")");
  } else if (r.inductors && !r.former) {
    if (const ESeriesInfo* finer = Finer(*r.inductors))
      remedies.push_back(std::string(finer->name) + " inductors");
  }
  return remedies;
}

}  // namespace

std::string PartsWords(const PartsRequest& r) {
  std::string words = std::string(InfoOf(r.capacitors).name) + " capacitors";
  if (r.pairs) words += " (two in parallel where that comes nearer)";
  if (r.former) return words + " and whole turns on " + r.former->Name();
  if (r.inductors) return words + " and " + InfoOf(*r.inductors).name + " inductors";
  return words + " with inductors wound to value";
}

std::string TradeNote(const PartsChoice& choice, double frequencyHz) {
  std::string note = PartsWords(choice.request) +
                     " cannot keep both the return loss and the stopband: the stopband is " +
                     Db(choice.chosen.stopband) + " against the exact design's " +
                     Db(choice.exact.stopband) + ", the return loss " +
                     Db(choice.chosen.returnLoss) + " (nearest values " +
                     Db(choice.rounded.returnLoss) + ")";
  const std::vector<std::string> remedies = Remedies(choice.request, frequencyHz);
  if (remedies.empty()) return note + "; no finer parts are offered.";
  note += "; ";
  for (size_t k = 0; k < remedies.size(); ++k)
    note += (k == 0 ? "" : k + 1 == remedies.size() ? " or " : ", ") + remedies[k];
  return note + " would help.";
}

}  // namespace drenik
