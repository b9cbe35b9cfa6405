// SPICE netlist of the ladder: a 2 V AC generator behind Rsource, the
// positions by their element codes, Rload, and an AC sweep over the
// program's own range. With the 2 V generator, V(out) = 1 V means a lossless
// match; the transducer gain is 20 log10|V(out)| + 10 log10(Rsource/Rload) dB.
// Inductors carry their loss as a series resistor 2 pi Width L / Qind (the
// loss at the cutoff), the same rule as the LTspice schematic.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "core/atomic_file.h"
#include "core/element_kinds.h"
#include "export/writers.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

constexpr const char* kEol = "\r\n";

std::string Number(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.9g", v);
  return buf;
}

// A kind the analysis models, or nullptr (such a position is a wire there).
const ElementFacts* AnalysedFacts(const DesignRecord& d, int16_t code) {
  const ElementFacts* f = FactsOf(code);
  return Modelled(f, d.Center > 0) ? f : nullptr;
}

class NetlistBuilder {
 public:
  NetlistBuilder(const DesignRecord& d, int seriesArms) : d_(d), seriesArms_(seriesArms) {}

  // Rail node k counted from the source; the last one is "out".
  std::string Rail(int k) const {
    if (k == seriesArms_) return "out";
    if (k == 0) return "in";
    return "n" + std::to_string(k);
  }

  void Line(const std::string& s) { text_ += s + kEol; }

  // An inductor between a and b, with its loss resistor when it has one: at
  // the cutoff, or at the centre of a band design.
  void Inductor(int k, const std::string& a, const std::string& b) {
    const float at = d_.Center > 0 ? d_.Center : d_.Width;
    const float rser = 2 * d_.Pi * at * d_.L[k] / d_.Qind;
    if (rser > 0 && std::isfinite(rser)) {
      const std::string mid = "l" + std::to_string(k);
      Line("L" + std::to_string(k) + " " + a + " " + mid + " " + Number(d_.L[k]));
      Line("RSER" + std::to_string(k) + " " + mid + " " + b + " " + Number(rser));
    } else {
      Line("L" + std::to_string(k) + " " + a + " " + b + " " + Number(d_.L[k]));
    }
  }

  void Capacitor(int k, const std::string& a, const std::string& b) {
    Line("C" + std::to_string(k) + " " + a + " " + b + " " + Number(d_.C[k]));
  }

  std::string& Text() { return text_; }

 private:
  const DesignRecord& d_;
  int seriesArms_;
  std::string text_;
};

}  // namespace

std::string SpiceNetlistText(const DesignRecord& d) {
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  int seriesArms = 0;
  for (int k = 1; k <= stages; ++k)
    if (const ElementFacts* f = AnalysedFacts(d, d.ElementType[k]); f && f->arm == Arm::Series)
      ++seriesArms;

  NetlistBuilder net(d, seriesArms);
  const std::string title = d.ProgramTitle.empty() ? "Drenik Filter Designer" : d.ProgramTitle;
  net.Line(title + (d.Version.empty() ? "" : " " + d.Version) + ": " + FamilyName(d.Family) +
           " order " + std::to_string(d.Order) + " " + d.Topology +
           (d.Center > 0 ? ", centre " + Number(d.Center) + " Hz, bandwidth " : ", cutoff ") +
           Number(d.Width) + " Hz");
  net.Line("* Transducer gain, dB = 20*log10(|V(out)|) + 10*log10(Rsource/Rload)");
  net.Line("VGEN gen 0 DC 0 AC 2");
  net.Line("RSOURCE gen " + net.Rail(0) + " " + Number(d.Rsource));

  int rail = 0;
  for (int k = 1; k <= stages; ++k) {
    const std::string here = net.Rail(rail);
    const std::string ks = std::to_string(k);
    const ElementFacts* f = AnalysedFacts(d, d.ElementType[k]);
    if (!f) {
      net.Line("* position " + ks + ": element code " + std::to_string(d.ElementType[k]) +
               " is not modelled and is taken as a wire");
      continue;
    }
    const std::string to = f->arm == Arm::Series ? net.Rail(++rail) : "0";
    const bool hasC = f->hasC && d.C[k] != 0;
    switch (f->joining) {
      case Joining::Single:
        if (f->hasL) {
          net.Inductor(k, here, to);
        } else if (hasC) {
          net.Capacitor(k, here, to);
        } else if (f->arm == Arm::Series) {
          // The analysis takes a missing series capacitor as 10 Mohm.
          net.Line("R" + ks + " " + here + " " + to + " 1e7");
        }
        break;
      case Joining::InSeries:
        // A trap without its capacitor is open (100 Gohm in the analysis).
        if (hasC) {
          net.Inductor(k, here, "c" + ks);
          net.Capacitor(k, "c" + ks, to);
        }
        break;
      case Joining::Parallel:
      case Joining::Separate:
        net.Inductor(k, here, to);
        if (hasC) net.Capacitor(k, here, to);
        break;
    }
  }
  net.Line("RLOAD " + net.Rail(seriesArms) + " 0 " + Number(d.Rload));

  // The sweep range of the program, with at least its own point density.
  double fstart = d.Fstart, fstop = d.Fstop;
  if (!(fstart > 0) || !(fstop > 0)) {
    fstart = d.Width / 5.0;
    fstop = d.Width * 5.0;
  }
  if (!(fstart > 0) || !(fstop > 0)) {
    fstart = 1;
    fstop = 1e9;
  }
  if (fstop < fstart) std::swap(fstart, fstop);
  const double decades = std::log10(fstop / fstart);
  int perDecade = 100;
  if (decades > 0 && d.NrIntervals > 0)
    perDecade = std::max(100, static_cast<int>(std::ceil(d.NrIntervals / decades)));
  net.Line(".ac dec " + std::to_string(perDecade) + " " + Number(fstart) + " " + Number(fstop));
  net.Line(".end");
  return net.Text();
}

bool WriteSpiceNetlist(const DesignRecord& d, const std::string& path, Platform& platform) {
  AtomicFile file(path);
  file.Write(SpiceNetlistText(d));
  if (file.Commit()) return true;
  platform.ShowMessage("We could not write the SPICE netlist");
  return false;
}

}  // namespace drenik
