#include "parts/inductor_values.h"

#include <limits>

namespace drenik {
namespace {

// An inductance a part can have, as the record keeps it: above 0 and within
// the 32-bit floats.
bool Buildable(double v) {
  return v >= std::numeric_limits<float>::min() && v <= std::numeric_limits<float>::max();
}

}  // namespace

std::optional<Bracket> InductorBracket(const InductorValues& values, double v) {
  if (!Buildable(v)) return std::nullopt;
  if (values.former) {
    const TurnsBracket b = TurnsAround(*values.former, v);
    return Bracket{b.lower, b.upper};
  }
  if (values.series) return SeriesBracket(*values.series, v);
  return Bracket{v, v};
}

std::optional<double> NearestInductor(const InductorValues& values, double v) {
  if (!Buildable(v)) return std::nullopt;
  if (values.former) return WindingFor(*values.former, v).inductance;
  if (values.series) return NearestInSeries(*values.series, v);
  return v;
}

}  // namespace drenik
