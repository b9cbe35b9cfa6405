#include "qt/canvas_widget.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "qt/painter_canvas.h"

namespace drenik {

CanvasWidget::CanvasWidget(QWidget* parent) : QWidget(parent), page_(this) {
  PrepareQtDrawing();
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(320, 240);
}

QPointF CanvasWidget::ToPage(const QPointF& widgetPos) const {
  return PageTransform(QRectF(rect())).inverted().map(widgetPos);
}

QPointF CanvasWidget::FromPage(const QPointF& pagePos) const {
  return PageTransform(QRectF(rect())).map(pagePos);
}

void CanvasWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  ReplayPage(painter, page_, QRectF(rect()));
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
  QPointF p = ToPage(event->position());
  emit PageMouseMoved(static_cast<float>(p.x()), static_cast<float>(p.y()));
  QWidget::mouseMoveEvent(event);
}

}  // namespace drenik
