#pragma once
// A count typed by a person: digits, optionally grouped by thousands
// separators ("10,000"), optionally scaled by k or M ("10k", "1.5M"). The
// tolerance window's boxes and the command line read counts through this
// one routine, so that the same text means the same count everywhere.

#include <cstdint>
#include <optional>
#include <string_view>

namespace drenik {

// The count, or nothing when the text is anything else: a sign other than a
// leading "+", blanks, a decimal comma, an exponent, a fraction that does
// not come to a whole number, a count beyond 64 bits.
std::optional<uint64_t> ReadWholeNumber(std::string_view text);

}  // namespace drenik
