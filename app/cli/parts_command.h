#pragma once
// `drenik parts`: the display page's chosen-parts stage for the choices
// given, as a table or JSON, and the parts list as a CSV file.

#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "parts/chooser.h"

namespace drenik::cli {

struct CliOptions;
struct DesignResult;
class ConsolePlatform;

struct PartsOptions {
  PartsRequest request;  // --cseries, --lseries, --pairs
  std::string bom;       // --bom FILE
};

// Reads `name` when it is one of the parts command's options (taking its
// value from `value`); false for any other name. Throws UsageError for a bad
// value, or when the command is not `parts`.
bool ParsePartsOption(const std::string& name, const std::function<std::string()>& value,
                      bool partsCommand, PartsOptions& parts);

std::string PartsUsageText();

// The toroid cores' names, for complaints and usage texts.
std::string CoreWords();
// The former of --air-core FORM_MM:WIRE_MM and of --core NAME (throws
// UsageError naming the option).
std::optional<Former> AirCoreOption(const std::string& name, const std::string& value);
std::optional<Former> CoreOption(const std::string& name, const std::string& value);

// Prints the result (a table, or JSON with --json) and writes --bom. Returns
// the process status: 0, or 1 when the parts list could not be written.
int WriteParts(const CliOptions& options, const DesignResult& result, ConsolePlatform& platform,
               std::ostream& out, std::ostream& err);

}  // namespace drenik::cli
