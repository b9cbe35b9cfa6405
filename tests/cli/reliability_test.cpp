// Every file the program writes, written as a full disk or a size limit
// sees it, and next to links that wait at temporary-looking names. The old
// file must survive a failed write byte for byte, and no link is followed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <sstream>
#include <thread>
#include <tuple>

#include "cli/progress_line.h"
#include "core/last_session.h"
#include "plot/overlay.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

namespace fs = std::filesystem;

// One row per output: its file, and the drenik arguments that write it (the
// path follows them) or, for the files only the window writes, its writer.
// A new output of the program is one more row.
struct Output {
  const char* file;
  std::vector<std::string> args;
  void (*write)(const std::string& path, Platform& platform) = nullptr;
};

const Output kOutputs[] = {
    {"out.lct", {"export", "--lct"}},
    {"out.asc", {"export", "--asc"}},
    {"out.cir", {"export", "--cir"}},
    {"out.s2p", {"export", "--s2p"}},
    {"out.csv", {"export", "--csv"}},
    {"out.kicad_sch", {"export", "--kicad"}},
    {"parts.csv", {"parts", "--bom"}},
    {"step.csv", {"time", "--csv"}},
#if DRENIK_WITH_QT
    {"page.png", {"render", "--size", "400x300", "--png"}},
    {"page.svg", {"render", "--svg"}},
    {"page.pdf", {"render", "--pdf"}},
    {"smith.svg", {"render", "--smith"}},
    {"step.png", {"render", "--size", "400x300", "--step"}},
#endif
    {kLastSessionFile,
     {},
     [](const std::string& path, Platform& platform) {
       DesignRecord d;
       SetLastSessionDefaults(d);
       WriteLastSession(d, platform, path);
     }},
    {"Data.S21",
     {},
     [](const std::string& path, Platform& platform) {
       DesignRecord d;
       d.NrIntervals = 1000;
       SaveOverlay(d, platform, fs::path(path).parent_path());
     }},
};

// Writes the output in a child process, under a file-size limit in bytes,
// with SIGXFSZ ignored so that a write past the limit fails as on a full
// disk. The status is the program's, or 1 when a writer showed a message;
// what the child printed to stderr goes into `complaint`.
int Write(const Output& output, const std::string& path, rlim_t limit = RLIM_INFINITY,
          std::string* complaint = nullptr) {
  int pipe[2];
  if (::pipe(pipe) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    dup2(pipe[1], STDERR_FILENO);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit l{limit, limit};
    setrlimit(RLIMIT_FSIZE, &l);
    if (output.write) {
      RecordingPlatform platform;
      output.write(path, platform);
      _exit(platform.messages.empty() ? 0 : 1);
    }
    std::vector<std::string> args = output.args;
    args.insert(args.begin(), DRENIK_BINARY_DIR "/app/drenik");
    args.push_back(path);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  close(pipe[1]);
  char buffer[4096];
  for (ssize_t n; (n = read(pipe[0], buffer, sizeof buffer)) > 0;)
    if (complaint) complaint->append(buffer, static_cast<size_t>(n));
  close(pipe[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Runs drenik with `prepare` setting up standard output (and anything else)
// in the child; the status, or 128 + the signal that ended it, and what it
// said on standard error.
std::pair<int, std::string> Drenik(std::vector<std::string> args,
                                   const std::function<void()>& prepare) {
  int err[2];
  if (::pipe(err) != 0) return {-1, ""};
  const pid_t child = fork();
  if (child == 0) {
    dup2(err[1], STDERR_FILENO);
    prepare();
    args.insert(args.begin(), DRENIK_BINARY_DIR "/app/drenik");
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  close(err[1]);
  std::string said;
  char buffer[4096];
  for (ssize_t n; (n = read(err[0], buffer, sizeof buffer)) > 0;) said.append(buffer, size_t(n));
  close(err[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), said};
}

void StdoutTo(const std::string& path) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  dup2(fd, STDOUT_FILENO);
}

// Standard output is written straight into and checked to the end; a reader
// that went away ends the run quietly; every failure names the file and the
// system's reason, with control characters escaped; Qt's notes about a
// missing desktop stay off standard error.
TEST(Reliability, StandardOutputAndMessagesSayWhatHappened) {
  TempFolder folder;
  const std::string out = folder / "out.csv", bom = folder / "no/\x1b[2J.csv";
  using Case = std::tuple<std::vector<std::string>, std::function<void()>, int, std::string>;
  const Case cases[] = {
    {{"export", "--csv", "/dev/stdout"}, [&] { StdoutTo(out); }, 0, ""},
    {{"design", "--json"},
     [] { StdoutTo("/dev/full"); },
     1,
     "drenik: could not write standard output: No space left on device\n"},
    {{"design"},
     [] { close(STDOUT_FILENO); },
     1,
     "drenik: could not write standard output: Bad file descriptor\n"},
    {{"export", "--csv", "/dev/stdout"},
     [] { close(STDOUT_FILENO); },
     1,
     "drenik: could not write /dev/stdout: Bad file descriptor\n"},
    {{"design", "--json"},
     [] {
       int p[2];
       if (pipe(p) == 0) dup2(p[1], STDOUT_FILENO), close(p[0]);
       signal(SIGPIPE, SIG_IGN);
     },
     1,
     ""},
    {{"export", "--csv", "/dev/full"},
     [] {},
     1,
     "drenik: could not write /dev/full: No space left on device\n"},
    {{"parts", "--bom", bom},
     [] { StdoutTo("/dev/null"); },
     1,
     "drenik: could not write " + folder.Path() + "/no/\\x1b[2J.csv: No such file or directory\n"},
#if DRENIK_WITH_QT
    {{"render", "--size", "40x30", "--png", folder / "page.png"},
     [] { unsetenv("XDG_RUNTIME_DIR"); },
     0,
     ""},
#endif
  };
  for (const auto& [args, prepare, status, said] : cases) {
    SCOPED_TRACE(::testing::PrintToString(args));
    EXPECT_EQ(Drenik(args, prepare), std::make_pair(status, said));
  }
  EXPECT_EQ(CrLfLines(out).size(), 1002u);
}

// A long run on a terminal shows a progress line and clears it; --quiet
// shows nothing (as does every run above, whose standard error is a pipe).
// Long means well past the line's first half second: the sanitized program
// runs trials about thirty times slower than the optimised one.
#ifdef DRENIK_SANITIZED
constexpr const char* kLongRun = "2000";
#else
constexpr const char* kLongRun = "20000";
#endif
TEST(Reliability, ProgressLineOnATerminal) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
  const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY);
  fcntl(master, F_SETFL, O_NONBLOCK);
  for (const bool quiet : {false, true}) {
    std::vector<std::string> args = {"tolerance", "--family", "cauer", "--order",
                                     "7",         "--trials", kLongRun};
    if (quiet) args.push_back("--quiet");
    const auto [status, said] = Drenik(args, [&] {
      StdoutTo("/dev/null");
      dup2(terminal, STDERR_FILENO);
    });
    std::string shown;
    char buffer[4096];
    for (ssize_t n; (n = read(master, buffer, sizeof buffer)) > 0;) shown.append(buffer, size_t(n));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(!quiet, shown.find("trials/s") != std::string::npos && shown.ends_with("\r\x1b[K"))
        << shown;
    EXPECT_TRUE(!quiet || shown.empty());
  }
  close(terminal), close(master);
}

// The chooser's line counts no trials: it gives the share done and the time
// left, once the run has lasted long enough to need it. Its --quiet is its
// own and no other command's but tolerance's.
TEST(Reliability, ThePartsProgressLineGivesTheShareDone) {
  std::ostringstream err;
  {
    cli::ProgressLine line(err, true, "parts");
    line.Update(0.1);
    EXPECT_EQ(err.str(), "");  // a short run needs no sign of life
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    line.Update(0.5);
    EXPECT_TRUE(err.str().starts_with("\r\x1b[Kparts: 50% done, ") &&
                err.str().ends_with(" s left"))
        << err.str();
  }
  EXPECT_TRUE(err.str().ends_with("\r\x1b[K"));
  const auto quiet = [](const char* command) {
    return Drenik({command, "--quiet"}, [] { StdoutTo("/dev/null"); });
  };
  EXPECT_EQ(quiet("parts"), std::make_pair(0, std::string()));
  EXPECT_TRUE(
      quiet("design").second.starts_with("drenik: --quiet: only for 'tolerance' or 'parts'"));
}

TEST(Reliability, AFailedWriteKeepsTheOldFileAndLeavesNothingBehind) {
  for (const Output& output : kOutputs) {
    SCOPED_TRACE(output.file);
    TempFolder folder;
    const std::string path = folder / output.file;
    const std::string old = "the old file, which must survive\r\n";
    WriteWhole(path, old);
    std::string complaint;
    EXPECT_EQ(Write(output, path, 16, &complaint), 1);
    if (!output.write) {  // the command line says why in one last line (Qt may warn first)
      const size_t why = complaint.find("drenik: ");
      EXPECT_EQ(complaint.find('\n', why), complaint.size() - 1) << complaint;
    }
    EXPECT_TRUE(ReadWhole(path) == old);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
  }
}

TEST(Reliability, LinksAtTemporaryLookingNamesAreNeverFollowed) {
  for (const Output& output : kOutputs) {
    SCOPED_TRACE(output.file);
    TempFolder folder;
    const std::string path = folder / output.file;
    WriteWhole(path, "old");
    WriteWhole(folder / "victim", "victim");
    for (const char* tail : {".tmp", ".part", "~"}) fs::create_symlink("victim", path + tail);
    ASSERT_EQ(Write(output, path), 0);
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
