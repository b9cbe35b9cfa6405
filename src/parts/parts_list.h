#pragma once
// The parts list of a choice, to order from: one line per value and kind of
// part, with the reference designators of the LTspice schematic (C1, L2, by
// ladder position; the two capacitors of a pair as C3A and C3B), the value,
// the series, its tolerance and the quantity; for inductors wound on a
// toroid core or an air-core form, also the former and the turns.

#include <map>
#include <string>
#include <vector>

#include "core/platform.h"
#include "parts/chooser.h"
#include "stress/stress.h"

namespace drenik {

inline constexpr const char* kPartsListHeader = "Reference,Value,Series,Tolerance,Quantity";
// The two columns more when the inductors are wound on a former.
inline constexpr const char* kPartsListWindingColumns = ",Core or form,Turns";
// The two columns more when the parts are rated for a transmit power.
inline constexpr const char* kPartsListRatingColumns = ",Voltage rating,RMS current";
inline constexpr const char* kPartsListFailure = "We could not write the parts list.";

struct PartsListLine {
  std::vector<std::string> references;
  std::string value;      // "150pF", "2.52674uH"
  std::string series;     // "E24"; "exact" for an inductor wound to value
  std::string tolerance;  // "5%"; empty for a wound inductor; the AL's for a toroid
  std::string former;     // the core, or the air-core form and the coil's length
  int turns = 0;          // whole turns on the former; 0 for a bought part
  // At a transmit power: a capacitor's voltage rating ("500 V"), an
  // inductor's RMS current ("2.31 A", the largest of its references).
  std::string rating;
};

// What the parts take at a transmit power (the part stress), by ladder
// position: the peak voltage across each capacitor (the two of a pair take
// the same) and the RMS current through each inductor.
struct PartLoads {
  std::map<int, double> capacitorPeak;  // V
  std::map<int, double> inductorRms;    // A
};
PartLoads LoadsOf(const StressResult& stress);

// Capacitors first, then inductors, each in the order of their first
// position. With loads, capacitors of one value but different ratings are
// lines of their own.
std::vector<PartsListLine> PartsList(const PartsChoice& choice, const PartLoads* loads = nullptr);

// A CSV file (lines ended by CR LF). Failure: kPartsListFailure.
bool WritePartsList(const PartsChoice& choice, const std::string& path, Platform& platform,
                    const PartLoads* loads = nullptr);

}  // namespace drenik
