#include "cli/standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace drenik::cli {

StandardOutput::StandardOutput() : stream_(&output_) {
  // A closed standard stream gets /dev/null opened for reading: no file the
  // program opens lands there, and a write to it (also through /dev/stdout)
  // still fails as on the closed descriptor, with EBADF.
  for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) >= 0) continue;
    const int null = open("/dev/null", O_RDONLY);
    if (null >= 0 && null != fd) {
      dup2(null, fd);
      close(null);
    }
  }
  output_.Attach(STDOUT_FILENO);
}

int StandardOutput::Finish(int status, std::ostream& err) {
  stream_.flush();
  int error = output_.Error();
  if (error == 0 && !stream_.good()) error = EIO;
  if (error == 0) return status;
  if (error != EPIPE)
    err << "drenik: could not write standard output: " << std::generic_category().message(error)
        << "\n";
  return status != 0 ? status : 1;
}

}  // namespace drenik::cli
