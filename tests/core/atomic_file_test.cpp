#include "core/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

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

// A link at the target's name is replaced, not written through; a device,
// also behind a link, is written straight into and a full one reported; a
// folder is refused.
TEST(AtomicFile, LinksDevicesAndFolders) {
  testing::TempFolder folder;
  testing::WriteWhole(folder / "elsewhere", "kept");
  fs::create_symlink("elsewhere", folder / "link");
  fs::create_symlink("/dev/full", folder / "full.svg");
  std::string error;
  ASSERT_TRUE(WriteWholeFile(folder / "link", "new", &error)) << error;
  EXPECT_EQ(ReadWhole(folder / "link") + ReadWhole(folder / "elsewhere"), "newkept");
  EXPECT_TRUE(WriteWholeFile("/dev/null", "anything", &error)) << error;
  EXPECT_FALSE(WriteWholeFile(folder / "full.svg", std::string(200000, 'x'), &error));
  EXPECT_EQ(error, "No space left on device");
  EXPECT_FALSE(WriteWholeFile(folder.Path(), "x", &error) || WriteWholeFile("", "x", &error));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 3);
}

}  // namespace
}  // namespace drenik
