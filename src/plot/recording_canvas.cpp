#include "plot/recording_canvas.h"

#include <algorithm>

namespace drenik {

namespace {

// Bounding box of an operation, for deciding whether an opaque box hides it.
struct Bounds {
  float left, top, right, bottom;
};

Bounds BoundsOf(const DrawOp& op) {
  switch (op.kind) {
    case DrawOp::Kind::Line:
    case DrawOp::Kind::Box:
      return {std::min(op.x1, op.x2), std::min(op.y1, op.y2), std::max(op.x1, op.x2),
              std::max(op.y1, op.y2)};
    case DrawOp::Kind::Point:
      return {op.x1, op.y1, op.x1, op.y1};
    case DrawOp::Kind::Arc:
      return {op.x1 - op.radius, op.y1 - op.radius, op.x1 + op.radius, op.y1 + op.radius};
    case DrawOp::Kind::Text: {
      // Generous: text may be wider on a real font than the estimate.
      float w = EstimateTextWidth(op.text, op.fontSize) * 1.5f + 40;
      float h = op.fontSize * 20 * 1.6f;
      return {op.x1, op.y1, op.x1 + w, op.y1 + h};
    }
  }
  return {0, 0, 0, 0};
}

}  // namespace

RecordingCanvas::RecordingCanvas() = default;

void RecordingCanvas::SetFont(const std::string& family, float pointSize, bool bold) {
  fontFamily_ = family;
  fontSize_ = pointSize;
  bold_ = bold;
}

void RecordingCanvas::Line(float x1, float y1, float x2, float y2) {
  DrawOp op;
  op.kind = DrawOp::Kind::Line;
  op.x1 = x1;
  op.y1 = y1;
  op.x2 = x2;
  op.y2 = y2;
  op.color = color_;
  op.width = width_;
  ops_.push_back(std::move(op));
  Changed();
}

void RecordingCanvas::FilledBox(float x1, float y1, float x2, float y2, int32_t color) {
  DrawOp op;
  op.kind = DrawOp::Kind::Box;
  op.x1 = x1;
  op.y1 = y1;
  op.x2 = x2;
  op.y2 = y2;
  op.color = color;
  op.width = width_;
  // Everything wholly under an opaque box can never be seen again.
  Bounds box = BoundsOf(op);
  std::erase_if(ops_, [&](const DrawOp& old) {
    Bounds b = BoundsOf(old);
    return b.left >= box.left && b.right <= box.right && b.top >= box.top && b.bottom <= box.bottom;
  });
  ops_.push_back(std::move(op));
  Changed();
}

void RecordingCanvas::Point(float x, float y, int32_t color) {
  DrawOp op;
  op.kind = DrawOp::Kind::Point;
  op.x1 = x;
  op.y1 = y;
  op.color = color;
  op.width = width_;
  ops_.push_back(std::move(op));
  Changed();
}

void RecordingCanvas::Arc(float cx, float cy, float radius, float startAngle, float endAngle) {
  DrawOp op;
  op.kind = DrawOp::Kind::Arc;
  op.x1 = cx;
  op.y1 = cy;
  op.radius = radius;
  op.start = startAngle;
  op.end = endAngle;
  op.color = color_;
  op.width = width_;
  ops_.push_back(std::move(op));
  Changed();
}

void RecordingCanvas::SetTextPosition(float x, float y) {
  textX_ = x;
  textY_ = y;
}

void RecordingCanvas::Print(const std::string& text) {
  DrawOp op;
  op.kind = DrawOp::Kind::Text;
  op.x1 = textX_;
  op.y1 = textY_;
  op.color = color_;
  op.text = text;
  op.fontFamily = fontFamily_;
  op.fontSize = fontSize_;
  op.bold = bold_;
  ops_.push_back(std::move(op));
  // Like a terminal: the next print goes on the next line.
  textY_ += TextHeight();
  Changed();
}

float RecordingCanvas::TextWidth(const std::string& text) const {
  return EstimateTextWidth(text, fontSize_);
}

// One point is 20 twips; a line of text is about 1.15 times the point size.
float RecordingCanvas::TextHeight() const {
  return fontSize_ * 20 * 1.15f;
}

void RecordingCanvas::Clear() {
  ops_.clear();
  textX_ = 0;
  textY_ = 0;
  Changed();
}

float EstimateTextWidth(const std::string& text, float pointSize) {
  // Average Arial advance is a little over half the em; digits are 0.556 em.
  float em = pointSize * 20;
  float units = 0;
  for (unsigned char c : text) {
    if (c == ' ' || c == '.' || c == ',' || c == ':' || c == 'i' || c == 'l' || c == '1')
      units += 0.3f;
    else if (c == 'M' || c == 'W' || c == 'm' || c == 'w')
      units += 0.85f;
    else if (c >= 'A' && c <= 'Z')
      units += 0.68f;
    else
      units += 0.556f;
  }
  return units * em;
}

}  // namespace drenik
