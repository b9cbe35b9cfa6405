#pragma once
// A widget showing a page: it owns the page's recording canvas, repaints when
// anything is drawn on it and scales the page to its size (aspect kept,
// centred, white around). Mouse moves are reported in page units.

#include <QPointF>
#include <QWidget>

#include "plot/recording_canvas.h"

namespace drenik {

class CanvasWidget : public QWidget {
  Q_OBJECT

 public:
  explicit CanvasWidget(QWidget* parent = nullptr);

  // The page the program draws on.
  RecordingCanvas& Page() { return page_; }
  const RecordingCanvas& Page() const { return page_; }

  // Widget position to page units and back.
  QPointF ToPage(const QPointF& widgetPos) const;
  QPointF FromPage(const QPointF& pagePos) const;

  QSize sizeHint() const override { return {960, 720}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int w) const override { return w * 3 / 4; }

 signals:
  // The pointer moved over the widget, at (x, y) in page units.
  void PageMouseMoved(float x, float y);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  class NotifyingCanvas : public RecordingCanvas {
   public:
    explicit NotifyingCanvas(QWidget* owner) : owner_(owner) {}

   protected:
    void Changed() override { owner_->update(); }

   private:
    QWidget* owner_;
  };
  NotifyingCanvas page_;
};

}  // namespace drenik
