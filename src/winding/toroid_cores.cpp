#include "winding/toroid_cores.h"

#include <cctype>
#include <string>

namespace drenik {
namespace {

constexpr double kMHz = 1e6;

// AL from the iron-powder toroid tables of Micrometals (the maker) and
// Amidon (its distributor), published as microhenries per 100 turns and
// divided by 10 here for nanohenries per turn squared; their tolerance is
// +-5%. Mix 2 (red, carbonyl E, permeability 10) is at its best from about
// 0.25 to 10 MHz, mix 6 (yellow, carbonyl SF, permeability 8) from about 3
// to 40 MHz; either serves a little beyond with a lower Q.
constexpr ToroidCore kCores[] = {
    {.name = "T37-2", .alNanohenry = 4.0, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T50-2", .alNanohenry = 4.9, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T68-2", .alNanohenry = 5.7, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T80-2", .alNanohenry = 5.5, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T106-2", .alNanohenry = 13.5, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T130-2", .alNanohenry = 11.0, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T200-2", .alNanohenry = 12.0, .fLowHz = 0.25 * kMHz, .fHighHz = 10 * kMHz},
    {.name = "T37-6", .alNanohenry = 3.0, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T50-6", .alNanohenry = 4.0, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T68-6", .alNanohenry = 4.7, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T80-6", .alNanohenry = 4.5, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T106-6", .alNanohenry = 11.6, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T130-6", .alNanohenry = 9.6, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
    {.name = "T200-6", .alNanohenry = 10.0, .fLowHz = 3 * kMHz, .fHighHz = 40 * kMHz},
};

std::string Folded(std::string_view s) {
  std::string out;
  for (char c : s)
    if (c != '-') out += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

}  // namespace

std::span<const ToroidCore> ToroidCores() {
  return kCores;
}

const ToroidCore* FindToroidCore(std::string_view name) {
  const std::string wanted = Folded(name);
  for (const ToroidCore& c : kCores)
    if (Folded(c.name) == wanted) return &c;
  return nullptr;
}

}  // namespace drenik
