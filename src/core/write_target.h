#pragma once
// Where a write to a path lands, as the shell's ">" would see it. Links are
// followed (the kernel's own link protections apply, since the target is
// opened through the name as given); one of the process's own descriptors
// (/dev/stdout, /dev/fd/N) is that descriptor; a device or a pipe is itself.

#include <sys/stat.h>

#include <string>

namespace drenik {

enum class TargetKind {
  New,      // nothing there yet: `file` is where the new file goes
  Regular,  // an existing file, opened for writing but not yet truncated
  Stream,   // a device, pipe or socket: written straight into
  Refused,  // `error` says why (a folder, a block device, no permission)
};

struct WriteTarget {
  TargetKind kind = TargetKind::Refused;
  std::string file;  // New, Regular: the file's own name, links resolved
  int fd = -1;       // Regular, Stream; the caller closes it
  struct stat status {};
  // Regular: the file was made just now through a link that pointed
  // nowhere, and goes again if the write fails.
  bool made = false;
  int error = 0;
};

WriteTarget ResolveWriteTarget(const std::string& path);

}  // namespace drenik
