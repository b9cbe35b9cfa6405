#include "timedomain/network.h"

#include <cmath>

#include "analysis/element_models.h"

namespace drenik {
namespace {

// Nodes joined by an inductor of 0 H are one node: a short has no state of
// its own and would only add an infinitely fast pole.
class Nodes {
 public:
  int Add() {
    parent_.push_back(static_cast<int>(parent_.size()));
    return parent_.back();
  }
  int Find(int n) {
    while (parent_[n] != n) n = parent_[n] = parent_[parent_[n]];
    return n;
  }
  void Join(int a, int b) {
    a = Find(a), b = Find(b);
    if (a == 0) std::swap(a, b);  // ground stays the root of its set
    parent_[a] = b;
  }
  int Count() const { return static_cast<int>(parent_.size()); }

 private:
  std::vector<int> parent_{0};  // node 0 is ground
};

}  // namespace

LadderNetwork NetworkOf(const Ladder& ladder, double lossFrequency) {
  LadderNetwork net;
  net.fault = LadderFault(ladder);
  if (!net.fault.empty()) return net;
  if (!(lossFrequency > 0) || !std::isfinite(lossFrequency)) {
    net.fault = "Cannot work out the time response: the cutoff frequency must be above 0 Hz.";
    return net;
  }
  const double w0 = 2 * M_PI * lossFrequency;
  Nodes nodes;
  std::vector<NetworkPart> parts;
  std::vector<std::pair<int, int>> shorts;

  auto inductor = [&](int a, int b, double l) {
    if (l == 0) {
      shorts.push_back({a, b});
      return;
    }
    parts.push_back({PartKind::L, a, b, l, std::fabs(w0 * l / ladder.qind)});
    // The winding capacitance is a lumped part across the whole inductor,
    // its loss resistance included, as the frequency analysis puts it.
    if (ladder.lcp > 0) parts.push_back({PartKind::C, a, b, ladder.lcp});
  };
  // A missing capacitor (0 F) is open, except in the series arm alone,
  // where the frequency analysis and the netlist take it as 10 Mohm.
  auto capacitor = [&](int a, int b, double c, bool aloneInSeries) {
    if (c == 0) {
      if (aloneInSeries) parts.push_back({PartKind::R, a, b, models::kSeriesOpenReactance});
      return;
    }
    // The lead inductance is a lumped part in series with the capacitor and
    // its parallel loss resistance.
    if (ladder.cesl > 0) {
      const int m = nodes.Add();
      parts.push_back({PartKind::L, a, m, ladder.cesl});
      a = m;
    }
    parts.push_back({PartKind::C, a, b, c});
    parts.push_back({PartKind::R, a, b, std::fabs(ladder.qcap / (w0 * c))});
  };

  int line = nodes.Add();
  net.input = line;
  for (int j = 1; j <= ladder.stages; ++j) {
    const ElementFacts* f = FactsOf(ladder.kind[j]);
    // The frequency analysis models codes 5 and 8 in band designs only; the
    // same rule here, so both see the same circuit.
    if (!Modelled(f, ladder.bandBranches)) {
      ++net.unmodelled;
      continue;
    }
    const double l = ladder.L[j], c = ladder.C[j];
    if ((f->hasL && !(std::isfinite(l) && l >= 0)) || (f->hasC && !(std::isfinite(c) && c >= 0))) {
      net.fault =
          "Cannot work out the time response: a part value is negative or not a number "
          "at ladder position " +
          std::to_string(j) + ".";
      return net;
    }
    const int a = line;
    const int b = f->arm == Arm::Series ? (line = nodes.Add()) : 0;
    switch (f->joining) {
      case Joining::Single:
        if (f->hasL) inductor(a, b, l);
        if (f->hasC) capacitor(a, b, c, f->arm == Arm::Series);
        break;
      case Joining::InSeries:
        // Without its capacitor a shunt trap is open; the series L-C of a
        // bandpass keeps the 10 Mohm stand-in of a missing series capacitor.
        if (c != 0 || f->arm == Arm::Series) {
          const int m = nodes.Add();
          inductor(a, m, l);
          capacitor(m, b, c, f->arm == Arm::Series);
        }
        break;
      case Joining::Parallel:
        inductor(a, b, l);
        capacitor(a, b, c, false);
        // The frequency analysis puts a fixed 100 Gohm across every tank.
        parts.push_back({PartKind::R, a, b, models::kTankShunt});
        break;
      case Joining::Separate:
        // A band design's shunt L beside a shunt C: the sum of the two
        // parts' admittances, without the tank's fixed shunt.
        inductor(a, b, l);
        capacitor(a, b, c, false);
        break;
    }
  }
  for (const auto& [a, b] : shorts) nodes.Join(a, b);

  // Number the nodes that remain 1..n, ground 0.
  std::vector<int> number(nodes.Count(), -1);
  number[0] = 0;
  auto renumber = [&](int n) {
    const int root = nodes.Find(n);
    if (number[root] < 0) number[root] = ++net.nodes;
    return number[root];
  };
  net.input = renumber(net.input);
  for (NetworkPart& p : parts) p.a = renumber(p.a), p.b = renumber(p.b);
  net.output = renumber(line);
  if (net.input == 0 || net.output == 0) {
    net.fault = "Cannot work out the time response: a shorted shunt inductor grounds the line.";
    return net;
  }
  // Parts shorted onto themselves carry nothing.
  std::erase_if(parts, [](const NetworkPart& p) { return p.a == p.b; });
  net.parts = std::move(parts);
  net.rsource = ladder.rsource;
  net.rload = ladder.rload;
  return net;
}

}  // namespace drenik
