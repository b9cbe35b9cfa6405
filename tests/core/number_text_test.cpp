#include "core/number_text.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace drenik {
namespace {

// Pairs of value and expected text.
void ExpectTexts(std::string (*)(float)) {}
template <typename... Rest>
void ExpectTexts(std::string (*format)(float), float value, const char* text, Rest... rest) {
  EXPECT_EQ(format(value), text) << value;
  ExpectTexts(format, rest...);
}

TEST(ShortestText, FixedAndExponentForms) {
  ExpectTexts(ShortestText, 0, "0", -0.0f, "0", 0.044f, ".044", -0.5f, "-.5", 50, "50", 1e6f,
              "1000000", 1e7f, "1E+07", 12345678, "1.2345678E+07", -2.5e20f, "-2.5E+20", 1e-7f,
              ".0000001", 1.5e-8f, "1.5E-08", 1e-40f, "1E-40", 3.4028235e38f, "3.4028235E+38");
}

TEST(ShortestText, ReadsBackToTheSameFloat) {
  std::mt19937 random(12345);
  std::uniform_int_distribution<uint32_t> bits;
  for (int n = 0; n < 200000; ++n) {
    uint32_t b = bits(random);
    float value;
    std::memcpy(&value, &b, sizeof value);
    if (!std::isfinite(value)) continue;
    std::string text = ShortestText(value);
    // No blanks, no comma, no lower-case exponent, no zero before the point.
    ASSERT_EQ(text.find_first_of(" ,e"), std::string::npos) << text;
    ASSERT_NE(text.rfind("0.", 0), 0u) << text;
    ASSERT_NE(text.rfind("-0", 0), 0u) << text;
    float back = 1;
    auto res = std::from_chars(text.data(), text.data() + text.size(), back);
    ASSERT_EQ(res.ptr, text.data() + text.size()) << text;
    ASSERT_EQ(back, value) << text;
  }
}

TEST(FileTexts, ValueAndIntegerForms) {
  ExpectTexts(ValueText, 0.01f, " .01 ", 50, " 50 ", -0.5f, "-.5 ", 0, " 0 ", 1e10f, " 1E+10 ");
  EXPECT_EQ(IntegerText(11) + IntegerText(5) + "A" + IntegerText(0), " 11  5 A 0 ");
  EXPECT_EQ(IntegerText(-3), "-3 ");
}

}  // namespace
}  // namespace drenik
