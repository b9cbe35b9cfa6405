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

#include "core/signal_cleanup.h"
#include "core/write_target.h"

namespace drenik {

namespace {

// Tries at fresh names before giving up; a clash needs the same 8 random
// characters, so more than one try is already rare.
constexpr int kNameTries = 100;
// A file name longer than this is shortened in the temporary name, which
// adds 14 characters and must stay within the folder's 255-byte limit.
constexpr size_t kLongestBase = 200;

thread_local std::string lastFailure;

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

// Makes the rename itself survive a power cut. Not every file system can
// sync a folder; the file is in place either way.
void SyncFolder(const std::filesystem::path& folder) {
  const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  close(fd);
}

}  // namespace

AtomicFile::AtomicFile(std::string path) : path_(std::move(path)), stream_(&output_) {
  lastFailure.clear();
  WriteTarget t = ResolveWriteTarget(path_);
  file_ = t.file;
  made_ = t.made;
  switch (t.kind) {
    case TargetKind::Refused:
      Fail(t.error);
      return;
    case TargetKind::Stream:
      fd_ = t.fd;
      output_.Attach(fd_);
      return;
    case TargetKind::New:
      if (!OpenTemporary(nullptr)) Fail(errno);
      return;
    case TargetKind::Regular:
      break;
  }
  // A file of someone else's, or one with more names than this one, is
  // rewritten in place: a new file would take its owner or split its links.
  const bool own = t.status.st_uid == geteuid() && t.status.st_nlink <= 1;
  if (own && OpenTemporary(&t.status)) {
    close(t.fd);
    return;
  }
  if (own && errno != EACCES && errno != EPERM) {
    Fail(errno);
    close(t.fd);
    return;
  }
  fd_ = t.fd;
  inPlace_ = true;  // the content is kept in memory until Commit()
}

bool AtomicFile::OpenTemporary(const struct stat* keep) {
  const std::filesystem::path target(file_);
  const std::string base = target.filename().string().substr(0, kLongestBase);
  int fd = -1;
  std::filesystem::path name;
  for (int i = 0; i < kNameTries && fd < 0; ++i) {
    name = target.parent_path() / (base + "." + RandomTag() + ".tmp");
    fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0 && errno != EEXIST) break;
  }
  if (fd < 0) return false;
  signalSlot_ = RemoveOnSignal(name.string());
  temporary_ = name.string();
  if (keep) {
    // The group first: changing it may clear the set-ID bits the mode puts
    // back. A group the writer cannot give means the file is rewritten in
    // place instead.
    struct stat made {};
    const bool group =
        fstat(fd, &made) == 0 && (made.st_gid == keep->st_gid || fchown(fd, -1, keep->st_gid) == 0);
    if (!group || fchmod(fd, keep->st_mode & 07777) != 0) {
      close(fd);
      unlink(temporary_.c_str());
      ForgetOnSignal(signalSlot_);
      temporary_.clear();
      errno = EPERM;
      return false;
    }
  }
  fd_ = fd;
  output_.Attach(fd_);
  return true;
}

AtomicFile::~AtomicFile() {
  if (fd_ >= 0) close(fd_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
  if (made_) unlink(file_.c_str());
  ForgetOnSignal(signalSlot_);
}

void AtomicFile::Fail(int error) {
  if (error_ == 0) error_ = error != 0 ? error : EIO;
  lastFailure = ErrorText();
  stream_.setstate(std::ios::badbit);
}

void AtomicFile::Line(std::string_view text) {
  stream_ << text << "\r\n";
}

void AtomicFile::Write(std::string_view bytes) {
  stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The space is reserved before the first byte is overwritten, so a full disk
// or the size limit stops the write while the old content is still whole.
bool AtomicFile::WriteInPlace() {
  const std::string& bytes = output_.Kept();
  const SignalsHeld held;
  if (!bytes.empty() && fallocate(fd_, 0, 0, static_cast<off_t>(bytes.size())) != 0 &&
      errno != EOPNOTSUPP && errno != ENOSYS) {
    Fail(errno);
    return false;
  }
  if (const int error = WriteAll(fd_, bytes.data(), bytes.size(), 0)) {
    Fail(error);
    return false;
  }
  if (ftruncate(fd_, static_cast<off_t>(bytes.size())) != 0 || fsync(fd_) != 0) {
    Fail(errno);
    return false;
  }
  return true;
}

bool AtomicFile::Commit() {
  if (fd_ < 0) {
    Fail(EBADF);
    return false;
  }
  stream_.flush();
  if (output_.Error() != 0 || !stream_.good()) Fail(output_.Error());
  if (error_ == 0 && inPlace_) WriteInPlace();
  // The content reaches the disk before its name does.
  if (error_ == 0 && !temporary_.empty() && fsync(fd_) != 0) Fail(errno);
  if (close(fd_) != 0) Fail(errno);
  fd_ = -1;
  if (error_ == 0 && !temporary_.empty()) {
    if (rename(temporary_.c_str(), file_.c_str()) != 0) {
      Fail(errno);
    } else {
      temporary_.clear();
      SyncFolder(std::filesystem::path(file_).parent_path());
    }
  }
  if (!temporary_.empty()) {
    unlink(temporary_.c_str());
    temporary_.clear();
  }
  ForgetOnSignal(signalSlot_);
  signalSlot_ = -1;
  if (error_ != 0 && made_) unlink(file_.c_str());
  made_ = false;
  return error_ == 0;
}

std::string AtomicFile::ErrorText() const {
  return error_ == 0 ? std::string() : std::generic_category().message(error_);
}

std::string LastWriteFailure() {
  return lastFailure;
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
