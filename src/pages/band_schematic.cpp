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
#include "plot/scaled_canvas.h"
#include "synthesis/topologies.h"

namespace drenik {

using namespace schematic_parts;

namespace {

// Room between two slots of a band, and the shortest wire between parts.
constexpr float kSlotGap = 100;
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
static_assert(kBandRailY + kFirstRow[0] + (kLabelRows - 1) * kRowStep[0] == kBandTop);

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

// The parts of a lowpass or highpass ladder longer than the design page's:
// a coil in the rail, and a capacitor or a coil on a from the rail to ground.
void SeriesL(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a + 40, d.Y);
  HorizontalCoil(d, canvas, a + 40);
  canvas.Line(a + 520, d.Y, a + 560, d.Y);
}

void ShuntC(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a, d.Y + 480);
  HorizontalPlates(canvas, a, d.Y + 480, 60);
  canvas.Line(a, d.Y + 540, a, d.Y + kRailGap);
}

void ShuntL(DesignRecord& d, Canvas& canvas, float a) {
  canvas.Line(a, d.Y, a, d.Y + 280);
  VerticalCoil(d, canvas, a, d.Y + 280);
  canvas.Line(a, d.Y + 760, a, d.Y + kRailGap);
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
    {ElementKind::SeriesL, 560, false, 0, 0, 280, 280, &SeriesL},
    {ElementKind::ShuntC, 0, true, -130, 130, 0, 0, &ShuntC},
    {ElementKind::ShuntL, 0, true, -30, 130, 0, 0, &ShuntL},
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
// part.
float SlotLeft(float centre) {
  return centre - kBandSlotWidth / 2;
}

// How much each band suits each text (inductance, capacitance, resonance),
// best first: a series part's values over the rail, a shunt part's under the
// ground rail, a resonance low.
constexpr BandRegion kSeriesOrder[3][kBandRegions] = {
    {BandRegion::Above, BandRegion::Between, BandRegion::Below, BandRegion::Lowest},
    {BandRegion::Above, BandRegion::Between, BandRegion::Below, BandRegion::Lowest},
    {BandRegion::Below, BandRegion::Lowest, BandRegion::Between, BandRegion::Above},
};
constexpr BandRegion kShuntOrder[3][kBandRegions] = {
    {BandRegion::Below, BandRegion::Lowest, BandRegion::Above, BandRegion::Between},
    {BandRegion::Lowest, BandRegion::Below, BandRegion::Above, BandRegion::Between},
    {BandRegion::Lowest, BandRegion::Below, BandRegion::Above, BandRegion::Between},
};

int Rank(bool shunt, int text, BandRegion r) {
  const auto& order = shunt ? kShuntOrder : kSeriesOrder;
  return static_cast<int>(std::find(order[text], order[text] + kBandRegions, r) - order[text]);
}

// The bands of a kind's three texts; texts it does not have are ignored.
using Assignment = std::array<BandRegion, 3>;

struct Texts {
  bool has[3];
};
// A ladder too long for the page even so leaves its branches' resonances
// out (they follow from the L and C printed, and the design table lists
// them) before it is drawn smaller.
Texts TextsOf(const ElementFacts& f, bool resonances) {
  return {{f.hasL, f.hasC, resonances && f.resonanceLabel != nullptr}};
}

// Every way of giving a kind's texts different bands. A shunt part's text
// between the rails would stand under the next series part and be read as
// its value, so shunt parts keep to the bands over and under the rails.
std::vector<Assignment> AssignmentsFor(const Texts& t, bool shunt) {
  std::vector<Assignment> out;
  for (int i = 0; i < (t.has[0] ? kBandRegions : 1); ++i)
    for (int j = 0; j < (t.has[1] ? kBandRegions : 1); ++j)
      for (int k = 0; k < (t.has[2] ? kBandRegions : 1); ++k) {
        if ((t.has[0] && t.has[1] && i == j) || (t.has[0] && t.has[2] && i == k) ||
            (t.has[1] && t.has[2] && j == k))
          continue;
        constexpr int kBetween = static_cast<int>(BandRegion::Between);
        if (shunt && ((t.has[0] && i == kBetween) || (t.has[1] && j == kBetween) ||
                      (t.has[2] && k == kBetween)))
          continue;
        out.push_back(
            {static_cast<BandRegion>(i), static_cast<BandRegion>(j), static_cast<BandRegion>(k)});
      }
  return out;
}

struct Placing {
  float frontier[kBandRegions];  // right end of the last slot in each band
  float railEnd;                 // right node of the last part
};

// Places one part as far left as its texts allow in the bands given.
BandPart Place(const BandSymbol& s, const Texts& t, const Assignment& r, Placing& p) {
  const float centre[3] = {s.lAt, s.cAt, (s.lAt + s.cAt) / 2};
  float a = p.railEnd + kLead;
  for (int k = 0; k < 3; ++k)
    if (t.has[k])
      a = std::max(a, p.frontier[static_cast<int>(r[k])] + kSlotGap - SlotLeft(centre[k]));
  if (s.shunt)
    a = std::max(a, p.frontier[static_cast<int>(BandRegion::Between)] + kSlotGap - s.takenLeft);
  BandPart part{.code = CodeOf(s.kind), .x = a};
  BandSlot* slots[3] = {&part.l, &part.c, &part.f};
  bool* present[3] = {&part.hasL, &part.hasC, &part.hasF};
  for (int k = 0; k < 3; ++k) {
    if (!t.has[k]) continue;
    *present[k] = true;
    *slots[k] = {r[k], a + SlotLeft(centre[k])};
    float& end = p.frontier[static_cast<int>(r[k])];
    end = std::max(end, slots[k]->left + kBandSlotWidth);
  }
  if (s.shunt) {
    float& end = p.frontier[static_cast<int>(BandRegion::Between)];
    end = std::max(end, a + s.takenRight);
  }
  p.railEnd = a + s.width;
  return part;
}

// Prints a value centred in its slot after clearing the slot's row.
void PrintInSlot(DesignRecord& d, Canvas& canvas, const BandSlot& slot, float x0,
                 const std::string& text) {
  if (text.empty()) return;
  const int row = LabelRow(d);
  const int region = static_cast<int>(slot.region);
  const float y = d.Y + kFirstRow[region] + kRowStep[region] * static_cast<float>(row);
  canvas.FilledBox(x0 + slot.left, y, x0 + slot.left + kBandSlotWidth, y + kRowPitch, kWhite);
  canvas.SetFont("Arial", kValueFontSize, false);
  const float width = std::min(canvas.TextWidth(text), kBandSlotWidth);
  d.LabelX = x0 + slot.left + (kBandSlotWidth - width) / 2;
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
  return SlotLaidLadder(d);
}

namespace {

// The ladder with every part of a kind giving its texts the same bands
// (assignment[i] for kBandSymbols[i]), so that like parts read alike.
BandLayout LayOut(const DesignRecord& d,
                  const std::array<Assignment, std::size(kBandSymbols)>& assignment,
                  bool resonances) {
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
    if (s && f)
      out.parts.push_back(
          Place(*s, TextsOf(*f, resonances), assignment[static_cast<size_t>(s - kBandSymbols)], p));
  }
  out.loadX = std::max(p.railEnd + 2 * kStep, p.frontier[static_cast<int>(BandRegion::Between)] +
                                                  kSlotGap + kResistorTeeth);
  out.left = -kSourceCircle;
  out.right = out.loadX + (d.Rload == d.Rsource ? kLoadValueRight : kLoadNoteRight);
  for (float end : p.frontier) out.right = std::max(out.right, end);
  return out;
}

// A layout this much wider than the narrowest is still taken when its texts
// stand where they read better.
constexpr float kWidthForReadability = 400;

// Left of the ladder, the page's margin; right of it, the page's edge.
constexpr float kMargin = 100;
constexpr float kRoom = kPageWidth - kMargin;

// Tries every way of giving each kind's texts their bands (a band ladder
// holds two kinds and a long lowpass or highpass ladder three, so at most
// 24 x 24 x 4 ways) and keeps the narrowest, or a
// little wider one whose texts stand in better bands.
BandLayout BestLayout(const DesignRecord& d, bool resonances) {
  constexpr size_t kKinds = std::size(kBandSymbols);
  std::vector<size_t> kinds;
  std::array<std::vector<Assignment>, kKinds> ways;
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const BandSymbol* s = BandSymbolOf(d.ElementType[j]);
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (!s || !f) continue;
    const size_t i = static_cast<size_t>(s - kBandSymbols);
    if (ways[i].empty()) {
      ways[i] = AssignmentsFor(TextsOf(*f, resonances), s->shunt);
      kinds.push_back(i);
    }
  }
  struct Candidate {
    BandLayout layout;
    int rank;
  };
  std::vector<Candidate> candidates;
  std::array<Assignment, kKinds> pick{};
  std::array<size_t, kKinds> at{};
  for (;;) {
    int rank = 0;
    for (size_t i : kinds) {
      pick[i] = ways[i][at[i]];
      const Texts t = TextsOf(*FactsOf(kBandSymbols[i].kind), resonances);
      for (int k = 0; k < 3; ++k)
        if (t.has[k]) rank += Rank(kBandSymbols[i].shunt, k, pick[i][static_cast<size_t>(k)]);
    }
    candidates.push_back({LayOut(d, pick, resonances), rank});
    // The next combination, the first kind counting fastest.
    size_t k = 0;
    while (k < kinds.size() && ++at[kinds[k]] == ways[kinds[k]].size()) at[kinds[k++]] = 0;
    if (k == kinds.size()) break;
  }
  float narrowest = 1e30f;
  for (const Candidate& c : candidates) narrowest = std::min(narrowest, c.layout.right);
  const Candidate* best = nullptr;
  for (const Candidate& c : candidates)
    if (c.layout.right <= narrowest + kWidthForReadability &&
        (!best || c.rank < best->rank ||
         (c.rank == best->rank && c.layout.right < best->layout.right)))
      best = &c;
  return best->layout;
}

}  // namespace

BandLayout LayOutBandLadder(const DesignRecord& d) {
  BandLayout layout = BestLayout(d, true);
  if (layout.right - layout.left > kRoom) layout = BestLayout(d, false);
  return layout;
}

BandPlacement PlaceBandLadder(const BandLayout& layout, float right) {
  // Every ladder that fits between the left margin and `right` is drawn at
  // full size; a wider one is shrunk to end just inside.
  const float width = layout.right - layout.left;
  const float room = right - kMargin;
  return {.x0 = std::max(5000 - width / 2, kMargin) - layout.left,
          .scale = width > room ? (room - 20) / width : 1.f};
}

float BandLadderRight(const BandLayout& layout, float right) {
  const BandPlacement p = PlaceBandLadder(layout, right);
  return p.x0 + layout.left + (layout.right - layout.left) * p.scale;
}

void DrawBandLadder(DesignRecord& d, Canvas& page, float right) {
  const BandLayout layout = LayOutBandLadder(d);
  const BandPlacement placed = PlaceBandLadder(layout, right);
  const float x0 = placed.x0;
  // Shrunk about its top left corner when wider than the page.
  ScaledCanvas canvas(page, x0 + layout.left, kBandTop, placed.scale);
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
    if (part.hasL) PrintInSlot(d, canvas, part.l, x0, InductanceText(d, l, d.Turns[j]));
    if (part.hasC) PrintInSlot(d, canvas, part.c, x0, CapacitanceText(c));
    if (part.hasF && l > 0 && c > 0) {
      d.ResonantFrequency =
          static_cast<float>(1.0 / (static_cast<double>(d.TwoPi > 0 ? d.TwoPi : 2 * Pi(d)) *
                                    std::sqrt(static_cast<double>(l) * c)));
      PrintInSlot(d, canvas, part.f, x0, FormatFrequency(d.ResonantFrequency));
    }
  }
  canvas.SetForeColor(kBlack);
  canvas.Line(railEnd, d.Y, x0 + layout.loadX, d.Y);
  d.X = x0 + layout.loadX;
  BandLoad(d, canvas, d.X);
}

}  // namespace drenik
