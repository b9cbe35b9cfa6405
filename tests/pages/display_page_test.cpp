#include "pages/display_page.h"

#include <gtest/gtest.h>

#include <cmath>

#include "app_fixture.h"
#include "core/formatters.h"

namespace drenik::testing {
namespace {

class DisplayPageTest : public AppTest {
 protected:
  // Design page with its defaults, then "Display responses".
  DisplayPage& OpenDisplay() {
    StartDesign();
    Display().SetAnalysisObserver([this](int mode) { modes.push_back(mode); });
    Design().Button("cmdDesign").Click();
    return Display();
  }
  const RecordingCanvas& Page() { return App().DisplayCanvas(); }
  std::vector<int> modes;
};

TEST_F(DisplayPageTest, LoadSetsTheSweepAndDrawsExactThenStandardValues) {
  DisplayPage& page = OpenDisplay();
  EXPECT_EQ(App().CurrentPage(), PageId::Display);
  EXPECT_EQ(page.Caption(), "Drenik Filter Designer - Display");
  float w = D().Width;
  EXPECT_EQ(D().Fstart, static_cast<float>(static_cast<double>(w) * 0.2));
  EXPECT_EQ(D().Fstop, static_cast<float>(static_cast<double>(w) * 5));
  EXPECT_EQ(D().NrIntervals, 1000);
  EXPECT_EQ(D().InductorMode, 0);
  EXPECT_EQ(D().TransmissionBottom, -70.0f);
  EXPECT_EQ(D().ReflectionBottom, -70.0f);
  EXPECT_EQ(D().Divisions, 7);
  EXPECT_EQ(modes, (std::vector<int>{1, 2}));
  EXPECT_EQ(D().ValueMode, 2);

  const RecordingCanvas& c = Page();
  EXPECT_NE(TextAt(c, "Bandwidth: " + FormatFrequency(w), 9000, 2700), nullptr);
  EXPECT_NE(TextAt(c, "Cursor on plot", 500, 6100), nullptr);
  EXPECT_NE(TextAt(c, "for data readout", 500, 6300), nullptr);
  int legends = 0;
  for (const DrawOp& op : c.Ops()) {
    if (op.kind != DrawOp::Kind::Text) continue;
    if (op.text == "Transmission, dB:" || op.text == "Reflection, dB:") ++legends;
    if (op.text == "Exact values" || op.text == "5% C values" || op.text == "5% L values") {
      ++legends;
    }
  }
  EXPECT_EQ(legends, 8);
  EXPECT_EQ(c.ForeColor(), kBlack);
}

// 1.01 and 0.99 are not reciprocal: a round trip loses 0.01%.
TEST_F(DisplayPageTest, UpThenDownLeavesPointNineNineNineNineOfTheWidth) {
  DisplayPage& page = OpenDisplay();
  float start = D().Width;
  modes.clear();
  page.OnUp();
  float up = D().Width;
  EXPECT_EQ(up, static_cast<float>(static_cast<double>(start) * 1.01));
  EXPECT_EQ(modes, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(D().InductorMode, 1);
  page.OnDown();
  EXPECT_EQ(D().Width, static_cast<float>(static_cast<double>(up) * 0.99));
  EXPECT_NEAR(D().Width / start, 0.9999, 1e-6);
  EXPECT_NE(D().Width, start);
  EXPECT_EQ(D().ValueMode, 3);
  EXPECT_NE(TextAt(Page(), "Bandwidth: " + FormatFrequency(D().Width), 9000, 2700), nullptr);

  bool upBox = false, downBox = false;
  for (const DrawOp& op : Page().Ops()) {
    if (op.kind != DrawOp::Kind::Box || op.x1 != 9000 || op.y1 != 2700 || op.y2 != 3300) continue;
    upBox |= op.x2 == 11770;
    downBox |= op.x2 == 11700;
  }
  EXPECT_TRUE(upBox);
  EXPECT_TRUE(downBox);
}

TEST_F(DisplayPageTest, InductorToggleShowsFivePercentLThenGoesBack) {
  DisplayPage& page = OpenDisplay();
  modes.clear();
  page.OnInductors();
  EXPECT_EQ(D().InductorMode, 1);
  EXPECT_EQ(modes, std::vector<int>{3});
  const DrawOp* upper = TextAt(Page(), "5% L values", 800, 4500);
  const DrawOp* lower = TextAt(Page(), "5% L values", 800, 5600);
  ASSERT_NE(upper, nullptr);
  ASSERT_NE(lower, nullptr);
  EXPECT_EQ(Page().Ops().back().color, 8947967);
  EXPECT_EQ(Page().ForeColor(), kBlack);

  modes.clear();
  page.OnInductors();
  EXPECT_EQ(D().InductorMode, 0);
  EXPECT_EQ(modes, (std::vector<int>{1, 2}));
}

TEST_F(DisplayPageTest, VswrAndTimeToggleAndRedrawExactAndStandardCurves) {
  DisplayPage& page = OpenDisplay();
  modes.clear();
  page.OnVswr();
  EXPECT_EQ(D().ShowVSWR, 1);
  page.OnVswr();
  EXPECT_EQ(D().ShowVSWR, 0);
  page.OnTime();
  EXPECT_EQ(D().ShowDelay, 1);
  EXPECT_EQ(D().ShowVSWR, 0);
  EXPECT_EQ(modes, (std::vector<int>{1, 2, 1, 2, 1, 2}));
}

class ReadoutTest : public ::testing::Test {
 protected:
  ReadoutTest() {
    d.NrIntervals = 1000;
    for (int i = 0; i <= 1000; ++i) {
      d.Freq[i] = 1e6f + 1000.0f * static_cast<float>(i);
      d.VSWR[i] = 1.5f;
    }
  }
  DesignRecord d;
};

TEST_F(ReadoutTest, OnlyStrictlyInsideThePlotReadsValues) {
  EXPECT_FALSE(ComputeReadout(d, 3000, 6000).onPlot);
  EXPECT_FALSE(ComputeReadout(d, 5000, 4000).onPlot);
  EXPECT_FALSE(ComputeReadout(d, 8000, 6000).onPlot);
  EXPECT_FALSE(ComputeReadout(d, 5000, 8000).onPlot);
  EXPECT_TRUE(ComputeReadout(d, 3000.5f, 4000.5f).onPlot);
  EXPECT_EQ(ComputeReadout(d, 3000.5f, 6000).index, 0);
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).index, 500);  // 0.5 * 1001 = 500.5
  EXPECT_EQ(ComputeReadout(d, 7999.99f, 6000).index, 1000);
}

TEST_F(ReadoutTest, TextsCarryTheirSignsUnitsAndTheVswrLimit) {
  d.Transmission[500] = -0.2f;
  d.Reflection[500] = -23.5f;
  d.VSWR[500] = 3.7f;
  d.Delay[500] = -1.5e-7f;
  DataReadout r = ComputeReadout(d, 5500, 6000);
  std::string f = FormatFrequency(d.Freq[500]);
  f.erase(0, f.find_first_not_of(' '));
  f.erase(f.find_last_not_of(' ') + 1);
  EXPECT_EQ(r.frequency, f + "Hz");
  EXPECT_EQ(r.transmission, "-" + std::string("0.2") + "dB");
  EXPECT_EQ(r.reflection, "-23.5dB:");
  EXPECT_EQ(r.vswr, ">" + FormatValue(2.4f) + ":1");
  EXPECT_EQ(r.delay, FormatPrefixed(1.5e-7f) + "s");

  d.VSWR[500] = 2.4f;  // exactly the limit reads as "more than"
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).vswr, ">" + FormatValue(2.4f) + ":1");
  d.VSWR[500] = 1.5f;
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).vswr, FormatValue(1.5f) + ":1");
  d.Transmission[500] = 0.2f;  // a gain would read as a loss as well
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).transmission, "-0.2dB");
}

TEST_F(DisplayPageTest, MouseMovePrintsTheReadoutOverAnErasedBox) {
  DisplayPage& page = OpenDisplay();
  page.OnMouseMove(5500, 6000);
  DataReadout r = ComputeReadout(D(), 5500, 6000);
  EXPECT_NE(TextAt(Page(), "Frequency:", 500, 6000), nullptr);
  EXPECT_NE(TextAt(Page(), r.frequency, 800, 6200), nullptr);
  EXPECT_NE(TextAt(Page(), r.vswr, 800, 7700), nullptr);
  EXPECT_NE(TextAt(Page(), "Env. Delay:", 500, 8000), nullptr);
  EXPECT_EQ(TextAt(Page(), "Cursor on plot", 500, 6100), nullptr);

  page.OnMouseMove(3000, 6000);  // on the edge: off the plot
  EXPECT_NE(TextAt(Page(), "Cursor on plot", 500, 6100), nullptr);
  EXPECT_EQ(TextAt(Page(), "Frequency:", 500, 6000), nullptr);
}

TEST_F(DisplayPageTest, ChangeDesignReloadsTheDesignPageAndExitSaves) {
  DisplayPage& page = OpenDisplay();
  page.OnUp();
  float width = D().Width;
  page.Controls().FindButton("cmdDesign")->Click();
  EXPECT_EQ(App().CurrentPage(), PageId::Design);
  EXPECT_EQ(Design().Box("txtBandwidth").Text(), FormatFrequency(width));
  Design().Button("cmdDesign").Click();
  Display().OnExit();
  EXPECT_TRUE(platform.ended);
  EXPECT_NE(ReadSession().find("\"Cinlowpass\""), std::string::npos);
}

TEST_F(DisplayPageTest, PallisExportAsksForAFileAndReportsACancel) {
  DisplayPage& page = OpenDisplay();
  page.OnWritePallis();
  ASSERT_EQ(platform.dialogs.size(), 1u);
  EXPECT_EQ(platform.dialogs[0].title, "Save Pallis file");
  EXPECT_EQ(platform.dialogs[0].filter, "Pallis files (*.LCT)|*.LCT");
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "We did not write an Pallis file.");

  platform.dialogAnswer = (folder_ / "a.LCT").string();
  page.OnWritePallis();
  EXPECT_EQ(D().FileName, platform.dialogAnswer);
}

}  // namespace
}  // namespace drenik::testing
