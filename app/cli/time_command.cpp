#include "cli/time_command.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "cli/json_output.h"
#include "cli/number_reader.h"
#include "core/atomic_file.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "pages/design_heading.h"
#include "pages/time_page.h"
#include "timeplot/time_charts.h"

namespace drenik::cli {

namespace {

// Enough points for any drawing, few enough for a JSON array.
constexpr int kMaxPoints = 100000;

[[noreturn]] void Bad(const std::string& name, const std::string& expected,
                      const std::string& text) {
  throw UsageError(name + ": expected " + expected + ", got '" + text + "'");
}

std::string JsonArray(const std::vector<double>& values) {
  std::string out = "[";
  for (size_t i = 0; i < values.size(); ++i) out += (i ? ", " : "") + JsonNumber(values[i]);
  return out + "]";
}

void WriteJson(const TimeResponse& r, const std::string& values, std::ostream& out) {
  const TimeFigures& f = r.figures;
  out << "{\n  \"values\": " << JsonString(values) << ",\n  \"initial\": " << JsonNumber(r.initial)
      << ",\n  \"final\": " << JsonNumber(r.final)
      << ",\n  \"overshoot_pct\": " << JsonNumber(f.overshootPct)
      << ",\n  \"rise_10_90\": " << JsonNumber(f.rise1090)
      << ",\n  \"delay_50\": " << JsonNumber(f.delay50)
      << ",\n  \"settling_1pct\": " << JsonNumber(f.settling1pct)
      << ",\n  \"settling_01pct\": " << JsonNumber(f.settling01pct)
      << ",\n  \"peak_time\": " << JsonNumber(f.peakTime) << ",\n  \"t\": " << JsonArray(r.t)
      << ",\n  \"step\": " << JsonArray(r.step) << ",\n  \"impulse\": " << JsonArray(r.impulse)
      << "\n}\n";
}

void WriteSummary(const DesignRecord& d, const TimeResponse& r, const std::string& values,
                  std::ostream& out) {
  const TimeFigures& f = r.figures;
  char level[64];
  std::snprintf(level, sizeof level, "%.4f to %.4f", r.initial, r.final);
  out << "Time response: " << DesignHeading(d) << ", " << values << " values\n"
      << "Step (the voltage a matched load would get): " << level << "\n";
  char pct[32];
  std::snprintf(pct, sizeof pct, "%.3f %%", f.overshootPct);
  const std::pair<const char*, std::string> rows[] = {
      {"Overshoot", std::isfinite(f.overshootPct) ? pct : "-"},
      {"Rise time 10-90 %", SecondsText(f.rise1090)},
      {"Delay to 50 %", SecondsText(f.delay50)},
      {"Settling to 1 %", SecondsText(f.settling1pct)},
      {"Settling to 0.1 %", SecondsText(f.settling01pct)},
      {"Peak time", SecondsText(f.peakTime)}};
  for (const auto& [name, value] : rows) {
    std::string padded = name;
    padded.resize(20, ' ');
    out << "  " << padded << value << "\n";
  }
  out << "Span " << SecondsText(r.t.back()) << ", " << r.t.size() << " points\n";
}

bool WriteCsv(const TimeResponse& r, const std::string& path, std::string& error) {
  AtomicFile file(path);
  if (file.IsOpen()) {
    file.Line("t,step,impulse");
    for (size_t n = 0; n < r.t.size(); ++n)
      file.Line(RoundTripText(r.t[n]) + "," + RoundTripText(r.step[n]) + "," +
                RoundTripText(r.impulse[n]));
    if (file.Commit()) return true;
  }
  error = file.ErrorText();
  return false;
}

}  // namespace

bool IsTimeOption(const std::string& name) {
  return name == "--span" || name == "--points";
}

void ParseTimeOption(const std::string& name, const std::string& value, TimeOptions& o) {
  if (name == "--span") {
    const char* expected = "a time in seconds above 0, such as 2e-6";
    const double s = ReadNumber(name, value);
    if (!(s > 0)) Bad(name, expected, value);
    o.span = s;
  } else if (name == "--points") {
    o.points = static_cast<int>(ReadCount(name, value, 2, kMaxPoints));
  }
}

TimeRequest TimeRequestOf(const DesignRecord& d, const TimeOptions& o) {
  TimeRequest r;
  r.ladder = LadderOf(d);
  // A band design's losses are taken at its centre (where the Q law's
  // reference is), and the carrier switched on at 0 is the centre frequency:
  // the step shows its envelope. Lowpass and highpass have no carrier.
  r.lossFrequency = r.ladder.qReference;
  r.carrier = d.Center;
  r.span = o.span.value_or(0);
  r.points = o.points;
  return r;
}

int RunTimeCommand(const CliOptions& o, const DesignResult& design, const std::string& valuesTitle,
                   std::ostream& out, std::ostream& err) {
  const TimeResponse r = ComputeTimeResponse(TimeRequestOf(design.chosen, o.time));
  if (!r.fault.empty()) {
    err << "drenik: " << r.fault << "\n";
    return 2;
  }
  if (o.json)
    WriteJson(r, valuesTitle, out);
  else
    WriteSummary(design.chosen, r, valuesTitle, out);
  if (o.time.csvFile.empty()) return 0;
  std::string error;
  if (WriteCsv(r, o.time.csvFile, error)) return 0;
  std::string file = o.time.csvFile;
  for (char& c : file)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
  err << "drenik: could not write " << file << (error.empty() ? "" : ": " + error) << "\n";
  return 1;
}

}  // namespace drenik::cli
