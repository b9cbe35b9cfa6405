#include "cli/winding_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "cli/json_output.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "core/element_kinds.h"
#include "core/formatters.h"
#include "core/number_text.h"

namespace drenik::cli {
namespace {

struct Row {
  int position = 0;
  double wanted = 0;  // H, the record's value
  Winding winding;
};

std::vector<Row> Rows(const DesignRecord& d, const Former& former) {
  std::vector<Row> rows;
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (!f || !f->hasL || !(d.L[j] > 0) || !std::isfinite(d.L[j])) continue;
    rows.push_back({j, d.L[j], WindingFor(former, d.L[j])});
  }
  return rows;
}

std::string Fixed(double v, const char* format) {
  char text[32];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

}  // namespace

int WriteWindings(const CliOptions& o, const DesignResult& r, std::ostream& out) {
  const Former& former = *o.former;
  const std::vector<Row> rows = Rows(r.chosen, former);
  const bool air = !former.core;
  if (o.json) {
    out << "{\n  \"former\": " << JsonString(former.Name());
    if (!air)
      out << ", \"AL\": " << RoundTripText(former.core->alNanohenry * 1e-9)
          << ", \"ALTolerance\": " << RoundTripText(kToroidAlTolerance);
    out << ",\n  \"inductors\": [";
    for (size_t i = 0; i < rows.size(); ++i) {
      const Row& row = rows[i];
      out << (i ? ",\n    " : "\n    ") << "{\"position\": " << row.position
          << ", \"L\": " << JsonNumber(row.wanted) << ", \"turns\": " << row.winding.turns
          << ", \"inductance\": " << JsonNumber(row.winding.inductance);
      if (air)
        out << ", \"lengthMm\": " << JsonNumber(row.winding.lengthMm)
            << ", \"formulaHolds\": " << (row.winding.formulaHolds ? "true" : "false");
      if (row.winding.beyond) out << ", \"beyondFormer\": true";
      out << "}";
    }
    out << "\n  ]\n}\n";
    return 0;
  }
  out << "Inductors in whole turns on " << former.Name();
  if (!air)
    out << " (AL " << Fixed(former.core->alNanohenry, "%g") << " nH per turn squared, +-"
        << Fixed(kToroidAlTolerance * 100, "%g") << "%)";
  out << "\n\nPos  Wanted       Turns  Gives        Error %" << (air ? "  Length, mm" : "") << "\n";
  bool rough = false, beyond = false;
  for (const Row& row : rows) {
    char line[160];
    std::snprintf(line, sizeof line, "%3d  %-12s %5d  %-12s %+7.2f", row.position,
                  TrimBlanks(FormatInductance(row.wanted)).c_str(), row.winding.turns,
                  TrimBlanks(FormatInductance(row.winding.inductance)).c_str(),
                  (row.winding.inductance / row.wanted - 1) * 100);
    out << line;
    if (air)
      out << Fixed(row.winding.lengthMm, "  %10.1f") << (row.winding.formulaHolds ? "" : " *");
    out << (row.winding.beyond ? " !" : "") << "\n";
    rough = rough || !row.winding.formulaHolds;
    beyond = beyond || row.winding.beyond;
  }
  if (rough)
    out << "* shorter than 0.4 of its diameter: Wheeler's formula is only a first estimate there\n";
  if (beyond)
    out << "! beyond the former: " << kMostTurns
        << " turns, the most wound, give less than wanted; take a former of more inductance per "
           "turn\n";
  return 0;
}

}  // namespace drenik::cli
