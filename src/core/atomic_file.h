#pragma once
// The one way this program writes a file. Every writer goes through here, so
// that a full disk, a file-size limit or a crash never leaves half a file
// under the target's name and never costs the old file:
//
//   AtomicFile file(path);       // a new temporary file beside the target
//   file.Line("* Apass, Astop:"); // text and CR LF
//   file.Stream() << value;       // or anything a std::ostream takes
//   if (!file.Commit()) ...       // show the writer's own failure message
//
// Commit() checks every write, the flush to disk and the close, then renames
// the temporary file over the target. On any failure it returns false, the
// old target stays byte for byte as it was and the temporary file is gone.
// Abandoning the object without Commit() (a writer that finds it cannot go
// on) removes the temporary file the same way.
//
// The temporary file is created under a fresh random name with O_EXCL, so no
// existing file or link is ever opened or followed, and two writers of one
// target never share it. The target's own name is replaced, never followed:
// a link there is replaced by the new file. A name that holds a character
// device or a pipe (/dev/null, /dev/stdout, a FIFO) has no old content to
// keep and is written straight into; a folder or a block device is refused.

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

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
  // Buffered output to the descriptor that checks every write(2) and keeps
  // the first error; once one write fails, nothing more is written.
  class Output : public std::streambuf {
   public:
    Output();
    void Attach(int fd) { fd_ = fd; }
    int Error() const { return error_; }
    bool Drain();

   protected:
    int_type overflow(int_type c) override;
    int sync() override;

   private:
    int fd_ = -1;
    int error_ = 0;
    std::vector<char> buffer_;
  };

  void Fail(int error);
  void OpenTemporary(int keepMode);

  std::string path_;
  std::string temporary_;  // empty when writing straight into the target
  int fd_ = -1;
  int error_ = 0;
  Output output_;
  std::ostream stream_;
};

// A write past the file-size limit (ulimit -f) would kill the program with
// SIGXFSZ and strand its temporary file; with the signal ignored the write
// fails with EFBIG and the writer reports it like a full disk. Each program
// calls this once at start.
void ReportFileSizeLimitAsError();

// The whole content in one call; false with the reason in `error`.
bool WriteWholeFile(const std::string& path, std::string_view bytes, std::string* error = nullptr);

}  // namespace drenik
