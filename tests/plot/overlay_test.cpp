#include "plot/overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "plot/recording_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;

// 101 points from 1 MHz to 100 MHz.
DesignRecord Sweep() {
  DesignRecord d;
  d.Fstart = 1e6f;
  d.Fstop = 1e8f;
  d.NrIntervals = 100;
  for (int i = 0; i <= 100; ++i) {
    d.Freq[i] = static_cast<float>(1e6 * std::pow(10.0, i / 50.0));
    d.Transmission[i] = 0.0f - 0.5f * i;
    d.Reflection[i] = -20;
    d.VSWR[i] = 1.5f;
  }
  return d;
}

std::vector<DrawOp> Points(const RecordingCanvas& canvas) {
  std::vector<DrawOp> points;
  for (const DrawOp& op : canvas.Ops())
    if (op.kind == DrawOp::Kind::Point) points.push_back(op);
  return points;
}

TEST(Overlay, SaveThenGetDrawsEveryFile) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = Sweep();
  SaveOverlay(d, platform, folder.Path());
  const auto s21 = CrLfLines(folder / "Data.S21");
  ASSERT_EQ(s21.size(), 101u);
  EXPECT_EQ(s21[0], " 1000000  0 ");
  EXPECT_TRUE(s21[1].ends_with(" -.5 ")) << s21[1];
  EXPECT_EQ(CrLfLines(folder / "Data.S11").at(100), " 1E+08 -20 ");
  EXPECT_EQ(CrLfLines(folder / "Data.SWR").size(), 101u);

  d.Freq.fill(0);
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(d.FileName, "DATA.SWR");
  EXPECT_FLOAT_EQ(d.Freq[100], 1e8f);  // read back over the current sweep
  const std::vector<DrawOp> points = Points(canvas);
  ASSERT_EQ(points.size(), 303u);
  EXPECT_NEAR(points[50].x1, 5500, 0.01);  // -25 dB halfway across
  EXPECT_NEAR(points[50].y1, 4000 + 4000 * 25 / 70.0, 0.01);
  EXPECT_NEAR(points[108].y1, 4000 + 4000 * 20 / 70.0, 0.01);  // -20 dB return
  EXPECT_NEAR(points[202].y1, 4000 + 4000 * 0.9 / 1.4, 0.01);  // VSWR 1.5
  canvas.Line(0, 0, 1, 1);
  EXPECT_EQ(canvas.Ops().back().width, 1);  // the pen is restored
}

TEST(Overlay, FailuresAndAMissingFileStopTheChain) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = Sweep();
  testing::WriteWhole(folder / "plain", "x");
  SaveOverlay(d, platform, folder / "plain");  // the folder is a file
  // "Data.S11" cannot be written: the first file stays, the last is not made.
  d.NrIntervals = 10;
  std::filesystem::create_directory(folder / "Data.S11");
  SaveOverlay(d, platform, folder.Path());
  EXPECT_EQ(CrLfLines(folder / "Data.S21").size(), 11u);
  EXPECT_FALSE(std::filesystem::exists(folder / "Data.SWR"));
  ASSERT_EQ(platform.messages.size(), 2u);
  EXPECT_EQ(platform.messages[1].text, "We are unable to save an overlay file");

  std::filesystem::remove(folder / "Data.S11");
  platform.messages.clear();
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_EQ(Points(canvas).size(), 11u);  // only the transmission
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "File  is not available.");
  EXPECT_EQ(platform.messages[0].title, "File Test");
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::Exclamation);
  EXPECT_EQ(d.FileName, "DATA.S11");
}

TEST(Overlay, DrawClampsToTheFrame) {
  DesignRecord d = Sweep();
  d.Freq[0] = 5e5f;  // below Fstart
  d.Freq[1] = 0;     // no logarithm
  d.Freq[2] = 1e9f;  // above Fstop
  d.Overlay[0] = 3;  // above the top of 2.4
  d.Overlay[1] = 0.5f;
  d.Overlay[2] = 2.4f;
  RecordingCanvas canvas;
  DrawOverlay(d, canvas, 2, 2.4f, 1, 1);
  DrawOverlay(d, canvas, 2, 0, -70, 2);  // other modes draw nothing
  const std::vector<DrawOp> points = Points(canvas);
  ASSERT_EQ(points.size(), 3u);
  const float expected[3][2] = {{3000, 4000}, {3000, 8000}, {8000, 4000}};
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(points[i].x1 == expected[i][0] && points[i].y1 == expected[i][1]) << i;
}

// Names in any case; reading stops at the first pair that is not two
// numbers, and every point read is drawn.
TEST(Overlay, ShortAndDamagedFiles) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = Sweep();
  testing::WriteWhole(folder / "data.s21", " 1000000 -3 \r\n 2000000 abc\r\n 3000000 -4 \r\n");
  testing::WriteWhole(folder / "DATA.S11", "");
  testing::WriteWhole(folder / "Data.SWR", "1e6 1.2\n1e7 1.3 1e99 2");
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  const std::vector<DrawOp> points = Points(canvas);
  ASSERT_EQ(points.size(), 3u);
  EXPECT_NEAR(points[0].y1, 4000 + 4000 * 3 / 70.0, 0.01);
  EXPECT_NEAR(points[2].x1, 5500, 0.01);
}

}  // namespace
}  // namespace drenik
