#include "core/whole_number.h"

#include <gtest/gtest.h>

namespace drenik::testing {
namespace {

TEST(WholeNumber, SeparatorsAndPrefixesOrNothing) {
  const std::pair<const char*, uint64_t> counts[] = {
      {"10000", 10000}, {"10,000", 10000}, {"1,000,000", 1000000},
      {"+7", 7},        {"10k", 10000},    {"1.5k", 1500},
      {"2M", 2000000},  {"0", 0},          {"18446744073709551615", UINT64_MAX}};
  for (const auto& [text, n] : counts) EXPECT_EQ(ReadWholeNumber(text), n) << text;
  for (const char* text : {"", "10,0", "1,0000", ",100", "1e4", "0x10", "2.5", "1.0005k", "-1",
                           " 5", "5 ", "10m", "1.k", "18446744073709551616", "20000000000000M"})
    EXPECT_EQ(ReadWholeNumber(text), std::nullopt) << text;
}

}  // namespace
}  // namespace drenik::testing
