#include "pages/application.h"

#include "pages/kept_parts_request.h"

namespace drenik {

Application::Application(Platform& platform, ApplicationOptions options)
    : platform_(platform),
      options_(std::move(options)),
      opening_(record_, platform, openingCanvas_, *this, options_.sessionPath),
      design_(record_, platform, designCanvas_, *this),
      display_(record_, platform, displayCanvas_, *this),
      tolerance_(platform, toleranceCanvas_),
      stress_(platform, stressCanvas_),
      synth_(platform, synthCanvas_, *this) {
  display_.SetShownObserver([this] { FollowDisplay(); });
  // "Chosen" in the tolerance page's values: the display page's stage,
  // while that page shows the design.
  tolerance_.SetChosenSource([this] {
    if (current_ == PageId::Display) display_.ShowChosenParts();
  });
  synth_.SetUseHandler([this](const SynthCandidate& c, const std::optional<PartsRequest>& parts) {
    UseDesign(c.choice, parts);
  });
}

void Application::Start() {
  current_ = PageId::Opening;
  opening_.Load();
  // The setup the last session kept.
  display_.SetPartsRequest(KeptPartsRequest(record_));
  tolerance_.SetKeptMask(record_.KeptMask);
  if (pageObserver_) pageObserver_(current_);
}

void Application::FollowDisplay() {
  if (timeOpen_) time_.Load(record_);
  if (toleranceOpen_) tolerance_.Follow(record_);
  // The window's own views (the part stress among them) follow too.
  if (followObserver_) followObserver_();
}

// A design the display page's load refuses leaves the page where it was:
// its message is shown, and a blank display page would only offer exports
// and drawings of a ladder that does not exist.
void Application::Enter(PageId page) {
  if (current_ == PageId::Ended) return;
  const PageId from = current_;
  current_ = page;
  if (page == PageId::Design) design_.Load();
  if (page == PageId::Display && !display_.Load()) current_ = from;
  if (pageObserver_) pageObserver_(current_);
}

void Application::ShowDesignPage() {
  Enter(PageId::Design);
}
void Application::ShowDisplayPage() {
  Enter(PageId::Display);
}

void Application::ShowSpicePage() {
  spice_.emplace(record_, platform_);
  if (spiceObserver_) spiceObserver_(*spice_);
}

void Application::ShowTolerancePage() {
  toleranceOpen_ = true;
  tolerance_.Load(record_);
  if (toleranceObserver_) toleranceObserver_(tolerance_);
}

void Application::ShowTimePage() {
  timeOpen_ = true;
  time_.Load(record_);
  if (timeObserver_) timeObserver_(time_);
}

void Application::ShowStressPage() {
  stress_.Load(record_);
  if (stressObserver_) stressObserver_(stress_);
}

void Application::ShowSynthPage() {
  synth_.Load(record_, display_.GetPartsRequest());
  if (synthObserver_) synthObserver_(synth_);
}

bool Application::PrintDisplayPage() {
  if (!printService_) return false;
  printService_();
  return true;
}

bool Application::AskPartsRequest(PartsRequest& request, const std::string& note) {
  return !partsRequestService_ || partsRequestService_(request, note);
}

bool Application::AskPartModels(PartModelEntries& entries) {
  return !partModelsService_ || partModelsService_(entries);
}

bool Application::AskSweep(SweepEntry& entry) {
  return !sweepService_ || sweepService_(entry);
}

bool Application::AskOtherDesign(OtherDesign& design) {
  return !otherDesignService_ || otherDesignService_(design);
}

void Application::EndProgram(bool writeSession) {
  if (current_ == PageId::Ended) return;
  if (writeSession && !options_.sessionPath.empty()) {
    KeepPartsRequest(display_.GetPartsRequest(), record_);
    record_.KeptMask = tolerance_.KeptMask();
    WriteLastSession(record_, platform_, options_.sessionPath);
  }
  current_ = PageId::Ended;
  platform_.EndProgram();
  if (pageObserver_) pageObserver_(current_);
}

}  // namespace drenik
