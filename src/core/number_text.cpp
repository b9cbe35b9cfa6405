#include "core/number_text.h"

#include <cstdio>

#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace drenik {

namespace {

// Magnitudes with a decimal exponent outside [-7, 6] are written in exponent form.
constexpr int kSmallestFixedExponent = -7;
constexpr int kLargestFixedExponent = 6;

}  // namespace

std::string ShortestText(float value) {
  if (value == 0) return "0";  // also for -0
  if (!std::isfinite(value)) {
    if (std::isnan(value)) return "nan";
    return value < 0 ? "-inf" : "inf";
  }
  // The scientific form of the shortest round-trip text: "d.ddde+XX".
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific);
  std::string_view sci(buf, static_cast<size_t>(res.ptr - buf));
  size_t e = sci.find('e');
  std::string digits;
  for (char c : sci.substr(0, e))
    if (c != '.') digits += c;
  int exponent = 0;
  std::string_view expText = sci.substr(e + 1);
  if (expText.front() == '+') expText.remove_prefix(1);
  std::from_chars(expText.data(), expText.data() + expText.size(), exponent);

  std::string text = value < 0 ? "-" : "";
  const int n = static_cast<int>(digits.size());
  if (exponent < kSmallestFixedExponent || exponent > kLargestFixedExponent) {
    text += digits[0];
    if (n > 1) text += "." + digits.substr(1);
    text += exponent < 0 ? "E-" : "E+";
    int magnitude = std::abs(exponent);
    if (magnitude < 10) text += '0';
    text += std::to_string(magnitude);
  } else if (exponent < 0) {
    text += "." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
  } else if (n <= exponent + 1) {
    text += digits + std::string(static_cast<size_t>(exponent + 1 - n), '0');
  } else {
    text += digits.substr(0, static_cast<size_t>(exponent) + 1) + "." +
            digits.substr(static_cast<size_t>(exponent) + 1);
  }
  return text;
}

std::string ValueText(float value) {
  return (value < 0 ? "" : " ") + ShortestText(value) + " ";
}

std::string IntegerText(long value) {
  return (value < 0 ? "" : " ") + std::to_string(value) + " ";
}

namespace {

template <typename Real>
std::string RoundTrip(Real value) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return std::string(text, result.ptr);
}

}  // namespace

std::string RoundTripText(float value) {
  return RoundTrip(value);
}
std::string RoundTripText(double value) {
  return RoundTrip(value);
}

std::string GeneralText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

}  // namespace drenik
