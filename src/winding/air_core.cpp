#include "winding/air_core.h"

#include <cmath>

namespace drenik {
namespace {

constexpr double kMmPerInch = 25.4;
constexpr double kLeastLengthRatio = 0.4;

// Coil diameter to the wire's centre, inches.
double CoilInches(const AirCoreForm& f) {
  return (f.formMm + f.wireMm) / kMmPerInch;
}

}  // namespace

bool Windable(const AirCoreForm& form) {
  return form.formMm > 0 && form.wireMm > 0 && form.formMm <= kLargestAirCoreMm &&
         form.wireMm <= kLargestAirCoreMm;
}

double AirCoreInductance(const AirCoreForm& form, double turns) {
  const double d = CoilInches(form), l = turns * form.wireMm / kMmPerInch;
  return d * d * turns * turns / (18 * d + 40 * l) * 1e-6;
}

double AirCoreTurns(const AirCoreForm& form, double henries) {
  // d^2 n^2 - 40 L w n - 18 L d = 0 with w the wire's diameter, inches.
  const double d = CoilInches(form), w = form.wireMm / kMmPerInch, l = henries * 1e6;
  const double b = 40 * l * w;
  return (b + std::sqrt(b * b + 72 * l * d * d * d)) / (2 * d * d);
}

double AirCoreLengthMm(const AirCoreForm& form, double turns) {
  return turns * form.wireMm;
}

bool WheelerHolds(const AirCoreForm& form, double turns) {
  return AirCoreLengthMm(form, turns) >= kLeastLengthRatio * (form.formMm + form.wireMm);
}

}  // namespace drenik
