#pragma once
// The Pallis filter file (.LCT) and the display page's "Write Pallis file"
// button. The writer itself is declared with the other writers in
// export/writers.h.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

inline constexpr const char* kPallisFailure = "We did not write an Pallis file.";

// The file lists the prototype values G(j), H(j) at every ladder position,
// and those run to 20 positions: a longer ladder (a band design of high
// order) does not fit. The reason, or empty.
std::string PallisCannotHold(const DesignRecord& d);

}  // namespace drenik
