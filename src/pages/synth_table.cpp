#include "pages/synth_table.h"

#include <cstdio>

#include "core/formatters.h"
#include "core/number_text.h"
#include "synthesis/band_transform.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

std::string Hz(double f) {
  return TrimBlanks(FormatFrequency(f));
}

// A margin with its sign: how far inside (+) or outside (-) the mask the
// nominal design stands.
std::string Margin(double db) {
  char text[32];
  std::snprintf(text, sizeof text, "%+.2f", db);
  return text;
}

const char* TopologyCaption(const std::string& name) {
  const TopologyInfo* t = FindTopology(name);
  return t ? t->caption : name.c_str();
}

}  // namespace

std::string SynthPercent(double fraction) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f%%", 100 * fraction);
  return text;
}

std::vector<std::string> SynthHeadings() {
  return {
      "#", "Family", "Order",           "Ripple, dB",      "Depth, dB", "Topology",     "Edges",
      "L", "C",      "Pass margin, dB", "Stop margin, dB", "Yield",     "95% interval", "Target"};
}

std::vector<std::string> SynthRow(const SynthCandidate& c, int rank, bool chosen) {
  const DesignChoice& d = c.choice;
  const FamilyInfo* f = FindFamily(d.family);
  // A lowpass's or highpass's cutoff; a band's two edges.
  std::string edges = Hz(d.width);
  if (d.center > 0) {
    const BandEdges e = EdgesOfBand(d.center, d.width);
    edges = Hz(e.f1) + " - " + Hz(e.f2);
  }
  const bool measured = c.trials > 0;
  return {std::to_string(rank),
          f ? f->name : "?",
          std::to_string(d.order),
          f && f->ripple.Offered() ? GeneralText(d.ripple) : "-",
          f && f->depth.Offered() ? GeneralText(d.depth) : "-",
          TopologyCaption(d.topology),
          edges,
          std::to_string(c.inductors),
          std::to_string(c.capacitors),
          Margin(c.marginPassDb),
          Margin(c.marginStopDb),
          measured ? SynthPercent(c.yield) : "-",
          measured ? SynthPercent(c.yieldLow) + " to " + SynthPercent(c.yieldHigh) : "-",
          chosen          ? "chosen"
          : !measured     ? "screened out"
          : c.meetsTarget ? "meets"
                          : "below"};
}

std::string SynthCandidateName(const SynthCandidate& c) {
  const DesignChoice& d = c.choice;
  const FamilyInfo* f = FindFamily(d.family);
  std::string name = std::string(f ? f->name : "?") + " " + std::to_string(d.order);
  if (f && f->ripple.Offered()) name += ", " + GeneralText(d.ripple) + " dB";
  if (f && f->depth.Offered()) name += ", " + GeneralText(d.depth) + " dB deep";
  return name + ", " + TopologyCaption(d.topology);
}

}  // namespace drenik
