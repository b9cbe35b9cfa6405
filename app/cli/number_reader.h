#pragma once
// The one reader of every number on the command line. A value is a decimal
// number (point or the pages' decimal comma), an optional exponent and an
// optional prefix letter (p n u µ m k M G), and nothing else; a count is a
// whole number as the tolerance window reads one ("10,000", "10k"). Anything
// else is bad usage naming the option and the text.

#include <cstdint>
#include <string>

namespace drenik::cli {

struct NumberForm {
  // The text goes into one of the design page's boxes, which holds this many
  // characters; a longer text is refused rather than cut. 0: no box.
  size_t boxCharacters = 0;
  // The word "inf" is taken and reads as infinity (a Q without loss).
  bool infinityWord = false;
};

// Throws UsageError. Never returns NaN or -0.
double ReadNumber(const std::string& option, const std::string& text, NumberForm form = {});

// A count from `least` to `most`; throws UsageError otherwise.
uint64_t ReadCount(const std::string& option, const std::string& text, uint64_t least,
                   uint64_t most);

// The text as the design page's boxes read it: "µ" becomes "u".
std::string BoxText(const std::string& text);

}  // namespace drenik::cli
