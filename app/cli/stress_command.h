#pragma once
// `drenik stress`: the voltage, current and dissipation of every part at a
// transmit power, as a table or one JSON object; and the power options that
// `parts` shares to rate its parts list.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "stress/stress.h"

namespace drenik::cli {

struct CliOptions;
struct DesignResult;

struct StressOptions {
  std::optional<double> power;        // --power W
  std::optional<double> vswr;         // --vswr S
  std::optional<FrequencyBand> band;  // --band FROM:TO
};

// Whether `name` is --power, --vswr or --band.
bool IsStressOption(const std::string& name);
// Reads its value; throws UsageError naming the option for a bad one.
void ParseStressOption(const std::string& name, const std::string& value, StressOptions& o);
// The request of the options given; throws UsageError for --power missing.
StressRequest StressRequestOf(const StressOptions& o, const char* command);

int RunStressCommand(const CliOptions& o, const DesignResult& design,
                     const std::string& valuesTitle, std::ostream& out, std::ostream& err);

}  // namespace drenik::cli
