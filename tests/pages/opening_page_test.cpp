#include "pages/opening_page.h"

#include <gtest/gtest.h>

#include <cmath>

#include "app_fixture.h"

namespace drenik::testing {
namespace {

using OpeningPageTest = AppTest;

TEST_F(OpeningPageTest, LoadSetsIdentityConstantsAndReadsTheSession) {
  WriteSession("7,1E+10,1,.2,60,\"Linhighpass\",600,300");
  App().Start();
  EXPECT_EQ(App().CurrentPage(), PageId::Opening);
  EXPECT_EQ(D().ProgramTitle, "Drenik Filter Designer");
  EXPECT_EQ(D().Version, "2.12");
  EXPECT_EQ(D().Pi, static_cast<float>(4 * std::atan(1.0)));
  EXPECT_EQ(D().TwoPi, static_cast<float>(8 * std::atan(1.0)));
  ControlSet& c = App().Opening().Controls();
  EXPECT_EQ(c.FindLabel("lblHeading1")->Caption(), "Drenik Filter Designer");
  EXPECT_EQ(c.FindLabel("lblVersion")->Caption(), "Version 2.12");
  EXPECT_EQ(App().Opening().Caption(), "Drenik Filter Designer - Opening");
  EXPECT_EQ(D().Order, 7);
  EXPECT_EQ(D().Width, 1e10f);
  EXPECT_EQ(D().Qind, 300.0f);
  App().Opening().VisitUserGuide();
  EXPECT_EQ(platform.urls, std::vector<std::string>{"guide.html"});
}

TEST_F(OpeningPageTest, ExitEndsWithoutTouchingTheSessionFile) {
  const std::string line = "5,4500000,2,.044,40,\"Cinlowpass\",50,1000000";
  WriteSession(line);
  App().Start();
  App().Opening().Controls().FindButton("cmdExit")->Click();
  EXPECT_TRUE(platform.ended);
  EXPECT_EQ(App().CurrentPage(), PageId::Ended);
  EXPECT_EQ(ReadSession(), line + "\r\n");
}

// Without a session path (the command line) the file is neither read nor
// written.
TEST_F(OpeningPageTest, WithoutASessionPathTheFirstStartDefaultsApply) {
  WriteSession("7,1E+10,1,.2,60,\"Linhighpass\",600,300");
  Application app(platform, ApplicationOptions{"", ""});
  app.Start();
  EXPECT_EQ(app.Record().Order, 5);
  EXPECT_EQ(app.Record().Width, 4.2e6f);
  app.EndProgram(true);
  EXPECT_EQ(ReadSession(), "7,1E+10,1,.2,60,\"Linhighpass\",600,300\r\n");
}

}  // namespace
}  // namespace drenik::testing
