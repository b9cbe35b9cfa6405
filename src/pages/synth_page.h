#pragma once
// The design-from-a-mask page: the user says what the filter must do when
// built (the response, the impedance, the mask), how it is built (part
// tolerances and models, stock parts) and what counts as simplest, and
// "Search" finds the candidates on a worker thread, with progress drawn on
// the page and "Cancel" to stop it. The ranked candidates fill a table;
// the selected one is drawn as its nominal response with the envelope of
// its Monte Carlo trials under the mask, and "Use this design" hands it to
// the design and display pages.

#include <functional>
#include <optional>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/mask_boxes.h"
#include "pages/page_host.h"
#include "pages/worker_run.h"
#include "plot/canvas.h"
#include "synth/synth.h"
#include "tolerance/tolerance.h"

namespace drenik {

// What the page asks of the window that shows it.
class SynthHost {
 public:
  virtual ~SynthHost() = default;
  // A search has started: ask for Poll() now and then until it ends.
  virtual void RunStarted() {}
  // Another response: the mask's boxes and the topologies to lay out again.
  virtual void Reshaped() {}
  virtual void Close() {}
};

// Where the page draws: the candidate's response right of the search
// space, and the search's progress under Search and Cancel.
inline constexpr float kSynthPlotLeft = 7650;
inline constexpr float kSynthPlotTop = 2300;
inline constexpr float kSynthPlotRight = 11750;
inline constexpr float kSynthPlotBottom = 4450;
inline constexpr float kSynthStatusTop = 5410;

// The option button of a response: "optLowpass".
std::string ResponseOption(SynthResponse response);

class SynthPage {
 public:
  SynthPage(Platform& platform, Canvas& canvas, PageHost& pages);
  // Cancels a search and waits for its thread.
  ~SynthPage();
  SynthPage(const SynthPage&) = delete;
  SynthPage& operator=(const SynthPage&) = delete;

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }
  void SetHost(SynthHost* host) { host_ = host ? host : &noHost_; }
  // "Use this design": the candidate, with the stock parts asked for, to
  // the design and display pages.
  using UseHandler = std::function<void(const SynthCandidate&, const std::optional<PartsRequest>&)>;
  void SetUseHandler(UseHandler use) { use_ = std::move(use); }
  // Opens on the design the record holds: its part models are the build's.
  // The first time, its response, impedance and cutoff or edges fill the
  // boxes, with the tolerance window's mask for it, and the stock parts
  // offered are `parts` (the display page's); later the boxes and the
  // series keep what the user left in them.
  void Load(const DesignRecord& d, const PartsRequest& parts);

  // Button events (the buttons of Controls() call these).
  void OnSearch();
  void OnCancel();
  void OnUse();
  void OnStockSeries();
  void OnClose();

  // The controls as a request; the message naming the box that holds no
  // usable value (or what the search refuses in the request), or empty.
  std::string ReadRequest(SynthRequest& request) const;

  // Takes up a search's progress and, once it has ended, its result.
  void Poll();
  bool Running() const { return run_.Running(); }
  // Blocks until the search's thread has ended, then polls.
  void Wait();

  SynthResponse Response() const { return response_; }
  MaskShape Shape() const;
  bool HasResult() const { return hasResult_; }
  const SynthResult& Result() const { return result_; }
  // The request of the result shown.
  const SynthRequest& Searched() const { return searched_; }
  // The candidate drawn: the table's selected row, or -1.
  int Drawn() const { return drawn_; }
  // The envelope drawn for it.
  const ToleranceResult& Envelope() const { return envelope_; }

 private:
  // A search's request and what it gives.
  struct RunOutcome {
    SynthRequest request;
    SynthResult result{};
    EngineReport report{};
  };
  using Run = WorkerRun<RunOutcome>;
  void Build();
  void SelectResponse(SynthResponse response);
  void Prefill(const DesignRecord& d);
  void ShowStock();
  void Finish();
  void SetRunning(bool running);
  void ShowFault(const std::string& text);
  void OnRowSelected();
  void Redraw();

  Canvas& canvas_;
  PageHost& pages_;
  ControlSet controls_;
  std::string caption_;
  SynthHost* host_ = nullptr;
  SynthHost noHost_;
  UseHandler use_;
  PartsRequest parts_;
  SynthBuild models_;  // the part models of the design the page opened on
  SynthResponse response_ = SynthResponse::Lowpass;
  bool loaded_ = false;

  // What is drawn: the design the page opened on before a search, the
  // selected candidate after one.
  DesignRecord shown_;
  std::string shownName_;
  ToleranceSetup shownSetup_;
  ToleranceResult envelope_;
  bool hasEnvelope_ = false;
  std::string status_;

  SynthRequest searched_;
  SynthResult result_;
  bool hasResult_ = false;
  int drawn_ = -1;

  Run run_;
};

}  // namespace drenik
