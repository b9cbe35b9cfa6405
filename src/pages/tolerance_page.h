#pragma once
// The tolerance page: how many filters built from real parts meet their
// mask. Its controls choose the value stage (the display page's exact, 5% C,
// 5% L or chosen parts), the part tolerances and their distribution, the
// trials, the seed, the mask and the sensitivity's tightened tolerance;
// "Run" starts the analysis on a worker thread, with progress drawn on the
// page and "Cancel" to stop it. The result is drawn as the response
// envelope over the nominal curves with the mask, a histogram for each kind
// of check, the yield and its interval, the failures per check and the
// sensitivity table.

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/mask_boxes.h"
#include "pages/value_stages.h"
#include "pages/worker_run.h"
#include "plot/canvas.h"
#include "plot/recording_canvas.h"
#include "tolerance/tolerance.h"

namespace drenik {

// What the page asks of the window that shows it.
class ToleranceHost {
 public:
  virtual ~ToleranceHost() = default;
  // A run has started: ask for Poll() now and then until it ends.
  virtual void RunStarted() {}
  // Prints the page as drawn for paper; false when the host cannot print.
  virtual bool Print(const RecordingCanvas&) { return false; }
  // Writes the page as drawn for paper to a picture (.png, .svg or .pdf):
  // empty when written, else why not.
  virtual std::string SavePicture(const RecordingCanvas& paper, const std::string& path);
  virtual void Close() {}
};

class TolerancePage {
 public:
  TolerancePage(Platform& platform, Canvas& canvas);
  // Cancels a run and waits for its thread.
  ~TolerancePage();
  TolerancePage(const TolerancePage&) = delete;
  TolerancePage& operator=(const TolerancePage&) = delete;

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }
  // nullptr: no window (printing and pictures are not available).
  void SetHost(ToleranceHost* host) { host_ = host ? host : &noHost_; }

  // Takes the design the display page holds now (a run in progress is
  // cancelled) and draws its nominal response with the mask. The first
  // design prefills the controls; a later one keeps the user's settings and
  // the mask the user set (while the mask's shape holds), and fills in the
  // mask afresh otherwise. The design already loaded keeps the page as it is.
  void Load(const DesignRecord& d);
  // The display page shows another design or stage: taken up at once while
  // the page holds no result and no run; otherwise the result stays, marked
  // out of date, until "Run again" (or a choice of values) takes it up.
  void Follow(const DesignRecord& d);
  bool OutOfDate() const { return pending_.has_value(); }
  // Asked for the display page's chosen parts when "Chosen" is picked while
  // the design has none; the display page's stage then reaches Follow().
  void SetChosenSource(std::function<void()> source) { chosenSource_ = std::move(source); }
  // The mask kept from the last session: the first design of its shape
  // takes it in place of the filled-in one.
  void SetKeptMask(const std::array<float, kKeptMaskFields>& mask) { keptMask_ = mask; }
  // The mask to keep for the next start: the boxes as the user set them, or
  // the kept one no design has taken up yet; all 0 when neither.
  std::array<float, kKeptMaskFields> KeptMask() const;

  // Button events (the buttons of Controls() call these).
  void OnRun();
  void OnCancel();
  void OnPrint();
  void OnSave();
  void OnClose();

  // Takes up a run's progress and, once it has ended, its result.
  void Poll();
  bool Running() const { return run_.Running(); }
  // Blocks until the run's thread has ended, then polls.
  void Wait();

  MaskShape Shape() const { return shape_; }
  bool HasResult() const { return hasResult_; }
  const ToleranceResult& Result() const { return result_; }
  const ToleranceSetup& Setup() const { return setup_; }
  // The design at the chosen value stage.
  const DesignRecord& Stage() const { return stages_.At(stage_); }
  ValueStage CurrentStage() const { return stage_; }
  // The page for print and pictures: the figures, with the settings written
  // out where the window has its controls.
  RecordingCanvas PaperDrawing() const;

 private:
  // A run's inputs and what it gives.
  struct RunOutcome {
    ToleranceDesign design;
    ToleranceSetup setup;
    ToleranceResult result{};
    EngineReport report{};
  };
  using Run = WorkerRun<RunOutcome>;
  void Build();
  // Takes up the stages of another design (see Load).
  void Adopt(ValueStages stages);
  // Takes up the design Follow() kept back, if any; false when it cannot be
  // analysed (the message says why).
  bool TakePending();
  void DropPending();
  void SelectStage(ValueStage stage);
  void PickChosen();
  void ShowStageOption();
  void PrefillSettings();
  void PrefillMask();
  void ApplyKeptMask();
  // The controls as a setup; false (after a message naming the box, unless
  // quiet) when a box does not hold a usable value.
  bool ReadSetup(ToleranceSetup& setup, bool quiet);
  void ShowShape();
  void Redraw();
  void DrawFigures(Canvas& canvas) const;
  void Finish();
  void SetRunning(bool running);

  Platform& platform_;
  Canvas& canvas_;
  ControlSet controls_;
  std::string caption_;
  ToleranceHost* host_ = nullptr;
  ToleranceHost noHost_;

  ValueStages stages_;
  std::optional<ValueStages> pending_;  // the design shown now, while out of date
  std::string pendingNote_;
  std::function<void()> chosenSource_;
  std::array<float, kKeptMaskFields> keptMask_{};
  bool maskSet_ = false;  // the user typed into the mask's boxes
  ValueStage stage_ = ValueStage::FiveC;
  MaskShape shape_ = MaskShape::Edge;
  ToleranceSetup setup_;
  ToleranceResult result_;
  bool hasResult_ = false;
  bool prefilling_ = false;
  bool loaded_ = false;
  std::string status_;
  // Why the design has no default mask (empty when it has one).
  std::string noMask_;

  Run run_;
};

}  // namespace drenik
