#include "qt/page_surface.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "qt/painter_canvas.h"

namespace drenik {

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
