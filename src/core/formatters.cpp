// Placeholder: replaced by the formatter implementation.
#include "core/formatters.h"
namespace drenik {
std::string FormatPrefixed(double) { return {}; }
std::string FormatFrequency(double) { return {}; }
std::string FormatInductance(double) { return {}; }
std::string FormatCapacitance(double) { return {}; }
std::string FormatValue(double) { return {}; }
std::string FormatSmall(double) { return {}; }
float CheckEntry(std::string&) { return 0; }
}  // namespace drenik
