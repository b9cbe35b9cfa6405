#include "pages/schematic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "plot/recording_canvas.h"

namespace drenik {
namespace {

DesignRecord Ladder(std::initializer_list<int> types) {
  DesignRecord d;
  d.Pi = 3.14159265f;
  d.TwoPi = 6.2831853f;
  d.Rsource = d.Rload = 50;
  for (int t : types) {
    int j = ++d.Stages;
    d.ElementType[j] = static_cast<int16_t>(t);
    d.L[j] = 1e-6f * static_cast<float>(j);
    d.C[j] = 1e-10f * static_cast<float>(j);
  }
  return d;
}

std::vector<DrawOp> Ops(const RecordingCanvas& c, DrawOp::Kind kind) {
  std::vector<DrawOp> out;
  std::copy_if(c.Ops().begin(), c.Ops().end(), std::back_inserter(out),
               [&](const DrawOp& op) { return op.kind == kind; });
  return out;
}

bool HasText(const RecordingCanvas& c, const std::string& text, int32_t color = -1) {
  for (const DrawOp& op : Ops(c, DrawOp::Kind::Text))
    if (op.text == text && (color < 0 || op.color == color)) return true;
  return false;
}

TEST(Schematic, WidthsAndCentringOfTheDesignStrip) {
  DesignRecord d = Ladder({1, 1, 1, 1, 1, 1, 1});
  RecordingCanvas c;
  c.Line(11000, 3000, 11500, 3000);  // left over from a longer ladder
  RedrawSchematic(d, c);
  EXPECT_FLOAT_EQ(d.SchematicWidth, 8100);
  const DrawOp& clear = c.Ops().front();  // a white box over the whole strip
  EXPECT_TRUE(clear.kind == DrawOp::Kind::Box && clear.color == kWhite && clear.x2 > 11500);
  float railLeft = 1e9f;  // the rails start at 950, the load ends at 950 + 8100
  for (const DrawOp& op : Ops(c, DrawOp::Kind::Line)) {
    if (op.y1 == 1400 && op.y2 == 1400) railLeft = std::min({railLeft, op.x1, op.x2});
  }
  EXPECT_FLOAT_EQ(railLeft, 950);
  EXPECT_FLOAT_EQ(d.X, 9050);
  EXPECT_EQ(d.ValueMode, 1);

  // Kinds 5 and 8 draw nothing and add no width.
  DesignRecord gaps = Ladder({4, 5, 1, 8, 4});
  EXPECT_FLOAT_EQ(ComputeSchematicWidth(gaps), 1380 + 640 + 960 + 640);
  for (int kind : {5, 8, 17}) {
    RecordingCanvas empty;
    DrawElement(gaps, empty, kind, 1e-6f, 1e-9f);
    EXPECT_TRUE(empty.Ops().empty() && gaps.X == 0) << kind;
  }
}

// Each kind advances by its width, stays inside it, joins the upper rail at
// both ends; shunt kinds reach the ground rail.
TEST(Schematic, EachKindAdvancesByItsWidthAndStaysInside) {
  const std::tuple<int, float, bool> kinds[] = {{1, 960, false}, {2, 640, true}, {3, 680, false},
                                                {4, 640, true},  {6, 960, true}, {7, 960, false}};
  for (auto [type, width, shunt] : kinds) {
    SCOPED_TRACE(type);
    DesignRecord d = Ladder({});
    d.X = 3000;
    d.Y = 1400;
    RecordingCanvas c;
    DrawElement(d, c, type, 2.2e-6f, 4.7e-10f, false);
    EXPECT_FLOAT_EQ(d.X, 3000 + width);
    EXPECT_TRUE(Ops(c, DrawOp::Kind::Text).empty());
    float left = 1e9f, right = -1e9f;  // extent of the strokes
    bool groundJoin = false, upperLeft = false, upperRight = false;
    for (const DrawOp& op : c.Ops()) {
      if (op.kind != DrawOp::Kind::Line && op.kind != DrawOp::Kind::Arc) continue;
      const float r = op.kind == DrawOp::Kind::Arc ? op.radius : 0;
      left = std::min({left, op.x1 - r, op.kind == DrawOp::Kind::Line ? op.x2 : left});
      right = std::max({right, op.x1 + r, op.kind == DrawOp::Kind::Line ? op.x2 : right});
      if (op.kind != DrawOp::Kind::Line) continue;
      groundJoin |=
          op.x1 == op.x2 && std::max(op.y1, op.y2) == 2440 && std::min(op.y1, op.y2) > 1400;
      if (op.y1 == 1400 && op.y2 == 1400) {
        upperLeft |= std::min(op.x1, op.x2) == 3000;
        upperRight |= std::max(op.x1, op.x2) == 3000 + width;
      }
    }
    EXPECT_TRUE(left >= 3000 && right <= 3000 + width) << left << " " << right;
    EXPECT_EQ(groundJoin, shunt);
    EXPECT_TRUE(upperLeft && upperRight);
  }
}

TEST(Schematic, LoadValueAndNoteOnlyForUnequalTerminations) {
  DesignRecord even = Ladder({4, 1, 4, 1});
  even.Rload = 12.5f;
  RecordingCanvas c;
  RedrawSchematic(even, c);
  EXPECT_TRUE(HasText(c, FormatValue(12.5), 0x111199));
  EXPECT_TRUE(HasText(c, "(Even-ordered") && HasText(c, "Chebyshev)"));

  DesignRecord odd = Ladder({4, 1, 4, 1, 4});
  RecordingCanvas c2;
  RedrawSchematic(odd, c2);  // equal terminations
  EXPECT_FALSE(HasText(c2, "(Even-ordered") || HasText(c2, "Chebyshev)"));
  for (const DrawOp& op : Ops(c2, DrawOp::Kind::Text)) EXPECT_EQ(op.color, kBlack) << op.text;
}

// Each value mode prints in its own row and colour; redrawing does not grow.
TEST(Schematic, LabelRowsResonanceAndBoundedRedraw) {
  DesignRecord d = Ladder({4, 7, 4, 6, 1});
  RecordingCanvas c;
  for (int16_t mode : {1, 2, 3}) {
    d.ValueMode = mode;
    DrawDisplaySchematic(d, c);
  }
  double f = 1 / (2 * 3.14159265 * std::sqrt(4e-6 * 4e-10));
  EXPECT_NEAR(d.ResonantFrequency, f, f * 1e-5);
  // Series inductor at position 5: rows 330, 530, 730 above the rail.
  const float x5 = d.SchematicWidth / -2 + 5000 + 580 + 640 + 960 + 640 + 960;
  std::vector<std::pair<float, int32_t>> rows;
  for (const DrawOp& op : Ops(c, DrawOp::Kind::Text))
    if (op.x1 == x5 + 40) rows.emplace_back(op.y1, op.color);
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(rows, (std::vector<std::pair<float, int32_t>>{
                      {1400.f - 730, kRed}, {1400.f - 530, kBlue}, {1400.f - 330, kBlack}}));
  size_t settled = c.Ops().size();
  for (int k = 0; k < 30; ++k) {
    d.ValueMode = static_cast<int16_t>(1 + k % 3);
    DrawDisplaySchematic(d, c);
  }
  EXPECT_EQ(c.Ops().size(), settled);
}

}  // namespace
}  // namespace drenik
