// The "Time and Smith chart" page: its data against the Touchstone file of
// the same design, and its drawing.
#include "pages/time_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "app_fixture.h"
#include "export/writers.h"
#include "plot/frequency_axis.h"
#include "synthesis/design_edges.h"

namespace drenik::testing {
namespace {

class TimePageTest : public AppTest {};

TEST_F(TimePageTest, SmithPointsAreTheTouchstoneS11AndEveryStageIsDrawnInItsColour) {
  StartDesign();
  Design().Button("cmdDesign").Click();
  const TimePageData data = MakeTimePageData(D(), ValueStage::FiveL);
  ASSERT_TRUE(data.fault.empty()) << data.fault;
  ASSERT_EQ(data.stages.size(), 3u);
  // All stages share the exact stage's time axis.
  EXPECT_EQ(data.stages[2].time.t, data.stages[0].time.t);

  // The display page holds the 5% C stage: its locus is the file's S11.
  const std::string s2p = (folder_ / "f.s2p").string();
  ASSERT_TRUE(WriteTouchstone(D(), s2p, platform));
  std::ifstream in(s2p);
  const SmithLocus& locus = data.stages[1].smith;
  size_t n = 0;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '!' || line[0] == '[' || line[0] == '#') continue;
    std::istringstream row(line);
    double f, re, im;
    row >> f >> re >> im;
    ASSERT_LT(n, locus.gamma.size());
    EXPECT_EQ(static_cast<float>(f), locus.freq[n]);
    EXPECT_EQ(re, locus.gamma[n].real());
    EXPECT_EQ(im, locus.gamma[n].imag());
    ++n;
  }
  EXPECT_EQ(n, locus.gamma.size());
  // A lowpass's locus stays inside the passband's VSWR circle up to the cutoff.
  for (size_t i = 0; i < n && locus.freq[i] <= D().Width; ++i)
    EXPECT_LE(std::abs(locus.gamma[i]), locus.passbandRadius + 1e-12);
  EXPECT_NE(SmithReadout(locus, SmithPlaceOf(TimeCharts::All), 9300, 3900).find("return loss"),
            std::string::npos);

  RecordingCanvas page;
  DrawTimePage(page, data, TimeCharts::All);
  for (const TimeStage& s : data.stages) {
    int lines = 0;
    for (const DrawOp& op : page.Ops()) {
      if (op.kind != DrawOp::Kind::Line || op.color != s.color || op.width != 2) continue;
      ++lines;
      EXPECT_TRUE(op.x1 >= 0 && op.x1 <= kPageWidth && op.y1 >= 0 && op.y1 <= kPageHeight);
    }
    // Step and impulse curves and the Smith locus.
    EXPECT_GT(lines, 2 * 1999 + static_cast<int>(n) / 2) << s.name;
  }
}

// The window's page after "Chosen parts": the chooser's stage last, in its
// colour, and its step is that of the exact ladder with the chosen values.
TEST_F(TimePageTest, ChosenPartsStageIsTheResponseOfTheChosenValues) {
  StartDesign();
  Design().Button("cmdDesign").Click();
  PartsRequest request;
  request.capacitors = ESeries::E6;  // far enough from the 5% C values to tell apart
  Display().SetPartsRequest(request);
  Display().OnChosenParts();
  ASSERT_TRUE(Display().ChosenParts());
  App().ShowTimePage();
  const TimePageData& data = App().Time().Data();
  ASSERT_TRUE(data.fault.empty()) << data.fault;
  ASSERT_EQ(data.stages.size(), 3u);
  const TimeStage& chosen = data.stages[2];
  EXPECT_EQ(chosen.color, kChosenTransmissionColor);

  DesignRecord x = MakeValueStages(D()).exact;
  for (const PositionParts& p : Display().ChosenParts()->positions)
    x.L[p.position] = p.L, x.C[p.position] = p.C;
  TimeRequest r;
  r.ladder = LadderOf(x);
  r.lossFrequency = r.ladder.qReference;
  r.span = chosen.time.t.back();
  const TimeResponse expected = ComputeTimeResponse(r);
  ASSERT_EQ(expected.step.size(), chosen.time.step.size());
  double fromChosen = 0, fromFiveC = 0;
  for (size_t n = 0; n < expected.step.size(); ++n) {
    fromChosen = std::max(fromChosen, std::fabs(expected.step[n] - chosen.time.step[n]));
    fromFiveC = std::max(fromFiveC, std::fabs(expected.step[n] - data.stages[1].time.step[n]));
  }
  EXPECT_LT(fromChosen, 1e-9);
  EXPECT_GT(fromFiveC, 1e-3);
}

// A bandpass is headed by its centre and band, and its Smith chart marks
// both edges and draws the VSWR circle of the band between them.
TEST_F(TimePageTest, BandDesignHeadingAndSmithEdges) {
  StartDesign();
  Design().Box("txtCenter").Type("7.15M");
  Design().Box("txtBandwidth").Type("300k");
  ASSERT_TRUE(Design().Option("optCinbandpass").Click());
  Design().Button("cmdDesign").Click();
  const TimePageData data = MakeTimePageData(D(), ValueStage::FiveC);
  ASSERT_TRUE(data.fault.empty()) << data.fault;
  EXPECT_NE(data.title.find("centre 7.15MHz, bandwidth 300KHz"), std::string::npos) << data.title;
  EXPECT_EQ(data.edges, "Band edges f1 7.0016MHz, f2 7.3016MHz");
  const SmithLocus& locus = data.stages[1].smith;
  const DesignEdges e = EdgesOf(D());
  ASSERT_EQ(locus.marks.size(), 2u);
  EXPECT_EQ(locus.marks[1], LadderSParameters(LadderOf(D()), e.f2).S11);
  for (size_t i = 0; i < locus.freq.size(); ++i)
    EXPECT_TRUE(locus.freq[i] < e.f1 || locus.freq[i] > e.f2 ||
                std::abs(locus.gamma[i]) <= locus.passbandRadius);
  EXPECT_TRUE(locus.passbandRadius > 0.05 && locus.passbandRadius < 0.5);
}

}  // namespace
}  // namespace drenik::testing
