#pragma once
// Standard output as a careful command-line tool writes it: every write is
// checked, and the end of the run says whether everything arrived. A reader
// that closed the pipe early (`| head -1`) is no fault worth a message.

#include <ostream>
#include <string>

#include "core/descriptor_output.h"

namespace drenik::cli {

class StandardOutput {
 public:
  // Fills a closed standard input, output or error, so that no file the
  // program opens lands there.
  StandardOutput();
  std::ostream& Stream() { return stream_; }
  // The exit status after flushing: `status` when all output arrived, else
  // 1 with one line on `err` naming standard output and the reason.
  int Finish(int status, std::ostream& err);

 private:
  DescriptorOutput output_;
  std::ostream stream_;
};

}  // namespace drenik::cli
