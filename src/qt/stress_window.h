#pragma once
// The part-stress page in a window of its own beside the designer: its
// power and VSWR boxes and its table, printed after the display page.

#include <QWidget>
#include <functional>
#include <vector>

#include "pages/application.h"
#include "pages/stress_page.h"
#include "qt/control_page_view.h"

namespace drenik {

class StressWindow : public QWidget, public StressHost {
  Q_OBJECT
 public:
  // `print` prints the display page followed by the given drawing;
  // `reload` loads the page with the design the display page holds now,
  // which the window does whenever it becomes the active window (the
  // design may have changed behind it: Up 1%, 5% inductors, ...).
  StressWindow(StressPage& page, PageCanvas& drawing,
               std::function<void(const RecordingCanvas&)> print, std::function<void()> reload,
               QWidget* parent = nullptr);
  ~StressWindow() override;

  ControlPageView& View() { return *view_; }
  void Reload();

  // StressHost
  bool Print() override;
  void Close() override;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  StressPage& page_;
  std::function<void(const RecordingCanvas&)> print_;
  std::function<void()> reload_;
  ControlPageView* view_;
};

// The controls of the part-stress page, in tab order, in the left column.
std::vector<ControlPlace> StressPlaces();

}  // namespace drenik
