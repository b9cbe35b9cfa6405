// The display page of every family and topology, as the load draws it: no
// two texts overlap, no text runs into the plot rectangle, and the page
// stays within 12000 x 9000.
#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <vector>

#include "plot/recording_canvas.h"
#include "plot/response_plot.h"
#include "qt/display_fixture.h"
#include "qt/painter_canvas.h"

namespace drenik {
namespace {

struct Box {
  float left, top, right, bottom;
  std::string text;
};

std::vector<Box> TextBoxes(const RecordingCanvas& page) {
  std::vector<Box> out;
  for (const DrawOp& op : page.Ops())
    if (op.kind == DrawOp::Kind::Text && !op.text.empty())
      out.push_back({op.x1, op.y1 + op.fontSize * 3, op.x1 + op.textWidth,
                     op.y1 + op.fontSize * 20 * 1.05f, op.text});
  return out;
}

TEST(DisplayLayout, TextsNeverCollideForAnyFamilyOrTopology) {
  PrepareQtDrawing();
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    for (int16_t family = 1; family <= 5; ++family) {
      for (int16_t order : {3, 6, 7}) {
        SCOPED_TRACE(std::string(topology) + " family " + std::to_string(family) + " order " +
                     std::to_string(order));
        DesignRecord d = testing::FirstStartDesign(family, order);
        d.Topology = topology;
        d.Rload = family == kChebyshev && order % 2 == 0 ? 25 : 50;
        d.ShowVSWR = 1;
        d.ShowDelay = 1;
        RecordingCanvas page;
        try {
          testing::DrawDisplayPageLoad(d, page);
        } catch (const std::exception&) {
          continue;  // a design the engine refuses (the design page never offers it)
        }
        std::vector<Box> boxes = TextBoxes(page);
        for (size_t i = 0; i < boxes.size(); ++i) {
          const Box& a = boxes[i];
          EXPECT_GE(a.left, 0) << a.text;
          EXPECT_LE(a.right, kPageWidth) << a.text;
          EXPECT_LE(a.bottom, kPageHeight) << a.text;
          bool inPlot = a.right > kPlotLeft && a.left < kPlotRight && a.bottom > kPlotTop &&
                        a.top < kPlotBottom;
          EXPECT_FALSE(inPlot) << a.text;
          for (size_t j = 0; j < i; ++j) {
            const Box& b = boxes[j];
            bool overlap =
                a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
            EXPECT_FALSE(overlap) << "'" << a.text << "' and '" << b.text << "'";
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace drenik
