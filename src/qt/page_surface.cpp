#include "qt/page_surface.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace drenik {

namespace {

QColor ToQColor(int32_t color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

QFont PageFont(const DrawOp& op) {
  QFont font(QString::fromStdString(op.fontFamily));
  // One point is 20 page units; the painter's transform scales the glyphs.
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(op.fontSize * 20))));
  font.setBold(op.bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace

void ReplayDrawing(QPainter& painter, const RecordingCanvas& drawing, double pixelsPerUnit) {
  // A line of width 1 is one screen pixel on the original 800-pixel page.
  double lineScale = std::max(1.0, pixelsPerUnit * 15);
  for (const DrawOp& op : drawing.Ops()) {
    QColor color = ToQColor(op.color);
    QPen pen(color);
    pen.setCosmetic(true);
    pen.setWidthF(std::max(1, op.width) * lineScale);
    pen.setCapStyle(Qt::RoundCap);
    switch (op.kind) {
      case DrawOp::Kind::Line:
        painter.setPen(pen);
        painter.drawLine(QPointF(op.x1, op.y1), QPointF(op.x2, op.y2));
        break;
      case DrawOp::Kind::Box:
        painter.fillRect(QRectF(QPointF(std::min(op.x1, op.x2), std::min(op.y1, op.y2)),
                                QPointF(std::max(op.x1, op.x2), std::max(op.y1, op.y2))),
                         color);
        break;
      case DrawOp::Kind::Point:
        painter.setPen(pen);
        painter.drawPoint(QPointF(op.x1, op.y1));
        break;
      case DrawOp::Kind::Arc: {
        painter.setPen(pen);
        double span = op.end - op.start;
        if (span < 0) span += 2 * std::numbers::pi;
        QRectF box(op.x1 - op.radius, op.y1 - op.radius, 2 * op.radius, 2 * op.radius);
        constexpr double kSixteenthsPerRadian = 180 * 16 / std::numbers::pi;
        painter.drawArc(box, static_cast<int>(std::lround(op.start * kSixteenthsPerRadian)),
                        static_cast<int>(std::lround(span * kSixteenthsPerRadian)));
        break;
      }
      case DrawOp::Kind::Text: {
        QFont font = PageFont(op);
        painter.setFont(font);
        painter.setPen(color);
        QFontMetricsF metrics(font);
        painter.drawText(QPointF(op.x1, op.y1 + metrics.ascent()), QString::fromStdString(op.text));
        break;
      }
    }
  }
}

PageSurface::PageSurface(const RecordingCanvas& drawing, QWidget* parent)
    : QWidget(parent), drawing_(drawing) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PageSurface::SetMouseMoveHandler(std::function<void(float, float)> handler) {
  mouseMove_ = std::move(handler);
  setMouseTracking(static_cast<bool>(mouseMove_));
}

QPointF PageSurface::ToPage(QPointF widgetPos) const {
  return QPointF(widgetPos.x() * kPageWidth / std::max(1, width()),
                 widgetPos.y() * kPageHeight / std::max(1, height()));
}

void PageSurface::paintEvent(QPaintEvent*) {
  ++paints_;
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  double scale = width() / double{kPageWidth};
  painter.scale(scale, height() / double{kPageHeight});
  ReplayDrawing(painter, drawing_, scale);
}

void PageSurface::mouseMoveEvent(QMouseEvent* event) {
  if (mouseMove_) {
    QPointF p = ToPage(event->position());
    mouseMove_(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  QWidget::mouseMoveEvent(event);
}

}  // namespace drenik
