#include "pages/spice_page.h"

#include <gtest/gtest.h>

#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

TEST(SpicePage, TextsAndProposedNames) {
  DesignRecord d;
  testing::RecordingPlatform platform;
  SpicePage page(d, platform);
  EXPECT_EQ(page.Caption(), "Pallis - Write Spice schematic");
  EXPECT_EQ(page.Heading(), "Write an LTspice schematic file");
  EXPECT_EQ(page.Label1(), "Zelmar Software has no connection with LinearTechnology Corporation");
  EXPECT_EQ(page.DrawCaption() + page.ExitCaption(), "DrawCancel");
  page.cmdExit_Click();
  EXPECT_FALSE(page.Visible());
  EXPECT_TRUE(platform.dialogs.empty());
  EXPECT_EQ(SpicePage::ProposedName(""), "Default.ASC");
  EXPECT_EQ(SpicePage::ProposedName("/home/u/filter.LCT"), "/home/u/filter.ASC");
  EXPECT_EQ(SpicePage::ProposedName("ab"), ".ASC");
}

TEST(SpicePage, DrawAsksWritesAndKeepsThePath) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d;
  d.Qind = 1e6f;
  d.SchematicWidth = 10;
  d.FileName = folder / "x.LCT";
  SpicePage page(d, platform);
  page.cmdDraw_Click();  // cancelled
  ASSERT_EQ(platform.dialogs.size(), 1u);
  EXPECT_EQ(platform.dialogs[0].title, "Pallis - write Spice schematic");
  EXPECT_EQ(platform.dialogs[0].filter, "LTspice files (*.ASC) | *.ASC");
  EXPECT_EQ(platform.dialogs[0].proposedName, folder / "x.ASC");
  EXPECT_EQ(d.SchematicWidth, 800);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "We could not write the LTspice file");

  platform.dialogAnswer = folder / "y.ASC";
  page.cmdDraw_Click();
  EXPECT_EQ(platform.dialogs[1].proposedName, "Default.ASC");  // the cancel emptied the name
  EXPECT_EQ(d.FileName, folder / "y.ASC");
  EXPECT_EQ(testing::CrLfLines(d.FileName).at(0), "Version 4");
  EXPECT_EQ(platform.messages.size(), 1u);
}

}  // namespace
}  // namespace drenik
