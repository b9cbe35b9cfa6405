#include "synth/candidate_design.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/band_frequencies.h"
#include "analysis/ladder_batch.h"
#include "analysis/sweep.h"
#include "core/element_kinds.h"
#include "core/number_text.h"
#include "parts/chooser.h"
#include "synth/mask_bands.h"
#include "synth/responses.h"
#include "synthesis/design_edges.h"
#include "synthesis/e_series.h"
#include "synthesis/families.h"

namespace drenik {

void ApplyBuild(const SynthBuild& build, DesignRecord& d) {
  d.Qind = build.qind;
  d.InductorQLaw = build.qLaw;
  d.CapacitorQ = build.capacitorQ;
  d.WindingCapacitance = build.windingCapacitance;
  d.CapacitorEsl = build.capacitorEsl;
}

EngineReport SynthRecord(const SynthRequest& request, const DesignChoice& choice, DesignRecord& d) {
  const SynthBuild& build = request.build;
  if (EngineReport r = DesignInto(choice, d); !r.Ok()) return r;
  ApplyBuild(build, d);
  SetDisplaySweep(d);
  if (EngineReport r = AnalyzeSweep(d); !r.Ok()) return r;
  if (!build.parts) return {};
  // The chooser starts from the exact design on the display page's sweep,
  // as the display page's chosen-parts stage does, and keeps what the mask
  // asks.
  PartsRequest asked = *build.parts;
  asked.bands = BandsOfMask(request.mask, ResponseOf(request.response).highpass);
  PartsChoice parts;
  if (EngineReport r = ChooseParts(d, asked, parts); !r.Ok()) return r;
  ApplyParts(parts, d);
  return AnalyzeSweep(d);
}

ToleranceSetup SynthSetup(const SynthRequest& request, int trials) {
  ToleranceSetup s;
  s.ctolPercent = request.build.ctolPercent;
  s.ltolPercent = request.build.ltolPercent;
  s.distribution = request.build.distribution;
  s.trials = trials;
  s.seed = request.goal.seed;
  s.mask = request.mask;
  s.sensitivity = false;
  s.threads = request.goal.threads;
  return s;
}

Margins NominalMargins(const ToleranceDesign& design, const Mask& mask) {
  constexpr double kNone = std::numeric_limits<double>::infinity();
  Margins m{kNone, kNone};
  const std::vector<float> grid = BandGrid(design.freq, MaskBands(mask, design.highpass));
  const std::vector<MaskCheck> checks = MaskChecks(mask, grid, design.highpass);
  if (grid.empty()) return m;
  const LadderBatch batch(design.ladder, grid);
  const int n = batch.Points();
  std::vector<double> s21(static_cast<size_t>(n) * kBatchLanes), s11(s21.size());
  batch.Evaluate(UniformBatch(design.ladder), 0, n, s21.data(), s11.data());
  for (const MaskCheck& c : checks) {
    if (c.Points() == 0) continue;
    // The worst point of lane 0 (every lane holds the nominal values).
    double low = std::numeric_limits<double>::infinity(), high = -low;
    const std::vector<double>& ratio = c.kind == CheckKind::ReturnLoss ? s11 : s21;
    for (int i = c.first; i <= c.last; ++i) {
      const double v = ratio[static_cast<size_t>(i) * kBatchLanes];
      low = std::fmin(low, v), high = std::fmax(high, v);
    }
    double margin = 0;
    switch (c.kind) {
      case CheckKind::ReturnLoss:
        margin = -ReflectionDbOf(high) - c.db;
        break;
      case CheckKind::Loss:
        margin = c.db + TransmissionDbOf(low);
        break;
      case CheckKind::Stopband:
        margin = -TransmissionDbOf(high) - c.db;
        break;
    }
    if (std::isnan(margin)) margin = -kNone;
    double& side = c.kind == CheckKind::Stopband ? m.stop : m.pass;
    side = std::min(side, margin);
  }
  return m;
}

namespace {

// The shortest text the design page's boxes read back to the same single
// precision value the design was made with.
std::string BoxText(double v) {
  return RoundTripText(static_cast<float>(v));
}

}  // namespace

std::vector<std::string> ChoiceWords(const DesignChoice& c, const SynthBuild& build) {
  const FamilyInfo* f = FindFamily(c.family);
  std::vector<std::string> w = {"--family", f ? f->cliWord : ""};
  // A family of one order (Zelmar) takes no --order.
  if (f && f->orderChoice) w.insert(w.end(), {"--order", std::to_string(c.order)});
  w.insert(w.end(), {"--topology", c.topology});
  if (f && f->ripple.Offered()) w.insert(w.end(), {"--ripple", BoxText(c.ripple)});
  if (f && f->depth.Offered()) w.insert(w.end(), {"--stopband", BoxText(c.depth)});
  w.insert(w.end(), {"--impedance", c.rsource == 50 ? "50" : BoxText(c.rsource)});
  if (c.center > 0) w.insert(w.end(), {"--center", BoxText(c.center)});
  w.insert(w.end(), {"--bandwidth", BoxText(c.width)});
  if (build.parts) {
    const PartsRequest& p = *build.parts;
    w.insert(w.end(), {"--values", "chosen", "--cseries", InfoOf(p.capacitors).name});
    if (p.former && p.former->core) {
      w.insert(w.end(), {"--lseries", p.former->core->name});
    } else if (p.former) {
      w.insert(w.end(),
               {"--air-core", BoxText(p.former->air.formMm) + ":" + BoxText(p.former->air.wireMm)});
    } else if (p.inductors) {
      w.insert(w.end(), {"--lseries", InfoOf(*p.inductors).name});
    }
    if (p.pairs) w.push_back("--pairs");
  }
  return w;
}

void CountParts(const DesignRecord& d, int& inductors, int& capacitors) {
  inductors = capacitors = 0;
  const int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    const ElementFacts* f = FactsOf(d.ElementType[j]);
    if (!f) continue;
    if (f->hasL && d.L[j] != 0) ++inductors;
    if (f->hasC && d.C[j] != 0) ++capacitors;
  }
}

}  // namespace drenik
