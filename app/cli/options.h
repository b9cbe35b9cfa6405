#pragma once
// The command line of `drenik`: what it asks for, read from the arguments.

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "cli/part_model_options.h"
#include "cli/parts_command.h"
#include "cli/stress_command.h"
#include "pages/value_stages.h"
#include "tolerance/mask.h"
#include "tolerance/trial_draws.h"

namespace drenik::cli {

// Bad usage: the text is one line that names the option.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& what) : std::runtime_error(what) {}
};

enum class Command {
  Design,
  Render,
  Export,
  Tolerance,
  Parts,
  Winding,
  Time,
  Stress,
  Synth,
  Help,
  Version
};

// One row per command: its word, its lines in the general usage, and its own
// `--help` text. A new command adds a row here.
struct CommandInfo {
  const char* word;
  Command command;
  std::string (*usageLines)();  // "  drenik WORD ...\n" lines
  std::string (*help)();        // what `drenik WORD --help` prints
};
std::span<const CommandInfo> Commands();

// The design page's choices; unset ones keep the first-start defaults.
struct Choices {
  std::optional<std::string> familyOption;  // the family's option button
  std::optional<int> order;                 // any order of the family's range
  std::optional<std::string> topology;      // "Cinlowpass" ...
  std::optional<double> ripple;             // dB, any within the family's range
  std::optional<double> stopband;           // dB, any within the family's range
  std::optional<std::string> impedance;     // "50" or text for the Other box
  std::optional<std::string> bandwidth;     // text for the bandwidth box
  std::optional<std::string> center;        // text for the band centre box
  std::optional<std::string> f1, f2;        // texts for the band edge boxes
  std::optional<std::string> resonatorL;    // text for the resonator inductance box
  std::optional<float> sweep;               // a band design's sweep span (SweepSpan)
  std::optional<std::string> q;             // "inf" or text for the Q box
  PartModelChoices models;
};

// What `drenik tolerance` asks for beyond the design; unset ones take the
// engine's defaults (no mask option at all: the default mask).
struct ToleranceOptions {
  std::optional<double> ctol, ltol, tighten;  // %
  std::optional<Distribution> distribution;
  std::optional<int> trials;
  std::optional<uint64_t> seed;
  std::optional<double> passEdge;  // Hz
  // A band's second --pass-edge: the first is then its lower edge, this
  // its upper one.
  std::optional<double> passEdgeUpper;
  std::optional<double> passRl, passIl;
  std::vector<StopCheck> stops;
};

// What `drenik synth` asks for beyond the mask and the build (which it
// reads as `tolerance` and `parts` do).
struct SynthOptions {
  std::string response = "lowpass";
  std::optional<double> yieldPercent;
  std::string prefer = "parts";
  std::vector<std::string> families, topologies;  // command-line words
  std::optional<int> maxOrder;
  bool stockParts = false;  // a series or former was asked for
};

// What `drenik time` asks for beyond the design.
struct TimeOptions {
  std::optional<double> span;  // s; unset: to where the step has settled to 0.1 %
  int points = 2000;
  std::string csvFile;
};

struct CliOptions {
  Command command = Command::Help;
  std::string helpText;  // for Help: the text to print
  Choices choices;
  ValueStage values = ValueStage::FiveC;  // --values
  bool json = false;
  bool quiet = false;        // --quiet: no progress line
  std::string renderFile;    // .png, .svg or .pdf
  std::string renderOption;  // its option's word: "png", "svg" or "pdf"
  // The time page's charts: the Smith chart, the step and impulse responses.
  std::string smithFile, stepFile;
  int widthPx = 1600;
  int heightPx = 1200;
  // Export files in the order given: the format's option word and the path.
  std::vector<std::pair<std::string, std::string>> exports;
  PartsOptions parts;
  ToleranceOptions tolerance;
  std::optional<Former> former;  // winding: --core or --air-core
  // Lines for standard error: options that have no effect on the output.
  std::vector<std::string> notices;
  TimeOptions time;
  StressOptions stress;  // stress, and parts' ratings
  SynthOptions synth;
};

// Throws UsageError.
CliOptions ParseCommandLine(const std::vector<std::string>& args);

std::string UsageText();

}  // namespace drenik::cli
