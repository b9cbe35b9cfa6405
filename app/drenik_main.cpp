// The `drenik` command line.
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/standard_output.h"
#include "core/atomic_file.h"

int main(int argc, char** argv) {
  drenik::ReportFileSizeLimitAsError();
  drenik::cli::StandardOutput out;
  std::vector<std::string> args(argv + 1, argv + argc);
  const int status =
      drenik::cli::RunCommandLine(args, out.Stream(), std::cerr, isatty(STDERR_FILENO) == 1);
  return out.Finish(status, std::cerr);
}
