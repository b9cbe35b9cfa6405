#pragma once
// Drawing the page with QPainter: a recorded page replayed onto any painter
// (widget, image, SVG, PDF, printer), scaled from the 12000 x 9000 page into
// a target rectangle with its aspect kept, anti-aliased; and a Canvas that
// draws straight onto a painter. "Arial" and "Times New Roman" are drawn with
// their metric twins "Liberation Sans" and "Liberation Serif".

#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <QTransform>

#include "plot/canvas.h"
#include "plot/recording_canvas.h"

namespace drenik {

// How pen widths are drawn: on raster devices a width of 1 or 2 is 1 or 2
// device pixels (cosmetic pens, sharp at any size and on high-DPI screens);
// on vector devices (SVG, PDF) the same width in page units that a
// 1600-pixel-wide image shows.
enum class PenMode { Cosmetic, Scaled };

// Makes a QApplication when the process has no application object yet
// (command line, tests; offscreen unless a platform is chosen), maps the font
// families to their twins and lets the recording canvas measure texts with
// the real fonts. Call before drawing a page whose texts are aligned by width.
void PrepareQtDrawing();

// The font family drawn for a page font family.
QString ResolvedFamily(const std::string& family);
// A font whose pixel size is the point size in page units (one point is 20).
QFont PageFont(const std::string& family, float pointSize, bool bold);
// 24-bit page colour (blue in the high byte) as a QColor.
QColor PageColor(int32_t color);

// Page units to the target rectangle: uniform scale, centred.
QTransform PageTransform(const QRectF& target);

// Replays the page's operations onto the painter inside `target`.
void ReplayPage(QPainter& painter, const RecordingCanvas& page, const QRectF& target,
                PenMode pens = PenMode::Cosmetic);

// A canvas drawing straight onto a painter (for printing), with the same
// scaling and pens as the replay.
class PainterCanvas : public Canvas {
 public:
  PainterCanvas(QPainter& painter, const QRectF& target, PenMode pens = PenMode::Cosmetic);

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

 private:
  void UsePen(int32_t color, int width);

  QPainter& painter_;
  QRectF target_;
  PenMode pens_;
  int32_t color_ = 0;
  int width_ = 1;
  float textX_ = 0, textY_ = 0;
  std::string family_ = "Arial";
  float size_ = 8;
  bool bold_ = false;
};

}  // namespace drenik
