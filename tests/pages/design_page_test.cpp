#include "pages/design_page.h"

#include <gtest/gtest.h>

#include "app_fixture.h"
#include "core/formatters.h"

namespace drenik::testing {
namespace {

using DesignPageTest = AppTest;

std::vector<std::string> SelectedIn(DesignPage& page, const std::string& frame) {
  std::vector<std::string> names;
  for (OptionButton* o : page.Controls().OptionsOf(&page.FrameNamed(frame))) {
    if (o->Selected()) names.push_back(o->Name());
  }
  return names;
}

void ExpectGroupEnabled(DesignPage& page, const std::string& frame, bool enabled) {
  EXPECT_EQ(page.FrameNamed(frame).Enabled(), enabled) << frame;
  for (OptionButton* o : page.Controls().OptionsOf(&page.FrameNamed(frame))) {
    EXPECT_EQ(o->Enabled(), enabled) << o->Name();
  }
}

TEST_F(DesignPageTest, FirstStartWithoutSessionFileShowsTheDefaultsQuietly) {
  DesignPage& page = StartDesign();
  EXPECT_EQ(App().CurrentPage(), PageId::Design);
  EXPECT_EQ(D().Family, kChebyshev);
  EXPECT_EQ(D().Order, 5);
  EXPECT_EQ(D().Topology, "Cinlowpass");
  EXPECT_EQ(D().Apass, 0.044f);
  // The Chebyshev prototype zeroes Astop; the page keeps showing 40 dB.
  EXPECT_EQ(D().Astop, 0.0f);
  EXPECT_EQ(D().Width, 4.2e6f);
  EXPECT_EQ(D().Rsource, 50.0f);
  EXPECT_EQ(D().Qind, kInfiniteQind);
  EXPECT_EQ(SelectedIn(page, "frmFamily"), std::vector<std::string>{"optChebycheff"});
  EXPECT_EQ(SelectedIn(page, "frmOrder"), std::vector<std::string>{"optOrder5"});
  EXPECT_EQ(SelectedIn(page, "frmTopology"), std::vector<std::string>{"optCinlowpass"});
  EXPECT_EQ(SelectedIn(page, "frmRipple"), std::vector<std::string>{"opt044"});
  EXPECT_EQ(SelectedIn(page, "frmStopbandDepth"), std::vector<std::string>{"optAstop40"});
  EXPECT_EQ(SelectedIn(page, "frmImpedance"), std::vector<std::string>{"optZ50"});
  EXPECT_EQ(SelectedIn(page, "frmQ"), std::vector<std::string>{"optQ1"});
  EXPECT_EQ(page.Box("txtQother").Text(), "1M");
  EXPECT_FALSE(page.Box("txtQother").Enabled());
  EXPECT_FALSE(page.Box("txtZother").Enabled());
  EXPECT_EQ(page.Box("txtBandwidth").Text(), FormatFrequency(4.2e6));
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(ripple)");
  ExpectGroupEnabled(page, "frmStopbandDepth", false);
  EXPECT_EQ(page.Caption(), "Drenik Filter Designer 2.12 - Design");
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_GT(page.SchematicRedraws(), 0);
}

TEST_F(DesignPageTest, ZelmarFixesOrderFiveAndLocksTheOtherGroups) {
  DesignPage& page = StartDesign();
  page.Option("optOrder3").Click();
  page.Option("optZelmar").Click();
  EXPECT_EQ(D().Family, kZelmar);
  EXPECT_EQ(D().CauerFlag, 1);
  EXPECT_EQ(D().Order, 5);
  EXPECT_EQ(SelectedIn(page, "frmOrder"), std::vector<std::string>{"optOrder5"});
  EXPECT_TRUE(SelectedIn(page, "frmRipple").empty());
  ExpectGroupEnabled(page, "frmOrder", false);
  ExpectGroupEnabled(page, "frmRipple", false);
  ExpectGroupEnabled(page, "frmStopbandDepth", false);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(0.2 dB)");
  EXPECT_FALSE(page.Option("optOrder7").Click());  // locked for the user
  EXPECT_EQ(D().Order, 5);

  // Back to Chebyshev: order and ripple are offered again.
  page.Option("optChebycheff").Click();
  ExpectGroupEnabled(page, "frmOrder", true);
  ExpectGroupEnabled(page, "frmRipple", true);
  ExpectGroupEnabled(page, "frmStopbandDepth", false);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(ripple)");
}

TEST_F(DesignPageTest, ZelmarFromTheSessionFileLoadsLockedAndMatchesTheLoad) {
  WriteSession("3,4500000,4,.01,0,\"Linlowpass\",75,1000000");
  DesignPage& page = StartDesign();
  EXPECT_EQ(D().Order, 5);
  EXPECT_TRUE(SelectedIn(page, "frmRipple").empty());
  ExpectGroupEnabled(page, "frmOrder", false);
  ExpectGroupEnabled(page, "frmRipple", false);
  ExpectGroupEnabled(page, "frmStopbandDepth", false);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(0.2 dB)");
  EXPECT_EQ(SelectedIn(page, "frmImpedance"), std::vector<std::string>{"optZother"});
  EXPECT_EQ(D().Rsource, 75.0f);

  D().Rload = 1;  // "Display responses" ties the load to the source
  page.Button("cmdDesign").Click();
  EXPECT_EQ(App().CurrentPage(), PageId::Display);
  EXPECT_EQ(D().Rload, D().Rsource);
}

// The clamps store the limit but leave the box as typed.
TEST_F(DesignPageTest, BandwidthIsClampedWithoutWritingBackAndRedesigns) {
  DesignPage& page = StartDesign();
  int redraws = page.SchematicRedraws();
  page.Box("txtBandwidth").Type("0");
  EXPECT_EQ(D().Width, 0.1f);
  EXPECT_EQ(page.Box("txtBandwidth").Text(), "0");
  EXPECT_EQ(page.SchematicRedraws(), redraws + 1);
  page.Box("txtBandwidth").Type("2e10");
  EXPECT_EQ(D().Width, 1e10f);
  page.Box("txtBandwidth").Type("4,7k");
  EXPECT_EQ(D().Width, 4700.0f);
  EXPECT_EQ(page.SchematicRedraws(), redraws + 3);

  page.Option("optZother").Click();
  page.Box("txtZother").Type("0");
  EXPECT_EQ(D().Rsource, 0.1f);
  page.Box("txtZother").Type("5M");
  EXPECT_EQ(D().Rsource, 1e6f);
}

TEST_F(DesignPageTest, InductorQStoresAtLeastTwoWithoutRedesigningAndOtherAtLeastTen) {
  DesignPage& page = StartDesign();
  page.Box("txtQother").SetText("5");  // typed while "Infinite" is chosen
  page.Option("optQ2").Click();
  EXPECT_EQ(D().Qind, 10.0f);
  EXPECT_TRUE(page.Box("txtQother").Enabled());

  int runs = page.DriverRuns();
  int redraws = page.SchematicRedraws();
  page.Box("txtQother").Type("1");
  EXPECT_EQ(D().Qind, 2.0f);
  EXPECT_EQ(page.Box("txtQother").Text(), "1");
  EXPECT_EQ(page.DriverRuns(), runs);
  EXPECT_EQ(page.SchematicRedraws(), redraws);

  // "Other" gives the capacitors the typed Q as well; "Infinite" ideal ones.
  page.Box("txtQother").Type("300");
  page.Option("optQ2").Click();
  EXPECT_EQ(D().Qcap, 300.0f);
  page.Option("optQ1").Click();
  EXPECT_EQ(D().Qind, kInfiniteQind);
  EXPECT_EQ(D().Qcap, kInfiniteQcap);
  EXPECT_EQ(page.Box("txtQother").Text(), "1M");
}

// optZ50 writes "50" into the Other box; when that changes the text, the
// box's own change handling (one more redraw) runs before the rest.
TEST_F(DesignPageTest, Z50RunsTheOtherBoxChangeOnlyWhenItsTextChanges) {
  DesignPage& page = StartDesign();
  page.Option("optZother").Click();
  page.Box("txtZother").Type("75");
  EXPECT_EQ(D().Rsource, 75.0f);

  std::vector<std::string> order;
  page.Controls().SetObserver([&](const Control& c) {
    if (c.Name() == "txtZother") order.push_back(c.Enabled() ? "text" : "disabled");
  });
  int redraws = page.SchematicRedraws();
  page.Option("optZ50").Click();
  EXPECT_EQ(page.SchematicRedraws(), redraws + 2);
  EXPECT_EQ(order, (std::vector<std::string>{"text", "disabled"}));
  EXPECT_EQ(page.Box("txtZother").Text(), "50");
  EXPECT_EQ(D().Rsource, 50.0f);

  redraws = page.SchematicRedraws();
  page.Option("optZ50").Click();
  EXPECT_EQ(page.SchematicRedraws(), redraws + 1);
}

// The load's snap is narrower for 0.01 dB than the one before a Cauer design.
TEST_F(DesignPageTest, RippleSnapsNarrowlyOnLoadAndWidelyBeforeACauerDesign) {
  float apass = 0.015f;
  EXPECT_EQ(LoadRippleOption(apass), nullptr);
  EXPECT_EQ(apass, 0.015f);
  apass = 0.0105f;
  EXPECT_STREQ(LoadRippleOption(apass), "opt01");
  EXPECT_EQ(apass, 0.01f);
  apass = 0.0499f;
  EXPECT_STREQ(LoadRippleOption(apass), "opt044");
  EXPECT_EQ(apass, 0.044f);
  apass = 0.05f;  // open bounds
  EXPECT_EQ(LoadRippleOption(apass), nullptr);
  apass = 0.2001f;
  EXPECT_STREQ(LoadRippleOption(apass), "opt200");

  StartDesign();
  D().Apass = 0.015f;
  Design().ReadDesignInputs();
  EXPECT_EQ(D().Apass, 0.01f);
  D().Apass = 0.02f;
  Design().ReadDesignInputs();
  EXPECT_EQ(D().Apass, 0.02f);
}

// A ripple chosen under another family survives a visit to Zelmar, and the
// page shows it again when the ripple choice comes back.
TEST_F(DesignPageTest, RippleOptionFollowsTheDesignedRipple) {
  DesignPage& page = StartDesign();
  page.Option("opt200").Click();
  EXPECT_EQ(D().Apass, 0.2f);
  page.Option("optZelmar").Click();
  EXPECT_TRUE(SelectedIn(page, "frmRipple").empty());
  page.Option("optChebycheff").Click();
  EXPECT_EQ(SelectedIn(page, "frmRipple").size(), 1u);
}

TEST_F(DesignPageTest, StopbandEdgeOnlyForOddCauerOrdersInTheTable) {
  DesignPage& page = StartDesign();
  page.Box("txtBandwidth").SetText("1M");
  D().Family = kCauer;
  D().Order = 5;
  D().Astop = 60;
  D().Apass = 0.044f;
  page.ReadDesignInputs();
  EXPECT_EQ(D().StopbandEdge, static_cast<float>(static_cast<double>(1e6f) * 2.199));
  EXPECT_EQ(D().Qcap, kInfiniteQcap);
  EXPECT_EQ(D().Rstandard, D().Rsource);

  D().Order = 4;
  D().StopbandEdge = 123;
  page.ReadDesignInputs();
  EXPECT_EQ(D().StopbandEdge, 123.0f);
  D().Order = 7;
  D().Astop = 45;
  page.ReadDesignInputs();
  EXPECT_EQ(D().StopbandEdge, 123.0f);
  D().Astop = 50;
  D().Apass = 0.2f;
  page.ReadDesignInputs();
  EXPECT_EQ(D().StopbandEdge, static_cast<float>(static_cast<double>(1e6f) * 1.161));

  page.Option("optButterworth").Click();
  EXPECT_EQ(D().StopbandEdge, 0.0f);
}

TEST_F(DesignPageTest, ChoicesReachTheRecordAndTheOpenLinks) {
  DesignPage& page = StartDesign();
  page.Option("optLinhighpass").Click();
  page.Option("optOrder7").Click();
  page.Option("opt200").Click();
  page.Option("optBessel").Click();
  EXPECT_EQ(D().Topology, "Linhighpass");
  EXPECT_EQ(D().Order, 7);
  EXPECT_EQ(D().Family, kBessel);
  EXPECT_EQ(D().CauerFlag, 0);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(3 dB)");
  ExpectGroupEnabled(page, "frmRipple", false);

  page.Button("cmdZelmarSoftware").Click();
  EXPECT_EQ(platform.urls, std::vector<std::string>{"guide.html"});

  // Leaving through "Exit" keeps the choices for the next start.
  page.Button("cmdExit").Click();
  EXPECT_TRUE(platform.ended);
  EXPECT_EQ(App().CurrentPage(), PageId::Ended);
  Application next(platform, ApplicationOptions{session_, ""});
  next.Start();
  EXPECT_EQ(next.Record().Family, kBessel);
  EXPECT_EQ(next.Record().Order, 7);
  EXPECT_EQ(next.Record().Topology, "Linhighpass");
}

TEST_F(DesignPageTest, EngineErrorsBecomeMessagesNotCrashes) {
  DesignPage& page = StartDesign();
  page.Option("optCauer").Click();  // the Cauer routine may refuse
  EXPECT_EQ(D().Family, kCauer);
  EXPECT_EQ(D().CauerType, "C");
  ExpectGroupEnabled(page, "frmStopbandDepth", true);
  for (const auto& m : platform.messages) EXPECT_EQ(m.title, kRunTimeErrorTitle);
}

}  // namespace
}  // namespace drenik::testing
