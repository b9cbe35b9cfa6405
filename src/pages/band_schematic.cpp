#include "pages/band_schematic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "core/element_kinds.h"
#include "core/formatters.h"
#include "pages/schematic.h"
#include "pages/schematic_parts.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"
#include "synthesis/topologies.h"

namespace drenik {

using namespace schematic_parts;

namespace {

// Room between two slots of a band, and the shortest wire between parts.
constexpr float kSlotGap = 60;
constexpr float kLead = 120;
constexpr float kRowPitch = 150;  // one line of 6.5-point text
constexpr float kSourceLabelRight = 620;
constexpr float kSourceEnd = 580;  // the source's resistor and its two wire steps
constexpr float kSourceCircle = 190;
// Right ends of the load's value and of its note, from the resistor.
constexpr float kLoadValueRight = 70 + 620;
constexpr float kLoadNoteRight = 70 + 760;
constexpr float kResistorTeeth = 60;

// Top of each band's first row below the upper rail, the rows counting away
// from the rails: above the rail upwards from just over the plates (120 up),
// between the rails from under a tank's capacitor path (down to 360).
constexpr std::array<float, kBandRegions> kFirstRow = {-140 - kRowPitch, 420, kRailGap + 20,
                                                       kRailGap + 20 + kLabelRows* kRowPitch};
constexpr std::array<float, kBandRegions> kRowStep = {-kRowPitch, kRowPitch, kRowPitch, kRowPitch};

// The part routines draw from the left node `a`.
void SeriesC(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a + 90, d.Y);
  VerticalPlates(canvas, a + 90, a + 150, d.Y);
  canvas.Line(a + 150, d.Y, a + 240, d.Y);
}

void SeriesLC(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a + 40, d.Y);
  HorizontalCoil(d, canvas, a + 40);
  canvas.Line(a + 520, d.Y, a + 580, d.Y);
  VerticalPlates(canvas, a + 580, a + 640, d.Y);
  canvas.Line(a + 640, d.Y, a + 720, d.Y);
}

// The coil in the rail, the capacitor in a path 240 under it.
void SeriesTank(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a + 40, d.Y);
  HorizontalCoil(d, canvas, a + 40);
  canvas.Line(a + 520, d.Y, a + 560, d.Y);
  const float py = d.Y + 240;
  canvas.Line(a, d.Y, a, py);
  canvas.Line(a + 560, d.Y, a + 560, py);
  canvas.Line(a, py, a + 250, py);
  VerticalPlates(canvas, a + 250, a + 310, py);
  canvas.Line(a + 310, py, a + 560, py);
}

// Coil on a, capacitor on a + 240, both from the rail to ground.
void ShuntLC(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a + 240, d.Y);
  canvas.Line(a, d.Y, a, d.Y + 280);
  VerticalCoil(d, canvas, a, d.Y + 280);
  canvas.Line(a, d.Y + 760, a, d.Y + kRailGap);
  canvas.Line(a + 240, d.Y, a + 240, d.Y + 480);
  HorizontalPlates(canvas, a + 240, d.Y + 480, 60);
  canvas.Line(a + 240, d.Y + 540, a + 240, d.Y + kRailGap);
}

// Coil over capacitor on a, from the rail to ground.
void ShuntTrap(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a, d.Y + 200);
  VerticalCoil(d, canvas, a, d.Y + 200);
  canvas.Line(a, d.Y + 680, a, d.Y + 800);
  HorizontalPlates(canvas, a, d.Y + 800, 64);
  canvas.Line(a, d.Y + 864, a, d.Y + kRailGap);
}

struct BandSymbol {
  ElementKind kind;
  float width;  // left node to right node along the upper rail
  // What a shunt part takes between the rails, from the left node; series
  // parts leave it free under their capacitor path.
  bool shunt;
  float takenLeft, takenRight;
  float lAt, cAt;  // centres of the coil and the capacitor
  void (*draw)(DesignRecord&, Canvas&, float);
};

constexpr BandSymbol kBandSymbols[] = {
    {ElementKind::SeriesC, 240, false, 0, 0, 120, 120, &SeriesC},
    {ElementKind::SeriesLC, 720, false, 0, 0, 280, 610, &SeriesLC},
    {ElementKind::SeriesTank, 560, false, 0, 0, 280, 280, &SeriesTank},
    {ElementKind::ShuntLC, 240, true, -10, 370, 40, 240, &ShuntLC},
    {ElementKind::ShuntTrap, 0, true, -130, 130, 0, 0, &ShuntTrap},
};

const BandSymbol* BandSymbolOf(int16_t code) {
  for (const BandSymbol& s : kBandSymbols)
    if (CodeOf(s.kind) == code) return &s;
  return nullptr;
}

// A slot's left edge from the part's left node: centred over or under the
// part, or between the rails right of what a shunt part takes there.
float SlotLeft(const BandSymbol& s, BandRegion r, float centre) {
  if (r == BandRegion::Between && s.shunt) return s.takenRight + kSlotGap;
  return centre - kBandSlotWidth / 2;
}

// The bands each text (inductance, capacitance, resonance) tries, best
// first, when two ways give the part the same place: a series part's values
// over the rail, a shunt part's beside it between the rails or under the
// ground rail, a resonance lowest.
constexpr BandRegion kSeriesOrder[3][kBandRegions] = {
    {BandRegion::Above, BandRegion::Between, BandRegion::Below, BandRegion::Lowest},
    {BandRegion::Above, BandRegion::Between, BandRegion::Below, BandRegion::Lowest},
    {BandRegion::Below, BandRegion::Lowest, BandRegion::Between, BandRegion::Above},
};
constexpr BandRegion kShuntOrder[3][kBandRegions] = {
    {BandRegion::Below, BandRegion::Between, BandRegion::Lowest, BandRegion::Above},
    {BandRegion::Between, BandRegion::Below, BandRegion::Lowest, BandRegion::Above},
    {BandRegion::Lowest, BandRegion::Below, BandRegion::Between, BandRegion::Above},
};
// The same with a shunt part's values stacked under the ground rail, which
// packs a long chain of shunt pairs (the coupled form) tighter.
constexpr BandRegion kStackedShuntOrder[3][kBandRegions] = {
    {BandRegion::Below, BandRegion::Lowest, BandRegion::Between, BandRegion::Above},
    {BandRegion::Lowest, BandRegion::Below, BandRegion::Between, BandRegion::Above},
    {BandRegion::Between, BandRegion::Lowest, BandRegion::Below, BandRegion::Above},
};
using RegionOrder = BandRegion[3][kBandRegions];

struct Placing {
  float frontier[kBandRegions];  // right end of the last slot in each band
  float railEnd;                 // right node of the last part
};

// Places one part as far left as its texts allow, trying every way of
// giving its texts different bands.
BandPart Place(const BandSymbol& s, const ElementFacts& f, const RegionOrder& shuntOrder,
               Placing& p) {
  const bool has[3] = {f.hasL, f.hasC, f.resonanceLabel != nullptr};
  const float centre[3] = {s.lAt, s.cAt, (s.lAt + s.cAt) / 2};
  const RegionOrder& order = s.shunt ? shuntOrder : kSeriesOrder;
  float best = 1e30f;
  int bestPick[3] = {0, 0, 0};
  for (int i = 0; i < (has[0] ? kBandRegions : 1); ++i)
    for (int j = 0; j < (has[1] ? kBandRegions : 1); ++j)
      for (int k = 0; k < (has[2] ? kBandRegions : 1); ++k) {
        const BandRegion r[3] = {order[0][i], order[1][j], order[2][k]};
        if ((has[0] && has[1] && r[0] == r[1]) || (has[0] && has[2] && r[0] == r[2]) ||
            (has[1] && has[2] && r[1] == r[2]))
          continue;
        float a = p.railEnd + kLead;
        for (int t = 0; t < 3; ++t)
          if (has[t])
            a = std::max(
                a, p.frontier[static_cast<int>(r[t])] + kSlotGap - SlotLeft(s, r[t], centre[t]));
        if (s.shunt)
          a = std::max(a,
                       p.frontier[static_cast<int>(BandRegion::Between)] + kSlotGap - s.takenLeft);
        if (a < best) {
          best = a;
          bestPick[0] = i, bestPick[1] = j, bestPick[2] = k;
        }
      }
  BandPart part{.code = CodeOf(s.kind), .x = best};
  BandSlot* slots[3] = {&part.l, &part.c, &part.f};
  bool* present[3] = {&part.hasL, &part.hasC, &part.hasF};
  for (int t = 0; t < 3; ++t) {
    if (!has[t]) continue;
    const BandRegion r = order[t][bestPick[t]];
    *present[t] = true;
    *slots[t] = {r, best + SlotLeft(s, r, centre[t])};
    float& end = p.frontier[static_cast<int>(r)];
    end = std::max(end, slots[t]->left + kBandSlotWidth);
  }
  if (s.shunt) {
    float& end = p.frontier[static_cast<int>(BandRegion::Between)];
    end = std::max(end, best + s.takenRight);
  }
  p.railEnd = best + s.width;
  return part;
}

// Prints a value centred in its slot (left-aligned between the rails beside
// a shunt part) after clearing the slot's row.
void PrintInSlot(DesignRecord& d, Canvas& canvas, const BandSlot& slot, bool centred, float x0,
                 const std::string& text) {
  if (text.empty()) return;
  const int row = LabelRow(d);
  const int region = static_cast<int>(slot.region);
  const float y = d.Y + kFirstRow[region] + kRowStep[region] * static_cast<float>(row);
  canvas.FilledBox(x0 + slot.left, y, x0 + slot.left + kBandSlotWidth, y + kRowPitch, kWhite);
  canvas.SetFont("Arial", kValueFontSize, false);
  const float width = std::min(canvas.TextWidth(text), kBandSlotWidth);
  d.LabelX = x0 + slot.left + (centred ? (kBandSlotWidth - width) / 2 : 0);
  d.LabelY = y;
  canvas.SetForeColor(kRowColor[row]);
  canvas.SetTextPosition(d.LabelX, d.LabelY);
  canvas.Print(text);
  canvas.SetForeColor(kBlack);
  SetDefaultPageFont(canvas);
}

// The load resistor on x; its value right of it at the rail and, for a load
// unlike the source, the note under that, between the rails.
void BandLoad(DesignRecord& d, Canvas& canvas, float x) {
  canvas.Line(x, d.Y, x, d.Y + 350);
  ZigZag(canvas, x, d.Y + 350, x, d.Y + 650);
  canvas.Line(x, d.Y + 650, x, d.Y + kRailGap);
  const bool matched = d.Rload == d.Rsource;
  const int32_t color = matched ? kBlack : kLoadMismatchColor;
  d.LabelX = x + 70;
  d.LabelY = d.Y - 100;
  PrintLabel(d, canvas, FormatValue(d.Rload), 620, color);
  if (matched) return;
  canvas.SetFont("Arial", kValueFontSize, false);
  canvas.SetForeColor(color);
  canvas.SetTextPosition(x + 70, d.Y + 160);
  canvas.Print("(Even-ordered");
  canvas.SetTextPosition(x + 70, d.Y + 160 + kRowPitch);
  canvas.Print("Chebyshev)");
  canvas.SetForeColor(kBlack);
  SetDefaultPageFont(canvas);
}

}  // namespace

bool DrawsAsBand(const DesignRecord& d) {
  return IsBandDesign(d) && d.Center > 0;
}

namespace {

BandLayout LayOut(const DesignRecord& d, const RegionOrder& shuntOrder) {
  Placing p{};
  p.frontier[static_cast<int>(BandRegion::Above)] = kSourceLabelRight;
  p.frontier[static_cast<int>(BandRegion::Between)] = kSourceCircle;
  p.frontier[static_cast<int>(BandRegion::Below)] = p.frontier[3] = -kSlotGap;
  p.railEnd = kSourceEnd - kLead;
  BandLayout out;
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const BandSymbol* s = BandSymbolOf(d.ElementType[j]);
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (s && f) out.parts.push_back(Place(*s, *f, shuntOrder, p));
  }
  out.loadX = std::max(p.railEnd + 2 * kStep, p.frontier[static_cast<int>(BandRegion::Between)] +
                                                  kSlotGap + kResistorTeeth);
  out.left = -kSourceCircle;
  out.right = out.loadX + (d.Rload == d.Rsource ? kLoadValueRight : kLoadNoteRight);
  for (float end : p.frontier) out.right = std::max(out.right, end);
  return out;
}

}  // namespace

// Each part goes as far left as it can; of the two ways of ordering a shunt
// part's values the one giving the shorter ladder wins.
BandLayout LayOutBandLadder(const DesignRecord& d) {
  BandLayout beside = LayOut(d, kShuntOrder);
  BandLayout stacked = LayOut(d, kStackedShuntOrder);
  return stacked.right < beside.right ? stacked : beside;
}

float BandLadderOrigin(const BandLayout& layout) {
  const float width = layout.right - layout.left;
  return std::max(5000 - width / 2, 100.f) - layout.left;
}

void DrawBandLadder(DesignRecord& d, Canvas& canvas) {
  const BandLayout layout = LayOutBandLadder(d);
  const float x0 = BandLadderOrigin(layout);
  d.Y = kBandRailY;
  canvas.SetDrawWidth(1);
  d.X = x0;
  DrawSource(d, canvas);  // ends at x0 + kSourceEnd
  canvas.SetForeColor(kBlack);
  canvas.Line(d.X, d.Y + kRailGap, x0 + layout.loadX, d.Y + kRailGap);
  float railEnd = d.X;
  for (int j = 1, k = 0; j <= std::clamp<int>(d.Stages, 0, kMaxPositions); ++j) {
    const BandSymbol* s = BandSymbolOf(d.ElementType[j]);
    if (!s || !FactsOf(d.ElementType[j])) continue;
    const BandPart& part = layout.parts[static_cast<size_t>(k++)];
    const float a = x0 + part.x;
    canvas.SetForeColor(kBlack);
    canvas.Line(railEnd, d.Y, a, d.Y);
    s->draw(d, canvas, a);
    railEnd = a + s->width;
    const float l = d.L[j], c = d.C[j];
    if (part.hasL)
      PrintInSlot(d, canvas, part.l, !s->shunt || part.l.region != BandRegion::Between, x0,
                  InductanceText(l));
    if (part.hasC)
      PrintInSlot(d, canvas, part.c, !s->shunt || part.c.region != BandRegion::Between, x0,
                  CapacitanceText(c));
    if (part.hasF && l > 0 && c > 0) {
      d.ResonantFrequency =
          static_cast<float>(1.0 / (static_cast<double>(d.TwoPi > 0 ? d.TwoPi : 2 * Pi(d)) *
                                    std::sqrt(static_cast<double>(l) * c)));
      PrintInSlot(d, canvas, part.f, !s->shunt || part.f.region != BandRegion::Between, x0,
                  FormatFrequency(d.ResonantFrequency));
    }
  }
  canvas.SetForeColor(kBlack);
  canvas.Line(railEnd, d.Y, x0 + layout.loadX, d.Y);
  d.X = x0 + layout.loadX;
  BandLoad(d, canvas, d.X);
}

}  // namespace drenik
