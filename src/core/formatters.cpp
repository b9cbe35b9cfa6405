#include "core/formatters.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "core/number_text.h"

namespace drenik {

namespace {

struct Range {
  double atLeast;  // the value (or its magnitude) must reach this
  double divisor;
  const char* unit;
};

// Mask limits: the first limit the mantissa exceeds picks the number of
// decimal places; below all of them the last entry applies.
struct Mask {
  double above;
  int places;
};

template <size_t N>
const Range& PickRange(const std::array<Range, N>& ranges, double value) {
  for (const Range& r : ranges)
    if (value >= r.atLeast) return r;
  return ranges.back();
}

template <size_t N>
int PickPlaces(const std::array<Mask, N>& masks, double mantissa) {
  for (const Mask& m : masks)
    if (mantissa > m.above) return m.places;
  return masks.back().places;
}

// Rounds to a number of decimal places, half away from zero, working on the
// exact decimal expansion of the float so that ties are recognised exactly,
// and reads the rounded text back as a float.
float RoundToPlaces(float mantissa, int places) {
  if (!std::isfinite(mantissa)) return mantissa;
  // A float has at most 149 binary fraction digits, so 160 decimal places
  // show it exactly; the integer part has at most 39 digits.
  char buf[256];
  auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(static_cast<double>(mantissa)),
                           std::chars_format::fixed, 160);
  std::string exact(buf, res.ptr);
  size_t point = exact.find('.');
  std::string kept = exact.substr(0, point + 1 + static_cast<size_t>(places));
  if (exact[point + 1 + static_cast<size_t>(places)] >= '5') {
    // Add one unit in the last kept place, carrying to the left.
    size_t i = kept.size();
    bool carry = true;
    while (carry && i > 0) {
      --i;
      if (kept[i] == '.') continue;
      if (kept[i] == '9') {
        kept[i] = '0';
      } else {
        ++kept[i];
        carry = false;
      }
    }
    if (carry) kept.insert(kept.begin(), '1');
  }
  float rounded = 0;
  std::from_chars(kept.data(), kept.data() + kept.size(), rounded);
  if (rounded == 0) return 0;  // no "-0"
  return mantissa < 0 ? -rounded : rounded;
}

// " 14.25", "-.5": a blank or "-", no zero before the point.
std::string SignedText(float value) {
  return (value < 0 ? "" : " ") + ShortestText(value);
}

// "0.5", "-0.5", "47": a zero before the point of a value below 1.
std::string PlainText(float value) {
  std::string text = ShortestText(value);
  size_t digitsAt = text[0] == '-' ? 1 : 0;
  if (text[digitsAt] == '.') text.insert(digitsAt, "0");
  return text;
}

float Single(double value) {
  return static_cast<float>(value);
}

}  // namespace

std::string FormatPrefixed(double value) {
  static constexpr std::array<Range, 8> kRanges{{{1e9, 1e9, "G"},
                                                 {1e6, 1e6, "M"},
                                                 {1000, 1000, "K"},
                                                 {1, 1, "  "},
                                                 {0.001, 0.001, "m"},
                                                 {1e-6, 1e-6, "u"},
                                                 {1e-9, 1e-9, "n"},
                                                 {0, 1e-12, "p"}}};
  static constexpr std::array<Mask, 5> kMasks{{{1000, 0}, {100, 1}, {10, 2}, {1, 3}, {0, 4}}};
  const Range& range = PickRange(kRanges, std::fabs(value));
  float mantissa = Single(value / range.divisor);
  if (mantissa == 0) return "0  ";
  float rounded = RoundToPlaces(mantissa, PickPlaces(kMasks, std::fabs(mantissa)));
  return PlainText(rounded) + range.unit;
}

std::string FormatFrequency(double value) {
  // The large units keep one trailing blank, "Hz" and "mHz" none: labels are
  // laid out with these widths.
  static constexpr std::array<Range, 5> kRanges{{{1e9, 1e9, "GHz "},
                                                 {1e6, 1e6, "MHz "},
                                                 {1000, 1000, "KHz "},
                                                 {1, 1, "Hz"},
                                                 {-HUGE_VAL, 0.001, "mHz"}}};
  static constexpr std::array<Mask, 4> kMasks{{{100, 2}, {10, 3}, {1, 4}, {0, 5}}};
  // Frequencies are compared as they are: they are never negative.
  const Range& range = PickRange(kRanges, value);
  float mantissa = Single(value / range.divisor);
  if (mantissa == 0) return "0.0 ";
  float rounded = RoundToPlaces(mantissa, PickPlaces(kMasks, mantissa));
  return SignedText(rounded) + range.unit;
}

namespace {

constexpr std::array<Mask, 5> kComponentMasks{{{1000, 2}, {100, 3}, {10, 4}, {1, 5}, {0, 6}}};

}  // namespace

std::string FormatInductance(double value) {
  static constexpr std::array<Range, 7> kRanges{{{1e9, 1e9, "GH"},
                                                 {1e6, 1e6, "MH"},
                                                 {1000, 1000, "KH"},
                                                 {1, 1, "H"},
                                                 {0.001, 0.001, "mH"},
                                                 {1e-6, 1e-6, "uH"},
                                                 {0, 1e-9, "nH"}}};
  const Range& range = PickRange(kRanges, std::fabs(value));
  float mantissa = Single(value / range.divisor);
  if (mantissa == 0) return "";
  float rounded = RoundToPlaces(mantissa, PickPlaces(kComponentMasks, std::fabs(mantissa)));
  return PlainText(rounded) + range.unit;
}

std::string FormatCapacitance(double value) {
  // Capacitors are shown in microfarads down to 0.01 uF and in picofarads
  // below that; nanofarads are never used. The giga range divides by 1e11
  // and starts at 1e7 F, the milli range starts at 0.01 F. Below 1e-14 F the
  // value shows as nothing.
  static constexpr std::array<Range, 8> kRanges{{{1e7, 1e11, "GF"},
                                                 {1e4, 1e6, "MF"},
                                                 {10, 1000, "KF"},
                                                 {1, 1, "F"},
                                                 {0.01, 0.001, "mF"},
                                                 {1e-8, 1e-6, "uF"},
                                                 {1e-14, 1e-12, "pF"},
                                                 {0, 0, "  "}}};
  const Range& range = PickRange(kRanges, std::fabs(value));
  float mantissa = range.divisor == 0 ? 0.0f : Single(value / range.divisor);
  if (mantissa == 0) return "";
  float rounded = RoundToPlaces(mantissa, PickPlaces(kComponentMasks, std::fabs(mantissa)));
  return PlainText(rounded) + range.unit;
}

std::string FormatValue(double value) {
  struct ValueRange {
    double atLeast;
    double divisor;
    int places;
    const char* unit;
  };
  // Each range fixes its own mask. Magnitudes of 1e-5 or less read as zero.
  static constexpr std::array<ValueRange, 7> kRanges{{{1e9, 1e9, 3, "G"},
                                                      {1e6, 1e6, 3, "M"},
                                                      {1000, 1000, 3, "k"},
                                                      {100, 1, 2, " "},
                                                      {10, 1, 3, " "},
                                                      {1, 1, 4, " "},
                                                      {0, 1, 5, " "}}};
  const double magnitude = std::fabs(value);
  const ValueRange* range = &kRanges.back();
  for (const ValueRange& r : kRanges) {
    if (magnitude >= r.atLeast) {
      range = &r;
      break;
    }
  }
  float mantissa = magnitude > 1e-5 ? Single(value / range->divisor) : 0.0f;
  if (mantissa == 0) return " 0  ";
  return PlainText(RoundToPlaces(mantissa, range->places)) + range->unit;
}

std::string FormatSmall(double value) {
  // The ripple in dB. Anything of 0.001 or less, and so any negative value,
  // shows as "0".
  const double magnitude = std::fabs(value);
  const int places = magnitude >= 10 ? 1 : magnitude >= 1 ? 2 : 3;
  float mantissa = magnitude > 0.001 ? Single(value) : 0.0f;
  if (!(mantissa > 0.001f)) return "0";
  return PlainText(RoundToPlaces(mantissa, places)) + " ";
}

float CheckEntry(std::string& entry) {
  if (entry.size() > kEntryCharacters) entry.resize(kEntryCharacters);

  std::string digits;  // what the walk keeps: sign, digits, point, exponent, prefix
  double multiplier = 1;
  bool pointSeen = false;
  bool exponentSeen = false;
  bool prefixSeen = false;
  for (char c : entry) {
    if (c == ',') c = '.';
    if (c >= '0' && c <= '9') {
      if (digits.size() < 16 && !prefixSeen) digits += c;
      continue;
    }
    if (c == '.') {
      if (!prefixSeen && !pointSeen) digits += c;
      pointSeen = true;
      continue;
    }
    if (c == '+' || c == '-') {
      if (digits.empty() || digits.back() == 'E') digits += c;
      continue;
    }
    if (digits.empty()) continue;
    if ((c == 'E' || c == 'e') && !prefixSeen) {
      if (!exponentSeen) {
        digits += 'E';
        exponentSeen = true;
        pointSeen = true;  // no point after an exponent
      }
      continue;
    }
    if (exponentSeen || prefixSeen) continue;
    // Lower-case "m" is milli, upper-case "M" mega; the others take either case.
    char canonical = 0;
    double factor = 1;
    switch (c) {
      case 'P':
      case 'p':
        canonical = 'p';
        factor = 1e-12;
        break;
      case 'N':
      case 'n':
        canonical = 'n';
        factor = 1e-9;
        break;
      case 'U':
      case 'u':
        canonical = 'u';
        factor = 1e-6;
        break;
      case 'm':
        canonical = 'm';
        factor = 1e-3;
        break;
      case 'K':
      case 'k':
        canonical = 'k';
        factor = 1e3;
        break;
      case 'M':
        canonical = 'M';
        factor = 1e6;
        break;
      case 'G':
      case 'g':
        canonical = 'G';
        factor = 1e9;
        break;
      default:
        break;
    }
    if (canonical != 0) {
      digits += canonical;
      multiplier = factor;
      prefixSeen = true;
    }
  }

  // The leading number of the kept text: sign, digits with a point, and an
  // exponent only when it has at least one digit.
  std::string_view text = digits;
  size_t pos = 0;
  bool negative = false;
  if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
  size_t start = pos;
  bool anyDigit = false;
  while (pos < text.size() && ((text[pos] >= '0' && text[pos] <= '9') || text[pos] == '.')) {
    anyDigit |= text[pos] != '.';
    ++pos;
  }
  if (!anyDigit) return 0;
  size_t end = pos;
  long exponent = 0;
  if (pos < text.size() && text[pos] == 'E') {
    size_t e = pos + 1;
    bool negativeExponent = false;
    if (e < text.size() && (text[e] == '+' || text[e] == '-')) negativeExponent = text[e++] == '-';
    size_t firstExponentDigit = e;
    while (e < text.size() && text[e] >= '0' && text[e] <= '9') {
      if (exponent < 100000) exponent = exponent * 10 + (text[e] - '0');
      ++e;
    }
    if (e > firstExponentDigit && negativeExponent) exponent = -exponent;
  }
  double number = 0;
  std::from_chars(text.data() + start, text.data() + end, number);
  // Apply the exponent in the decimal text itself so the reading is exact.
  if (exponent != 0) {
    std::string scaled(text.substr(start, end - start));
    scaled += 'e' + std::to_string(exponent);
    auto res = std::from_chars(scaled.data(), scaled.data() + scaled.size(), number);
    if (res.ec == std::errc::result_out_of_range) number = exponent > 0 ? HUGE_VAL : 0;
  }
  double result = (negative ? -number : number) * multiplier;
  if (result > 1e10) result = 1e10;
  if (result < -1e10) result = -1e10;
  return static_cast<float>(result);
}

std::string TrimBlanks(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace drenik
