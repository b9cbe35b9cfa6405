#pragma once
// Number texts with unit prefixes, as shown on the pages, in the schematic
// and in the exported files, and the entry check that reads what the user
// types ("4,7k", "1.5E6", "2.2uH").

#include <cstddef>
#include <string>

namespace drenik {

// Bare SI prefix ("G", "M", "K", two blanks, "m", "u", "n", "p"); the caller
// appends the unit. Used for the envelope delay readout.
std::string FormatPrefixed(double value);
// Frequencies: "GHz ", "MHz ", "KHz " (one trailing blank), "Hz", "mHz";
// signed number form (' 14.25MHz ').
std::string FormatFrequency(double value);
// Inductances "GH" .. "nH".
std::string FormatInductance(double value);
// Capacitances "GF" .. "pF"; nanofarads are never used.
std::string FormatCapacitance(double value);
// General values (ohms, dB, Q) with "G", "M", "k" or a blank.
std::string FormatValue(double value);
// The passband ripple in the printed title.
std::string FormatSmall(double value);

// The formatters' texts without their leading and trailing blanks, for labels
// that are laid out by their own position.
std::string TrimBlanks(const std::string& text);

// The characters an entry box holds; CheckEntry reads no more than these.
inline constexpr size_t kEntryCharacters = 12;

// Reads a typed entry. Cuts the caller's text to 12 characters when longer.
// Never fails: unreadable text reads as 0; the result is clamped to +-1e10.
float CheckEntry(std::string& entry);

}  // namespace drenik
