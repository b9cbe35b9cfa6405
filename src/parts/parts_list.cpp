#include "parts/parts_list.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/atomic_file.h"
#include "core/formatters.h"
#include "stress/ratings.h"
#include "stress/stress_text.h"

namespace drenik {
namespace {

std::string AlTolerance() {
  return "AL " + std::to_string(static_cast<int>(std::lround(kToroidAlTolerance * 100))) + "%";
}

std::string Designator(char kind, int position, const char* suffix = "") {
  return kind + std::to_string(position) + suffix;
}

PartsListLine& Add(std::vector<PartsListLine>& lines, std::string reference, std::string value,
                   const std::string& series, const std::string& tolerance,
                   const std::string& rating = "") {
  auto same = [&](const PartsListLine& l) {
    // An inductor's line takes the largest current of its references.
    return l.value == value && l.series == series && (rating.empty() || l.rating == rating);
  };
  auto it = std::find_if(lines.begin(), lines.end(), same);
  if (it == lines.end()) {
    lines.push_back({{}, std::move(value), series, tolerance, {}, 0, rating});
    it = lines.end() - 1;
  }
  it->references.push_back(std::move(reference));
  return *it;
}

// The largest RMS current among an inductor line's references, amperes.
void RateInductor(PartsListLine& line, double amperes) {
  const double before = line.rating.empty() ? 0 : std::stod(line.rating);
  line.rating = AmpsText(std::max(before, amperes)) + " A";
}

}  // namespace

PartLoads LoadsOf(const StressResult& stress) {
  PartLoads loads;
  for (const PartStress& s : stress.parts) {
    if (s.part.type == PartType::Capacitor) loads.capacitorPeak[s.part.position] = s.VPeak();
    if (s.part.type == PartType::Inductor) loads.inductorRms[s.part.position] = s.i.value;
  }
  return loads;
}

std::vector<PartsListLine> PartsList(const PartsChoice& choice, const PartLoads* loads) {
  std::vector<PartsListLine> capacitors, inductors;
  const ESeriesInfo& cseries = InfoOf(choice.request.capacitors);
  const std::string ctolerance = std::to_string(cseries.tolerancePercent) + "%";
  const std::optional<Former>& former = choice.request.former;
  std::string lseries = "exact", ltolerance;
  if (choice.request.inductors) {
    lseries = InfoOf(*choice.request.inductors).name;
    ltolerance = std::to_string(InfoOf(*choice.request.inductors).tolerancePercent) + "%";
  }
  for (const PositionParts& p : choice.positions) {
    const bool pair = p.capacitors.size() == 2;
    std::string rating;
    if (loads && loads->capacitorPeak.contains(p.position))
      rating = RatingText(loads->capacitorPeak.at(p.position));
    for (size_t k = 0; k < p.capacitors.size(); ++k)
      Add(capacitors, Designator('C', p.position, pair ? (k == 0 ? "A" : "B") : ""),
          TrimBlanks(FormatCapacitance(p.capacitors[k])), cseries.name, ctolerance, rating);
    PartsListLine* inductor = nullptr;
    if (p.inductor > 0 && !former)
      inductor = &Add(inductors, Designator('L', p.position),
                      TrimBlanks(FormatInductance(p.inductor)), lseries, ltolerance);
    if (p.inductor > 0 && former) {
      PartsListLine& line =
          Add(inductors, Designator('L', p.position), TrimBlanks(FormatInductance(p.inductor)),
              "whole turns", former->core ? AlTolerance() : "");
      inductor = &line;
      line.turns = p.turns;
      line.former = former->Name();
      if (!former->core) {
        char length[64];
        std::snprintf(length, sizeof length, "; %.1f mm long",
                      AirCoreLengthMm(former->air, p.turns));
        line.former += length;
        if (!WheelerHolds(former->air, p.turns))
          line.former += " (shorter than 0.4 d: Wheeler rough)";
      }
    }
    if (inductor && loads && loads->inductorRms.contains(p.position))
      RateInductor(*inductor, loads->inductorRms.at(p.position));
  }
  capacitors.insert(capacitors.end(), inductors.begin(), inductors.end());
  return capacitors;
}

bool WritePartsList(const PartsChoice& choice, const std::string& path, Platform& platform,
                    const PartLoads* loads) {
  AtomicFile file(path);
  bool written = file.IsOpen();
  if (written) {
    const bool wound = choice.request.former.has_value();
    file.Line(std::string(kPartsListHeader) + (wound ? kPartsListWindingColumns : "") +
              (loads ? kPartsListRatingColumns : ""));
    for (const PartsListLine& line : PartsList(choice, loads)) {
      std::string references;
      for (const std::string& r : line.references)
        references += (references.empty() ? "" : " ") + r;
      file.Line(
          references + "," + line.value + "," + line.series + "," + line.tolerance + "," +
          std::to_string(line.references.size()) +
          (wound ? "," + line.former + "," + (line.turns ? std::to_string(line.turns) : "") : "") +
          (loads
               ? (line.references.front()[0] == 'C' ? "," + line.rating + "," : ",," + line.rating)
               : ""));
    }
    written = file.Commit();
  }
  if (!written) platform.ShowMessage(kPartsListFailure);
  return written;
}

}  // namespace drenik
