#pragma once
// The search of the stock-part chooser over one ladder: which option each
// capacitor takes and what each inductor becomes.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/ladder.h"
#include "parts/inductor_values.h"
#include "parts/merit.h"
#include "synthesis/e_series.h"

namespace drenik {

// A value as the record will keep it (a 32-bit float): candidates are
// measured with exactly the values the display page will analyse.
inline double Stored(double v) {
  return static_cast<float>(v);
}

// One way to make a position's capacitance: one part or two in parallel.
struct CapOption {
  double value = 0;           // F, the effective value as the record will keep it
  std::vector<double> parts;  // F, larger first
};

// A capacitor to choose, with its options nearest first.
struct CapSlot {
  int position = 0;
  double exact = 0;
  std::vector<CapOption> options;
};

struct InductorSlot {
  int position = 0;
  double exact = 0;
};

struct SearchInput {
  Ladder exact;  // the exact design, reflection referred to the source
  std::vector<CapSlot> caps;
  std::vector<InductorSlot> inductors;
  InductorValues inductorValues;  // what each inductor may be
  // Plain rounding: each inductor's exact value rounded to the nearest one
  // it may take, per inductor slot (the capacitors take their nearest
  // option). Where given, a candidate as it stands and a start of the
  // polish, and the result steps through the allowed values one part at a
  // time; empty for a search that is not held to rounding.
  std::vector<double> roundedInductors;
  bool HeldToRounding() const {
    return !roundedInductors.empty() && roundedInductors.size() == inductors.size();
  }
  Probe probe;                   // where candidates are measured
  std::vector<float> stopPeaks;  // stopband points of the first-order model
  Judge judge;
  // Told the share of the search done (0..1) as each start is polished.
  std::function<void(double done)> progress{};
};

struct SearchResult {
  std::vector<int> capOption;     // per capacitor slot
  std::vector<double> inductors;  // H, per inductor slot, as the record will keep them
  Merit merit;                    // at the probe
  // Why there is no set (a search that found none says so); empty when
  // there is one.
  std::string fault{};
};

SearchResult SearchParts(const SearchInput& in);

// Polishes the inductors of an earlier result again, keeping its
// capacitors: after points were added to the probe.
SearchResult RefineParts(const SearchInput& in, const SearchResult& from);

}  // namespace drenik
