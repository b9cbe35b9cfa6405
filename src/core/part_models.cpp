#include "core/part_models.h"

#include <cmath>
#include <numbers>

namespace drenik {
namespace {

constexpr QLawFacts kQLaws[] = {
    {.law = QLaw::Constant, .word = "constant", .caption = "Constant Q", .exponent = 0},
    {.law = QLaw::Sqrt,
     .word = "sqrt",
     .caption = "Q grows as \xE2\x88\x9A"
                "f",
     .exponent = 0.5},
    {.law = QLaw::Linear, .word = "linear", .caption = "Q grows as f", .exponent = 1},
};

}  // namespace

std::span<const QLawFacts> QLaws() {
  return kQLaws;
}

const QLawFacts& FactsOf(QLaw law) {
  for (const QLawFacts& f : kQLaws)
    if (f.law == law) return f;
  return kQLaws[0];
}

std::optional<QLaw> QLawNamed(std::string_view word) {
  for (const QLawFacts& f : kQLaws)
    if (word == f.word) return f.law;
  return std::nullopt;
}

double SelfResonance(double henries, double farads) {
  if (!(henries > 0) || !(farads > 0)) return 0;
  return 1 / (2 * std::numbers::pi * std::sqrt(henries * farads));
}

}  // namespace drenik
