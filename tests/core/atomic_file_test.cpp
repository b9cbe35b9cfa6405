#include "core/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/temp_folder.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;
using testing::ReadWhole;
using testing::WriteWhole;

size_t Entries(const testing::TempFolder& folder) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(folder.Path()), {}));
}

// Replacing: the old content stays until Commit(), an abandoned write leaves
// nothing, the file keeps its permissions, and two writers of one target at
// once each put their whole file there in turn.
TEST(AtomicFile, ReplacesWholeOrNotAtAll) {
  testing::TempFolder folder;
  const std::string path = folder / "a.txt";
  WriteWhole(path, "old");
  chmod(path.c_str(), 0640);
  {
    AtomicFile abandoned(path);
    abandoned.Line("half");
    ASSERT_TRUE(abandoned.IsOpen());
    EXPECT_EQ(Entries(folder), 2u);  // the target and the temporary file
  }
  EXPECT_EQ(ReadWhole(path), "old");
  EXPECT_EQ(Entries(folder), 1u);

  AtomicFile first(path), second(path);
  first.Line("first");
  second.Stream() << "second " << 2;
  second.Line("");
  EXPECT_EQ(ReadWhole(path), "old");
  ASSERT_TRUE(second.Commit());
  EXPECT_EQ(ReadWhole(path), "second 2\r\n");
  ASSERT_TRUE(first.Commit());
  EXPECT_EQ(ReadWhole(path), "first\r\n");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(Entries(folder), 1u);
  EXPECT_FALSE(first.Commit());  // once only
}

// A link at the target's name is replaced, not written through; a device is
// written straight into and its errors reported; a folder is refused.
TEST(AtomicFile, LinksDevicesAndFolders) {
  testing::TempFolder folder;
  WriteWhole(folder / "elsewhere", "kept");
  fs::create_symlink("elsewhere", folder / "link");
  std::string error;
  ASSERT_TRUE(WriteWholeFile(folder / "link", "new", &error)) << error;
  EXPECT_FALSE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(ReadWhole(folder / "link") + ReadWhole(folder / "elsewhere"), "newkept");

  EXPECT_TRUE(WriteWholeFile("/dev/null", "anything", &error)) << error;
  fs::create_symlink("/dev/full", folder / "full.svg");
  const std::string big(200000, 'x');  // more than one buffer
  for (const std::string& full : {std::string("/dev/full"), folder / "full.svg"}) {
    EXPECT_FALSE(WriteWholeFile(full, big, &error));
    EXPECT_EQ(error, "No space left on device");
  }
  EXPECT_TRUE(fs::is_symlink(folder / "full.svg"));

  fs::create_directory(folder / "dir");
  EXPECT_FALSE(WriteWholeFile(folder / "dir", "x", &error));
  EXPECT_FALSE(WriteWholeFile(folder / "missing/a.txt", "x", &error));
  EXPECT_FALSE(WriteWholeFile("", "x", &error));
  EXPECT_EQ(Entries(folder), 4u);  // nothing left behind
}

}  // namespace
}  // namespace drenik
