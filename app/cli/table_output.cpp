#include "cli/table_output.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <limits>
#include <vector>

#include "analysis/ladder.h"
#include "core/element_kinds.h"
#include "core/formatters.h"
#include "parts/figures.h"
#include "synthesis/design_edges.h"
#include "synthesis/families.h"
#include "synthesis/stray_warning.h"
#include "synthesis/topologies.h"

namespace drenik::cli {

const char* ElementKindName(int code) {
  const ElementFacts* f = FactsOf(static_cast<int16_t>(code));
  return f ? f->name : "none";
}

namespace {

std::string Padded(const std::string& s, size_t width) {
  return s.size() >= width ? s + " " : s + std::string(width - s.size(), ' ');
}

// The transmission at the sweep point nearest f (the cutoff by default); a
// band swept other than its own way at the nearer of that and its own
// sweep's point, as its own sweep would give it.
float TransmissionAtCutoff(const DesignRecord& d, double f = -1) {
  const float at = f < 0 ? d.Width : static_cast<float>(f);
  int best = 0;
  for (int i = 1; i <= std::min<int>(d.NrIntervals, kSweepSlots - 1); ++i) {
    if (std::fabs(d.Freq[i] - at) < std::fabs(d.Freq[best] - at)) best = i;
  }
  const std::vector<float> own = OwnBandSweep(d);
  const auto near = std::ranges::min_element(
      own, [at](float a, float b) { return std::fabs(a - at) < std::fabs(b - at); });
  const Ladder ladder = LadderOf(d);
  if (near != own.end() && std::fabs(*near - at) < std::fabs(d.Freq[best] - at) &&
      LadderFault(ladder).empty())
    return static_cast<float>(AnalyzePoint(ladder, *near, 0, 0, false).TransmissionDb);
  return d.Transmission[best];
}

std::string Hz(double f) {
  return TrimBlanks(FormatFrequency(f));
}

std::string Fixed(double v) {
  if (std::isnan(v)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", v);
  return text;
}

// The worst return loss and the least attenuation on each band's own
// frequencies, as the parts command reports them; the loss from the sweep's
// passband points.
struct StageFigures {
  double returnLoss = std::numeric_limits<double>::infinity();
  double loss = -std::numeric_limits<double>::infinity();
  double stopband = 0;
};

StageFigures FiguresAt(const DesignRecord& d, const Bands& bands) {
  StageFigures f;
  for (int i = 0; i <= std::clamp<int>(d.NrIntervals, -1, kSweepSlots - 1); ++i)
    if (InPassband(bands, d.Freq[i])) f.loss = std::max(f.loss, -double{d.Transmission[i]});
  // A band swept other than its own way: its own sweep's passband points too.
  const Ladder ladder = LadderOf(d);
  if (bands.band && LadderFault(ladder).empty())
    for (float at : BeyondSweep(d, bands).passband)
      f.loss = std::max(f.loss, -AnalyzePoint(ladder, at, 0, 0, false).TransmissionDb);
  const Figures own = FiguresOf(d, bands);
  f.returnLoss = own.returnLoss;
  f.stopband = own.stopband;
  return f;
}

void WriteFigures(const DesignRecord& exact, const DesignRecord& chosen,
                  const std::string& chosenTitle, std::ostream& out) {
  const Bands bands = BandsOf(exact);
  if (!bands.band) {
    out << "Worst return loss and loss " << (bands.highpass ? "from " : "up to ")
        << Hz(bands.cutoff) << ", least attenuation "
        << (bands.highpass ? "at and below " : "at and beyond ") << Hz(bands.stopEdge) << ":\n";
  } else if (!bands.bandstop) {
    out << "Worst return loss and loss from " << Hz(bands.f1) << " to " << Hz(bands.f2)
        << ", least attenuation at and below " << Hz(bands.stopLow) << " and at and beyond "
        << Hz(bands.stopHigh) << ":\n";
  } else {
    out << "Worst return loss and loss at and below " << Hz(bands.f1) << " and at and beyond "
        << Hz(bands.f2) << ", least attenuation from " << Hz(bands.stopLow) << " to "
        << Hz(bands.stopHigh) << ":\n";
  }
  out << "  " << Padded("", 10) << Padded("Return, dB", 12) << Padded("Loss, dB", 10)
      << "Stopband, dB\n";
  for (const auto& [title, d] :
       {std::pair<std::string, const DesignRecord*>{"exact", &exact}, {chosenTitle, &chosen}}) {
    if (d == &chosen && chosenTitle == "exact") break;
    const StageFigures f = FiguresAt(*d, bands);
    out << "  " << Padded(title, 10) << Padded(Fixed(f.returnLoss), 12) << Padded(Fixed(f.loss), 10)
        << Fixed(f.stopband) << "\n";
  }
}

}  // namespace

void WriteDesignTable(const DesignRecord& exact, const DesignRecord& chosen,
                      const std::string& chosenTitle, std::ostream& out) {
  const DesignRecord& d = chosen;
  out << d.ProgramTitle << " " << d.Version << "\n";
  out << FamilyName(d.Family) << ", order " << d.Order << ", " << d.Topology << "\n";
  const FamilyInfo* family = FindFamily(d.Family);
  const bool band = IsBandDesign(d) && d.Center > 0;
  const BandEdges edges = band ? EdgesOfBand(d.Center, d.Width) : BandEdges{};
  if (band) {
    out << "Band " << (family ? family->cutoffLabel : "") << ": f1 " << Hz(edges.f1) << " to f2 "
        << Hz(edges.f2) << ", width " << Hz(d.Width) << ", geometric centre " << Hz(d.Center)
        << "\n";
  } else {
    out << "Cutoff " << (family ? family->cutoffLabel : "") << ": "
        << TrimBlanks(FormatFrequency(d.Width)) << "\n";
  }
  if (family && !family->hasRipple) {
    out << "Passband: no ripple, 3 dB down at the cutoff\n";
  } else {
    out << "Passband ripple: " << TrimBlanks(FormatValue(exact.Apass)) << " dB\n";
  }
  if (family && family->stopbandChoice) {
    out << "Stopband depth: " << TrimBlanks(FormatValue(exact.Astop)) << " dB";
    // The true edge of this design: the design page's StopbandEdge figure is
    // kept from an earlier odd order when the order is even, and is always
    // the lowpass one.
    if (const double edge = EdgesOf(exact).stopEdge; edge > 0)
      out << ", edge " << TrimBlanks(FormatFrequency(edge));
    out << "\n";
  }
  out << "Rsource: " << TrimBlanks(FormatValue(d.Rsource))
      << " ohms, Rload: " << TrimBlanks(FormatValue(d.Rload)) << " ohms\n";
  // With --values exact the exact figures and columns are the whole table.
  const bool exactOnly = chosenTitle == "exact";
  const auto transmission = [&](const std::string& where, double f) {
    out << "Transmission at " << where << ": "
        << TrimBlanks(FormatValue(TransmissionAtCutoff(exact, f))) << " dB (exact)";
    if (!exactOnly)
      out << ", " << TrimBlanks(FormatValue(TransmissionAtCutoff(d, f))) << " dB (" << chosenTitle
          << ")";
    out << "\n";
  };
  if (band) {
    transmission("f1", edges.f1);
    transmission("f2", edges.f2);
  } else {
    transmission("cutoff", -1);
  }
  WriteFigures(exact, chosen, chosenTitle, out);
  if (const std::string warning = StrayWarning(exact); !warning.empty())
    out << "Warning: " << warning << "\n";
  out << "\n";

  out << Padded("Pos", 5) << Padded("Element", 20) << Padded("L exact", 12);
  if (exactOnly)
    out << "C exact\n";
  else
    out << Padded("C exact", 12) << Padded("L " + chosenTitle, 16) << "C " << chosenTitle << "\n";
  int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    char pos[16];
    std::snprintf(pos, sizeof pos, "%3d", j);
    out << Padded(pos, 5) << Padded(ElementKindName(d.ElementType[j]), 20)
        << Padded(FormatInductance(exact.L[j]), 12);
    if (exactOnly)
      out << FormatCapacitance(exact.C[j]) << "\n";
    else
      out << Padded(FormatCapacitance(exact.C[j]), 12) << Padded(FormatInductance(d.L[j]), 16)
          << FormatCapacitance(d.C[j]) << "\n";
  }
}

}  // namespace drenik::cli
