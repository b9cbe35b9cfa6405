#pragma once
// A fresh folder under the system's temporary folder for one test, removed
// with everything in it when the test ends; and small file helpers.

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace drenik::testing {

class TempFolder {
 public:
  TempFolder() {
    std::random_device seed;
    path_ = std::filesystem::temp_directory_path() /
            ("drenik-test-" + std::to_string(seed()) + "-" + std::to_string(seed()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string Path() const { return path_.string(); }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string ReadWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void WriteWhole(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The lines of a file whose lines all end in CR LF; a line without its CR
// is returned with a "<no CR>" mark so a test sees it.
inline std::vector<std::string> CrLfLines(const std::string& path) {
  const std::string text = ReadWhole(path);
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    } else {
      line += "<no CR>";
    }
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

}  // namespace drenik::testing
