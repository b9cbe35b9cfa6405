// Responsiveness of the designer window: a keystroke in the bandwidth box
// until the schematic strip is repainted, and "Display responses" until the
// display page is fully drawn on screen. Offscreen, at 1280 x 960.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "pages/application.h"
#include "qt/designer_window.h"
#include "qt/painter_canvas.h"

namespace {

class SilentPlatform : public drenik::Platform {
 public:
  using Platform::ShowMessage;
  void ShowMessage(const std::string&, const std::string&, drenik::MessageIcon) override {}
  std::string SaveFileDialog(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string OpenFileDialog(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  void OpenUrl(const std::string&) override {}
  void Beep() override {}
  std::string TodayShort() override { return "21.11.2026"; }
  void EndProgram() override {}
};

// The program at its first start (no last-session file), on the design page.
struct Designer {
  SilentPlatform platform;
  drenik::Application app{platform, drenik::ApplicationOptions{"", ""}};
  std::unique_ptr<drenik::DesignerWindow> window;

  Designer() {
    drenik::PrepareQtDrawing();
    window = std::make_unique<drenik::DesignerWindow>(app);
    window->resize(1280, 960);
    app.Start();
    window->show();
    Click(window->OpeningView(), "cmdStart");
    QApplication::processEvents();
  }
  static void Click(drenik::ControlPageView& view, const char* name) {
    qobject_cast<QPushButton*>(view.WidgetFor(name))->click();
  }
};

void Key(QWidget* target, int key, const QString& text) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
  QApplication::sendEvent(target, &press);
  QApplication::sendEvent(target, &release);
}

void BM_BandwidthKeystrokeToStrip(benchmark::State& state) {
  Designer designer;
  auto* box = qobject_cast<QLineEdit*>(designer.window->DesignView().WidgetFor("txtBandwidth"));
  box->setFocus();
  box->end(false);
  drenik::PageSurface& strip = designer.window->DesignView().Surface();
  bool append = true;
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    // Typing a digit, then taking it back: the width moves between 4.2 and
    // 42 MHz, and each keystroke redesigns the ladder.
    if (append) {
      Key(box, Qt::Key_0, "0");
    } else {
      Key(box, Qt::Key_Backspace, {});
    }
    append = !append;
    strip.repaint();
    state.SetIterationTime(timer.nsecsElapsed() * 1e-9);
  }
  state.counters["strip_paints"] = strip.Paints();
}
BENCHMARK(BM_BandwidthKeystrokeToStrip)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_DisplayResponsesToDrawnPage(benchmark::State& state) {
  Designer designer;
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    Designer::Click(designer.window->DesignView(), "cmdDesign");
    designer.window->repaint();
    state.SetIterationTime(timer.nsecsElapsed() * 1e-9);
    Designer::Click(designer.window->DisplayView(), "cmdDesign");  // back, not timed
    QApplication::processEvents();
  }
}
BENCHMARK(BM_DisplayResponsesToDrawnPage)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
