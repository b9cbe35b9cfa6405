#pragma once
// The "Time and Smith chart" page without a window: the step and impulse
// responses, their figures and the Smith chart of the input, each value
// stage of the display page drawn over the others in its stage colour.

#include <string>
#include <vector>

#include "core/design_record.h"
#include "pages/value_stages.h"
#include "plot/canvas.h"
#include "plot/recording_canvas.h"
#include "timedomain/response.h"
#include "timeplot/smith_chart.h"

namespace drenik {

struct TimeStage {
  std::string name;    // "Exact", "5% C", "5% L", "Chosen"
  std::string legend;  // "Exact values" ... "Chosen parts"
  int32_t color;
  int32_t lightColor;  // the stage's reflection colour, for the carrier
  TimeResponse time;
  SmithLocus smith;
};

struct TimePageData {
  std::string title;
  std::string edges;              // "Band edges f1 ..., f2 ..." of a band design, beside the stages
  std::vector<TimeStage> stages;  // the exact stage first
  std::string fault;              // what stopped the analysis; empty when none did
};

// The stages of `d` from the exact values up to `last`, on the time axis of
// the exact stage (or `span` seconds when above 0) with `points` points.
// For `last` Chosen, `d` is the display page's record at its chosen-parts
// stage and is that stage itself, drawn after the exact and 5% C stages
// (and the 5% L one when the display page shows it, InductorMode 1).
TimePageData MakeTimePageData(const DesignRecord& d, ValueStage last, double span = 0,
                              int points = 2000);

enum class TimeCharts { All, Step, Smith };

// Where the Smith chart stands for each choice of charts.
SmithPlace SmithPlaceOf(TimeCharts charts);

void DrawTimePage(Canvas& canvas, const TimePageData& data, TimeCharts charts);

// The page the window shows: loaded from the record the display page
// holds, with the stages it has drawn (exact up to its value mode, the
// chosen parts included), and the Smith chart's readout following the mouse.
class TimePage {
 public:
  void Load(const DesignRecord& d);
  const TimePageData& Data() const { return data_; }
  const RecordingCanvas& Drawing() const { return canvas_; }
  // The pointer at (x, y), page units: the readout of the nearest point of
  // the last stage's locus, under the Smith chart.
  void OnMouseMove(float x, float y);
  const std::string& Readout() const { return readout_; }

 private:
  TimePageData data_;
  RecordingCanvas canvas_;
  std::string readout_;
};

}  // namespace drenik
