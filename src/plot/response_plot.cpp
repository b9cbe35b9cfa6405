#include "plot/response_plot.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "core/number_text.h"
#include "plot/frequency_axis.h"
#include "synthesis/topologies.h"

namespace drenik {

namespace {

constexpr float kDefaultBottom = -70;

float ScaleBottom(float stored) {
  return stored == 0 ? kDefaultBottom : stored;
}

// Mantissa rank of a grid frequency: 0 for 1, 2, 5; 1 for 1.5, 3, 4; 2 else.
int LabelRank(double f) {
  double decade = std::pow(10.0, std::floor(std::log10(f) + 1e-6));
  double m = std::round(f / decade * 2) / 2;
  if (m == 1 || m == 2 || m == 5 || m == 10) return 0;
  if (m == 1.5 || m == 3 || m == 4) return 1;
  return 2;
}

// Scale labels right-aligned against `right` at y = int(k / N * 4000) + 3900.
float DrawScaleLabels(Canvas& canvas, float bottom, int n, float right, int32_t color) {
  canvas.SetForeColor(color);
  canvas.SetFont("Arial", 8, false);
  float widest = 0;
  for (int k = 0; k <= n; ++k) {
    double value = bottom * static_cast<double>(k) / n;  // top is 0 dB
    std::string text = ShortestText(static_cast<float>(value));
    float w = canvas.TextWidth(text);
    widest = std::max(widest, w);
    float y = static_cast<float>(std::floor(static_cast<double>(k) / n * 4000)) + 3900;
    canvas.SetTextPosition(right - w, y);
    canvas.Print(text);
  }
  canvas.SetForeColor(kBlack);
  return widest;
}

void DrawCurve(const DesignRecord& d, Canvas& canvas, const SweepArray& values, float bottom,
               int32_t color) {
  canvas.SetForeColor(color);
  int last = std::clamp<int>(d.NrIntervals, 0, kSweepSlots - 1);
  double scale = bottom == 0 ? 70.0 : -static_cast<double>(bottom);
  bool havePrevious = false;
  float px = 0, py = 0;
  for (int i = 0; i <= last; ++i) {
    double p;
    if (!LogFraction(d, d.Freq[i], p)) continue;
    float x = static_cast<float>(kPlotLeft + (kPlotRight - kPlotLeft) * p);
    double yy = kPlotTop - 4000.0 * (values[i] / scale);
    if (std::isnan(yy)) continue;
    float y = static_cast<float>(std::clamp(yy, double{kPlotTop}, double{kPlotBottom}));
    if (havePrevious)
      canvas.Line(px, py, x, y);
    else
      canvas.Line(x, y, x, y);
    px = x;
    py = y;
    havePrevious = true;
  }
}

}  // namespace

int32_t TransmissionColor(int valueMode) {
  switch (valueMode) {
    case 2:
      return 16711680;
    case 3:
      return 255;
    case kChosenPartsMode:
      return kChosenTransmissionColor;
    default:
      return 0;
  }
}

int32_t ReflectionColor(int valueMode) {
  switch (valueMode) {
    case 2:
      return 16746632;
    case 3:
      return 10066431;
    case kChosenPartsMode:
      return kChosenReflectionColor;
    default:
      return 8947848;
  }
}

bool LogFraction(const DesignRecord& d, double frequency, double& fraction) {
  if (!(d.Fstart > 0 && d.Fstop > d.Fstart && frequency > 0)) return false;
  double lnStart = std::log(static_cast<double>(d.Fstart));
  double span = std::log(static_cast<double>(d.Fstop)) - lnStart;
  fraction = (std::log(frequency) - lnStart) / span;
  return std::isfinite(fraction);
}

namespace {

// A band sweep spans a small part of a decade: lines at the multiples of a
// 1-2-5 step that gives about eight of them.
void BuildBandGridFrequencies(DesignRecord& d) {
  const double span = static_cast<double>(d.Fstop) - d.Fstart;
  if (!(span > 0) || !std::isfinite(span)) return;
  const double decade = std::pow(10.0, std::floor(std::log10(span / 8)));
  double step = decade;
  for (double m : {2.0, 5.0, 10.0})
    if (span / step > 10) step = m * decade;
  const double limit = 1.0001 * d.Fstop;
  for (double f = std::ceil(d.Fstart / step) * step; f <= limit && d.GridCount < kGridSlots - 1;
       f += step)
    d.GridFrequency[++d.GridCount] = static_cast<float>(f);
}

}  // namespace

void BuildGridFrequencies(DesignRecord& d) {
  static constexpr float kSteps[10] = {1, 1.5f, 2, 3, 4, 5, 6, 7, 8, 9};
  d.GridCount = -1;
  // A band sweep of less than two octaves gets evenly spaced lines; a wider
  // one (a broad band, or a sweep the user widened to see the harmonics)
  // the lowpass plot's lines, which a log axis spreads evenly.
  if (IsBandDesign(d) && d.Center > 0 && d.Fstop < 4 * d.Fstart) {
    BuildBandGridFrequencies(d);
    return;
  }
  float limit = static_cast<float>(1.0001 * d.Fstop);
  if (!(limit >= 0.001f) || !std::isfinite(limit)) return;
  for (float base = 0.001f;; base = static_cast<float>(base * 10.0)) {
    for (float step : kSteps) {
      float candidate = static_cast<float>(static_cast<double>(step) * base);
      if (candidate > limit) return;
      if (candidate >= d.Fstart && d.GridCount < kGridSlots - 1)
        d.GridFrequency[++d.GridCount] = candidate;
    }
  }
}

void DrawGridLines(const DesignRecord& d, Canvas& canvas, float left, float right, float top,
                   float bottom) {
  canvas.SetForeColor(kGridColor);
  canvas.SetDrawWidth(1);
  int count = std::min<int>(d.GridCount, kGridSlots - 1);
  for (int i = 0; i <= count; ++i) {
    double p;
    if (!LogFraction(d, d.GridFrequency[i], p)) continue;
    float x = static_cast<float>(left + (right - left) * p);
    canvas.Line(x, top, x, bottom);
  }
  canvas.SetForeColor(kBlack);
}

void DrawFrequencyLabels(const DesignRecord& d, Canvas& canvas, float left, float right, float y,
                         float minFraction) {
  struct Label {
    float left, right;
    int rank;
    std::string text;
    bool shown = false;
  };
  canvas.SetFont("Arial", 7, false);
  std::vector<Label> labels;
  int count = std::min<int>(d.GridCount, kGridSlots - 1);
  for (int i = 0; i <= count; ++i) {
    double p;
    if (!LogFraction(d, d.GridFrequency[i], p) || p < minFraction || p > 1.001) continue;
    std::string text = TrimBlanks(FormatFrequency(d.GridFrequency[i]));
    float w = canvas.TextWidth(text);
    float x = static_cast<float>(left + (right - left) * p);
    float l;
    if (p >= 0.999)
      l = right - w;
    else if (p > 0.95)
      l = std::min(x, right) - w;
    else
      l = x - w / 2;
    labels.push_back({l, l + w, LabelRank(d.GridFrequency[i]), text});
  }
  constexpr float kGap = 80;
  for (int rank = 0; rank <= 2; ++rank) {
    for (Label& candidate : labels) {
      if (candidate.rank != rank) continue;
      bool clear = std::none_of(labels.begin(), labels.end(), [&](const Label& other) {
        return other.shown && candidate.left < other.right + kGap &&
               other.left < candidate.right + kGap;
      });
      candidate.shown = clear;
    }
  }
  canvas.SetForeColor(kBlack);
  for (const Label& label : labels) {
    if (!label.shown) continue;
    canvas.SetTextPosition(label.left, y);
    canvas.Print(label.text);
  }
  SetDefaultPageFont(canvas);
}

void DrawXlines(DesignRecord& d, Canvas& canvas) {
  DrawGridLines(d, canvas, kPlotLeft, kPlotRight, kPlotTop, kPlotBottom);
  DrawFrequencyLabels(d, canvas, kPlotLeft, kPlotRight, kPlotBottom + 60, 0.04f);
}

void DrawMainPlot(DesignRecord& d, Canvas& canvas) {
  int mode = d.ValueMode;
  float tBottom = ScaleBottom(d.TransmissionBottom);
  float rBottom = ScaleBottom(d.ReflectionBottom);
  if (d.Divisions <= 0)
    d.Divisions = static_cast<int16_t>(std::clamp(std::lround(-tBottom / 10), 1L, 20L));
  int n = std::clamp<int>(d.Divisions, 1, 400);

  if (mode == 1) {
    canvas.FilledBox(kPlotLeft, kPlotTop, kPlotRight, kPlotBottom, kWhite);
    if (d.ShowVSWR == 1) canvas.FilledBox(kSideLeft, kVswrTop, kSideRight, kVswrBottom, kWhite);
    if (d.ShowDelay == 1) canvas.FilledBox(kSideLeft, kDelayTop, kSideRight, kDelayBottom, kWhite);
  }

  // Horizontal grid: the step is one unit short of a division on purpose.
  canvas.SetDrawWidth(1);
  canvas.SetForeColor(kGridColor);
  float step = 4000.0f / static_cast<float>(n) - 1.0f;
  for (float y = kPlotTop; y <= kPlotBottom; y += step) canvas.Line(kPlotLeft, y, kPlotRight, y);

  float widest = DrawScaleLabels(canvas, tBottom, n, 2800, kBlack);
  if (rBottom != tBottom) DrawScaleLabels(canvas, rBottom, n, 2800 - widest - 120, 8947848);

  BuildGridFrequencies(d);
  DrawXlines(d, canvas);

  if (mode == 1) {
    canvas.SetDrawWidth(2);
    canvas.SetForeColor(kBlack);
    canvas.Line(kPlotLeft, kPlotTop, kPlotRight, kPlotTop);
    canvas.Line(kPlotRight, kPlotTop, kPlotRight, kPlotBottom);
    canvas.Line(kPlotRight, kPlotBottom, kPlotLeft, kPlotBottom);
    canvas.Line(kPlotLeft, kPlotBottom, kPlotLeft, kPlotTop);
  }

  canvas.SetDrawWidth(2);
  DrawCurve(d, canvas, d.Transmission, tBottom, TransmissionColor(mode));
  DrawCurve(d, canvas, d.Reflection, rBottom, ReflectionColor(mode));
  canvas.SetDrawWidth(1);
  canvas.SetForeColor(kBlack);
}

}  // namespace drenik
