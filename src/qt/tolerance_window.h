#pragma once
// The tolerance page in a window of its own beside the designer: a view over
// its page logic that polls a running analysis, so the window stays
// responsive while the worker thread computes, and that prints the page and
// saves it as a picture.

#include <QTimer>
#include <QWidget>
#include <vector>

#include "pages/application.h"
#include "pages/tolerance_page.h"
#include "qt/control_page_view.h"

namespace drenik {

class ToleranceWindow : public QWidget, public ToleranceHost {
  Q_OBJECT
 public:
  ToleranceWindow(TolerancePage& page, PageCanvas& drawing, Platform& platform,
                  QWidget* parent = nullptr);
  ~ToleranceWindow() override;

  ControlPageView& View() { return *view_; }
  // After the page has loaded a design: the mask boxes its shape needs, then
  // every widget from the page.
  void Reload();
  // How often a running analysis is polled, ms.
  static constexpr int kPollMs = 50;

  // ToleranceHost
  void RunStarted() override;
  bool Print(const RecordingCanvas& paper) override;
  std::string SavePicture(const RecordingCanvas& paper, const std::string& path) override;
  void Close() override;

 signals:
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Tick();

  TolerancePage& page_;
  Platform& platform_;
  ControlPageView* view_;
  QTimer* timer_;
};

// The controls of the tolerance page, in tab order, in the left column. A
// band's mask has a second passband edge and a "to" for each stopband, in a
// taller mask frame; a lowpass's or highpass's places leave those out.
std::vector<ControlPlace> TolerancePlaces(bool band = false);

}  // namespace drenik
