#include "pages/controls.h"

#include <gtest/gtest.h>

#include "core/runtime_error.h"
#include "support/recording_platform.h"

namespace drenik {
namespace {

using testing::RecordingPlatform;

TEST(Controls, OptionsOfOneFrameExcludeEachOtherAndAlwaysRunTheirHandler) {
  RecordingPlatform platform;
  ControlSet set(platform);
  Frame& a = set.AddFrame("frmA", "A");
  Frame& b = set.AddFrame("frmB", "B");
  OptionButton& a1 = set.AddOption("optA1", "1", &a);
  OptionButton& a2 = set.AddOption("optA2", "2", &a);
  OptionButton& b1 = set.AddOption("optB1", "1", &b);
  int runs = 0;
  a1.SetHandler([&] { ++runs; });

  b1.Select();
  a1.Select();
  a1.Select();  // already selected: the handler still runs, as a click's does
  EXPECT_EQ(runs, 2);
  EXPECT_TRUE(a1.Selected());
  EXPECT_TRUE(b1.Selected());
  a2.Select();
  EXPECT_FALSE(a1.Selected());
  EXPECT_TRUE(b1.Selected());

  a.SetEnabled(false);  // a disabled frame refuses the user's clicks
  EXPECT_FALSE(a1.Click());
  EXPECT_TRUE(a2.Selected());
  a1.Select();  // code still may select
  EXPECT_EQ(runs, 3);

  set.ResetToDefaults();
  EXPECT_FALSE(a1.Selected());
  EXPECT_TRUE(a.Enabled());
}

TEST(Controls, TextChangeHandlerRunsOnlyOnARealChange) {
  RecordingPlatform platform;
  ControlSet set(platform);
  TextBox& box = set.AddTextBox("txtA", "50");
  int runs = 0;
  box.SetChangeHandler([&] { ++runs; });
  box.SetText("50");
  EXPECT_EQ(runs, 0);
  box.SetText("75");
  box.SetText("75");
  EXPECT_EQ(runs, 1);
  box.SetEnabled(false);
  EXPECT_FALSE(box.Type("1"));
  EXPECT_EQ(box.Text(), "75");
  set.ResetToDefaults();
  EXPECT_EQ(box.Text(), "50");
  EXPECT_EQ(runs, 1);  // going back to the design-time text is not typing
}

// An engine error inside a nested event stops the whole outer event and is
// shown once, by the outermost one.
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
  EXPECT_EQ(platform.messages.size(), 2u);
  EXPECT_TRUE(set.RunEvent([] {}));  // the guard is ready for the next event
}

}  // namespace
}  // namespace drenik
