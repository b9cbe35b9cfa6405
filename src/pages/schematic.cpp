#include "pages/schematic.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/element_kinds.h"
#include "core/formatters.h"
#include "pages/band_schematic.h"
#include "pages/resonance_column.h"
#include "pages/schematic_parts.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"

namespace drenik {

namespace schematic_parts {

int LabelRow(const DesignRecord& d) {
  return std::clamp<int>(d.ValueMode, 1, kLabelRows) - 1;
}

float Pi(const DesignRecord& d) {
  return d.Pi > 0 ? d.Pi : 3.14159265f;
}

void Rails(DesignRecord& d, Canvas& canvas, float x1, float x2) {
  canvas.Line(x1, d.Y, x2, d.Y);
  canvas.Line(x1, d.Y + kRailGap, x2, d.Y + kRailGap);
}

// Erases the label area from the label point, prints the text in the row's
// colour and goes back to black.
void PrintLabel(DesignRecord& d, Canvas& canvas, const std::string& text, float boxWidth,
                int32_t color, float boxHeight) {
  if (text.empty()) return;
  canvas.FilledBox(d.LabelX, d.LabelY, d.LabelX + boxWidth, d.LabelY + boxHeight, kWhite);
  canvas.SetFont("Arial", kValueFontSize, false);
  canvas.SetForeColor(color);
  canvas.SetTextPosition(d.LabelX, d.LabelY);
  canvas.Print(text);
  canvas.SetForeColor(kBlack);
  SetDefaultPageFont(canvas);
}

// A part without a positive value shows no text.
std::string InductanceText(float l) {
  return l > 0 ? FormatInductance(l) : std::string();
}
std::string CapacitanceText(float c) {
  return c > 0 ? FormatCapacitance(c) : std::string();
}
// A coil of whole turns on a core holds its inductance only to the core's
// AL tolerance (about 5%): three figures say all of it and leave room for
// the turns.
std::string InductanceText(const DesignRecord& d, float l, int turns) {
  if (!(l > 0) || LabelRow(d) != kLabelRows - 1 || turns <= 0) return InductanceText(l);
  const double figures = std::pow(10.0, std::floor(std::log10(static_cast<double>(l))) - 2);
  return FormatInductance(static_cast<float>(std::round(l / figures) * figures)) + " " +
         std::to_string(turns) + "t";
}

// Three half circles of a coil along the rail, upper halves, from x.
void HorizontalCoil(DesignRecord& d, Canvas& canvas, float x) {
  for (int k = 0; k < 3; ++k)
    canvas.Arc(x + kCoilRadius + 2 * kCoilRadius * static_cast<float>(k), d.Y, kCoilRadius, 0,
               Pi(d));
}

// Three half circles of a coil running down from y, right halves, on x.
void VerticalCoil(DesignRecord& d, Canvas& canvas, float x, float y) {
  for (int k = 0; k < 3; ++k)
    canvas.Arc(x, y + kCoilRadius + 2 * kCoilRadius * static_cast<float>(k), kCoilRadius,
               3 * Pi(d) / 2, Pi(d) / 2);
}

// Two horizontal plates across a vertical lead on x, at y and y + gap.
void HorizontalPlates(Canvas& canvas, float x, float y, float gap) {
  canvas.Line(x - 120, y, x + 120, y);
  canvas.Line(x - 120, y + gap, x + 120, y + gap);
}

// Two vertical plates across a horizontal lead at height y, at x1 and x2.
void VerticalPlates(Canvas& canvas, float x1, float x2, float y) {
  canvas.Line(x1, y - 120, x1, y + 120);
  canvas.Line(x2, y - 120, x2, y + 120);
}

// A zig-zag of 60-unit steps along a lead from (x1, y1) to (x2, y2), which
// is either horizontal or vertical; the teeth stand 60 to each side.
void ZigZag(Canvas& canvas, float x1, float y1, float x2, float y2) {
  bool vertical = x1 == x2;
  float length = vertical ? y2 - y1 : x2 - x1;
  int teeth = std::max(1, static_cast<int>(std::lround(length / 60)));
  float step = length / static_cast<float>(teeth);
  float px = x1, py = y1;
  for (int k = 0; k <= teeth; ++k) {
    float along = k == teeth ? length : step * (static_cast<float>(k) + 0.5f);
    float side = k == teeth ? 0.f : (k % 2 == 0 ? 60.f : -60.f);
    float nx = vertical ? x1 + side : x1 + along;
    float ny = vertical ? y1 + along : y1 - side;
    canvas.Line(px, py, nx, ny);
    px = nx;
    py = ny;
  }
}

}  // namespace schematic_parts

namespace {

using namespace schematic_parts;

// The least room between the inductance and capacitance texts of one tank.
constexpr float kPairGap = 30;

void SetLabel(DesignRecord& d, float x, float yOffset) {
  d.LabelX = x;
  d.LabelY = d.Y + yOffset;
}

// A value text at its place for the current label row, from x; returns
// where it ends.
float PrintValue(DesignRecord& d, Canvas& canvas, const LabelPlace& place, float x,
                 const std::string& text) {
  const int row = LabelRow(d);
  SetLabel(d, x, place.dy[row]);
  PrintLabel(d, canvas, text, place.box, kRowColor[row]);
  canvas.SetFont("Arial", kValueFontSize, false);
  const float right = x + canvas.TextWidth(text);
  SetDefaultPageFont(canvas);
  return right;
}

// The element's value texts, as the kind table places them; a resonant
// branch also shows its resonant frequency, which is kept in the record.
// Inductors wound in whole turns at the chosen-parts stage show the turns.
void PrintValues(DesignRecord& d, Canvas& canvas, const ElementFacts& f, float x0, float l, float c,
                 int turns) {
  const int row = LabelRow(d);
  float lRight = x0;
  if (f.lLabel)
    lRight = PrintValue(d, canvas, *f.lLabel, x0 + f.lLabel->dx[row], InductanceText(d, l, turns));
  if (f.cLabel) {
    const std::string text = CapacitanceText(c);
    float x = x0 + f.cLabel->dx[row];
    // Between the rails a capacitance beside its inductance (a tank's) that
    // would reach past the element runs into the next element's plates or
    // coil: it ends at the element's edge instead, as far as it keeps clear
    // of the inductance.
    const float dy = f.cLabel->dy[row];
    canvas.SetFont("Arial", kValueFontSize, false);
    const float width = canvas.TextWidth(text);
    SetDefaultPageFont(canvas);
    if (f.lLabel && dy > 0 && dy < kRailGap && x + width > x0 + f.drawWidth)
      x = std::max(x0 + f.drawWidth - width, lRight + kPairGap);
    PrintValue(d, canvas, *f.cLabel, std::min(x, x0 + f.cLabel->dx[row]), text);
  }
  if (!f.resonanceLabel || !(l > 0 && c > 0)) return;
  d.ResonantFrequency =
      static_cast<float>(1.0 / (static_cast<double>(d.TwoPi > 0 ? d.TwoPi : 2 * Pi(d)) *
                                std::sqrt(static_cast<double>(l) * c)));
  PrintValue(d, canvas, *f.resonanceLabel, x0 + f.resonanceLabel->dx[row],
             FormatFrequency(d.ResonantFrequency));
}

// A coil in the upper rail. Advance 960.
void SeriesInductorSymbol(DesignRecord& d, Canvas& canvas) {
  DrawWireStep(d, canvas);
  canvas.Line(d.X, d.Y, d.X + 80, d.Y);
  HorizontalCoil(d, canvas, d.X + 80);
  canvas.Line(d.X, d.Y + kRailGap, d.X + 560, d.Y + kRailGap);
  d.X += 560;
  Rails(d, canvas, d.X, d.X + 240);
  d.X += 240;
}

// A coil from the upper rail to ground. Advance 640.
void ShuntInductorSymbol(DesignRecord& d, Canvas& canvas) {
  DrawWireStep(d, canvas);
  float x = d.X;
  canvas.Line(x, d.Y, x, d.Y + 280);
  VerticalCoil(d, canvas, x, d.Y + 280);
  canvas.Line(x, d.Y + 760, x, d.Y + kRailGap);
  for (int k = 0; k < 3; ++k) DrawWireStep(d, canvas);
}

// A capacitor in the upper rail. Advance 680.
void SeriesCapacitorSymbol(DesignRecord& d, Canvas& canvas) {
  float x0 = d.X;
  DrawWireStep(d, canvas);
  canvas.Line(x0 + 160, d.Y, x0 + 310, d.Y);
  VerticalPlates(canvas, x0 + 310, x0 + 370, d.Y);
  canvas.Line(x0 + 370, d.Y, x0 + 520, d.Y);
  canvas.Line(x0 + 160, d.Y + kRailGap, x0 + 520, d.Y + kRailGap);
  d.X = x0 + 520;
  DrawWireStep(d, canvas);
}

// A capacitor from the upper rail to ground, plates at 480 and 540 below
// the rail. Advance 640.
void ShuntCapacitorSymbol(DesignRecord& d, Canvas& canvas) {
  DrawWireStep(d, canvas);
  float x = d.X;
  canvas.Line(x, d.Y, x, d.Y + 480);
  HorizontalPlates(canvas, x, d.Y + 480, 60);
  canvas.Line(x, d.Y + 540, x, d.Y + kRailGap);
  for (int k = 0; k < 3; ++k) DrawWireStep(d, canvas);
}

// A series-resonant branch from the upper rail to ground, one wire step in:
// coil, then plates at 800 and 864 below the rail. Advance 960.
void ShuntTrapSymbol(DesignRecord& d, Canvas& canvas) {
  DrawWireStep(d, canvas);
  float x = d.X;
  canvas.Line(x, d.Y, x, d.Y + 200);
  VerticalCoil(d, canvas, x, d.Y + 200);
  canvas.Line(x, d.Y + 680, x, d.Y + 800);
  HorizontalPlates(canvas, x, d.Y + 800, 64);
  canvas.Line(x, d.Y + 864, x, d.Y + kRailGap);
  for (int k = 0; k < 5; ++k) DrawWireStep(d, canvas);
}

// A parallel-resonant branch in the upper rail: the coil in the rail and the
// capacitor in a path 240 under it, plates 304 and 360 along the path.
// Advance 960.
void SeriesTankSymbol(DesignRecord& d, Canvas& canvas) {
  float x0 = d.X;
  DrawWireStep(d, canvas);
  float a = d.X;      // left node
  float b = a + 640;  // right node
  canvas.Line(a, d.Y, a + 80, d.Y);
  HorizontalCoil(d, canvas, a + 80);
  canvas.Line(b - 80, d.Y, b, d.Y);
  float py = d.Y + 240;
  canvas.Line(a, d.Y, a, py);
  canvas.Line(b, d.Y, b, py);
  canvas.Line(a, py, a + 304, py);
  VerticalPlates(canvas, a + 304, a + 360, py);
  canvas.Line(a + 360, py, b, py);
  canvas.Line(a, d.Y + kRailGap, b, d.Y + kRailGap);
  d.X = b;
  Rails(d, canvas, b, x0 + 960);
  d.X = x0 + 960;
}

// The series branch of a band design: the coil in the rail, then the
// plates at 800 and 860. Advance 1120.
void SeriesLCSymbol(DesignRecord& d, Canvas& canvas) {
  const float x0 = d.X;
  DrawWireStep(d, canvas);
  canvas.Line(x0 + 160, d.Y, x0 + 240, d.Y);
  HorizontalCoil(d, canvas, x0 + 240);
  canvas.Line(x0 + 720, d.Y, x0 + 800, d.Y);
  VerticalPlates(canvas, x0 + 800, x0 + 860, d.Y);
  canvas.Line(x0 + 860, d.Y, x0 + 960, d.Y);
  canvas.Line(x0 + 160, d.Y + kRailGap, x0 + 960, d.Y + kRailGap);
  d.X = x0 + 960;
  DrawWireStep(d, canvas);
}

// The tank of a band design, coil and capacitor side by side from the upper
// rail to ground, 240 apart. Advance 720.
void ShuntLCSymbol(DesignRecord& d, Canvas& canvas) {
  DrawWireStep(d, canvas);
  const float x = d.X;
  canvas.Line(x, d.Y, x, d.Y + 280);
  VerticalCoil(d, canvas, x, d.Y + 280);
  canvas.Line(x, d.Y + 760, x, d.Y + kRailGap);
  Rails(d, canvas, x, x + 240);
  const float xc = x + 240;
  canvas.Line(xc, d.Y, xc, d.Y + 480);
  HorizontalPlates(canvas, xc, d.Y + 480, 60);
  canvas.Line(xc, d.Y + 540, xc, d.Y + kRailGap);
  d.X = xc;
  DrawWireStep(d, canvas);
  DrawWireStep(d, canvas);
}

// The symbol of each kind the schematic draws; the others draw nothing.
using SymbolRoutine = void (*)(DesignRecord&, Canvas&);
constexpr std::pair<ElementKind, SymbolRoutine> kSymbols[] = {
    {ElementKind::SeriesL, &SeriesInductorSymbol},  {ElementKind::ShuntL, &ShuntInductorSymbol},
    {ElementKind::SeriesC, &SeriesCapacitorSymbol}, {ElementKind::ShuntC, &ShuntCapacitorSymbol},
    {ElementKind::ShuntTrap, &ShuntTrapSymbol},     {ElementKind::SeriesTank, &SeriesTankSymbol},
    {ElementKind::SeriesLC, &SeriesLCSymbol},       {ElementKind::ShuntLC, &ShuntLCSymbol},
};

SymbolRoutine SymbolOf(int16_t code) {
  for (const auto& [kind, routine] : kSymbols)
    if (CodeOf(kind) == code) return routine;
  return nullptr;
}

}  // namespace

float ComputeSchematicWidth(DesignRecord& d) {
  double width = 1380;
  int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (f && (!f->bandBranch || d.Center > 0)) width += f->drawWidth;
  }
  d.SchematicWidth = static_cast<float>(width);
  return d.SchematicWidth;
}

void DrawWireStep(DesignRecord& d, Canvas& canvas) {
  canvas.SetForeColor(kBlack);
  Rails(d, canvas, d.X, d.X + kStep);
  d.X += kStep;
}

// The generator: a circle of radius 190 between the rails with a small wave
// inside, the source resistor as a zig-zag in the upper rail, the source
// resistance above it, then two wire steps. Advance 580.
void DrawSource(DesignRecord& d, Canvas& canvas) {
  canvas.SetForeColor(kBlack);
  float x = d.X;
  float cy = d.Y + kRailGap / 2;
  canvas.Line(x, d.Y, x, cy - 190);
  canvas.Arc(x, cy, 190, 0, 6.2f);
  canvas.Arc(x - 60, cy, 60, 0, 3.2f);
  canvas.Arc(x + 60, cy, 60, 3.2f, 6.2f);
  canvas.Line(x, cy + 190, x, d.Y + kRailGap);
  canvas.Line(x, d.Y, x + 20, d.Y);
  ZigZag(canvas, x + 20, d.Y, x + 260, d.Y);
  canvas.Line(x, d.Y + kRailGap, x + 260, d.Y + kRailGap);
  d.LabelX = x;
  d.LabelY = d.Y - 330;
  PrintLabel(d, canvas, FormatValue(d.Rsource), 620, kBlack);
  d.X = x + 260;
  DrawWireStep(d, canvas);
  DrawWireStep(d, canvas);
}

// Five wire steps and the load resistor from the upper rail to ground. The
// load's texts stand right of the resistor: they are placed from a pen
// position 400 past it, the resistance at (pen - 330, Y - 100) and, for a
// load unlike the source (even-ordered Chebyshev), the note at (pen + 330,
// Y - 700) and (pen + 130, Y - 960). The pen stays on the resistor.
void DrawLoad(DesignRecord& d, Canvas& canvas) {
  for (int k = 0; k < 5; ++k) DrawWireStep(d, canvas);
  float x = d.X;
  canvas.Line(x, d.Y, x, d.Y + 350);
  ZigZag(canvas, x, d.Y + 350, x, d.Y + 650);
  canvas.Line(x, d.Y + 650, x, d.Y + kRailGap);
  float pen = x + 400;
  bool matched = d.Rload == d.Rsource;
  int32_t color = matched ? kBlack : kLoadMismatchColor;
  d.LabelX = pen - 330;
  d.LabelY = d.Y - 100;
  PrintLabel(d, canvas, FormatValue(d.Rload), 620, color);
  if (!matched) {
    canvas.SetFont("Arial", kValueFontSize, false);
    canvas.SetForeColor(color);
    canvas.SetTextPosition(pen + 330, d.Y - 700);
    canvas.Print("(Even-ordered");
    canvas.SetTextPosition(pen + 130, d.Y - 960);
    canvas.Print("Chebyshev)");
    canvas.SetForeColor(kBlack);
    SetDefaultPageFont(canvas);
  }
}

void DrawElement(DesignRecord& d, Canvas& canvas, int type, float l, float c, bool withValues,
                 int turns) {
  canvas.SetForeColor(kBlack);
  canvas.SetDrawWidth(1);
  const ElementFacts* facts = FactsOf(static_cast<int16_t>(type));
  const SymbolRoutine symbol = SymbolOf(static_cast<int16_t>(type));
  // Empty positions draw nothing, nor do codes 5 and 8 outside band designs.
  if (!facts || !symbol || (facts->bandBranch && !(d.Center > 0))) return;
  const float x0 = d.X;
  symbol(d, canvas);
  if (withValues) PrintValues(d, canvas, *facts, x0, l, c, turns);
}

void DrawLadder(DesignRecord& d, Canvas& canvas) {
  canvas.SetDrawWidth(1);
  DrawSource(d, canvas);
  int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    int type = d.ElementType[j];
    DrawElement(d, canvas, type, d.L[j], d.C[j], true, d.Turns[j]);
  }
  DrawLoad(d, canvas);
}

// Ladders are centred on X = 5000; one too wide for that (the long ladders
// of band designs) starts at the page's left margin instead.
float LadderStart(float width) {
  constexpr float kMargin = 100;
  return std::max(5000 - width / 2, kMargin);
}

void RedrawSchematic(DesignRecord& d, Canvas& canvas) {
  canvas.FilledBox(1, 1, 12090, 3500, kWhite);
  float w = ComputeSchematicWidth(d);  // the LTspice sheet's width as well
  if (DrawsAsBand(d)) {
    d.ValueMode = 1;
    DrawBandLadder(d, canvas);
    return;
  }
  d.X = LadderStart(w);
  d.Y = 1400;
  d.ValueMode = 1;
  DrawLadder(d, canvas);
}

// The display page draws the ladder where the design page does: centred on
// X = 5000 with the upper rail at Y = 1400. Its texts then reach from 440
// (the load note; a series inductor's fourth row starts at 470) down to about
// 3760 (fourth-row resonance under the ground rail), clear of the bandwidth
// label at x >= 9000 (a 7-element ladder ends at 9050, its last values and
// the resistor well left of 9000 below y = 2700) and of the scale labels from
// y = 3900. Each value mode prints its own row, so the modes' values stand
// under each other.
void DrawDisplaySchematic(DesignRecord& d, Canvas& canvas) {
  float w = ComputeSchematicWidth(d);
  if (DrawsAsBand(d)) {
    DrawBandLadder(d, canvas, SlotLadderRight(d));
    return;
  }
  d.X = LadderStart(w);
  d.Y = 1400;
  DrawLadder(d, canvas);
}

void DrawSampleLadder(DesignRecord& d, Canvas& canvas) {
  d.X = 3400;
  d.Y = 2500;
  // The opening page shows the parts of lowpass and highpass ladders.
  for (const auto& [kind, routine] : kSymbols)
    if (!FactsOf(kind)->bandBranch) DrawElement(d, canvas, CodeOf(kind), 0, 0, false);
}

}  // namespace drenik
