#pragma once
// The design-from-a-mask page in a window of its own beside the designer: a
// view over its page logic that polls a running search, so the window stays
// responsive while the worker thread computes.

#include <QTimer>
#include <QWidget>
#include <vector>

#include "pages/application.h"
#include "pages/synth_page.h"
#include "qt/control_page_view.h"

namespace drenik {

class SynthWindow : public QWidget, public SynthHost {
  Q_OBJECT
 public:
  SynthWindow(SynthPage& page, PageCanvas& drawing, QWidget* parent = nullptr);
  ~SynthWindow() override;

  ControlPageView& View() { return *view_; }
  // Every widget from the page, the mask's boxes and the topologies laid
  // out for its response.
  void Reload();
  // How often a running search is polled, ms.
  static constexpr int kPollMs = 50;

  // SynthHost
  void RunStarted() override;
  void Reshaped() override;
  void Close() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Tick();

  SynthPage& page_;
  ControlPageView* view_;
  QTimer* timer_;
};

// The controls of the page, in tab order: the filter and its mask on the
// left, the build and the goal beside them, the search space over the plot,
// and the table of candidates across the page under them. A band's mask
// frame is taller; only the topologies of the response have places.
std::vector<ControlPlace> SynthPlaces(SynthResponse response);

}  // namespace drenik
