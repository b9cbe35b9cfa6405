// The display page of every family and topology in all three value rows: no
// two texts overlap, no erase box drawn later cuts into a text, no text runs
// into the plot rectangle, and the page stays within 12000 x 9000.
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
  size_t index;  // in the page's operations
};

bool Overlap(const Box& a, const Box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The glyphs' area of each text (cap height to descender).
std::vector<Box> TextBoxes(const RecordingCanvas& page) {
  std::vector<Box> out;
  const auto& ops = page.Ops();
  for (size_t i = 0; i < ops.size(); ++i) {
    const DrawOp& op = ops[i];
    if (op.kind == DrawOp::Kind::Text && !op.text.empty())
      out.push_back({op.x1, op.y1 + op.fontSize * 3, op.x1 + op.textWidth,
                     op.y1 + op.fontSize * 20 * 1.05f, op.text, i});
  }
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
          testing::DrawInductorCurves(d, page);
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
          for (size_t j = 0; j < i; ++j)
            EXPECT_FALSE(Overlap(a, boxes[j])) << "'" << a.text << "' and '" << boxes[j].text;
          for (size_t k = a.index + 1; k < page.Ops().size(); ++k) {
            const DrawOp& op = page.Ops()[k];
            if (op.kind != DrawOp::Kind::Box) continue;
            Box erase{std::min(op.x1, op.x2),
                      std::min(op.y1, op.y2),
                      std::max(op.x1, op.x2),
                      std::max(op.y1, op.y2),
                      "",
                      k};
            EXPECT_FALSE(Overlap(a, erase))
                << "'" << a.text << "' cut by a box at " << op.x1 << ", " << op.y1;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace drenik
