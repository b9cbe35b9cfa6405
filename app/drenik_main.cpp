// The `drenik` command line.
#include <iostream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "core/atomic_file.h"

int main(int argc, char** argv) {
  drenik::ReportFileSizeLimitAsError();
  std::vector<std::string> args(argv + 1, argv + argc);
  return drenik::cli::RunCommandLine(args, std::cout, std::cerr);
}
