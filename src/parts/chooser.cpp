#include "parts/chooser.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "analysis/sweep.h"
#include "parts/search.h"
#include "parts/series_values.h"
#include "parts/trade_note.h"
#include "synthesis/standard_values.h"

namespace drenik {
namespace {

// How much stopband attenuation the chosen set may give away, dB.
constexpr double kStopbandSlack = 1.0;
// Candidates are measured at every eighth sweep point of each band, at its
// ends, and at the two points either side of each turning point of the exact
// and 5% C responses, where the worst values sit.
constexpr int kStride = 8;
constexpr int kAround = 2;
// The share of a search's work that its first pass takes; each round of
// refinement after it takes an equal part of the rest.
constexpr double kSearchShare = 0.8;
// The share of a choice that its first search takes, where a second one,
// held to plain rounding, follows.
constexpr double kFirstSearchShare = 0.6;
// How much worse, dB, the whole sweep may find the chosen set than the probe
// did before the probe is filled in (at most twice).
constexpr double kProbeTolerance = 0.02;
constexpr int kRefinements = 2;

// The sweep points of one band to measure at. `curve` is the response whose
// maxima are the band's worst points (the reflection in the passband, the
// transmission in the stopband); the exact design's maxima, with the band's
// ends, go to `peaks` when asked for.
std::vector<float> BandProbe(const std::vector<const DesignRecord*>& responses,
                             const SweepArray DesignRecord::*curve,
                             bool (*inBand)(const Bands&, double), const Bands& bands,
                             std::vector<float>* peaks = nullptr) {
  const DesignRecord& exact = *responses.front();
  const int n = std::clamp<int>(exact.NrIntervals, -1, kSweepSlots - 1);
  std::vector<int> band;
  for (int i = 0; i <= n; ++i)
    if (inBand(bands, exact.Freq[i])) band.push_back(i);
  if (band.empty()) return {};
  const int size = static_cast<int>(band.size());
  std::vector<bool> marked(band.size());
  for (int k = 0; k < size; k += kStride) marked[k] = true;
  marked.front() = marked.back() = true;
  for (const DesignRecord* d : responses) {
    const SweepArray& v = d->*curve;
    for (int k = 1; k + 1 < size; ++k) {
      if (v[band[k]] < v[band[k - 1]] || v[band[k]] < v[band[k + 1]]) continue;
      for (int a = std::max(0, k - kAround); a <= std::min(size - 1, k + kAround); ++a)
        marked[a] = true;
      if (peaks && d == &exact) peaks->push_back(exact.Freq[band[k]]);
    }
  }
  if (peaks) {
    peaks->push_back(exact.Freq[band.front()]);
    peaks->push_back(exact.Freq[band.back()]);
  }
  std::vector<float> points;
  for (int k = 0; k < size; ++k)
    if (marked[k]) points.push_back(exact.Freq[band[k]]);
  return points;
}

// The nearest single part first, then the other neighbour, then the pairs
// that come nearer the exact value than the nearest single part.
// Nothing for a value no capacitor can have.
std::optional<CapSlot> CapacitorSlot(int position, double exact, const PartsRequest& request) {
  const ESeries series = request.capacitors;
  CapSlot slot{position, exact, {}};
  const std::optional<Bracket> b = SeriesBracket(series, exact);
  if (!b) return std::nullopt;
  const double nearest = *NearestInSeries(series, exact);
  for (double v : {nearest, nearest == b->lower ? b->upper : b->lower})
    slot.options.push_back({Stored(v), {v}});
  if (request.pairs) {
    const double singleError = std::fabs(std::log(nearest / exact));
    for (const PartPair& p : PairsAround(series, exact))
      if (std::fabs(std::log(p.Sum() / exact)) < singleError)
        slot.options.push_back({Stored(p.Sum()), {p.larger, p.smaller}});
  }
  return slot;
}

std::vector<PositionParts> ExactPositions(const DesignRecord& d) {
  std::vector<PositionParts> positions;
  for (int j = 1; j <= d.Stages; ++j) {
    PositionParts p;
    p.position = j;
    p.kind = KindOf(d.ElementType[j]);
    p.exactL = p.L = d.L[j];
    p.exactC = p.C = d.C[j];
    positions.push_back(p);
  }
  return positions;
}

void ApplyPositions(const std::vector<PositionParts>& positions, DesignRecord& d) {
  for (const PositionParts& p : positions) {
    if (p.position < 1 || p.position > kMaxPositions) continue;
    d.L[static_cast<size_t>(p.position)] = p.L;
    d.C[static_cast<size_t>(p.position)] = p.C;
  }
}

// The 5% C stage as a choice: E24 capacitors, inductors retuned.
std::vector<PositionParts> StandardPositions(const DesignRecord& exact,
                                             const DesignRecord& standard) {
  std::vector<PositionParts> positions = ExactPositions(exact);
  for (PositionParts& p : positions) {
    p.L = standard.L[p.position];
    p.C = standard.C[p.position];
    if (const std::optional<double> c = NearestInSeries(ESeries::E24, p.C)) p.capacitors = {*c};
    if (p.L > 0 && p.exactL > 0) p.inductor = p.L;
  }
  return positions;
}

// Plain rounding, the least the chooser hands back: each capacitor as its
// nearest single part and each inductor at its nearest allowed value, with
// no retuning.
std::vector<PositionParts> RoundedPositions(const DesignRecord& exact, const SearchInput& in,
                                            const std::vector<double>& inductors) {
  std::vector<PositionParts> positions = ExactPositions(exact);
  for (const CapSlot& slot : in.caps) {
    PositionParts& p = positions[static_cast<size_t>(slot.position - 1)];
    p.capacitors = slot.options[0].parts;
    p.C = static_cast<float>(slot.options[0].value);
  }
  for (size_t i = 0; i < in.inductors.size(); ++i) {
    PositionParts& p = positions[static_cast<size_t>(in.inductors[i].position - 1)];
    p.inductor = inductors[i];
    p.L = static_cast<float>(p.inductor);
    if (const std::optional<Former>& f = in.inductorValues.former)
      p.turns = WindingFor(*f, p.inductor).turns;
  }
  return positions;
}

// The search's result as parts per position.
void TakeResult(const SearchInput& in, const SearchResult& result,
                std::vector<PositionParts>& positions) {
  for (size_t k = 0; k < in.caps.size(); ++k) {
    const CapOption& o = in.caps[k].options[static_cast<size_t>(result.capOption[k])];
    PositionParts& p = positions[static_cast<size_t>(in.caps[k].position - 1)];
    p.capacitors = o.parts;
    p.C = static_cast<float>(o.value);
  }
  for (size_t i = 0; i < in.inductors.size(); ++i) {
    PositionParts& p = positions[static_cast<size_t>(in.inductors[i].position - 1)];
    const double l = result.inductors[i];
    p.inductor = NearestInductor(in.inductorValues, l).value_or(l);
    p.L = static_cast<float>(l);
    if (const std::optional<Former>& f = in.inductorValues.former)
      p.turns = WindingFor(*f, p.inductor).turns;
  }
}

// A search's set and its figures on the whole sweep.
struct Searched {
  std::vector<PositionParts> positions;
  Figures figures;
};

// The search judges candidates at the probe's points, taken from the
// responses of `stages` (the exact design first). Where the whole sweep of
// its result shows a worse point that the probe missed (the response's
// turning points moved), the probe takes in the new turning points and the
// inductors are polished again.
EngineReport SearchAndRefine(SearchInput& in, const DesignRecord& design,
                             std::vector<const DesignRecord*> stages, const Bands& bands,
                             const std::function<void(double)>& done, Searched& out) {
  // Where the stopband reaches past the sweep (a Cauer edge beyond its end,
  // minima further out), the candidates are measured at its own frequencies
  // there too. The passband's turning points lie within the sweep, and
  // the figures of the result, which take in the whole of both bands, send
  // the search back should it miss one.
  const std::vector<float> beyond = BeyondSweep(*stages.front(), bands).stopband;
  const auto probe = [&](std::vector<float>* peaks) {
    in.probe.passband = BandProbe(stages, &DesignRecord::Reflection, &InPassband, bands);
    in.probe.stopband = BandProbe(stages, &DesignRecord::Transmission, &InStopband, bands, peaks);
    in.probe.stopband.insert(in.probe.stopband.end(), beyond.begin(), beyond.end());
  };
  in.stopPeaks.clear();
  probe(&in.stopPeaks);
  if (in.stopPeaks.empty()) in.stopPeaks = beyond;

  in.progress = [&done](double share) { done(kSearchShare * share); };
  SearchResult result = SearchParts(in);
  if (!result.fault.empty()) return EngineReport::Fault(result.fault);
  DesignRecord chosen = design;
  stages.push_back(&chosen);
  for (int round = 0;; ++round) {
    TakeResult(in, result, out.positions);
    chosen = design;
    ApplyPositions(out.positions, chosen);
    if (EngineReport r = AnalyzeSweep(chosen); !r.Ok()) return r;
    out.figures = FiguresOf(chosen, bands);
    const Merit swept = in.judge.Of(out.figures, result.merit.distance);
    if (round == kRefinements || result.merit.primary - swept.primary <= kProbeTolerance) break;
    done(kSearchShare + (1 - kSearchShare) * (round + 1) / (kRefinements + 1));
    probe(nullptr);
    result = RefineParts(in, result);
  }
  return {};
}

}  // namespace

bool SameParts(const PartsRequest& a, const PartsRequest& b) {
  const auto former = [](const PartsRequest& r) { return r.former ? r.former->Name() : ""; };
  return a.capacitors == b.capacitors && a.inductors == b.inductors && a.pairs == b.pairs &&
         former(a) == former(b);
}

double ErrorPercent(double chosen, double exact) {
  return exact == 0 ? 0 : (chosen / exact - 1) * 100;
}

EngineReport ChooseParts(const DesignRecord& design, const PartsRequest& request,
                         PartsChoice& choice, const PartsProgress& progress) {
  const auto done = [&progress](double share) {
    if (progress) progress(share);
  };
  choice = PartsChoice{};
  choice.request = request;
  DesignRecord exact = design;
  if (EngineReport r = AnalyzeSweep(exact); !r.Ok()) return r;
  DesignRecord standard = design;
  for (auto step : {&NearestParts, &CapsRetuneInductors})
    if (EngineReport r = step(standard); !r.Ok()) return r;
  if (EngineReport r = AnalyzeSweep(standard); !r.Ok()) return r;
  const Bands bands = request.bands ? *request.bands : BandsOf(exact);
  choice.exact = FiguresOf(exact, bands);
  choice.standard = FiguresOf(standard, bands);

  SearchInput in;
  in.exact = LadderOf(exact);
  in.inductorValues = {request.former ? std::nullopt : request.inductors, request.former};
  in.judge = {choice.exact.returnLoss, choice.exact.stopband - kStopbandSlack};
  choice.positions = ExactPositions(exact);
  for (const PositionParts& p : choice.positions) {
    const ElementFacts* f = FactsOf(p.kind);
    if (!Modelled(f, in.exact.bandBranches)) continue;
    if (f->hasC && p.exactC > 0) {
      std::optional<CapSlot> slot = CapacitorSlot(p.position, p.exactC, request);
      if (!slot)
        return EngineReport::Fault("Cannot choose parts: C" + std::to_string(p.position) +
                                   " is a value no capacitor can have.");
      in.caps.push_back(std::move(*slot));
    }
    if (f->hasL && p.exactL > 0) in.inductors.push_back({p.position, p.exactL});
  }
  // Plain rounding: every capacitor's nearest option, every inductor's
  // nearest allowed value.
  std::vector<double> roundedInductors;
  for (const InductorSlot& l : in.inductors) {
    const std::optional<double> nearest = NearestInductor(in.inductorValues, l.exact);
    if (!nearest)
      return EngineReport::Fault("Cannot choose parts: L" + std::to_string(l.position) +
                                 " is a value no inductor can have.");
    roundedInductors.push_back(Stored(*nearest));
  }
  const std::vector<PositionParts> rounded = RoundedPositions(exact, in, roundedInductors);
  DesignRecord roundedRecord = design;
  ApplyPositions(rounded, roundedRecord);
  if (EngineReport r = AnalyzeSweep(roundedRecord); !r.Ok()) return r;
  choice.rounded = FiguresOf(roundedRecord, bands);

  // First the stopband within its slack at whatever cost to the return
  // loss, which nearly every design affords.
  Searched first{choice.positions, {}};
  const auto firstDone = [&done](double share) { done(kFirstSearchShare * share); };
  if (EngineReport r = SearchAndRefine(in, design, {&exact, &standard}, bands, firstDone, first);
      !r.Ok())
    return r;
  choice.positions = first.positions;
  choice.chosen = first.figures;
  // Where that set matches worse than plain rounding or still loses the
  // stopband, a second search is held to plain rounding and weighs what it
  // cannot keep (merit.h); it starts from rounding too, and steps through
  // the allowed values one part at a time. Inductors from a series or in
  // whole turns always take it: the first search rounds its continuous
  // inductors only once, and their coarse steps often leave a better set
  // a step or two away. The better of the two sets is kept.
  if (in.inductorValues.Restricted() || choice.chosen.returnLoss < choice.rounded.returnLoss ||
      !in.judge.StopbandKept(choice.chosen)) {
    in.judge.roundedReturnLoss = choice.rounded.returnLoss;
    in.judge.exactStopband = choice.exact.stopband;
    in.roundedInductors = roundedInductors;
    Searched second{ExactPositions(exact), {}};
    const auto secondDone = [&done](double share) {
      done(kFirstSearchShare + (1 - kFirstSearchShare) * share);
    };
    if (EngineReport r = SearchAndRefine(in, design, {&exact, &standard, &roundedRecord}, bands,
                                         secondDone, second);
        !r.Ok())
      return r;
    if (in.judge.Of(second.figures, 0).primary > in.judge.Of(choice.chosen, 0).primary) {
      choice.positions = second.positions;
      choice.chosen = second.figures;
    }
  }

  // The 5% C stage is a set of the requested parts when they are single
  // E24 capacitors and wound inductors; never return less than it. Its
  // return loss is the figure the user compares, so a stage that matches
  // better wins even where it gives away more stopband than the search
  // allows itself; so does one that keeps the stopband the chosen set lost
  // (or more of it), as long as it is no worse than plain rounding.
  Judge judge = in.judge;
  judge.roundedReturnLoss = choice.rounded.returnLoss;
  judge.exactStopband = choice.exact.stopband;
  const bool standardBetter =
      choice.standard.returnLoss > choice.chosen.returnLoss ||
      (!judge.StopbandKept(choice.chosen) &&
       (judge.StopbandKept(choice.standard) || choice.standard.stopband > choice.chosen.stopband));
  if (request.capacitors == ESeries::E24 && !request.inductors && !request.former &&
      standardBetter && choice.standard.returnLoss >= choice.rounded.returnLoss) {
    choice.positions = StandardPositions(exact, standard);
    choice.chosen = choice.standard;
    choice.keptStandard = true;
  }
  // The search judges at its probe; on the whole sweep its set may still
  // fall below plain rounding, which is then what the user gets.
  if (judge.Of(choice.rounded, 0).primary > judge.Of(choice.chosen, 0).primary) {
    choice.positions = rounded;
    choice.chosen = choice.rounded;
    choice.keptStandard = false;
    choice.keptRounded = true;
  }
  if (!judge.StopbandKept(choice.chosen))
    choice.note = TradeNote(choice, bands.band ? std::sqrt(bands.f1 * bands.f2) : bands.cutoff);
  done(1);
  return {};
}

void ApplyParts(const PartsChoice& choice, DesignRecord& d) {
  ApplyPositions(choice.positions, d);
}

}  // namespace drenik
