#include "pages/application.h"

namespace drenik {

Application::Application(Platform& platform, ApplicationOptions options)
    : platform_(platform),
      options_(std::move(options)),
      opening_(record_, platform, openingCanvas_, *this, options_.sessionPath),
      design_(record_, platform, designCanvas_, *this),
      display_(record_, platform, displayCanvas_, *this),
      tolerance_(platform, toleranceCanvas_) {}

void Application::Start() {
  current_ = PageId::Opening;
  opening_.Load();
  if (pageObserver_) pageObserver_(current_);
}

void Application::Enter(PageId page) {
  if (current_ == PageId::Ended) return;
  current_ = page;
  if (page == PageId::Design) design_.Load();
  if (page == PageId::Display) display_.Load();
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
  tolerance_.Load(record_);
  if (toleranceObserver_) toleranceObserver_(tolerance_);
}

void Application::ShowTimePage() {
  time_.Load(record_);
  if (timeObserver_) timeObserver_(time_);
}

bool Application::PrintDisplayPage() {
  if (!printService_) return false;
  printService_();
  return true;
}

bool Application::AskPartsRequest(PartsRequest& request) {
  return !partsRequestService_ || partsRequestService_(request);
}

bool Application::AskPartModels(PartModelEntries& entries) {
  return !partModelsService_ || partModelsService_(entries);
}

bool Application::AskOtherDesign(OtherDesign& design) {
  return !otherDesignService_ || otherDesignService_(design);
}

void Application::EndProgram(bool writeSession) {
  if (current_ == PageId::Ended) return;
  if (writeSession && !options_.sessionPath.empty()) {
    WriteLastSession(record_, platform_, options_.sessionPath);
  }
  current_ = PageId::Ended;
  platform_.EndProgram();
  if (pageObserver_) pageObserver_(current_);
}

}  // namespace drenik
