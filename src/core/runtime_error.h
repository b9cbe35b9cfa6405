#pragma once
// An operation that cannot go on (a division by zero the circuit does not
// guard against, a ladder position or sweep point beyond the fixed arrays)
// stops by throwing RunTimeError. Each page event catches it and shows its
// text, so bad input never crashes the program.

#include <stdexcept>
#include <string>

namespace drenik {

class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace drenik
