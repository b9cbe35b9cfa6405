#include "qt/tolerance_window.h"

#include <QCloseEvent>

#include "qt/mask_places.h"
#include "qt/print_page.h"
#include "qt/render.h"

namespace drenik {

std::vector<ControlPlace> TolerancePlaces(bool band) {
  std::vector<ControlPlace> p;
  // A label and its box on one row of a frame.
  auto row = [&p](const char* frame, const char* label, const char* box, float y) {
    p.push_back({label, 300, y, 2200, y + 330, 8, frame});
    p.push_back({box, 2250, y, 3200, y + 330, 8, frame});
  };
  // The four value stages in one row, in a smaller font than the boxes'.
  p.push_back({"frmValues", 150, 100, 3350, 720});
  p.push_back({"optExact", 250, 360, 1000, 660, 7.5f, "frmValues"});
  p.push_back({"opt5C", 1020, 360, 1700, 660, 7.5f, "frmValues"});
  p.push_back({"opt5L", 1720, 360, 2400, 660, 7.5f, "frmValues"});
  p.push_back({"optChosen", 2420, 360, 3300, 660, 7.5f, "frmValues"});

  p.push_back({"frmParts", 150, 800, 3350, 2150});
  row("frmParts", "lblCtol", "txtCtol", 1060);
  row("frmParts", "lblLtol", "txtLtol", 1420);
  p.push_back({"optUniform", 300, 1780, 1300, 2080, 8, "frmParts"});
  p.push_back({"optNormal", 1350, 1780, 3250, 2080, 8, "frmParts"});

  p.push_back({"frmTrials", 150, 2230, 3350, 3580});
  row("frmTrials", "lblTrials", "txtTrials", 2490);
  row("frmTrials", "lblSeed", "txtSeed", 2850);
  row("frmTrials", "lblTighten", "txtTighten", 3210);

  // Run and Cancel under the mask, whose frame a band's makes taller.
  const float mask = AddMaskPlaces(p, band, 3660);
  p.push_back({"cmdRun", 150, mask + 150, 1700, mask + 600, 9});
  p.push_back({"cmdCancel", 1800, mask + 150, 3350, mask + 600, 9});
  p.push_back({"cmdPrint", 150, 8350, 1100, 8750, 8});
  p.push_back({"cmdSave", 1150, 8350, 2300, 8750, 8});
  p.push_back({"cmdClose", 2350, 8350, 3350, 8750, 8});
  return p;
}

ToleranceWindow::ToleranceWindow(TolerancePage& page, PageCanvas& drawing, Platform& platform,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window),
      page_(page),
      platform_(platform),
      // Made with every box a band needs; Reload() hides what a design does not.
      view_(new ControlPageView(page.Controls(), drawing, TolerancePlaces(true), this)),
      timer_(new QTimer(this)) {
  HoldPageView(*this, *view_, page.Caption(), parent);
  timer_->setInterval(kPollMs);
  connect(timer_, &QTimer::timeout, this, &ToleranceWindow::Tick);
  page_.SetHost(this);
  Reload();
}

void ToleranceWindow::Reload() {
  view_->SetPlaces(TolerancePlaces(page_.Shape() != MaskShape::Edge));
  view_->SyncAll();
}

ToleranceWindow::~ToleranceWindow() {
  page_.SetHost(nullptr);
}

void ToleranceWindow::RunStarted() {
  timer_->start();
}

void ToleranceWindow::Tick() {
  page_.Poll();
  if (!page_.Running()) timer_->stop();
}

bool ToleranceWindow::Print(const RecordingCanvas& paper) {
  PrintDrawnPageWithDialog(paper, platform_, this);
  return true;
}

std::string ToleranceWindow::SavePicture(const RecordingCanvas& paper, const std::string& path) {
  std::string error;
  if (RenderPageToFile(paper, path, 1600, 1200, error)) return {};
  return error.empty() ? "Cannot write " + path : error;
}

void ToleranceWindow::Close() {
  close();
}

void ToleranceWindow::closeEvent(QCloseEvent* event) {
  page_.OnCancel();
  emit Closed();
  QWidget::closeEvent(event);
}

}  // namespace drenik
