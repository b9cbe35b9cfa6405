#pragma once
// The display page: analyses the design with exact and 5% standard values,
// draws the responses and the schematic, retunes by 1%, toggles the VSWR and
// delay plots and the 5% inductors, reads values under the mouse, and leads
// to the exports, the design page and the exit.

#include <functional>
#include <optional>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/page_host.h"
#include "parts/chooser.h"
#include "plot/canvas.h"

namespace drenik {

struct ExportFormat;

// The data readout for a cursor position on the display page.
struct DataReadout {
  bool onPlot = false;
  int index = 0;  // sweep point under the cursor
  std::string frequency, transmission, reflection, vswr, delay;
};

// Strictly inside 3000..8000 x 4000..8000 the plot width is cut into
// NrIntervals + 1 slices, one per sweep point.
DataReadout ComputeReadout(const DesignRecord& d, float x, float y);

class DisplayPage {
 public:
  DisplayPage(DesignRecord& d, Platform& platform, Canvas& canvas, PageHost& host);

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }

  // The whole pipeline: sweep settings, prototype, exact-value analysis,
  // 5% C analysis, VSWR and delay plots, legends. A fault ends it with
  // one message; a notice before it is the one message instead. False when
  // a fault ended it: the design was refused, and the page has nothing to
  // show or export.
  bool Load();

  // Button events (the buttons of Controls() call these).
  void OnUp();
  void OnDown();
  void OnVswr();
  void OnTime();
  void OnInductors();
  void OnChangeDesign();
  void OnExit();
  void OnMouseMove(float x, float y);
  // "Chosen parts": asks the host for the series and pairs, then draws the
  // stage of stock parts chosen to keep the response over the page; from
  // then on every redraw ends with it, until the page loads again.
  void OnChosenParts();
  // "Part models": asks the host for the part models and the winding, then
  // redraws the curves and the schematic with them (a bad entry is named in
  // a message and changes nothing).
  void OnPartModels();
  // "Sweep": asks the host for a band design's sweep span, then draws the
  // page again over the new sweep with the stages it showed. Only band
  // designs sweep anything but a fifth to five times their cutoff.
  void OnSweep();

  // Exports. Print and LTspice go through the host: without a window the
  // print button shows a message and the LTspice page is not shown.
  void OnPrint();
  void OnSaveOverlay();
  void OnGetOverlay();
  // Saves one of the export formats (export/formats.h) the way its row says.
  void OnExport(const ExportFormat& format);
  // "Parts list": the chosen parts as a CSV file (the stage is drawn first
  // when it is not shown yet).
  void OnPartsList();
  // The tolerance analysis of the design shown, on a page of its own.
  void OnTolerance();
  // Opens the time responses and the Smith chart of the design shown.
  void OnTimeSmith();
  // Opens the part stress of the design shown.
  void OnStress();

  const PartsRequest& GetPartsRequest() const { return partsRequest_; }
  void SetPartsRequest(const PartsRequest& request) { partsRequest_ = request; }
  // Told how far the chooser has got while it runs (the command line's
  // progress line); nothing by default.
  void SetPartsProgress(PartsProgress progress) { partsProgress_ = std::move(progress); }
  // The parts of the chosen-parts stage while it is shown.
  const std::optional<PartsChoice>& ChosenParts() const { return chosen_; }

  // "Tolerance" asks for it: the chosen-parts stage with the last choices,
  // drawn when it is not shown yet.
  void ShowChosenParts();

  // Called once the load or an event has left the page showing a design or
  // a stage of it (the record holds what is shown), for the pages that
  // follow the display page.
  void SetShownObserver(std::function<void()> observer) { shownObserver_ = std::move(observer); }

  // Called after each analysis with the value mode it used (1 to 4), while
  // the record and the page show that analysis.
  void SetAnalysisObserver(std::function<void(int mode)> observer) {
    analysisObserver_ = std::move(observer);
  }

 private:
  void Build();
  void Event(void (DisplayPage::*action)());
  void Shown();
  void LoadPipeline();
  void AnalyzeAndDraw(int mode);
  void ExactAndStandardCurves();
  void StandardCapacitors();
  void StandardInductors();
  void DrawSidePlots();
  void Retune(double factor, float eraseRight);
  void RetuneSequence();
  void Up() { Retune(1.01, 11770); }
  void Down() { Retune(0.99, 11700); }
  void Vswr();
  void Time();
  void Inductors();
  void ChosenPartsStage();
  void DrawResonanceWarning();
  void Remodel();
  void Reload();
  void DrawNotch();
  void DrawSelfResonances();
  void PrintAt(float x, float y, const std::string& text, int32_t color = kBlack);
  void PrintReadout(const DataReadout& readout);

  DesignRecord& d_;
  Platform& platform_;
  Canvas& canvas_;
  PageHost& host_;
  ControlSet controls_;
  std::string caption_;
  std::function<void(int)> analysisObserver_;
  std::function<void()> shownObserver_;
  PartsRequest partsRequest_;
  PartsProgress partsProgress_;
  std::optional<PartsChoice> chosen_;
  bool warningShown_ = false;     // the resonance warning is on the page
  bool resonancesShown_ = false;  // the inductors' self-resonances are on the page
  float erasedLeft_ = 0, erasedRight_ = 0, erasedBottom_ = 0;  // where they stand
};

}  // namespace drenik
