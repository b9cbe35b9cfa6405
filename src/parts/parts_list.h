#pragma once
// The parts list of a choice, to order from: one line per value and kind of
// part, with the reference designators of the LTspice schematic (C1, L2, by
// ladder position; the two capacitors of a pair as C3A and C3B), the value,
// the series, its tolerance and the quantity; for inductors wound on a
// toroid core or an air-core form, also the former and the turns.

#include <string>
#include <vector>

#include "core/platform.h"
#include "parts/chooser.h"

namespace drenik {

inline constexpr const char* kPartsListHeader = "Reference,Value,Series,Tolerance,Quantity";
// The two columns more when the inductors are wound on a former.
inline constexpr const char* kPartsListWindingColumns = ",Core or form,Turns";
inline constexpr const char* kPartsListFailure = "We could not write the parts list.";

struct PartsListLine {
  std::vector<std::string> references;
  std::string value;      // "150pF", "2.52674uH"
  std::string series;     // "E24"; "exact" for an inductor wound to value
  std::string tolerance;  // "5%"; empty for a wound inductor; the AL's for a toroid
  std::string former;     // the core, or the air-core form and the coil's length
  int turns = 0;          // whole turns on the former; 0 for a bought part
};

// Capacitors first, then inductors, each in the order of their first
// position.
std::vector<PartsListLine> PartsList(const PartsChoice& choice);

// A CSV file (lines ended by CR LF). Failure: kPartsListFailure.
bool WritePartsList(const PartsChoice& choice, const std::string& path, Platform& platform);

}  // namespace drenik
