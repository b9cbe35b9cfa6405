#pragma once
// What the design page's boxes take: a typed value beyond a bound is clamped
// to it. Every design the program makes, from the page, the command line or
// a search, keeps within these, so that its command-line words make the same
// design anywhere. Bandwidth and centre in Hz, impedance in ohms.

namespace drenik {

struct BoxRange {
  float low, high;
};
inline constexpr BoxRange kBandwidthRange{0.1f, 1e10f};
inline constexpr BoxRange kImpedanceRange{0.1f, 1e6f};

}  // namespace drenik
