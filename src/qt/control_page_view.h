#pragma once
// One page of the window: its drawing and the widgets of its control model,
// laid out on the 12000 x 9000 page and scaled together (positions, sizes and
// fonts by one factor, the page kept at 4:3 and centred).
//
// The widgets mirror the model (captions, texts, selection, enabling) through
// its change observer and forward the user's clicks and typing to it; the
// model alone decides what happens.

#include <QWidget>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "pages/application.h"
#include "pages/controls.h"
#include "qt/page_surface.h"

namespace drenik {

// Where a control sits on the page, in page units. Controls inside a frame
// name it; they are children of the frame's group box and are placed
// relative to it (their rectangle is still given in page units).
struct ControlPlace {
  std::string name;
  float x1, y1, x2, y2;
  float pointSize = 8;
  const char* frame = nullptr;
  const char* fontFamily = "Arial";
  bool bold = false;
  Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter;
  bool wordWrap = false;
};

class ControlPageView : public QWidget {
  Q_OBJECT
 public:
  // The widgets are created in the order of `places`, which is also the tab
  // order; a frame comes before the controls inside it.
  ControlPageView(ControlSet& controls, PageCanvas& drawing, std::vector<ControlPlace> places,
                  QWidget* parent = nullptr);

  // The widget shown for a control, or nullptr.
  QWidget* WidgetFor(const std::string& name) const;
  PageSurface& Surface() { return *surface_; }
  // Turns a label into a link that runs `activate` (click, or Enter when it
  // has the keyboard focus).
  void MakeLink(const std::string& name, std::function<void()> activate);
  // Scale of the page: pixels per page unit.
  double Scale() const { return scale_; }
  // Sets every widget from the model.
  void SyncAll();
  // Moves the controls to other places (each keeps the frame it was made
  // in) and hides those that have none there: one page whose boxes differ
  // with what it shows.
  void SetPlaces(const std::vector<ControlPlace>& places);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Entry {
    ControlPlace place;
    Control* control = nullptr;
    QWidget* widget = nullptr;
    bool link = false;
  };
  QWidget* Create(Entry& entry);
  void Mirror(const Control& control);
  void MirrorEntry(Entry& entry);
  void Relayout();

  ControlSet& controls_;
  PageSurface* surface_;
  std::vector<Entry> entries_;
  std::map<const Control*, size_t> byControl_;
  std::map<std::string, size_t> byName_;
  double scale_ = 0.1;
};

// A window of its own that shows one page view and nothing else, at 4:3 in
// 80% of the screen it opens on (its parent's), titled with the page's
// caption.
void HoldPageView(QWidget& window, ControlPageView& view, const std::string& caption,
                  QWidget* parent);

}  // namespace drenik
