// The design-from-a-mask page without a window: its boxes become the
// search's request, and a design handed to the pages comes out as chosen,
// beyond the design page's buttons, as a band and with stock parts.
#include "app_fixture.h"
#include "pages/other_design.h"
#include "synthesis/families.h"

namespace drenik::testing {
namespace {

class SynthPageTest : public AppTest {
 protected:
  SynthPage& Open() {
    StartDesign();
    App().ShowSynthPage();
    return App().Synth();
  }
  void Type(const char* box, const std::string& text) {
    App().Synth().Controls().FindTextBox(box)->Type(text);
  }
};

TEST_F(SynthPageTest, TheBoxesAndTicksBecomeTheRequest) {
  SynthPage& page = Open();
  D().Qind = 250;  // the part models the build takes are the design's when the page opens
  App().ShowSynthPage();
  ControlSet& c = page.Controls();
  c.FindOption("optHighpass")->Click();
  Type("txtImpedance", "75");
  Type("txtPassEdge", "3.5M");
  Type("txtPassRl", "18");
  Type("txtPassIl", "");
  Type("txtStopFreq1", "1.9M");
  Type("txtStopDepth1", "40");
  for (const char* box : {"txtStopFreq2", "txtStopDepth2", "txtStopFreq3", "txtStopDepth3"})
    Type(box, "");
  Type("txtCtol", "2");
  Type("txtLtol", "10");
  Type("txtTrials", "0.3k");
  c.FindOption("optInductors")->Click();
  for (const char* family : {"chkbutterworth", "chkcauer", "chkbessel", "chklegendre"})
    c.FindCheckBox(family)->Click();
  c.FindCheckBox("chkLinhighpass")->Click();
  c.FindCheckBox("chkStock")->Click();
  SynthRequest r;
  ASSERT_EQ(page.ReadRequest(r), "");
  EXPECT_EQ(r.response, SynthResponse::Highpass);
  EXPECT_EQ(r.rsource, 75);
  EXPECT_EQ(r.mask.passEdge, 3.5e6);
  ASSERT_EQ(r.mask.stops.size(), 1u);
  EXPECT_EQ(r.mask.stops[0].frequency, 1.9e6);
  EXPECT_EQ(r.build.ctolPercent, 2);
  EXPECT_EQ(r.build.ltolPercent, 10);
  EXPECT_EQ(r.build.qind, 250);
  EXPECT_TRUE(r.build.parts.has_value());
  EXPECT_EQ(r.goal.prefer, SynthPreference::Inductors);
  EXPECT_EQ(r.goal.trials, 300);
  EXPECT_EQ(r.goal.families, std::vector<int16_t>{kChebyshev});
  EXPECT_EQ(r.goal.topologies, std::vector<std::string>{"Cinhighpass"});

  // Nothing ticked is no search.
  c.FindCheckBox("chkCinhighpass")->Click();
  c.FindButton("cmdSearch")->Click();
  EXPECT_FALSE(page.Running());
  EXPECT_EQ(c.FindLabel("lblFault")->Caption(), "Tick at least one topology to search.");
}

TEST_F(SynthPageTest, AUsedDesignReachesTheDesignAndDisplayPages) {
  Open();
  // Beyond the design page's buttons: the page names it, the record holds it.
  const DesignChoice beyond{.family = kChebyshev,
                            .order = 9,
                            .ripple = 0.0173,
                            .topology = "Linlowpass",
                            .width = 7.34567e6,
                            .rsource = 75};
  App().UseDesign(beyond, std::nullopt);
  EXPECT_EQ(App().CurrentPage(), PageId::Display);
  EXPECT_EQ(D().Order, 9);
  EXPECT_EQ(D().Apass, 0.0173f);
  EXPECT_EQ(D().Width, 7.34567e6f);
  EXPECT_EQ(D().Rsource, 75);
  EXPECT_EQ(D().Topology, "Linlowpass");
  EXPECT_EQ(BeyondButtonsCaption(D()), "Order 9, 0.0173 dB ripple");

  // A band by its centre and width, with stock parts: the chosen-parts stage.
  const DesignChoice band{.family = kChebyshev,
                          .order = 3,
                          .ripple = 0.1,
                          .topology = "Cinbandpass",
                          .width = 0.3e6,
                          .center = 7.15e6};
  App().UseDesign(band, PartsRequest{});
  EXPECT_EQ(App().CurrentPage(), PageId::Display);
  EXPECT_EQ(D().Center, 7.15e6f);
  EXPECT_EQ(D().Width, 0.3e6f);
  EXPECT_EQ(D().ValueMode, kChosenPartsMode);
  EXPECT_TRUE(platform.messages.empty()) << platform.messages.front().text;
}

}  // namespace
}  // namespace drenik::testing
