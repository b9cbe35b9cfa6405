#include "winding/winding.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace drenik {
namespace {

// The fractional turns for `henries`.
double ExactTurns(const Former& f, double henries) {
  if (f.core) return std::sqrt(henries / (f.core->alNanohenry * 1e-9));
  return AirCoreTurns(f.air, henries);
}

int Clamped(double turns) {
  if (!(turns >= 1)) return 1;
  return turns > kMostTurns ? kMostTurns : static_cast<int>(turns);
}

}  // namespace

std::string Former::Name() const {
  if (core) return core->name;
  char text[64];
  std::snprintf(text, sizeof text, "air core %g mm / wire %g mm", air.formMm, air.wireMm);
  return text;
}

std::optional<Former> CoreNamed(const std::string& text) {
  if (const ToroidCore* c = FindToroidCore(text)) return Former{c, {}};
  return std::nullopt;
}

std::optional<Former> AirCoreNamed(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos) return std::nullopt;
  const std::string a = text.substr(0, colon), b = text.substr(colon + 1);
  char* end = nullptr;
  const double form = std::strtod(a.c_str(), &end);
  if (a.empty() || *end) return std::nullopt;
  const double wire = std::strtod(b.c_str(), &end);
  if (b.empty() || *end) return std::nullopt;
  const Former f{nullptr, {form, wire}};
  if (!Windable(f.air)) return std::nullopt;
  return f;
}

double TurnsInductance(const Former& former, int turns) {
  if (former.core) return former.core->alNanohenry * 1e-9 * turns * turns;
  return AirCoreInductance(former.air, turns);
}

TurnsBracket TurnsAround(const Former& former, double v) {
  int n = Clamped(std::floor(ExactTurns(former, v)));
  // The fractional count can sit a rounding either side of a whole one.
  while (n > 1 && TurnsInductance(former, n) > v) --n;
  while (n < kMostTurns && TurnsInductance(former, n + 1) <= v) ++n;
  return {n, TurnsInductance(former, n), TurnsInductance(former, n < kMostTurns ? n + 1 : n)};
}

Winding WindingFor(const Former& former, double henries) {
  const TurnsBracket b = TurnsAround(former, henries);
  // Nearer by ratio; below one turn's inductance the one turn. Nearer the
  // turn after the most is beyond the former.
  const bool up =
      b.lower <= henries && henries * henries >= b.lower * b.upper && b.lowerTurns < kMostTurns;
  const bool beyond = b.lowerTurns == kMostTurns &&
                      henries * henries >= b.lower * TurnsInductance(former, kMostTurns + 1);
  const int turns = up ? b.lowerTurns + 1 : b.lowerTurns;
  Winding w{turns, TurnsInductance(former, turns), 0, true, beyond};
  if (!former.core) {
    w.lengthMm = AirCoreLengthMm(former.air, turns);
    w.formulaHolds = WheelerHolds(former.air, turns);
  }
  return w;
}

}  // namespace drenik
