#pragma once
// `drenik time`: the exact step and impulse response of the design at its
// value stage, as a table of figures, one JSON object or a CSV file.

#include <ostream>
#include <string>

#include "cli/options.h"
#include "cli/run_design.h"
#include "timedomain/response.h"

namespace drenik::cli {

// Whether `name` is one of the options only `time` takes (--csv is shared
// with `export`, which reads it as its own).
bool IsTimeOption(const std::string& name);
// Reads its value; throws UsageError naming the option for a bad one.
void ParseTimeOption(const std::string& name, const std::string& value, TimeOptions& o);

// The request for the record: its ladder, the losses at its cutoff.
TimeRequest TimeRequestOf(const DesignRecord& d, const TimeOptions& o);

// Returns the process status: 2 when the engine refuses, 1 when the CSV
// file cannot be written.
int RunTimeCommand(const CliOptions& o, const DesignResult& design, const std::string& valuesTitle,
                   std::ostream& out, std::ostream& err);

}  // namespace drenik::cli
