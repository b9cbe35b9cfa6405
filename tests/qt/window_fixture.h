#pragma once
// A designer window over a recording platform, in a fresh working folder
// (where the last-session file lives), shown at 1280 x 960 under the
// offscreen platform.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "pages/application.h"
#include "qt/designer_window.h"
#include "qt/painter_canvas.h"
#include "support/recording_platform.h"

namespace drenik::testing {

inline void TestApplication() {
  PrepareQtDrawing();
}

class WindowTest : public ::testing::Test {
 protected:
  WindowTest() {
    TestApplication();
    previous_ = QDir::currentPath();
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

  template <typename T>
  T* Widget(ControlPageView& view, const char* name) {
    T* w = qobject_cast<T*>(view.WidgetFor(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  QPushButton* Button(ControlPageView& view, const char* name) {
    return Widget<QPushButton>(view, name);
  }
  QRadioButton* Radio(const char* name) {
    return Widget<QRadioButton>(Window().DesignView(), name);
  }
  QLineEdit* Edit(const char* name) { return Widget<QLineEdit>(Window().DesignView(), name); }
  // Clicks near the left edge, where an option button has its circle.
  void Click(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
  }

  // Replaces the text of a box by typing, one keystroke at a time.
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

  // The pointer moving over the display page without a button held (sent
  // directly: the platform drops a move to where the pointer already is).
  void MoveMouse(QPoint pixel) {
    PageSurface& surface = Window().DisplayView().Surface();
    ASSERT_TRUE(surface.hasMouseTracking());
    QMouseEvent move(QEvent::MouseMove, QPointF(pixel), surface.mapToGlobal(QPointF(pixel)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&surface, &move);
  }

  std::string SessionFile() const {
    std::ifstream in(QDir(folder_.path()).filePath(kLastSessionFile).toStdString(),
                     std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  void WriteSessionFile(const std::string& bytes) const {
    std::ofstream(QDir(folder_.path()).filePath(kLastSessionFile).toStdString(), std::ios::binary)
        << bytes;
  }

  static bool HasText(const RecordingCanvas& canvas, const std::string& text) {
    for (const DrawOp& op : canvas.Ops()) {
      if (op.kind == DrawOp::Kind::Text && op.text == text) return true;
    }
    return false;
  }

  std::unique_ptr<RecordingPlatform> platform;

 private:
  QTemporaryDir folder_;
  QString previous_;
  std::unique_ptr<Application> app_;
  std::unique_ptr<DesignerWindow> window_;
};

}  // namespace drenik::testing
