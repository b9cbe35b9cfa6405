#pragma once
// A canvas that keeps what is drawn as a list of vector operations. Tests
// read the list; the window replays it at any size, so the page stays sharp
// after a resize. The list stays bounded however often the page is redrawn:
// an opaque box drops every earlier operation it hides completely, and an
// operation drawn again at the same place (same geometry and width, or the
// same text in the same font) replaces the earlier one.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "plot/canvas.h"

namespace drenik {

struct DrawOp {
  enum class Kind { Line, Box, Point, Arc, Text };
  Kind kind = Kind::Line;
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // Line ends; Box corners; Point/Text at x1,y1
  float radius = 0, start = 0, end = 0;  // Arc: centre x1,y1
  int32_t color = 0;
  int width = 1;
  std::string text;
  std::string fontFamily;
  float fontSize = 0;
  bool bold = false;
  float textWidth = 0;  // Text: measured width in page units when printed
  bool hidden = false;  // dropped; never visible through Ops()
};

// Width in page units of a text in a font. The Qt layer installs one that
// measures the real font; without it an estimate of the Arial metrics is used.
using TextMeasureFunction = float (*)(const std::string& text, const std::string& family,
                                      float pointSize, bool bold);
void SetTextMeasure(TextMeasureFunction measure);
float MeasureText(const std::string& text, const std::string& family, float pointSize, bool bold);

class RecordingCanvas : public Canvas {
 public:
  RecordingCanvas();

  void SetForeColor(int32_t color) override { color_ = color; }
  int32_t ForeColor() const override { return color_; }
  void SetDrawWidth(int width) override { width_ = width; }
  void SetFont(const std::string& family, float pointSize, bool bold) override;

  void Line(float x1, float y1, float x2, float y2) override;
  void FilledBox(float x1, float y1, float x2, float y2, int32_t color) override;
  void Point(float x, float y, int32_t color) override;
  void Arc(float cx, float cy, float radius, float startAngle, float endAngle) override;

  void SetTextPosition(float x, float y) override;
  void Print(const std::string& text) override;
  float TextWidth(const std::string& text) const override;
  float TextHeight() const override;

  void Clear() override;
  void DropLines(int32_t color, float left, float top, float right, float bottom) override;

  // The visible operations in drawing order.
  const std::vector<DrawOp>& Ops() const;
  float TextX() const { return textX_; }
  float TextY() const { return textY_; }
  int DrawWidth() const { return width_; }
  const std::string& FontFamily() const { return fontFamily_; }
  float FontSize() const { return fontSize_; }
  bool FontBold() const { return bold_; }

 protected:
  // Called after an op has been appended; lets a display invalidate itself.
  virtual void Changed() {}

 private:
  void Append(DrawOp&& op);
  void Compact() const;

  // Dropped entries stay in place until the list is next read, so dropping is
  // cheap while drawing.
  mutable std::vector<DrawOp> ops_;
  mutable size_t hiddenCount_ = 0;
  // Same-place index of the live entries (key hash -> position).
  mutable std::unordered_multimap<uint64_t, size_t> index_;
  mutable bool indexValid_ = true;
  int32_t color_ = 0;
  int width_ = 1;
  float textX_ = 0, textY_ = 0;
  std::string fontFamily_ = "Arial";
  float fontSize_ = 8;
  bool bold_ = false;
};

// Text width in page units by the Arial/Liberation Sans advance widths at the
// given point size (used where no real font is at hand; no kerning).
float EstimateTextWidth(const std::string& text, float pointSize, bool bold = false);

}  // namespace drenik
