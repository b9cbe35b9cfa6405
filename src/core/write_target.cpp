#include "core/write_target.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>

namespace drenik {
namespace {

// Links followed before giving up, as the kernel counts them.
constexpr int kMostLinks = 40;

// The descriptor a name stands for when it is one of the process's own.
std::optional<int> OwnDescriptor(std::string_view name) {
  if (name == "/dev/stdout") return 1;
  if (name == "/dev/stderr") return 2;
  const std::string self = "/proc/" + std::to_string(getpid()) + "/fd/";
  for (std::string_view folder :
       {std::string_view("/dev/fd/"), std::string_view("/proc/self/fd/"),
        std::string_view("/proc/thread-self/fd/"), std::string_view(self)}) {
    if (!name.starts_with(folder)) continue;
    const std::string_view digits = name.substr(folder.size());
    int fd = -1;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), fd);
    if (!digits.empty() && ec == std::errc() && end == digits.data() + digits.size()) return fd;
  }
  return std::nullopt;
}

WriteTarget Refused(int error) {
  WriteTarget t;
  t.error = error != 0 ? error : EIO;
  return t;
}

bool IsStream(mode_t mode) {
  return S_ISCHR(mode) || S_ISFIFO(mode) || S_ISSOCK(mode);
}

// An existing name, opened through the path as given.
WriteTarget Open(const std::string& path, const std::string& file, const struct stat& found) {
  if (S_ISDIR(found.st_mode)) return Refused(EISDIR);
  if (!S_ISREG(found.st_mode) && !IsStream(found.st_mode))
    return Refused(EINVAL);  // a block device is no place for a file
  WriteTarget t;
  t.fd = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (t.fd < 0) return Refused(errno);
  // What was opened must be what was looked at; a name swapped in between
  // is refused rather than guessed at.
  if (fstat(t.fd, &t.status) != 0 || t.status.st_dev != found.st_dev ||
      t.status.st_ino != found.st_ino) {
    close(t.fd);
    return Refused(EAGAIN);
  }
  t.kind = S_ISREG(found.st_mode) ? TargetKind::Regular : TargetKind::Stream;
  t.file = file;
  return t;
}

}  // namespace

WriteTarget ResolveWriteTarget(const std::string& path) {
  if (path.empty()) return Refused(ENOENT);
  std::filesystem::path name = path;
  for (int links = 0;; ++links) {
    if (const std::optional<int> own = OwnDescriptor(name.native())) {
      WriteTarget t;
      t.kind = TargetKind::Stream;
      t.fd = fcntl(*own, F_DUPFD_CLOEXEC, 3);
      return t.fd < 0 ? Refused(errno) : t;
    }
    struct stat found {};
    if (lstat(name.c_str(), &found) != 0) {
      if (errno != ENOENT) return Refused(errno);
      if (links == 0) {
        WriteTarget t;
        t.kind = TargetKind::New;
        t.file = path;
        return t;
      }
      // A link to nothing: the file is made where it points, through the
      // link, as ">" makes it.
      WriteTarget t;
      t.fd = open(path.c_str(), O_WRONLY | O_CREAT | O_NOCTTY | O_CLOEXEC, 0666);
      if (t.fd < 0 || fstat(t.fd, &t.status) != 0) return Refused(errno);
      t.kind = S_ISREG(t.status.st_mode) ? TargetKind::Regular : TargetKind::Stream;
      t.file = name.native();
      t.made = t.kind == TargetKind::Regular;
      return t;
    }
    if (!S_ISLNK(found.st_mode)) return Open(path, name.native(), found);
    if (links >= kMostLinks) return Refused(ELOOP);
    std::error_code error;
    const std::filesystem::path next = std::filesystem::read_symlink(name, error);
    if (error) return Refused(error.value());
    name = next.is_absolute() ? next : name.parent_path() / next;
  }
}

}  // namespace drenik
