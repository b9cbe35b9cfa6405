#include "core/descriptor_output.h"

#include <unistd.h>

#include <cerrno>

namespace drenik {

namespace {
constexpr size_t kBufferBytes = 64 * 1024;
}  // namespace

int WriteAll(int fd, const char* bytes, size_t size, long long offset) {
  // A short write goes on from where it stopped, so that the next call
  // reports why the rest could not be written (EFBIG, ENOSPC).
  while (size > 0) {
    const ssize_t written =
        offset < 0 ? write(fd, bytes, size) : pwrite(fd, bytes, size, static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes += written;
    size -= static_cast<size_t>(written);
    if (offset >= 0) offset += written;
  }
  return 0;
}

DescriptorOutput::DescriptorOutput() : buffer_(kBufferBytes) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

bool DescriptorOutput::Drain() {
  const size_t size = static_cast<size_t>(pptr() - pbase());
  if (error_ == 0 && size > 0) {
    if (fd_ >= 0)
      error_ = WriteAll(fd_, pbase(), size);
    else
      kept_.append(pbase(), size);
  }
  count_ += size;
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return error_ == 0;
}

DescriptorOutput::int_type DescriptorOutput::overflow(int_type c) {
  if (!Drain()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
  }
  return traits_type::not_eof(c);
}

int DescriptorOutput::sync() {
  return Drain() ? 0 : -1;
}

}  // namespace drenik
