#pragma once
// The design as one JSON object: the record's scalars, its arrays, the sweep
// and the schematic's value texts.

#include <ostream>
#include <string>

#include "core/design_record.h"

namespace drenik::cli {

// The shortest text that reads back to the same 32-bit float, in JSON form
// ("0.044", "4.2e+06"); null for a value JSON cannot hold.
std::string JsonReal(float value);
// The same for a double: the shortest text that reads back to it; null for
// infinity or NaN.
std::string JsonNumber(double value);
std::string JsonString(const std::string& text);

void WriteDesignJson(const DesignRecord& d, std::ostream& out);

}  // namespace drenik::cli
