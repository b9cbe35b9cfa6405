#pragma once
// The drawing surface of a page, in page units (twips, 1/1440 inch) on a page
// laid out for 12000 x 9000. Colours are 24-bit integers with blue in the
// high byte (0xFF0000 is blue, 0x0000FF is red). Angles are in radians, 0 at
// three o'clock, increasing counter-clockwise as the user sees the page
// (y grows downwards on the page).

#include <cstdint>
#include <string>

namespace drenik {

inline constexpr int32_t kBlack = 0x000000;
inline constexpr int32_t kWhite = 0xFFFFFF;
inline constexpr int32_t kBlue = 0xFF0000;
inline constexpr int32_t kRed = 0x0000FF;

inline constexpr float kPageWidth = 12000;
inline constexpr float kPageHeight = 9000;

class Canvas {
 public:
  virtual ~Canvas() = default;

  // Pen colour for lines, arcs and text.
  virtual void SetForeColor(int32_t color) = 0;
  virtual int32_t ForeColor() const = 0;
  // Line width in device pixels (1 or 2 on screen; scaled in print).
  virtual void SetDrawWidth(int width) = 0;
  virtual void SetFont(const std::string& family, float pointSize, bool bold) = 0;

  virtual void Line(float x1, float y1, float x2, float y2) = 0;
  // A filled rectangle in the given colour (no outline).
  virtual void FilledBox(float x1, float y1, float x2, float y2, int32_t color) = 0;
  virtual void Point(float x, float y, int32_t color) = 0;
  // Circle arc from start to end angle, counter-clockwise.
  virtual void Arc(float cx, float cy, float radius, float startAngle, float endAngle) = 0;

  // Text is printed with its top-left corner at the current text position.
  virtual void SetTextPosition(float x, float y) = 0;
  virtual void Print(const std::string& text) = 0;
  // Width of the text in page units in the current font.
  virtual float TextWidth(const std::string& text) const = 0;
  virtual float TextHeight() const = 0;

  // Clears the whole page to white.
  virtual void Clear() = 0;
  // Takes back the lines of one colour that lie wholly inside a rectangle: a
  // stage's old curves before it is drawn afresh with other values. A canvas
  // that keeps no record of its drawing has nothing to take back.
  virtual void DropLines(int32_t /*color*/, float /*left*/, float /*top*/, float /*right*/,
                         float /*bottom*/) {}
};

}  // namespace drenik
