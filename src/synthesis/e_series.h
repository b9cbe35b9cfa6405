#pragma once
// The IEC 60063 preferred-number series in which resistors, capacitors and
// stock inductors are made: the significant figures of one decade, from 1.0
// upwards. E6, E12 and E24 carry two figures, E48 and E96 three. Each series
// is its own table: several E24 values (2.7, 3.0, 3.3, 3.6, 3.9, 4.3, 4.7,
// 8.2, 9.1) are not the E48 values rounded to two figures.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace drenik {

enum class ESeries : uint8_t { E6, E12, E24, E48, E96 };

inline constexpr std::array<int16_t, 24> kE24Figures = {
    10, 11, 12, 13, 15, 16, 18, 20, 22, 24, 27, 30, 33, 36, 39, 43, 47, 51, 56, 62, 68, 75, 82, 91};
inline constexpr std::array<int16_t, 12> kE12Figures = {10, 12, 15, 18, 22, 27,
                                                        33, 39, 47, 56, 68, 82};
inline constexpr std::array<int16_t, 6> kE6Figures = {10, 15, 22, 33, 47, 68};
inline constexpr std::array<int16_t, 96> kE96Figures = {
    100, 102, 105, 107, 110, 113, 115, 118, 121, 124, 127, 130, 133, 137, 140, 143,
    147, 150, 154, 158, 162, 165, 169, 174, 178, 182, 187, 191, 196, 200, 205, 210,
    215, 221, 226, 232, 237, 243, 249, 255, 261, 267, 274, 280, 287, 294, 301, 309,
    316, 324, 332, 340, 348, 357, 365, 374, 383, 392, 402, 412, 422, 432, 442, 453,
    464, 475, 487, 499, 511, 523, 536, 549, 562, 576, 590, 604, 619, 634, 649, 665,
    681, 698, 715, 732, 750, 768, 787, 806, 825, 845, 866, 887, 909, 931, 953, 976};
inline constexpr std::array<int16_t, 48> kE48Figures = {
    100, 105, 110, 115, 121, 127, 133, 140, 147, 154, 162, 169, 178, 187, 196, 205,
    215, 226, 237, 249, 261, 274, 287, 301, 316, 332, 348, 365, 383, 402, 422, 442,
    464, 487, 511, 536, 562, 590, 619, 649, 681, 715, 750, 787, 825, 866, 909, 953};

struct ESeriesInfo {
  ESeries series;
  const char* name;      // "E24", as the command line and the parts list write it
  int tolerancePercent;  // the tolerance the series is made for
  int figures;           // significant figures: 2 or 3
  std::span<const int16_t> values;
};

inline constexpr ESeriesInfo kESeries[] = {
    {ESeries::E6, "E6", 20, 2, kE6Figures},   {ESeries::E12, "E12", 10, 2, kE12Figures},
    {ESeries::E24, "E24", 5, 2, kE24Figures}, {ESeries::E48, "E48", 2, 3, kE48Figures},
    {ESeries::E96, "E96", 1, 3, kE96Figures},
};

inline constexpr const ESeriesInfo& InfoOf(ESeries s) {
  return kESeries[static_cast<int>(s)];
}

// The series named so ("E12", "e12"); nothing for any other text.
inline std::optional<ESeries> ESeriesNamed(std::string_view name) {
  for (const ESeriesInfo& info : kESeries) {
    std::string_view n = info.name;
    if (name.size() == n.size() && (name[0] == 'E' || name[0] == 'e') &&
        name.substr(1) == n.substr(1))
      return info.series;
  }
  return std::nullopt;
}

namespace e_series_checks {
// Each coarser series is every other value of the next finer one.
template <size_t N, size_t M>
constexpr bool EveryOther(const std::array<int16_t, N>& coarse,
                          const std::array<int16_t, M>& fine) {
  if (2 * N != M) return false;
  for (size_t i = 0; i < N; ++i)
    if (coarse[i] != fine[2 * i]) return false;
  return true;
}
static_assert(EveryOther(kE6Figures, kE12Figures) && EveryOther(kE12Figures, kE24Figures) &&
              EveryOther(kE48Figures, kE96Figures));
static_assert(kESeries[0].series == ESeries::E6 && kESeries[4].series == ESeries::E96);
}  // namespace e_series_checks

}  // namespace drenik
