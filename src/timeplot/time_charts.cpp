#include "timeplot/time_charts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "plot/response_plot.h"

namespace drenik {

std::string SecondsText(double s) {
  if (!std::isfinite(s)) return "-";
  const double a = std::fabs(s);
  const double scale = a >= 1 ? 1 : a >= 1e-3 ? 1e-3 : a >= 1e-6 ? 1e-6 : a >= 1e-9 ? 1e-9 : 1e-12;
  const char* unit = a >= 1 ? "s" : a >= 1e-3 ? "ms" : a >= 1e-6 ? "us" : a >= 1e-9 ? "ns" : "ps";
  char text[32];
  std::snprintf(text, sizeof text, "%.4g %s", s / scale, unit);
  return text;
}

double NiceStep(double span, int divisions) {
  if (!(span > 0) || !std::isfinite(span)) return 1;
  const double raw = span / divisions;
  const double decade = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * decade >= raw * (1 - 1e-9)) return m * decade;
  return 10 * decade;
}

void DrawTimeChart(Canvas& canvas, const ChartBox& b, const std::string& title,
                   const std::vector<TimeCurve>& curves, double scale) {
  double tmax = 0, lo = 0, hi = 1;
  for (const TimeCurve& c : curves) {
    if (c.t->empty()) continue;
    tmax = std::max(tmax, c.t->back());
    for (double v : *c.y)
      if (std::isfinite(v / scale)) lo = std::min(lo, v / scale), hi = std::max(hi, v / scale);
  }
  const double ystep = NiceStep(hi - lo, 6);
  lo = std::floor(lo / ystep) * ystep, hi = std::ceil(hi / ystep) * ystep;
  const double tstep = NiceStep(tmax, 6);
  // The time unit of the labels.
  static const struct {
    double scale;
    const char* unit;
  } kUnits[] = {{1e-12, "ps"}, {1e-9, "ns"}, {1e-6, "us"}, {1e-3, "ms"}, {1, "s"}};
  const auto* unit = std::begin(kUnits);
  while (unit + 1 != std::end(kUnits) && tstep >= 1000 * unit->scale) ++unit;

  auto X = [&](double t) {
    return static_cast<float>(b.left + (b.right - b.left) * (tmax > 0 ? t / tmax : 0));
  };
  auto Y = [&](double v) {
    return static_cast<float>(b.bottom - (b.bottom - b.top) * (v - lo) / (hi - lo));
  };

  canvas.FilledBox(b.left - 900, b.top - 300, b.right + 200, b.bottom + 400, kWhite);
  canvas.SetFont("Arial", 8, true);
  canvas.SetForeColor(kBlack);
  canvas.SetTextPosition(b.left, b.top - 260);
  canvas.Print(title);
  canvas.SetFont("Arial", 7, false);
  char text[32];
  for (double t = 0; tmax > 0 && t <= tmax * (1 + 1e-9); t += tstep) {
    canvas.SetForeColor(kGridColor);
    canvas.Line(X(t), b.top, X(t), b.bottom);
    std::snprintf(text, sizeof text, "%g", t / unit->scale);
    canvas.SetForeColor(kBlack);
    canvas.SetTextPosition(X(t) - canvas.TextWidth(text) / 2, b.bottom + 50);
    canvas.Print(text);
  }
  canvas.SetTextPosition(b.right - canvas.TextWidth(unit->unit), b.bottom + 220);
  canvas.Print(unit->unit);
  for (double v = lo; v <= hi + ystep * 1e-9; v += ystep) {
    canvas.SetForeColor(std::fabs(v) < ystep * 1e-9 ? kBlack : kGridColor);
    canvas.Line(b.left, Y(v), b.right, Y(v));
    std::snprintf(text, sizeof text, "%g", std::fabs(v) < ystep * 1e-9 ? 0.0 : v);
    canvas.SetForeColor(kBlack);
    canvas.SetTextPosition(b.left - 60 - canvas.TextWidth(text), Y(v) - 85);
    canvas.Print(text);
  }
  canvas.SetDrawWidth(2);
  for (const TimeCurve& c : curves) {
    canvas.SetForeColor(c.color);
    for (size_t n = 1; n < c.t->size(); ++n)
      canvas.Line(X((*c.t)[n - 1]), Y((*c.y)[n - 1] / scale), X((*c.t)[n]), Y((*c.y)[n] / scale));
  }
  canvas.SetForeColor(kBlack);
  canvas.Line(b.left, b.top, b.right, b.top);
  canvas.Line(b.right, b.top, b.right, b.bottom);
  canvas.Line(b.right, b.bottom, b.left, b.bottom);
  canvas.Line(b.left, b.bottom, b.left, b.top);
  canvas.SetDrawWidth(1);
  SetDefaultPageFont(canvas);
}

}  // namespace drenik
