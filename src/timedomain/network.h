#pragma once
// The ladder as a circuit of two-terminal parts between numbered nodes, for
// the time-domain analysis. Each position is laid out from its element
// facts (arm, parts, joining), so a kind added to the table with a plain
// joining needs nothing here.
//
// Losses: the frequency analysis gives an inductor the series resistance
// |w L / Qind| and a capacitor the parallel resistance |Qcap / (w C)| at
// every frequency w. Such a resistance is not a lumped part and has no
// impulse response; here it is fixed at its value at the loss frequency
// (the cutoff), as a circuit simulator's fixed series resistance is, and as
// the SPICE netlist's loss resistors are in a transient analysis (where
// ngspice's hertz is 0). For a Q law other than a
// constant Q this is the law's resistance at the reference frequency (the
// loss frequency: the cutoff, or a band design's centre). The winding
// capacitance and the capacitor's lead inductance are lumped parts and are
// in the network exactly.

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/ladder.h"

namespace drenik {

enum class PartKind : uint8_t { R, L, C };

// One part from node a to node b (0 is ground). An inductor carries its
// loss as `rser` in the same branch.
struct NetworkPart {
  PartKind kind;
  int a, b;
  double value;  // ohms, henries or farads
  double rser = 0;
};

struct LadderNetwork {
  int nodes = 0;   // not counting ground
  int input = 0;   // the node behind the source resistance (the ladder's input)
  int output = 0;  // the node across the load
  double rsource = 0, rload = 0;
  std::vector<NetworkPart> parts;  // without the terminations
  int unmodelled = 0;              // positions without a model, taken as wires
  std::string fault;               // why the ladder has no network; empty when it has
};

// The circuit of `ladder` with its losses taken at lossFrequency (Hz).
LadderNetwork NetworkOf(const Ladder& ladder, double lossFrequency);

}  // namespace drenik
