#pragma once
// The inductances the stock-part chooser may give an inductor: any value
// (wound to measure), the values of an E series, or the whole-turn values
// AL N^2 of a toroid core (or the whole turns of an air-core form).

#include <optional>

#include "parts/series_values.h"
#include "winding/winding.h"

namespace drenik {

struct InductorValues {
  std::optional<ESeries> series;
  std::optional<Former> former;  // takes the place of the series
  bool Restricted() const { return series || former; }
};

// Neighbours lower <= v < upper among the values. Nothing for a value no
// inductor can have (0, negative, not finite, beyond the 32-bit floats).
std::optional<Bracket> InductorBracket(const InductorValues& values, double v);
// The nearer neighbour by ratio; v itself where any value goes. Nothing
// where InductorBracket has nothing.
std::optional<double> NearestInductor(const InductorValues& values, double v);

}  // namespace drenik
