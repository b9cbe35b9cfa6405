#include "parts/inductor_values.h"

namespace drenik {

Bracket InductorBracket(const InductorValues& values, double v) {
  if (values.former) {
    const TurnsBracket b = TurnsAround(*values.former, v);
    return {b.lower, b.upper};
  }
  if (values.series) return SeriesBracket(*values.series, v);
  return {v, v};
}

double NearestInductor(const InductorValues& values, double v) {
  if (values.former) return WindingFor(*values.former, v).inductance;
  if (values.series) return NearestInSeries(*values.series, v);
  return v;
}

}  // namespace drenik
