#include "qt/time_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "qt/print_page.h"
#include "qt/render.h"

namespace drenik {

TimeWindow::TimeWindow(TimePage& page, Platform& platform, QWidget* parent)
    : QWidget(parent, Qt::Window),
      page_(page),
      platform_(platform),
      surface_(new PageSurface(page.Drawing(), this)) {
  setWindowTitle("Time and Smith chart");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(surface_, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setContentsMargins(8, 4, 8, 8);
  auto add = [&](const char* name, const char* caption, auto action) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(name);
    connect(b, &QPushButton::clicked, this, action);
    buttons->addWidget(b);
  };
  add("cmdPrint", "Print", [this] { PrintDrawnPageWithDialog(page_.Drawing(), platform_, this); });
  add("cmdSave", "Save picture", [this] { SavePicture(); });
  buttons->addStretch(1);
  add("cmdClose", "Close", [this] { close(); });
  layout->addLayout(buttons);
  surface_->setMouseTracking(true);
  surface_->SetMouseMoveHandler([this](float x, float y) {
    page_.OnMouseMove(x, y);
    surface_->update();
  });
  setMinimumSize(400, 300);
  // Sized to the screen it opens on (the designer's), button row included.
  ensurePolished();
  if (QScreen* screen = parent ? parent->screen() : this->screen())
    resize(PageWindowSize(screen->availableGeometry(), buttons->sizeHint().height()));
}

void TimeWindow::closeEvent(QCloseEvent* event) {
  emit Closed();
  QWidget::closeEvent(event);
}

void TimeWindow::Refresh() {
  surface_->update();
}

bool TimeWindow::SavePicture() {
  std::string name = platform_.SaveFileDialog(
      "Save time and Smith chart page",
      "PNG image (*.png)|*.png|PDF document (*.pdf)|*.pdf|SVG drawing (*.svg)|*.svg", "Time.png");
  if (name.empty()) return false;
  const size_t dot = name.find_last_of("./\\");
  if (dot == std::string::npos || name[dot] != '.') name += ".png";
  std::string error;
  if (RenderPageToFile(page_.Drawing(), name, 1600, 1200, error)) return true;
  platform_.ShowMessage(error.empty() ? "Cannot write " + name : error, "",
                        MessageIcon::Exclamation);
  return false;
}

}  // namespace drenik
