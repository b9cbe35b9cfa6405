#pragma once
// A fresh folder for one test, removed with its contents afterwards, and
// small file helpers.

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace drenik::testing {

class TempFolder {
 public:
  TempFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("drenik-test-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  std::string Path() const { return path_.string(); }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string ReadWhole(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline void WriteWhole(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The lines of a file; a line that does not end in CR LF carries a mark.
inline std::vector<std::string> CrLfLines(const std::string& path) {
  std::istringstream in(ReadWhole(path));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line + "<no CR>");
  }
  return lines;
}

}  // namespace drenik::testing
