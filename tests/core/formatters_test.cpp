#include "core/formatters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

namespace drenik {
namespace {

// Pairs of value and expected text.
void ExpectTexts(std::string (*)(double)) {}
template <typename... Rest>
void ExpectTexts(std::string (*format)(double), double value, const char* text, Rest... rest) {
  EXPECT_EQ(format(value), text) << value;
  ExpectTexts(format, rest...);
}

// Pairs of entry and value; zero and the clamps must come out exactly.
void ExpectEntries() {}
template <typename... Rest>
void ExpectEntries(const char* text, float value, Rest... rest) {
  std::string entry = text;
  if (value == 0 || std::abs(value) == 1e10f) {
    EXPECT_EQ(CheckEntry(entry), value) << text;
  } else {
    EXPECT_FLOAT_EQ(CheckEntry(entry), value) << text;
  }
  ExpectEntries(rest...);
}

TEST(Formatters, RangesMasksAndZeroTexts) {
  // Masks: 2 places above 100, 3 above 10, 4 above 1, else 5 without a leading zero.
  // Rounding may carry into the next range's text; negatives are not made absolute.
  ExpectTexts(FormatFrequency, 0, "0.0 ", 999.9, " 999.9Hz", 1000, " 1KHz ", 1e10, " 10GHz ", 0.5,
              " 500mHz", 0.0005, " .5mHz", 123456789, " 123.46MHz ", 12345678, " 12.346MHz ",
              1234567, " 1.2346MHz ", 1.23456789, " 1.2346Hz", 999999, " 1000KHz ", -2, "-2000mHz");
  ExpectTexts(FormatInductance, 0, "", 4.7e-6, "4.7uH", 9.99e-7, "999nH", 2500, "2.5KH", 4e9, "4GH",
              -4.7e-6, "-4.7uH", 1.2345678e-9, "1.23457nH", 0.1234567e-9, "0.123457nH", 1234.5678e9,
              "1234.57GH", 1e-17, "0nH");
  // No nanofarads: pF up to 0.01 uF; nothing below 0.01 pF.
  ExpectTexts(FormatCapacitance, 0, "", 1e-8, "0.01uF", 9.99e-9, "9990pF", 1e-14, "0.01pF", 9.9e-15,
              "", -1e-15, "", 0.005, "5000uF", 0.01, "10mF", 1, "1F", 10, "0.01KF", 1e4, "0.01MF",
              1e7, "0.0001GF", -3.3e-11, "-33pF");
  ExpectTexts(FormatValue, 0, " 0  ", 50, "50 ", 1e-5, " 0  ", 2e-5, "0.00002 ", 0.123456,
              "0.12346 ", 1.234567, "1.2346 ", 12.34567, "12.346 ", 123.4567, "123.46 ", 1234.567,
              "1.235k", 2.5e9, "2.5G", -3300, "-3.3k");
  // Places: none above 1000, then 1, 2, 3 and 4.
  ExpectTexts(FormatPrefixed, 0, "0  ", 0.0123, "12.3m", 1500, "1.5K", 4e-13, "0.4p", -2.5e-7,
              "-250n", 1234.56e9, "1235G", 123.456e-9, "123.5n", 12.3456e-9, "12.35n", 1.23456e-9,
              "1.235n", 0.123456e-12, "0.1235p");
  ExpectTexts(FormatSmall, 0.044, "0.044 ", 0.2, "0.2 ", 0.01, "0.01 ", 0, "0", 0.001, "0", 0.0015,
              "0.002 ", 1.234, "1.23 ", 12.34, "12.3 ", -20, "0");
}

TEST(Formatters, RoundHalfAwayFromZeroOnExactTies) {
  // 0.5, 2.5 and 0.125 are exact binary values: true ties.
  ExpectTexts(FormatPrefixed, 1000.5e9, "1001G", 1002.5e9, "1003G", -1002.5e9, "-1003G");
  EXPECT_EQ(FormatSmall(0.125 + 1), "1.13 ");
  EXPECT_EQ(FormatValue(1.03125), "1.0313 ");
  // As floats 0.0245 lies just below the tie and 0.0445 just above it.
  ExpectTexts(FormatSmall, 0.0245f, "0.024 ", 0.0445f, "0.045 ");
}

TEST(CheckEntry, ReadsEntriesAndDropsWhatDoesNotFit) {
  // "m" is milli even in "ohm"; a UTF-8 ohm sign is ignored.
  ExpectEntries("4,7k", 4700, "1.5E6", 1500000, "2.2uH", 2.2e-6f, "3m", 0.003f, "3M", 3000000,
                "1.2.3", 1.23f, "5E3k", 5000, "-", 0, "", 0, ".", 0, "-.5", -0.5f, " 50 \xCE\xA9",
                50, "50 ohm", 0.05f, "4.2 MHz", 4.2e6f, "10p", 1e-11f, "7K", 7000, "2g", 2e9f,
                "2e-3", 0.002f);
  // A prefix before any digit is ignored, digits after one dropped; only the first counts.
  ExpectEntries("k5", 5, "4k7", 4000, "1kM", 1000);
  // A second exponent letter is dropped with its digits kept; no point after the exponent.
  ExpectEntries("1E0E3", 1000, "1E0.5", 1e5f);
  // A sign only at the start or right behind the exponent; an empty exponent counts nothing.
  ExpectEntries("5-3", 53, "--5", -5, "7E", 7, "7E-k", 7, "E5", 5);
  // Huge and tiny values clamp or vanish without a fault.
  ExpectEntries("99999999999", 1e10f, "-99999999999", -1e10f, "1E99999999", 1e10f, "1E-99999999",
                0);
}

TEST(CheckEntry, CutsTheCallersTextToTwelveCharacters) {
  for (auto [text, value, cut] : {std::tuple{"1234567890123456", 1e10f, "123456789012"},
                                  {"1.0000000000005k", 1.0f, "1.0000000000"},
                                  {"4,7k", 4700.0f, "4,7k"}}) {
    std::string entry = text;
    EXPECT_FLOAT_EQ(CheckEntry(entry), value) << text;
    EXPECT_STREQ(entry.c_str(), cut);
  }
}

}  // namespace
}  // namespace drenik
