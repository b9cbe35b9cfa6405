#include "cli/options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <string>

#include "cli/tolerance_command.h"
#include "core/formatters.h"
#include "core/last_session.h"
#include "export/formats.h"
#include "pages/design_choices.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik::cli {

namespace {

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

bool ParseInt(const std::string& text, int& value) {
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size();
}

// The registry's words joined by `separator`.
template <typename Table, typename Word>
std::string Words(const Table& table, Word word, const char* separator) {
  std::string out;
  for (const auto& row : table) out += (out.empty() ? "" : separator) + std::string(word(row));
  return out;
}

std::string FamilyWords(const char* separator) {
  return Words(
      Families(), [](const FamilyInfo& f) { return f.cliWord; }, separator);
}

// Each export option as `before` OPTION `after`, joined by `separator`.
std::string ExportWords(const char* before, const char* after, const char* separator) {
  return Words(
      ExportFormats(),
      [&](const ExportFormat& f) { return std::string(before) + f.option + after; }, separator);
}

// The commands, for the complaint about a missing or unknown one.
std::string CommandWords() {
  return "design, render, export, tolerance or parts";
}

std::string TopologyWords(const char* separator) {
  return Words(
      Topologies(), [](const TopologyInfo& t) { return t.name; }, separator);
}

std::string BandTopologyWords() {
  std::string out;
  for (const TopologyInfo& t : Topologies())
    if (t.band) out += (out.empty() ? "" : ", ") + std::string(t.name);
  return out;
}

// A frequency as the bandwidth box reads it, with the box's clamps.
float BoxValue(std::string text) {
  const float v = CheckEntry(text);
  return std::clamp(v, kBandwidthRange.low, kBandwidthRange.high);
}

std::string FamilyOption(const std::string& value) {
  for (const FamilyInfo& f : Families()) {
    if (Lower(value) == f.cliWord) return f.optionName;
  }
  throw UsageError("--family: unknown family '" + value + "' (" + FamilyWords(", ") + ")");
}

std::string Topology(const std::string& value) {
  for (const TopologyInfo& t : Topologies()) {
    if (Lower(value) == Lower(t.name)) return t.name;
  }
  throw UsageError("--topology: unknown topology '" + value + "' (" + TopologyWords(", ") + ")");
}

std::string RippleOption(const std::string& value) {
  char* end = nullptr;
  double r = std::strtod(value.c_str(), &end);
  if (end && *end == '\0' && !value.empty()) {
    if (r == 0.01) return "opt01";
    if (r == 0.044) return "opt044";
    if (r == 0.2) return "opt200";
  }
  throw UsageError("--ripple: expected 0.01, 0.044 or 0.2, got '" + value + "'");
}

std::string StopbandOption(const std::string& value) {
  int db = 0;
  if (ParseInt(value, db) && (db == 30 || db == 40 || db == 50 || db == 60)) {
    return "optAstop" + value;
  }
  throw UsageError("--stopband: expected 30, 40, 50 or 60, got '" + value + "'");
}

void ParseSize(const std::string& value, CliOptions& o) {
  size_t x = value.find_first_of("xX");
  int w = 0, h = 0;
  if (x == std::string::npos || !ParseInt(value.substr(0, x), w) ||
      !ParseInt(value.substr(x + 1), h) || w < 1 || h < 1 || w > 20000 || h > 20000) {
    throw UsageError("--size: expected WIDTHxHEIGHT in pixels, got '" + value + "'");
  }
  o.widthPx = w;
  o.heightPx = h;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && Lower(s.substr(s.size() - tail.size())) == tail;
}

// The band options belong to the band topologies; the band they give must
// lie above 0 Hz. The texts are read as the page reads its boxes.
void CheckBand(const Choices& ch) {
  const TopologyInfo* t = FindTopology(ch.topology.value_or(kDefaultTopology.name));
  const bool band = t && t->band;
  if (ch.center && !band)
    throw UsageError("--center: only for the band topologies (" + BandTopologyWords() + ")");
  if (!ch.center && band)
    throw UsageError("--center: required for the " + *ch.topology + " topology");
  if (ch.resonatorL && !(t && t->resonatorL))
    throw UsageError("--resonator-l: only for the Coupledbandpass topology");
  if (!band) return;
  const float center = BoxValue(*ch.center);
  DesignRecord firstStart;
  SetLastSessionDefaults(firstStart);
  const float width = ch.bandwidth ? BoxValue(*ch.bandwidth) : firstStart.Width;
  if (const std::string why = BandFault(center, width); !why.empty())
    throw UsageError("--center: " + why);
}

}  // namespace

std::string UsageText() {
  return std::string(
             "usage:\n"
             "  drenik design [choices] [--values exact|5c|5l] [--json]\n"
             "  drenik render [choices] [--values ...] (--png FILE | --svg FILE | --pdf FILE)"
             " [--size WxH]\n"
             "  drenik export [choices] [--values ...]") +
         ExportWords(" [--", " FILE]", "") + "\n" +
         "  drenik tolerance [choices] [--values ...] [--ctol PCT] [--ltol PCT]"
         " [--dist uniform|normal]\n"
         "                   [--trials N] [--seed N] [--pass-edge FREQ] [--pass-rl DB]"
         " [--pass-il DB]\n"
         "                   [--stop FREQ:DB]... [--tighten PCT] [--json]\n"
         "  drenik parts [choices] [--cseries SERIES] [--lseries exact|SERIES] [--pairs]"
         " [--json]\n"
         "               [--bom FILE]      (drenik parts --help)\n"
         "  drenik --help | --version\n"
         "choices (first-start defaults when left out):\n"
         "  --family " +
         FamilyWords("|") + "   (" + FindFamily(kDefaultFamily)->cliWord + ")\n" +
         "  --order 3..7                                         (5)\n"
         "  --topology " +
         TopologyWords("|") + "\n" +
         "  --ripple 0.01|0.044|0.2     passband ripple, dB       (0.044)\n"
         "  --stopband 30|40|50|60      stopband depth, dB, cauer (40)\n"
         "  --impedance 50|TEXT         ohms, typed into the Other box (50)\n"
         "  --bandwidth TEXT            cutoff, Hz, e.g. 4.2M     (4.2M)\n"
         "                              (a band topology: the band's width f2 - f1)\n"
         "  --center TEXT               geometric band centre, Hz, e.g. 7.15M\n"
         "                              (required for a band topology, for no other)\n"
         "  --resonator-l TEXT          coupled resonators' inductance, H, e.g. 1u\n"
         "                              (Coupledbandpass only; a practical one when left out)\n"
         "  --q inf|TEXT                inductor Q                (inf)\n"
         "--values: exact values, 5% capacitors with retuned inductors (5c, default),\n"
         "  or 5% capacitors and 5% inductors (5l)\n";
}

CliOptions ParseCommandLine(const std::vector<std::string>& args) {
  CliOptions o;
  if (args.empty()) throw UsageError("missing command (" + CommandWords() + ")");
  for (const std::string& a : args) {
    if (a == "--help" || a == "-h") {
      o.command = args[0] == "parts" ? Command::PartsHelp : Command::Help;
      return o;
    }
    if (a == "--version") {
      o.command = Command::Version;
      return o;
    }
  }
  const std::string& command = args[0];
  if (command == "parts") {
    o.command = Command::Parts;
  } else if (command == "design") {
    o.command = Command::Design;
  } else if (command == "render") {
    o.command = Command::Render;
  } else if (command == "export") {
    o.command = Command::Export;
  } else if (command == "tolerance") {
    o.command = Command::Tolerance;
  } else {
    throw UsageError("unknown command '" + command + "' (" + CommandWords() + ")");
  }

  for (size_t i = 1; i < args.size(); ++i) {
    const std::string& name = args[i];
    auto value = [&]() -> std::string {
      if (i + 1 >= args.size()) throw UsageError(name + ": needs a value");
      return args[++i];
    };
    auto only = [&](Command c, const char* what) {
      if (o.command != c) throw UsageError(name + ": only for '" + what + "'");
    };
    auto file = [&](Command c, const char* what, std::string& target) {
      only(c, what);
      target = value();
      if (target.empty()) throw UsageError(name + ": needs a file name");
    };
    Choices& ch = o.choices;
    if (name == "--family") {
      ch.familyOption = FamilyOption(value());
    } else if (name == "--order") {
      std::string v = value();
      int n = 0;
      if (!ParseInt(v, n) || n < 3 || n > 7) {
        throw UsageError("--order: expected 3..7, got '" + v + "'");
      }
      ch.order = n;
    } else if (name == "--topology") {
      ch.topology = Topology(value());
    } else if (name == "--ripple") {
      ch.rippleOption = RippleOption(value());
    } else if (name == "--stopband") {
      ch.stopbandOption = StopbandOption(value());
    } else if (name == "--impedance") {
      ch.impedance = value();
    } else if (name == "--bandwidth") {
      ch.bandwidth = value();
    } else if (name == "--center") {
      ch.center = value();
    } else if (name == "--resonator-l") {
      ch.resonatorL = value();
    } else if (name == "--q") {
      ch.q = value();
    } else if (ParsePartsOption(name, value, o.command == Command::Parts, o.parts)) {
    } else if (name == "--values") {
      if (o.command == Command::Parts) throw UsageError(name + ": not for 'parts'");
      std::string v = value();
      if (v == "exact") {
        o.values = ValueStage::Exact;
      } else if (v == "5c") {
        o.values = ValueStage::FiveC;
      } else if (v == "5l") {
        o.values = ValueStage::FiveL;
      } else {
        throw UsageError("--values: expected exact, 5c or 5l, got '" + v + "'");
      }
    } else if (name == "--json") {
      if (o.command != Command::Parts && o.command != Command::Tolerance)
        only(Command::Design, "design");
      o.json = true;
    } else if (IsToleranceOption(name)) {
      only(Command::Tolerance, "tolerance");
      ParseToleranceOption(name, value(), o.tolerance);
    } else if (name == "--png" || name == "--svg" || name == "--pdf") {
      only(Command::Render, "render");
      if (!o.renderFile.empty()) throw UsageError(name + ": only one output file");
      o.renderFile = value();
      if (!EndsWith(o.renderFile, "." + name.substr(2))) {
        throw UsageError(name + ": the file name must end in ." + name.substr(2));
      }
    } else if (name == "--size") {
      only(Command::Render, "render");
      ParseSize(value(), o);
    } else if (name.starts_with("--") && FindExportFormat(name.substr(2))) {
      std::string path;
      file(Command::Export, "export", path);
      o.exports.emplace_back(name.substr(2), path);
    } else {
      throw UsageError("unknown option '" + name + "'");
    }
  }
  CheckBand(o.choices);
  if (o.command == Command::Render && o.renderFile.empty()) {
    throw UsageError("render: needs --png FILE, --svg FILE or --pdf FILE");
  }
  if (o.command == Command::Export && o.exports.empty()) {
    throw UsageError("export: needs at least one of " + ExportWords("--", "", ", "));
  }
  return o;
}

}  // namespace drenik::cli
