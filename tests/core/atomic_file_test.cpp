#include "core/atomic_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>

#include "support/temp_folder.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;
using testing::ReadWhole;

// The old content stays until Commit() and an abandoned write leaves nothing;
// two writers of one target at once each put their whole file there in turn;
// the file keeps its permissions.
TEST(AtomicFile, ReplacesWholeOrNotAtAll) {
  testing::TempFolder folder;
  const std::string path = folder / "a.txt";
  testing::WriteWhole(path, "old");
  chmod(path.c_str(), 0640);
  AtomicFile(path).Line("abandoned");
  AtomicFile first(path), second(path);
  first.Line("first");
  second.Stream() << "second " << 2;
  EXPECT_EQ(ReadWhole(path), "old");
  ASSERT_TRUE(second.Commit());
  EXPECT_EQ(ReadWhole(path), "second 2");
  ASSERT_TRUE(first.Commit());
  EXPECT_FALSE(first.Commit());  // once only
  EXPECT_EQ(ReadWhole(path), "first\r\n");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

// What the shell's ">" would write into is written into: a link's file (the
// link stays), a link to nothing (its file is made), a device, also behind a
// link, and one of the process's own descriptors; a full device is reported
// and a folder refused.
TEST(AtomicFile, LinksDevicesAndFolders) {
  testing::TempFolder folder;
  testing::WriteWhole(folder / "elsewhere", "old");
  fs::create_symlink("elsewhere", folder / "link");
  fs::create_symlink("made", folder / "dangling");
  fs::create_symlink("/dev/full", folder / "full.svg");
  std::string error;
  ASSERT_TRUE(WriteWholeFile(folder / "link", "new", &error)) << error;
  ASSERT_TRUE(WriteWholeFile(folder / "dangling", "made", &error)) << error;
  EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "dangling"));
  EXPECT_EQ(ReadWhole(folder / "elsewhere") + ReadWhole(folder / "made"), "newmade");
  const int fd = open((folder / "descriptor").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  write(fd, "kept ", 5);
  EXPECT_TRUE(WriteWholeFile("/dev/fd/" + std::to_string(fd), "added", &error)) << error;
  close(fd);
  EXPECT_EQ(ReadWhole(folder / "descriptor"), "kept added");
  EXPECT_TRUE(WriteWholeFile("/dev/null", "anything", &error)) << error;
  EXPECT_FALSE(WriteWholeFile(folder / "full.svg", std::string(200000, 'x'), &error));
  EXPECT_EQ(error, "No space left on device");
  EXPECT_FALSE(WriteWholeFile(folder.Path(), "x", &error) || WriteWholeFile("", "x", &error));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 6);
}

// Runs `write` in a child process, as user nobody when the tests run as
// root (root passes every permission check, so the cases below would not
// show anything), and returns what the child reported or how it ended.
std::string InChild(const std::function<std::string()>& write, int rlimitBytes = -1) {
  int out[2];
  if (pipe(out) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(3);
    if (rlimitBytes >= 0) {
      signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{rlim_t(rlimitBytes), rlim_t(rlimitBytes)};
      setrlimit(RLIMIT_FSIZE, &limit);
    }
    const std::string said = write();
    ::write(out[1], said.data(), said.size());
    _exit(0);
  }
  close(out[1]);
  std::string said;
  char buffer[256];
  for (ssize_t n; (n = read(out[0], buffer, sizeof buffer)) > 0;) said.append(buffer, size_t(n));
  close(out[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status)) : said;
}

std::string Written(const std::string& path, const std::string& bytes) {
  std::string error;
  return WriteWholeFile(path, bytes, &error) ? "written" : error;
}

// Replacing a file keeps its links, owner and mode, and what ">" would
// refuse is refused. The other owner needs root to make; without root that
// case is skipped (said on the output).
TEST(AtomicFile, ReplacingKeepsLinksOwnerAndModeAndRefusesWhatTheShellWould) {
  testing::TempFolder folder;
  chmod(folder.Path().c_str(), 0777);
  const std::string linked = folder / "linked", readOnly = folder / "read-only",
                    shut = folder / "shut", inShut = shut + "/file";
  for (const std::string& p : {linked, readOnly}) testing::WriteWhole(p, "old");
  fs::create_hard_link(linked, folder / "second name");
  fs::create_directory(shut);
  testing::WriteWhole(inShut, "old");
  chmod(linked.c_str(), 0666), chmod(readOnly.c_str(), 0444), chmod(inShut.c_str(), 0666);
  chmod(shut.c_str(), 0555);
  EXPECT_EQ(InChild([&] { return Written(readOnly, "new"); }), "Permission denied");
  EXPECT_EQ(InChild([&] { return Written(inShut, "new"); }), "written");
  EXPECT_EQ(InChild([&] { return Written(linked, "a longer text"); }, 5), "File too large");
  EXPECT_EQ(InChild([&] { return Written(linked, "new"); }), "written");
  EXPECT_EQ(ReadWhole(readOnly) + ReadWhole(inShut) + ReadWhole(folder / "second name"),
            "oldnewnew");
  EXPECT_EQ(fs::hard_link_count(linked), 2u);
  EXPECT_EQ(fs::status(inShut).permissions(), fs::perms(0666));
  chmod(shut.c_str(), 0755);
  if (geteuid() != 0) {
    std::cout << "skipped: a file of another owner needs root to make\n";
  } else {  // root's file in a folder that nobody may write to
    EXPECT_EQ(InChild([&] { return Written(linked, "nobody's"); }), "written");
    struct stat after {};
    stat(linked.c_str(), &after);
    EXPECT_EQ(after.st_uid, 0u);
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 4);
}

// An interrupt during a write removes the temporary file; the old file stays.
TEST(AtomicFile, SignalsRemoveTheTemporaryFile) {
  for (int sig : {SIGINT, SIGTERM, SIGHUP}) {
    testing::TempFolder folder;
    chmod(folder.Path().c_str(), 0777);
    testing::WriteWhole(folder / "target", "old");
    chmod((folder / "target").c_str(), 0666);
    const std::string ended = InChild([&] {
      AtomicFile file(folder / "target");
      file.Line("new");
      raise(sig);
      return std::string("survived");
    });
    EXPECT_EQ(ended, "signal " + std::to_string(sig));
    EXPECT_EQ(ReadWhole(folder / "target"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
  }
}

}  // namespace
}  // namespace drenik
