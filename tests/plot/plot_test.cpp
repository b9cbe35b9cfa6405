// The main and side plots, legends, overlays and the recording canvas.

#include "plot/response_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "core/formatters.h"
#include "plot/legends.h"
#include "plot/overlay.h"
#include "plot/recording_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;

// 1001 log points from 0.84 to 21 MHz; the transmission falls far below the scale.
DesignRecord Swept() {
  DesignRecord d;
  d.Width = 4.2e6f, d.Fstart = 0.84e6f, d.Fstop = 21e6f, d.NrIntervals = 1000;
  d.TransmissionBottom = d.ReflectionBottom = -70, d.ValueMode = 1;
  for (int i = 0; i <= 1000; ++i) {
    double f = 0.84e6 * std::pow(25.0, i / 1000.0);
    d.Freq[i] = static_cast<float>(f);
    d.Transmission[i] = static_cast<float>(f < 4.2e6 ? -0.1 : -200 * std::log10(f / 4.2e6));
    d.Reflection[i] = f < 4.2e6 ? -25.f : -0.01f, d.VSWR[i] = static_cast<float>(1 + i / 200.0);
    d.Delay[i] = static_cast<float>(1e-7 * (1 + std::sin(i / 100.0)));
  }
  d.MaxDelay = 2e-7f;
  return d;
}

// Operations of one kind, in one colour unless color is -1.
std::vector<DrawOp> OpsOf(const RecordingCanvas& c, int32_t color,
                          DrawOp::Kind kind = DrawOp::Kind::Line) {
  std::vector<DrawOp> out;
  for (const DrawOp& op : c.Ops())
    if (op.kind == kind && (color == -1 || op.color == color)) out.push_back(op);
  return out;
}

TEST(GridFrequencies, DecadeStepsFromStartToJustPastStop) {
  DesignRecord d = Swept();
  BuildGridFrequencies(d);
  const float mhz[] = {0.9f, 1, 1.5f, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15, 20};
  ASSERT_EQ(d.GridCount, 13);
  for (int i = 0; i <= 13; ++i) EXPECT_NEAR(d.GridFrequency[i], mhz[i] * 1e6f, mhz[i]) << i;

  // A stop on a grid step keeps it; the list stops at 200; a stop below 1 mHz builds nothing.
  for (auto [start, stop, count] :
       {std::tuple{1e3f, 2e4f, 0}, {1e-3f, 1e30f, 200}, {1e-3f, 5e-4f, -1}}) {
    d.Fstart = start, d.Fstop = stop;
    BuildGridFrequencies(d);
    EXPECT_TRUE(count ? d.GridCount == count
                      : std::abs(d.GridFrequency[d.GridCount] - stop) <= 0.1f)
        << stop;
  }
}

// Grid rows, frequency labels, curves clamped to the frame, mode 2 over mode 1.
TEST(MainPlot, GridLabelsCurvesAndModes) {
  DesignRecord d = Swept();
  d.Divisions = 10;
  RecordingCanvas c;
  DrawMainPlot(d, c);
  std::vector<float> rows;
  for (const DrawOp& op : OpsOf(c, kGridColor))
    if (op.y1 == op.y2) rows.push_back(op.y1);
  ASSERT_EQ(rows.size(), 11u);
  for (int k = 0; k <= 10; ++k) EXPECT_EQ(rows[k], 4000.f + 399.f * k) << k;  // ..., 7990
  EXPECT_EQ(c.DrawWidth(), 1);

  // Frequency labels: no overlap, inside the axis past its first 4%, decades always present.
  std::vector<DrawOp> labels;
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Text && op.y1 > 8000) labels.push_back(op);
  ASSERT_GE(labels.size(), 5u);
  std::sort(labels.begin(), labels.end(),
            [](const DrawOp& a, const DrawOp& b) { return a.x1 < b.x1; });
  for (size_t i = 0; i < labels.size(); ++i) {
    EXPECT_LE(labels[i].x1 + labels[i].textWidth, 8000.01f);
    EXPECT_GE(labels[i].x1, 3000 + 0.04f * 5000 - labels[i].textWidth / 2 - 1);
    EXPECT_TRUE(i == 0 || labels[i].x1 > labels[i - 1].x1 + labels[i - 1].textWidth) << i;
  }
  for (double f : {1e6, 2e6, 5e6, 1e7, 2e7}) {
    std::string t = FormatFrequency(f);
    t = t.substr(1, t.find_last_not_of(' '));  // " 1MHz " -> "1MHz"
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](auto& op) { return op.text == t; }))
        << t;
  }

  auto black = OpsOf(c, 0);
  std::vector<DrawOp> curve;
  for (const DrawOp& op : black)
    if (op.width == 2 && !(op.x1 == op.x2 && std::abs(op.y2 - op.y1) >= 4000) &&
        !(op.y1 == op.y2 && std::abs(op.x2 - op.x1) >= 5000))
      curve.push_back(op);
  ASSERT_GE(curve.size(), 900u);
  // The first point is a zero-length line at the left edge, 0.1 dB down.
  EXPECT_TRUE(curve.front().x1 == 3000 && curve.front().x2 == 3000);
  EXPECT_NEAR(curve.front().y1, 4000 + 4000 * 0.1 / 70, 0.01);
  // Far below the scale the transmission runs along the bottom edge.
  EXPECT_FLOAT_EQ(curve.back().y2, 8000);
  EXPECT_NEAR(curve.back().x2, 8000, 0.5);
  for (const DrawOp& op : curve) EXPECT_LE(std::max(op.y1, op.y2), 8000);
  // A reflection of -0.01 dB lies at the top edge (within 1 unit).
  EXPECT_NEAR(OpsOf(c, 8947848).back().y2, 4000.6, 0.1);

  size_t blackCount = black.size();
  d.ValueMode = 2;
  for (int i = 0; i <= 1000; ++i) d.Transmission[i] -= 1;
  DrawMainPlot(d, c);
  EXPECT_EQ(OpsOf(c, 0).size(), blackCount);  // mode 2 clears nothing
  EXPECT_GE(OpsOf(c, 16711680).size(), 1000u);
  EXPECT_GE(OpsOf(c, 16746632).size(), 1000u);
  d.ValueMode = 1;  // starts over: the blue curves are gone
  DrawMainPlot(d, c);
  EXPECT_TRUE(OpsOf(c, 16711680).empty());
}

// Side plot curves are clamped to their frames; switching a plot off erases it.
TEST(SidePlots, ClampingAndSwitchingOff) {
  DesignRecord d = Swept();
  d.ShowVSWR = d.ShowDelay = 1, d.ValueMode = 2;
  RecordingCanvas c;
  DrawVswrPlot(d, c);
  DrawDelayPlot(d, c);
  auto blue = OpsOf(c, 16711680);
  ASSERT_GE(blue.size(), 2000u);
  for (const DrawOp& op : blue)
    EXPECT_TRUE((op.y1 >= kVswrTop && op.y1 <= kVswrBottom) ||
                (op.y1 >= kDelayTop && op.y1 <= kDelayBottom));
  // VSWR 1 sits on the bottom edge, anything from 3 on at the top edge.
  EXPECT_FLOAT_EQ(blue.front().y1, kVswrBottom);
  EXPECT_FLOAT_EQ(blue[999].y2, kVswrTop);
  EXPECT_TRUE(std::any_of(c.Ops().begin(), c.Ops().end(),  // delay scale top
                          [](const DrawOp& op) { return op.text == "200ns"; }));

  d.ShowVSWR = d.ShowDelay = 0;
  DrawVswrPlot(d, c);
  DrawDelayPlot(d, c);
  for (const DrawOp& op : c.Ops())
    EXPECT_TRUE(op.kind == DrawOp::Kind::Box || std::min(op.x1, op.x2) < 8500) << op.text;
}

TEST(Legends, StayAboveTheReadoutBoxAndEraseTheBandwidth) {
  DesignRecord d;
  d.Width = 4.2e6f;
  RecordingCanvas c;
  DrawDisplayLegends(d, c);
  for (const DrawOp& op : c.Ops()) {
    EXPECT_LT(op.y1 + op.fontSize * 23, 6000) << op.text;
    EXPECT_LE(op.x1 + op.textWidth, 2300) << op.text;
  }
  EXPECT_EQ(c.ForeColor(), kBlack);
  DrawBandwidthLabel(d, c, 11700);
  const DrawOp &box = c.Ops()[c.Ops().size() - 2], &text = c.Ops().back();
  EXPECT_EQ(box.x2, 11700);
  EXPECT_EQ(text.text, "Bandwidth: " + FormatFrequency(4.2e6));
  EXPECT_LE(text.x1 + text.textWidth, 11700);

  // A band design's label: one line over the legends and the plot, the
  // edges after the width on the same baseline, left of the VSWR plot's box.
  d.Topology = "Coupledbandpass", d.Center = 7.1484e6f, d.Width = 3e5f;
  RecordingCanvas band;
  DrawBandwidthLabel(d, band, 11700);
  const DrawOp &width = band.Ops()[band.Ops().size() - 2], &edges = band.Ops().back();
  EXPECT_EQ(width.text, "Bandwidth: " + FormatFrequency(3e5));
  EXPECT_EQ(edges.text, "f0 7.1484MHz, f1 7MHz, f2 7.3MHz");
  EXPECT_NEAR(width.y1 + 0.905f * width.fontSize * 20, edges.y1 + 0.905f * edges.fontSize * 20, 1);
  EXPECT_GT(edges.x1, width.x1 + width.textWidth);
  EXPECT_LT(edges.x1 + edges.textWidth, 8560);
  EXPECT_GT(width.y1, 3420);  // under the band ladder's lowest values
  // Letters end over those of the printout's 8-point axis labels from y = 3670.
  EXPECT_LT(edges.y1 + edges.fontSize * 20 * 1.05f, 3670 + 8 * 3);
}

// An opaque box drops what it hides wholly, so redrawing does not grow the display list.
TEST(RecordingCanvas, OpaqueBoxDropsHiddenOperations) {
  RecordingCanvas canvas;
  canvas.Line(3100, 4100, 7900, 7900);  // inside the plot
  canvas.Line(2900, 4100, 7900, 7900);  // sticks out on the left
  canvas.FilledBox(3000, 4000, 8000, 8000, kWhite);
  ASSERT_EQ(canvas.Ops().size(), 2u);
  EXPECT_TRUE(canvas.Ops()[0].x1 == 2900 && canvas.Ops()[1].kind == DrawOp::Kind::Box);
  for (int i = 0; i < 1000; ++i) {
    canvas.FilledBox(3000, 4000, 8000, 8000, kWhite);
    canvas.Line(3500, 4500, 7000, 7000);
  }
  EXPECT_LE(canvas.Ops().size(), 4u);
}

// 101 points from 1 MHz to 100 MHz.
DesignRecord OverlaySweep() {
  DesignRecord d;
  d.Fstart = 1e6f, d.Fstop = 1e8f, d.NrIntervals = 100;
  for (int i = 0; i <= 100; ++i) {
    d.Freq[i] = static_cast<float>(1e6 * std::pow(10.0, i / 50.0));
    d.Transmission[i] = -0.5f * i, d.Reflection[i] = -20, d.VSWR[i] = 1.5f;
  }
  return d;
}

TEST(Overlay, SaveThenGetDrawsEveryFile) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = OverlaySweep();
  SaveOverlay(d, platform, folder.Path());
  const auto s21 = CrLfLines(folder / "Data.S21");
  ASSERT_EQ(s21.size(), 101u);
  EXPECT_EQ(s21[0], " 1000000  0 ");
  EXPECT_EQ(CrLfLines(folder / "Data.S11").at(100), " 1E+08 -20 ");
  EXPECT_EQ(CrLfLines(folder / "Data.SWR").size(), 101u);

  d.Freq.fill(0);
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(d.FileName, "DATA.SWR");
  EXPECT_FLOAT_EQ(d.Freq[100], 1e8f);  // read back over the current sweep
  const std::vector<DrawOp> points = OpsOf(canvas, -1, DrawOp::Kind::Point);
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
  DesignRecord d = OverlaySweep();
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
  EXPECT_EQ(OpsOf(canvas, -1, DrawOp::Kind::Point).size(), 11u);  // only the transmission
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "File  is not available.");
  EXPECT_EQ(platform.messages[0].title, "File Test");
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::Exclamation);
  EXPECT_EQ(d.FileName, "DATA.S11");
}

TEST(Overlay, DrawClampsToTheFrame) {
  DesignRecord d = OverlaySweep();
  d.Freq[0] = 5e5f, d.Freq[1] = 0, d.Freq[2] = 1e9f;  // below Fstart, no logarithm, above Fstop
  d.Overlay[0] = 3, d.Overlay[1] = 0.5f, d.Overlay[2] = 2.4f;  // 3 is above the top of 2.4
  RecordingCanvas canvas;
  DrawOverlay(d, canvas, 2, 2.4f, 1, 1);
  DrawOverlay(d, canvas, 2, 0, -70, 2);  // other modes draw nothing
  const std::vector<DrawOp> points = OpsOf(canvas, -1, DrawOp::Kind::Point);
  ASSERT_EQ(points.size(), 3u);
  const float expected[3][2] = {{3000, 4000}, {3000, 8000}, {8000, 4000}};
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(points[i].x1 == expected[i][0] && points[i].y1 == expected[i][1]) << i;
}

// Names in any case; reading stops at the first pair that is not two numbers.
TEST(Overlay, ShortAndDamagedFiles) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = OverlaySweep();
  testing::WriteWhole(folder / "data.s21", " 1000000 -3 \r\n 2000000 abc\r\n 3000000 -4 \r\n");
  testing::WriteWhole(folder / "DATA.S11", "");
  testing::WriteWhole(folder / "Data.SWR", "1e6 1.2\n1e7 1.3 1e99 2");
  RecordingCanvas canvas;
  GetOverlay(d, canvas, platform, folder.Path());
  EXPECT_TRUE(platform.messages.empty());
  const std::vector<DrawOp> points = OpsOf(canvas, -1, DrawOp::Kind::Point);
  ASSERT_EQ(points.size(), 3u);
  EXPECT_NEAR(points[0].y1, 4000 + 4000 * 3 / 70.0, 0.01);
  EXPECT_NEAR(points[2].x1, 5500, 0.01);
}

}  // namespace
}  // namespace drenik
