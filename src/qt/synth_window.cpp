#include "qt/synth_window.h"

#include <QCloseEvent>
#include <algorithm>
#include <cstring>

#include "qt/mask_places.h"
#include "synth/responses.h"
#include "synth/search_space.h"

namespace drenik {

namespace {

// Places for every control: a band's mask (whose frame has every box), and
// the topologies of every response, each where the others' would be.
std::vector<ControlPlace> EveryPlace() {
  std::vector<ControlPlace> every;
  for (bool band : {true, false})
    for (const ResponseInfo& r : kResponses) {
      if (r.band != band) continue;
      for (const ControlPlace& place : SynthPlaces(r.response))
        if (std::none_of(every.begin(), every.end(),
                         [&](const ControlPlace& e) { return e.name == place.name; }))
          every.push_back(place);
    }
  return every;
}

}  // namespace

std::vector<ControlPlace> SynthPlaces(SynthResponse response) {
  std::vector<ControlPlace> p;
  // A label and its box on one row of a frame, in a column from x.
  auto row = [&p](const char* frame, const char* label, const char* box, float x, float y) {
    p.push_back({label, x + 150, y, x + 2050, y + 330, 8, frame});
    p.push_back({box, x + 2100, y, x + 3050, y + 330, 8, frame});
  };
  // The filter, two responses a row, and its mask.
  p.push_back({"frmResponse", 150, 100, 3350, 1460});
  int k = 0;
  for (const ResponseInfo& r : kResponses) {
    const float x = 300 + 1450.f * static_cast<float>(k % 2), y = 340 + 360.f * (k / 2);
    p.push_back({ResponseOption(r.response), x, y, x + 1400, y + 330, 8, "frmResponse"});
    ++k;
  }
  row("frmResponse", "lblImpedance", "txtImpedance", 150, 1060);
  AddMaskPlaces(p, ResponseOf(response).band, 1540);

  // The build and the goal, with the trials and the seed.
  p.push_back({"frmBuild", 3450, 100, 6650, 2650});
  row("frmBuild", "lblCtol", "txtCtol", 3450, 360);
  row("frmBuild", "lblLtol", "txtLtol", 3450, 720);
  p.push_back({"optUniform", 3600, 1080, 4600, 1380, 8, "frmBuild"});
  p.push_back({"optNormal", 4650, 1080, 6550, 1380, 8, "frmBuild"});
  p.push_back({"lblModels", 3600, 1420, 6550, 1830, 7.5f, "frmBuild", "Arial", false,
               Qt::AlignLeft | Qt::AlignVCenter, true});
  p.push_back({"chkStock", 3600, 1880, 5000, 2210, 8, "frmBuild"});
  p.push_back({"cmdStock", 5100, 1880, 6500, 2210, 8, "frmBuild"});
  p.push_back({"lblStock", 3600, 2230, 6550, 2600, 7.5f, "frmBuild", "Arial", false,
               Qt::AlignLeft | Qt::AlignVCenter, true});
  p.push_back({"frmGoal", 3450, 2730, 6650, 5210});
  row("frmGoal", "lblYield", "txtYield", 3450, 2990);
  row("frmGoal", "lblMaxOrder", "txtMaxOrder", 3450, 3350);
  p.push_back({"lblTrials", 3600, 3710, 4200, 4040, 8, "frmGoal"});
  p.push_back({"txtTrials", 4250, 3710, 5150, 4040, 8, "frmGoal"});
  p.push_back({"lblSeed", 5300, 3710, 5750, 4040, 8, "frmGoal"});
  p.push_back({"txtSeed", 5800, 3710, 6500, 4040, 8, "frmGoal"});
  float y = 4070;
  for (const char* option : {"optParts", "optInductors", "optMargin"}) {
    p.push_back({option, 3600, y, 6550, y + 330, 8, "frmGoal"});
    y += 360;
  }

  // The search space over the plot: the families in two rows, the
  // topologies of the response in a third, each as wide as its caption.
  p.push_back({"frmSpace", 6750, 100, 11850, 1460});
  k = 0;
  for (const FamilyInfo* f : SearchFamilies({})) {
    const float x = 6850 + 1650.f * static_cast<float>(k % 3), y = 340 + 360.f * (k / 3);
    p.push_back({std::string("chk") + f->cliWord, x, y, x + 1600, y + 330, 7.5f, "frmSpace"});
    ++k;
  }
  float x = 6850;
  for (const TopologyInfo& t : Topologies()) {
    if (!TopologyOf(t, response)) continue;
    const float width = 350 + 85 * static_cast<float>(std::strlen(t.caption));
    p.push_back({std::string("chk") + t.name, x, 1060, x + width, 1390, 7.5f, "frmSpace"});
    x += width + 50;
  }

  // Search and Cancel with the progress beside them and what stops a
  // search beside that; the candidates under them, across the page.
  p.push_back({"cmdSearch", 150, 5330, 1700, 5780, 9});
  p.push_back({"cmdCancel", 1800, 5330, 3350, 5780, 9});
  p.push_back({"lblFault", 6750, 5250, 11850, 5850, 8, nullptr, "Arial", false,
               Qt::AlignLeft | Qt::AlignVCenter, true});
  p.push_back({"tblCandidates", 150, 5950, 11850, 8300, 7.5f});
  p.push_back({"cmdUse", 150, 8420, 2650, 8850, 9});
  p.push_back({"cmdClose", 10350, 8420, 11850, 8850, 9});
  return p;
}

SynthWindow::SynthWindow(SynthPage& page, PageCanvas& drawing, QWidget* parent)
    : QWidget(parent, Qt::Window),
      page_(page),
      // Made with every control; Reload() hides what the response has no
      // place for.
      view_(new ControlPageView(page.Controls(), drawing, EveryPlace(), this)),
      timer_(new QTimer(this)) {
  HoldPageView(*this, *view_, page.Caption(), parent);
  timer_->setInterval(kPollMs);
  connect(timer_, &QTimer::timeout, this, &SynthWindow::Tick);
  page_.SetHost(this);
  Reload();
}

SynthWindow::~SynthWindow() {
  page_.SetHost(nullptr);
}

void SynthWindow::Reload() {
  view_->SetPlaces(SynthPlaces(page_.Response()));
  view_->SyncAll();
}

void SynthWindow::RunStarted() {
  timer_->start();
}

void SynthWindow::Reshaped() {
  Reload();
}

void SynthWindow::Tick() {
  page_.Poll();
  if (!page_.Running()) timer_->stop();
}

void SynthWindow::Close() {
  close();
}

void SynthWindow::closeEvent(QCloseEvent* event) {
  page_.OnCancel();
  QWidget::closeEvent(event);
}

}  // namespace drenik
