#pragma once
// How an inductor is wound: on a toroid core or as an air-core coil, in
// whole turns. A former gives the inductances L(N) for N = 1, 2, ...: a
// series of values like an E series, which the stock-part chooser can take
// for its inductors.

#include <optional>
#include <string>
#include <vector>

#include "winding/air_core.h"
#include "winding/toroid_cores.h"

namespace drenik {

// A toroid core, or an air-core form (when core is null).
struct Former {
  const ToroidCore* core = nullptr;
  AirCoreForm air;
  std::string Name()
      const;  // "T50-2" or "air core 6 mm / wire 0.8 mm" (no commas: it goes into CSV)
};

// The former a command-line text names: a core ("T50-2") or "D:W", the
// form's and the wire's diameters in mm. Nothing when it names neither.
std::optional<Former> CoreNamed(const std::string& text);
std::optional<Former> AirCoreNamed(const std::string& text);

// Henries of n whole turns.
double TurnsInductance(const Former& former, int turns);

// The most turns wound on any former: no filter coil comes near, and it
// keeps the count an int.
inline constexpr int kMostTurns = 100000;

struct Winding {
  int turns = 0;             // whole turns, 1 to kMostTurns
  double inductance = 0;     // H, what those turns give
  double lengthMm = 0;       // air core: the coil's length; 0 on a toroid
  bool formulaHolds = true;  // air core: Wheeler's formula holds for this coil
  // The inductance wanted is beyond the former: nearer more than
  // kMostTurns turns, so the turns stop there and give less.
  bool beyond = false;
};

// The whole number of turns whose inductance is nearest `henries` (by
// ratio), at most kMostTurns; `henries` above 0.
Winding WindingFor(const Former& former, double henries);

// The whole-turn inductances around v: the largest at or below v and the
// next above it (the lower one is 1 turn's when v is below that; at
// kMostTurns both are that many turns' inductance).
struct TurnsBracket {
  int lowerTurns = 1;
  double lower = 0, upper = 0;  // H, of lowerTurns and one turn more
};
TurnsBracket TurnsAround(const Former& former, double v);

}  // namespace drenik
