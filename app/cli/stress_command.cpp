#include "cli/stress_command.h"

#include <cmath>

#include "cli/json_output.h"
#include "cli/messages.h"
#include "cli/number_reader.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "core/number_text.h"
#include "pages/design_heading.h"
#include "stress/stress_text.h"

namespace drenik::cli {
namespace {

std::string JsonDouble(double v) {
  return std::isfinite(v) ? RoundTripText(v) : "null";
}

std::string Padded(std::string s, size_t width) {
  s.resize(std::max(width, s.size() + 1), ' ');
  return s;
}

void WriteTable(const DesignRecord& d, const StressResult& r, const StressRequest& q,
                const std::string& values, std::ostream& out) {
  out << "Part stress: " << DesignHeading(d) << ", " << values << " values\n"
      << StressConditions(r, q, d.Rsource) << "\n"
      << "Largest values " << BandsText(r) << "\n\n"
      << Padded("Part", 6) << Padded("Value", 11) << Padded("V RMS", 9) << Padded("V peak", 9)
      << Padded("at", 12) << Padded("I RMS, A", 10) << Padded("at", 12) << Padded("P, W", 9)
      << "at\n";
  for (const PartStress& s : r.parts)
    out << Padded(s.name, 6) << Padded(PartValueText(s), 11) << Padded(VoltsText(s.v.value), 9)
        << Padded(VoltsText(s.VPeak()), 9) << Padded(HertzText(s.v.f), 12)
        << Padded(AmpsText(s.i.value), 10) << Padded(HertzText(s.i.f), 12)
        << Padded(WattsText(s.p.value), 9) << HertzText(s.p.f) << "\n";
  out << "\n" << TotalsText(r) << "\n" << LossText(r) << "\n";
}

void WriteJson(const StressResult& r, const StressRequest& q, const std::string& values,
               std::ostream& out) {
  out << "{\n  \"values\": " << JsonString(values) << ",\n  \"power\": " << JsonDouble(q.power)
      << ",\n  \"vswr\": " << JsonDouble(q.vswr) << ",\n  \"emf\": " << JsonDouble(r.emf)
      << ",\n  \"bands\": [";
  for (size_t k = 0; k < r.bands.size(); ++k)
    out << (k ? ", " : "") << "[" << JsonDouble(r.bands[k].from) << ", "
        << JsonDouble(r.bands[k].to) << "]";
  out << "],\n  \"parts\": [";
  for (size_t k = 0; k < r.parts.size(); ++k) {
    const PartStress& s = r.parts[k];
    out << (k ? ",\n    " : "\n    ") << "{\"name\": " << JsonString(s.name) << ", \"kind\": "
        << JsonString(s.part.type == PartType::Inductor ? "inductor" : "capacitor")
        << ", \"value\": " << JsonDouble(s.part.value) << ", \"v_rms\": " << JsonDouble(s.v.value)
        << ", \"v_peak\": " << JsonDouble(s.VPeak()) << ", \"i_rms\": " << JsonDouble(s.i.value)
        << ", \"p_diss\": " << JsonDouble(s.p.value) << ", \"f_v\": " << JsonDouble(s.v.f)
        << ", \"f_i\": " << JsonDouble(s.i.f) << ", \"f_p\": " << JsonDouble(s.p.f)
        << ", \"phase_v\": " << JsonDouble(s.v.phase) << ", \"phase_i\": " << JsonDouble(s.i.phase)
        << ", \"phase_p\": " << JsonDouble(s.p.phase) << "}";
  }
  const StressTotals& t = r.worst;
  out << "\n  ],\n  \"total\": {\"f\": " << JsonDouble(t.f)
      << ", \"phase\": " << JsonDouble(t.phase) << ", \"p_in\": " << JsonDouble(t.powerIn)
      << ", \"p_out\": " << JsonDouble(t.powerOut) << ", \"p_diss\": " << JsonDouble(t.dissipated)
      << ", \"loss_db\": " << JsonDouble(t.LossDb()) << "}\n}\n";
}

}  // namespace

bool IsStressOption(const std::string& name) {
  return name == "--power" || name == "--vswr" || name == "--band";
}

void ParseStressOption(const std::string& name, const std::string& value, StressOptions& o) {
  if (name == "--power") {
    const double w = ReadNumber(name, value);
    if (!(w > 0) || !std::isfinite(w))
      throw UsageError(name + ": expected a power in watts above 0, got '" + value + "'");
    o.power = w;
  } else if (name == "--vswr") {
    const double s = ReadNumber(name, value);
    if (!(s >= 1) || !std::isfinite(s))
      throw UsageError(name + ": expected a VSWR of 1 or more, such as 2, got '" + value + "'");
    o.vswr = s;
  } else {
    const size_t colon = value.find(':');
    const char* expected = ": expected FROM:TO in Hz with 0 < FROM < TO, such as 14M:14.35M, got '";
    if (colon == std::string::npos) throw UsageError(name + expected + value + "'");
    const double from = ReadNumber(name, value.substr(0, colon));
    const double to = ReadNumber(name, value.substr(colon + 1));
    if (!(from > 0) || !(to > from) || !std::isfinite(to))
      throw UsageError(name + expected + value + "'");
    o.band = FrequencyBand{from, to};
  }
}

StressRequest StressRequestOf(const StressOptions& o, const char* command) {
  if (!o.power) {
    if (o.vswr) throw UsageError(std::string("--vswr: only with --power"));
    throw UsageError(std::string("--power: required for '") + command + "'");
  }
  StressRequest r;
  r.power = *o.power;
  r.vswr = o.vswr.value_or(1);
  if (o.band) r.bands = {*o.band};
  return r;
}

int RunStressCommand(const CliOptions& o, const DesignResult& design,
                     const std::string& valuesTitle, std::ostream& out, std::ostream& err) {
  const StressRequest q = StressRequestOf(o.stress, "stress");
  const StressResult r = AnalyzeStress(design.chosen, q);
  if (!r.report.Ok()) {
    err << "drenik: " << Printable(r.report.fault) << "\n";
    return 2;
  }
  if (o.json) {
    WriteJson(r, q, valuesTitle, out);
  } else {
    WriteTable(design.chosen, r, q, valuesTitle, out);
  }
  return 0;
}

}  // namespace drenik::cli
