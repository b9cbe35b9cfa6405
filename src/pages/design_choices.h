#pragma once
// The ripple and stopband choices the design page offers, with their option
// buttons, and the snapping of a ripple that came from elsewhere (the
// last-session file) onto an offered value.

#include <span>

#include "core/box_ranges.h"

namespace drenik {

struct RippleChoice {
  const char* option;
  const char* caption;
  float value;  // dB, as the stored float
  // Open bounds of the snap: the design driver's, and the page load's
  // (narrower for 0.01 dB on purpose).
  float driverLow, driverHigh, loadLow, loadHigh;
};

inline constexpr RippleChoice kRippleChoices[] = {
    {"opt01", ".01 dB (RF)", 0.01f, 0.005f, 0.02f, 0.009f, 0.011f},
    {"opt044", ".044 dB (RF)", 0.044f, 0.04f, 0.05f, 0.04f, 0.05f},
    {"opt200", ".200 dB (AF)", 0.2f, 0.19f, 0.21f, 0.19f, 0.21f},
};

struct StopbandChoice {
  const char* option;
  const char* caption;
  float value;  // dB
};

inline constexpr StopbandChoice kStopbandChoices[] = {{"optAstop30", "30 dB", 30},
                                                      {"optAstop40", "40 dB", 40},
                                                      {"optAstop50", "50 dB", 50},
                                                      {"optAstop60", "60 dB", 60}};

// The least inductor Q the Q box takes (no upper bound: 1e6 and above is
// infinite).
inline constexpr float kLeastQ = 2;
// The band centre box's text when the page is made, and the centre (Hz) a
// band design takes when its last session kept none (the middle of the
// 40 m band).
inline constexpr const char* kDefaultCenterText = "7.15M";
inline constexpr float kDefaultCenter = 7.15e6f;
// The largest resonator inductance the coupled-resonator box takes, H.
inline constexpr float kResonatorLMax = 1;
// The widest band sweep the display page takes: f0 / 100 to 100 f0, four
// decades of 1001 points.
inline constexpr float kLargestSweepSpan = 100;

enum class SnapBounds { Driver, Load };

// Moves a ripple lying strictly inside a choice's bounds onto the choice's
// value and returns the choice, or nullptr when the ripple was left alone.
// Bounds are compared as stored floats, so a ripple read exactly on a bound
// stays as it is.
inline const RippleChoice* SnapRipple(float& apass, SnapBounds bounds) {
  for (const RippleChoice& c : kRippleChoices) {
    const bool driver = bounds == SnapBounds::Driver;
    const float low = driver ? c.driverLow : c.loadLow;
    const float high = driver ? c.driverHigh : c.loadHigh;
    if (apass > low && apass < high) {
      apass = c.value;
      return &c;
    }
  }
  return nullptr;
}

}  // namespace drenik
