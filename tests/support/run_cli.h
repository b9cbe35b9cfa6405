#pragma once
// The command line run in-process on one line of words: what the command-line
// tests of every command share.

#include <sstream>
#include <string>
#include <vector>

#include "cli/cli.h"

namespace drenik::testing {

struct Outcome {
  int status;
  std::string out, err;
};

inline Outcome Drenik(const std::string& line) {
  std::vector<std::string> args;
  std::istringstream words(line);
  for (std::string word; words >> word;) args.push_back(word);
  std::ostringstream out, err;
  const int status = cli::RunCommandLine(args, out, err);
  return {status, out.str(), err.str()};
}

}  // namespace drenik::testing
