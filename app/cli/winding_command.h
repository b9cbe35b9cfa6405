#pragma once
// `drenik winding`: the turns of each inductor of the design on a toroid
// core or an air-core form, and the inductance those turns give.

#include <optional>
#include <ostream>

#include "winding/winding.h"

namespace drenik::cli {

struct CliOptions;
struct DesignResult;

// Prints a table, or JSON with --json. Returns the process status.
int WriteWindings(const CliOptions& options, const DesignResult& result, std::ostream& out);

}  // namespace drenik::cli
