#include "core/whole_number.h"

#include <limits>

namespace drenik {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// value * 10 + digit, false on overflow.
bool Append(uint64_t& value, char digit) {
  constexpr uint64_t kMax = std::numeric_limits<uint64_t>::max();
  const uint64_t d = static_cast<uint64_t>(digit - '0');
  if (value > (kMax - d) / 10) return false;
  value = value * 10 + d;
  return true;
}

}  // namespace

std::optional<uint64_t> ReadWholeNumber(std::string_view text) {
  size_t i = 0;
  if (i < text.size() && text[i] == '+') ++i;
  uint64_t value = 0;
  // Digits of the whole part; with separators every group after the first
  // has exactly three ("1,000,000", never "1,0" which is a decimal comma).
  size_t group = 0, digits = 0;
  bool grouped = false;
  for (; i < text.size(); ++i) {
    if (IsDigit(text[i])) {
      if (!Append(value, text[i])) return std::nullopt;
      ++group;
      ++digits;
    } else if (text[i] == ',' && group > 0 && (grouped ? group == 3 : group <= 3)) {
      grouped = true;
      group = 0;
    } else {
      break;
    }
  }
  if (digits == 0 || (grouped && group != 3)) return std::nullopt;

  // A fraction only before a prefix that makes the count whole: "1.5k". No
  // prefix reaches below a millionth, so six places are all that can count.
  uint64_t fraction = 0, scaleDown = 1;
  const size_t point = i;
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && IsDigit(text[i]); ++i) {
      if (scaleDown == 1000000) return std::nullopt;
      Append(fraction, text[i]);
      scaleDown *= 10;
    }
    if (i == point + 1) return std::nullopt;
  }
  uint64_t scale = 1;
  if (i < text.size() && (text[i] == 'k' || text[i] == 'K')) {
    scale = 1000;
    ++i;
  } else if (i < text.size() && text[i] == 'M') {
    scale = 1000000;
    ++i;
  }
  if (i != text.size()) return std::nullopt;
  if (scaleDown > 1 && (scale == 1 || (fraction * scale) % scaleDown != 0)) return std::nullopt;

  constexpr uint64_t kMax = std::numeric_limits<uint64_t>::max();
  if (value > kMax / scale) return std::nullopt;
  const uint64_t part = fraction * scale / scaleDown;  // below scale: cannot overflow
  if (value * scale > kMax - part) return std::nullopt;
  return value * scale + part;
}

}  // namespace drenik
