#include "plot/overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "plot/recording_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;
using testing::RecordingPlatform;
using testing::TempFolder;

// A sweep of 101 points from 1 MHz to 100 MHz.
DesignRecord Sweep() {
  DesignRecord d;
  d.Fstart = 1e6f;
  d.Fstop = 1e8f;
  d.NrIntervals = 100;
  for (int i = 0; i <= 100; ++i) {
    d.Freq[i] = static_cast<float>(1e6 * std::pow(10.0, i / 50.0));
    d.Transmission[i] = 0.0f - 0.5f * i;  // +0 at the first point
    d.Reflection[i] = -20;
    d.VSWR[i] = 1.5f;
  }
  return d;
}

std::vector<DrawOp> Points(const RecordingCanvas& canvas) {
  std::vector<DrawOp> points;
  for (const DrawOp& op : canvas.Ops()) {
    if (op.kind == DrawOp::Kind::Point) points.push_back(op);
  }
  return points;
}

TEST(Overlay, SaveWritesThreeFilesOfAllPoints) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Sweep();
  SaveOverlay(d, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  const auto s21 = CrLfLines(folder / "Data.S21");
  const auto s11 = CrLfLines(folder / "Data.S11");
  const auto swr = CrLfLines(folder / "Data.SWR");
  ASSERT_EQ(s21.size(), 101u);
  ASSERT_EQ(s11.size(), 101u);
  ASSERT_EQ(swr.size(), 101u);
  EXPECT_EQ(s21[0], " 1000000  0 ");
  EXPECT_TRUE(s21[1].ends_with(" -.5 ")) << s21[1];
  EXPECT_EQ(s11[0], " 1000000 -20 ");
  EXPECT_EQ(swr[0], " 1000000  1.5 ");
}

TEST(Overlay, SaveFailures) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Sweep();
  testing::WriteWhole(folder / "plain", "x");
  SaveOverlay(d, platform, folder / "plain");  // the folder is a file
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "We are unable to save an overlay file");

  // A sweep beyond the arrays writes nothing and says so once.
  d.NrIntervals = 2001;
  SaveOverlay(d, platform, folder.Path());
  EXPECT_EQ(platform.messages.size(), 2u);
  EXPECT_FALSE(std::filesystem::exists(folder / "Data.S21"));

  // "Data.S11" cannot be written: the first file stays, the last is not made.
  d.NrIntervals = 10;
  std::filesystem::create_directory(folder / "Data.S11");
  SaveOverlay(d, platform, folder.Path());
  EXPECT_EQ(platform.messages.size(), 3u);
  EXPECT_EQ(CrLfLines(folder / "Data.S21").size(), 11u);
  EXPECT_FALSE(std::filesystem::exists(folder / "Data.SWR"));
}

TEST(Overlay, GetReadsAndDrawsEveryFile) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Sweep();
  SaveOverlay(d, platform, folder.Path());
  d.Freq.fill(0);
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(d.FileName, "DATA.SWR");
  EXPECT_FLOAT_EQ(d.Freq[100], 1e8f);     // read back over the current sweep
  EXPECT_FLOAT_EQ(d.Overlay[100], 1.5f);  // the last file read

  const std::vector<DrawOp> points = Points(canvas);
  ASSERT_EQ(points.size(), 303u);
  for (const DrawOp& p : points) {
    EXPECT_EQ(p.color, 0xCC11CC);
    EXPECT_EQ(p.width, 2);
  }
  // Transmission: 0 dB at the top left, -25 dB halfway across.
  EXPECT_FLOAT_EQ(points[0].x1, 3000);
  EXPECT_FLOAT_EQ(points[0].y1, 4000);
  EXPECT_NEAR(points[50].x1, 5500, 0.01);
  EXPECT_NEAR(points[50].y1, 4000 + 4000 * 25 / 70.0, 0.01);
  EXPECT_FLOAT_EQ(points[100].x1, 8000);
  EXPECT_NEAR(points[101 + 7].y1, 4000 + 4000 * 20 / 70.0, 0.01);  // -20 dB return
  EXPECT_NEAR(points[202].y1, 4000 + 4000 * 0.9 / 1.4, 0.01);      // VSWR 1.5
  canvas.Line(0, 0, 1, 1);
  EXPECT_EQ(canvas.Ops().back().width, 1);
}

TEST(Overlay, DrawClampsToTheFrame) {
  DesignRecord d = Sweep();
  d.Freq[0] = 5e5f;  // below Fstart
  d.Freq[1] = 0;     // no logarithm
  d.Freq[2] = 1e9f;  // above Fstop
  d.Overlay[0] = 3;  // VSWR above the top of 2.4
  d.Overlay[1] = 0.5f;
  d.Overlay[2] = 2.4f;
  RecordingCanvas canvas;
  DrawOverlay(d, canvas, 2, 2.4f, 1, 1);
  std::vector<DrawOp> points = Points(canvas);
  ASSERT_EQ(points.size(), 3u);
  EXPECT_FLOAT_EQ(points[0].x1, 3000);
  EXPECT_FLOAT_EQ(points[0].y1, 4000);
  EXPECT_FLOAT_EQ(points[1].x1, 3000);
  EXPECT_FLOAT_EQ(points[1].y1, 8000);
  EXPECT_FLOAT_EQ(points[2].x1, 8000);
  EXPECT_FLOAT_EQ(points[2].y1, 4000);

  d.Overlay[0] = -80;
  DrawOverlay(d, canvas, 0, 0, -70, 0);
  EXPECT_FLOAT_EQ(Points(canvas).back().y1, 8000);

  RecordingCanvas other;
  DrawOverlay(d, other, 2, 0, -70, 2);  // other modes draw nothing
  EXPECT_TRUE(Points(other).empty());
}

TEST(Overlay, MissingFileStopsTheChain) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Sweep();
  SaveOverlay(d, platform, folder.Path());
  std::filesystem::remove(folder / "Data.S11");
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_EQ(Points(canvas).size(), 101u);  // only the transmission
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "File  is not available.");
  EXPECT_EQ(platform.messages[0].title, "File Test");
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::Exclamation);
  EXPECT_EQ(d.FileName, "DATA.S11");
}

// Short files, files in other cases and garbage: every point read is drawn,
// reading stops at the first pair that is not two numbers.
TEST(Overlay, ShortAndDamagedFiles) {
  TempFolder folder;
  RecordingPlatform platform;
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
