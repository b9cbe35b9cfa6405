#pragma once
// What the command line says on standard error. A file name or argument is
// echoed with its control characters escaped, so that no name can clear the
// terminal, move its cursor or split the one line a complaint takes.

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace drenik::cli {

// The text with C0 and C1 control characters and DEL written as \n, \t, \r
// or \xHH (a C1 character as the two bytes of its UTF-8 form).
std::string Printable(std::string_view text);

// "drenik: could not write FILE: REASON": the system's reason when the file
// writer knows one, else what the writer showed.
void CouldNotWrite(std::ostream& err, const std::string& file,
                   const std::vector<std::string>& writerMessages);

}  // namespace drenik::cli
