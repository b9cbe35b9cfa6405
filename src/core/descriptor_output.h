#pragma once
// Buffered output to a file descriptor that checks every write(2) and keeps
// the first error; once one write fails, nothing more is written. Without a
// descriptor the bytes are kept in memory instead, for a writer that must
// hold the whole content before it touches the file.

#include <cstddef>
#include <streambuf>
#include <string>
#include <vector>

namespace drenik {

class DescriptorOutput : public std::streambuf {
 public:
  DescriptorOutput();
  void Attach(int fd) { fd_ = fd; }
  int Error() const { return error_; }
  // Writes out what is buffered; false once any write has failed.
  bool Drain();
  // Bytes handed over so far, written or kept.
  size_t Count() const { return count_ + static_cast<size_t>(pptr() - pbase()); }
  // The bytes kept in memory (no descriptor attached), after a Drain().
  const std::string& Kept() const { return kept_; }

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  int fd_ = -1;
  int error_ = 0;
  size_t count_ = 0;
  std::vector<char> buffer_;
  std::string kept_;
};

// Writes all of `bytes` at `offset` (pwrite) or at the descriptor's own
// position (offset < 0), going on after a short write; 0 or the error.
int WriteAll(int fd, const char* bytes, size_t size, long long offset = -1);

}  // namespace drenik
