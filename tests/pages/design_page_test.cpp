// The opening and design pages, the session file, the controls' error guard.
#include "pages/design_page.h"

#include <gtest/gtest.h>

#include <cmath>

#include "app_fixture.h"
#include "core/formatters.h"
#include "core/runtime_error.h"
#include "pages/design_choices.h"
#include "pages/other_design.h"
#include "synthesis/families.h"

namespace drenik::testing {
namespace {

using DesignPageTest = AppTest;
using Names = std::vector<std::string>;

Names SelectedIn(DesignPage& page, const std::string& frame) {
  Names names;
  for (OptionButton* o : page.Controls().OptionsOf(&page.FrameNamed(frame))) {
    if (o->Selected()) names.push_back(o->Name());
  }
  return names;
}

// The order, ripple and stopband groups, frames and options, are enabled so.
void ExpectGroups(DesignPage& page, bool order, bool ripple, bool stopband) {
  for (const auto& [frame, enabled] : {std::pair{"frmOrder", order}, std::pair{"frmRipple", ripple},
                                       std::pair{"frmStopbandDepth", stopband}}) {
    EXPECT_EQ(page.FrameNamed(frame).Enabled(), enabled) << frame;
    for (OptionButton* o : page.Controls().OptionsOf(&page.FrameNamed(frame))) {
      EXPECT_EQ(o->Enabled(), enabled) << o->Name();
    }
  }
}

TEST_F(DesignPageTest, OpeningExitWritesNothingAndNoSessionPathMeansDefaults) {
  const std::string line = "7,1E+10,1,.2,60,\"Linhighpass\",600,300";
  WriteSession(line);
  App().Start();
  EXPECT_EQ(App().CurrentPage(), PageId::Opening);
  App().Opening().Controls().FindButton("cmdExit")->Click();
  EXPECT_TRUE(platform.ended);
  EXPECT_EQ(App().CurrentPage(), PageId::Ended);
  EXPECT_EQ(ReadSession(), line + "\r\n");

  Application app(platform, ApplicationOptions{"", ""});
  app.Start();
  EXPECT_EQ(app.Record().Order, 5);
  app.EndProgram(true);
  EXPECT_EQ(ReadSession(), line + "\r\n");
}

// The options chosen are checked through the window.
TEST_F(DesignPageTest, FirstStartWithoutSessionFileShowsTheDefaultsQuietly) {
  DesignPage& page = StartDesign();
  EXPECT_TRUE(D().Astop == 0 && D().Qind == kInfiniteQind);  // Astop: zeroed for Chebyshev
  EXPECT_EQ(page.Box("txtQother").Text(), "1M");
  EXPECT_FALSE(page.Box("txtQother").Enabled() || page.Box("txtZother").Enabled());
  EXPECT_EQ(page.Box("txtBandwidth").Text(), FormatFrequency(4.2e6));
  ExpectGroups(page, true, true, false);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_GT(page.SchematicRedraws(), 0);
}

// A file whose design the program refuses (order 17 here) is one it cannot
// read: none of it loads, part models included, and Exit writes none back.
TEST_F(DesignPageTest, ARefusedSessionLoadsNoneOfItsFields) {
  WriteSession("17,4200000,2,.044,40,\"Cinlowpass\",50,1000000,0,0,2,300,5E-13,2E-09");
  StartDesign().Button("cmdExit").Click();
  EXPECT_EQ(ReadSession(), "5,4200000,2,.044,0,\"Cinlowpass\",50,1000000\r\n");
}

// Zelmar fixes order 5 and locks the groups; Chebyshev brings the ripple back.
TEST_F(DesignPageTest, ZelmarLocksTheGroupsAndExitKeepsTheChoices) {
  DesignPage& page = StartDesign();
  page.Option("optOrder3").Click();
  page.Option("opt200").Click();
  page.Option("optZelmar").Click();
  EXPECT_TRUE(D().CauerFlag == 1 && D().Order == 5);
  EXPECT_EQ(SelectedIn(page, "frmOrder"), Names{"optOrder5"});
  EXPECT_TRUE(SelectedIn(page, "frmRipple").empty());
  ExpectGroups(page, false, false, false);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(0.2 dB)");
  EXPECT_FALSE(page.Option("optOrder7").Click());  // locked for the user

  page.Option("optChebycheff").Click();
  ExpectGroups(page, true, true, false);
  EXPECT_EQ(SelectedIn(page, "frmRipple").size(), 1u);
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(ripple)");

  // Choices reach the record; "Exit" keeps them for the next start.
  page.Option("optLinhighpass").Click();
  page.Option("optOrder7").Click();
  page.Option("optBessel").Click();
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(3 dB)");
  ExpectGroups(page, true, false, false);
  page.Button("cmdExit").Click();
  EXPECT_TRUE(platform.ended);
  Application next(platform, ApplicationOptions{session_, ""});
  next.Start();
  const DesignRecord& r = next.Record();
  EXPECT_TRUE(r.Family == kBessel && r.Order == 7 && r.Topology == "Linhighpass");
}

TEST_F(DesignPageTest, OpeningReadsTheSessionAndZelmarLoadsLockedMatchingTheLoad) {
  WriteSession("3,4500000,4,.01,0,\"Linlowpass\",75,300");
  DesignPage& page = StartDesign();
  EXPECT_TRUE(D().Width == 4.5e6f && D().Qind == 300.0f);
  EXPECT_EQ(D().Order, 5);
  ExpectGroups(page, false, false, false);
  EXPECT_EQ(SelectedIn(page, "frmImpedance"), Names{"optZother"});
  D().Rload = 1;  // "Display responses" ties the load to the source
  page.Button("cmdDesign").Click();
  EXPECT_EQ(D().Rload, 75.0f);
}

// Clamps leave the box as typed; optZ50 runs txtZother's change first, if it changes.
TEST_F(DesignPageTest, BoxesClampWithoutWritingBackAndZ50RunsTheOtherBoxChange) {
  DesignPage& page = StartDesign();
  int redraws = page.SchematicRedraws();
  page.Box("txtBandwidth").Type("0");
  EXPECT_TRUE(D().Width == 0.1f && page.Box("txtBandwidth").Text() == "0");
  EXPECT_EQ(page.SchematicRedraws(), redraws + 1);
  page.Box("txtBandwidth").Type("2e10");
  EXPECT_EQ(D().Width, 1e10f);
  EXPECT_EQ(page.SchematicRedraws(), redraws + 2);
  page.Option("optZother").Click();
  page.Box("txtZother").Type("0");  // the upper clamp: the command-line test
  EXPECT_EQ(D().Rsource, 0.1f);

  Names order;
  page.Controls().SetObserver([&](const Control& c) {
    if (c.Name() == "txtZother") order.push_back(c.Enabled() ? "text" : "disabled");
  });
  redraws = page.SchematicRedraws();
  page.Option("optZ50").Click();
  EXPECT_EQ(page.SchematicRedraws(), redraws + 2);
  EXPECT_EQ(order, (Names{"text", "disabled"}));
  EXPECT_TRUE(page.Box("txtZother").Text() == "50" && D().Rsource == 50.0f);
  page.Option("optZ50").Click();
  EXPECT_EQ(page.SchematicRedraws(), redraws + 3);
}

// The band boxes: closed with a lowpass, open with a band topology, each
// change redesigning at once, the centre and width and the edges following
// each other. A band the engine refuses (a resonator inductance typed a key
// at a time, edges the wrong way round) waits quietly with the reason
// beside the boxes and in place of the ladder; Display responses gives the
// message once and stays. A bandstop says where it reaches its depth, as
// the display page then does. Exit writes 0,0 for a lowpass's band.
TEST_F(DesignPageTest, BandBoxesFollowEachOtherAndARefusedBandWaitsQuietly) {
  DesignPage& page = StartDesign();
  for (const char* box : {"txtCenter", "txtResonatorL", "txtF1", "txtF2"})
    EXPECT_FALSE(page.Box(box).Type("10M")) << box;
  page.Box("txtBandwidth").Type("1M");
  page.Option("optCinbandpass").Click();
  EXPECT_FALSE(page.Box("txtResonatorL").Enabled());
  page.Box("txtCenter").Type("10M");
  EXPECT_TRUE(D().Center == 1e7f && D().Stages == 5 && D().ElementType[2] == 5);
  EXPECT_EQ(page.LabelNamed("lblBandEdges").Caption(), "f1 9.5125MHz, f2 10.512MHz");
  EXPECT_EQ(page.Box("txtF1").Text() + page.Box("txtF2").Text(), "9.5125M10.512M");
  page.Box("txtF2").Type("12M");  // f1 stays as its box reads
  EXPECT_TRUE(D().Width == 2487500.0f && D().Center == float(std::sqrt(9.5125e6 * 12e6)));
  for (const char* box : {"txtCenter", "txtBandwidth"}) {
    std::string text = page.Box(box).Text();
    EXPECT_EQ(CheckEntry(text), box[3] == 'C' ? D().Center : D().Width) << text;
  }
  page.Box("txtF1").Type("13M");
  EXPECT_EQ(page.LabelNamed("lblBandEdges").Caption(),
            "The lower band edge f1 must lie below the upper edge f2.");

  page.Box("txtF1").Type("9.5M");
  page.Box("txtF2").Type("10.5M");
  page.Option("optCoupledbandpass").Click();
  // A width typed key by key passes through bands narrower than 0.01% of
  // the centre ("1" on the way to "1M"): the same quiet wait.
  for (const char* text : {"1", "10", "100"}) page.Box("txtBandwidth").Type(text);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_TRUE(page.LabelNamed("lblBandEdges").Caption().starts_with("The band is too narrow"));
  page.Box("txtBandwidth").Type("1M");
  EXPECT_EQ(page.LabelNamed("lblBandEdges").Caption().find("f1 "), 0u);
  auto strip = [&] { return App().DesignCanvas().Ops().back().text; };
  for (const char* text : {"2", "2.", "2.2"}) {  // 1 H at most: no positive resonator
    page.Box("txtResonatorL").Type(text);
    EXPECT_TRUE(page.LabelNamed("lblBandEdges").Caption().starts_with("No coupled-resonator"));
    EXPECT_EQ(strip(), "Choose a smaller resonator inductance or a narrower bandwidth.");
  }
  EXPECT_TRUE(platform.messages.empty());
  page.Button("cmdDesign").Click();
  EXPECT_TRUE(platform.messages.size() == 1u && App().CurrentPage() == PageId::Design);
  page.Box("txtResonatorL").Type("2.2u");
  EXPECT_TRUE(D().L[2] == 2.2e-6f && D().Stages == 11);

  page.Option("optCinbandstop").Click();
  const std::string label = page.LabelNamed("lblBandEdges").Caption();
  const size_t notch = label.find(", notch ");
  ASSERT_NE(notch, std::string::npos) << label;
  page.Button("cmdDesign").Click();
  EXPECT_TRUE(Shows("f1 9.5MHz, f2 10.5MHz" + label.substr(notch))) << label;
  App().Display().Controls().FindButton("cmdDesign")->Click();
  Design().Option("optCinlowpass").Click();
  EXPECT_TRUE(D().Center == 0 && D().Stages == 5 && !Design().Box("txtF1").Enabled());
  D().CapacitorEsl = 2e-9f;  // part models follow the band's two fields
  Design().Button("cmdExit").Click();
  EXPECT_TRUE(ReadSession().ends_with(",0,0,0,1E+07,0,2E-09\r\n")) << ReadSession();
}

// A band design comes back from Exit exactly (an odd centre and inductance
// too); a file of eight fields gives a band topology the page's own centre.
TEST_F(DesignPageTest, ABandDesignComesBackAfterExitAndAnOlderFileTakesTheDefaultCentre) {
  DesignPage& page = StartDesign();
  page.Box("txtBandwidth").Type("123457");
  page.Option("optCoupledbandpass").Click();
  page.Box("txtCenter").Type("7148426");
  page.Box("txtResonatorL").Type("1.234567u");
  D().InductorQLaw = QLaw::Linear, D().CapacitorEsl = 2e-9f;  // the part models dialog's
  const DesignRecord before = D();
  page.Button("cmdExit").Click();
  EXPECT_TRUE(ReadSession().ends_with(
      ",\"Coupledbandpass\",50,1000000,7148426,.000001234567,2,1E+07,0,2E-09\r\n"))
      << ReadSession();
  for (const char* line : {"", "5,300000,2,.044,40,\"Cinbandstop\",50,1000000"}) {
    if (*line) WriteSession(line);
    app_.reset();
    StartDesign();
    EXPECT_TRUE(*line ? D().Center == kDefaultCenter && D().Stages == 5
                      : Design().Box("txtCenter").Text() == "7.148426M" && D().L == before.L &&
                            D().C == before.C && D().ResonatorL == before.ResonatorL &&
                            D().InductorQLaw == QLaw::Linear && D().CapacitorEsl == 2e-9f);
  }
}

// An order, ripple and depth beyond the buttons: a value that is a button
// selects it, the others leave their group empty and the line under the
// button names the design; the ripple is kept, not snapped, through Exit
// and the next start; a value the family does not take changes nothing.
TEST_F(DesignPageTest, OtherOrderRippleAndDepthComeBackAfterExit) {
  DesignPage& page = StartDesign();
  page.Option("optCauer").Click();
  EXPECT_EQ(page.ChooseOtherDesign({FindFamily(kCauer), 2, 0.1, 50}),
            "The Cauer family takes orders 3 to 15, not 2.");
  EXPECT_EQ(D().Order, 5);
  EXPECT_EQ(page.ChooseOtherDesign({FindFamily(kCauer), 9, 0.015, 50}), "");
  EXPECT_TRUE(D().Order == 9 && D().Stages == 9 && D().Apass == 0.015f && D().Astop == 50);
  EXPECT_EQ(SelectedIn(page, "frmOrder"), Names{});
  EXPECT_EQ(SelectedIn(page, "frmRipple"), Names{});
  EXPECT_EQ(SelectedIn(page, "frmStopbandDepth"), Names{"optAstop50"});
  EXPECT_EQ(page.LabelNamed("lblOtherDesign").Caption(), "Order 9, 0.015 dB ripple, 50 dB depth");
  // The driver keeps them, also past another family that has no ripple.
  page.Option("optCinhighpass").Click();
  page.Option("optButterworth").Click();
  page.Option("optCauer").Click();
  EXPECT_TRUE(D().Order == 9 && D().Apass == 0.015f && D().Astop == 50 && D().Stages == 9);
  EXPECT_TRUE(page.ChooseOtherDesign({FindFamily(kCauer), 9, 0.015, 72}).empty());
  page.Option("optButterworth").Click();
  page.Button("cmdExit").Click();
  // Ideal parts and an empty kept setup are zero-filled ahead of the chosen pair.
  std::string zeroMask;
  for (size_t k = 0; k < kKeptMaskFields; ++k) zeroMask += "0,";
  EXPECT_EQ(ReadSession(), "9,4200000,1,0,0,\"Cinhighpass\",50,1000000,0,0,0,0,0,0,0,0,0,\"\"," +
                               zeroMask + ".015,72\r\n");
  app_.reset();
  StartDesign();
  Design().Option("optCauer").Click();
  EXPECT_TRUE(D().Order == 9 && D().Apass == 0.015f && D().Astop == 72 && D().Stages == 9);
  Design().Option("opt200").Click();  // buttons again: snapped as ever
  Design().Option("optOrder7").Click();
  EXPECT_EQ(Design().LabelNamed("lblOtherDesign").Caption(), "Order 7, 0.2 dB ripple, 72 dB depth");
  Design().Option("optAstop40").Click();
  EXPECT_TRUE(D().ChosenRipple == 0 && D().Apass == 0.2f && D().Order == 7 && D().Astop == 40);
  EXPECT_EQ(Design().LabelNamed("lblOtherDesign").Caption(), "");
}

// The load's snap (open bounds) is narrower for 0.01 dB than a Cauer design's.
TEST_F(DesignPageTest, RippleSnapsAndStopbandEdgeBeforeACauerDesign) {
  const std::tuple<float, float, std::string> snaps[] = {{0.015f, 0.015f, ""},
                                                         {0.0105f, 0.01f, "opt01"},
                                                         {0.0499f, 0.044f, "opt044"},
                                                         {0.05f, 0.05f, ""},
                                                         {0.2001f, 0.2f, "opt200"}};
  for (auto [in, out, option] : snaps) {
    const RippleChoice* got = SnapRipple(in, SnapBounds::Load);
    EXPECT_EQ(std::string(got ? got->option : ""), option);
    EXPECT_EQ(in, out);
  }
  DesignPage& page = StartDesign();
  for (const auto& [typed, snapped] : {std::pair{0.015f, 0.01f}, {0.02f, 0.02f}}) {
    D().Apass = typed;
    page.ReadDesignInputs();
    EXPECT_EQ(D().Apass, snapped);
  }

  // The stopband edge comes from the table for odd Cauer orders only.
  page.Option("optCauer").Click();  // the Cauer routine may refuse
  EXPECT_EQ(D().CauerType, "C");
  ExpectGroups(page, true, true, true);
  for (const auto& m : platform.messages) EXPECT_EQ(m.title, kRunTimeErrorTitle);

  page.Box("txtBandwidth").SetText("1M");
  D().StopbandEdge = 123;
  const std::tuple<int16_t, float, float, double> edges[] = {{4, 60, 0.044f, 123},
                                                             {7, 45, 0.044f, 123},
                                                             {5, 60, 0.044f, 1e6 * 2.199},
                                                             {7, 50, 0.2f, 1e6 * 1.161}};
  for (auto [order, astop, apass, edge] : edges) {
    std::tie(D().Order, D().Astop, D().Apass) = std::tie(order, astop, apass);
    page.ReadDesignInputs();
    EXPECT_EQ(D().StopbandEdge, static_cast<float>(edge)) << order << " " << astop;
  }
  EXPECT_EQ(D().Qcap, kInfiniteQcap);
  EXPECT_EQ(D().Rstandard, D().Rsource);
  page.Option("optButterworth").Click();
  EXPECT_EQ(D().StopbandEdge, 0.0f);
}

// The record as a session of unusable values would leave it (the opening page
// turns such a file into defaults): every step of the load still runs, and
// only what the design it ends with reports is shown, once.
TEST_F(DesignPageTest, ALoadRunsEveryStepAndShowsAtMostOneMessage) {
  DesignPage& page = StartDesign();
  D().Order = 0, D().Rsource = 0;  // the first redesigns fail, the load mends both
  page.Load();
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(SelectedIn(page, "frmOrder"), Names{"optOrder5"});
  EXPECT_EQ(D().Rsource, 50.0f);

  D().Family = kCauer, D().Apass = 100;  // no Cauer design has a ripple above its depth
  const int redraws = page.SchematicRedraws();
  page.Load();
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, kRunTimeErrorTitle);
  EXPECT_EQ(SelectedIn(page, "frmStopbandDepth"), Names{"optAstop40"});
  EXPECT_EQ(page.LabelNamed("lblRipple").Caption(), "(ripple)");
  EXPECT_GT(page.SchematicRedraws(), redraws);
}

// An engine error in a nested event stops the outer one and shows once.
TEST(Controls, EngineErrorsAreShownOnceByTheOutermostEvent) {
  RecordingPlatform platform;
  ControlSet set(platform);
  Frame& frame = set.AddFrame("frm", "");
  OptionButton& inner = set.AddOption("optInner", "", &frame);
  CommandButton& outer = set.AddButton("cmdOuter", "");
  bool afterInner = false;
  inner.SetHandler([] { throw RunTimeError("Division by zero"); });
  outer.SetHandler([&] {
    inner.Select();
    afterInner = true;
  });
  EXPECT_TRUE(outer.Click());
  EXPECT_FALSE(afterInner);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "Division by zero");
  EXPECT_EQ(platform.messages[0].title, kRunTimeErrorTitle);
  EXPECT_FALSE(set.RunEvent([] { throw std::out_of_range("index"); }));
  EXPECT_TRUE(set.RunEvent([] {}));  // the guard is ready for the next event
}

}  // namespace
}  // namespace drenik::testing
