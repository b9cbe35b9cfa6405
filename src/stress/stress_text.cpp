#include "stress/stress_text.h"

#include <cmath>
#include <cstdio>

#include "core/formatters.h"

namespace drenik {
namespace {

std::string Printf(const char* format, double v) {
  if (!std::isfinite(v)) return "-";
  char text[48];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

// Three significant figures at least, never fewer than the units.
std::string Figures(double v) {
  if (std::fabs(v) >= 100) return Printf("%.0f", v);
  return Printf("%.3g", v);
}

}  // namespace

std::string PartValueText(const PartStress& s) {
  return TrimBlanks(s.part.type == PartType::Inductor ? FormatInductance(s.part.value)
                                                      : FormatCapacitance(s.part.value));
}

std::string VoltsText(double v) {
  return Figures(v);
}
std::string AmpsText(double a) {
  return Printf(std::fabs(a) >= 10 ? "%.2f" : "%.3f", a);
}
std::string WattsText(double w) {
  return Printf(std::fabs(w) >= 0.01 ? "%.3g" : "%.2g", w);
}
std::string HertzText(double f) {
  return TrimBlanks(FormatFrequency(f));
}

std::string StressConditions(const StressResult& r, const StressRequest& q, double rsource) {
  std::string text = Figures(q.power) + " W available from " + Figures(rsource) + " ohms (EMF " +
                     Figures(r.emf) + " V RMS), ";
  if (q.vswr == 1) return text + "matched load";
  return text + "every load of VSWR " + Figures(q.vswr) + ":1 (every phase of a reflection of " +
         Printf("%.3f", (q.vswr - 1) / (q.vswr + 1)) + ")";
}

std::string BandsText(const StressResult& r) {
  std::string text;
  for (const FrequencyBand& b : r.bands)
    text += (text.empty() ? "from " : " and from ") + HertzText(b.from) + " to " + HertzText(b.to);
  return text;
}

std::string TotalsText(const StressResult& r) {
  const StressTotals& t = r.worst;
  return "Total dissipation " + WattsText(t.dissipated) + " W at " + HertzText(t.f) +
         " (power in " + Figures(t.powerIn) + " W, out " + Figures(t.powerOut) +
         " W: in less out " + WattsText(t.powerIn - t.powerOut) + " W)";
}

std::string LossText(const StressResult& r) {
  return "Insertion loss there " + Printf("%.3g", r.worst.LossDb()) + " dB";
}

}  // namespace drenik
