#pragma once
// The iron-powder toroid cores commonly wound for HF and VHF filters: one
// table, read by the winding calculator, the stock-part chooser's whole-turn
// series and the parts list.

#include <span>
#include <string_view>

namespace drenik {

struct ToroidCore {
  const char* name = "";   // size and mix, e.g. "T50-2"
  double alNanohenry = 0;  // inductance factor, nH per turn squared
  double fLowHz = 0;       // the mix's usual range of best Q
  double fHighHz = 0;
};

// Published AL figures hold to about this fraction from core to core.
inline constexpr double kToroidAlTolerance = 0.05;

std::span<const ToroidCore> ToroidCores();
// Case-insensitive, with or without the dash after the T ("T50-2", "t-50-2").
const ToroidCore* FindToroidCore(std::string_view name);

}  // namespace drenik
