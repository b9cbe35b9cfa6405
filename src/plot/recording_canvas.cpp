#include "plot/recording_canvas.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace drenik {

namespace {

TextMeasureFunction g_measure = nullptr;

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
    case DrawOp::Kind::Text:
      // Ascent plus descent of the Arial metrics is 1.117 em; the width was
      // measured when printed, with a little room for rounding.
      return {op.x1, op.y1, op.x1 + op.textWidth * 1.02f + 10, op.y1 + op.fontSize * 20 * 1.12f};
  }
  return {0, 0, 0, 0};
}

void Mix(uint64_t& h, uint64_t v) {
  h ^= v + 0x9E3779B97F4A7C15ull + (h << 6) + (h >> 2);
}
void Mix(uint64_t& h, float v) {
  Mix(h, static_cast<uint64_t>(std::bit_cast<uint32_t>(v)));
}

// Two operations at the same place in the same colour: the later one covers
// the earlier.
uint64_t SpotKey(const DrawOp& op) {
  uint64_t h = static_cast<uint64_t>(op.kind);
  Mix(h, static_cast<uint64_t>(static_cast<uint32_t>(op.color)));
  Mix(h, op.x1);
  Mix(h, op.y1);
  if (op.kind == DrawOp::Kind::Text) {
    Mix(h, static_cast<uint64_t>(std::hash<std::string>{}(op.text)));
    Mix(h, static_cast<uint64_t>(std::hash<std::string>{}(op.fontFamily)));
    Mix(h, op.fontSize);
    Mix(h, static_cast<uint64_t>(op.bold));
  } else {
    Mix(h, op.x2);
    Mix(h, op.y2);
    Mix(h, op.radius);
    Mix(h, op.start);
    Mix(h, op.end);
    Mix(h, static_cast<uint64_t>(op.width));
  }
  return h;
}

bool SameSpot(const DrawOp& a, const DrawOp& b) {
  if (a.kind != b.kind || a.color != b.color || a.x1 != b.x1 || a.y1 != b.y1) return false;
  if (a.kind == DrawOp::Kind::Text)
    return a.text == b.text && a.fontFamily == b.fontFamily && a.fontSize == b.fontSize &&
           a.bold == b.bold;
  return a.x2 == b.x2 && a.y2 == b.y2 && a.radius == b.radius && a.start == b.start &&
         a.end == b.end && a.width == b.width;
}

}  // namespace

void SetTextMeasure(TextMeasureFunction measure) {
  g_measure = measure;
}

float MeasureText(const std::string& text, const std::string& family, float pointSize, bool bold) {
  if (g_measure) return g_measure(text, family, pointSize, bold);
  return EstimateTextWidth(text, pointSize, bold);
}

RecordingCanvas::RecordingCanvas() = default;

void RecordingCanvas::SetFont(const std::string& family, float pointSize, bool bold) {
  fontFamily_ = family;
  fontSize_ = pointSize;
  bold_ = bold;
}

void RecordingCanvas::Compact() const {
  if (hiddenCount_ > 0) {
    std::erase_if(ops_, [](const DrawOp& op) { return op.hidden; });
    hiddenCount_ = 0;
    indexValid_ = false;
  }
}

void RecordingCanvas::Append(DrawOp&& op) {
  if (hiddenCount_ > 1024 && hiddenCount_ * 2 > ops_.size()) Compact();
  if (!indexValid_) {
    index_.clear();
    for (size_t i = 0; i < ops_.size(); ++i)
      if (!ops_[i].hidden && ops_[i].kind != DrawOp::Kind::Box &&
          ops_[i].kind != DrawOp::Kind::Point)
        index_.emplace(SpotKey(ops_[i]), i);
    indexValid_ = true;
  }
  // Points (overlay dots) are few and cleared with the plot; each is kept.
  if (op.kind != DrawOp::Kind::Box && op.kind != DrawOp::Kind::Point) {
    uint64_t key = SpotKey(op);
    auto [first, last] = index_.equal_range(key);
    for (auto it = first; it != last;) {
      DrawOp& old = ops_[it->second];
      if (old.hidden) {
        it = index_.erase(it);
      } else if (SameSpot(old, op)) {
        old.hidden = true;
        ++hiddenCount_;
        it = index_.erase(it);
      } else {
        ++it;
      }
    }
    index_.emplace(key, ops_.size());
  }
  ops_.push_back(std::move(op));
  Changed();
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
  Append(std::move(op));
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
  for (DrawOp& old : ops_) {
    if (old.hidden) continue;
    Bounds b = BoundsOf(old);
    if (b.left >= box.left && b.right <= box.right && b.top >= box.top && b.bottom <= box.bottom) {
      old.hidden = true;
      ++hiddenCount_;
    }
  }
  Append(std::move(op));
}

void RecordingCanvas::Point(float x, float y, int32_t color) {
  DrawOp op;
  op.kind = DrawOp::Kind::Point;
  op.x1 = x;
  op.y1 = y;
  op.color = color;
  op.width = width_;
  Append(std::move(op));
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
  Append(std::move(op));
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
  op.textWidth = TextWidth(text);
  // Like a terminal: the next print goes on the next line.
  textY_ += TextHeight();
  Append(std::move(op));
}

float RecordingCanvas::TextWidth(const std::string& text) const {
  return MeasureText(text, fontFamily_, fontSize_, bold_);
}

// One point is 20 twips; a line of text is about 1.15 times the point size.
float RecordingCanvas::TextHeight() const {
  return fontSize_ * 20 * 1.15f;
}

void RecordingCanvas::Clear() {
  ops_.clear();
  index_.clear();
  hiddenCount_ = 0;
  indexValid_ = true;
  textX_ = 0;
  textY_ = 0;
  Changed();
}

void RecordingCanvas::DropLines(int32_t color, float left, float top, float right, float bottom) {
  for (DrawOp& op : ops_) {
    if (op.hidden || op.kind != DrawOp::Kind::Line || op.color != color) continue;
    if (std::min(op.x1, op.x2) < left || std::max(op.x1, op.x2) > right ||
        std::min(op.y1, op.y2) < top || std::max(op.y1, op.y2) > bottom)
      continue;
    op.hidden = true;
    ++hiddenCount_;
    indexValid_ = false;
  }
  Changed();
}

const std::vector<DrawOp>& RecordingCanvas::Ops() const {
  Compact();
  return ops_;
}

// Advance widths of the Arial metrics (shared by Liberation Sans) for the
// printable ASCII characters, in thousandths of an em.
constexpr uint16_t kArialAdvance[95] = {
    277, 277, 354, 556, 556, 889, 666, 190, 333, 333, 389, 583, 277, 333,  277, 277, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 277, 277, 583, 583, 583, 556, 1015, 666, 666, 722, 722, 666,
    610, 777, 722, 277, 500, 666, 556, 833, 722, 777, 666, 777, 722, 666,  610, 722, 666, 943, 666,
    666, 610, 277, 277, 277, 469, 556, 333, 556, 556, 500, 556, 556, 277,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 277, 556, 500, 722, 500, 500,  500, 333, 259, 333, 583,
};
constexpr uint16_t kArialBoldAdvance[95] = {
    277, 333, 474, 556, 556, 889, 722, 237, 333, 333, 389, 583, 277, 333, 277, 277, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 333, 333, 583, 583, 583, 610, 975, 722, 722, 722, 722, 666,
    610, 777, 722, 277, 556, 722, 610, 833, 722, 777, 666, 777, 722, 666, 610, 722, 666, 943, 666,
    666, 610, 333, 277, 333, 583, 556, 333, 556, 610, 556, 610, 556, 333, 610, 610, 277, 277, 556,
    277, 889, 610, 610, 610, 610, 389, 556, 333, 610, 556, 777, 556, 556, 500, 389, 279, 389, 583,
};

float EstimateTextWidth(const std::string& text, float pointSize, bool bold) {
  const uint16_t* table = bold ? kArialBoldAdvance : kArialAdvance;
  float thousandths = 0;
  for (unsigned char c : text) thousandths += (c >= 32 && c < 127) ? table[c - 32] + 0.5f : 556;
  return thousandths / 1000 * pointSize * 20;
}

}  // namespace drenik
