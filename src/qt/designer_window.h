#pragma once
// The designer window: the opening, design and display pages of an
// Application, one at a time, each a view over its page logic.

#include <QStackedWidget>
#include <QWidget>

#include "pages/application.h"
#include "qt/control_page_view.h"
#include "qt/stress_window.h"
#include "qt/synth_window.h"
#include "qt/time_window.h"
#include "qt/tolerance_window.h"

namespace drenik {

class DesignerWindow : public QWidget {
  Q_OBJECT
 public:
  explicit DesignerWindow(Application& app, QWidget* parent = nullptr);

  ControlPageView& OpeningView() { return *opening_; }
  ControlPageView& DesignView() { return *design_; }
  ControlPageView& DisplayView() { return *display_; }
  ControlPageView* CurrentView() const;
  // The tolerance page's window, once the display page has opened it.
  ToleranceWindow* Tolerance() const { return tolerance_; }
  TimeWindow* Time() const { return time_; }
  StressWindow* Stress() const { return stress_; }
  SynthWindow* Synth() const { return synth_; }

  // 80% of the available screen area, at 4:3.
  static QSize InitialSize(const QRect& available);

 private:
  void ShowPage(PageId page);

  Application& app_;
  QStackedWidget* stack_;
  ControlPageView* opening_;
  ControlPageView* design_;
  ControlPageView* display_;
  ToleranceWindow* tolerance_ = nullptr;
  TimeWindow* time_ = nullptr;
  StressWindow* stress_ = nullptr;
  SynthWindow* synth_ = nullptr;
};

// Page layouts, in tab order.
std::vector<ControlPlace> OpeningPlaces();
std::vector<ControlPlace> DesignPlaces();
std::vector<ControlPlace> DisplayPlaces();

// The user guide next to the program, else the one in `sourceDir`/docs, as
// a file URL (empty when neither exists).
std::string FindUserGuide(const QString& programDir, const QString& sourceDir);

}  // namespace drenik
