#pragma once
// The Pallis filter file (.LCT) and the display page's "Write Pallis file"
// button. The writer itself is declared with the other writers in
// export/writers.h.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

inline constexpr const char* kPallisFailure = "We did not write an Pallis file.";

}  // namespace drenik
