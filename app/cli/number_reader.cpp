#include "cli/number_reader.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "cli/options.h"
#include "core/whole_number.h"

namespace drenik::cli {
namespace {

constexpr std::string_view kMicro = "\xC2\xB5";  // µ in UTF-8

struct Prefix {
  char letter;
  double factor;
};
// Lower-case "m" is milli and upper-case "M" mega; the others take either
// case, as the pages' boxes do.
constexpr Prefix kPrefixes[] = {{'p', 1e-12}, {'P', 1e-12}, {'n', 1e-9}, {'N', 1e-9},
                                {'u', 1e-6},  {'U', 1e-6},  {'m', 1e-3}, {'k', 1e3},
                                {'K', 1e3},   {'M', 1e6},   {'G', 1e9},  {'g', 1e9}};

[[noreturn]] void Bad(const std::string& option, const std::string& text) {
  throw UsageError(option + ": expected a number such as 4.2M, 8,4k, 1.5e6 or 0.5, got '" + text +
                   "'");
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

std::string BoxText(const std::string& text) {
  std::string out = text;
  for (size_t at = out.find(kMicro); at != std::string::npos; at = out.find(kMicro, at))
    out.replace(at, kMicro.size(), "u");
  return out;
}

double ReadNumber(const std::string& option, const std::string& text, NumberForm form) {
  if (form.infinityWord && text == "inf") return std::numeric_limits<double>::infinity();
  const std::string s = BoxText(text);
  if (form.boxCharacters > 0 && s.size() > form.boxCharacters)
    throw UsageError(option + ": '" + text + "' is longer than the " +
                     std::to_string(form.boxCharacters) + " characters the box holds");

  std::string number;  // what from_chars reads: the point as ".", no "+"
  size_t i = 0;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
    if (s[i] == '-') number += '-';
    ++i;
  }
  size_t digits = 0;
  for (; i < s.size() && IsDigit(s[i]); ++i, ++digits) number += s[i];
  if (i < s.size() && (s[i] == '.' || s[i] == ',')) {
    number += '.';
    for (++i; i < s.size() && IsDigit(s[i]); ++i, ++digits) number += s[i];
  }
  if (digits == 0) Bad(option, text);
  bool exponent = false;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
    number += 'e';
    ++i;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) number += s[i++];
    size_t exponentDigits = 0;
    for (; i < s.size() && IsDigit(s[i]); ++i, ++exponentDigits) number += s[i];
    if (exponentDigits == 0) Bad(option, text);
    exponent = true;
  }
  double factor = 1;
  // The boxes skip a prefix after an exponent, so "1e3k" would not mean
  // what it says: it is refused.
  if (i < s.size() && !exponent) {
    for (const Prefix& p : kPrefixes)
      if (s[i] == p.letter) {
        factor = p.factor;
        ++i;
        break;
      }
  }
  if (i != s.size()) Bad(option, text);

  double value = 0;
  const auto [end, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (ec != std::errc() || end != number.data() + number.size())
    throw UsageError(option + ": '" + text + "' is out of range");
  value *= factor;
  if (!std::isfinite(value)) throw UsageError(option + ": '" + text + "' is out of range");
  return value == 0 ? 0.0 : value;
}

uint64_t ReadCount(const std::string& option, const std::string& text, uint64_t least,
                   uint64_t most) {
  const std::optional<uint64_t> n = ReadWholeNumber(text);
  if (!n || *n < least || *n > most)
    throw UsageError(option + ": expected a whole number from " + std::to_string(least) + " to " +
                     std::to_string(most) + " (such as 10,000 or 10k), got '" + text + "'");
  return *n;
}

}  // namespace drenik::cli
