#pragma once
// A designer window over a recording platform in a fresh working folder,
// shown at 1280 x 960; and the display page drawn without a window.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <string>

#include "pages/application.h"
#include "pages/display_page.h"
#include "qt/designer_window.h"
#include "qt/painter_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"
#include "synthesis/prototypes.h"

namespace drenik::testing {

inline DesignRecord FirstStartDesign(int16_t family, int16_t order = 5) {
  DesignRecord d;
  d.Pi = 3.14159265f;
  d.TwoPi = 6.28318531f;
  d.ProgramTitle = "Drenik Filter Designer";
  d.Version = "2.12";
  d.Family = family;
  d.Order = family == kZelmar ? 5 : order;
  d.CauerFlag = family == kCauer || family == kZelmar;
  d.Topology = "Cinlowpass";
  d.CauerType = "C";
  d.Apass = 0.044f;
  d.Astop = 40;
  d.Width = 4.2e6f;
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = kInfiniteQind;
  d.Qcap = kInfiniteQcap;
  return d;
}

// The display page's load, then the 5% L values if asked; false when the
// design is refused.
inline bool DrawDisplayPageLoad(DesignRecord& d, RecordingCanvas& canvas, bool inductors = false) {
  struct : PageHost {
    void ShowDesignPage() override {}
    void ShowDisplayPage() override {}
    void EndProgram(bool) override {}
    const std::string& UserGuideUrl() const override { return url; }
    std::string url;
  } host;
  RecordingPlatform platform;
  try {
    DesignPrototype(d, platform);
  } catch (const std::exception&) {
    return false;
  }
  DisplayPage page(d, platform, canvas, host);
  page.Load();
  if (inductors) page.OnInductors();
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
    QDir::setCurrent(folder_.path());
  }
  ~WindowTest() override {
    window_.reset();
    app_.reset();
    QDir::setCurrent(previous_);
  }

  // A new run of the program in the same folder: the opening page is shown.
  void Launch() {
    window_.reset();
    app_.reset();
    platform = std::make_unique<RecordingPlatform>();
    app_ = std::make_unique<Application>(*platform, ApplicationOptions{kLastSessionFile, "guide"});
    window_ = std::make_unique<DesignerWindow>(*app_);
    window_->resize(1280, 960);
    app_->Start();
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  }

  Application& App() { return *app_; }
  DesignRecord& D() { return app_->Record(); }
  DesignerWindow& Window() { return *window_; }

  template <typename T = QPushButton>
  T* Widget(ControlPageView& view, const char* name) {
    T* w = qobject_cast<T*>(view.WidgetFor(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  QPushButton* Button(ControlPageView& view, const char* name) { return Widget(view, name); }
  QRadioButton* Radio(const char* name) {
    return Widget<QRadioButton>(Window().DesignView(), name);
  }
  QLineEdit* Edit(const char* name) { return Widget<QLineEdit>(Window().DesignView(), name); }
  // Clicks near the left edge, where an option button has its circle.
  void Click(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
  }
  // Replaces the text of a box one keystroke at a time.
  void TypeInto(QLineEdit* edit, const QString& text) {
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
  }

  // A page position on the display page, as a position in its surface.
  QPoint DisplayPixel(float x, float y) {
    PageSurface& s = Window().DisplayView().Surface();
    return QPoint(static_cast<int>(x / kPageWidth * s.width()),
                  static_cast<int>(y / kPageHeight * s.height()));
  }
  // Sent directly: the platform drops a move to where the pointer already is.
  void MoveMouse(QPoint pixel) {
    PageSurface& surface = Window().DisplayView().Surface();
    ASSERT_TRUE(surface.hasMouseTracking());
    QMouseEvent move(QEvent::MouseMove, QPointF(pixel), surface.mapToGlobal(QPointF(pixel)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&surface, &move);
  }

  std::string SessionPath() const {
    return QDir(folder_.path()).filePath(kLastSessionFile).toStdString();
  }

  std::unique_ptr<RecordingPlatform> platform;

 private:
  QTemporaryDir folder_;
  QString previous_;
  std::unique_ptr<Application> app_;
  std::unique_ptr<DesignerWindow> window_;
};

}  // namespace drenik::testing
