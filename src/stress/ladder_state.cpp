#include "stress/ladder_state.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/element_models.h"

namespace drenik {
namespace {

Phasor P(models::Cplx<double> c) {
  return {c.re, c.im};
}

// A position at w: the impedance of a series arm or the admittance of a
// shunt arm, as the analysis's section, and the parts' own terminal
// impedance (inductor) or admittance (inductor beside a capacitor).
struct Section {
  const ElementFacts* facts = nullptr;  // nullptr: no model, a wire
  Phasor value;                         // Z (series arm) or Y (shunt arm)
  Phasor zl, yl, zc;                    // the inductor's Z and Y, the capacitor's Z
};

Section SectionAt(const Ladder& ladder, int j, double w, const models::Losses<double>& q) {
  Section s;
  const ElementFacts* f = FactsOf(ladder.kind[j]);
  if (!Modelled(f, ladder.bandBranches)) return s;
  s.facts = f;
  const double l = ladder.L[j], c = ladder.C[j];
  const bool series = f->arm == Arm::Series;
  // A missing capacitor is 10 Mohm alone in the series arm or in a series
  // L-C branch, 100 Gohm anywhere else (the analysis's stand-ins).
  const double open = series && f->joining != Joining::Parallel ? models::kSeriesOpenReactance
                                                                : models::kShuntOpenReactance;
  if (f->hasL) {
    s.zl = P(models::SeriesInductor(w, l, q));
    // A shunt or parallel inductor of 0 H is refused by LadderFault().
    if (!series || f->joining == Joining::Parallel) s.yl = P(models::InductorAdmittance(w, l, q));
  }
  if (f->hasC) s.zc = P(models::CapacitorImpedance(w, c, q, open));
  switch (f->joining) {
    case Joining::Single:
      if (series) {
        s.value = f->hasL ? s.zl : s.zc;
      } else {
        s.value = f->hasL ? s.yl : 1.0 / s.zc;
      }
      break;
    case Joining::InSeries: {
      Phasor z = s.zl + s.zc;
      // An exactly resonant trap keeps a finite admittance.
      if (!series && z.imag() == 0) z.imag(models::kTinyPart);
      s.value = series ? z : 1.0 / z;
      break;
    }
    case Joining::Parallel:
    case Joining::Separate: {
      // The analysis puts a fixed 100 Gohm across every tank.
      Phasor y = s.yl + 1.0 / s.zc;
      if (f->joining == Joining::Parallel) y += 1 / models::kTankShunt;
      s.value = series ? 1.0 / y : y;
      break;
    }
  }
  return s;
}

}  // namespace

std::vector<LadderPart> LadderParts(const Ladder& ladder) {
  std::vector<LadderPart> parts;
  for (int j = 1; j <= ladder.stages && j < static_cast<int>(ladder.kind.size()); ++j) {
    const ElementFacts* f = FactsOf(ladder.kind[j]);
    if (!Modelled(f, ladder.bandBranches)) continue;
    const bool hasC = f->hasC && ladder.C[j] != 0;
    if (f->joining == Joining::InSeries && !hasC) continue;
    if (f->hasL) parts.push_back({PartType::Inductor, j, ladder.L[j]});
    if (hasC) parts.push_back({PartType::Capacitor, j, ladder.C[j]});
  }
  return parts;
}

LadderResponse RespondAt(const Ladder& ladder, const std::vector<LadderPart>& parts, double f) {
  const double w = 2 * M_PI * f;
  const models::Losses<double> q = PartLossesAt(ladder, w);
  const int stages = std::clamp(ladder.stages, 0, static_cast<int>(ladder.kind.size()) - 1);

  // From the load back to the source, once for (Vout, Iout) = (1, 0) and
  // once for (0, 1): each position's branch voltage and current.
  std::vector<Section> sections(stages + 1);
  std::vector<std::array<Phasor, 2>> branchV(stages + 1), branchI(stages + 1);
  Phasor v[2] = {1, 0}, i[2] = {0, 1};
  for (int j = stages; j >= 1; --j) {
    Section& s = sections[j] = SectionAt(ladder, j, w, q);
    if (!s.facts) continue;
    for (int b = 0; b < 2; ++b) {
      if (s.facts->arm == Arm::Series) {
        branchV[j][b] = s.value * i[b], branchI[j][b] = i[b];
        v[b] += branchV[j][b];
      } else {
        branchV[j][b] = v[b], branchI[j][b] = s.value * v[b];
        i[b] += branchI[j][b];
      }
    }
  }
  LadderResponse r;
  r.f = f;
  for (int b = 0; b < 2; ++b) {
    r.vin[b] = v[b], r.iin[b] = i[b];
    r.source[b] = v[b] + ladder.rsource * i[b];
  }
  r.parts.reserve(parts.size());
  for (const LadderPart& p : parts) {
    const Section& s = sections[p.position];
    const bool inductor = p.type == PartType::Inductor;
    PartResponse pr;
    pr.inductor = inductor;
    for (int b = 0; b < 2; ++b) {
      const Phasor vb = branchV[p.position][b], ib = branchI[p.position][b];
      // The part's terminal voltage and current within its branch.
      Phasor vt = vb, it = ib;
      if (s.facts->joining == Joining::InSeries) vt = (inductor ? s.zl : s.zc) * ib;
      if (s.facts->joining == Joining::Parallel || s.facts->joining == Joining::Separate)
        it = inductor ? s.yl * vb : vb / s.zc;
      if (inductor) {
        pr.v[b] = vt;
        // Without a winding capacitance the terminal current is the winding's.
        pr.i[b] = q.cp == 0 ? it : vt / Phasor(std::fabs(w * p.value * q.perQind), w * p.value);
      } else {
        pr.v[b] = vt - Phasor(0, w * q.esl) * it;
        pr.i[b] = it;
      }
    }
    pr.loss = inductor ? std::fabs(w * p.value * q.perQind) : std::fabs(w * p.value * q.perQcap);
    r.parts.push_back(pr);
  }
  return r;
}

double LadderState::Dissipated() const {
  double sum = 0;
  for (const PartState& p : parts) sum += p.power;
  return sum;
}

LadderState StateAt(const LadderResponse& r, Phasor zload, double emf) {
  // Iout = Vout / zload, and the source fixes Vout.
  const Phasor per = 1.0 / zload;
  const Phasor vout = emf / (r.source[0] + r.source[1] * per);
  auto at = [&](const Phasor(&x)[2]) { return vout * (x[0] + x[1] * per); };
  LadderState s;
  s.vin = at(r.vin), s.iin = at(r.iin);
  s.vout = vout, s.iout = vout * per;
  s.powerIn = std::real(s.vin * std::conj(s.iin));
  s.powerOut = std::real(s.vout * std::conj(s.iout));
  s.parts.reserve(r.parts.size());
  for (const PartResponse& p : r.parts) {
    PartState st{at(p.v), at(p.i), 0};
    st.power = p.loss * std::norm(p.inductor ? st.i : st.v);
    s.parts.push_back(st);
  }
  return s;
}

}  // namespace drenik
