#pragma once
// A designer window in a fresh folder at 1280 x 960; the display page without one.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <memory>
#include <string>

#include "core/last_session.h"
#include "pages/application.h"
#include "pages/display_page.h"
#include "pages/opening_page.h"
#include "qt/designer_window.h"
#include "qt/painter_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"
#include "synthesis/families.h"

namespace drenik::testing {

inline DesignRecord FirstStartDesign(int16_t family, int16_t order = 5) {
  DesignRecord d;
  SetProgramConstants(d);
  SetLastSessionDefaults(d);
  d.Family = family;
  d.Order = family == kZelmar ? 5 : order;
  d.CauerFlag = family == kCauer || family == kZelmar;
  d.CauerType = "C";
  d.Rload = d.Rstandard = 50;
  d.Qcap = kInfiniteQcap;
  return d;
}

// The display page's load, then the 5% L values and the chosen parts (of
// `request`) if asked; false when refused.
inline bool DrawDisplayPageLoad(DesignRecord& d, RecordingCanvas& canvas, bool inductors = false,
                                bool chosen = false, const PartsRequest& request = {}) {
  RecordingPlatform platform;
  Application host(platform, ApplicationOptions{"", ""});  // never asked to change page
  if (!DesignPrototype(d).Ok()) return false;
  DisplayPage page(d, platform, canvas, host);
  page.SetPartsRequest(request);
  page.Load();
  if (inductors) page.OnInductors();
  if (chosen) page.OnChosenParts();
  return platform.messages.empty();
}

inline bool HasText(const RecordingCanvas& canvas, const std::string& text) {
  for (const DrawOp& op : canvas.Ops())
    if (op.kind == DrawOp::Kind::Text && op.text == text) return true;
  return false;
}

class WindowTest : public ::testing::Test {
 protected:
  WindowTest() : previous_(QDir::currentPath()) {
    PrepareQtDrawing();
    QDir::setCurrent(QString::fromStdString(folder.Path()));
  }
  ~WindowTest() override {
    window.reset();
    app.reset();
    QDir::setCurrent(previous_);
  }

  // A new run of the program in the same folder: the opening page is shown.
  void Launch() {
    window.reset();
    app.reset();
    platform = std::make_unique<RecordingPlatform>();
    app = std::make_unique<Application>(*platform, ApplicationOptions{kLastSessionFile, "guide"});
    window = std::make_unique<DesignerWindow>(*app);
    window->resize(1280, 960);
    app->Start();
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  // Launch, then "Start" on the opening page.
  void Start() {
    Launch();
    Click(Button(window->OpeningView(), "cmdStart"));
    ASSERT_EQ(app->CurrentPage(), PageId::Design);
  }

  DesignRecord& D() { return app->Record(); }

  template <typename T = QPushButton>
  T* Widget(ControlPageView& view, const char* name) {
    T* w = qobject_cast<T*>(view.WidgetFor(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  QPushButton* Button(ControlPageView& view, const char* name) { return Widget(view, name); }
  QRadioButton* Radio(const char* name) { return Widget<QRadioButton>(window->DesignView(), name); }
  QLineEdit* Edit(const char* name) { return Widget<QLineEdit>(window->DesignView(), name); }
  // Clicks near the left edge, where an option button has its circle.
  void Click(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
  }
  void Press(QWidget* w, Qt::Key key) {
    w->setFocus();
    QTest::keyClick(w, key);
  }
  // Replaces the text of a box one keystroke at a time.
  void TypeInto(QLineEdit* edit, const QString& text) {
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
  }

  // Moves the pointer to a page position, sent directly (the platform drops a
  // move to where it already is); returns the position in the surface.
  QPoint MoveMouse(float x, float y) {
    PageSurface& s = window->DisplayView().Surface();
    EXPECT_TRUE(s.hasMouseTracking());
    QPoint pixel(static_cast<int>(x / kPageWidth * s.width()),
                 static_cast<int>(y / kPageHeight * s.height()));
    QMouseEvent move(QEvent::MouseMove, QPointF(pixel), s.mapToGlobal(QPointF(pixel)), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&s, &move);
    return pixel;
  }

  TempFolder folder;
  const std::string sessionPath = folder / kLastSessionFile;
  QString previous_;
  std::unique_ptr<RecordingPlatform> platform;
  std::unique_ptr<Application> app;
  std::unique_ptr<DesignerWindow> window;
};

}  // namespace drenik::testing
