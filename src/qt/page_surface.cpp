#include "qt/page_surface.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "qt/painter_canvas.h"

namespace drenik {

QSize PageWindowSize(const QRect& available, int extraHeight) {
  const double width =
      std::min(available.width() * 0.8, (available.height() * 0.8 - extraHeight) * 4 / 3);
  const int w = std::max(400, static_cast<int>(width));
  return QSize(w, w * 3 / 4 + extraHeight);
}

PageSurface::PageSurface(const RecordingCanvas& drawing, QWidget* parent)
    : QWidget(parent), drawing_(drawing) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PageSurface::SetMouseMoveHandler(std::function<void(float, float)> handler) {
  mouseMove_ = std::move(handler);
  setMouseTracking(static_cast<bool>(mouseMove_));
}

// The page is drawn at 4:3 and centred (PageTransform): a surface of
// another shape has margins, which lie outside the page.
QPointF PageSurface::ToPage(QPointF widgetPos) const {
  return PageTransform(QRectF(rect())).inverted().map(widgetPos);
}

void PageSurface::paintEvent(QPaintEvent*) {
  ++paints_;
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  ReplayPage(painter, drawing_, QRectF(rect()));
}

void PageSurface::mouseMoveEvent(QMouseEvent* event) {
  if (mouseMove_) {
    QPointF p = ToPage(event->position());
    mouseMove_(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  QWidget::mouseMoveEvent(event);
}

}  // namespace drenik
