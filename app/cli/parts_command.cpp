#include "cli/parts_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "cli/json_output.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "cli/table_output.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "parts/parts_list.h"
#include "synthesis/families.h"

namespace drenik::cli {
namespace {

std::string SeriesWords(const char* separator) {
  std::string words;
  for (const ESeriesInfo& s : kESeries)
    words += (words.empty() ? "" : separator) + std::string(s.name);
  return words;
}

ESeries Series(const std::string& option, const std::string& value) {
  if (std::optional<ESeries> s = ESeriesNamed(value)) return *s;
  throw UsageError(option + ": expected " + SeriesWords(", ") + ", got '" + value + "'");
}

std::string Padded(const std::string& s, size_t width) {
  return s.size() >= width ? s + " " : s + std::string(width - s.size(), ' ');
}

std::string Fixed(double v, const char* format = "%.2f") {
  if (std::isnan(v)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

std::string Capacitors(const std::vector<double>& parts) {
  std::string text;
  for (double c : parts) text += (text.empty() ? "" : " + ") + TrimBlanks(FormatCapacitance(c));
  return text;
}

std::string RequestText(const PartsRequest& r) {
  return std::string("capacitors ") + InfoOf(r.capacitors).name +
         (r.pairs ? " (one or two in parallel)" : "") + ", inductors " +
         (r.inductors ? InfoOf(*r.inductors).name : "wound to value");
}

void WriteTable(const DesignResult& r, const PartsChoice& choice, std::ostream& out) {
  const DesignRecord& d = r.chosen;
  const Bands bands = BandsOf(r.exact);
  out << d.ProgramTitle << " " << d.Version << "\n";
  out << FamilyName(d.Family) << ", order " << d.Order << ", " << d.Topology << ", cutoff "
      << TrimBlanks(FormatFrequency(d.Width)) << "\n";
  out << "Chosen parts: " << RequestText(choice.request) << "\n\n";
  out << Padded("Pos", 5) << Padded("Element", 20) << Padded("Part", 6) << Padded("Exact", 13)
      << Padded("Chosen", 24) << "Error %\n";
  for (const PositionParts& p : choice.positions) {
    bool first = true;
    auto line = [&](const char* part, float exact, const std::string& chosen, double value) {
      char pos[16];
      std::snprintf(pos, sizeof pos, "%3d", p.position);
      out << Padded(first ? pos : "", 5) << Padded(first ? ElementKindName(CodeOf(p.kind)) : "", 20)
          << Padded(part, 6)
          << Padded(TrimBlanks(part[0] == 'L' ? FormatInductance(exact) : FormatCapacitance(exact)),
                    13)
          << Padded(chosen, 24) << Fixed(ErrorPercent(value, exact), "%+.2f") << "\n";
      first = false;
    };
    if (!p.capacitors.empty()) line("C", p.exactC, Capacitors(p.capacitors), p.C);
    if (p.inductor > 0) line("L", p.exactL, TrimBlanks(FormatInductance(p.inductor)), p.L);
  }
  const auto hz = [](double f) { return TrimBlanks(FormatFrequency(f)); };
  if (bands.band && bands.bandstop)
    out << "\nWorst return loss up to " << hz(bands.f1) << " and from " << hz(bands.f2)
        << ", least attenuation from " << hz(bands.stopLow) << " to " << hz(bands.stopHigh)
        << ":\n";
  else if (bands.band)
    out << "\nWorst return loss from " << hz(bands.f1) << " to " << hz(bands.f2)
        << ", least attenuation up to " << hz(bands.stopLow) << " and from " << hz(bands.stopHigh)
        << ":\n";
  else
    out << "\nWorst return loss " << (bands.highpass ? "from " : "up to ") << hz(bands.cutoff)
        << ", least attenuation " << (bands.highpass ? "at and below " : "at and beyond ")
        << hz(bands.stopEdge) << ":\n";
  out << "  " << Padded("", 16) << Padded("Return, dB", 12) << "Stopband, dB\n";
  const std::pair<const char*, const Figures*> rows[] = {{"Exact values", &choice.exact},
                                                         {"5% C values", &choice.standard},
                                                         {"Chosen parts", &choice.chosen}};
  for (const auto& [name, f] : rows)
    out << "  " << Padded(name, 16) << Padded(Fixed(f->returnLoss), 12) << Fixed(f->stopband)
        << "\n";
  if (choice.keptStandard) out << "The 5% C values are kept: no set of these parts does better.\n";
}

std::string Real(double v) {
  return std::isfinite(v) ? RoundTripText(v) : "null";
}

std::string List(const std::vector<double>& values) {
  std::string text = "[";
  for (double v : values) text += (text.size() > 1 ? ", " : "") + Real(v);
  return text + "]";
}

std::string FloatList(const float* values, size_t count) {
  std::string text = "[";
  for (size_t i = 0; i < count; ++i) text += (i ? ", " : "") + JsonReal(values[i]);
  return text + "]";
}

std::string FiguresJson(const Figures& f) {
  return "{\"returnLoss\": " + Real(f.returnLoss) + ", \"stopband\": " + Real(f.stopband) + "}";
}

void WriteJson(const DesignResult& r, const PartsChoice& choice, std::ostream& out) {
  const DesignRecord& d = r.chosen;
  const PartsRequest& q = choice.request;
  out << "{\n  \"cseries\": " << JsonString(InfoOf(q.capacitors).name)
      << ",\n  \"lseries\": " << JsonString(q.inductors ? InfoOf(*q.inductors).name : "exact")
      << ",\n  \"pairs\": " << (q.pairs ? "true" : "false") << ",\n  \"Stages\": " << d.Stages
      << ",\n  \"L\": " << FloatList(d.L.data(), d.L.size())
      << ",\n  \"C\": " << FloatList(d.C.data(), d.C.size()) << ",\n  \"parts\": [";
  for (const PositionParts& p : choice.positions) {
    out << (p.position > 1 ? ",\n    " : "\n    ") << "{\"position\": " << p.position
        << ", \"C\": " << List(p.capacitors) << ", \"L\": "
        << List(p.inductor > 0 ? std::vector<double>{p.inductor} : std::vector<double>{})
        << ", \"errorC\": " << Real(ErrorPercent(p.C, p.exactC))
        << ", \"errorL\": " << Real(ErrorPercent(p.L, p.exactL)) << "}";
  }
  const size_t points = std::clamp<int>(d.NrIntervals + 1, 0, kSweepSlots);
  out << "\n  ],\n  \"Freq\": " << FloatList(d.Freq.data(), points)
      << ",\n  \"Transmission\": " << FloatList(d.Transmission.data(), points)
      << ",\n  \"Reflection\": " << FloatList(d.Reflection.data(), points)
      << ",\n  \"figures\": {\"exact\": " << FiguresJson(choice.exact)
      << ", \"standard\": " << FiguresJson(choice.standard)
      << ", \"chosen\": " << FiguresJson(choice.chosen)
      << "},\n  \"keptStandard\": " << (choice.keptStandard ? "true" : "false") << "\n}\n";
}

}  // namespace

bool ParsePartsOption(const std::string& name, const std::function<std::string()>& value,
                      bool partsCommand, PartsOptions& parts) {
  if (name != "--cseries" && name != "--lseries" && name != "--pairs" && name != "--bom")
    return false;
  if (!partsCommand) throw UsageError(name + ": only for 'parts'");
  if (name == "--cseries") {
    parts.request.capacitors = Series(name, value());
  } else if (name == "--lseries") {
    const std::string v = value();
    parts.request.inductors = v == "exact" ? std::nullopt : std::optional(Series(name, v));
  } else if (name == "--pairs") {
    parts.request.pairs = true;
  } else {
    parts.bom = value();
    if (parts.bom.empty()) throw UsageError(name + ": needs a file name");
  }
  return true;
}

std::string PartsUsageText() {
  return "usage:\n"
         "  drenik parts [choices] [--cseries " +
         SeriesWords("|") + "] [--lseries exact|" + SeriesWords("|") +
         "]\n"
         "               [--pairs] [--json] [--bom FILE]\n"
         "Stock parts for the design that keep its response: capacitors from the series\n"
         "(default E24), with --pairs also two in parallel; inductors wound to value\n"
         "(exact, default) or from a series. --bom writes the parts list (CSV).\n"
         "choices as for 'drenik design' (see drenik --help)\n";
}

int WriteParts(const CliOptions& o, const DesignResult& r, ConsolePlatform& platform,
               std::ostream& out, std::ostream& err) {
  const PartsChoice& choice = *r.parts;
  if (o.json) {
    WriteJson(r, choice, out);
  } else {
    WriteTable(r, choice, out);
  }
  if (o.parts.bom.empty()) return 0;
  platform.messages.clear();
  if (WritePartsList(choice, o.parts.bom, platform)) return 0;
  err << "drenik: could not write " << o.parts.bom;
  for (const std::string& m : platform.messages) err << ": " << m;
  err << "\n";
  return 1;
}

}  // namespace drenik::cli
