#include "pages/schematic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "pages/band_schematic.h"
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

// The strip is cleared first, the ladder centred on x = 5000; kinds without a
// drawing add nothing.
TEST(Schematic, StripClearedCentredAndUndrawnKindsSkipped) {
  DesignRecord d = Ladder({1, 1, 1, 1, 1, 1, 1});
  RecordingCanvas c;
  c.Line(11000, 3000, 11500, 3000);  // left over from a longer ladder
  RedrawSchematic(d, c);
  const DrawOp& clear = c.Ops().front();  // a white box over the whole strip
  EXPECT_TRUE(clear.kind == DrawOp::Kind::Box && clear.color == kWhite && clear.x2 > 11500);
  float left = 1e9f, right = -1e9f;
  for (const DrawOp& op : Ops(c, DrawOp::Kind::Line))
    left = std::min({left, op.x1, op.x2}), right = std::max({right, op.x1, op.x2});
  EXPECT_NEAR((left + right) / 2, 5000, 200);  // the load's texts stand right of it
  EXPECT_EQ(d.ValueMode, 1);

  DesignRecord gaps = Ladder({4, 5, 1, 8, 4});
  DesignRecord same = Ladder({4, 1, 4});
  EXPECT_EQ(ComputeSchematicWidth(gaps), ComputeSchematicWidth(same));
  for (int kind : {5, 8, 17}) {
    RecordingCanvas empty;
    DrawElement(gaps, empty, kind, 1e-6f, 1e-9f);
    EXPECT_TRUE(empty.Ops().empty() && gaps.X == 0) << kind;
  }
  // In a band design they are its series branch and its tank.
  gaps.Center = 7e6f;
  EXPECT_EQ(ComputeSchematicWidth(gaps), ComputeSchematicWidth(same) + 1120 + 720);
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
  // The series inductor's value (its only text above the rail) in three rows,
  // black nearest the rail, then blue, then red.
  std::vector<std::pair<float, int32_t>> rows;
  for (const DrawOp& op : Ops(c, DrawOp::Kind::Text))
    if (op.y1 < 1400 && op.text == FormatInductance(5e-6f)) rows.emplace_back(op.y1, op.color);
  std::sort(rows.begin(), rows.end());
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_TRUE(rows[0].second == kRed && rows[1].second == kBlue && rows[2].second == kBlack);
  size_t settled = c.Ops().size();
  for (int k = 0; k < 30; ++k) {
    d.ValueMode = static_cast<int16_t>(1 + k % 3);
    DrawDisplaySchematic(d, c);
  }
  EXPECT_EQ(c.Ops().size(), settled);
}

// A band ladder (a Cauer arm split into two tanks, with tanks and shunt pairs
// side by side) prints every value of each label row once, in that row's
// colour; its places follow from the kinds alone, so the rows of other
// values land on the same places, and two ladders of the same kinds lay out
// alike whatever their values.
TEST(Schematic, BandLadderPrintsEveryValueOnceInPlacesOfItsKinds) {
  DesignRecord d = Ladder({8, 7, 7, 8, 3, 8});
  d.Topology = "Cinbandpass";
  d.Center = 7e6f;
  RecordingCanvas c;
  for (int16_t mode : {1, 2}) {
    d.ValueMode = mode;
    for (int j = 1; j <= d.Stages; ++j) d.C[j] *= mode == 2 ? 1.5f : 1;
    DrawDisplaySchematic(d, c);
    for (int j = 1; j <= d.Stages; ++j) {
      const int32_t color = mode == 1 ? kBlack : kBlue;
      int count = 0;
      for (const DrawOp& op : Ops(c, DrawOp::Kind::Text))
        count += op.color == color && op.text == FormatCapacitance(d.C[j]);
      EXPECT_EQ(count, 1) << j << " " << FormatCapacitance(d.C[j]);
      EXPECT_EQ(HasText(c, FormatInductance(d.L[j]), color), d.ElementType[j] != 3) << j;
    }
  }
  EXPECT_EQ(d.Y, kBandRailY);
  DesignRecord other = d;
  for (int j = 1; j <= d.Stages; ++j) other.L[j] *= 1e3f, other.C[j] /= 7;
  const BandLayout a = LayOutBandLadder(d), b = LayOutBandLadder(other);
  ASSERT_EQ(a.parts.size(), 6u);
  for (size_t k = 0; k < a.parts.size(); ++k) EXPECT_EQ(a.parts[k].x, b.parts[k].x);
  EXPECT_EQ(a.right, b.right);

  // Redrawing with changing values (Up 1%, Down 1%) does not grow the page.
  const size_t settled = c.Ops().size();
  for (int k = 0; k < 30; ++k) {
    d.ValueMode = static_cast<int16_t>(1 + k % 2);
    for (int j = 1; j <= d.Stages; ++j) d.C[j] *= k % 4 < 2 ? 1.01f : 1 / 1.01f;
    DrawDisplaySchematic(d, c);
  }
  EXPECT_LE(c.Ops().size(), settled + 60);  // the last round's new texts

  // The design page's strip: everything inside it, the note of an unequal
  // load right of the resistor with the load's value.
  d.Rload = 25;
  RecordingCanvas strip;
  RedrawSchematic(d, strip);
  for (const DrawOp& op : strip.Ops()) {
    const bool inside = op.x1 >= 100 && op.x1 < 12000 && op.y1 > 400 && op.y1 < 3500;
    EXPECT_TRUE(op.kind == DrawOp::Kind::Box || inside) << op.text;
  }
  EXPECT_TRUE(HasText(strip, "(Even-ordered") && HasText(strip, FormatValue(25), 0x111199));
}

}  // namespace
}  // namespace drenik
