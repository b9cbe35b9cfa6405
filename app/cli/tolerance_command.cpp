#include "cli/tolerance_command.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "cli/json_output.h"
#include "cli/number_reader.h"
#include "cli/progress_line.h"
#include "core/formatters.h"
#include "pages/design_heading.h"
#include "synthesis/families.h"
#include "tolerance/tolerance.h"
#include "tolerance/tolerance_text.h"

namespace drenik::cli {

namespace {

[[noreturn]] void Bad(const std::string& name, const std::string& expected,
                      const std::string& text) {
  throw UsageError(name + ": expected " + expected + ", got '" + text + "'");
}

// The whole text as a number, read as every number on the command line is.
double Number(const std::string& name, const std::string& text, const std::string& expected) {
  try {
    return ReadNumber(name, text);
  } catch (const UsageError&) {
    Bad(name, expected, text);
  }
}

double Percent(const std::string& name, const std::string& text) {
  const char* expected = "a tolerance of 0 to 50 (%)";
  const double v = Number(name, text, expected);
  if (v < 0 || v > kMaxTolerancePercent) Bad(name, expected, text);
  return v;
}

double Decibels(const std::string& name, const std::string& text) {
  const char* expected = "dB of 0 or more";
  const double v = Number(name, text, expected);
  if (v < 0) Bad(name, expected, text);
  return v;
}

double Frequency(const std::string& name, const std::string& text) {
  const char* expected = "a frequency such as 4.2M, 8,4M or 1.5E6";
  const double f = Number(name, text, expected);
  if (!(f > 0)) Bad(name, expected, text);
  return f;
}

const char* DistributionWord(Distribution d) {
  return d == Distribution::Normal ? "normal" : "uniform";
}

// A double that reads back to itself; null where JSON has no number.
std::string JsonDouble(double v) {
  if (!std::isfinite(v)) return "null";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", v);
  return text;
}

std::string JsonFloats(const std::vector<float>& values) {
  std::string out = "[";
  for (size_t i = 0; i < values.size(); ++i) out += (i ? ", " : "") + JsonReal(values[i]);
  return out + "]";
}

std::string JsonHistogram(const Histogram& h) {
  std::string counts = "[";
  for (size_t i = 0; i < h.counts.size(); ++i)
    counts += (i ? ", " : "") + std::to_string(h.counts[i]);
  return "{\"low\": " + JsonDouble(h.low) + ", \"width\": " + JsonDouble(h.width) +
         ", \"counts\": " + counts + "]}";
}

void WriteJson(const ToleranceSetup& s, const ToleranceResult& r, const std::string& values,
               std::ostream& out) {
  std::vector<std::pair<std::string, std::string>> fields;
  auto add = [&](const std::string& name, const std::string& json) {
    fields.push_back({name, json});
  };
  add("trials", std::to_string(r.trials));
  add("passed", std::to_string(r.passed));
  add("yield", JsonDouble(r.yield));
  add("yield_ci95", "[" + JsonDouble(r.yieldLow) + ", " + JsonDouble(r.yieldHigh) + "]");
  add("values", JsonString(values));
  add("ctol", JsonDouble(s.ctolPercent));
  add("ltol", JsonDouble(s.ltolPercent));
  add("distribution", JsonString(DistributionWord(s.distribution)));
  add("seed", std::to_string(s.seed));
  add("nominal_passes", r.nominalPasses ? "true" : "false");

  std::string stops = "[";
  for (size_t i = 0; i < s.mask.stops.size(); ++i)
    stops += (i ? ", " : "") +
             ("{\"frequency\": " + JsonDouble(s.mask.stops[i].frequency) +
              ", \"depth\": " + JsonDouble(s.mask.stops[i].depth) +
              (s.mask.stops[i].below ? ", \"below\": true" : "") +
              (s.mask.stops[i].to > 0 ? ", \"to\": " + JsonDouble(s.mask.stops[i].to) : "") + "}");
  // A band's other edge only where there is one, so a lowpass's mask reads as before.
  const double otherEdge = s.mask.passStart > 0 ? s.mask.passStart : s.mask.passResume;
  add("mask", "{\"pass_edge\": " + JsonDouble(s.mask.passEdge) +
                  (otherEdge > 0 ? std::string(s.mask.passStart > 0 ? ", \"pass_start\": "
                                                                    : ", \"pass_resume\": ") +
                                       JsonDouble(otherEdge)
                                 : "") +
                  ", \"pass_rl\": " + (s.mask.passRl ? JsonDouble(*s.mask.passRl) : "null") +
                  ", \"pass_il\": " + (s.mask.passIl ? JsonDouble(*s.mask.passIl) : "null") +
                  ", \"stop\": " + stops + "]}");

  std::string failures = "{", checks = "[";
  for (size_t i = 0; i < r.checks.size(); ++i) {
    const CheckOutcome& c = r.checks[i];
    const std::string sep = i ? ", " : "";
    failures += sep + JsonString(c.check.key) + ": " + std::to_string(c.failures);
    checks += sep + "{\"key\": " + JsonString(c.check.key) +
              ", \"name\": " + JsonString(c.check.name) +
              ", \"failures\": " + std::to_string(c.failures) +
              ", \"points\": " + std::to_string(c.check.Points()) +
              ", \"nominal_holds\": " + (c.nominalHolds ? "true" : "false") + "}";
  }
  add("failures", failures + "}");
  add("checks", checks + "]");

  add("envelope", "{\"Freq\": " + JsonFloats(r.freq) +
                      ",\n    \"Transmission_min\": " + JsonFloats(r.transmissionMin) +
                      ",\n    \"Transmission_max\": " + JsonFloats(r.transmissionMax) +
                      ",\n    \"Reflection_min\": " + JsonFloats(r.reflectionMin) +
                      ",\n    \"Reflection_max\": " + JsonFloats(r.reflectionMax) + "}");
  add("nominal", "{\"Transmission\": " + JsonFloats(r.nominalTransmission) +
                     ",\n    \"Reflection\": " + JsonFloats(r.nominalReflection) +
                     ",\n    \"worst_return_loss\": " + JsonReal(r.nominalReturnLoss) +
                     ", \"worst_stop_attenuation\": " + JsonReal(r.nominalStopAttenuation) + "}");
  add("histograms",
      "{\"worst_return_loss\": " + JsonHistogram(MakeHistogram(r.worstReturnLoss, 30)) +
          ", \"worst_stop_attenuation\": " +
          JsonHistogram(MakeHistogram(r.worstStopAttenuation, 30)) + "}");

  std::string parts = "[";
  for (size_t i = 0; i < r.sensitivity.size(); ++i) {
    const PartSensitivity& p = r.sensitivity[i];
    parts += (i ? ",\n    " : "") +
             ("{\"position\": " + std::to_string(p.part.position) + ", \"part\": " +
              (p.part.capacitor ? "\"C\"" : "\"L\"") + ", \"value\": " + JsonDouble(p.part.value) +
              ", \"tolerance\": " + JsonDouble(p.part.tolerance) +
              ", \"tightened_to\": " + JsonDouble(p.tightenedTo) +
              ", \"passed\": " + std::to_string(p.passed) + ", \"yield\": " + JsonDouble(p.yield) +
              ", \"yield_gain\": " + JsonDouble(p.yield - r.yield) + "}");
  }
  add("sensitivity", parts + "]");

  out << "{";
  for (size_t i = 0; i < fields.size(); ++i)
    out << (i ? ",\n  " : "\n  ") << JsonString(fields[i].first) << ": " << fields[i].second;
  out << "\n}\n";
}

std::string Db(double db) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f dB", db);
  return text;
}

std::string Padded(std::string text, size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text + " ";
}

// What the nominal design does against the mask: the checks it fails with
// its own figure at each, or, when it passes, its figures for the kinds of
// check the mask sets (the return loss when it sets none).
std::string NominalVerdict(const Mask& mask, const ToleranceResult& r) {
  std::string failed;
  for (const CheckOutcome& c : r.checks)
    if (!c.nominalHolds)
      failed += (failed.empty() ? "" : "; ") + c.check.name + " (it has " + Db(c.nominalDb) + ")";
  if (!failed.empty()) return "fails " + failed;
  std::string figures;
  auto add = [&](const char* what, double db) {
    if (std::isfinite(db)) figures += (figures.empty() ? "" : ", ") + std::string(what) + Db(db);
  };
  if (mask.passRl || (!mask.passIl && mask.stops.empty())) add("return loss ", r.nominalReturnLoss);
  if (mask.passIl) add("loss ", r.nominalLoss);
  if (!mask.stops.empty()) add("stopband attenuation ", r.nominalStopAttenuation);
  return "passes" + (figures.empty() ? "" : " (" + figures + ")");
}

void WriteSummary(const DesignRecord& d, const ToleranceSetup& s, const ToleranceResult& r,
                  const std::string& values, std::ostream& out) {
  out << "Tolerance analysis: " << DesignHeading(d) << ", " << values << " values\n";
  out << "Parts: capacitors +-" << s.ctolPercent << "%, inductors +-" << s.ltolPercent << "%, "
      << DistributionWord(s.distribution) << "; " << r.trials << " trials, seed " << s.seed << "\n";
  out << "Mask:";
  for (const CheckOutcome& c : r.checks)
    out << (&c == &r.checks.front() ? " " : "; ") << c.check.name;
  out << (r.checks.empty() ? " none\n" : "\n");
  out << "Nominal design: " << NominalVerdict(s.mask, r) << "\n\n";
  out << "Yield: " << YieldText(r) << ", " << IntervalText(r) << "\n\n";

  out << "Failures per check:\n";
  for (const CheckOutcome& c : r.checks) {
    out << "  " << Padded(c.check.name, 36) << c.failures;
    if (c.check.Points() == 0) out << "  (no sweep point lies there)";
    out << "\n";
  }
  if (r.sensitivity.empty()) return;
  out << "\nSensitivity: the yield with one part " << TightenedText(r.sensitivity.front())
      << ", the others as they are\n";
  out << "  " << Padded("Part", 6) << Padded("Value", 10) << Padded("Tol", 6) << Padded("Yield", 8)
      << "Gain\n";
  for (const PartSensitivity& p : r.sensitivity)
    out << "  " << Padded(p.part.Name(), 6) << Padded(PartValueText(p.part), 10)
        << Padded(ToleranceText(p.part.tolerance), 6) << Padded(PercentText(p.yield), 8)
        << GainText(p, r) << "\n";
  out << "\n" << SensitivitySentence(r) << "\n";
}

}  // namespace

std::optional<Mask> GivenMask(const ToleranceOptions& t, const ToleranceDesign& d) {
  if (!t.passRl && !t.passIl && t.stops.empty()) return std::nullopt;
  Mask mask;
  mask.passEdge = t.passEdge.value_or(d.cutoff);
  // A band design's passband: between its edges (a bandpass), or below
  // the lower and above the upper (a bandstop).
  if (d.band && d.bandstop) mask.passEdge = t.passEdge.value_or(d.f1), mask.passResume = d.f2;
  if (d.band && !d.bandstop) mask.passEdge = t.passEdge.value_or(d.f2), mask.passStart = d.f1;
  // Two edges given: the band the mask says, not the design's own.
  if (t.passEdgeUpper && d.band && d.bandstop)
    mask.passEdge = *t.passEdge, mask.passResume = *t.passEdgeUpper;
  if (t.passEdgeUpper && d.band && !d.bandstop)
    mask.passStart = *t.passEdge, mask.passEdge = *t.passEdgeUpper;
  mask.passRl = t.passRl;
  mask.passIl = t.passIl;
  mask.stops = t.stops;
  return mask;
}

bool IsToleranceOption(const std::string& name) {
  for (const char* option : {"--ctol", "--ltol", "--dist", "--trials", "--seed", "--pass-edge",
                             "--pass-rl", "--pass-il", "--stop", "--stop-below", "--tighten"})
    if (name == option) return true;
  return false;
}

void ParseToleranceOption(const std::string& name, const std::string& value, ToleranceOptions& o) {
  if (name == "--ctol") {
    o.ctol = Percent(name, value);
  } else if (name == "--ltol") {
    o.ltol = Percent(name, value);
  } else if (name == "--tighten") {
    o.tighten = Percent(name, value);
  } else if (name == "--dist") {
    if (value == "uniform") {
      o.distribution = Distribution::Uniform;
    } else if (value == "normal") {
      o.distribution = Distribution::Normal;
    } else {
      Bad(name, "uniform or normal", value);
    }
  } else if (name == "--trials") {
    o.trials = static_cast<int>(ReadCount(name, value, 1, kMaxTrials));
  } else if (name == "--seed") {
    o.seed = ReadCount(name, value, 0, std::numeric_limits<uint64_t>::max());
  } else if (name == "--pass-edge") {
    // A band design's two edges come as two: lower, then upper.
    if (o.passEdgeUpper) throw UsageError(name + ": at most two, a band's lower and upper edge");
    (o.passEdge ? o.passEdgeUpper : o.passEdge) = Frequency(name, value);
  } else if (name == "--pass-rl") {
    o.passRl = Decibels(name, value);
  } else if (name == "--pass-il") {
    o.passIl = Decibels(name, value);
  } else if (name == "--stop" || name == "--stop-below") {
    // FREQ:DB, or for --stop FROM:TO:DB, a bandstop's notch between two
    // frequencies.
    const size_t colon = value.find(':'), last = value.rfind(':');
    const bool notch = name == "--stop" && last != colon;
    if (colon == std::string::npos || (last != colon && !notch))
      Bad(name,
          name == "--stop" ? "FREQ:DB or FROM:TO:DB such as 14M:40" : "FREQ:DB such as 14M:40",
          value);
    o.stops.push_back(
        {.frequency = Frequency(name, value.substr(0, colon)),
         .depth = Decibels(name, value.substr(last + 1)),
         .below = name == "--stop-below",
         .to = notch ? Frequency(name, value.substr(colon + 1, last - colon - 1)) : 0.0});
  }
}

int RunToleranceCommand(const CliOptions& o, const DesignResult& design,
                        const std::string& valuesTitle, std::ostream& out, std::ostream& err,
                        bool progress) {
  const ToleranceDesign d = ToleranceDesignOf(design.chosen);
  const ToleranceOptions& t = o.tolerance;
  ToleranceSetup s;
  s.ctolPercent = t.ctol.value_or(s.ctolPercent);
  s.ltolPercent = t.ltol.value_or(s.ltolPercent);
  s.tightenPercent = t.tighten.value_or(s.tightenPercent);
  s.distribution = t.distribution.value_or(s.distribution);
  s.trials = t.trials.value_or(s.trials);
  s.seed = t.seed.value_or(s.seed);
  if (t.passEdgeUpper && !d.band) {
    err << "drenik: --pass-edge: a lowpass or highpass design takes one (see drenik --help)\n";
    return 2;
  }
  if (std::optional<Mask> given = GivenMask(t, d)) {
    s.mask = *given;
  } else {
    std::string none;
    s.mask = DefaultMask(d, t.passEdge.value_or(0), &none);
    if (!none.empty()) {
      err << "drenik: " << none << " Give it with --pass-rl, --pass-il or --stop.\n";
      return 2;
    }
  }

  if (const std::string fault = MaskFault(s.mask, d.highpass); !fault.empty()) {
    err << "drenik: " << fault << " (see drenik --help)\n";
    return 2;
  }
  ToleranceResult r;
  EngineReport report;
  {
    ProgressLine line(err, progress, "tolerance", s.trials);
    report = RunTolerance(d, s, r, [&line](double done) { return line.Continue(done); });
  }
  if (!report.Ok()) {
    err << "drenik: " << report.fault << "\n";
    return 2;
  }
  if (o.json)
    WriteJson(s, r, valuesTitle, out);
  else
    WriteSummary(design.chosen, s, r, valuesTitle, out);
  return 0;
}

}  // namespace drenik::cli
