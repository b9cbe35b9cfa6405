#pragma once
// The one way this program writes a file. Every writer goes through here, so
// that a full disk, a file-size limit, an interrupt or a crash never leaves
// half a file under the target's name and never costs the old file:
//
//   AtomicFile file(path);       // a new temporary file beside the target
//   file.Line("* Apass, Astop:"); // text and CR LF
//   file.Stream() << value;       // or anything a std::ostream takes
//   if (!file.Commit()) ...       // show the writer's own failure message
//
// Commit() checks every write, the flush to disk and the close. On any
// failure it returns false, the old target stays byte for byte as it was and
// no temporary file is left. Abandoning the object without Commit() (a
// writer that finds it cannot go on) leaves the target the same way.
//
// Where the content goes is what the shell's ">" would do with the name, and
// what ">" refuses is refused:
// - A new name, or a file of the writer's own with one link: the content goes
//   into a temporary file beside it, created under a fresh random name with
//   O_EXCL (no existing file or link is ever opened there), given the old
//   file's mode and group, and renamed over the target. SIGINT, SIGTERM and
//   SIGHUP remove the temporary file (signal_cleanup.h).
// - A file with more links, another owner, or in a folder the writer may
//   not write to: rewritten in place once the whole content is at hand, with
//   its space reserved first, so that a full disk or a size limit still
//   leaves the old content; the links, owner and mode stay.
// - A link: followed; the file it points to gets the content as above.
// - A device, pipe or socket, and /dev/stdout or /dev/fd/N (the process's
//   own descriptor): written straight into.
// - A folder or a block device: refused.

#include <ostream>
#include <string>
#include <string_view>

#include "core/descriptor_output.h"

struct stat;

namespace drenik {

class AtomicFile {
 public:
  // An empty path never opens (a cancelled file dialog gives one).
  explicit AtomicFile(std::string path);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  bool IsOpen() const { return fd_ >= 0; }
  // Writes the text and a carriage return and line feed.
  void Line(std::string_view text);
  void Write(std::string_view bytes);
  std::ostream& Stream() { return stream_; }
  // Puts the whole content under the target's name; false on any error, in
  // which case the target is untouched.
  bool Commit();
  // Why the file could not be written ("No space left on device"); empty
  // while nothing has failed.
  std::string ErrorText() const;

 private:
  void Fail(int error);
  bool OpenTemporary(const struct stat* keep);
  bool WriteInPlace();

  std::string path_;
  std::string file_;       // the file itself, links resolved
  std::string temporary_;  // empty unless writing a temporary file
  int signalSlot_ = -1;
  bool inPlace_ = false;
  bool made_ = false;  // the file was made through a link and goes on failure
  int fd_ = -1;
  int error_ = 0;
  DescriptorOutput output_;
  std::ostream stream_;
};

// Why the last AtomicFile of this thread failed, as ErrorText() said it;
// empty when the last one has not failed. Lets a caller that only sees a
// writer's true or false (the command line) name the reason.
std::string LastWriteFailure();

// A write past the file-size limit (ulimit -f) would kill the program with
// SIGXFSZ and strand its temporary file; with the signal ignored the write
// fails with EFBIG and the writer reports it like a full disk. Each program
// calls this once at start.
void ReportFileSizeLimitAsError();

// The whole content in one call; false with the reason in `error`.
bool WriteWholeFile(const std::string& path, std::string_view bytes, std::string* error = nullptr);

}  // namespace drenik
