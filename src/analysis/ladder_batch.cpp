// The batch form of the ladder kernel: the chain matrix of every lane built
// position by position with the shared element models, then the two power
// ratios from the terminations. With a source Rs and a load RL,
// P = A + B/RL and Q = C Rs + D Rs/RL give Den = P + Q, the reflection
// (Zin - Rs)/(Zin + Rs) = (P - Q)/(P + Q) and the transducer gain
// 4 Rs / (RL |Den|^2): one division per point for both.

#include "analysis/ladder_batch.h"

#include <cmath>
#include <cstring>

#include "analysis/element_models.h"
#include "analysis/lanes.h"

namespace drenik {
namespace {

using models::Any;
using models::Cplx;
using models::Losses;
using models::Select;
using models::Splat;

static_assert(kBatchLanes == kLaneCount);

// Points handled together: each position's section is applied to all of
// them before the next position, so the loop over points carries no
// dependence (the divisions of neighbouring points overlap) and whatever
// depends on the position alone is worked out once.
constexpr int kChunk = 16;

// The chain matrices of up to kChunk points, one complex entry per point.
template <typename V>
struct ChainChunk {
  V ar[kChunk], ai[kChunk], br[kChunk], bi[kChunk], cr[kChunk], ci[kChunk], dr[kChunk], di[kChunk];
};

template <typename V>
inline __attribute__((always_inline)) double FirstLane(const V& v) {
  double first;
  std::memcpy(&first, &v, sizeof first);
  return first;
}

// The losses at point i: the ladder's own, or with the inductor's Q of its
// law at that point (perQind per point; nullptr for a constant Q).
template <typename V>
inline __attribute__((always_inline)) Losses<V> PointLosses(const Losses<V>& q,
                                                            const double* perQind, int i) {
  if (!perQind) return q;
  return models::LossesAt(q, perQind[i]);
}

// The section of a position of kind K at angular frequency w.
template <ElementKind K, typename V>
inline __attribute__((always_inline)) Cplx<V> SectionAt(V w, V l, V c, const Losses<V>& q) {
  if constexpr (K == ElementKind::SeriesL) return models::SeriesInductor(w, l, q);
  if constexpr (K == ElementKind::ShuntL) return models::ShuntInductor(w, l, q);
  if constexpr (K == ElementKind::SeriesC) return models::SeriesCapacitor(w, c, q);
  if constexpr (K == ElementKind::ShuntC) return models::ShuntCapacitor(w, c, q);
  if constexpr (K == ElementKind::ShuntTrap) return models::ShuntTrap(w, l, c, q);
  if constexpr (K == ElementKind::SeriesLC) return models::SeriesLC(w, l, c, q);
  if constexpr (K == ElementKind::ShuntLC) return models::ShuntLC(w, l, c, q);
}

// The sections of a position of kind K at n angular frequencies.
template <ElementKind K, typename V>
inline __attribute__((always_inline)) void Sections(const double* omega, const double* perQ, int n,
                                                    V l, V c, const Losses<V>& q, Cplx<V>* s) {
  for (int i = 0; i < n; ++i)
    s[i] = SectionAt<K>(Splat<V>(omega[i]), l, c, PointLosses(q, perQ, i));
}

// A parallel tank in the series arm. Within a hair of resonance the tank is
// worked out the long way round; lanes are independent, so the lanes and
// points that need it (hardly ever any) take the double path one by one.
template <ElementKind K, typename V>
requires(K == ElementKind::SeriesTank) inline
    __attribute__((always_inline)) void Sections(const double* omega, const double* perQ, int n,
                                                 V l, V c, const Losses<V>& q, Cplx<V>* s) {
  V net[kChunk], bc[kChunk];
  auto near = models::TankIsNearResonance(Splat<V>(1), Splat<V>(0));  // no lane near yet
  for (int i = 0; i < n; ++i) {
    const Cplx<V> y =
        models::TankAdmittance(Splat<V>(omega[i]), l, c, PointLosses(q, perQ, i), bc[i]);
    net[i] = y.im;
    s[i] = models::Reciprocal(y.re, y.im);
    near = near | models::TankIsNearResonance(net[i], bc[i]);
  }
  if (!q.Plain() || !Any(near)) return;
  for (int i = 0; i < n; ++i) {
    double b[kBatchLanes], cb[kBatchLanes], re[kBatchLanes], im[kBatchLanes], lk[kBatchLanes],
        ck[kBatchLanes];
    const int lanes = sizeof(V) / sizeof(double);
    std::memcpy(b, &net[i], sizeof(V)), std::memcpy(cb, &bc[i], sizeof(V));
    std::memcpy(re, &s[i].re, sizeof(V)), std::memcpy(im, &s[i].im, sizeof(V));
    std::memcpy(lk, &l, sizeof(V)), std::memcpy(ck, &c, sizeof(V));
    for (int k = 0; k < lanes; ++k) {
      if (!models::TankIsNearResonance(b[k], cb[k])) continue;
      const Losses<V> qi = PointLosses(q, perQ, i);
      const Cplx<double> z =
          models::TankNearResonance(omega[i], lk[k], ck[k], FirstLane(qi.qind), FirstLane(qi.qcap));
      re[k] = z.re, im[k] = z.im;
    }
    std::memcpy(&s[i].re, re, sizeof(V)), std::memcpy(&s[i].im, im, sizeof(V));
  }
}

// Multiplies the chain of point i by a series section [1 Z; 0 1] or a shunt
// section [1 0; Y 1].
template <typename V>
inline __attribute__((always_inline)) void Multiply(ChainChunk<V>& m, int i, bool series,
                                                    const Cplx<V>& s) {
  if (series) {  // B += A Z, D += C Z
    m.br[i] = (m.ar[i] * s.re - m.ai[i] * s.im) + m.br[i];
    m.bi[i] = (m.ar[i] * s.im + m.ai[i] * s.re) + m.bi[i];
    m.dr[i] = (m.cr[i] * s.re - m.ci[i] * s.im) + m.dr[i];
    m.di[i] = (m.cr[i] * s.im + m.ci[i] * s.re) + m.di[i];
  } else {  // A += B Y, C += D Y
    m.ar[i] = m.ar[i] + (m.br[i] * s.re - m.bi[i] * s.im);
    m.ai[i] = m.ai[i] + (m.br[i] * s.im + m.bi[i] * s.re);
    m.cr[i] = m.cr[i] + (m.dr[i] * s.re - m.di[i] * s.im);
    m.ci[i] = m.ci[i] + (m.dr[i] * s.im + m.di[i] * s.re);
  }
}

// Multiplies the chain of every point by the section of a position of kind
// K: a series impedance [1 Z; 0 1] or a shunt admittance [1 0; Y 1].
template <ElementKind K, typename V>
inline __attribute__((always_inline)) void Apply(ChainChunk<V>& m, const double* omega,
                                                 const double* perQ, int n, bool series,
                                                 bool identity, V l, V c, const Losses<V>& q) {
  // Sections one point at a time where no point needs a second look.
  if constexpr (K != ElementKind::SeriesTank) {
    if (!identity) {
      for (int i = 0; i < n; ++i)
        Multiply(m, i, series, SectionAt<K>(Splat<V>(omega[i]), l, c, PointLosses(q, perQ, i)));
      return;
    }
  }
  Cplx<V> sections[kChunk];
  Sections<K>(omega, perQ, n, l, c, q, sections);
  // On the identity the product is the section itself.
  if (identity) {
    for (int i = 0; i < n; ++i) {
      if (series)
        m.br[i] = sections[i].re, m.bi[i] = sections[i].im;
      else
        m.cr[i] = sections[i].re, m.ci[i] = sections[i].im;
    }
    return;
  }
  for (int i = 0; i < n; ++i) Multiply(m, i, series, sections[i]);
}

// |S21|^2 and |S11|^2 of the value sets in l and c (positions 1..stages) at
// n <= kChunk angular frequencies; series[j] tells the arm of position j.
template <typename V>
inline __attribute__((always_inline)) void ChunkPowers(const Ladder& ladder, const bool* series,
                                                       const Losses<V>& q, const double* omega,
                                                       const double* perQ, int n, const V* l,
                                                       const V* c, V* s21, V* s11) {
  ChainChunk<V> m;
  for (int i = 0; i < n; ++i) {
    m.ar[i] = m.dr[i] = Splat<V>(1);
    m.ai[i] = m.br[i] = m.bi[i] = m.cr[i] = m.ci[i] = m.di[i] = Splat<V>(0);
  }
  bool identity = true;  // no section applied yet
  for (int j = 1; j <= ladder.stages; ++j) {
    switch (ladder.kind[j]) {
#define DRENIK_APPLY(kind)                                                           \
  case ElementKind::kind:                                                            \
    Apply<ElementKind::kind>(m, omega, perQ, n, series[j], identity, l[j], c[j], q); \
    identity = false;                                                                \
    break;
      DRENIK_APPLY(SeriesL)
      DRENIK_APPLY(ShuntL)
      DRENIK_APPLY(SeriesC)
      DRENIK_APPLY(ShuntC)
      DRENIK_APPLY(ShuntTrap)
      DRENIK_APPLY(SeriesTank)
#undef DRENIK_APPLY
      // The branches of a band design; in any other ladder a wire.
      case ElementKind::SeriesLC:
        if (!ladder.bandBranches) break;
        Apply<ElementKind::SeriesLC>(m, omega, perQ, n, series[j], identity, l[j], c[j], q);
        identity = false;
        break;
      case ElementKind::ShuntLC:
        if (!ladder.bandBranches) break;
        Apply<ElementKind::ShuntLC>(m, omega, perQ, n, series[j], identity, l[j], c[j], q);
        identity = false;
        break;
      default:  // no model: a wire
        break;
    }
  }
  const double rs = ladder.rsource, perRl = 1 / ladder.rload, rsPerRl = rs * perRl;
  const double gain = 4 * rs * perRl;
  for (int i = 0; i < n; ++i) {
    const V pr = m.ar[i] + m.br[i] * perRl, pi = m.ai[i] + m.bi[i] * perRl;
    const V qr = m.cr[i] * rs + m.dr[i] * rsPerRl, qi = m.ci[i] * rs + m.di[i] * rsPerRl;
    V denr = pr + qr, deni = pi + qi;
    denr = Select(denr == 0, Splat<V>(models::kTinyPart), denr);
    deni = Select(deni == 0, Splat<V>(models::kTinyPart), deni);
    const V numr = pr - qr, numi = pi - qi;
    const V perMag2 = 1 / (denr * denr + deni * deni);
    s21[i] = perMag2 * gain;
    s11[i] = (numr * numr + numi * numi) * perMag2;
  }
}

// Whether each position sits in the series arm.
void SeriesArms(const Ladder& ladder, bool* series) {
  for (int j = 1; j <= ladder.stages; ++j) {
    const ElementFacts* f = FactsOf(ladder.kind[j]);
    series[j] = f && f->arm == Arm::Series;
  }
}

template <typename V>
inline __attribute__((always_inline)) Losses<V> LossesOf(const Ladder& ladder) {
  return {Splat<V>(ladder.qind),
          Splat<V>(ladder.qcap),
          Splat<V>(1 / ladder.qind),
          Splat<V>(1 / ladder.qcap),
          ladder.lcp,
          ladder.cesl};
}

// The body compiled once for each instruction set below, on vectors of its
// width W.
template <int W>
inline __attribute__((always_inline)) void PowersBody(const Ladder& ladder,
                                                      const BatchValues& values,
                                                      const double* omega, const double* perQ,
                                                      int count, double* s21, double* s11) {
  using V = Lanes<W>;
  const Losses<V> q = LossesOf<V>(ladder);
  bool series[kComponentSlots];
  SeriesArms(ladder, series);
  V l[kComponentSlots], c[kComponentSlots], a[kChunk], b[kChunk];
  for (int j = 1; j <= ladder.stages; ++j) {
    l[j] = V::Load(values.L[j].data());
    c[j] = V::Load(values.C[j].data());
  }
  for (int first = 0; first < count; first += kChunk) {
    const int n = count - first < kChunk ? count - first : kChunk;
    ChunkPowers(ladder, series, q, omega + first, perQ ? perQ + first : nullptr, n, l, c, a, b);
    for (int i = 0; i < n; ++i) {
      a[i].Store(s21 + (first + i) * kLaneCount);
      b[i].Store(s11 + (first + i) * kLaneCount);
    }
  }
}

// Running extremes of a stretch of batch results, [point][lane].
template <int W>
inline __attribute__((always_inline)) void EnvelopeBody(const double* ratio, int count, double* low,
                                                        double* high) {
  using V = Lanes<W>;
  for (int i = 0; i < count * kLaneCount; i += kLaneCount) {
    const V r = V::Load(ratio + i);
    Min(V::Load(low + i), r).Store(low + i);
    Max(V::Load(high + i), r).Store(high + i);
  }
}
template <int W>
inline __attribute__((always_inline)) void ExtremesBody(const double* ratio, int count, double* low,
                                                        double* high) {
  using V = Lanes<W>;
  V lo = V::Load(low), hi = V::Load(high);
  for (int i = 0; i < count * kLaneCount; i += kLaneCount) {
    const V r = V::Load(ratio + i);
    lo = Min(lo, r), hi = Max(hi, r);
  }
  lo.Store(low), hi.Store(high);
}

// Each body once per instruction set: AVX-512 (8 doubles a register), AVX2
// (4) and the SSE2 every x86-64 processor has (2). A sanitized build keeps
// only the SSE2 copy: instrumenting three force-inlined copies of the whole
// ladder takes the compiler many minutes, and the wider copies are the same
// template at another lane count (their results are compared with the SSE2
// copy's in the ordinary build).
#if defined(__x86_64__) && !defined(DRENIK_SANITIZED)
#define DRENIK_VECTOR_UNITS 1
#define DRENIK_ON_EACH_UNIT(name, params, args)                          \
  __attribute__((target("avx512f"), flatten)) void name##Avx512 params { \
    name##Body<8> args;                                                  \
  }                                                                      \
  __attribute__((target("avx2"), flatten)) void name##Avx2 params {      \
    name##Body<4> args;                                                  \
  }                                                                      \
  __attribute__((flatten)) void name##Baseline params {                  \
    name##Body<2> args;                                                  \
  }                                                                      \
  void name(BatchPath path, auto... a) {                                 \
    if (path == BatchPath::Avx512) return name##Avx512(a...);            \
    if (path == BatchPath::Avx2) return name##Avx2(a...);                \
    return name##Baseline(a...);                                         \
  }
#else
#define DRENIK_ON_EACH_UNIT(name, params, args)         \
  __attribute__((flatten)) void name##Baseline params { \
    name##Body<2> args;                                 \
  }                                                     \
  void name(BatchPath, auto... a) {                     \
    return name##Baseline(a...);                        \
  }
#endif

DRENIK_ON_EACH_UNIT(Powers,
                    (const Ladder& ladder, const BatchValues& values, const double* omega,
                     const double* perQ, int count, double* s21, double* s11),
                    (ladder, values, omega, perQ, count, s21, s11))
DRENIK_ON_EACH_UNIT(Envelope, (const double* ratio, int count, double* low, double* high),
                    (ratio, count, low, high))
DRENIK_ON_EACH_UNIT(Extremes, (const double* ratio, int count, double* low, double* high),
                    (ratio, count, low, high))
#undef DRENIK_ON_EACH_UNIT

void EvaluateOneByOne(const Ladder& ladder, const BatchValues& values, const double* omega,
                      const double* perQ, int count, double* s21, double* s11) {
  const Losses<double> q = LossesOf<double>(ladder);
  bool series[kComponentSlots];
  SeriesArms(ladder, series);
  double l[kComponentSlots], c[kComponentSlots], a[kChunk], b[kChunk];
  for (int k = 0; k < kBatchLanes; ++k) {
    for (int j = 1; j <= ladder.stages; ++j) l[j] = values.L[j][k], c[j] = values.C[j][k];
    for (int first = 0; first < count; first += kChunk) {
      const int n = count - first < kChunk ? count - first : kChunk;
      ChunkPowers(ladder, series, q, omega + first, perQ ? perQ + first : nullptr, n, l, c, a, b);
      for (int i = 0; i < n; ++i) {
        s21[(first + i) * kBatchLanes + k] = a[i];
        s11[(first + i) * kBatchLanes + k] = b[i];
      }
    }
  }
}

constexpr double kRhoMin = 1e-7, kRhoMax = 0.9999999;

}  // namespace

bool BatchPathRuns(BatchPath path) {
#if defined(DRENIK_VECTOR_UNITS)
  if (path == BatchPath::Avx512) return __builtin_cpu_supports("avx512f");
  if (path == BatchPath::Avx2) return __builtin_cpu_supports("avx2");
#else
  if (path == BatchPath::Avx512 || path == BatchPath::Avx2) return false;
#endif
  return true;
}

BatchPath BestBatchPath() {
  static const BatchPath best = [] {
    for (BatchPath p : {BatchPath::Avx512, BatchPath::Avx2})
      if (BatchPathRuns(p)) return p;
    return BatchPath::Baseline;
  }();
  return best;
}

BatchValues UniformBatch(const Ladder& ladder) {
  BatchValues v;
  for (int j = 0; j < kComponentSlots; ++j) {
    v.L[j].fill(ladder.L[j]);
    v.C[j].fill(ladder.C[j]);
  }
  return v;
}

LadderBatch::LadderBatch(const Ladder& ladder, std::span<const float> frequencies)
    : ladder_(ladder) {
  omega_.reserve(frequencies.size());
  for (float f : frequencies) {
    const float w = ladder.twoPi * f;  // single precision, as the kernel forms it
    omega_.push_back(w);
  }
  // The inductor's Q of its law at every point, as the kernel works it out.
  if (ladder.qLaw != QLaw::Constant)
    for (double w : omega_)
      perQind_.push_back(
          models::PerQindAt(ladder.qLaw, 1 / ladder.qind, w, ReferenceOmega(ladder)));
}

void LadderBatch::Evaluate(const BatchValues& values, int first, int count, double* s21,
                           double* s11, BatchPath path) const {
  const double* omega = omega_.data() + first;
  const double* perQ = perQind_.empty() ? nullptr : perQind_.data() + first;
  if (path == BatchPath::Scalar)
    return EvaluateOneByOne(ladder_, values, omega, perQ, count, s21, s11);
  if (path == BatchPath::Vector || !BatchPathRuns(path)) path = BestBatchPath();
  Powers(path, ladder_, values, omega, perQ, count, s21, s11);
}

void BatchEnvelope(const double* ratio, int count, double* low, double* high) {
  Envelope(BestBatchPath(), ratio, count, low, high);
}

void LaneExtremes(const double* ratio, int count, double* low, double* high) {
  Extremes(BestBatchPath(), ratio, count, low, high);
}

double TransmissionDbOf(double s21) {
  return 10 * std::log10(s21);
}

double ReflectionDbOf(double s11) {
  const double rho = std::sqrt(s11);
  return 20 * std::log10(rho > kRhoMax ? kRhoMax : (rho < kRhoMin ? kRhoMin : rho));
}

}  // namespace drenik
