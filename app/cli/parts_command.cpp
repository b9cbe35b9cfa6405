#include "cli/parts_command.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "cli/json_output.h"
#include "cli/messages.h"
#include "cli/number_reader.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "cli/stress_command.h"
#include "cli/table_output.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "pages/design_heading.h"
#include "parts/parts_list.h"
#include "stress/ratings.h"
#include "stress/stress_text.h"
#include "synthesis/families.h"

namespace drenik::cli {
namespace {

std::string SeriesWords(const char* separator) {
  std::string words;
  for (const ESeriesInfo& s : kESeries)
    words += (words.empty() ? "" : separator) + std::string(s.name);
  return words;
}

ESeries Series(const std::string& option, const std::string& value, const char* words) {
  if (std::optional<ESeries> s = ESeriesNamed(value)) return *s;
  throw UsageError(option + ": expected " + words + SeriesWords(", ") + ", got '" + value + "'");
}

bool IsExact(std::string v) {
  for (char& c : v) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return v == "exact";
}

}  // namespace

std::string CoreWords() {
  std::string words;
  for (const ToroidCore& c : ToroidCores())
    words += (words.empty() ? "" : ", ") + std::string(c.name);
  return words;
}

namespace {

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
         (r.former ? "in whole turns on " + r.former->Name()
                   : (r.inductors ? InfoOf(*r.inductors).name : "wound to value"));
}

// What each part must take at the power asked for.
void WriteRatings(const DesignRecord& d, const StressResult& stress, const StressRequest& q,
                  std::ostream& out) {
  out << "\nRatings: " << StressConditions(stress, q, d.Rsource) << ", " << BandsText(stress)
      << "\n(a capacitor is rated at least " << kVoltageDerating
      << " times its peak voltage, at the next standard rating)\n";
  for (const PartStress& s : stress.parts) {
    out << "  " << Padded(s.name, 6) << Padded(PartValueText(s), 13);
    if (s.part.type == PartType::Capacitor)
      out << VoltsText(s.VPeak()) << " V peak, rated " << RatingText(s.VPeak()) << "\n";
    else
      out << AmpsText(s.i.value) << " A RMS\n";
  }
}

std::string RatingsJson(const StressResult& stress, const StressRequest& q) {
  std::string text = ",\n  \"power\": " + RoundTripText(q.power) +
                     ", \"vswr\": " + RoundTripText(q.vswr) + ", \"ratings\": [";
  for (size_t k = 0; k < stress.parts.size(); ++k) {
    const PartStress& s = stress.parts[k];
    text += (k ? ",\n    " : "\n    ") + std::string("{\"name\": ") + JsonString(s.name);
    if (s.part.type == PartType::Capacitor)
      text += ", \"v_peak\": " + RoundTripText(s.VPeak()) +
              ", \"rating\": " + RoundTripText(CapacitorRating(s.VPeak())) + "}";
    else
      text += ", \"i_rms\": " + RoundTripText(s.i.value) + "}";
  }
  return text + "\n  ]";
}

void WriteTable(const DesignResult& r, const PartsChoice& choice, std::ostream& out) {
  const DesignRecord& d = r.chosen;
  const Bands bands = BandsOf(r.exact);
  out << d.ProgramTitle << " " << d.Version << "\n";
  out << FamilyName(d.Family) << ", order " << d.Order << ", " << d.Topology << FrequencyHeading(d)
      << "\n";
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
    if (p.inductor > 0)
      line("L", p.exactL,
           TrimBlanks(FormatInductance(p.inductor)) +
               (p.turns ? " (" + std::to_string(p.turns) + " turns)" : ""),
           p.L);
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
                                                         {"Nearest values", &choice.rounded},
                                                         {"Chosen parts", &choice.chosen}};
  for (const auto& [name, f] : rows)
    out << "  " << Padded(name, 16) << Padded(Fixed(f->returnLoss), 12) << Fixed(f->stopband)
        << "\n";
  if (choice.keptStandard) out << "The 5% C values are kept: no set of these parts does better.\n";
  if (choice.keptRounded)
    out << "The nearest values are kept: no set of these parts does better.\n";
  if (!choice.note.empty()) out << choice.note << "\n";
}

std::string List(const std::vector<double>& values) {
  std::string text = "[";
  for (double v : values) text += (text.size() > 1 ? ", " : "") + JsonNumber(v);
  return text + "]";
}

std::string FloatList(const float* values, size_t count) {
  std::string text = "[";
  for (size_t i = 0; i < count; ++i) text += (i ? ", " : "") + JsonReal(values[i]);
  return text + "]";
}

std::string FiguresJson(const Figures& f) {
  return "{\"returnLoss\": " + JsonNumber(f.returnLoss) +
         ", \"stopband\": " + JsonNumber(f.stopband) + "}";
}

void WriteJson(const DesignResult& r, const PartsChoice& choice, const std::string& ratings,
               std::ostream& out) {
  const DesignRecord& d = r.chosen;
  const PartsRequest& q = choice.request;
  out << "{\n  \"cseries\": " << JsonString(InfoOf(q.capacitors).name) << ",\n  \"lseries\": "
      << JsonString(q.former ? q.former->Name()
                             : (q.inductors ? InfoOf(*q.inductors).name : "exact"))
      << ",\n  \"pairs\": " << (q.pairs ? "true" : "false") << ",\n  \"Stages\": " << d.Stages
      << ",\n  \"L\": " << FloatList(d.L.data(), ReportedComponentCount(d))
      << ",\n  \"C\": " << FloatList(d.C.data(), ReportedComponentCount(d)) << ",\n  \"parts\": [";
  for (const PositionParts& p : choice.positions) {
    out << (p.position > 1 ? ",\n    " : "\n    ") << "{\"position\": " << p.position
        << ", \"C\": " << List(p.capacitors) << ", \"L\": "
        << List(p.inductor > 0 ? std::vector<double>{p.inductor} : std::vector<double>{})
        << ", \"errorC\": " << JsonNumber(ErrorPercent(p.C, p.exactC))
        << ", \"errorL\": " << JsonNumber(ErrorPercent(p.L, p.exactL))
        << (q.former ? ", \"turns\": " + std::to_string(p.turns) : "") << "}";
  }
  const size_t points = std::clamp<int>(d.NrIntervals + 1, 0, kSweepSlots);
  out << "\n  ],\n  \"Freq\": " << FloatList(d.Freq.data(), points)
      << ",\n  \"Transmission\": " << FloatList(d.Transmission.data(), points)
      << ",\n  \"Reflection\": " << FloatList(d.Reflection.data(), points)
      << ",\n  \"figures\": {\"exact\": " << FiguresJson(choice.exact)
      << ", \"standard\": " << FiguresJson(choice.standard)
      << ", \"rounded\": " << FiguresJson(choice.rounded)
      << ", \"chosen\": " << FiguresJson(choice.chosen)
      << "},\n  \"keptStandard\": " << (choice.keptStandard ? "true" : "false")
      << ",\n  \"keptRounded\": " << (choice.keptRounded ? "true" : "false")
      << ",\n  \"note\": " << JsonString(choice.note) << ratings << "\n}\n";
}

}  // namespace

std::optional<Former> AirCoreOption(const std::string& name, const std::string& v) {
  // Both sizes are numbers as every other option reads them (no hex, no nan).
  const size_t colon = v.find(':');
  if (colon != std::string::npos) {
    const double form = ReadNumber(name, v.substr(0, colon));
    const double wire = ReadNumber(name, v.substr(colon + 1));
    char text[64];
    std::snprintf(text, sizeof text, "%.17g:%.17g", form, wire);
    if (std::optional<Former> f = AirCoreNamed(text)) return f;
  }
  throw UsageError(name +
                   ": expected FORM_MM:WIRE_MM, both above 0 and at most 1000 (e.g. 6:0.8), got '" +
                   v + "'");
}

std::optional<Former> CoreOption(const std::string& name, const std::string& v) {
  if (std::optional<Former> f = CoreNamed(v)) return f;
  throw UsageError(name + ": expected a core (" + CoreWords() + "), got '" + v + "'");
}

bool ParsePartsOption(const std::string& name, const std::function<std::string()>& value,
                      bool partsCommand, PartsOptions& parts) {
  if (name != "--cseries" && name != "--lseries" && name != "--pairs" && name != "--bom" &&
      name != "--air-core")
    return false;
  if (!partsCommand) throw UsageError(name + ": only for 'parts'");
  if (name == "--cseries") {
    parts.request.capacitors = Series(name, value(), "");
  } else if (name == "--air-core") {
    parts.request.former = AirCoreOption(name, value());
    parts.request.inductors.reset();
  } else if (name == "--lseries") {
    // An E series, or a toroid core whose whole turns make the series.
    const std::string v = value();
    parts.request.former.reset();
    if (IsExact(v)) {
      parts.request.inductors.reset();
    } else if (std::optional<ESeries> e = ESeriesNamed(v)) {
      parts.request.inductors = e;
    } else if (std::optional<Former> f = CoreNamed(v)) {
      parts.request.inductors.reset();
      parts.request.former = f;
    } else {
      throw UsageError(name + ": expected exact, " + SeriesWords(", ") + " or a core (" +
                       CoreWords() + "), got '" + v + "'");
    }
  } else if (name == "--pairs") {
    parts.request.pairs = true;
  } else {
    // A second list would drop the first.
    if (!parts.bom.empty()) throw UsageError(name + ": given twice; one file each");
    parts.bom = value();
    if (parts.bom.empty()) throw UsageError(name + ": needs a file name");
  }
  return true;
}

std::string PartsUsageText() {
  return "usage:\n"
         "  drenik parts [choices] [--cseries " +
         SeriesWords("|") + "] [--lseries exact|" + SeriesWords("|") +
         "|CORE]\n"
         "               [--air-core FORM_MM:WIRE_MM]\n"
         "               [--pairs] [--json] [--bom FILE] [--quiet]\n"
         "Stock parts for the design that keep its response: capacitors from the series\n"
         "(default E24), with --pairs also two in parallel; inductors wound to value\n"
         "(exact, default), from a series, or in whole turns on a toroid core\n"
         "(--lseries T50-2) or an air-core form (--air-core 6:0.8, mm).\n"
         "--bom writes the parts list (CSV). A long search shows its progress on a\n"
         "terminal; --quiet turns that off.\n"
         "choices as for 'drenik design' (see drenik --help)\n"
         "  [--power W [--vswr S]]  rates the parts at a transmit power (as drenik stress):\n"
         "                          each capacitor's voltage rating (the next standard one at\n"
         "                          or above twice its peak voltage) and each inductor's RMS\n"
         "                          current, in the list and the --bom file\n";
}

int WriteParts(const CliOptions& o, const DesignResult& r, ConsolePlatform& platform,
               std::ostream& out, std::ostream& err) {
  const PartsChoice& choice = *r.parts;
  // At a transmit power: the stress of the chosen parts, which the record
  // holds at this stage.
  std::optional<PartLoads> loads;
  std::string ratings;
  if (o.stress.power) {
    const StressRequest q = StressRequestOf(o.stress, "parts");
    const StressResult stress = AnalyzeStress(r.chosen, q);
    if (!stress.report.Ok()) {
      err << "drenik: " << Printable(stress.report.fault) << "\n";
      return 2;
    }
    loads = LoadsOf(stress);
    if (o.json) {
      ratings = RatingsJson(stress, q);
    } else {
      std::ostringstream text;
      WriteRatings(r.chosen, stress, q, text);
      ratings = text.str();
    }
  }
  if (o.json) {
    WriteJson(r, choice, ratings, out);
  } else {
    WriteTable(r, choice, out);
    out << ratings;
  }
  if (o.parts.bom.empty()) return 0;
  platform.messages.clear();
  if (WritePartsList(choice, o.parts.bom, platform, loads ? &*loads : nullptr)) return 0;
  CouldNotWrite(err, o.parts.bom, platform.messages);
  return 1;
}

}  // namespace drenik::cli
