#pragma once
// A canvas that keeps what is drawn as a list of vector operations. Tests
// read the list; the window replays it at any size, so the page stays sharp
// after a resize. An opaque box that covers earlier operations drops them, so
// the list stays bounded however often the page is redrawn.

#include <cstdint>
#include <string>
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
};

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

  const std::vector<DrawOp>& Ops() const { return ops_; }
  float TextX() const { return textX_; }
  float TextY() const { return textY_; }
  const std::string& FontFamily() const { return fontFamily_; }
  float FontSize() const { return fontSize_; }
  bool FontBold() const { return bold_; }

 protected:
  // Called after an op has been appended; lets a display invalidate itself.
  virtual void Changed() {}

 private:
  std::vector<DrawOp> ops_;
  int32_t color_ = 0;
  int width_ = 1;
  float textX_ = 0, textY_ = 0;
  std::string fontFamily_ = "Arial";
  float fontSize_ = 8;
  bool bold_ = false;
};

// Text width estimate in page units for the Arial/Liberation Sans metrics at
// the given point size (used where no real font is at hand).
float EstimateTextWidth(const std::string& text, float pointSize);

}  // namespace drenik
