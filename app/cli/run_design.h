#pragma once
// Runs the designer's own pages for a command line: the design page set to
// the choices (option clicks and typing in its own handlers), then the
// display page's load, keeping the record and the page at the value stage
// asked for.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/console_platform.h"
#include "cli/options.h"
#include "core/design_record.h"
#include "plot/recording_canvas.h"

namespace drenik::cli {

// A design that the pages could not make (an engine error); one line.
class DesignFailure : public std::runtime_error {
 public:
  explicit DesignFailure(const std::string& what) : std::runtime_error(what) {}
};

struct DesignResult {
  DesignRecord exact;    // after the display page's exact-value analysis
  DesignRecord chosen;   // at the stage of --values
  RecordingCanvas page;  // the display page at that stage
  // For `parts`: the chosen-parts stage, which `chosen` and `page` then show.
  std::optional<PartsChoice> parts;
  // One line for each typed value that the design page replaced by one it
  // takes (a bandwidth below its least, a Q below its least, ...).
  std::vector<std::string> notices;
};

// Throws UsageError for a choice the design page does not offer with the
// other choices (e.g. --ripple for a family without ripple), DesignFailure for an
// engine error. `partsProgress` follows the chooser of `parts` as it runs.
std::unique_ptr<DesignResult> RunDesign(const CliOptions& options, ConsolePlatform& platform,
                                        const PartsProgress& partsProgress = {});

}  // namespace drenik::cli
