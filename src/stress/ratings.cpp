#include "stress/ratings.h"

namespace drenik {

double CapacitorRating(double peakVolts) {
  for (double rating : kCapacitorRatings)
    if (rating >= kVoltageDerating * peakVolts) return rating;
  return 0;
}

std::string RatingText(double peakVolts) {
  const double rating = CapacitorRating(peakVolts);
  if (rating > 0) return std::to_string(static_cast<int>(rating)) + " V";
  return "over " + std::to_string(static_cast<int>(std::end(kCapacitorRatings)[-1])) + " V";
}

}  // namespace drenik
