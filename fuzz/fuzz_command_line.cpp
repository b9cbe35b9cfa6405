// Any command line, split into arguments at NUL bytes, run in-process with
// no file written: the parser either returns what to do or refuses with one
// line naming what is wrong; a command then runs the pages as the program
// does up to its files, and a refusal or a design ends with status 0 (and
// notices of clamped values at most) or 2 and at most one line of
// complaint. The commands that write only to the streams run whole: design,
// winding, time without --csv, parts without --bom (the chooser), and
// tolerance with at most 64 trials asked for.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "tolerance/tolerance.h"

namespace {

bool OneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
}

// A refusal of the design after notices of values the page replaced (with
// which it was designed): every line before the last is such a notice.
bool NoticesThenOneLine(const std::string& err) {
  const size_t last = err.rfind('\n', err.size() >= 2 ? err.size() - 2 : 0);
  if (last == std::string::npos || err.size() < 2) return OneLine(err);
  for (size_t from = 0, end; from <= last; from = end + 1) {
    end = err.find('\n', from);
    const std::string line = err.substr(from, end - from);
    if (!line.starts_with("drenik: --") ||
        line.find(": the design page does not take '") == std::string::npos)
      return false;
  }
  return OneLine(err.substr(last + 1));
}

// Whether JSON text has inf or NaN where a value goes (after ':', '[' or
// ','), which JSON cannot hold.
bool HasNonNumber(const std::string& json) {
  for (const char* word : {"inf", "nan", "NaN"}) {
    for (size_t at = json.find(word); at != std::string::npos; at = json.find(word, at + 1)) {
      size_t before = at;
      while (before > 0 && (json[before - 1] == ' ' || json[before - 1] == '-')) --before;
      if (before > 0 && std::string_view(":[,").find(json[before - 1]) != std::string_view::npos)
        return true;
    }
  }
  return false;
}

// A design that went through may say on standard error which typed value
// the page clamped: whole lines, each the program's own.
bool Notices(const std::string& text) {
  for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
    if (text.compare(at, 8, "drenik: ") != 0 || text.find('\n', at) == std::string::npos)
      return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::string> args(1);
  for (size_t i = 0; i < size; ++i) {
    if (data[i] == '\0') {
      args.emplace_back();
    } else {
      args.back() += static_cast<char>(data[i]);
    }
  }
  if (args.size() > 40) return 0;  // beyond any real command line

  using namespace drenik::cli;
  CliOptions options;
  bool refused = false;
  try {
    options = ParseCommandLine(args);
  } catch (const UsageError&) {
    refused = true;
  }

  // Refusals and the commands that write only to the streams run whole;
  // every other (render, export, any that writes files) stops short of its
  // files.
  const Command c = options.command;
  const bool streamsOnly =
      c == Command::Design || c == Command::Help || c == Command::Version ||
      c == Command::Winding || (c == Command::Time && options.time.csvFile.empty()) ||
      (c == Command::Parts && options.parts.bom.empty()) ||
      (c == Command::Tolerance && options.tolerance.trials.value_or(drenik::kDefaultTrials) <= 64);
  if (refused || streamsOnly) {
    std::ostringstream out, err;
    const int status = RunCommandLine(args, out, err);
    // A refusal of the command line is one line; a refused design may
    // follow notices of the values it was made with.
    if (status == 0
            ? !Notices(err.str())
            : status != 2 || !(refused ? OneLine(err.str()) : NoticesThenOneLine(err.str())))
      std::abort();
    if (options.json && HasNonNumber(out.str())) std::abort();
    // The design and the windings have every figure: null is for the
    // figures the others may lack.
    if (options.json && (c == Command::Design || c == Command::Winding) &&
        out.str().find("null") != std::string::npos)
      std::abort();
    return 0;
  }
  ConsolePlatform platform;
  try {
    RunDesign(options, platform);
  } catch (const UsageError&) {
  } catch (const DesignFailure&) {
  }
  return 0;
}
