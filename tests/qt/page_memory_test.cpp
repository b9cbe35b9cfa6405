// The display page's drawing stays bounded however often the user retunes,
// toggles the side plots or switches the inductor values.
#include <gtest/gtest.h>

#include "pages/app_fixture.h"

namespace drenik::testing {
namespace {

class PageMemory : public AppTest {};

TEST_F(PageMemory, RepeatedButtonsDoNotGrowTheDisplayList) {
  StartDesign();
  Design().Button("cmdDesign").Click();
  const RecordingCanvas& page = App().DisplayCanvas();
  auto press = [&](const char* name) { Display().Controls().FindButton(name)->Click(); };
  auto round = [&] {
    press("cmdUp");
    press("cmdDown");
    press("cmdVSWR");
    press("cmdTime");
    press("cmdInductors");
    press("cmdInductors");
  };
  round();
  round();
  size_t settled = page.Ops().size();
  for (int k = 0; k < 10; ++k) round();
  // Up and Down change the values a little each round; the list may differ by
  // the odd curve segment, never by a round's worth of drawing (about 6000).
  EXPECT_LT(page.Ops().size(), settled + settled / 10) << settled;
}

}  // namespace
}  // namespace drenik::testing
