#pragma once
// The command line of `drenik`: what it asks for, read from the arguments.

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "cli/parts_command.h"
#include "pages/value_stages.h"
#include "tolerance/mask.h"
#include "tolerance/trial_draws.h"

namespace drenik::cli {

// Bad usage: the text is one line that names the option.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& what) : std::runtime_error(what) {}
};

enum class Command { Design, Render, Export, Tolerance, Parts, Help, PartsHelp, Version };

// The design page's choices; unset ones keep the first-start defaults.
struct Choices {
  std::optional<std::string> familyOption;    // the family's option button
  std::optional<int> order;                   // 3..7
  std::optional<std::string> topology;        // "Cinlowpass" ...
  std::optional<std::string> rippleOption;    // "opt01", "opt044", "opt200"
  std::optional<std::string> stopbandOption;  // "optAstop30" ...
  std::optional<std::string> impedance;       // "50" or text for the Other box
  std::optional<std::string> bandwidth;       // text for the bandwidth box
  std::optional<std::string> center;          // text for the band centre box
  std::optional<std::string> resonatorL;      // text for the resonator inductance box
  std::optional<std::string> q;               // "inf" or text for the Q box
};

// What `drenik tolerance` asks for beyond the design; unset ones take the
// engine's defaults (no mask option at all: the default mask).
struct ToleranceOptions {
  std::optional<double> ctol, ltol, tighten;  // %
  std::optional<Distribution> distribution;
  std::optional<int> trials;
  std::optional<uint64_t> seed;
  std::optional<double> passEdge;  // Hz
  std::optional<double> passRl, passIl;
  std::vector<StopCheck> stops;
};

struct CliOptions {
  Command command = Command::Help;
  Choices choices;
  ValueStage values = ValueStage::FiveC;  // --values
  bool json = false;
  std::string renderFile;  // .png, .svg or .pdf
  int widthPx = 1600;
  int heightPx = 1200;
  // Export files in the order given: the format's option word and the path.
  std::vector<std::pair<std::string, std::string>> exports;
  PartsOptions parts;
  ToleranceOptions tolerance;
};

// Throws UsageError.
CliOptions ParseCommandLine(const std::vector<std::string>& args);

std::string UsageText();

}  // namespace drenik::cli
