#include "cli/synth_command.h"

#include <cmath>
#include <cstdio>
#include <sstream>

#include "cli/json_output.h"
#include "cli/number_reader.h"
#include "cli/options.h"
#include "cli/progress_line.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "synth/responses.h"
#include "synth/synth.h"
#include "synthesis/families.h"

namespace drenik::cli {
namespace {

struct Word {
  const char* word;
  int value;
};
constexpr Word kPreferences[] = {{"parts", static_cast<int>(SynthPreference::Parts)},
                                 {"inductors", static_cast<int>(SynthPreference::Inductors)},
                                 {"margin", static_cast<int>(SynthPreference::Margin)}};

template <size_t N>
int WordValue(const Word (&words)[N], const std::string& name, const std::string& text) {
  std::string list;
  for (const Word& w : words) {
    if (text == w.word) return w.value;
    list += (list.empty() ? "" : "|") + std::string(w.word);
  }
  throw UsageError(name + ": expected " + list + ", got '" + text + "'");
}

std::vector<std::string> CommaList(const std::string& name, const std::string& text) {
  std::vector<std::string> items;
  std::stringstream in(text);
  for (std::string item; std::getline(in, item, ',');) {
    if (item.empty()) throw UsageError(name + ": an empty name in '" + text + "'");
    items.push_back(item);
  }
  if (items.empty()) throw UsageError(name + ": needs at least one name");
  return items;
}

const ResponseInfo& ResponseOfWord(const std::string& word) {
  if (const ResponseInfo* info = ResponseNamed(word)) return *info;
  std::string words;
  for (const ResponseInfo& info : kResponses)
    words += (words.empty() ? "" : "|") + std::string(info.word);
  throw UsageError("--response: expected " + words + ", got '" + word + "'");
}

int16_t FamilyCode(const std::string& word) {
  for (const FamilyInfo& f : Families())
    if (word == f.cliWord) return f.code;
  std::string words;
  for (const FamilyInfo& f : Families())
    words += (words.empty() ? "" : ", ") + std::string(f.cliWord);
  throw UsageError("--families: unknown family '" + word + "' (" + words + ")");
}

SynthRequest RequestOf(const CliOptions& o, const DesignResult& design) {
  SynthRequest r;
  const SynthOptions& s = o.synth;
  r.response = ResponseOfWord(s.response).response;
  const DesignRecord& d = design.exact;
  r.rsource = d.Rsource;
  const ToleranceOptions& t = o.tolerance;
  // A band's edges in the order given: lower, then upper.
  const ResponseInfo& response = ResponseOf(r.response);
  r.mask.passEdge = t.passEdge.value_or(0);
  if (t.passEdgeUpper && response.band && !response.bandstop)
    r.mask.passStart = r.mask.passEdge, r.mask.passEdge = *t.passEdgeUpper;
  if (t.passEdgeUpper && response.bandstop) r.mask.passResume = *t.passEdgeUpper;
  // Refused as one edge too many.
  if (t.passEdgeUpper && !response.band) r.mask.passStart = *t.passEdgeUpper;
  r.mask.passRl = t.passRl;
  r.mask.passIl = t.passIl;
  r.mask.stops = t.stops;

  SynthBuild& b = r.build;
  b.ctolPercent = t.ctol.value_or(b.ctolPercent);
  b.ltolPercent = t.ltol.value_or(b.ltolPercent);
  b.distribution = t.distribution.value_or(b.distribution);
  b.qind = d.Qind;
  b.qLaw = d.InductorQLaw;
  b.capacitorQ = d.CapacitorQ;
  b.windingCapacitance = d.WindingCapacitance;
  b.capacitorEsl = d.CapacitorEsl;
  if (s.stockParts) b.parts = o.parts.request;

  SynthGoal& g = r.goal;
  g.yieldPercent = s.yieldPercent.value_or(g.yieldPercent);
  g.prefer = static_cast<SynthPreference>(WordValue(kPreferences, "--prefer", s.prefer));
  for (const std::string& f : s.families) g.families.push_back(FamilyCode(f));
  g.topologies = s.topologies;
  g.maxOrder = s.maxOrder.value_or(g.maxOrder);
  g.trials = t.trials.value_or(g.trials);
  g.seed = t.seed.value_or(g.seed);
  return r;
}

std::string Fixed(double v, const char* format) {
  if (!std::isfinite(v)) return "-";
  char text[40];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

std::string Padded(std::string text, size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text + " ";
}

std::string EdgesText(const SynthCandidate& c) {
  const DesignChoice& d = c.choice;
  if (d.center > 0) {
    const double half = d.width / 2, f2 = half + std::sqrt(half * half + d.center * d.center);
    return TrimBlanks(FormatFrequency(d.center * d.center / f2)) + "-" +
           TrimBlanks(FormatFrequency(f2));
  }
  return TrimBlanks(FormatFrequency(d.width));
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& w : words) text += (text.empty() ? "" : " ") + w;
  return text;
}

void WriteTable(const SynthRequest& r, const SynthResult& result, std::ostream& out) {
  out << "Design from a mask: " << ResponseOf(r.response).word;
  const std::vector<float> none;
  for (const MaskCheck& c : MaskChecks(r.mask, none, ResponseOf(r.response).highpass))
    out << "; " << c.name;
  out << "\nBuild: capacitors +-" << r.build.ctolPercent << "%, inductors +-" << r.build.ltolPercent
      << "%, " << (r.build.distribution == Distribution::Normal ? "normal" : "uniform") << ", "
      << (r.build.parts ? "stock parts" : "exact values") << "; target " << r.goal.yieldPercent
      << "% yield, " << r.goal.trials << " trials, seed " << r.goal.seed << "\n\n";
  if (result.candidates.empty()) return;
  out << "  " << Padded("#", 3) << Padded("Family", 11) << Padded("Order", 5) << Padded("Ripple", 7)
      << Padded("Depth", 5) << Padded("Topology", 15) << Padded("Edges", 19) << Padded("L", 2)
      << Padded("C", 2) << Padded("Pass dB", 7) << Padded("Stop dB", 7) << Padded("Yield", 7)
      << "95% interval\n";
  for (size_t i = 0; i < result.candidates.size(); ++i) {
    const SynthCandidate& c = result.candidates[i];
    const FamilyInfo* f = FindFamily(c.choice.family);
    out << (static_cast<int>(i) == result.chosen ? "* " : "  ") << Padded(std::to_string(i + 1), 3)
        << Padded(FamilyName(c.choice.family), 11) << Padded(std::to_string(c.choice.order), 5)
        << Padded(f && f->ripple.Offered() ? GeneralText(c.choice.ripple) : "-", 7)
        << Padded(f && f->depth.Offered() ? GeneralText(c.choice.depth) : "-", 5)
        << Padded(c.choice.topology, 15) << Padded(EdgesText(c), 19)
        << Padded(std::to_string(c.inductors), 2) << Padded(std::to_string(c.capacitors), 2)
        << Padded(Fixed(c.marginPassDb, "%.2f"), 7) << Padded(Fixed(c.marginStopDb, "%.2f"), 7)
        << (c.trials > 0
                ? Padded(Fixed(100 * c.yield, "%.2f%%"), 7) + Fixed(100 * c.yieldLow, "%.2f") +
                      "-" + Fixed(100 * c.yieldHigh, "%.2f%%") + " (" + std::to_string(c.trials) +
                      " trials)"
                : Padded("-", 7) + "(misses the mask nominally)")
        << "\n";
    out << "       " << Joined(c.words) << "\n";
  }
}

std::string JsonOrNull(double v) {
  return std::isfinite(v) ? JsonNumber(v) : "null";
}

void WriteJson(const SynthResult& result, std::ostream& out) {
  out << "{\n  \"candidates\": [";
  for (size_t i = 0; i < result.candidates.size(); ++i) {
    const SynthCandidate& c = result.candidates[i];
    const FamilyInfo* f = FindFamily(c.choice.family);
    std::string words;
    for (const std::string& w : c.words) words += (words.empty() ? "" : ", ") + JsonString(w);
    out << (i ? ",\n    " : "\n    ") << "{\"choices\": [" << words << "]"
        << ", \"family\": " << JsonString(f ? f->cliWord : "") << ", \"order\": " << c.choice.order
        << ", \"ripple\": " << (f && f->ripple.Offered() ? JsonNumber(c.choice.ripple) : "null")
        << ", \"stopband\": " << (f && f->depth.Offered() ? JsonNumber(c.choice.depth) : "null")
        << ", \"topology\": " << JsonString(c.choice.topology) << ", \"inductors\": " << c.inductors
        << ", \"capacitors\": " << c.capacitors
        << ", \"margin_pass_db\": " << JsonOrNull(c.marginPassDb)
        << ", \"margin_stop_db\": " << JsonOrNull(c.marginStopDb)
        << ", \"yield_pct\": " << (c.trials > 0 ? JsonOrNull(100 * c.yield) : "null")
        << ", \"yield_ci95\": "
        << (c.trials > 0
                ? "[" + JsonOrNull(100 * c.yieldLow) + ", " + JsonOrNull(100 * c.yieldHigh) + "]"
                : "null")
        << "}";
  }
  out << (result.candidates.empty() ? "" : "\n  ")
      << "],\n  \"chosen\": " << (result.chosen >= 0 ? std::to_string(result.chosen) : "null")
      << "\n}\n";
}

}  // namespace

bool ParseSynthOption(const std::string& name, const std::function<std::string()>& value,
                      SynthOptions& o) {
  if (name == "--response") {
    o.response = value();
    ResponseOfWord(o.response);
  } else if (name == "--yield") {
    const std::string v = value();
    const double y = ReadNumber(name, v);
    if (!(y > 0 && y <= 100))
      throw UsageError(name + ": expected a yield above 0 and at most 100 (%), got '" + v + "'");
    o.yieldPercent = y;
  } else if (name == "--prefer") {
    o.prefer = value();
    WordValue(kPreferences, name, o.prefer);
  } else if (name == "--families") {
    o.families = CommaList(name, value());
    for (const std::string& f : o.families) FamilyCode(f);
  } else if (name == "--topologies") {
    o.topologies = CommaList(name, value());
  } else if (name == "--max-order") {
    o.maxOrder = ReadOrder(value(), name);
  } else {
    return false;
  }
  return true;
}

std::string SynthLines() {
  return "  drenik synth [--response lowpass|highpass|bandpass|bandstop] --pass-edge FREQ"
         " [--pass-edge FREQ]\n"
         "               (--pass-rl DB | --pass-il DB) --stop FREQ:DB... [--stop-below"
         " FREQ:DB]...\n"
         "               [--impedance TEXT] [--ctol PCT] [--ltol PCT] [--dist uniform|normal]"
         " [--q ...]\n"
         "               [--cseries SERIES] [--lseries exact|SERIES] [--pairs] [--yield PCT]\n"
         "               [--prefer parts|inductors|margin] [--families LIST]"
         " [--topologies LIST]\n"
         "               [--max-order N] [--trials N] [--seed N] [--json] [--quiet]\n";
}

std::string SynthHelp() {
  return "usage:\n" + SynthLines() +
         "The simplest design that still meets the mask when built from parts of the given\n"
         "tolerances: each family's lowest order, centred in the mask, its Monte Carlo yield\n"
         "measured as `drenik tolerance` measures it (--values exact, or with a series the\n"
         "chooser's parts, --values chosen). The chosen design is listed first (*), each row\n"
         "with the choices that make it in any other command.\n"
         "  --response              the filter's response (lowpass)\n"
         "  --pass-edge FREQ        the passband edge; a band gives two, lower and upper\n"
         "  --pass-rl, --pass-il, --stop, --stop-below   the mask, as for tolerance\n"
         "  --ctol, --ltol, --dist, --q, --q-law, --cq, --lcp, --cesl   the build\n"
         "  --cseries, --lseries, --pairs, --air-core   stock parts, as for parts\n"
         "  --yield PCT             the target yield (99)\n"
         "  --prefer                simplest means fewest parts, fewest inductors or the\n"
         "                          widest margin (parts)\n"
         "  --families LIST         e.g. chebyshev,cauer (every family that takes an order)\n"
         "  --topologies LIST       e.g. Cinlowpass (every one of the response)\n"
         "  --max-order N           2..15 (15)\n"
         "  --trials N              the most trials a candidate gets (10000)\n"
         "  --seed N                a whole number (1); the same inputs and seed give the\n"
         "                          same answer\n"
         "  --impedance 50|TEXT     both terminations, ohms (50)\n"
         "  --json                  \"candidates\" (each with its \"choices\") and \"chosen\"\n"
         "Exits 0 when a design meets the target, 1 when none does (naming what fails).\n";
}

int RunSynthCommand(const CliOptions& o, const DesignResult& design, std::ostream& out,
                    std::ostream& err, bool progress) {
  SynthRequest request;
  try {
    request = RequestOf(o, design);
  } catch (const UsageError& e) {
    err << "drenik: " << e.what() << " (see drenik --help)\n";
    return 2;
  }
  if (const std::string fault = SynthRequestFault(request); !fault.empty()) {
    err << "drenik: " << fault << " (see drenik --help)\n";
    return 2;
  }
  SynthResult result;
  EngineReport report;
  {
    ProgressLine line(err, progress, "synth");
    report = RunSynth(request, result, [&line](double done) { return line.Continue(done); });
  }
  if (!report.Ok()) {
    err << "drenik: " << report.fault << "\n";
    return 2;
  }
  if (o.json)
    WriteJson(result, out);
  else
    WriteTable(request, result, out);
  if (result.chosen >= 0) return 0;
  err << "drenik: " << result.failure
      << (result.candidates.empty() ? "" : " The nearest candidates are listed.") << "\n";
  return 1;
}

}  // namespace drenik::cli
