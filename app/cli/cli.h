#pragma once
// The `drenik` command line: design, render and export through the
// designer's own page logic. Returns the process status: 0 done, 1 a file
// could not be written, 2 bad usage or a design the engine refused.

#include <ostream>
#include <string>
#include <vector>

namespace drenik::cli {

// `errIsTerminal`: standard error is a terminal, where a long run shows its
// progress.
int RunCommandLine(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                   bool errIsTerminal = false);

}  // namespace drenik::cli
