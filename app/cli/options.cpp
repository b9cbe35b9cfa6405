#include "cli/options.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>

#include "cli/number_reader.h"
#include "cli/synth_command.h"
#include "cli/time_command.h"
#include "cli/tolerance_command.h"
#include "core/formatters.h"
#include "core/last_session.h"
#include "core/number_text.h"
#include "core/whole_number.h"
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

// What the families take together: the widest order range, and the ripple
// and depth ranges of those that have one.
struct TableRanges {
  int lowestOrder = 99, highestOrder = 0;
  ChoiceRange ripple, depth;
};
TableRanges RangesOfTable() {
  TableRanges t;
  for (const FamilyInfo& f : Families()) {
    t.lowestOrder = std::min<int>(t.lowestOrder, f.minOrder);
    t.highestOrder = std::max<int>(t.highestOrder, f.maxOrder);
    if (f.ripple.Offered()) t.ripple = f.ripple;
    if (f.depth.Offered()) t.depth = f.depth;
  }
  return t;
}

int ReadOrder(const std::string& value) {
  const TableRanges t = RangesOfTable();
  const std::optional<uint64_t> n = ReadWholeNumber(value);
  if (!n || *n < static_cast<uint64_t>(t.lowestOrder) || *n > static_cast<uint64_t>(t.highestOrder))
    throw UsageError("--order: expected an order from " + std::to_string(t.lowestOrder) + " to " +
                     std::to_string(t.highestOrder) + ", got '" + value + "'");
  return static_cast<int>(*n);
}

// A ripple or stopband depth in dB within what some family takes.
double ReadDecibels(const std::string& option, const char* what, const std::string& value,
                    ChoiceRange range) {
  const double db = ReadNumber(option, value);
  if (!range.Holds(db))
    throw UsageError(option + ": expected " + what + " from " + GeneralText(range.low) + " to " +
                     GeneralText(range.high) + " dB, got '" + value + "'");
  return db;
}

// The order, ripple and depth against the chosen family's own ranges. A
// family without the choice leaves it to the design page, which refuses the
// click ("not offered for the ... family").
void CheckFamilyRanges(const Choices& ch) {
  const FamilyInfo* f = FindFamily(kDefaultFamily);
  for (const FamilyInfo& row : Families())
    if (ch.familyOption && *ch.familyOption == row.optionName) f = &row;
  auto refuse = [&](const std::string& option, const std::string& what) {
    throw UsageError(option + ": the " + f->cliWord + " family takes " + what);
  };
  if (ch.order && f->orderChoice && (*ch.order < f->minOrder || *ch.order > f->maxOrder))
    refuse("--order", "orders " + std::to_string(f->minOrder) + " to " +
                          std::to_string(f->maxOrder) + ", got " + std::to_string(*ch.order));
  if (ch.ripple && f->ripple.Offered() && !f->ripple.Holds(*ch.ripple))
    refuse("--ripple", "a ripple from " + GeneralText(f->ripple.low) + " to " +
                           GeneralText(f->ripple.high) + " dB");
  if (ch.stopband && f->depth.Offered() && !f->depth.Holds(*ch.stopband))
    refuse("--stopband", "a stopband depth from " + GeneralText(f->depth.low) + " to " +
                             GeneralText(f->depth.high) + " dB");
}

// The order line of the usage: the range most families take, and the others.
std::string OrderRangesText() {
  const TableRanges t = RangesOfTable();
  std::string others;
  for (const FamilyInfo& f : Families()) {
    std::string range = std::to_string(f.minOrder) + ".." + std::to_string(f.maxOrder);
    if (!f.orderChoice) range = "none";
    if (f.orderChoice && f.minOrder == t.lowestOrder && f.maxOrder == t.highestOrder) continue;
    others += std::string(others.empty() ? "" : ", ") + f.cliWord + " " + range;
  }
  return std::to_string(t.lowestOrder) + ".." + std::to_string(t.highestOrder) +
         (others.empty() ? "" : " (" + others + ")");
}

// Which values are the design page's buttons; the others go through its
// dialog.
std::string ButtonsText() {
  std::string ripples, depths;
  for (const RippleChoice& r : kRippleChoices)
    ripples += (ripples.empty() ? "" : ", ") + GeneralText(r.value);
  for (const StopbandChoice& s : kStopbandChoices)
    depths += (depths.empty() ? "" : ", ") + GeneralText(s.value);
  return "                              (the design page's buttons: orders " +
         std::to_string(kLowestButtonOrder) + ".." + std::to_string(kHighestButtonOrder) +
         ", ripples " + ripples + ",\n                              depths " + depths +
         "; the others through its \"Other order and ripple\")\n";
}

// The families that take a ripple or a depth, e.g. "chebyshev, cauer".
std::string FamiliesWith(ChoiceRange FamilyInfo::*range) {
  std::string out;
  for (const FamilyInfo& f : Families())
    if ((f.*range).Offered()) out += (out.empty() ? "" : ", ") + std::string(f.cliWord);
  return out;
}

void ParseSize(const std::string& value, CliOptions& o) {
  const size_t x = value.find_first_of("xX");
  if (x == std::string::npos)
    throw UsageError("--size: expected WIDTHxHEIGHT in pixels, got '" + value + "'");
  o.widthPx = static_cast<int>(ReadCount("--size", value.substr(0, x), 1, 20000));
  o.heightPx = static_cast<int>(ReadCount("--size", value.substr(x + 1), 1, 20000));
}

// A text for one of the design page's boxes, checked as a number first.
std::string BoxEntry(const std::string& option, const std::string& value, bool infinityWord) {
  ReadNumber(option, value, {.boxCharacters = kEntryCharacters, .infinityWord = infinityWord});
  return BoxText(value);
}

// A box entry that the page would clamp from a value below 0 (or at 0) to
// some other: refused, as the part models' values are. (A negative centre
// would become the box's least, 0.1 Hz; a negative resonator inductance
// the design's own choice.)
std::string PositiveBoxEntry(const std::string& option, const std::string& value, bool zeroAllowed,
                             const char* what) {
  const double v = ReadNumber(option, value, {.boxCharacters = kEntryCharacters});
  if (v < 0 || (v == 0 && !zeroAllowed))
    throw UsageError(option + ": expected " + what + ", got '" + value + "'");
  return BoxText(value);
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && Lower(s.substr(s.size() - tail.size())) == tail;
}

// Where a file name leads: its links followed, a link to nothing yet
// included (the writer makes the file where it points), and the folders'
// names made plain ("./a.x", "d/../a.x").
std::filesystem::path Destination(const std::string& name, std::error_code& ec) {
  namespace fs = std::filesystem;
  fs::path p = fs::absolute(name, ec);
  struct stat found {};
  // As many links as the kernel follows.
  for (int links = 0; !ec && links < 40 && lstat(p.c_str(), &found) == 0 && S_ISLNK(found.st_mode);
       ++links) {
    const fs::path next = fs::read_symlink(p, ec);
    p = next.is_absolute() ? next : p.parent_path() / next;
  }
  return ec ? p : fs::weakly_canonical(p, ec);
}

// Whether two file names reach the same file: the same name, a link to the
// other, another hard link of it.
bool SameFile(const std::string& a, const std::string& b) {
  if (a == b) return true;
  struct stat sa {};
  struct stat sb {};
  if (stat(a.c_str(), &sa) == 0 && stat(b.c_str(), &sb) == 0)
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
  std::error_code ec1, ec2;
  const std::filesystem::path pa = Destination(a, ec1), pb = Destination(b, ec2);
  return !ec1 && !ec2 && pa == pb;
}

// The band options belong to the band topologies; the band they give, by
// its centre and width or by its edges, must lie above 0 Hz. The texts are
// read as the page reads its boxes.
void CheckBand(const Choices& ch) {
  const TopologyInfo* t = FindTopology(ch.topology.value_or(kDefaultTopology.name));
  const bool band = t && t->band;
  const char* given = ch.center  ? "--center"
                      : ch.f1    ? "--f1"
                      : ch.f2    ? "--f2"
                      : ch.sweep ? "--sweep"
                                 : nullptr;
  if (given && !band)
    throw UsageError(std::string(given) + ": only for the band topologies (" + BandTopologyWords() +
                     ")");
  if (ch.resonatorL && !(t && t->resonatorL))
    throw UsageError("--resonator-l: only for the Coupledbandpass topology");
  if (!band) return;
  const bool edges = ch.f1 || ch.f2;
  if (edges && ch.center) throw UsageError("--f1, --f2: a band by its edges takes no --center");
  if (edges && ch.bandwidth)
    throw UsageError("--f1, --f2: a band by its edges takes no --bandwidth");
  if (edges && !(ch.f1 && ch.f2))
    throw UsageError(ch.f1 ? "--f2: required with --f1" : "--f1: required with --f2");
  if (!edges && !ch.center)
    throw UsageError("--center: required for the " + *ch.topology + " topology (or --f1 and --f2)");
  float center, width;
  if (edges) {
    const float f1 = BoxValue(*ch.f1), f2 = BoxValue(*ch.f2);
    if (!(f2 > f1)) throw UsageError("--f2: the upper band edge must lie above --f1");
    center = static_cast<float>(std::sqrt(static_cast<double>(f1) * f2));
    width = static_cast<float>(static_cast<double>(f2) - f1);
  } else {
    DesignRecord firstStart;
    SetLastSessionDefaults(firstStart);
    center = BoxValue(*ch.center);
    width = ch.bandwidth ? BoxValue(*ch.bandwidth) : firstStart.Width;
  }
  // The arithmetic lower edge f0 - BW/2 above 0 Hz: f2 below (3 + 2 sqrt 2) f1.
  if (const std::string why = BandFault(center, width); !why.empty())
    throw UsageError(
        BandTooNarrow(center, width)
            ? (edges ? "--f1, --f2: " : "--bandwidth: ") + why
            : (edges ? "--f1, --f2: " + std::string(kEdgesTooWide) : "--center: " + why));
}

// Two outputs into one file would leave only the last: refused.
void RefuseSharedTargets(const CliOptions& o) {
  std::vector<std::pair<std::string, std::string>> outputs = o.exports;
  for (const auto& [option, file] : {std::pair{"render", &o.renderFile},
                                     {"smith", &o.smithFile},
                                     {"step", &o.stepFile},
                                     {"csv", &o.time.csvFile},
                                     {"bom", &o.parts.bom}})
    if (!file->empty())
      outputs.emplace_back(option == std::string("render") ? o.renderOption : option, *file);
  for (size_t j = 1; j < outputs.size(); ++j)
    for (size_t i = 0; i < j; ++i)
      if (SameFile(outputs[i].second, outputs[j].second))
        throw UsageError("--" + outputs[j].first + ": '" + outputs[j].second +
                         "' is also the file of --" + outputs[i].first);
}

std::string ChoicesText() {
  const TableRanges t = RangesOfTable();
  return std::string(
             "choices (first-start defaults when left out):\n"
             "  --family ") +
         FamilyWords("|") + "   (" + FindFamily(kDefaultFamily)->cliWord + ")\n" +
         "  --order N                   " + OrderRangesText() + "   (5)\n" + "  --topology " +
         TopologyWords("|") + "\n" + "  --ripple DB                 passband ripple, " +
         GeneralText(t.ripple.low) + " to " + GeneralText(t.ripple.high) + " dB, " +
         FamiliesWith(&FamilyInfo::ripple) + " (0.044)\n" +
         "  --stopband DB               stopband depth, " + GeneralText(t.depth.low) + " to " +
         GeneralText(t.depth.high) + " dB, " + FamiliesWith(&FamilyInfo::depth) + " (40)\n" +
         ButtonsText() +
         "  --impedance 50|TEXT         ohms, typed into the Other box (50)\n"
         "  --bandwidth TEXT            cutoff, Hz, e.g. 4.2M     (4.2M)\n"
         "                              (a band topology: the band's width f2 - f1)\n"
         "  --center TEXT               geometric band centre, Hz, e.g. 7.15M\n"
         "                              (required for a band topology, for no other)\n"
         "  --f1 TEXT --f2 TEXT         or the band by its edges, Hz, e.g. 88M and 108M\n"
         "                              (in place of --center and --bandwidth)\n"
         "  --sweep K                   a band design's display sweep: f0/K to K f0, K above\n"
         "                              1, at most 100 (default: both skirts, as far out as\n"
         "                              a lowpass sweep and past a bandpass's stop edges)\n"
         "  --resonator-l TEXT          coupled resonators' inductance, H, e.g. 1u\n"
         "                              (Coupledbandpass only; a practical one when left out)\n"
         "  --q inf|TEXT                inductor Q                (inf)\n" +
         PartModelUsageText() +
         "--values: exact values, 5% capacitors with retuned inductors (5c, default),\n"
         "  or 5% capacitors and 5% inductors (5l)\n"
         "  or the stock parts of the chooser (chosen: --cseries, --lseries, --pairs and\n"
         "  --air-core as for parts)\n";
}

// A number is a decimal number with an optional exponent and prefix letter.
constexpr const char* kNumbersText =
    "numbers: 4.2M, 4,2M, 4.2e6, 470p, 1.5k; prefixes p n u m k M G. A value the\n"
    "  design page does not take is replaced by the nearest one it does, with a notice.\n";

std::string DesignLines() {
  return "  drenik design [choices] [--values exact|5c|5l|chosen] [--json]\n";
}
std::string RenderLines() {
  return "  drenik render [choices] [--values ...] (--png FILE | --svg FILE | --pdf FILE)"
         " [--size WxH]\n"
         "  drenik render [choices] [--values ...] [--smith FILE] [--step FILE]"
         "   (.png, .svg or .pdf)\n";
}
std::string ExportLines() {
  return "  drenik export [choices] [--values ...]" + ExportWords(" [--", " FILE]", "") + "\n";
}
std::string ToleranceLines() {
  return "  drenik tolerance [choices] [--values ...] [--ctol PCT] [--ltol PCT]"
         " [--dist uniform|normal]\n"
         "                   [--trials N] [--seed N] [--pass-edge FREQ [--pass-edge FREQ]]\n"
         "                   [--pass-rl DB] [--pass-il DB] [--stop FREQ:DB]..."
         " [--stop-below FREQ:DB]...\n"
         "                   [--tighten PCT] [--json] [--quiet]\n";
}
std::string PartsLines() {
  return "  drenik parts [choices] [--cseries SERIES] [--lseries exact|SERIES] [--pairs]"
         " [--json]\n"
         "               [--bom FILE] [--quiet]      (drenik parts --help)\n"
         "               [--power W [--vswr S]]      (ratings: capacitor voltage, inductor "
         "current)\n";
}

std::string TimeLines() {
  return "  drenik time [choices] [--values ...] [--span SECONDS] [--points N] [--json]"
         " [--csv FILE]\n";
}
std::string WindingLines() {
  return "  drenik winding [choices] [--values ...] (--core NAME | --air-core FORM_MM:WIRE_MM)"
         " [--json]\n";
}

std::string StressLines() {
  return "  drenik stress [choices] [--values exact|5c|5l|chosen] --power W [--vswr S]"
         " [--band FROM:TO] [--json]\n";
}

// The design choices, which `synth` makes itself.
bool SynthRefuses(const std::string& name) {
  for (const char* option :
       {"--family", "--order", "--topology", "--ripple", "--stopband", "--bandwidth", "--center",
        "--f1", "--f2", "--sweep", "--resonator-l", "--values"})
    if (name == option) return true;
  return false;
}

std::string CommandHelp(std::string (*lines)(), const char* what) {
  return "usage:\n" + lines() + what + ChoicesText() + kNumbersText;
}

std::string DesignHelp() {
  return CommandHelp(DesignLines,
                     "The design as a table (positions, values, passband and stopband figures),\n"
                     "or with --json every field of the design record.\n");
}
std::string RenderHelp() {
  return CommandHelp(RenderLines,
                     "The display page as a picture. --size (pixels, default 1600x1200) sets a\n"
                     "PNG's size and an SVG's view; a PDF is one printed page.\n");
}
std::string ExportHelp() {
  return CommandHelp(ExportLines, "Writes each file asked for; each file may be named once.\n");
}
std::string ToleranceHelp() {
  return CommandHelp(
      ToleranceLines,
      "Monte Carlo yield of the design against a mask.\n"
      "  --ctol, --ltol PCT     capacitor and inductor tolerance, 0..50 % (5)\n"
      "  --dist uniform|normal  how part values spread (uniform)\n"
      "  --trials N             1..1,000,000, such as 2000, 10,000 or 10k (2000)\n"
      "  --seed N               a whole number (1)\n"
      "  --pass-edge FREQ       the passband edge (the cutoff); a band design may give\n"
      "                         two, its lower and upper edge\n"
      "  --pass-rl DB, --pass-il DB   least return loss, most loss in the passband\n"
      "  --stop FREQ:DB         least attenuation from FREQ on (away from the passband)\n"
      "  --stop FROM:TO:DB      least attenuation from FROM to TO (a bandstop's notch)\n"
      "  --stop-below FREQ:DB   least attenuation at and below FREQ (a bandpass's lower skirt)\n"
      "  --tighten PCT          the tolerance each part is tightened to in the\n"
      "                         sensitivity table (0: held at nominal)\n"
      "Without --pass-rl, --pass-il, --stop and --stop-below the default mask of the\n"
      "design is used; a band design's passband lies between its edges (a bandstop's\n"
      "outside them).\n");
}

std::string TimeHelp() {
  return CommandHelp(TimeLines,
                     "The exact step and impulse response of the ladder at the load, the step\n"
                     "normalised to settle at 1, and its figures (overshoot, rise, delay,\n"
                     "settling, peak). --span: the time axis in seconds (default: until the\n"
                     "step has settled to 0.1 %); --points: 2 to 100000 (2000); --csv writes\n"
                     "t, step, impulse.\n");
}

std::string WindingHelp() {
  return CommandHelp(WindingLines,
                     "The turns of each inductor on a toroid core (T50-2, T37-6, ...) or on a\n"
                     "close-wound single-layer air coil of FORM_MM form and WIRE_MM wire, and\n"
                     "the inductance those whole turns give.\n");
}

std::string StressHelp() {
  return CommandHelp(
      StressLines,
      "The largest RMS voltage (and its peak) and RMS current of every part, and what it\n"
      "dissipates, at a transmit power, with the frequency where each falls.\n"
      "  --power W       the source's available power, W: it delivers W into a matched load\n"
      "  --vswr S        every load of this VSWR, at every phase (1: matched, the default)\n"
      "  --band FROM:TO  the band transmitted in, Hz, e.g. 14M:14.35M (default: the\n"
      "                  passband: a lowpass up to its cutoff, a highpass to ten times it,\n"
      "                  a bandpass between its edges, a bandstop outside them)\n");
}

constexpr CommandInfo kCommands[] = {
    {.word = "design", .command = Command::Design, .usageLines = DesignLines, .help = DesignHelp},
    {.word = "render", .command = Command::Render, .usageLines = RenderLines, .help = RenderHelp},
    {.word = "export", .command = Command::Export, .usageLines = ExportLines, .help = ExportHelp},
    {.word = "tolerance",
     .command = Command::Tolerance,
     .usageLines = ToleranceLines,
     .help = ToleranceHelp},
    {.word = "parts", .command = Command::Parts, .usageLines = PartsLines, .help = PartsUsageText},
    {.word = "time", .command = Command::Time, .usageLines = TimeLines, .help = TimeHelp},
    {.word = "winding",
     .command = Command::Winding,
     .usageLines = WindingLines,
     .help = WindingHelp},
    {.word = "stress", .command = Command::Stress, .usageLines = StressLines, .help = StressHelp},
    {.word = "synth", .command = Command::Synth, .usageLines = SynthLines, .help = SynthHelp},
};

// The commands, for the complaint about a missing or unknown one.
std::string CommandWords() {
  std::string words;
  for (size_t i = 0; i < std::size(kCommands); ++i)
    words += (i == 0                          ? ""
              : i + 1 == std::size(kCommands) ? " or "
                                              : ", ") +
             std::string(kCommands[i].word);
  return words;
}

}  // namespace

std::span<const CommandInfo> Commands() {
  return kCommands;
}

std::string UsageText() {
  std::string text = "usage:\n";
  for (const CommandInfo& c : kCommands) text += c.usageLines();
  return text + "  drenik --help | --version\n" + ChoicesText();
}

CliOptions ParseCommandLine(const std::vector<std::string>& args) {
  CliOptions o;
  if (args.empty()) throw UsageError("missing command (" + CommandWords() + ")");
  const CommandInfo* command = nullptr;
  for (const CommandInfo& c : kCommands)
    if (args[0] == c.word) command = &c;
  for (const std::string& a : args) {
    if (a == "--help" || a == "-h") {
      o.command = Command::Help;
      o.helpText = command ? command->help() : UsageText();
      return o;
    }
    if (a == "--version") {
      o.command = Command::Version;
      return o;
    }
  }
  if (!command) throw UsageError("unknown command '" + args[0] + "' (" + CommandWords() + ")");
  o.command = command->command;

  bool sizeGiven = false;
  std::string partsOption;  // the first of the chooser's options outside `parts`
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
      // A second file for one output would drop the first.
      if (!target.empty()) throw UsageError(name + ": given twice; one file each");
      target = value();
      if (target.empty()) throw UsageError(name + ": needs a file name");
    };
    Choices& ch = o.choices;
    if (o.command == Command::Synth && SynthRefuses(name))
      throw UsageError(name + ": not for 'synth', which chooses the design");
    if (o.command == Command::Synth && ParseSynthOption(name, value, o.synth)) {
    } else if (name == "--family") {
      ch.familyOption = FamilyOption(value());
    } else if (name == "--order") {
      ch.order = ReadOrder(value());
    } else if (name == "--topology") {
      ch.topology = Topology(value());
    } else if (name == "--ripple") {
      ch.ripple = ReadDecibels(name, "a ripple", value(), RangesOfTable().ripple);
    } else if (name == "--stopband") {
      ch.stopband = ReadDecibels(name, "a stopband depth", value(), RangesOfTable().depth);
    } else if (name == "--impedance") {
      const std::string v = value();
      ch.impedance = v == "50" ? v : BoxEntry(name, v, false);
    } else if (name == "--bandwidth") {
      ch.bandwidth = BoxEntry(name, value(), false);
    } else if (name == "--center") {
      ch.center = PositiveBoxEntry(name, value(), false, "a frequency above 0 Hz");
    } else if (name == "--f1" || name == "--f2") {
      (name == "--f1" ? ch.f1 : ch.f2) =
          PositiveBoxEntry(name, value(), false, "a frequency above 0 Hz");
    } else if (name == "--sweep") {
      const std::string v = value();
      const double k = ReadNumber(name, v);
      if (!(k > 1 && k <= kLargestSweepSpan))
        throw UsageError(
            "--sweep: expected a span above 1 and at most 100 (the sweep runs from "
            "f0/K to K f0), got '" +
            v + "'");
      ch.sweep = static_cast<float>(k);
    } else if (name == "--resonator-l") {
      ch.resonatorL =
          PositiveBoxEntry(name, value(), true, "an inductance in henries of 0 or above");
    } else if (name == "--q") {
      ch.q = BoxEntry(name, value(), true);
    } else if (ParsePartModelOption(name, value, ch.models)) {
    } else if (o.command == Command::Winding && (name == "--core" || name == "--air-core")) {
      if (o.former) throw UsageError(name + ": one former only, --core or --air-core");
      o.former = name == "--core" ? CoreOption(name, value()) : AirCoreOption(name, value());
    } else if (ParsePartsOption(name, value, o.command == Command::Parts || name != "--bom",
                                o.parts)) {
      if (o.command == Command::Synth) o.synth.stockParts = true;
      if (o.command != Command::Parts && partsOption.empty()) partsOption = name;
    } else if (name == "--values") {
      if (o.command == Command::Parts) throw UsageError(name + ": not for 'parts'");
      std::string v = value();
      if (v == "exact") {
        o.values = ValueStage::Exact;
      } else if (v == "5c") {
        o.values = ValueStage::FiveC;
      } else if (v == "5l") {
        o.values = ValueStage::FiveL;
      } else if (v == "chosen") {
        o.values = ValueStage::Chosen;
      } else {
        throw UsageError("--values: expected exact, 5c, 5l or chosen, got '" + v + "'");
      }
    } else if (name == "--json") {
      if (o.command != Command::Parts && o.command != Command::Tolerance &&
          o.command != Command::Winding && o.command != Command::Time &&
          o.command != Command::Stress && o.command != Command::Synth)
        only(Command::Design, "design");
      o.json = true;
    } else if (name == "--quiet") {
      if (o.command != Command::Parts && o.command != Command::Synth)
        only(Command::Tolerance, "tolerance' or 'parts");
      o.quiet = true;
    } else if (IsToleranceOption(name)) {
      if (o.command != Command::Synth || name == "--tighten") only(Command::Tolerance, "tolerance");
      ParseToleranceOption(name, value(), o.tolerance);
    } else if (IsStressOption(name)) {
      if (name == "--band" || o.command != Command::Parts)
        only(Command::Stress, name == "--band" ? "stress" : "stress' or 'parts");
      ParseStressOption(name, value(), o.stress);
    } else if (IsTimeOption(name)) {
      only(Command::Time, "time");
      ParseTimeOption(name, value(), o.time);
    } else if (name == "--csv" && o.command == Command::Time) {
      file(Command::Time, "time", o.time.csvFile);
    } else if (name == "--png" || name == "--svg" || name == "--pdf") {
      only(Command::Render, "render");
      if (!o.renderFile.empty()) throw UsageError(name + ": only one output file");
      o.renderFile = value();
      o.renderOption = name.substr(2);
      if (!EndsWith(o.renderFile, "." + name.substr(2))) {
        throw UsageError(name + ": the file name must end in ." + name.substr(2));
      }
    } else if (name == "--smith" || name == "--step") {
      std::string& target = name == "--smith" ? o.smithFile : o.stepFile;
      file(Command::Render, "render", target);
      if (!EndsWith(target, ".png") && !EndsWith(target, ".svg") && !EndsWith(target, ".pdf"))
        throw UsageError(name + ": the file name must end in .png, .svg or .pdf");
    } else if (name == "--size") {
      only(Command::Render, "render");
      ParseSize(value(), o);
      sizeGiven = true;
    } else if (name.starts_with("--") && FindExportFormat(name.substr(2))) {
      std::string path;
      file(Command::Export, "export", path);
      o.exports.emplace_back(name.substr(2), path);
    } else {
      throw UsageError("unknown option '" + name + "'");
    }
  }
  CheckBand(o.choices);
  CheckFamilyRanges(o.choices);
  if (!partsOption.empty() && o.values != ValueStage::Chosen && o.command != Command::Synth)
    throw UsageError(partsOption + ": only for 'parts' or --values chosen");
  if (o.command == Command::Render && o.renderFile.empty() && o.smithFile.empty() &&
      o.stepFile.empty()) {
    throw UsageError("render: needs --png FILE, --svg FILE or --pdf FILE");
  }
  if (o.command == Command::Winding && !o.former)
    throw UsageError("winding: needs --core NAME or --air-core FORM_MM:WIRE_MM");
  if (o.command == Command::Export && o.exports.empty()) {
    throw UsageError("export: needs at least one of " + ExportWords("--", "", ", "));
  }
  if (o.command == Command::Stress) StressRequestOf(o.stress, "stress");
  if (o.command == Command::Parts && o.stress.vswr && !o.stress.power)
    throw UsageError("--vswr: only with --power");
  RefuseSharedTargets(o);
  if (sizeGiven && EndsWith(o.renderFile, ".pdf"))
    o.notices.push_back("--size: no effect on a PDF, which is one printed page");
  return o;
}

}  // namespace drenik::cli
