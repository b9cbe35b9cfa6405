#include "pages/kept_parts_request.h"

#include <charconv>

namespace drenik {
namespace {

std::optional<ESeries> SeriesCounting(int16_t count) {
  for (const ESeriesInfo& info : kESeries)
    if (static_cast<int16_t>(info.values.size()) == count) return info.series;
  return std::nullopt;
}

int16_t CountOf(ESeries series) {
  return static_cast<int16_t>(InfoOf(series).values.size());
}

std::string Shortest(double v) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, v).ptr;
  return std::string(text, end);
}

}  // namespace

PartsRequest KeptPartsRequest(const DesignRecord& d) {
  PartsRequest r;
  if (const auto series = SeriesCounting(d.KeptCapacitorSeries)) r.capacitors = *series;
  r.inductors = SeriesCounting(d.KeptInductorSeries);
  r.pairs = d.KeptPairs == 1;
  r.former = CoreNamed(d.KeptWinding);
  if (!r.former) r.former = AirCoreNamed(d.KeptWinding);
  return r;
}

void KeepPartsRequest(const PartsRequest& r, DesignRecord& d) {
  d.KeptCapacitorSeries = r.capacitors == PartsRequest{}.capacitors ? 0 : CountOf(r.capacitors);
  d.KeptInductorSeries = r.inductors ? CountOf(*r.inductors) : 0;
  d.KeptPairs = r.pairs ? 1 : 0;
  d.KeptWinding.clear();
  if (r.former && r.former->core) d.KeptWinding = r.former->core->name;
  if (r.former && !r.former->core)
    d.KeptWinding = Shortest(r.former->air.formMm) + ":" + Shortest(r.former->air.wireMm);
}

}  // namespace drenik
