#pragma once
// What a capacitor must be rated for at the voltage it takes. A capacitor's
// rating is a DC working voltage; at radio frequencies its dielectric heats
// and its edges may arc well below that, so a transmit filter's capacitor is
// derated: its rating is at least kVoltageDerating times the peak RF voltage
// across it (silver mica and NP0 ceramics for 100 W filters are usually
// 500 V parts for about 200 V peak). The rating chosen is the next standard
// one at or above that.

#include <span>
#include <string>

namespace drenik {

inline constexpr double kVoltageDerating = 2;
// Standard DC working voltages of RF capacitors, V.
inline constexpr double kCapacitorRatings[] = {50, 100, 200, 250, 500, 630, 1000, 2000, 3000};

// The rating for a peak voltage (V); 0 when no standard rating is enough.
double CapacitorRating(double peakVolts);

// "500 V", or "over 3000 V" when no standard rating is enough.
std::string RatingText(double peakVolts);

}  // namespace drenik
