#pragma once
// The "Time and Smith chart" page in a window of its own beside the
// designer: the page's drawing, the Smith chart's readout under the mouse,
// printing and saving as PNG, SVG or PDF.

#include <QWidget>

#include "core/platform.h"
#include "pages/time_page.h"
#include "qt/page_surface.h"

namespace drenik {

class TimeWindow : public QWidget {
  Q_OBJECT
 public:
  TimeWindow(TimePage& page, Platform& platform, QWidget* parent = nullptr);

  // Shows what the page holds after its Load().
  void Refresh();
  PageSurface& Surface() { return *surface_; }
  // Asks for a file name and writes the page there; false when cancelled or
  // when the file could not be written (the platform shows why).
  bool SavePicture();

 signals:
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  TimePage& page_;
  Platform& platform_;
  PageSurface* surface_;
};

}  // namespace drenik
