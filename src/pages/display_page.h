#pragma once
// The display page: analyses the design with exact and 5% standard values,
// draws the responses and the schematic, retunes by 1%, toggles the VSWR and
// delay plots and the 5% inductors, reads values under the mouse, and leads
// to the exports, the design page and the exit.

#include <functional>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/page_host.h"
#include "plot/canvas.h"

namespace drenik {

// Curve colours of the legends (blue in the high byte).

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
  // 5% C analysis, VSWR and delay plots, legends.
  void Load();

  // Button events (the buttons of Controls() call these).
  void OnUp();
  void OnDown();
  void OnVswr();
  void OnTime();
  void OnInductors();
  void OnChangeDesign();
  void OnExit();
  void OnMouseMove(float x, float y);

  // Exports. Print and LTspice go through the host: without a window the
  // print button shows a message and the LTspice page is not shown.
  void OnPrint();
  void OnSaveOverlay();
  void OnGetOverlay();
  void OnWritePallis();
  void OnSpice();
  void OnExportNetlist();
  void OnExportTouchstone();
  void OnExportCsv();
  // The tolerance analysis of the design shown, on a page of its own.
  void OnTolerance();

  // Called after each analysis with the value mode it used (1, 2, 3), while
  // the record and the page show that analysis.
  void SetAnalysisObserver(std::function<void(int mode)> observer) {
    analysisObserver_ = std::move(observer);
  }

 private:
  void Build();
  void Event(void (DisplayPage::*action)());
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
  void PrintAt(float x, float y, const std::string& text, int32_t color = kBlack);
  void PrintReadout(const DataReadout& readout);
  // A save dialog proposing the last file's name with `extension`; a
  // cancelled dialog writes nothing and says nothing.
  void SaveWithDialog(const std::string& title, const std::string& filter,
                      const std::string& extension,
                      bool (*writer)(const DesignRecord&, const std::string&, Platform&));

  DesignRecord& d_;
  Platform& platform_;
  Canvas& canvas_;
  PageHost& host_;
  ControlSet controls_;
  std::string caption_;
  std::function<void(int)> analysisObserver_;
};

}  // namespace drenik
