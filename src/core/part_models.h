#pragma once
// How real parts depart from ideal ones, beyond the inductor's Q at the
// reference frequency: the law by which that Q changes with frequency, the
// winding capacitance across every inductor, and every capacitor's own Q and
// lead inductance. One table of Q laws; the analysis, the SPICE netlist, the
// command line and the display page read it.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace drenik {

// The inductor's Q against frequency, given Q0 at the reference frequency
// f0 (the cutoff; the centre of a band design): Q(f) = Q0 (f / f0)^exponent.
enum class QLaw : int16_t {
  Constant = 0,  // the same Q at every frequency (R grows with f)
  Sqrt = 1,      // skin effect: R grows as the square root of f
  Linear = 2,    // a fixed resistance: R = 2 pi f0 L / Q0 at every f
};

struct QLawFacts {
  QLaw law = QLaw::Constant;
  const char* word = "";     // command-line value of --q-law
  const char* caption = "";  // the display page's choice
  double exponent = 0;       // of f / f0 in Q(f)
};

std::span<const QLawFacts> QLaws();
const QLawFacts& FactsOf(QLaw law);
std::optional<QLaw> QLawNamed(std::string_view word);

// Self-resonant frequency, Hz, of an inductance with a capacitance across
// it, or of a capacitance with its lead inductance: 1 / (2 pi sqrt(L C));
// 0 where either is not above 0 (no resonance).
double SelfResonance(double henries, double farads);

}  // namespace drenik
