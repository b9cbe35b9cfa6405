#pragma once
// `drenik tolerance`: the Monte Carlo tolerance analysis of the design at
// its value stage, as a readable summary or one JSON object.

#include <optional>
#include <ostream>
#include <string>

#include "cli/options.h"
#include "cli/run_design.h"
#include "tolerance/tolerance.h"

namespace drenik::cli {

// The mask the options give, its pass edges defaulting to the design's;
// nothing when they give no limit (the design's default mask applies).
std::optional<Mask> GivenMask(const ToleranceOptions& t, const ToleranceDesign& d);

// Whether `name` is one of the options only `tolerance` takes.
bool IsToleranceOption(const std::string& name);
// Reads its value; throws UsageError naming the option for a bad one.
void ParseToleranceOption(const std::string& name, const std::string& value, ToleranceOptions& o);

// Runs the analysis on the design the pages made; `valuesTitle` names its
// value stage; `progress` draws a progress line on `err` while it runs.
// Returns the process status (2 when the engine refuses).
int RunToleranceCommand(const CliOptions& o, const DesignResult& design,
                        const std::string& valuesTitle, std::ostream& out, std::ostream& err,
                        bool progress = false);

}  // namespace drenik::cli
