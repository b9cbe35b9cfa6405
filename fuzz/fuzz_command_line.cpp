// Any command line, split into arguments at NUL bytes, run in-process with
// no file written: the parser either returns what to do or refuses with one
// line naming what is wrong; a command then runs the pages as the program
// does up to its files, and a refusal or a design ends with status 0 (and
// notices of clamped values at most) or 2 and one line of complaint.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/options.h"
#include "cli/run_design.h"

namespace {

bool OneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
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

  // Refusals, design, help and version write only to the streams; every
  // other command (render, export, any that writes files) stops short of
  // its files.
  const bool streamsOnly = options.command == Command::Design || options.command == Command::Help ||
                           options.command == Command::Version;
  if (refused || streamsOnly) {
    std::ostringstream out, err;
    const int status = RunCommandLine(args, out, err);
    if (status == 0 ? !Notices(err.str()) : status != 2 || !OneLine(err.str())) std::abort();
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
