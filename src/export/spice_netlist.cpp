// SPICE netlist of the ladder: a 2 V AC generator behind Rsource, the
// positions by their element codes, Rload, and an AC sweep over the
// program's own range. With the 2 V generator, V(out) = 1 V means a lossless
// match; the transducer gain is 20 log10|V(out)| + 10 log10(Rsource/Rload) dB.
// Where an inductor Q or a part model is set (a Q law, a winding
// capacitance, a capacitor Q or lead inductance) every part is written as
// the analysis models it: the series
// resistor follows the frequency through ngspice's `hertz` (w L / Q(f) at
// each point of the AC sweep), the winding capacitance sits across inductor
// and resistor, the capacitor's loss is a resistor Q / (w C) across it and
// its lead inductance is in series.
//
// `hertz` is the analysis frequency only in .ac; the operating point and a
// transient analysis see 0 (in an interactive session ngspice keeps the last
// .ac frequency instead). A loss resistor that is 0 there makes .tran fail
// and one that is infinite drops the loss, so each resistor falls back to
// its value at the Q's reference frequency (the cutoff, a band design's
// centre) when hertz is 0: exactly the fixed resistance the program's time
// response uses, since a Q that changes with frequency has no lumped
// equivalent in the time domain.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "analysis/ladder.h"
#include "core/atomic_file.h"
#include "core/element_kinds.h"
#include "core/number_text.h"
#include "export/writable_parts.h"
#include "export/writers.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

constexpr const char* kEol = "\r\n";
// ngspice reads the points per decade as a whole number.
constexpr double kMostPointsPerDecade = 1e9;

std::string Number(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.9g", v);
  return buf;
}

// The record's values are single-precision: written as the float they are
// (750 pF as 7.5e-10, not 7.49999951e-10).
std::string Number(float v) {
  return RoundTripText(v);
}

// A kind the analysis models, or nullptr (such a position is a wire there).
const ElementFacts* AnalysedFacts(const DesignRecord& d, int16_t code) {
  const ElementFacts* f = FactsOf(code);
  return Modelled(f, d.Center > 0) ? f : nullptr;
}

constexpr double kTwoPi = 6.283185307179586;

// Whether any part departs from the ideal: a finite inductor Q (whose loss
// grows with the frequency even when the Q is constant), or a part model.
bool HasPartModels(const DesignRecord& d) {
  return d.Qind < kInfiniteQind || d.InductorQLaw != QLaw::Constant ||
         d.CapacitorQ != kInfiniteQcap || d.WindingCapacitance != 0 || d.CapacitorEsl != 0;
}

// A resistance that follows the AC analysis' frequency, or `fixed` ohms
// where hertz is 0 (see the head of this file).
std::string FollowingHertz(const std::string& expression, double fixed) {
  return "{hertz>0 ? " + expression + " : " + Number(fixed) + "}";
}

// The inductor's series resistance, ohms, as ngspice text: w L / Q(f) with
// Q(f) = Q0 (f / f0)^e, that is 2 pi L f0^e / Q0 times f^(1 - e), and
// 2 pi f0 L / Q0 at f0 for every law.
std::string LossResistance(const Ladder& m, double henries) {
  const double e = FactsOf(m.qLaw).exponent;
  const double k = kTwoPi * henries * std::pow(m.qReference, e) / m.qind;
  if (e == 1) return Number(k);
  const double atReference = kTwoPi * m.qReference * henries / m.qind;
  if (e == 0) return FollowingHertz(Number(k) + "*hertz", atReference);
  return FollowingHertz(Number(k) + "*pow(hertz," + Number(1 - e) + ")", atReference);
}

class NetlistBuilder {
 public:
  NetlistBuilder(const DesignRecord& d, int seriesArms)
      : d_(d), seriesArms_(seriesArms), exact_(HasPartModels(d)), m_(LadderOf(d)) {}

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
    const std::string ks = std::to_string(k);
    if (exact_) {
      const std::string mid = "l" + ks;
      Line("L" + ks + " " + a + " " + mid + " " + Number(d_.L[k]));
      Line("RSER" + ks + " " + mid + " " + b + " " + LossResistance(m_, d_.L[k]));
      if (m_.lcp > 0) Line("CP" + ks + " " + a + " " + b + " " + Number(m_.lcp));
      return;
    }
    // An ideal inductor (Q 1e6) keeps the token resistor at the cutoff (the
    // centre of a band design) that the netlist has always carried.
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
    const std::string ks = std::to_string(k);
    if (!exact_) {
      Line("C" + ks + " " + a + " " + b + " " + Number(d_.C[k]));
      return;
    }
    const std::string top = m_.cesl > 0 ? "e" + ks : b;
    Line("C" + ks + " " + a + " " + top + " " + Number(d_.C[k]));
    // Q / (w C), at the reference frequency where hertz is 0.
    if (m_.qcap < kInfiniteQcap) {
      const double qOverC = m_.qcap / (kTwoPi * d_.C[k]);
      Line("RPAR" + ks + " " + a + " " + top + " " +
           FollowingHertz(Number(qOverC) + "/hertz", qOverC / m_.qReference));
    }
    if (m_.cesl > 0) Line("LESL" + ks + " " + top + " " + b + " " + Number(m_.cesl));
  }

  // The part models, for the reader of the netlist.
  void ModelNote() {
    if (!exact_) return;
    Line("* Part models: inductor Q " + Number(m_.qind) + " at " + Number(m_.qReference) +
         " Hz, law " + FactsOf(m_.qLaw).word + ", winding capacitance " + Number(m_.lcp) +
         " F; capacitor Q " + (m_.qcap < kInfiniteQcap ? Number(m_.qcap) : "infinite") +
         ", lead inductance " + Number(m_.cesl) + " H");
  }

  std::string& Text() { return text_; }

 private:
  const DesignRecord& d_;
  int seriesArms_;
  bool exact_;  // every part as the analysis models it
  Ladder m_;    // the part models' parameters, as the analysis takes them
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
  net.ModelNote();
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
  double perDecade = 100;
  if (decades > 0 && d.NrIntervals > 0)
    perDecade = std::max(100.0, std::ceil(d.NrIntervals / decades));
  // A sweep a tiny part of a decade wide (ends a float step or two apart)
  // would need more points per decade than a whole number holds; over such
  // a span a linear sweep of the program's points is the same sweep.
  if (perDecade <= kMostPointsPerDecade)
    net.Line(".ac dec " + std::to_string(static_cast<long>(perDecade)) + " " + Number(fstart) +
             " " + Number(fstop));
  else
    net.Line(".ac lin " + std::to_string(std::max<int>(d.NrIntervals, 1) + 1) + " " +
             Number(fstart) + " " + Number(fstop));
  net.Line(".end");
  return net.Text();
}

bool WriteSpiceNetlist(const DesignRecord& d, const std::string& path, Platform& platform) {
  constexpr const char* kFailure = "We could not write the SPICE netlist";
  if (!PartsWritable(d, platform, kFailure)) return false;
  AtomicFile file(path);
  file.Write(SpiceNetlistText(d));
  if (file.Commit()) return true;
  platform.ShowMessage(kFailure);
  return false;
}

}  // namespace drenik
