#include "core/atomic_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <utility>

namespace drenik {

namespace {

constexpr size_t kBufferBytes = 64 * 1024;
// Tries at fresh names before giving up; a clash needs the same 8 random
// characters, so more than one try is already rare.
constexpr int kNameTries = 100;
// A file name longer than this is shortened in the temporary name, which
// adds 14 characters and must stay within the folder's 255-byte limit.
constexpr size_t kLongestBase = 200;

// Eight random letters and digits for a temporary name.
std::string RandomTag() {
  static constexpr char kChars[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  unsigned char bytes[8];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes)) {
    // No random source: the clock and the process still make clashes rare,
    // and O_EXCL keeps a clash harmless.
    auto seed = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
                (static_cast<uint64_t>(getpid()) << 32);
    for (unsigned char& b : bytes) {
      seed = seed * 6364136223846793005ULL + 1442695040888963407ULL;
      b = static_cast<unsigned char>(seed >> 56);
    }
  }
  std::string tag;
  for (unsigned char b : bytes) tag += kChars[b % (sizeof kChars - 1)];
  return tag;
}

bool IsStream(mode_t mode) {
  return S_ISCHR(mode) || S_ISFIFO(mode);
}

// Makes the rename itself survive a power cut. Not every file system can
// sync a folder; the file is in place either way.
void SyncFolder(const std::filesystem::path& folder) {
  const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  close(fd);
}

}  // namespace

AtomicFile::Output::Output() : buffer_(kBufferBytes) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

// Writes out the buffer; a short write goes on from where it stopped, so the
// next call reports why the rest could not be written (EFBIG, ENOSPC).
bool AtomicFile::Output::Drain() {
  const char* next = pbase();
  while (error_ == 0 && next < pptr()) {
    const ssize_t written = write(fd_, next, static_cast<size_t>(pptr() - next));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      error_ = written < 0 ? errno : EIO;
      break;
    }
    next += written;
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return error_ == 0;
}

AtomicFile::Output::int_type AtomicFile::Output::overflow(int_type c) {
  if (!Drain()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
  }
  return traits_type::not_eof(c);
}

int AtomicFile::Output::sync() {
  return Drain() ? 0 : -1;
}

AtomicFile::AtomicFile(std::string path) : path_(std::move(path)), stream_(&output_) {
  if (path_.empty()) {
    Fail(ENOENT);
    return;
  }
  struct stat found {};
  if (lstat(path_.c_str(), &found) != 0) {
    if (errno == ENOENT) {
      OpenTemporary(-1);
    } else {
      Fail(errno);
    }
    return;
  }
  // A device or pipe, also one a link names (/dev/stdout): written straight
  // into. open() follows such a link with the kernel's own link protections.
  struct stat resolved = found;
  if (S_ISLNK(found.st_mode) && stat(path_.c_str(), &resolved) != 0) resolved = found;
  if (IsStream(resolved.st_mode)) {
    fd_ = open(path_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    struct stat opened {};
    if (fd_ >= 0 && (fstat(fd_, &opened) != 0 || !IsStream(opened.st_mode))) {
      close(fd_);
      fd_ = -1;
      errno = EINVAL;  // the name changed under us
    }
    if (fd_ < 0) Fail(errno);
    output_.Attach(fd_);
    return;
  }
  if (S_ISDIR(found.st_mode)) {
    Fail(EISDIR);
  } else if (S_ISREG(found.st_mode)) {
    OpenTemporary(static_cast<int>(found.st_mode & 07777));  // keeps the file's permissions
  } else if (S_ISLNK(found.st_mode)) {
    OpenTemporary(-1);
  } else {
    Fail(EINVAL);  // a block device or a socket is no place for a file
  }
}

void AtomicFile::OpenTemporary(int keepMode) {
  const std::filesystem::path target(path_);
  const std::string base = target.filename().string().substr(0, kLongestBase);
  for (int i = 0; i < kNameTries && fd_ < 0; ++i) {
    std::filesystem::path name = target.parent_path() / (base + "." + RandomTag() + ".tmp");
    fd_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd_ >= 0) {
      temporary_ = name.string();
    } else if (errno != EEXIST) {
      break;
    }
  }
  if (fd_ < 0) {
    Fail(errno);
    return;
  }
  if (keepMode >= 0) fchmod(fd_, static_cast<mode_t>(keepMode));
  output_.Attach(fd_);
}

AtomicFile::~AtomicFile() {
  if (fd_ >= 0) close(fd_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void AtomicFile::Fail(int error) {
  if (error_ == 0) error_ = error != 0 ? error : EIO;
  stream_.setstate(std::ios::badbit);
}

void AtomicFile::Line(std::string_view text) {
  stream_ << text << "\r\n";
}

void AtomicFile::Write(std::string_view bytes) {
  stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool AtomicFile::Commit() {
  if (fd_ < 0) {
    Fail(EBADF);
    return false;
  }
  stream_.flush();
  if (output_.Error() != 0 || !stream_.good()) Fail(output_.Error());
  // The content reaches the disk before its name does.
  if (error_ == 0 && !temporary_.empty() && fsync(fd_) != 0) Fail(errno);
  if (close(fd_) != 0) Fail(errno);
  fd_ = -1;
  if (error_ == 0 && !temporary_.empty()) {
    if (rename(temporary_.c_str(), path_.c_str()) != 0) {
      Fail(errno);
    } else {
      temporary_.clear();
      SyncFolder(std::filesystem::path(path_).parent_path());
    }
  }
  if (error_ != 0 && !temporary_.empty()) {
    unlink(temporary_.c_str());
    temporary_.clear();
  }
  return error_ == 0;
}

std::string AtomicFile::ErrorText() const {
  return error_ == 0 ? std::string() : std::generic_category().message(error_);
}

void ReportFileSizeLimitAsError() {
  signal(SIGXFSZ, SIG_IGN);
}

bool WriteWholeFile(const std::string& path, std::string_view bytes, std::string* error) {
  AtomicFile file(path);
  file.Write(bytes);
  const bool written = file.Commit();
  if (!written && error) *error = file.ErrorText();
  return written;
}

}  // namespace drenik
