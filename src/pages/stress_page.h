#pragma once
// The part-stress page, opened from the display page: boxes for the
// transmit power and the load's VSWR, and the table of every part's
// largest voltage, current and dissipation over the passband, in the
// schematic strip's order, with each column's worst in red and each
// capacitor's voltage rating. It works on the design the display page
// shows (its value stage), and prints after the display page.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "plot/canvas.h"
#include "plot/recording_canvas.h"
#include "stress/stress.h"

namespace drenik {

// What the page asks of the window that shows it.
class StressHost {
 public:
  virtual ~StressHost() = default;
  // Prints the display page followed by this page; false without a printer.
  virtual bool Print() { return false; }
  virtual void Close() {}
};

class StressPage {
 public:
  StressPage(Platform& platform, Canvas& canvas);

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }
  void SetHost(StressHost* host) { host_ = host ? host : &noHost_; }

  // Takes the design the display page holds now and works out its stress
  // with the boxes' power and VSWR.
  void Load(const DesignRecord& d);
  bool Loaded() const { return loaded_; }

  void OnPrint();
  void OnClose();

  const StressRequest& Request() const { return request_; }
  const StressResult& Result() const { return result_; }
  // What is wrong with the boxes; empty when the table shows their values.
  const std::string& Problem() const { return problem_; }
  // The page for paper: the table from the left margin, with the power and
  // the VSWR written out.
  RecordingCanvas PaperDrawing() const;

 private:
  void Recompute();
  void Draw(Canvas& canvas, float left) const;

  Platform& platform_;
  Canvas& canvas_;
  ControlSet controls_;
  std::string caption_;
  StressHost* host_ = nullptr;
  StressHost noHost_;
  DesignRecord design_;
  bool loaded_ = false;
  StressRequest request_;
  StressResult result_;
  std::string problem_;
};

}  // namespace drenik
