#pragma once
// `drenik synth`: the simplest design that meets a mask when built, found
// by the search (synth/synth.h) and listed with its rivals as a table or
// one JSON object.

#include <functional>
#include <ostream>
#include <string>

#include "cli/options.h"
#include "cli/run_design.h"

namespace drenik::cli {

// Reads one of the options only `synth` takes; false for any other name.
// Throws UsageError naming the option for a bad value.
bool ParseSynthOption(const std::string& name, const std::function<std::string()>& value,
                      SynthOptions& o);

std::string SynthLines();
std::string SynthHelp();

// Runs the search. `design` is the pages' design for the command's choices
// (the impedance, Q and part models as the design page reads them);
// `progress` draws a progress line on `err`. Returns the process status: 0
// when a candidate meets the target, 1 when none does, 2 on bad usage.
int RunSynthCommand(const CliOptions& o, const DesignResult& design, std::ostream& out,
                    std::ostream& err, bool progress);

}  // namespace drenik::cli
