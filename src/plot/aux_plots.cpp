// The VSWR and envelope-delay plots right of the main plot.
#include <algorithm>
#include <cmath>
#include <string>

#include "core/formatters.h"
#include "core/number_text.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"

namespace drenik {

namespace {

// Everything a side plot owns: title, scale column, frame and labels.
void EraseSideArea(Canvas& canvas, float top, float bottom) {
  canvas.FilledBox(8560, top - 260, 12000, bottom + 260, kWhite);
}

std::string TrimRight(std::string s) {
  while (!s.empty() && s.back() == ' ') s.pop_back();
  while (!s.empty() && s.front() == ' ') s.erase(s.begin());
  return s;
}

struct Scale {
  float top, bottom;  // frame, page units
  double low, high;   // values at the bottom and top edge
};

float ValueY(const Scale& s, double v) {
  double y = s.bottom - (v - s.low) / (s.high - s.low) * (s.bottom - s.top);
  if (std::isnan(y)) y = s.bottom;
  return static_cast<float>(std::clamp(y, double{s.top}, double{s.bottom}));
}

// Frame, title, grid lines and frequency labels of a side plot; the scale
// column left of the frame is erased first, so a changed scale leaves no
// traces.
void DrawSideFrame(const DesignRecord& d, Canvas& canvas, const Scale& s, const char* title) {
  canvas.FilledBox(8560, s.top - 260, kSideLeft - 20, s.bottom + 110, kWhite);
  canvas.SetFont("Arial", 8, true);
  canvas.SetForeColor(kBlack);
  canvas.SetTextPosition(kSideLeft, s.top - 240);
  canvas.Print(title);
  DrawGridLines(d, canvas, kSideLeft, kSideRight, s.top, s.bottom);
  DrawFrequencyLabels(d, canvas, kSideLeft, kSideRight, s.bottom + 50, 0.1f);
  canvas.SetDrawWidth(2);
  canvas.SetForeColor(kBlack);
  canvas.Line(kSideLeft, s.top, kSideRight, s.top);
  canvas.Line(kSideRight, s.top, kSideRight, s.bottom);
  canvas.Line(kSideRight, s.bottom, kSideLeft, s.bottom);
  canvas.Line(kSideLeft, s.bottom, kSideLeft, s.top);
  canvas.SetDrawWidth(1);
}

void HorizontalLine(Canvas& canvas, const Scale& s, double v, int32_t color) {
  canvas.SetForeColor(color);
  float y = ValueY(s, v);
  canvas.Line(kSideLeft, y, kSideRight, y);
}

void ScaleLabel(Canvas& canvas, const Scale& s, double v, const std::string& text) {
  canvas.SetFont("Arial", 7, false);
  canvas.SetForeColor(kBlack);
  canvas.SetTextPosition(kSideLeft - 50 - canvas.TextWidth(text), ValueY(s, v) - 85);
  canvas.Print(text);
}

void SideCurve(const DesignRecord& d, Canvas& canvas, const Scale& s, const SweepArray& values,
               int32_t color) {
  canvas.SetForeColor(color);
  canvas.SetDrawWidth(2);
  int last = std::clamp<int>(d.NrIntervals, 0, kSweepSlots - 1);
  bool havePrevious = false;
  float px = 0, py = 0;
  for (int i = 0; i <= last; ++i) {
    double p;
    if (!LogFraction(d, d.Freq[i], p)) continue;
    float x = static_cast<float>(kSideLeft + (kSideRight - kSideLeft) * p);
    float y = ValueY(s, values[i]);
    canvas.Line(havePrevious ? px : x, havePrevious ? py : y, x, y);
    px = x;
    py = y;
    havePrevious = true;
  }
  canvas.SetDrawWidth(1);
  canvas.SetForeColor(kBlack);
}

// The smallest 1-2-5 step at or above v, with its number of divisions.
void NiceTop(double v, double& top, int& divisions) {
  if (!(v > 0) || !std::isfinite(v)) v = 1e-6;
  double decade = std::pow(10.0, std::floor(std::log10(v)));
  double m = v / decade;
  if (m <= 1.0000001) {
    top = decade;
    divisions = 5;
  } else if (m <= 2.0000001) {
    top = 2 * decade;
    divisions = 4;
  } else if (m <= 5.0000001) {
    top = 5 * decade;
    divisions = 5;
  } else {
    top = 10 * decade;
    divisions = 5;
  }
}

}  // namespace

void DrawVswrPlot(DesignRecord& d, Canvas& canvas) {
  if (d.ShowVSWR != 1) {
    EraseSideArea(canvas, kVswrTop, kVswrBottom);
    return;
  }
  Scale s{kVswrTop, kVswrBottom, 1.0, kVswrScaleTop};
  DrawSideFrame(d, canvas, s, "VSWR");
  for (double v = 1.5; v < kVswrScaleTop; v += 0.5) HorizontalLine(canvas, s, v, kGridColor);
  for (double v = 1; v <= kVswrScaleTop + 1e-9; v += 0.5)
    ScaleLabel(canvas, s, v, ShortestText(static_cast<float>(v)));
  // The readout's limit, in orange, labelled right of the frame.
  constexpr int32_t kLimitColor = 0x0080FF;
  HorizontalLine(canvas, s, kVswrLimit, kLimitColor);
  canvas.SetFont("Arial", 7, false);
  canvas.SetForeColor(kLimitColor);
  canvas.SetTextPosition(kSideRight + 40, ValueY(s, kVswrLimit) - 85);
  canvas.Print(ShortestText(kVswrLimit));
  SetDefaultPageFont(canvas);
  SideCurve(d, canvas, s, d.VSWR, TransmissionColor(d.ValueMode));
}

void DrawDelayPlot(DesignRecord& d, Canvas& canvas) {
  if (d.ShowDelay != 1) {
    EraseSideArea(canvas, kDelayTop, kDelayBottom);
    return;
  }
  double maxDelay = d.MaxDelay;
  if (!(maxDelay > 0)) {
    int last = std::clamp<int>(d.NrIntervals, 0, kSweepSlots - 1);
    maxDelay = 0;
    for (int i = 0; i <= last; ++i) maxDelay = std::max(maxDelay, double{d.Delay[i]});
  }
  double top;
  int divisions;
  NiceTop(maxDelay, top, divisions);
  Scale s{kDelayTop, kDelayBottom, 0.0, top};
  DrawSideFrame(d, canvas, s, "Envelope delay");
  for (int k = 0; k <= divisions; ++k) {
    double v = top * k / divisions;
    if (k > 0 && k < divisions) HorizontalLine(canvas, s, v, kGridColor);
    ScaleLabel(canvas, s, v, TrimRight(FormatPrefixed(v)) + "s");
  }
  SetDefaultPageFont(canvas);
  SideCurve(d, canvas, s, d.Delay, TransmissionColor(d.ValueMode));
}

}  // namespace drenik
