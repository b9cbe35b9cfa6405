#include "qt/stress_window.h"

#include <QEvent>
#include <QVBoxLayout>

namespace drenik {

std::vector<ControlPlace> StressPlaces() {
  return {
      {"frmStress", 150, 100, 3350, 1250},
      {"lblPower", 300, 400, 1900, 730, 8, "frmStress"},
      {"txtPower", 2000, 400, 3200, 730, 8, "frmStress"},
      {"lblVswr", 300, 800, 1900, 1130, 8, "frmStress"},
      {"txtVswr", 2000, 800, 3200, 1130, 8, "frmStress"},
      {"lblNote", 150, 1350, 3350, 2350, 8, nullptr, "Arial", false, Qt::AlignLeft | Qt::AlignTop,
       true},
      {"cmdPrint", 150, 8350, 1700, 8750, 8},
      {"cmdClose", 1800, 8350, 3350, 8750, 8},
  };
}

StressWindow::StressWindow(StressPage& page, PageCanvas& drawing,
                           std::function<void(const RecordingCanvas&)> print,
                           std::function<void()> reload, QWidget* parent)
    : QWidget(parent, Qt::Window),
      page_(page),
      print_(std::move(print)),
      reload_(std::move(reload)),
      view_(new ControlPageView(page.Controls(), drawing, StressPlaces(), this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(view_);
  setMinimumSize(400, 300);
  resize(1200, 900);
  page_.SetHost(this);
  Reload();
}

StressWindow::~StressWindow() {
  page_.SetHost(nullptr);
}

void StressWindow::Reload() {
  setWindowTitle(QString::fromStdString(page_.Caption()));
  view_->SyncAll();
  view_->Surface().update();
}

void StressWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && reload_) {
    reload_();
    Reload();
  }
}

bool StressWindow::Print() {
  print_(page_.PaperDrawing());
  return true;
}

void StressWindow::Close() {
  close();
}

}  // namespace drenik
