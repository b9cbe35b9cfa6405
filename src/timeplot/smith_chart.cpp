#include "timeplot/smith_chart.h"

#include <cmath>
#include <cstdio>

#include "analysis/ladder.h"
#include "core/formatters.h"
#include "plot/response_plot.h"
#include "synthesis/design_edges.h"

namespace drenik {
namespace {

using Complex = std::complex<double>;

// Normalised resistances and reactances of the grid.
constexpr double kGridValues[] = {0.2, 0.5, 1, 2, 5};
// Points per grid curve: enough that the polyline looks round at print size.
constexpr int kCurvePoints = 160;

Complex GammaOf(Complex z) {
  return (z - 1.0) / (z + 1.0);
}

void Segment(Canvas& canvas, const SmithPlace& p, Complex a, Complex b) {
  canvas.Line(static_cast<float>(p.cx + p.radius * a.real()),
              static_cast<float>(p.cy - p.radius * a.imag()),
              static_cast<float>(p.cx + p.radius * b.real()),
              static_cast<float>(p.cy - p.radius * b.imag()));
}

// A grid curve through z(u) for u from 0 to 1 (u = 1 is infinity).
template <typename F>
void GridCurve(Canvas& canvas, const SmithPlace& p, F z) {
  Complex last = GammaOf(z(0.0));
  for (int i = 1; i <= kCurvePoints; ++i) {
    const double u = static_cast<double>(i) / kCurvePoints;
    const Complex g = i == kCurvePoints ? Complex(1, 0) : GammaOf(z(u));
    Segment(canvas, p, last, g);
    last = g;
  }
}

// 0 .. infinity as u runs 0 .. 1, dense near 1 ohm per ohm.
double Stretch(double u) {
  return std::tan(u * M_PI / 2);
}

}  // namespace

SmithLocus SmithLocusOf(const DesignRecord& d) {
  SmithLocus s;
  s.reference = d.Rsource;
  const Ladder ladder = LadderOf(d);
  if (!LadderFault(ladder).empty() || d.NrIntervals < 0 || d.NrIntervals >= kSweepSlots) return s;
  const DesignEdges e = EdgesOf(d);
  const auto passes = [&e](double f) {
    if (e.bandstop) return f <= e.f1 || f >= e.f2;
    if (e.band) return f >= e.f1 && f <= e.f2;
    return e.highpass ? f >= e.cutoff : f <= e.cutoff;
  };
  for (int i = 0; i <= d.NrIntervals; ++i) {
    const Complex g = LadderSParameters(ladder, d.Freq[i]).S11;
    s.freq.push_back(d.Freq[i]);
    s.gamma.push_back(g);
    if (passes(d.Freq[i]) && std::isfinite(std::abs(g)))
      s.passbandRadius = std::max(s.passbandRadius, std::abs(g));
  }
  for (double f : e.band ? std::vector<double>{e.f1, e.f2} : std::vector<double>{d.Width})
    s.marks.push_back(LadderSParameters(ladder, f).S11);
  return s;
}

void DrawSmithGrid(Canvas& canvas, const SmithPlace& p) {
  canvas.SetDrawWidth(1);
  canvas.SetForeColor(kGridColor);
  for (double v : kGridValues) {
    GridCurve(canvas, p, [v](double u) { return Complex(v, 0) + Complex(0, 1) * Stretch(u); });
    GridCurve(canvas, p, [v](double u) { return Complex(v, 0) - Complex(0, 1) * Stretch(u); });
    GridCurve(canvas, p, [v](double u) { return Complex(Stretch(u), v); });
    GridCurve(canvas, p, [v](double u) { return Complex(Stretch(u), -v); });
  }
  canvas.SetForeColor(kBlack);
  canvas.Line(p.cx - p.radius, p.cy, p.cx + p.radius, p.cy);
  canvas.SetDrawWidth(2);
  canvas.Arc(p.cx, p.cy, p.radius, 0, static_cast<float>(2 * M_PI));
  canvas.SetDrawWidth(1);
  canvas.SetFont("Arial", 7, false);
  for (double v : kGridValues) {
    const Complex g = GammaOf(Complex(v, 0));
    char text[16];
    std::snprintf(text, sizeof text, "%g", v);
    canvas.SetTextPosition(static_cast<float>(p.cx + p.radius * g.real()) + 20, p.cy + 20);
    canvas.Print(text);
  }
  SetDefaultPageFont(canvas);
}

void DrawSmithLocus(Canvas& canvas, const SmithPlace& p, const SmithLocus& locus, int32_t color) {
  if (locus.gamma.empty()) return;
  // The VSWR circle of the passband's return loss, dashed by short arcs.
  canvas.SetForeColor(color);
  canvas.SetDrawWidth(1);
  const float r = static_cast<float>(p.radius * locus.passbandRadius);
  for (int k = 0; k < 36; ++k)
    canvas.Arc(p.cx, p.cy, r, static_cast<float>(k * M_PI / 18),
               static_cast<float>((k + 0.5) * M_PI / 18));
  canvas.SetDrawWidth(2);
  for (size_t i = 1; i < locus.gamma.size(); ++i)
    Segment(canvas, p, locus.gamma[i - 1], locus.gamma[i]);
  for (const Complex& mark : locus.marks) {
    const float x = static_cast<float>(p.cx + p.radius * mark.real());
    const float y = static_cast<float>(p.cy - p.radius * mark.imag());
    canvas.FilledBox(x - 45, y - 45, x + 45, y + 45, color);
  }
  canvas.SetDrawWidth(1);
  canvas.SetForeColor(kBlack);
}

std::string SmithReadout(const SmithLocus& locus, const SmithPlace& p, float x, float y) {
  const Complex at((x - p.cx) / p.radius, (p.cy - y) / p.radius);
  size_t best = locus.gamma.size();
  double nearest = 0.1;
  for (size_t i = 0; i < locus.gamma.size(); ++i) {
    const double dist = std::abs(locus.gamma[i] - at);
    if (dist < nearest) nearest = dist, best = i;
  }
  if (best == locus.gamma.size()) return {};
  const Complex g = locus.gamma[best];
  const Complex z = locus.reference * (1.0 + g) / (1.0 - g);
  char text[128];
  std::snprintf(text, sizeof text, "%s  Z = %.4g %c j%.4g ohm  return loss %.2f dB",
                TrimBlanks(FormatFrequency(locus.freq[best])).c_str(), z.real(),
                z.imag() < 0 ? '-' : '+', std::fabs(z.imag()), -20 * std::log10(std::abs(g)));
  return text;
}

}  // namespace drenik
