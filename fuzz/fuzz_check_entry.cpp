// Any typed text must read without a fault: the result is a finite number
// within +-1e10 and the entry is never longer than twelve characters.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/formatters.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string entry(reinterpret_cast<const char*>(data), size);
  const float value = drenik::CheckEntry(entry);
  if (!std::isfinite(value) || std::fabs(value) > 1e10f || entry.size() > 12) std::abort();
  // The formatters take whatever an entry reads as.
  const std::string texts[] = {drenik::FormatFrequency(value),   drenik::FormatInductance(value),
                               drenik::FormatCapacitance(value), drenik::FormatValue(value),
                               drenik::FormatPrefixed(value),    drenik::FormatSmall(value)};
  for (const std::string& text : texts)
    if (text.size() > 40) std::abort();
  return 0;
}
