#pragma once
// The drawing pieces the ladder schematics share: rails, coils, plates, the
// resistor's zig-zag and the value text with the white box behind it. Page
// units; d.Y is the upper rail and the ground rail lies kRailGap below it.

#include <cstdint>
#include <string>

#include "core/design_record.h"
#include "core/element_kinds.h"
#include "plot/canvas.h"
#include "plot/frequency_axis.h"

namespace drenik::schematic_parts {

inline constexpr float kRailGap = 1040;  // upper rail to ground rail
inline constexpr float kStep = 160;      // one wire step
inline constexpr float kCoilRadius = 80;
inline constexpr float kLabelHeight = 200;
// Value texts: small enough that a resonant branch's inductance and
// capacitance, printed side by side, fit between its neighbours.
inline constexpr float kValueFontSize = 6.5f;
inline constexpr int32_t kLoadMismatchColor = 0x111199;

// Value texts: colour by label row 1 to 4.
inline constexpr int32_t kRowColor[kLabelRows] = {kBlack, kBlue, kRed, kChosenTransmissionColor};

// d.ValueMode as a row index 0..3.
int LabelRow(const DesignRecord& d);
float Pi(const DesignRecord& d);
void Rails(DesignRecord& d, Canvas& canvas, float x1, float x2);
// Erases boxWidth x boxHeight from (d.LabelX, d.LabelY), prints the text
// there in `color` and goes back to black.
void PrintLabel(DesignRecord& d, Canvas& canvas, const std::string& text, float boxWidth,
                int32_t color, float boxHeight = kLabelHeight);
// A part without a positive value shows no text.
std::string InductanceText(float l);
std::string CapacitanceText(float c);
// An inductance, with its whole turns (" 12t") in the chosen parts' row
// when it is wound (turns above 0).
std::string InductanceText(const DesignRecord& d, float l, int turns);
// Three half circles of a coil along the rail, upper halves, from x.
void HorizontalCoil(DesignRecord& d, Canvas& canvas, float x);
// Three half circles of a coil running down from y, right halves, on x.
void VerticalCoil(DesignRecord& d, Canvas& canvas, float x, float y);
// Two horizontal plates across a vertical lead on x, at y and y + gap.
void HorizontalPlates(Canvas& canvas, float x, float y, float gap);
// Two vertical plates across a horizontal lead at height y, at x1 and x2.
void VerticalPlates(Canvas& canvas, float x1, float x2, float y);
// A resistor's zig-zag along a horizontal or vertical lead.
void ZigZag(Canvas& canvas, float x1, float y1, float x2, float y2);

}  // namespace drenik::schematic_parts
