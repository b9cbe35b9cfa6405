#pragma once
// Output for files that must never be left half-written: the text goes into a
// file beside the target ("<name>.part") and is renamed over the target only
// once all of it is on disk. An old file of the same name stays as it was
// until then; an abandoned write removes its ".part" file.

#include <fstream>
#include <string>

namespace drenik {

class ReplacingFile {
 public:
  // An empty path never opens (a cancelled file dialog gives one).
  explicit ReplacingFile(std::string path);
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  bool IsOpen() const { return out_.is_open(); }
  // Writes the text and a carriage return and line feed.
  void Line(const std::string& text) { out_ << text << "\r\n"; }
  std::ofstream& Stream() { return out_; }
  // Closes the part file and renames it over the target. False on any error,
  // in which case the target is untouched.
  bool Commit();

 private:
  std::string path_;
  std::string partPath_;
  std::ofstream out_;
  bool committed_ = false;
};

}  // namespace drenik
