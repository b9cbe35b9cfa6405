// The display page's export buttons: overlay files on the page's own
// drawing, the save dialogs of the netlist, Touchstone and CSV files, and the
// LTspice page and printing through the host.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "app_fixture.h"
#include "plot/overlay.h"

namespace drenik::testing {
namespace {

class DisplayExportsTest : public AppTest {
 protected:
  DisplayPage& OpenDisplay() {
    StartDesign();
    Design().Button("cmdDesign").Click();
    return Display();
  }
  long MagentaPoints() {
    const auto& ops = App().DisplayCanvas().Ops();
    return std::count_if(ops.begin(), ops.end(), [](const DrawOp& op) {
      return op.kind == DrawOp::Kind::Point && op.color == kOverlayColor;
    });
  }
};

TEST_F(DisplayExportsTest, SavedOverlayIsDrawnOverThePageUntilAFileIsMissing) {
  DisplayPage& page = OpenDisplay();
  std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder_);
  page.OnSaveOverlay();
  page.OnGetOverlay();
  long all = MagentaPoints();
  std::filesystem::remove(folder_ / "Data.S11");
  page.OnGetOverlay();
  long onlyS21 = MagentaPoints() - all;
  std::filesystem::current_path(previous);

  EXPECT_EQ(all, 3 * 1001);
  EXPECT_EQ(onlyS21, 1001);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "File  is not available.");
  EXPECT_EQ(platform.messages[0].title, "File Test");
}

TEST_F(DisplayExportsTest, ExportDialogsProposeANameAndACancelWritesAndSaysNothing) {
  DisplayPage& page = OpenDisplay();
  page.OnExportNetlist();
  page.OnExportTouchstone();
  page.OnExportCsv();
  ASSERT_EQ(platform.dialogs.size(), 3u);
  EXPECT_EQ(platform.dialogs[0].filter, "SPICE netlist (*.cir)|*.cir");
  EXPECT_EQ(platform.dialogs[0].proposedName, "Default.cir");
  EXPECT_EQ(platform.dialogs[1].proposedName, "Default.s2p");
  EXPECT_EQ(platform.dialogs[2].proposedName, "Default.csv");
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_TRUE(D().FileName.empty());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 0);

  D().FileName = (folder_ / "ladder.LCT").string();
  platform.dialogAnswer = (folder_ / "ladder.s2p").string();
  page.OnExportTouchstone();
  EXPECT_EQ(platform.dialogs[3].proposedName, platform.dialogAnswer);
  EXPECT_TRUE(std::filesystem::file_size(platform.dialogAnswer) > 0);
  EXPECT_TRUE(platform.messages.empty());
}

TEST_F(DisplayExportsTest, LtspicePageAndPrintingGoThroughTheApplication) {
  DisplayPage& page = OpenDisplay();
  SpicePage* shown = nullptr;
  App().SetSpiceObserver([&](SpicePage& spice) { shown = &spice; });
  page.OnSpice();
  ASSERT_NE(shown, nullptr);
  EXPECT_EQ(shown, App().Spice());
  EXPECT_TRUE(shown->Visible());

  page.OnPrint();
  ASSERT_EQ(platform.messages.size(), 1u);
  int prints = 0;
  App().SetPrintService([&] { ++prints; });
  page.OnPrint();
  EXPECT_EQ(prints, 1);
  EXPECT_EQ(platform.messages.size(), 1u);
}

}  // namespace
}  // namespace drenik::testing
