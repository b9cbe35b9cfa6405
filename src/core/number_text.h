#pragma once
// Plain number texts for files: the shortest decimal text that reads back to
// the same 32-bit float, always with "." as the point.

#include <string>

namespace drenik {

// Shortest round-trip text without a leading zero or blanks: ".044", "50",
// "-.5", "4500000", "1E+10", "1.5E-08". A magnitude of 1e7 or more, or below
// 1e-7 (after rounding to the shortest digits), is written in exponent form:
// the digits with a point after the first, "E", the exponent's sign and at
// least two exponent digits. Zero (either sign) is "0".
std::string ShortestText(float value);
// The file form of a real value: a leading blank (or "-"), the shortest text
// and one trailing blank: ' .01 ', ' 50 ', '-.5 '.
std::string ValueText(float value);
// The shortest text that reads back to the same value in the form every
// number parser reads, with a leading "0" and a lower-case exponent ("0.5",
// "4500000", "1.5e-09"): for JSON, CSV, Touchstone and SPICE files.
std::string RoundTripText(float value);
std::string RoundTripText(double value);
// A value for people to read in a message or a label: six significant
// digits at most, no trailing zeros ("0.015", "120", "1e-05").
std::string GeneralText(double value);
// The file form of an integer: ' 0 ', ' 11 ', '-3 '.
std::string IntegerText(long value);

}  // namespace drenik
