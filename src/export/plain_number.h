#pragma once
// Numbers for files read by other engineering tools (Touchstone, CSV): the
// shortest text that reads back to the same value, "." as the point, a
// leading "0" before it and a lower-case exponent ("0.5", "4500000",
// "1.5e-09"), as every number parser reads them.

#include <charconv>
#include <string>

namespace drenik {

template <typename Real>
std::string RoundTripText(Real value) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return std::string(text, result.ptr);
}

}  // namespace drenik
