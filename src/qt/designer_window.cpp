#include "qt/designer_window.h"

#include "pages/design_page.h"
#include "qt/other_design_dialog.h"
#include "qt/part_models_dialog.h"
#include "qt/parts_dialog.h"
#include "qt/print_page.h"
#include "qt/spice_dialog.h"
#include "qt/sweep_dialog.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace drenik {

namespace {

constexpr Qt::Alignment kCentred = Qt::AlignHCenter | Qt::AlignVCenter;

// One option per row inside a frame, from `top`, 370 apart, or closer when
// that many rows would run past `bottom`.
void AddOptionColumn(std::vector<ControlPlace>& places, const char* frame,
                     const std::vector<std::string>& names, float x1, float x2, float top,
                     float bottom = 1e9f) {
  const float pitch = std::min(370.f, (bottom - top) / static_cast<float>(names.size()));
  float y = top;
  for (const std::string& name : names) {
    places.push_back({name, x1, y, x2, y + pitch - 30, 8, frame});
    y += pitch;
  }
}

}  // namespace

std::vector<ControlPlace> OpeningPlaces() {
  return {
      {"lblHeading1", 0, 450, 12000, 1250, 28, nullptr, "Times New Roman", true, kCentred},
      {"lblHeading2", 1000, 1300, 11000, 2100, 10, nullptr, "Arial", false, kCentred, true},
      {"lblVersion", 0, 3950, 12000, 4350, 10, nullptr, "Arial", false, kCentred},
      {"lblNotice", 1000, 4500, 11000, 5100, 9, nullptr, "Arial", false, kCentred, true},
      {"lblVisit", 4000, 5300, 8000, 5700, 10, nullptr, "Arial", false, kCentred},
      {"cmdStart", 3600, 6700, 5600, 7300, 10},
      {"cmdExit", 6400, 6700, 8400, 7300, 10},
      // The design from a mask: a way in beside Start, under the two.
      {"cmdFromMask", 3600, 7500, 8400, 8000, 10},
  };
}

std::vector<ControlPlace> DesignPlaces() {
  std::vector<ControlPlace> p;
  p.push_back({"lblTitle", 400, 3550, 4000, 3900, 11, nullptr, "Arial", true});
  p.push_back({"frmFamily", 400, 3950, 2700, 6250});
  std::vector<std::string> families, topologies;
  for (const FamilyInfo& f : Families()) families.push_back(f.optionName);
  for (const TopologyInfo& t : Topologies())
    if (!t.band) topologies.push_back(TopologyOption(t));
  AddOptionColumn(p, "frmFamily", families, 600, 2600, 4300, 6230);
  p.push_back({"frmOrder", 2900, 3950, 4300, 6250});
  std::vector<std::string> orders;
  for (int n = kLowestButtonOrder; n <= kHighestButtonOrder; ++n)
    orders.push_back("optOrder" + std::to_string(n));
  AddOptionColumn(p, "frmOrder", orders, 3100, 4200, 4300);
  p.push_back({"frmTopology", 4500, 3950, 7200, 5900});
  AddOptionColumn(p, "frmTopology", topologies, 4700, 7100, 4300);
  p.push_back({"frmRipple", 7400, 3950, 9600, 5500});
  AddOptionColumn(p, "frmRipple", {"opt01", "opt044", "opt200"}, 7600, 9500, 4300);
  p.push_back({"frmStopbandDepth", 9800, 3950, 11600, 5900});
  AddOptionColumn(p, "frmStopbandDepth", {"optAstop30", "optAstop40", "optAstop50", "optAstop60"},
                  10000, 11500, 4300);
  // Orders, ripples and depths beyond the buttons: the button under the
  // topology frame, next to the orders, and the line naming such a design
  // under the depth frame (two lines where it needs them). The space under
  // the ripple frame is the band edges'.
  p.push_back({"cmdOtherDesign", 4500, 5980, 6800, 6340, 8});
  p.push_back({"lblOtherDesign", 9800, 5940, 11600, 6400, 8, nullptr, "Arial", false,
               Qt::AlignLeft | Qt::AlignVCenter, true});

  p.push_back({"frmImpedance", 400, 6450, 3400, 7850});
  p.push_back({"optZ50", 600, 6800, 1500, 7140, 8, "frmImpedance"});
  p.push_back({"optZother", 1600, 6800, 2700, 7140, 8, "frmImpedance"});
  p.push_back({"txtZother", 600, 7280, 2000, 7640, 8, "frmImpedance"});
  p.push_back({"lblOhms", 2100, 7280, 3000, 7640, 8, "frmImpedance"});
  p.push_back({"frmBandwidth", 3600, 6450, 7200, 7850});
  p.push_back({"lblMHz", 3800, 7000, 4350, 7360, 8, "frmBandwidth"});
  p.push_back({"txtBandwidth", 4400, 7000, 5900, 7360, 8, "frmBandwidth"});
  p.push_back({"lblRipple", 6000, 7000, 7100, 7360, 8, "frmBandwidth"});
  p.push_back({"frmQ", 7400, 6450, 10200, 7850});
  p.push_back({"optQ1", 7600, 6800, 8800, 7140, 8, "frmQ"});
  p.push_back({"optQ2", 8900, 6800, 10000, 7140, 8, "frmQ"});
  p.push_back({"txtQother", 7600, 7280, 9000, 7640, 8, "frmQ"});

  // The band topologies in one row right of the title (the coupled form's
  // caption is the longest), the band's centre and the coupled resonators'
  // inductance right of the Q frame, and the band's edges under the frames.
  float x = 4100;
  for (const TopologyInfo& t : Topologies()) {
    if (!t.band) continue;
    const float width = t.resonatorL ? 1900 : 1350;
    p.push_back({TopologyOption(t), x, 3560, x + width, 3900, 8});
    x += width + 40;
  }
  p.push_back({"frmCenter", 10400, 6450, 11600, 7850});
  p.push_back({"lblCenter", 10500, 6800, 10850, 7140, 8, "frmCenter"});
  p.push_back({"txtCenter", 10850, 6800, 11500, 7140, 8, "frmCenter"});
  p.push_back({"lblResonatorL", 10500, 7280, 10850, 7620, 8, "frmCenter"});
  p.push_back({"txtResonatorL", 10850, 7280, 11500, 7620, 8, "frmCenter"});
  p.push_back({"lblBandEdges", 3600, 7880, 11600, 8160, 8});
  // The band by its edges, under the ripple frame.
  p.push_back({"frmBandEdges", 7400, 5560, 9600, 6400});
  p.push_back({"lblF1", 7470, 5910, 7640, 6250, 8, "frmBandEdges"});
  p.push_back({"txtF1", 7650, 5910, 8530, 6250, 8, "frmBandEdges"});
  p.push_back({"lblF2", 8600, 5910, 8770, 6250, 8, "frmBandEdges"});
  p.push_back({"txtF2", 8780, 5910, 9540, 6250, 8, "frmBandEdges"});

  p.push_back({"cmdDesign", 400, 8200, 3000, 8750, 9});
  p.push_back({"cmdFromMask", 3300, 8200, 6400, 8750, 9});
  p.push_back({"cmdZelmarSoftware", 6700, 8200, 9000, 8750, 9});
  p.push_back({"cmdExit", 9300, 8200, 11600, 8750, 9});
  return p;
}

std::vector<ControlPlace> DisplayPlaces() {
  std::vector<ControlPlace> p;
  // A row of buttons from x = 2400 to the page's right margin, in a
  // font a little smaller than the page's own so that "Change design" fits
  // its button.
  auto row = [&p](std::initializer_list<const char*> names, float y1, float y2) {
    constexpr float kGap = 50;
    const float width = (11960 - 2400 - kGap * float(names.size() - 1)) / float(names.size());
    float x = 2400;
    for (const char* name : names) {
      p.push_back({name, x, y1, x + width, y2, 7.5f});
      x += width + kGap;
    }
  };
  // Along the bottom, under the plots and right of the readout box: the
  // page's own buttons, then the analyses that open pages of their own.
  row({"cmdUp", "cmdDown", "cmdVSWR", "cmdTime", "cmdInductors", "cmdChosenParts", "cmdTolerance",
       "cmdStress", "cmdDesign", "cmdExit"},
      8600, 8980);
  // The time and Smith chart page: under the data readout, left of the row
  // (the readout's five rows end at y = 8400).
  p.push_back({"cmdTimeSmith", 400, 8600, 2300, 8980, 7.5f});
  // The files: one row along the top edge. Nothing is drawn above y = 420
  // (the highest text is the "Chebyshev)" note of an unequally terminated
  // load at 440), whatever the width of the ladder.
  row({"cmdPrint", "cmdSaveOverlay", "cmdGetOverlay", "cmdWritePallis", "cmdSpice", "cmdNetlist",
       "cmdTouchstone", "cmdCsv", "cmdKicad", "cmdPartsList"},
      40, 400);
  // Part models and a band design's sweep: the top left corner, left of the
  // file row and as tall as its buttons (nothing is drawn above y = 420);
  // last in tab order, so the page still opens with the focus on Up 1%.
  p.push_back({"cmdPartModels", 400, 40, 1420, 400, 7.5f});
  p.push_back({"cmdSweep", 1470, 40, 2300, 400, 7.5f});
  return p;
}

std::string FindUserGuide(const QString& programDir, const QString& sourceDir) {
  for (const QString& dir : {programDir, sourceDir + "/docs"}) {
    QFileInfo guide(QDir(dir).filePath("user-guide.html"));
    if (!dir.isEmpty() && guide.isFile()) {
      return QUrl::fromLocalFile(guide.absoluteFilePath()).toString().toStdString();
    }
  }
  return {};
}

QSize DesignerWindow::InitialSize(const QRect& available) {
  int width = static_cast<int>(std::min(available.width() * 0.8, available.height() * 0.8 * 4 / 3));
  return QSize(width, width * 3 / 4);
}

DesignerWindow::DesignerWindow(Application& app, QWidget* parent)
    : QWidget(parent), app_(app), stack_(new QStackedWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(stack_);
  opening_ = new ControlPageView(app.Opening().Controls(), app.OpeningCanvas(), OpeningPlaces());
  design_ = new ControlPageView(app.Design().Controls(), app.DesignCanvas(), DesignPlaces());
  display_ = new ControlPageView(app.Display().Controls(), app.DisplayCanvas(), DisplayPlaces());
  stack_->addWidget(opening_);
  stack_->addWidget(design_);
  stack_->addWidget(display_);
  opening_->MakeLink("lblVisit", [&app] { app.Opening().VisitUserGuide(); });
  display_->Surface().SetMouseMoveHandler(
      [&app](float x, float y) { app.Display().OnMouseMove(x, y); });
  setMinimumSize(400, 300);

  // The display page's Print, LTspice, Chosen parts, Part models and Sweep buttons
  // need the desktop: their dialogs open over this window.
  // The part stress, while its window is open, prints after the page.
  app.SetPrintService([this] {
    const bool stress = stress_ && stress_->isVisible();
    const RecordingCanvas paper = stress ? app_.Stress().PaperDrawing() : RecordingCanvas{};
    PrintDisplayPageWithDialog(app_.Record(), app_.DisplayCanvas(), app_.GetPlatform(), this,
                               stress ? &paper : nullptr);
  });
  app.SetSpiceObserver([this](SpicePage& page) { RunSpiceDialog(page, this); });
  app.SetPartsRequestService(
      [this](PartsRequest& r, const std::string& note) { return AskPartsRequest(r, note, this); });
  app.SetPartModelsService([this](PartModelEntries& e) { return AskPartModels(e, this); });
  app.SetSweepService([this](SweepEntry& e) { return AskSweep(e, this); });
  app.SetOtherDesignService([this](OtherDesign& o) { return AskOtherDesign(o, this); });
  // The tolerance page in its own window beside this one, made once.
  app.SetToleranceObserver([this](TolerancePage& page) {
    if (!tolerance_) {
      tolerance_ = new ToleranceWindow(page, app_.ToleranceCanvas(), app_.GetPlatform(), this);
      connect(tolerance_, &ToleranceWindow::Closed, this, [this] { app_.TolerancePageClosed(); });
    }
    tolerance_->Reload();
    tolerance_->show();
    tolerance_->raise();
    tolerance_->activateWindow();
  });
  // The time and Smith chart page in its own window, made once.
  app.SetTimeObserver([this](TimePage& page) {
    if (!time_) {
      time_ = new TimeWindow(page, app_.GetPlatform(), this);
      connect(time_, &TimeWindow::Closed, this, [this] { app_.TimePageClosed(); });
    }
    time_->Refresh();
    time_->show();
    time_->raise();
    time_->activateWindow();
  });
  // The side windows follow the display page: the time page drawn again,
  // the tolerance page's boxes for the shape of its mask, the part stress
  // worked out again.
  app.SetFollowObserver([this] {
    if (time_ && time_->isVisible()) time_->Refresh();
    if (tolerance_ && tolerance_->isVisible()) tolerance_->Reload();
    if (stress_ && stress_->isVisible()) {
      app_.Stress().Load(app_.Record());
      stress_->Reload();
    }
  });
  // The part-stress page in its own window, made once.
  app.SetStressObserver([this](StressPage& page) {
    if (!stress_)
      stress_ = new StressWindow(
          page, app_.StressCanvas(),
          [this](const RecordingCanvas& paper) {
            PrintDisplayPageWithDialog(app_.Record(), app_.DisplayCanvas(), app_.GetPlatform(),
                                       stress_, &paper);
          },
          [this] { app_.Stress().Load(app_.Record()); }, this);
    stress_->Reload();
    stress_->show();
    stress_->raise();
    stress_->activateWindow();
  });
  // The design from a mask in its own window, made once.
  app.SetSynthObserver([this](SynthPage& page) {
    if (!synth_) synth_ = new SynthWindow(page, app_.SynthCanvas(), this);
    synth_->Reload();
    synth_->show();
    synth_->raise();
    synth_->activateWindow();
  });
  app.SetPageObserver([this](PageId page) { ShowPage(page); });
  ShowPage(app.CurrentPage());
}

ControlPageView* DesignerWindow::CurrentView() const {
  return qobject_cast<ControlPageView*>(stack_->currentWidget());
}

void DesignerWindow::ShowPage(PageId page) {
  switch (page) {
    case PageId::Opening:
      setWindowTitle(QString::fromStdString(app_.Opening().Caption()));
      stack_->setCurrentWidget(opening_);
      break;
    case PageId::Design:
      setWindowTitle(QString::fromStdString(app_.Design().Caption()));
      stack_->setCurrentWidget(design_);
      break;
    case PageId::Display:
      setWindowTitle(QString::fromStdString(app_.Display().Caption()));
      stack_->setCurrentWidget(display_);
      break;
    case PageId::Ended:
      close();
      return;
  }
  if (ControlPageView* view = CurrentView()) {
    view->SyncAll();
    view->Surface().update();
    if (QWidget* first = view->nextInFocusChain(); first && isVisible()) first->setFocus();
  }
}

}  // namespace drenik
