#include "pages/time_page.h"

#include <cmath>
#include <cstdio>

#include "core/formatters.h"
#include "pages/design_heading.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"
#include "synthesis/design_edges.h"
#include "synthesis/families.h"
#include "timeplot/time_charts.h"

namespace drenik {
namespace {

constexpr ChartBox kStepBox{1300, 1500, 6300, 4400};
// Titles end short of the page's right edge.
constexpr float kTitleRight = kPageWidth - 100;
constexpr ChartBox kImpulseBox{1300, 5300, 6300, 8200};

void FigureTable(Canvas& canvas, const TimePageData& data, float left, float top) {
  const char* heads[] = {"", "Overshoot", "Rise 10-90", "Delay 50 %", "Settle 1 %", "Settle 0.1 %"};
  constexpr float kColumn = 820;
  canvas.SetFont("Arial", 7, true);
  canvas.SetForeColor(kBlack);
  for (int c = 0; c < 6; ++c) {
    canvas.SetTextPosition(left + c * kColumn, top);
    canvas.Print(heads[c]);
  }
  canvas.SetFont("Arial", 7, false);
  float y = top + 220;
  for (const TimeStage& s : data.stages) {
    const TimeFigures& f = s.time.figures;
    char pct[32];
    std::snprintf(pct, sizeof pct, "%.3f %%", f.overshootPct);
    const std::string cells[] = {s.name,
                                 std::isfinite(f.overshootPct) ? pct : "-",
                                 SecondsText(f.rise1090),
                                 SecondsText(f.delay50),
                                 SecondsText(f.settling1pct),
                                 SecondsText(f.settling01pct)};
    canvas.SetForeColor(s.color);
    for (int c = 0; c < 6; ++c) {
      canvas.SetTextPosition(left + c * kColumn, y);
      canvas.Print(cells[c]);
    }
    y += 200;
  }
  canvas.SetForeColor(kBlack);
}

}  // namespace

TimePageData MakeTimePageData(const DesignRecord& d, ValueStage last, double span, int points) {
  TimePageData data;
  // The edges would run the heading off the page: they stand beside the
  // stages' names.
  data.title = "Time response and Smith chart: " + DesignHeading(d, false);
  if (const DesignEdges e = EdgesOf(d); e.band)
    data.edges = "Band edges f1 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f1))) +
                 ", f2 " + TrimBlanks(FormatFrequency(static_cast<float>(e.f2)));
  const ValueStages stages = MakeValueStages(d);
  if (!stages.fault.empty()) {
    data.fault = stages.fault;
    return data;
  }
  std::vector<ValueStage> shown{ValueStage::Exact};
  if (last != ValueStage::Exact) shown.push_back(ValueStage::FiveC);
  if (last == ValueStage::FiveL || (last == ValueStage::Chosen && d.InductorMode == 1))
    shown.push_back(ValueStage::FiveL);
  if (last == ValueStage::Chosen) shown.push_back(ValueStage::Chosen);
  for (ValueStage v : shown) {
    const DesignRecord& r = v == ValueStage::Chosen ? d : stages.At(v);
    TimeRequest request;
    request.ladder = LadderOf(r);
    // Band designs: losses at the centre, and the envelope of the switched
    // carrier at the centre (see TimeRequestOf).
    request.lossFrequency = request.ladder.qReference;
    request.carrier = r.Center;
    request.span = data.stages.empty() ? span : data.stages.front().time.t.back();
    request.points = points;
    const int mode = static_cast<int>(v) + 1;
    const std::string name = ValueStageName(v);
    TimeStage stage{name,
                    v == ValueStage::Chosen ? "Chosen parts" : name + " values",
                    TransmissionColor(mode),
                    ReflectionColor(mode),
                    ComputeTimeResponse(request),
                    SmithLocusOf(r)};
    if (!stage.time.fault.empty()) {
      data.fault = stage.time.fault;
      return data;
    }
    data.stages.push_back(std::move(stage));
  }
  return data;
}

SmithPlace SmithPlaceOf(TimeCharts charts) {
  return charts == TimeCharts::Smith ? SmithPlace{6000, 4900, 3500} : SmithPlace{9300, 3900, 2300};
}

void DrawTimePage(Canvas& canvas, const TimePageData& data, TimeCharts charts) {
  canvas.Clear();
  // The heading in 10 points, a little smaller where a long one would run
  // off the page.
  float size = 10;
  canvas.SetFont("Arial", size, true);
  while (size > 7 && 600 + canvas.TextWidth(data.title) > kTitleRight)
    canvas.SetFont("Arial", size -= 0.5f, true);
  canvas.SetForeColor(kBlack);
  canvas.SetTextPosition(600, 250);
  canvas.Print(data.title);
  if (!data.fault.empty()) {
    SetDefaultPageFont(canvas);
    canvas.SetTextPosition(600, 800);
    canvas.Print(data.fault);
    return;
  }
  canvas.SetFont("Arial", 8, false);
  float x = 600;
  for (const TimeStage& s : data.stages) {
    canvas.SetForeColor(s.color);
    canvas.SetTextPosition(x, 650);
    canvas.Print(s.legend);
    x += canvas.TextWidth(s.legend) + 400;
  }
  if (!data.edges.empty()) {
    canvas.SetForeColor(kBlack);
    canvas.SetTextPosition(7000, 650);
    canvas.Print(data.edges);
  }
  if (charts != TimeCharts::Smith) {
    std::vector<TimeCurve> steps, impulses;
    // Each stage over the ones before it, as on the display page.
    // With a carrier (a band design) the step chart holds the response to
    // the switched carrier in the stage's light colour under its envelope.
    for (const TimeStage& s : data.stages)
      if (!s.time.carrierWave.empty())
        steps.push_back({&s.time.t, &s.time.carrierWave, s.lightColor});
    for (const TimeStage& s : data.stages) {
      steps.push_back({&s.time.t, &s.time.step, s.color});
      impulses.push_back({&s.time.t, &s.time.impulse, s.color});
    }
    double peak = 0;
    for (double h : data.stages.front().time.impulse) peak = std::max(peak, std::fabs(h));
    DrawTimeChart(canvas, kStepBox, "Step response (1 = matched load voltage)", steps, 1);
    DrawTimeChart(canvas, kImpulseBox, "Impulse response (relative to its peak)", impulses,
                  peak > 0 ? peak : 1);
    FigureTable(canvas, data, 7000, charts == TimeCharts::Step ? 1500 : 6900);
  }
  if (charts != TimeCharts::Step) {
    const SmithPlace place = SmithPlaceOf(charts);
    DrawSmithGrid(canvas, place);
    for (const TimeStage& s : data.stages) DrawSmithLocus(canvas, place, s.smith, s.color);
    // The chart's title; where it would run off the page beside the step
    // charts, its note stands on a line of its own above.
    const SmithLocus& first = data.stages.front().smith;
    const std::string head = "Input reflection S11, " + TrimBlanks(FormatValue(first.reference)) +
                             " ohm;",
                      note = first.marks.size() > 1 ? "the squares mark the band edges f1, f2"
                                                    : "the square marks the cutoff";
    const float x = place.cx - place.radius, y = place.cy - place.radius - 330;
    canvas.SetFont("Arial", 8, true);
    if (x + canvas.TextWidth(head + " " + note) <= kTitleRight) {
      canvas.SetTextPosition(x, y);
      canvas.Print(head + " " + note);
    } else {
      canvas.SetTextPosition(x, y - 200);
      canvas.Print(head);
      canvas.SetTextPosition(x, y);
      canvas.Print(note);
    }
  }
  SetDefaultPageFont(canvas);
  canvas.SetForeColor(kBlack);
}

void TimePage::Load(const DesignRecord& d) {
  const ValueStage last = d.ValueMode == 1                  ? ValueStage::Exact
                          : d.ValueMode == 2                ? ValueStage::FiveC
                          : d.ValueMode == kChosenPartsMode ? ValueStage::Chosen
                                                            : ValueStage::FiveL;
  data_ = MakeTimePageData(d, last);
  readout_.clear();
  DrawTimePage(canvas_, data_, TimeCharts::All);
}

void TimePage::OnMouseMove(float x, float y) {
  if (data_.stages.empty()) return;
  const SmithPlace p = SmithPlaceOf(TimeCharts::All);
  const std::string text = SmithReadout(data_.stages.back().smith, p, x, y);
  if (text == readout_) return;
  readout_ = text;
  const float top = p.cy + p.radius + 150;
  canvas_.FilledBox(p.cx - p.radius - 300, top, kPageWidth, top + 250, kWhite);
  canvas_.SetFont("Arial", 8, false);
  canvas_.SetForeColor(data_.stages.back().color);
  canvas_.SetTextPosition(p.cx - p.radius - 300, top);
  canvas_.Print(readout_.empty() ? "Cursor on the chart for its readout" : readout_);
  SetDefaultPageFont(canvas_);
  canvas_.SetForeColor(kBlack);
}

}  // namespace drenik
