// Failures of the writers that replace a file only when the new one is
// complete: each shows its own message, leaves an old file as it was and
// leaves no part file behind.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

TEST(WriterFailures, MessageAndTheOldFileKept) {
  using Writer = std::function<bool(DesignRecord&, const std::string&, Platform&)>;
  struct Case {
    Writer write;
    std::string message;
    std::function<void(DesignRecord&)> spoil;  // makes the content fail
  };
  const Case cases[] = {
      {WriteLtspiceFile, "We could not write the LTspice file",
       [](DesignRecord& d) { d.Stages = 25; }},
      {WriteTouchstone, "We could not write the Touchstone file",
       [](DesignRecord& d) { d.Rload = 0; }},
      {WriteSweepCsv, "We could not write the CSV file",
       [](DesignRecord& d) { d.NrIntervals = 3000; }},
  };
  for (const Case& c : cases) {
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    DesignRecord d;
    d.Rsource = d.Rload = 50;
    d.Qind = 1e6f;
    d.NrIntervals = 10;
    EXPECT_FALSE(c.write(d, "", platform));  // a cancelled dialog
    testing::WriteWhole(folder / "plain", "x");
    EXPECT_FALSE(c.write(d, folder / "plain/a", platform));  // the folder is a file
    std::filesystem::create_directory(folder / "dir");
    EXPECT_FALSE(c.write(d, folder / "dir", platform));  // a folder at the path
    testing::WriteWhole(folder / "old", "old");
    c.spoil(d);
    EXPECT_FALSE(c.write(d, folder / "old", platform));
    EXPECT_EQ(testing::ReadWhole(folder / "old"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 3);
    ASSERT_EQ(platform.messages.size(), 4u);
    for (const auto& m : platform.messages) EXPECT_EQ(m.text, c.message);
  }
}

}  // namespace
}  // namespace drenik
