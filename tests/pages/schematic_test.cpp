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
  d.Rsource = 50;
  d.Rload = 50;
  int j = 0;
  for (int t : types) {
    ++j;
    d.ElementType[j] = static_cast<int16_t>(t);
    d.L[j] = 1e-6f * static_cast<float>(j);
    d.C[j] = 1e-10f * static_cast<float>(j);
  }
  d.Stages = static_cast<int16_t>(j);
  return d;
}

std::vector<DrawOp> TextsOf(const RecordingCanvas& c) {
  std::vector<DrawOp> out;
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Text) out.push_back(op);
  return out;
}

const DrawOp* FindText(const RecordingCanvas& c, const std::string& text) {
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Text && op.text == text) return &op;
  return nullptr;
}

// Horizontal extent of the strokes (lines and arcs) of a drawing.
void StrokeExtent(const RecordingCanvas& c, float& left, float& right) {
  left = 1e9f;
  right = -1e9f;
  for (const DrawOp& op : c.Ops()) {
    if (op.kind == DrawOp::Kind::Line) {
      left = std::min({left, op.x1, op.x2});
      right = std::max({right, op.x1, op.x2});
    } else if (op.kind == DrawOp::Kind::Arc) {
      left = std::min(left, op.x1 - op.radius);
      right = std::max(right, op.x1 + op.radius);
    }
  }
}

TEST(Schematic, WidthsAndCentringOfTheDesignStrip) {
  DesignRecord d = Ladder({1, 1, 1, 1, 1, 1, 1});
  RecordingCanvas c;
  c.Line(11000, 3000, 11500, 3000);  // left over from a longer ladder
  RedrawSchematic(d, c);
  EXPECT_FLOAT_EQ(d.SchematicWidth, 8100);
  const DrawOp& clear = c.Ops().front();
  ASSERT_EQ(clear.kind, DrawOp::Kind::Box);
  EXPECT_EQ(clear.color, kWhite);
  EXPECT_FLOAT_EQ(clear.x1, 1);
  EXPECT_FLOAT_EQ(clear.y2, 3500);
  EXPECT_FLOAT_EQ(clear.x2, 12090);
  // The rails start at 950 and the load ends the drawing at 950 + 8100.
  float railLeft = 1e9f;
  for (const DrawOp& op : c.Ops())
    if (op.kind == DrawOp::Kind::Line && op.y1 == 1400 && op.y2 == 1400)
      railLeft = std::min(railLeft, std::min(op.x1, op.x2));
  EXPECT_FLOAT_EQ(railLeft, 950);
  EXPECT_FLOAT_EQ(d.X, 9050);
  EXPECT_EQ(d.ValueMode, 1);

  // Kinds 5 and 8 draw nothing and add no width.
  DesignRecord gaps = Ladder({4, 5, 1, 8, 4});
  EXPECT_FLOAT_EQ(ComputeSchematicWidth(gaps), 1380 + 640 + 960 + 640);
  for (int kind : {5, 8, 17}) {
    RecordingCanvas empty;
    gaps.X = 2000;
    DrawElement(gaps, empty, kind, 1e-6f, 1e-9f);
    EXPECT_TRUE(empty.Ops().empty());
    EXPECT_FLOAT_EQ(gaps.X, 2000);
  }
}

// Every kind advances the pen by its width, keeps its strokes inside it and
// joins both rails at both ends; shunt kinds reach the ground rail.
TEST(Schematic, EachKindAdvancesByItsWidthAndStaysInside) {
  struct Kind {
    int type;
    float width;
    bool shunt;
  };
  for (Kind k : {Kind{1, 960, false}, Kind{2, 640, true}, Kind{3, 680, false}, Kind{4, 640, true},
                 Kind{6, 960, true}, Kind{7, 960, false}}) {
    SCOPED_TRACE(k.type);
    DesignRecord d = Ladder({});
    d.X = 3000;
    d.Y = 1400;
    RecordingCanvas c;
    DrawElement(d, c, k.type, 2.2e-6f, 4.7e-10f, false);
    EXPECT_FLOAT_EQ(d.X, 3000 + k.width);
    EXPECT_TRUE(TextsOf(c).empty());
    float left, right;
    StrokeExtent(c, left, right);
    EXPECT_GE(left, 3000);
    EXPECT_LE(right, 3000 + k.width);
    bool groundJoin = false, upperLeft = false, upperRight = false;
    for (const DrawOp& op : c.Ops()) {
      if (op.kind != DrawOp::Kind::Line) continue;
      if (op.x1 == op.x2 && std::max(op.y1, op.y2) == 2440 && std::min(op.y1, op.y2) > 1400)
        groundJoin = true;
      if (op.y1 == 1400 && op.y2 == 1400) {
        upperLeft |= std::min(op.x1, op.x2) == 3000;
        upperRight |= std::max(op.x1, op.x2) == 3000 + k.width;
      }
    }
    EXPECT_EQ(groundJoin, k.shunt);
    EXPECT_TRUE(upperLeft && upperRight);
  }
}

TEST(Schematic, LoadValueAndNoteOnlyForUnequalTerminations) {
  DesignRecord even = Ladder({4, 1, 4, 1});
  even.Rload = 12.5f;
  RecordingCanvas c;
  RedrawSchematic(even, c);
  const DrawOp* value = FindText(c, FormatValue(12.5));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->color, 0x111199);
  const DrawOp* note1 = FindText(c, "(Even-ordered");
  const DrawOp* note2 = FindText(c, "Chebyshev)");
  ASSERT_TRUE(note1 && note2);
  EXPECT_FLOAT_EQ(note1->x1 - note2->x1, 200);
  EXPECT_FLOAT_EQ(note1->y1 - note2->y1, 260);
  EXPECT_FLOAT_EQ(note1->y1, 1400 - 700);
  EXPECT_FLOAT_EQ(value->y1, 1400 - 100);
  EXPECT_FLOAT_EQ(note1->x1 - value->x1, 660);

  DesignRecord odd = Ladder({4, 1, 4, 1, 4});
  RecordingCanvas c2;
  RedrawSchematic(odd, c2);
  EXPECT_EQ(FindText(c2, "(Even-ordered"), nullptr);
  EXPECT_EQ(FindText(c2, "Chebyshev)"), nullptr);
  for (const DrawOp& op : TextsOf(c2)) EXPECT_EQ(op.color, kBlack) << op.text;
}

// The display page prints each value mode in its own row and colour over the
// same ladder; values are erased by their box before printing, resonant
// branches print and keep their resonance, and redrawing does not grow the
// drawing.
TEST(Schematic, LabelRowsResonanceAndBoundedRedraw) {
  DesignRecord d = Ladder({4, 7, 4, 6, 1});
  RecordingCanvas c;
  d.ValueMode = 1;
  DrawDisplaySchematic(d, c);
  size_t afterFirst = c.Ops().size();
  double f = 1 / (2 * 3.14159265 * std::sqrt(4e-6 * 4e-10));
  EXPECT_NEAR(d.ResonantFrequency, f, f * 1e-5);
  for (int16_t mode : {2, 3}) {
    d.ValueMode = mode;
    DrawDisplaySchematic(d, c);
  }
  const float x0 = d.SchematicWidth / -2 + 5000 + 580;  // first element
  // Series inductor at position 5: rows 330, 530, 730 above the rail.
  float x5 = x0 + 640 + 960 + 640 + 960;
  std::vector<std::pair<float, int32_t>> rows;
  for (const DrawOp& op : TextsOf(c))
    if (op.x1 == x5 + 40) rows.emplace_back(op.y1, op.color);
  std::sort(rows.begin(), rows.end());
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0], std::make_pair(1400.f - 730, kRed));
  EXPECT_EQ(rows[1], std::make_pair(1400.f - 530, kBlue));
  EXPECT_EQ(rows[2], std::make_pair(1400.f - 330, kBlack));
  // Each value is printed over its white box: 1000 wide for the series
  // inductor, 940 for a resonance.
  const auto& ops = c.Ops();
  for (size_t i = 1; i < ops.size(); ++i) {
    float width = ops[i].x1 == x5 + 40 ? 1000 : ops[i].y1 >= 1400 + 1600 ? 940 : 0;
    if (ops[i].kind != DrawOp::Kind::Text || width == 0) continue;
    EXPECT_EQ(ops[i - 1].kind, DrawOp::Kind::Box);
    EXPECT_EQ(ops[i - 1].x2 - ops[i].x1, width);
  }
  // Ten more rounds of redraws in all rows leave the list as it was.
  size_t settled = c.Ops().size();
  EXPECT_GT(settled, afterFirst);
  for (int k = 0; k < 30; ++k) {
    d.ValueMode = static_cast<int16_t>(1 + k % 3);
    DrawDisplaySchematic(d, c);
  }
  EXPECT_EQ(c.Ops().size(), settled);
}

TEST(Schematic, SampleLadderHasSixSymbolsWithoutValues) {
  DesignRecord d = Ladder({});
  RecordingCanvas c;
  DrawSampleLadder(d, c);
  EXPECT_TRUE(TextsOf(c).empty());
  float left, right;
  StrokeExtent(c, left, right);
  EXPECT_FLOAT_EQ(left, 3400);
  EXPECT_FLOAT_EQ(d.X, 3400 + 960 + 640 + 680 + 640 + 960 + 960);
  EXPECT_FLOAT_EQ(d.Y, 2500);
  int arcs = 0;
  for (const DrawOp& op : c.Ops()) arcs += op.kind == DrawOp::Kind::Arc;
  EXPECT_EQ(arcs, 4 * 3);  // four coils
}

}  // namespace
}  // namespace drenik
