// The stock-part chooser on any design the command line can ask for. The
// first bytes choose the family, order, topology, band, Q, part models and
// the values the inductors may take (an E series, whole turns on a core or
// an air-core form), each number spread over decades; the pages design it
// and the chooser either returns parts the record can keep (positive and
// finite) or refuses with a message. It must return: a value it cannot
// bracket once spun the search forever. The bytes after the choices, read
// as doubles, go to the series brackets, which have neighbours for every
// positive float and none for anything else.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "cli/options.h"
#include "cli/run_design.h"
#include "parts/inductor_values.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace {

using namespace drenik;

constexpr size_t kChoiceBytes = 16;

// 10^(low .. high), spread by two bytes.
std::string Decades(const uint8_t* b, double low, double high) {
  const double u = (b[0] * 256 + b[1]) / 65535.0;
  return std::to_string(std::pow(10.0, low + (high - low) * u));
}

bool Keepable(double v) {
  return v > 0 && std::isfinite(static_cast<float>(v));
}

void CheckBrackets(double v) {
  const bool positive =
      v >= std::numeric_limits<float>::min() && v <= std::numeric_limits<float>::max();
  for (ESeries s : {ESeries::E6, ESeries::E96}) {
    const std::optional<Bracket> b = SeriesBracket(s, v);
    if (b.has_value() != positive) std::abort();
    if (b && !(b->lower <= v * (1 + 1e-6) && v < b->upper)) std::abort();
  }
  const InductorValues turns{std::nullopt, CoreNamed("T37-2")};
  const std::optional<Bracket> t = InductorBracket(turns, v);
  if (t.has_value() != positive || (t && !(t->lower <= t->upper))) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  for (size_t at = kChoiceBytes; at + sizeof(double) <= size; at += sizeof(double)) {
    double v;
    std::memcpy(&v, data + at, sizeof v);
    CheckBrackets(v);
  }
  if (size < kChoiceBytes) return 0;
  const uint8_t* b = data;

  cli::CliOptions o;
  o.command = cli::Command::Parts;
  cli::Choices& c = o.choices;
  const FamilyInfo& family = Families()[b[0] % Families().size()];
  const TopologyInfo& topology = Topologies()[b[1] % Topologies().size()];
  c.familyOption = family.optionName;
  if (!family.fixedOrder) c.order = 3 + b[2] % 5;
  c.topology = topology.name;
  if (topology.band) c.center = Decades(b + 3, 4, 9);
  // A band's width as a share of its centre from 1e-5 to 1.6, else a cutoff.
  c.bandwidth = topology.band
                    ? std::to_string(std::stod(*c.center) * std::pow(10.0, -5 + 5.2 * b[5] / 255.0))
                    : Decades(b + 5, 0, 10);
  if (b[7] % 4) c.q = Decades(b + 7, 0.3, 3.5);
  if (b[8] & 1) c.models.windingCapacitance = static_cast<float>(std::pow(10.0, -15 + b[9] / 40.0));
  if (b[8] & 2) c.models.capacitorEsl = static_cast<float>(std::pow(10.0, -12 + b[9] / 40.0));
  if (b[8] & 4) c.models.capacitorQ = static_cast<float>(std::pow(10.0, b[10] / 60.0));
  c.models.qLaw = static_cast<QLaw>(b[8] / 8 % 3);
  o.parts.request.capacitors = static_cast<ESeries>(b[11] % 5);
  o.parts.request.pairs = b[11] & 8;
  const int inductors = b[12] % 8;
  if (inductors >= 1 && inductors <= 5)
    o.parts.request.inductors = static_cast<ESeries>(inductors - 1);
  if (inductors == 6)
    o.parts.request.former = Former{&ToroidCores()[b[13] % ToroidCores().size()], {}};
  // An air-core form of 1 to 1000 mm, wire of 0.01 to 10 mm.
  if (inductors == 7)
    o.parts.request.former =
        Former{nullptr, {std::pow(10.0, b[13] / 85.0), std::pow(10.0, -2 + b[14] / 85.0)}};

  cli::ConsolePlatform platform;
  std::unique_ptr<cli::DesignResult> r;
  try {
    r = cli::RunDesign(o, platform);
  } catch (const cli::UsageError&) {
    return 0;
  } catch (const cli::DesignFailure&) {
    return 0;
  }
  if (!r->parts) std::abort();  // parts returns a choice or refuses
  for (const PositionParts& p : r->parts->positions) {
    if (p.inductor != 0 && !Keepable(p.inductor)) std::abort();
    for (double part : p.capacitors)
      if (!Keepable(part)) std::abort();
  }
  return 0;
}
