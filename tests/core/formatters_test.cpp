#include "core/formatters.h"

#include <gtest/gtest.h>

#include <string>

namespace drenik {
namespace {

float Check(std::string text) {
  return CheckEntry(text);
}

TEST(FormatFrequency, UnitsBlanksAndSignedNumbers) {
  EXPECT_EQ(FormatFrequency(0), "0.0 ");
  EXPECT_EQ(FormatFrequency(999.9), " 999.9Hz");
  EXPECT_EQ(FormatFrequency(1000), " 1KHz ");
  EXPECT_EQ(FormatFrequency(14250000), " 14.25MHz ");
  EXPECT_EQ(FormatFrequency(1e10), " 10GHz ");
  EXPECT_EQ(FormatFrequency(0.5), " 500mHz");
  // Below 1 the mantissa gets five places: no zero before the point.
  EXPECT_EQ(FormatFrequency(0.0005), " .5mHz");
  // Mask places: 2 above 100, 3 above 10, 4 above 1, else 5.
  EXPECT_EQ(FormatFrequency(123456789), " 123.46MHz ");
  EXPECT_EQ(FormatFrequency(12345678), " 12.346MHz ");
  EXPECT_EQ(FormatFrequency(1234567), " 1.2346MHz ");
  EXPECT_EQ(FormatFrequency(1.23456789), " 1.2346Hz");
  // Rounding carries into the next digit and may reach the next range's text.
  EXPECT_EQ(FormatFrequency(999999), " 1000KHz ");
  // Not the absolute value: a negative frequency lands in the milli range.
  EXPECT_EQ(FormatFrequency(-2), "-2000mHz");
}

TEST(FormatInductance, RangesAndMasks) {
  EXPECT_EQ(FormatInductance(0), "");
  EXPECT_EQ(FormatInductance(4.7e-6), "4.7uH");
  EXPECT_EQ(FormatInductance(9.99e-7), "999nH");
  EXPECT_EQ(FormatInductance(1.2e-10), "0.12nH");
  EXPECT_EQ(FormatInductance(2500), "2.5KH");
  EXPECT_EQ(FormatInductance(4e9), "4GH");
  EXPECT_EQ(FormatInductance(-4.7e-6), "-4.7uH");
  // Six places below 1, two above 1000.
  EXPECT_EQ(FormatInductance(1.2345678e-9), "1.23457nH");
  EXPECT_EQ(FormatInductance(0.1234567e-9), "0.123457nH");
  EXPECT_EQ(FormatInductance(1234.5678e9), "1234.57GH");
  // Far below a nanohenry the mask rounds to zero.
  EXPECT_EQ(FormatInductance(1e-17), "0nH");
}

TEST(FormatCapacitance, UnevenLadderWithoutNanofarads) {
  EXPECT_EQ(FormatCapacitance(0), "");
  EXPECT_EQ(FormatCapacitance(1e-8), "0.01uF");
  EXPECT_EQ(FormatCapacitance(2.2e-8), "0.022uF");
  EXPECT_EQ(FormatCapacitance(4.7e-9), "4700pF");
  EXPECT_EQ(FormatCapacitance(9.99e-9), "9990pF");
  EXPECT_EQ(FormatCapacitance(1e-14), "0.01pF");
  EXPECT_EQ(FormatCapacitance(9.9e-15), "");
  EXPECT_EQ(FormatCapacitance(-1e-15), "");
  EXPECT_EQ(FormatCapacitance(0.005), "5000uF");
  EXPECT_EQ(FormatCapacitance(0.01), "10mF");
  EXPECT_EQ(FormatCapacitance(1), "1F");
  EXPECT_EQ(FormatCapacitance(10), "0.01KF");
  EXPECT_EQ(FormatCapacitance(1e4), "0.01MF");
  EXPECT_EQ(FormatCapacitance(1e7), "0.0001GF");
  EXPECT_EQ(FormatCapacitance(-3.3e-11), "-33pF");
}

TEST(FormatValue, RangesFixTheirMasks) {
  EXPECT_EQ(FormatValue(0), " 0  ");
  EXPECT_EQ(FormatValue(50), "50 ");
  EXPECT_EQ(FormatValue(4.0e-6), " 0  ");
  EXPECT_EQ(FormatValue(1e-5), " 0  ");
  EXPECT_EQ(FormatValue(2e-5), "0.00002 ");
  EXPECT_EQ(FormatValue(0.123456), "0.12346 ");
  EXPECT_EQ(FormatValue(1.234567), "1.2346 ");
  EXPECT_EQ(FormatValue(12.34567), "12.346 ");
  EXPECT_EQ(FormatValue(123.4567), "123.46 ");
  EXPECT_EQ(FormatValue(1234.567), "1.235k");
  EXPECT_EQ(FormatValue(2.5e9), "2.5G");
  EXPECT_EQ(FormatValue(-3300), "-3.3k");
}

TEST(FormatPrefixed, BarePrefixes) {
  EXPECT_EQ(FormatPrefixed(0), "0  ");
  EXPECT_EQ(FormatPrefixed(1.5e-9), "1.5n");
  EXPECT_EQ(FormatPrefixed(0.0123), "12.3m");
  EXPECT_EQ(FormatPrefixed(1500), "1.5K");
  EXPECT_EQ(FormatPrefixed(4e-13), "0.4p");
  EXPECT_EQ(FormatPrefixed(-2.5e-7), "-250n");
  // Places: none above 1000, then 1, 2, 3 and 4.
  EXPECT_EQ(FormatPrefixed(1234.56e9), "1235G");
  EXPECT_EQ(FormatPrefixed(123.456e-9), "123.5n");
  EXPECT_EQ(FormatPrefixed(12.3456e-9), "12.35n");
  EXPECT_EQ(FormatPrefixed(1.23456e-9), "1.235n");
  EXPECT_EQ(FormatPrefixed(0.123456e-12), "0.1235p");
}

TEST(FormatSmall, RippleTexts) {
  EXPECT_EQ(FormatSmall(0.044), "0.044 ");
  EXPECT_EQ(FormatSmall(0.2), "0.2 ");
  EXPECT_EQ(FormatSmall(0.01), "0.01 ");
  EXPECT_EQ(FormatSmall(0), "0");
  EXPECT_EQ(FormatSmall(0.001), "0");
  EXPECT_EQ(FormatSmall(0.0015), "0.002 ");
  EXPECT_EQ(FormatSmall(1.234), "1.23 ");
  EXPECT_EQ(FormatSmall(12.34), "12.3 ");
  EXPECT_EQ(FormatSmall(-20), "0");
}

TEST(Formatters, RoundHalfAwayFromZeroOnExactTies) {
  // 0.5, 2.5 and 0.125 are exact binary values: true ties.
  EXPECT_EQ(FormatPrefixed(1000.5e9), "1001G");
  EXPECT_EQ(FormatPrefixed(1002.5e9), "1003G");
  EXPECT_EQ(FormatPrefixed(-1002.5e9), "-1003G");
  EXPECT_EQ(FormatSmall(0.125 + 1), "1.13 ");
  EXPECT_EQ(FormatValue(1.03125), "1.0313 ");
  // As floats 0.0245 lies just below the tie and 0.0445 just above it.
  EXPECT_EQ(FormatSmall(0.0245f), "0.024 ");
  EXPECT_EQ(FormatSmall(0.0445f), "0.045 ");
}

TEST(CheckEntry, ReadsTypedEntries) {
  EXPECT_FLOAT_EQ(Check("4,7k"), 4700);
  EXPECT_FLOAT_EQ(Check("1.5E6"), 1500000);
  EXPECT_FLOAT_EQ(Check("2.2uH"), 2.2e-6f);
  EXPECT_FLOAT_EQ(Check("3m"), 0.003f);
  EXPECT_FLOAT_EQ(Check("3M"), 3000000);
  EXPECT_FLOAT_EQ(Check("1.2.3"), 1.23f);
  EXPECT_FLOAT_EQ(Check("5E3k"), 5000);
  EXPECT_EQ(Check("-"), 0);
  EXPECT_EQ(Check("99999999999"), 1e10f);
  EXPECT_EQ(Check("-99999999999"), -1e10f);
  EXPECT_EQ(Check(""), 0);
  EXPECT_EQ(Check("."), 0);
  EXPECT_FLOAT_EQ(Check(" 50 \xCE\xA9"), 50);  // a UTF-8 ohm sign is ignored
  EXPECT_FLOAT_EQ(Check("50 ohm"), 0.05f);     // lower-case "m" is milli
  EXPECT_FLOAT_EQ(Check("-.5"), -0.5f);
  EXPECT_FLOAT_EQ(Check("4.2 MHz"), 4.2e6f);
  EXPECT_FLOAT_EQ(Check("10p"), 1e-11f);
  EXPECT_FLOAT_EQ(Check("7K"), 7000);
  EXPECT_FLOAT_EQ(Check("2g"), 2e9f);
  EXPECT_FLOAT_EQ(Check("2e-3"), 0.002f);
}

TEST(CheckEntry, DropsWhatDoesNotFit) {
  // A prefix letter before any digit is ignored; digits after a prefix are dropped.
  EXPECT_FLOAT_EQ(Check("k5"), 5);
  EXPECT_FLOAT_EQ(Check("4k7"), 4000);
  // Only the first prefix counts.
  EXPECT_FLOAT_EQ(Check("1kM"), 1000);
  // A second exponent letter is dropped, the digits behind it kept.
  EXPECT_FLOAT_EQ(Check("1E0E3"), 1000);
  // No point after the exponent.
  EXPECT_FLOAT_EQ(Check("1E0.5"), 1e5f);
  // A sign only at the start or right behind the exponent.
  EXPECT_FLOAT_EQ(Check("5-3"), 53);
  EXPECT_FLOAT_EQ(Check("--5"), -5);
  // An exponent without digits counts for nothing.
  EXPECT_FLOAT_EQ(Check("7E"), 7);
  EXPECT_FLOAT_EQ(Check("7E-k"), 7);
  EXPECT_EQ(Check("E5"), 5);
  // Huge and tiny exponents clamp or vanish without a fault.
  EXPECT_EQ(Check("1E99999999"), 1e10f);
  EXPECT_EQ(Check("1E-99999999"), 0);
}

TEST(CheckEntry, CutsTheCallersTextToTwelveCharacters) {
  std::string entry = "1234567890123456";
  EXPECT_EQ(CheckEntry(entry), 1e10f);
  EXPECT_EQ(entry, "123456789012");
  entry = "1.0000000000005k";
  EXPECT_FLOAT_EQ(CheckEntry(entry), 1);
  EXPECT_EQ(entry, "1.0000000000");
  entry = "4,7k";
  CheckEntry(entry);
  EXPECT_EQ(entry, "4,7k");
}

}  // namespace
}  // namespace drenik
