#pragma once
// The program without its window: the design record, one drawing per page,
// the pages and the way between them. The window is a view over this; the
// command line drives it without a view.

#include <functional>
#include <optional>
#include <string>

#include "core/design_record.h"
#include "core/last_session.h"
#include "core/platform.h"
#include "pages/design_page.h"
#include "pages/display_page.h"
#include "pages/opening_page.h"
#include "pages/page_host.h"
#include "pages/part_model_entries.h"
#include "pages/spice_page.h"
#include "pages/stress_page.h"
#include "pages/synth_page.h"
#include "pages/time_page.h"
#include "pages/tolerance_page.h"
#include "plot/recording_canvas.h"

namespace drenik {

enum class PageId { Opening, Design, Display, Ended };

// A recorded drawing that tells a view when it has grown.
class PageCanvas : public RecordingCanvas {
 public:
  void SetObserver(std::function<void()> observer) { observer_ = std::move(observer); }

 protected:
  void Changed() override {
    if (observer_) observer_();
  }

 private:
  std::function<void()> observer_;
};

struct ApplicationOptions {
  // The last-session file; empty: never read or written (first-start
  // defaults), as the command line wants.
  std::string sessionPath = kLastSessionFile;
  // Opened by the opening page's link and the design page's maker button.
  std::string userGuideUrl;
};

class Application : public PageHost {
 public:
  Application(Platform& platform, ApplicationOptions options);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // Shows the opening page (its load reads the last session).
  void Start();

  DesignRecord& Record() { return record_; }
  Platform& GetPlatform() { return platform_; }
  PageId CurrentPage() const { return current_; }
  bool Ended() const { return current_ == PageId::Ended; }

  OpeningPage& Opening() { return opening_; }
  DesignPage& Design() { return design_; }
  DisplayPage& Display() { return display_; }
  // The opening page's sample ladder, the design page's schematic strip and
  // the whole display page.
  PageCanvas& OpeningCanvas() { return openingCanvas_; }
  PageCanvas& DesignCanvas() { return designCanvas_; }
  PageCanvas& DisplayCanvas() { return displayCanvas_; }

  // The LTspice export page, made afresh each time the display page asks
  // for it (null before that). The observer shows it; the window opens its
  // dialog there.
  SpicePage* Spice() { return spice_ ? &*spice_ : nullptr; }
  void SetSpiceObserver(std::function<void(SpicePage&)> observer) {
    spiceObserver_ = std::move(observer);
  }
  // The tolerance page and its drawing. The display page's "Tolerance"
  // loads it with the design shown; the observer then shows it.
  TolerancePage& Tolerance() { return tolerance_; }
  PageCanvas& ToleranceCanvas() { return toleranceCanvas_; }
  void SetToleranceObserver(std::function<void(TolerancePage&)> observer) {
    toleranceObserver_ = std::move(observer);
  }
  // The time and Smith chart page, loaded by the display page's button with
  // the design shown; the observer then shows it.
  TimePage& Time() { return time_; }
  void SetTimeObserver(std::function<void(TimePage&)> observer) {
    timeObserver_ = std::move(observer);
  }
  // The side pages (time and Smith chart, tolerance) follow the display
  // page from when it shows them until their windows close: the time page
  // is drawn again for each design or stage shown, the tolerance page takes
  // it up or, holding a result, is marked out of date. The observer is told
  // after they have followed.
  void TimePageClosed() { timeOpen_ = false; }
  void TolerancePageClosed() { toleranceOpen_ = false; }
  void SetFollowObserver(std::function<void()> observer) { followObserver_ = std::move(observer); }
  // The part-stress page and its drawing, loaded by the display page's
  // button with the design shown; the observer then shows it.
  StressPage& Stress() { return stress_; }
  PageCanvas& StressCanvas() { return stressCanvas_; }
  void SetStressObserver(std::function<void(StressPage&)> observer) {
    stressObserver_ = std::move(observer);
  }
  // The design-from-a-mask page and its drawing, opened from the opening
  // and design pages on the design the record holds; the observer then
  // shows it. Its "Use this design" loads the candidate into the design
  // page and shows its responses on the display page (with its stock parts
  // when the search chose them).
  SynthPage& Synth() { return synth_; }
  PageCanvas& SynthCanvas() { return synthCanvas_; }
  void SetSynthObserver(std::function<void(SynthPage&)> observer) {
    synthObserver_ = std::move(observer);
  }
  void UseDesign(const DesignChoice& choice, const std::optional<PartsRequest>& parts);

  // Prints the display page (the window's print dialog). Without a service
  // the display page's print button shows a message.
  void SetPrintService(std::function<void()> service) { printService_ = std::move(service); }
  // The chosen-parts dialog; without it the display page keeps its choices.
  void SetPartsRequestService(std::function<bool(PartsRequest&, const std::string&)> service) {
    partsRequestService_ = std::move(service);
  }

  // The part-models dialog; without it the display page keeps its models.
  void SetPartModelsService(std::function<bool(PartModelEntries&)> service) {
    partModelsService_ = std::move(service);
  }

  // The band sweep's dialog; without it the display page keeps its sweep.
  void SetSweepService(std::function<bool(SweepEntry&)> service) {
    sweepService_ = std::move(service);
  }

  // The design page's "Other order and ripple" dialog; without it the page
  // takes the values it is handed.
  void SetOtherDesignService(std::function<bool(OtherDesign&)> service) {
    otherDesignService_ = std::move(service);
  }

  // Called after each change of page, once the new page has loaded.
  void SetPageObserver(std::function<void(PageId)> observer) {
    pageObserver_ = std::move(observer);
  }

  // PageHost
  void ShowDesignPage() override;
  void ShowDisplayPage() override;
  void EndProgram(bool writeSession) override;
  const std::string& UserGuideUrl() const override { return options_.userGuideUrl; }
  void ShowSpicePage() override;
  bool PrintDisplayPage() override;
  bool AskPartsRequest(PartsRequest& request, const std::string& note) override;
  bool AskPartModels(PartModelEntries& entries) override;
  bool AskSweep(SweepEntry& entry) override;
  bool AskOtherDesign(OtherDesign& design) override;
  void ShowTolerancePage() override;
  void ShowTimePage() override;
  void ShowStressPage() override;
  void ShowSynthPage() override;

 private:
  void Enter(PageId page);
  void FollowDisplay();

  Platform& platform_;
  ApplicationOptions options_;
  DesignRecord record_;
  PageCanvas openingCanvas_;
  PageCanvas designCanvas_;
  PageCanvas displayCanvas_;
  PageCanvas toleranceCanvas_;
  PageCanvas stressCanvas_;
  PageCanvas synthCanvas_;
  OpeningPage opening_;
  DesignPage design_;
  DisplayPage display_;
  TolerancePage tolerance_;
  TimePage time_;
  StressPage stress_;
  SynthPage synth_;
  std::optional<SpicePage> spice_;
  PageId current_ = PageId::Opening;
  std::function<void(PageId)> pageObserver_;
  std::function<void(SpicePage&)> spiceObserver_;
  std::function<void()> printService_;
  std::function<bool(PartsRequest&, const std::string&)> partsRequestService_;
  std::function<bool(PartModelEntries&)> partModelsService_;
  std::function<bool(SweepEntry&)> sweepService_;
  std::function<bool(OtherDesign&)> otherDesignService_;
  std::function<void(TolerancePage&)> toleranceObserver_;
  std::function<void(TimePage&)> timeObserver_;
  std::function<void()> followObserver_;
  bool timeOpen_ = false, toleranceOpen_ = false;
  std::function<void(StressPage&)> stressObserver_;
  std::function<void(SynthPage&)> synthObserver_;
};

}  // namespace drenik
