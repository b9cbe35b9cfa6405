#include "plot/response_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "plot/recording_canvas.h"

namespace drenik {
namespace {

// A record with a log sweep of 1001 points from 0.84 to 21 MHz and a
// transmission that falls from 0 dB to far below the scale.
DesignRecord Swept() {
  DesignRecord d;
  d.Width = 4.2e6f;
  d.Fstart = 0.84e6f;
  d.Fstop = 21e6f;
  d.NrIntervals = 1000;
  d.TransmissionBottom = -70;
  d.ReflectionBottom = -70;
  d.ValueMode = 1;
  for (int i = 0; i <= 1000; ++i) {
    double f = 0.84e6 * std::pow(25.0, i / 1000.0);
    d.Freq[i] = static_cast<float>(f);
    d.Transmission[i] = static_cast<float>(f < 4.2e6 ? -0.1 : -200 * std::log10(f / 4.2e6));
    d.Reflection[i] = static_cast<float>(f < 4.2e6 ? -25 : -0.01);
    d.VSWR[i] = static_cast<float>(1 + i / 200.0);
    d.Delay[i] = static_cast<float>(1e-7 * (1 + std::sin(i / 100.0)));
  }
  d.MaxDelay = 2e-7f;
  return d;
}

std::vector<DrawOp> LinesIn(const RecordingCanvas& c, int32_t color) {
  std::vector<DrawOp> out;
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Line && op.color == color) out.push_back(op);
  return out;
}

TEST(GridFrequencies, DecadeStepsFromStartToJustPastStop) {
  DesignRecord d = Swept();
  BuildGridFrequencies(d);
  std::vector<float> expected;
  for (float m : {0.9f, 1.f, 1.5f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 15.f, 20.f})
    expected.push_back(m * 1e6f);
  ASSERT_EQ(d.GridCount, static_cast<int>(expected.size()) - 1);
  for (size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(d.GridFrequency[i], expected[i], expected[i] * 1e-6) << i;

  // A stop frequency on a grid step keeps it (1.0001 margin); the list never
  // passes index 200; a stop below 1 mHz builds nothing.
  d.Fstart = 1e3f;
  d.Fstop = 2e4f;
  BuildGridFrequencies(d);
  EXPECT_NEAR(d.GridFrequency[d.GridCount], 2e4f, 0.1f);
  d.Fstart = 0.001f;
  d.Fstop = 1e30f;
  BuildGridFrequencies(d);
  EXPECT_EQ(d.GridCount, 200);
  d.Fstop = 0.0005f;
  BuildGridFrequencies(d);
  EXPECT_EQ(d.GridCount, -1);
}

TEST(MainPlot, FrameGridAndScaleLabels) {
  DesignRecord d = Swept();
  d.Divisions = 10;
  RecordingCanvas c;
  DrawMainPlot(d, c);
  std::vector<float> rows;
  for (const DrawOp& op : LinesIn(c, kGridColor))
    if (op.y1 == op.y2) rows.push_back(op.y1);
  std::vector<float> expected;
  for (int k = 0; k <= 10; ++k) expected.push_back(4000.f + 399.f * static_cast<float>(k));
  EXPECT_EQ(rows, expected);  // 4000, 4399, ..., 7990

  // Scale labels end at 2800, tops at int(k / N * 4000) + 3900.
  d.Divisions = 7;
  RecordingCanvas c7;
  DrawMainPlot(d, c7);
  std::vector<float> tops;
  for (const DrawOp& op : c7.Ops())
    if (op.kind == DrawOp::Kind::Text && op.x1 < 2800) {
      EXPECT_NEAR(op.x1 + op.textWidth, 2800, 0.01) << op.text;
      tops.push_back(op.y1);
    }
  EXPECT_EQ(tops, (std::vector<float>{3900, 4471, 5042, 5614, 6185, 6757, 7328, 7900}));

  EXPECT_EQ(c7.DrawWidth(), 1);
}

TEST(MainPlot, CurvesAreClampedAndLaterModesDrawOver) {
  DesignRecord d = Swept();
  RecordingCanvas c;
  DrawMainPlot(d, c);
  auto black = LinesIn(c, 0);
  std::vector<DrawOp> curve;
  for (const DrawOp& op : black)
    if (op.width == 2 && !(op.x1 == op.x2 && std::abs(op.y2 - op.y1) >= 4000) &&
        !(op.y1 == op.y2 && std::abs(op.x2 - op.x1) >= 5000))
      curve.push_back(op);
  ASSERT_GE(curve.size(), 900u);
  // The first point is a zero-length line at the left edge, 0.1 dB down.
  EXPECT_FLOAT_EQ(curve.front().x1, curve.front().x2);
  EXPECT_FLOAT_EQ(curve.front().x1, 3000);
  EXPECT_NEAR(curve.front().y1, 4000 + 4000 * 0.1 / 70, 0.01);
  // Far below the scale the transmission runs along the bottom edge.
  EXPECT_FLOAT_EQ(curve.back().y2, 8000);
  EXPECT_NEAR(curve.back().x2, 8000, 0.5);
  for (const DrawOp& op : curve) EXPECT_LE(std::max(op.y1, op.y2), 8000);
  // A reflection of -0.01 dB lies at the top edge (within 1 unit).
  EXPECT_NEAR(LinesIn(c, 8947848).back().y2, 4000.6, 0.1);

  size_t blackCount = black.size();
  d.ValueMode = 2;
  for (int i = 0; i <= 1000; ++i) d.Transmission[i] -= 1;
  DrawMainPlot(d, c);
  EXPECT_EQ(LinesIn(c, 0).size(), blackCount);  // mode 2 clears nothing
  EXPECT_GE(LinesIn(c, 16711680).size(), 1000u);
  EXPECT_GE(LinesIn(c, 16746632).size(), 1000u);
  d.ValueMode = 3;
  DrawMainPlot(d, c);
  EXPECT_GE(LinesIn(c, 255).size(), 1000u);
  EXPECT_GE(LinesIn(c, 10066431).size(), 1000u);
  EXPECT_EQ(LinesIn(c, 0).size(), blackCount);

  // Mode 1 starts over: the blue and red curves are gone.
  d.ValueMode = 1;
  DrawMainPlot(d, c);
  EXPECT_TRUE(LinesIn(c, 16711680).empty());
  EXPECT_TRUE(LinesIn(c, 255).empty());
}

// Frequency labels under the plot: each names its grid frequency, none
// overlaps another or runs past the plot's right edge, none stands in the
// first 4% of the axis, and the decade values are always there.
TEST(MainPlot, FrequencyLabelsAreThinnedAndInside) {
  DesignRecord d = Swept();
  RecordingCanvas c;
  DrawMainPlot(d, c);
  std::vector<DrawOp> labels;
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Text && op.y1 > 8000) labels.push_back(op);
  ASSERT_GE(labels.size(), 5u);
  std::sort(labels.begin(), labels.end(),
            [](const DrawOp& a, const DrawOp& b) { return a.x1 < b.x1; });
  for (size_t i = 0; i < labels.size(); ++i) {
    EXPECT_LE(labels[i].x1 + labels[i].textWidth, 8000.01f);
    EXPECT_GE(labels[i].x1, 3000 + 0.04f * 5000 - labels[i].textWidth / 2 - 1);
    if (i > 0) {
      EXPECT_GT(labels[i].x1, labels[i - 1].x1 + labels[i - 1].textWidth);
    }
  }
  auto has = [&](double f) {
    std::string t = FormatFrequency(f);
    t = t.substr(t.find_first_not_of(' '));
    t = t.substr(0, t.find_last_not_of(' ') + 1);
    return std::any_of(labels.begin(), labels.end(),
                       [&](const DrawOp& op) { return op.text == t; });
  };
  EXPECT_TRUE(has(1e6));
  EXPECT_TRUE(has(2e6));
  EXPECT_TRUE(has(5e6));
  EXPECT_TRUE(has(1e7));
  EXPECT_TRUE(has(2e7));
}

// The side plots stay in their own area (right of the main plot, under the
// bandwidth label); their curves are clamped to their frames; switching a
// plot off erases its area.
TEST(SidePlots, PlacementClampingAndSwitchingOff) {
  DesignRecord d = Swept();
  d.ShowVSWR = 1;
  d.ShowDelay = 1;
  d.ValueMode = 2;
  RecordingCanvas c;
  DrawVswrPlot(d, c);
  DrawDelayPlot(d, c);
  ASSERT_FALSE(c.Ops().empty());
  for (const DrawOp& op : c.Ops()) {
    float left = op.kind == DrawOp::Kind::Line ? std::min(op.x1, op.x2) : op.x1;
    EXPECT_GE(left, 8500) << op.text;
    EXPECT_GE(op.kind == DrawOp::Kind::Line ? std::min(op.y1, op.y2) : op.y1, 3300);
    float right = op.kind == DrawOp::Kind::Text ? op.x1 + op.textWidth : std::max(op.x1, op.x2);
    EXPECT_LE(right, 12000) << op.text;
  }
  auto blue = LinesIn(c, 16711680);
  ASSERT_GE(blue.size(), 2000u);
  for (const DrawOp& op : blue) {
    bool inVswr = op.y1 >= kVswrTop && op.y1 <= kVswrBottom;
    bool inDelay = op.y1 >= kDelayTop && op.y1 <= kDelayBottom;
    EXPECT_TRUE(inVswr || inDelay);
  }
  // VSWR 1 sits on the bottom edge, anything from 3 on at the top edge.
  EXPECT_FLOAT_EQ(blue.front().y1, kVswrBottom);
  EXPECT_FLOAT_EQ(blue[999].y2, kVswrTop);
  // The delay scale reads 0s at the bottom and 200ns at the top.
  bool top = false;
  for (const DrawOp& op : c.Ops()) top |= op.kind == DrawOp::Kind::Text && op.text == "200ns";
  EXPECT_TRUE(top);

  d.ShowVSWR = 0;
  d.ShowDelay = 0;
  DrawVswrPlot(d, c);
  DrawDelayPlot(d, c);
  for (const DrawOp& op : c.Ops())
    if (op.kind != DrawOp::Kind::Box) {
      EXPECT_LT(std::min(op.x1, op.x2), 8500) << op.text;
    }
}

}  // namespace
}  // namespace drenik
