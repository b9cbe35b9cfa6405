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
  // `print` prints the display page followed by the given drawing.
  StressWindow(StressPage& page, PageCanvas& drawing,
               std::function<void(const RecordingCanvas&)> print, QWidget* parent = nullptr);
  ~StressWindow() override;

  ControlPageView& View() { return *view_; }
  void Reload();

  // StressHost
  bool Print() override;
  void Close() override;

 private:
  StressPage& page_;
  std::function<void(const RecordingCanvas&)> print_;
  ControlPageView* view_;
};

// The controls of the part-stress page, in tab order, in the left column.
std::vector<ControlPlace> StressPlaces();

}  // namespace drenik
