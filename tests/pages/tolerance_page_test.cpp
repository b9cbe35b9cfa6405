// The tolerance page over the display page's design: its three value
// stages, prefilled controls, a run on its worker thread, cancel, and the
// nominal trial against the display page's own sweep.
#include "pages/tolerance_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "app_fixture.h"
#include "core/formatters.h"
#include "pages/tolerance_drawing.h"
#include "tolerance/tolerance_text.h"

namespace drenik::testing {
namespace {

class TolerancePageTest : public AppTest {
 protected:
  // The design page set by option clicks and typing, the display page, then
  // its "Tolerance" button.
  TolerancePage& Open(const std::vector<const char*>& options, const char* bandwidth = "7M",
                      const char* q = nullptr) {
    StartDesign();
    for (const char* option : options) EXPECT_TRUE(Design().Option(option).Click()) << option;
    Design().Box("txtBandwidth").Type(bandwidth);
    if (q) {
      Design().Option("optQ2").Click();
      Design().Box("txtQother").Type(q);
    }
    Design().Button("cmdDesign").Click();
    Display().Controls().FindButton("cmdTolerance")->Click();
    return App().Tolerance();
  }
  TolerancePage& Page() { return App().Tolerance(); }
  std::string Box(const char* name) { return Page().Controls().FindTextBox(name)->Text(); }
  void Type(const char* name, const std::string& text) {
    Page().Controls().FindTextBox(name)->Type(text);
  }
  void Click(const char* name) { Page().Controls().FindButton(name)->Click(); }
  bool Drawn(const std::string& text) {
    for (const DrawOp& op : App().ToleranceCanvas().Ops())
      if (op.kind == DrawOp::Kind::Text && op.text == text) return true;
    return false;
  }
};

// The nominal trial is the display page's analysis at that value stage, to
// 1e-4 dB in transmission and reflection, for ladders of every kind of arm.
TEST_F(TolerancePageTest, NominalTrialReproducesTheDisplayPageAtEveryValueStage) {
  const std::vector<std::vector<const char*>> designs = {
      {"optChebycheff", "optOrder5"},
      {"optCauer", "optOrder7", "optAstop60"},
      {"optCauer", "optOrder6", "optLinhighpass"},
      {"optZelmar", "optCinhighpass"},
      {"optButterworth", "optOrder4", "optLinlowpass"}};
  double worstOfAll = 0;
  for (const auto& options : designs) {
    app_.reset();
    Open(options, "14.25M", "40");
    for (const char* stage : {"optExact", "opt5C", "opt5L"}) {
      SCOPED_TRACE(std::string(options.front()) + " " + options.back() + " " + stage);
      Page().Controls().FindOption(stage)->Click();
      const DesignRecord& d = Page().Stage();
      ASSERT_EQ(d.ValueMode, stage[3] == 'E' ? 1 : (stage[4] == 'C' ? 2 : 3));
      ToleranceSetup s;
      s.trials = 1, s.sensitivity = false, s.mask = DefaultMask(ToleranceDesignOf(d));
      ToleranceResult r;
      ASSERT_TRUE(RunTolerance(ToleranceDesignOf(d), s, r).Ok());
      ASSERT_EQ(r.nominalTransmission.size(), 1001u);
      double worst = 0;
      for (int i = 0; i <= 1000; ++i) {
        ASSERT_EQ(r.freq[i], d.Freq[i]);
        worst = std::max<double>(worst, std::fabs(r.nominalTransmission[i] - d.Transmission[i]));
        worst = std::max<double>(worst, std::fabs(r.nominalReflection[i] - d.Reflection[i]));
      }
      EXPECT_LT(worst, 1e-4);
      worstOfAll = std::max(worstOfAll, worst);
    }
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", worstOfAll);
  RecordProperty("worst_db", text);
  // The stages are the display page's: 5% C is what it shows after loading.
  EXPECT_EQ(D().ValueMode, 2);
  Page().Controls().FindOption("opt5C")->Click();
  EXPECT_EQ(Page().Stage().Transmission, D().Transmission);
}

TEST_F(TolerancePageTest, ControlsArePrefilledForTheDesignAndARunDrawsItsResult) {
  Open({"optCauer", "optOrder5"});
  const DesignRecord& d = Page().Stage();
  const Mask def = DefaultMask(ToleranceDesignOf(d));
  EXPECT_TRUE(Box("txtCtol") == "5" && Box("txtLtol") == "5" && Box("txtTrials") == "2000" &&
              Box("txtSeed") == "1" && Box("txtTighten") == "0");
  EXPECT_EQ(Box("txtPassEdge"), "7MHz");
  EXPECT_EQ(std::stod(Box("txtPassRl")), *def.passRl);
  // A Cauer design's own stopband edge, its depth less the margin the frame names.
  const double edge = 7e6 * double{d.FstopNormalized};
  std::string stop = Box("txtStopFreq1");
  EXPECT_NEAR(CheckEntry(stop) / edge, 1, 1e-4);
  EXPECT_EQ(Box("txtStopDepth1"), "37");
  EXPECT_EQ(Page().Controls().FindFrame("frmMask")->Caption(),
            "Mask (filled in 3 dB inside the nominal)");
  EXPECT_TRUE(Box("txtStopFreq2").empty() && Drawn("Not run yet"));

  Type("txtTrials", "3,000");  // a count: the comma groups thousands
  Page().Controls().FindOption("optNormal")->Click();
  Click("cmdRun");
  EXPECT_TRUE(Page().Running() && !Page().Controls().FindButton("cmdRun")->Enabled());
  Page().Wait();
  ASSERT_TRUE(Page().HasResult() && !Page().Running());
  const ToleranceResult& r = Page().Result();
  EXPECT_TRUE(r.trials == 3000 && Page().Setup().distribution == Distribution::Normal);
  EXPECT_TRUE(Drawn(PercentText(r.yield)) && Drawn(IntervalText(r)));
  EXPECT_TRUE(Drawn("Sensitivity: yield with one part held at nominal"));
  // Both histograms; their mask and nominal labels above the bars, apart.
  EXPECT_TRUE(Drawn("mask 37.0"));
  std::vector<DrawOp> labels;
  for (const DrawOp& op : App().ToleranceCanvas().Ops())
    if (op.kind == DrawOp::Kind::Text &&
        (op.text.starts_with("mask ") || op.text.starts_with("nominal ")) &&
        op.text.find_first_of("0123456789") != std::string::npos)
      labels.push_back(op);
  ASSERT_EQ(labels.size(), 4u);
  for (size_t i = 0; i < labels.size(); ++i) {
    EXPECT_LT(labels[i].y1 + 150, kHistTop) << labels[i].text;
    for (size_t j = 0; j < i; ++j)
      EXPECT_TRUE(labels[i].y1 != labels[j].y1 ||
                  labels[i].x1 >= labels[j].x1 + labels[j].textWidth ||
                  labels[j].x1 >= labels[i].x1 + labels[i].textWidth)
          << labels[i].text << " over " << labels[j].text;
  }

  // The same setup straight through the engine gives the same figures.
  ToleranceResult direct;
  ASSERT_TRUE(RunTolerance(ToleranceDesignOf(d), Page().Setup(), direct).Ok());
  EXPECT_TRUE(direct.passed == r.passed && direct.worstReturnLoss == r.worstReturnLoss);
  EXPECT_TRUE(platform.messages.empty());

  // Opened again on the same design the page stays as it was; a retuned
  // design is taken up with the user's settings.
  Display().Controls().FindButton("cmdTolerance")->Click();
  EXPECT_TRUE(Page().HasResult() && Box("txtTrials") == "3,000");
  Display().OnUp();
  Display().Controls().FindButton("cmdTolerance")->Click();
  EXPECT_TRUE(!Page().HasResult() && Box("txtTrials") == "3,000");
}

// The page follows the display page: at once while it holds no result; a
// result is marked out of date until Run again takes up the design shown,
// with the user's settings and mask. A mask of the loss alone shows the
// loss's histogram. "Chosen" asks the display page for its chosen parts.
// Exit keeps the mask and the parts' setup for the next start.
TEST_F(TolerancePageTest, FollowsTheDisplayPageTestsTheChosenPartsAndKeepsItsMask) {
  Open({"optCauer", "optOrder5"});
  Display().OnUp();
  EXPECT_TRUE(!Page().OutOfDate() && Page().Stage().Width == D().Width);
  const std::string edge = Box("txtPassEdge");
  EXPECT_EQ(edge, TrimBlanks(FormatFrequency(D().Width)));
  Type("txtTrials", "300"), Type("txtPassRl", ""), Type("txtPassIl", "0.5");
  Click("cmdRun");
  Page().Wait();
  ASSERT_TRUE(Page().HasResult());
  EXPECT_TRUE(Drawn("Worst passband loss, dB") && !Drawn("Worst passband return loss, dB"));

  const float analysed = D().Width;
  Display().OnUp();
  EXPECT_TRUE(Page().OutOfDate() && Page().HasResult() && Page().Stage().Width == analysed);
  EXPECT_EQ(Page().Controls().FindButton("cmdRun")->Caption(), "Run again");
  EXPECT_TRUE(Drawn("Out of date: the display page shows Cauer order 5 Cinlowpass, cutoff " +
                    TrimBlanks(FormatFrequency(D().Width)) + " now; Run again analyses it."));
  Click("cmdRun");
  Page().Wait();
  EXPECT_TRUE(!Page().OutOfDate() && Page().HasResult() && Page().Stage().Width == D().Width);
  EXPECT_TRUE(Page().Setup().trials == 300 && Box("txtPassIl") == "0.5" &&
              Box("txtPassEdge") == edge);

  Page().Controls().FindOption("optChosen")->Click();
  ASSERT_EQ(D().ValueMode, kChosenPartsMode);
  EXPECT_TRUE(Page().CurrentStage() == ValueStage::Chosen && Page().Stage().L == D().L);

  PartsRequest parts;
  parts.capacitors = ESeries::E12, parts.former = CoreNamed("T50-6");
  Display().SetPartsRequest(parts);
  Display().OnExit();
  app_.reset();
  Open({});
  EXPECT_TRUE(Box("txtPassIl") == "0.5" && Box("txtPassRl").empty() && Box("txtPassEdge") == edge);
  EXPECT_EQ(Page().Controls().FindFrame("frmMask")->Caption(), "Mask (as you set it)");
  const PartsRequest kept = Display().GetPartsRequest();
  EXPECT_TRUE(kept.capacitors == ESeries::E12 && kept.former && kept.former->core &&
              kept.former->Name() == "T50-6");
}

TEST_F(TolerancePageTest, BadBoxesAreNamedCancelStopsAndNoWindowMeansNoPrinting) {
  Open({"optChebycheff"});
  const std::pair<const char*, const char*> bad[] = {
      {"txtCtol", "60"}, {"txtTrials", "0"},      {"txtTrials", "2.5"},
      {"txtSeed", "-3"}, {"txtPassEdge", "edge"}, {"txtStopDepth2", "40"}};
  for (const auto& [box, text] : bad) {
    const std::string before = Box(box);
    Type(box, text);
    Click("cmdRun");
    EXPECT_FALSE(Page().Running()) << box;
    Type(box, before);
  }
  ASSERT_EQ(platform.messages.size(), 6u);
  EXPECT_EQ(platform.messages[0].text, "The capacitor tolerance must be 0 to 50 %.");
  EXPECT_NE(platform.messages[5].text.find("row 2"), std::string::npos);

  Type("txtTrials", "1000000");
  Click("cmdRun");
  Click("cmdCancel");
  Page().Wait();
  EXPECT_TRUE(!Page().HasResult() && Drawn("Cancelled"));

  platform.messages.clear();
  platform.dialogAnswer = (folder_ / "tolerance").string();
  Click("cmdPrint");
  Click("cmdSave");
  ASSERT_EQ(platform.messages.size(), 2u);
  EXPECT_EQ(platform.messages[0].text, "Printing is available in the designer window.");
  EXPECT_EQ(platform.dialogs.back().proposedName, "Tolerance.png");
}

// A nominal design with nothing to keep (its capacitors' lead inductance
// resonates in the band) leaves the mask empty: Run says why and runs nothing.
TEST_F(TolerancePageTest, NoDefaultMaskSaysWhyAndRunsNothing) {
  StartDesign();
  for (const char* option : {"optCauer", "optOrder3", "optQ2"}) Design().Option(option).Click();
  Design().Option("optCinbandstop").Click();
  Design().Box("txtCenter").Type("630.07M");
  Design().Box("txtBandwidth").Type("316.21M");
  Design().Box("txtQother").Type("5960");
  D().InductorQLaw = QLaw::Sqrt, D().CapacitorQ = 32.1f, D().CapacitorEsl = 1.08e-8f;
  Design().Button("cmdDesign").Click();
  Display().Controls().FindButton("cmdTolerance")->Click();
  EXPECT_TRUE(Box("txtPassRl").empty() && Box("txtStopDepth1").empty());
  Click("cmdRun");
  EXPECT_FALSE(Page().Running());
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text.find("There is no default mask"), 0u);
}

// A band's mask: both edges and each stopband's from and to as the command
// line's default mask has them; inverted and overlapping bands are refused
// naming the boxes; the run checks what the boxes say.
TEST_F(TolerancePageTest, BandMasksFillBothEdgesRefuseOverlapsAndRun) {
  const auto hz = [](double f) { return TrimBlanks(FormatFrequency(f)); };
  Open({"optChebycheff", "optCinbandstop"}, "1M");
  const Mask notch = DefaultMask(ToleranceDesignOf(Page().Stage()));
  EXPECT_TRUE(Box("txtPassEdge") == hz(notch.passEdge) &&
              Box("txtPassEdge2") == hz(notch.passResume) &&
              Box("txtStopFreq1") == hz(notch.stops.at(0).frequency) &&
              Box("txtStopTo1") == hz(notch.stops[0].to));

  app_.reset();
  Open({"optChebycheff", "optCinbandpass"}, "300k");
  const Mask mask = DefaultMask(ToleranceDesignOf(Page().Stage()));
  EXPECT_TRUE(Box("txtPassEdge") == hz(mask.passStart) && Box("txtPassEdge2") == hz(mask.passEdge));
  EXPECT_TRUE(Box("txtStopFreq1").empty() && Box("txtStopTo1") == hz(mask.stops.at(0).frequency));
  const std::tuple<const char*, const char*, const char*> bad[] = {
      {"txtPassEdge2", "6M", "the lower below the upper (Passband from, to)"},
      {"txtStopTo1", "7.1M", "to 7.1MHz (row 1) reaches into the passband from 7.0016MHz"},
      {"txtStopFreq2", "7.2M", "from 7.2MHz (row 2) reaches into the passband"},
      {"txtStopTo2", "7M", "must end (to) above where it starts (from) (row 2)"}};
  for (const auto& [box, text, why] : bad) {
    const std::string before = Box(box);
    platform.messages.clear();
    Type(box, text);
    Click("cmdRun");
    ASSERT_EQ(platform.messages.size(), 1u) << box;
    EXPECT_NE(platform.messages[0].text.find(why), std::string::npos) << platform.messages[0].text;
    Type(box, before);
  }
  // A third check, 20 dB over 1 to 5 MHz, below the passband.
  Type("txtStopFreq3", "1M"), Type("txtStopTo3", "5M"), Type("txtStopDepth3", "20");
  Type("txtTrials", "200"), Type("txtCtol", "0.2"), Type("txtLtol", "0.2");
  Click("cmdRun");
  Page().Wait();
  ASSERT_TRUE(Page().HasResult() && Page().Result().checks.size() == 4);
  EXPECT_EQ(Page().Result().checks[3].check.name, "attenuation 20 dB from 1MHz to 5MHz");
  EXPECT_GT(Page().Result().yield, 0.5);
  const RecordingCanvas paper = Page().PaperDrawing();
  EXPECT_TRUE(std::ranges::any_of(paper.Ops(), [](const DrawOp& op) {
    return op.text == "Stopband from 1MHz to 5MHz: 20.0 dB";
  }));
}

}  // namespace
}  // namespace drenik::testing
