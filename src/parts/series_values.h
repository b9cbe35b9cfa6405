#pragma once
// The values of an E series in every decade: the neighbours of a value, the
// nearest value, membership, and pairs of two parts in parallel that add up
// close to a value. Values are in the part's own unit (farads, henries).

#include <optional>
#include <vector>

#include "synthesis/e_series.h"

namespace drenik {

// Neighbours in the series with lower <= v < upper. A value that is a series
// value (to a part in a million, the rounding of a stored float) is its own
// lower neighbour.
struct Bracket {
  double lower = 0, upper = 0;
};
// Nothing for a value no part can have: 0, negative, infinite, NaN, or
// beyond the range of the record's 32-bit floats.
std::optional<Bracket> SeriesBracket(ESeries series, double v);

// The nearer neighbour by ratio; a tie goes up, as the 5% stage rounds.
// Nothing where SeriesBracket has nothing.
std::optional<double> NearestInSeries(ESeries series, double v);

// Whether v is a value of the series, to a part in a million.
bool InSeries(ESeries series, double v);

// Two parts of the series in parallel, the larger first.
struct PartPair {
  double larger = 0, smaller = 0;
  double Sum() const { return larger + smaller; }
};

// The pair whose sum lies nearest below v and the one nearest above it (at
// most two, below first). The smaller part is at least the larger one's
// tolerance: a smaller trim would be lost in the larger part's spread.
std::vector<PartPair> PairsAround(ESeries series, double v);

}  // namespace drenik
