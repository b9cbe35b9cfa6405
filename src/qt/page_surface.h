#pragma once
// The drawn part of a page: replays a page's recorded drawing (12000 x 9000
// page units) scaled to the widget, so it stays sharp at any size, and
// reports mouse positions in page units.

#include <QWidget>
#include <functional>

#include "plot/recording_canvas.h"

namespace drenik {

// The size of a window that shows a page at 4:3 in 80% of a screen's
// available area, with `extraHeight` pixels under it (a row of buttons).
QSize PageWindowSize(const QRect& available, int extraHeight = 0);

class PageSurface : public QWidget {
  Q_OBJECT
 public:
  PageSurface(const RecordingCanvas& drawing, QWidget* parent = nullptr);

  // Called with the pointer position in page units while the mouse moves
  // over the surface (with or without a button held).
  void SetMouseMoveHandler(std::function<void(float x, float y)> handler);
  // A widget position in page units.
  QPointF ToPage(QPointF widgetPos) const;
  int Paints() const { return paints_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  const RecordingCanvas& drawing_;
  std::function<void(float, float)> mouseMove_;
  int paints_ = 0;
};

}  // namespace drenik
