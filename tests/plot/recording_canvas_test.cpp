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

TEST(RecordingCanvas, PrintKeepsColourFontAndMovesToNextLine) {
  RecordingCanvas canvas;
  canvas.SetForeColor(kBlue);
  canvas.SetFont("Times New Roman", 12, true);
  canvas.SetTextPosition(500, 6100);
  canvas.Print("Cursor on plot");
  const DrawOp& op = canvas.Ops().back();
  EXPECT_EQ(op.text, "Cursor on plot");
  EXPECT_EQ(op.color, kBlue);
  EXPECT_EQ(op.fontFamily, "Times New Roman");
  EXPECT_FLOAT_EQ(op.x1, 500);
  EXPECT_GT(canvas.TextY(), 6100);
  EXPECT_GT(canvas.TextWidth("MMMM"), canvas.TextWidth("iiii"));
}

}  // namespace
}  // namespace drenik
