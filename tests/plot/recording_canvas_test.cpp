#include "plot/recording_canvas.h"

#include <gtest/gtest.h>

namespace drenik {
namespace {

// An opaque box drops what it hides completely and keeps what sticks out, so
// a page redrawn again and again does not grow its display list.
TEST(RecordingCanvas, OpaqueBoxDropsHiddenOperations) {
  RecordingCanvas canvas;
  canvas.Line(3100, 4100, 7900, 7900);  // inside the plot
  canvas.Line(2900, 4100, 7900, 7900);  // sticks out on the left
  canvas.FilledBox(3000, 4000, 8000, 8000, kWhite);
  ASSERT_EQ(canvas.Ops().size(), 2u);
  EXPECT_EQ(canvas.Ops()[0].x1, 2900);
  EXPECT_EQ(canvas.Ops()[1].kind, DrawOp::Kind::Box);

  for (int i = 0; i < 1000; ++i) {
    canvas.FilledBox(3000, 4000, 8000, 8000, kWhite);
    canvas.Line(3500, 4500, 7000, 7000);
  }
  EXPECT_LE(canvas.Ops().size(), 4u);
}

// Drawing the same thing again at the same place replaces it; the same
// geometry in another colour is kept.
TEST(RecordingCanvas, RedrawAtTheSamePlaceReplaces) {
  RecordingCanvas canvas;
  for (int k = 0; k < 3; ++k) {
    canvas.Line(0, 0, 100, 100);
    canvas.Arc(50, 50, 80, 0, 3.14f);
    canvas.SetTextPosition(10, 10);
    canvas.Print("50");
  }
  canvas.SetForeColor(kBlue);
  canvas.Line(0, 0, 100, 100);
  ASSERT_EQ(canvas.Ops().size(), 4u);
  EXPECT_EQ(canvas.Ops()[2].text, "50");
  EXPECT_EQ(canvas.Ops()[3].color, kBlue);
}

}  // namespace
}  // namespace drenik
