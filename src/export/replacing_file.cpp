#include "export/replacing_file.h"

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace drenik {

ReplacingFile::ReplacingFile(std::string path) : path_(std::move(path)) {
  if (path_.empty()) return;
  partPath_ = path_ + ".part";
  out_.open(partPath_, std::ios::binary | std::ios::trunc);
}

ReplacingFile::~ReplacingFile() {
  if (committed_ || partPath_.empty()) return;
  if (out_.is_open()) out_.close();
  std::error_code ignored;
  std::filesystem::remove(partPath_, ignored);
}

bool ReplacingFile::Commit() {
  if (!out_.is_open()) return false;
  out_.flush();
  const bool written = static_cast<bool>(out_);
  out_.close();
  if (!written || out_.fail()) return false;
  std::error_code error;
  std::filesystem::rename(partPath_, path_, error);
  if (error) return false;
  committed_ = true;
  return true;
}

}  // namespace drenik
