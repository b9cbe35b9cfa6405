#pragma once
// Texts of the Touchstone and CSV writers (declared in export/writers.h).

namespace drenik {

inline constexpr const char* kTouchstoneFailure = "We could not write the Touchstone file";
inline constexpr const char* kSweepCsvFailure = "We could not write the CSV file";
inline constexpr const char* kSweepCsvHeader =
    "frequency_hz,transmission_db,reflection_db,vswr,delay_s,phase_deg";

}  // namespace drenik
