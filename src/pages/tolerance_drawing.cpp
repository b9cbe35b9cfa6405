#include "pages/tolerance_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

#include "core/formatters.h"
#include "pages/design_heading.h"
#include "pages/opening_page.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"
#include "tolerance/tolerance_text.h"

namespace drenik {
namespace {

constexpr float kRightEdge = 11850;
constexpr float kYieldLeft = 9200;
constexpr float kTableLeft = 8150;
constexpr int32_t kPassBar = 0xC08040;  // blue-grey: filters that meet the return loss
constexpr int32_t kFailBar = 0x6060E0;  // red: filters that miss it
constexpr int32_t kFrameGrey = 0x808080;

void Text(Canvas& c, float x, float y, const std::string& s, float size = 8, bool bold = false,
          int32_t color = kBlack) {
  c.SetFont("Arial", size, bold);
  c.SetForeColor(color);
  c.SetTextPosition(x, y);
  c.Print(s);
}

// Text ending at x.
void TextLeftOf(Canvas& c, float x, float y, const std::string& s, float size = 8) {
  c.SetFont("Arial", size, false);
  Text(c, x - c.TextWidth(s), y, s, size);
}

// Text broken between words into lines no wider than `width`, from y down;
// returns the y under the last line.
float Wrapped(Canvas& c, float x, float y, float width, const std::string& text, bool bold = false,
              float lineHeight = 220) {
  c.SetFont("Arial", 8, bold);
  std::string line;
  size_t at = 0;
  while (at < text.size()) {
    size_t end = text.find(' ', at);
    if (end == std::string::npos) end = text.size();
    const std::string word = text.substr(at, end - at);
    const std::string longer = line.empty() ? word : line + " " + word;
    if (!line.empty() && c.TextWidth(longer) > width) {
      Text(c, x, y, line, 8, bold);
      y += lineHeight;
      line = word;
    } else {
      line = longer;
    }
    at = end + 1;
  }
  if (!line.empty()) Text(c, x, y, line, 8, bold);
  return y + lineHeight;
}

std::string Fixed(double v, int decimals) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", decimals, v);
  return text;
}

void Outline(Canvas& c, float x1, float y1, float x2, float y2, int width = 1,
             int32_t color = kBlack) {
  c.SetDrawWidth(width);
  c.SetForeColor(color);
  c.Line(x1, y1, x2, y1);
  c.Line(x2, y1, x2, y2);
  c.Line(x2, y2, x1, y2);
  c.Line(x1, y2, x1, y1);
  c.SetDrawWidth(1);
}

// The dB scale of the response plot: 0 dB at the top, 10 dB a division,
// deep enough for the mask's stopband with 10 dB to spare.
struct DbScale {
  PlotArea a;
  double bottomDb = -70;
  float Y(double db) const {
    const double y = a.top + (a.bottom - a.top) * (db / bottomDb);
    return static_cast<float>(std::clamp<double>(y, a.top, a.bottom));
  }
};

DbScale ScaleFor(const ToleranceSetup& setup, const PlotArea& area) {
  double deepest = 60;
  for (const StopCheck& s : setup.mask.stops) deepest = std::max(deepest, s.depth);
  if (setup.mask.passRl) deepest = std::max(deepest, *setup.mask.passRl);
  return {area, -10 * std::min(14.0, std::ceil((deepest + 10) / 10))};
}

struct FrequencyScale {
  const DesignRecord& d;
  PlotArea a;
  // x of a frequency, or of the nearest plot edge.
  float X(double f) const {
    double p = 0;
    if (!LogFraction(d, f, p)) p = f > d.Fstop ? 1 : 0;
    p = std::clamp(p, 0.0, 1.0);
    return static_cast<float>(a.left + (a.right - a.left) * p);
  }
};

void Curve(Canvas& c, const FrequencyScale& fx, const DbScale& s, const std::vector<float>& freq,
           const float* db, int32_t color) {
  c.SetForeColor(color);
  c.SetDrawWidth(2);
  for (size_t i = 1; i < freq.size(); ++i)
    c.Line(fx.X(freq[i - 1]), s.Y(db[i - 1]), fx.X(freq[i]), s.Y(db[i]));
  c.SetDrawWidth(1);
}

// The spread of the trials: one box per step between points, from the
// lower to the higher of the two points' extremes.
void Spread(Canvas& c, const FrequencyScale& fx, const DbScale& s, const std::vector<float>& freq,
            const std::vector<float>& low, const std::vector<float>& high, int32_t color) {
  for (size_t i = 1; i < freq.size(); ++i) {
    const float top = s.Y(std::max(high[i - 1], high[i]));
    const float bottom = s.Y(std::min(low[i - 1], low[i]));
    if (bottom - top < 1) continue;
    c.FilledBox(fx.X(freq[i - 1]), top, fx.X(freq[i]) + 1, bottom, color);
  }
}

// A limit line from f1 to f2 at db, with short ticks every 150 page units
// pointing into the forbidden side (up: above the line is forbidden).
void LimitLine(Canvas& c, const FrequencyScale& fx, const DbScale& s, double f1, double f2,
               double db, bool forbiddenAbove) {
  const float x1 = std::min(fx.X(f1), fx.X(f2)), x2 = std::max(fx.X(f1), fx.X(f2));
  const float y = s.Y(db);
  c.SetForeColor(kMaskColor);
  c.SetDrawWidth(2);
  c.Line(x1, y, x2, y);
  c.SetDrawWidth(1);
  const float tick = forbiddenAbove ? -70.f : 70.f;
  for (float x = x1; x + 50 <= x2; x += 150) c.Line(x, y, x + 50, y + tick);
}

}  // namespace

void DrawMaskedResponse(const ToleranceFigures& f, Canvas& c, const PlotArea& a) {
  const DesignRecord& d = *f.stage;
  const ToleranceSetup& setup = *f.setup;
  const ToleranceResult* r = f.result;
  const DbScale s = ScaleFor(setup, a);
  const FrequencyScale fx{d, a};
  c.FilledBox(a.left, a.top, a.right, a.bottom, kWhite);
  Text(c, a.left, a.top - 300, "Transmission and reflection, dB", 8, true);

  if (r) {
    Spread(c, fx, s, r->freq, r->transmissionMin, r->transmissionMax, kTransmissionBand);
    Spread(c, fx, s, r->freq, r->reflectionMin, r->reflectionMax, kReflectionBand);
  }
  DesignRecord grid = d;
  BuildGridFrequencies(grid);
  DrawGridLines(grid, c, a.left, a.right, a.top, a.bottom);
  DrawFrequencyLabels(grid, c, a.left, a.right, a.bottom + 60, 0.04f);
  const int divisions = static_cast<int>(std::lround(-s.bottomDb / 10));
  for (int k = 0; k <= divisions; ++k) {
    const float y = s.Y(-10.0 * k);
    c.SetForeColor(kGridColor);
    c.Line(a.left, y, a.right, y);
    TextLeftOf(c, a.left - 80, y - 100, std::to_string(-10 * k));
  }

  // The mask: each check's limit over the points it covers.
  const Mask& m = setup.mask;
  const bool hp = FindTopology(d.Topology) && FindTopology(d.Topology)->highpass;
  const double lo = d.Fstart, hi = d.Fstop;
  // A bandpass's passband starts at its lower edge, a bandstop's resumes
  // above its upper edge; a lower skirt runs down to the sweep's start and
  // a notch ends at its upper stop edge.
  const double from = hp ? m.passEdge : (m.passStart > 0 ? m.passStart : lo);
  const double to = hp ? hi : m.passEdge;
  for (const auto& [limit, reflection] : {std::pair{m.passRl, true}, {m.passIl, false}}) {
    if (!limit) continue;
    LimitLine(c, fx, s, from, to, -*limit, reflection);
    if (m.passResume > 0) LimitLine(c, fx, s, m.passResume, hi, -*limit, reflection);
  }
  for (const StopCheck& stop : m.stops) {
    const bool below = hp || stop.below;
    LimitLine(c, fx, s, below ? lo : stop.frequency,
              below ? stop.frequency : (stop.to > 0 ? stop.to : hi), -stop.depth, true);
  }

  if (r) {
    Curve(c, fx, s, r->freq, r->nominalTransmission.data(), TransmissionColor(1));
    Curve(c, fx, s, r->freq, r->nominalReflection.data(), ReflectionColor(1));
  } else {
    const std::vector<float> freq(d.Freq.begin(), d.Freq.begin() + (d.NrIntervals + 1));
    Curve(c, fx, s, freq, d.Transmission.data(), TransmissionColor(1));
    Curve(c, fx, s, freq, d.Reflection.data(), ReflectionColor(1));
  }
  Outline(c, a.left, a.top, a.right, a.bottom, 2);

  // Legend under the frequency labels, on a second line where a narrow
  // plot has no room for it on one.
  float x = a.left;
  float y = a.bottom + 330;
  auto sample = [&](int32_t color, bool box, const std::string& label) {
    c.SetFont("Arial", 7, false);
    if (x > a.left && x + 300 + c.TextWidth(label) > a.right) x = a.left, y += 200;
    if (box) {
      c.FilledBox(x, y + 40, x + 250, y + 150, color);
    } else {
      c.SetForeColor(color);
      c.SetDrawWidth(2);
      c.Line(x, y + 95, x + 250, y + 95);
      c.SetDrawWidth(1);
    }
    Text(c, x + 300, y, label, 7);
    c.SetFont("Arial", 7, false);
    x += 300 + c.TextWidth(label) + 200;
  };
  sample(TransmissionColor(1), false, "nominal transmission");
  sample(ReflectionColor(1), false, "nominal reflection");
  if (r) {
    sample(kTransmissionBand, true, "spread of transmission");
    sample(kReflectionBand, true, "of reflection");
  }
  sample(kMaskColor, false, "mask");
}

namespace {

void YieldBlock(const ToleranceFigures& f, Canvas& c) {
  const ToleranceResult* r = f.result;
  Text(c, kYieldLeft, 1000, "Yield", 10, true);
  if (!r) {
    Text(c, kYieldLeft, 1350, "Not run yet", 14, true, kFrameGrey);
    Wrapped(c, kYieldLeft, 2000, kRightEdge - kYieldLeft,
            "Run builds " + std::to_string(f.setup->trials) +
                " filters from parts drawn at random within their tolerances and checks each "
                "against the mask.");
    return;
  }
  const int32_t color = r->yield >= 0.9 ? 0x008000 : (r->yield >= 0.5 ? 0x0070C0 : 0x0000C0);
  Text(c, kYieldLeft, 1280, PercentText(r->yield), 30, true, color);
  Text(c, kYieldLeft, 2050, IntervalText(*r), 8);
  Text(c, kYieldLeft, 2270,
       std::to_string(r->passed) + " of " + std::to_string(r->trials) + " filters meet the mask",
       8);
  Text(c, kYieldLeft, 2490,
       r->nominalPasses ? "The nominal design meets it" : "The nominal design misses it", 8, false,
       r->nominalPasses ? kBlack : kMaskColor);

  Text(c, kYieldLeft, 2900, "Failures per check", 8, true);
  float y = 3150;
  for (const CheckOutcome& o : r->checks) {
    Text(c, kYieldLeft, y, o.check.name, 8);
    // The nominal design's own figure where it is the one that misses.
    const std::string count =
        o.check.Points() == 0
            ? "no sweep point there"
            : std::to_string(o.failures) + " (" + PercentText(double(o.failures) / r->trials) +
                  ")" + (o.nominalHolds ? "" : ", nominal " + Fixed(o.nominalDb, 2) + " dB");
    Text(c, kYieldLeft + 150, y + 210, count, 8, false, o.failures ? kMaskColor : kBlack);
    y += 470;
    if (y > 4900) break;
  }
}

// One histogram of a per-filter figure in dB: bars that meet the mask's
// limit in blue-grey, the others red. More return loss and attenuation is
// better, more loss worse.
struct HistogramPanel {
  float left, right;
  const char* title;
  const std::vector<float>* values;
  std::optional<double> limit;
  double nominal;
  const char* empty;  // said when no filter has the figure
  bool lessIsBetter = false;
};

// The mask and nominal labels stand in a row above the box, each beside its
// line and clear of the other, so that they never cover a bar or a line.
void MarkerLabels(Canvas& c, const HistogramPanel& p, float xMask, float xNominal) {
  struct Label {
    float x;
    std::string text;
    int32_t color;
  };
  std::vector<Label> labels;
  if (p.limit) labels.push_back({xMask, "mask " + Fixed(*p.limit, 1), kMaskColor});
  if (std::isfinite(p.nominal))
    labels.push_back({xNominal, "nominal " + Fixed(p.nominal, 1), kBlack});
  std::sort(labels.begin(), labels.end(), [](const Label& a, const Label& b) { return a.x < b.x; });
  c.SetFont("Arial", 7, false);
  float row = kHistTop - 190, leftFree = p.left - 300;
  for (size_t i = 0; i < labels.size(); ++i) {
    const float w = c.TextWidth(labels[i].text);
    // The first of two ends left of its line, the other starts right of it.
    float x = labels.size() == 2 && i == 0 ? labels[i].x - 40 - w : labels[i].x + 40;
    x = std::clamp(x, p.left - 300, p.right - w);
    if (x < leftFree) row -= 170;  // no room beside the other: a row higher
    Text(c, x, row, labels[i].text, 7, false, labels[i].color);
    leftFree = x + w + 60;
  }
}

void DrawHistogram(Canvas& c, const HistogramPanel& p) {
  Wrapped(c, p.left - 300, kHistTop - 750, p.right - p.left + 300, p.title, true, 200);
  const Histogram h = MakeHistogram(*p.values, 16);
  c.FilledBox(p.left, kHistTop, p.right, kHistBottom, kWhite);
  if (h.counts.empty()) {
    Wrapped(c, p.left + 100, kHistTop + 300, p.right - p.left - 200, p.empty);
    Outline(c, p.left, kHistTop, p.right, kHistBottom, 1, kFrameGrey);
    return;
  }
  double lo = h.low, hi = h.low + h.width * h.counts.size();
  for (double v : {p.limit.value_or(lo), p.nominal})
    if (std::isfinite(v)) lo = std::min(lo, v - h.width), hi = std::max(hi, v + h.width);
  auto X = [&](double v) {
    return static_cast<float>(p.left + (p.right - p.left) * (v - lo) / (hi - lo));
  };
  const int most = std::max(1, h.Most());
  const float height = (kHistBottom - kHistTop) * 0.9f;
  for (size_t i = 0; i < h.counts.size(); ++i) {
    if (!h.counts[i]) continue;
    const double left = h.low + h.width * i;
    const double middle = left + h.width / 2;
    const bool meets = !p.limit || (p.lessIsBetter ? middle <= *p.limit : middle >= *p.limit);
    const float top = kHistBottom - height * h.counts[i] / most;
    c.FilledBox(X(left) + 8, top, X(left + h.width) - 8, kHistBottom, meets ? kPassBar : kFailBar);
  }
  // Labels every 1-2-5 step that leaves room for about five of them.
  const double span = hi - lo, decade = std::pow(10.0, std::floor(std::log10(span / 5)));
  double step = decade;
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (span / (m * decade) <= 5) {
      step = m * decade;
      break;
    }
  const int decimals = step < 1 ? (step < 0.1 ? 2 : 1) : 0;
  for (double v = std::ceil(lo / step) * step; v <= hi + 1e-9; v += step) {
    const std::string label = Fixed(v, decimals);
    c.SetForeColor(kGridColor);
    c.Line(X(v), kHistBottom, X(v), kHistBottom + 60);
    c.SetFont("Arial", 7, false);
    Text(c, X(v) - c.TextWidth(label) / 2, kHistBottom + 80, label, 7);
  }
  TextLeftOf(c, p.left - 60, kHistBottom - 110, "0", 7);
  TextLeftOf(c, p.left - 60, kHistBottom - height - 100, std::to_string(most), 7);
  auto line = [&](double v, int32_t color) {
    c.SetForeColor(color);
    c.SetDrawWidth(2);
    c.Line(X(v), kHistTop, X(v), kHistBottom);
    c.SetDrawWidth(1);
  };
  if (p.limit) line(*p.limit, kMaskColor);
  if (std::isfinite(p.nominal)) line(p.nominal, kBlack);
  MarkerLabels(c, p, p.limit ? X(*p.limit) : 0, std::isfinite(p.nominal) ? X(p.nominal) : 0);
  Outline(c, p.left, kHistTop, p.right, kHistBottom, 1, kFrameGrey);
}

// A histogram for each kind of check the mask sets, side by side: the worst
// passband return loss, the worst passband loss, the least stopband
// attenuation of each filter. A mask without checks still shows the return
// loss.
void Histograms(const ToleranceFigures& f, Canvas& c) {
  const ToleranceResult* r = f.result;
  if (!r) return;
  const Mask& mask = f.setup->mask;
  // No one line stands for the depths of several stopband checks.
  std::optional<double> stopLimit;
  if (mask.stops.size() == 1) stopLimit = mask.stops[0].depth;
  std::vector<HistogramPanel> panels;
  if (mask.passRl || (!mask.passIl && mask.stops.empty()))
    panels.push_back({0, 0, "Worst passband return loss, dB", &r->worstReturnLoss, mask.passRl,
                      r->nominalReturnLoss, "The sweep has no passband points."});
  if (mask.passIl)
    panels.push_back({0, 0, "Worst passband loss, dB", &r->worstLoss, mask.passIl, r->nominalLoss,
                      "The sweep has no passband points.", true});
  if (!mask.stops.empty())
    panels.push_back({0, 0, "Least stopband attenuation, dB", &r->worstStopAttenuation, stopLimit,
                      r->nominalStopAttenuation, "The mask checks no stopband point."});
  // Each panel keeps 300 left of its box for the count labels and the
  // first of its marker labels, and 150 after it.
  constexpr float kGap = 450;
  const float count = static_cast<float>(panels.size());
  const float width = (kHistRight - kHistLeft - kGap * (count - 1)) / count;
  float left = kHistLeft;
  for (HistogramPanel& p : panels) {
    p.left = left, p.right = left + width;
    DrawHistogram(c, p);
    left += width + kGap;
  }
}

void SensitivityTable(const ToleranceFigures& f, Canvas& c) {
  const ToleranceResult* r = f.result;
  if (!r || r->sensitivity.empty()) return;
  const float columns[] = {kTableLeft, kTableLeft + 550, kTableLeft + 1550, kTableLeft + 2150,
                           kTableLeft + 2950};
  Text(c, kTableLeft, 5450,
       "Sensitivity: yield with one part " + TightenedText(r->sensitivity.front()), 8, true);
  const char* heads[] = {"Part", "Value", "Tol.", "Yield", "Gain"};
  for (int k = 0; k < 5; ++k) Text(c, columns[k], 5720, heads[k], 8, false, kFrameGrey);
  float y = 5950;
  for (const PartSensitivity& p : r->sensitivity) {
    if (y > 8150) break;
    const bool top = &p == &r->sensitivity.front() && p.passed != r->passed;
    const std::string cells[] = {p.part.Name(), PartValueText(p.part),
                                 ToleranceText(p.part.tolerance), PercentText(p.yield),
                                 GainText(p, *r)};
    for (int k = 0; k < 5; ++k) Text(c, columns[k], y, cells[k], 8, top);
    y += 215;
  }
  Wrapped(c, kTableLeft, std::max(y + 100, 7900.f), kRightEdge - kTableLeft,
          SensitivitySentence(*r), true);
}

}  // namespace

void DrawToleranceFigures(const ToleranceFigures& f, Canvas& c) {
  c.FilledBox(3500, 0, kPageWidth, kPageHeight, kWhite);
  const DesignRecord& d = *f.stage;
  Text(c, 3600, 120, DesignHeading(d, false) + ", " + f.stageName + " values", 11, true);
  const ToleranceSetup& s = *f.setup;
  char parts[160];
  std::snprintf(parts, sizeof parts,
                "Capacitors +-%g%%, inductors +-%g%%, %s; %d trials, seed %llu", s.ctolPercent,
                s.ltolPercent,
                s.distribution == Distribution::Normal ? "normal (tolerance = 3 sigma)" : "uniform",
                s.trials, static_cast<unsigned long long>(s.seed));
  Text(c, 3600, 470, f.result ? parts : "Nominal response and mask; press Run for the yield.", 8);
  if (!f.outOfDate.empty()) {
    // One line between the heading and the plot's title, smaller where a
    // long band heading needs it.
    float size = 8;
    c.SetFont("Arial", size, true);
    while (size > 6 && 3600 + c.TextWidth(f.outOfDate) > kRightEdge)
      c.SetFont("Arial", size -= 0.5f, true);
    Text(c, 3600, 660, f.outOfDate, size, true, kMaskColor);
  }
  DrawMaskedResponse(f, c, {kTolPlotLeft, kTolPlotTop, kTolPlotRight, kTolPlotBottom});
  YieldBlock(f, c);
  Histograms(f, c);
  SensitivityTable(f, c);
  SetDefaultPageFont(c);
  c.SetForeColor(kBlack);
}

void DrawToleranceSettings(Canvas& c, const ToleranceSetup& s, const std::string& stageName,
                           const std::string& status) {
  float y = 1000;
  auto line = [&](const std::string& text, bool bold = false) {
    Text(c, 300, y, text, 8, bold);
    y += 240;
  };
  line("Settings", true);
  line("Values: " + stageName);
  char text[80];
  std::snprintf(text, sizeof text, "Capacitors: +-%g%%", s.ctolPercent);
  line(text);
  std::snprintf(text, sizeof text, "Inductors: +-%g%%", s.ltolPercent);
  line(text);
  line(s.distribution == Distribution::Normal ? "Distribution: normal, 3 sigma"
                                              : "Distribution: uniform");
  line("Trials: " + std::to_string(s.trials) + ", seed " + std::to_string(s.seed));
  std::snprintf(text, sizeof text, "Sensitivity: one part at %g%%", s.tightenPercent);
  line(s.tightenPercent > 0 ? text : "Sensitivity: one part held at nominal");
  y += 120;
  line("Mask", true);
  // A band's mask names each band's span, a lowpass's or highpass's its
  // edges alone.
  const bool band = s.mask.passStart > 0 || s.mask.passResume > 0;
  if (band) {
    std::string spans;
    for (const Span& pass : PassSpans(s.mask, false))
      spans += (spans.empty() ? "" : ", ") + SpanText(pass);
    line("Passband " + spans);
  } else {
    line("Passband edge: " + TrimBlanks(FormatFrequency(s.mask.passEdge)));
  }
  if (s.mask.passRl) line("Return loss at least " + Fixed(*s.mask.passRl, 1) + " dB");
  if (s.mask.passIl) line("Loss at most " + Fixed(*s.mask.passIl, 1) + " dB");
  for (const StopCheck& stop : s.mask.stops)
    line("Stopband " +
         (band ? SpanText(StopSpan(stop, false)) : TrimBlanks(FormatFrequency(stop.frequency))) +
         ": " + Fixed(stop.depth, 1) + " dB");
  Text(c, 300, kStatusTop, status, 8);
  Text(c, 300, 8600, std::string(kProgramTitle) + " " + kProgramVersion, 7, false, kFrameGrey);
  SetDefaultPageFont(c);
}

void DrawRunStatus(Canvas& c, double fraction, const std::string& text) {
  DrawRunStatus(c, fraction, text, {kStatusLeft, kStatusTop, kStatusRight, kStatusBottom});
}

void DrawRunStatus(Canvas& c, double fraction, const std::string& text, const PlotArea& a) {
  c.FilledBox(a.left - 20, a.top - 20, a.right + 20, a.bottom + 20, kWhite);
  if (fraction >= 0) {
    c.FilledBox(a.left, a.top, a.right, a.bottom, kWhite);
    const float right = a.left + (a.right - a.left) * std::clamp(fraction, 0.0, 1.0);
    if (right > a.left) c.FilledBox(a.left, a.top, right, a.bottom, 0xE0A060);
    Outline(c, a.left, a.top, a.right, a.bottom, 1, kFrameGrey);
  }
  c.SetFont("Arial", 8, false);
  Text(c, (a.left + a.right - c.TextWidth(text)) / 2, a.top + 40, text, 8);
  SetDefaultPageFont(c);
  c.SetForeColor(kBlack);
}

}  // namespace drenik
