#pragma once
// A canvas that draws onto another one shrunk about a fixed point: lengths,
// radii and font sizes all by one factor, so a drawing laid out for more
// room than the page has keeps its proportions and fits. Text widths are
// reported in the unshrunk units the drawing is laid out in.

#include "plot/canvas.h"

namespace drenik {

class ScaledCanvas : public Canvas {
 public:
  ScaledCanvas(Canvas& target, float originX, float originY, float scale)
      : target_(target), x0_(originX), y0_(originY), s_(scale) {}

  void SetForeColor(int32_t color) override { target_.SetForeColor(color); }
  int32_t ForeColor() const override { return target_.ForeColor(); }
  void SetDrawWidth(int width) override { target_.SetDrawWidth(width); }
  void SetFont(const std::string& family, float pointSize, bool bold) override {
    target_.SetFont(family, pointSize * s_, bold);
  }
  void Line(float x1, float y1, float x2, float y2) override {
    target_.Line(X(x1), Y(y1), X(x2), Y(y2));
  }
  void FilledBox(float x1, float y1, float x2, float y2, int32_t color) override {
    target_.FilledBox(X(x1), Y(y1), X(x2), Y(y2), color);
  }
  void Point(float x, float y, int32_t color) override { target_.Point(X(x), Y(y), color); }
  void Arc(float cx, float cy, float radius, float startAngle, float endAngle) override {
    target_.Arc(X(cx), Y(cy), radius * s_, startAngle, endAngle);
  }
  void SetTextPosition(float x, float y) override { target_.SetTextPosition(X(x), Y(y)); }
  void Print(const std::string& text) override { target_.Print(text); }
  float TextWidth(const std::string& text) const override { return target_.TextWidth(text) / s_; }
  float TextHeight() const override { return target_.TextHeight() / s_; }
  void Clear() override { target_.Clear(); }
  void DropLines(int32_t color, float left, float top, float right, float bottom) override {
    target_.DropLines(color, X(left), Y(top), X(right), Y(bottom));
  }

  // Where a point of the drawing lands on the target.
  float X(float x) const { return x0_ + (x - x0_) * s_; }
  float Y(float y) const { return y0_ + (y - y0_) * s_; }

 private:
  Canvas& target_;
  float x0_, y0_, s_;
};

}  // namespace drenik
