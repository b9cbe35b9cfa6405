// Every file the program writes, written as a full disk or a size limit
// sees it, and next to links that wait at temporary-looking names. The old
// file must survive a failed write byte for byte, and no link is followed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "core/last_session.h"
#include "plot/overlay.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Drenik(std::vector<std::string> args) {
  static const std::string binary = DRENIK_BINARY_DIR "/app/drenik";
  args.insert(args.begin(), binary);
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  execv(binary.c_str(), argv.data());
  _exit(127);
}

// A writer inside the program: status 1 when it showed its failure message.
template <typename Write>
[[noreturn]] void InProcess(Write write) {
  RecordingPlatform platform;
  write(platform);
  _exit(platform.messages.empty() ? 0 : 1);
}

// One row per output: its file name and how the program writes it (in a
// child process, which ends with the status the program ends with).
struct Output {
  const char* name;
  void (*write)(const std::string& path);
};

const Output kOutputs[] = {
    {"out.lct",
     [](const std::string& p) {
       Drenik({"export", "--lct", p});
     }},
    {"out.asc",
     [](const std::string& p) {
       Drenik({"export", "--asc", p});
     }},
    {"out.cir",
     [](const std::string& p) {
       Drenik({"export", "--cir", p});
     }},
    {"out.s2p",
     [](const std::string& p) {
       Drenik({"export", "--s2p", p});
     }},
    {"out.csv",
     [](const std::string& p) {
       Drenik({"export", "--csv", p});
     }},
#if DRENIK_WITH_QT
    {"page.png",
     [](const std::string& p) {
       Drenik({"render", "--png", p, "--size", "400x300"});
     }},
    {"page.svg",
     [](const std::string& p) {
       Drenik({"render", "--svg", p});
     }},
    {"page.pdf",
     [](const std::string& p) {
       Drenik({"render", "--pdf", p});
     }},
#endif
    {kLastSessionFile,
     [](const std::string& p) {
       InProcess([&](Platform& platform) {
         DesignRecord d;
         SetLastSessionDefaults(d);
         WriteLastSession(d, platform, p);
       });
     }},
    {"Data.S21",
     [](const std::string& p) {
       InProcess([&](Platform& platform) {
         DesignRecord d;
         d.NrIntervals = 1000;
         SaveOverlay(d, platform, fs::path(p).parent_path().string());
       });
     }},
};

// Runs the row's writer in a child, under a file-size limit in bytes when
// one is given, with SIGXFSZ ignored so that a write past it fails as on a
// full disk. Returns the child's exit status.
int RunWriter(const Output& output, const std::string& path, rlim_t limit = RLIM_INFINITY) {
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit l{limit, limit};
    setrlimit(RLIMIT_FSIZE, &l);
    output.write(path);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Every entry of a folder: links by where they point, files by content.
std::map<std::string, std::string> Snapshot(const TempFolder& folder) {
  std::map<std::string, std::string> entries;
  for (const fs::directory_entry& e : fs::directory_iterator(folder.Path())) {
    entries[e.path().filename()] =
        e.is_symlink() ? "-> " + fs::read_symlink(e.path()).string() : ReadWhole(e.path());
  }
  return entries;
}

TEST(Reliability, AFailedWriteKeepsTheOldFileAndLeavesNothingBehind) {
  for (const Output& output : kOutputs) {
    SCOPED_TRACE(output.name);
    TempFolder folder;
    const std::string path = folder / output.name;
    WriteWhole(path, "the old file, which must survive\r\n");
    const auto before = Snapshot(folder);
    EXPECT_EQ(RunWriter(output, path, 16), 1);
    EXPECT_EQ(Snapshot(folder), before);
  }
}

TEST(Reliability, LinksAtTemporaryLookingNamesAreNeverFollowed) {
  for (const Output& output : kOutputs) {
    SCOPED_TRACE(output.name);
    TempFolder folder;
    const std::string path = folder / output.name;
    WriteWhole(path, "old");
    WriteWhole(folder / "victim", "victim");
    for (const char* tail : {".tmp", ".part", "~"}) fs::create_symlink("victim", path + tail);
    ASSERT_EQ(RunWriter(output, path), 0);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
    EXPECT_NE(ReadWhole(path), "old");
    EXPECT_TRUE(ReadWhole(folder / "victim") == "victim");
    std::error_code gone;
    for (const char* tail : {".tmp", ".part", "~"})
      EXPECT_EQ(fs::read_symlink(path + tail, gone), "victim") << tail;
  }
}

}  // namespace
}  // namespace drenik::testing
