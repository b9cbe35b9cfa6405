#pragma once
// The section of each ladder position at angular frequency w (rad/s), with
// lossy parts: an inductor has a series resistance |w L / Q(w)| and, where
// set, its winding capacitance Cp across both; a capacitor a parallel
// resistance |Qcap / (w C)| and, where set, its lead inductance ESL in
// series. A series position is an impedance Z (chain matrix [1 Z; 0 1]), a
// shunt position an admittance Y ([1 0; Y 1]).
//
// The parasitics are per ladder, the same for every lane, so they are
// plain branches; with Cp and ESL at 0 and a constant Q every model takes
// exactly the operations of the ideal-part model.
//
// Written once for any lane type V: a double for the sweep, or a vector of
// doubles when many value sets are evaluated side by side (batch analyses).
// A lane type supplies Abs, Select (lane-wise choice), Any and Splat; the
// overloads for double are below. Every lane goes through the same IEEE
// operations in the same order, so a vector lane gives the same bits as the
// double path.

#include <cmath>

#include "core/part_models.h"

namespace drenik::models {

// Stand-in reactances of a missing (0 F) capacitor: the series arm sees
// 10 Mohm, a shunt or resonant branch 100 Gohm. The two magnitudes differ on
// purpose and are kept.
inline constexpr double kSeriesOpenReactance = 1e7;
inline constexpr double kShuntOpenReactance = 1e11;
// Fixed resistance across every parallel tank (practically open).
inline constexpr double kTankShunt = 1e11;
// Replaces a reactance or a part of the termination sum that is exactly 0.
inline constexpr double kTinyPart = 1e-10;
// An exactly resonant tank is detuned by this factor so that its parallel
// reactance stays finite.
inline constexpr double kDetune = 1.00001;
// Relative size of the net tank susceptance below which the tank is worked
// out by parallel reactances (rounding of the admittance sum would show).
inline constexpr double kNearResonance = 1e-6;

// The models are inlined into every caller, whatever its vector unit: a
// vector value passed to a function compiled for another unit would be
// passed differently.
#define DRENIK_MODEL inline __attribute__((always_inline))

inline double Abs(double x) {
  return std::fabs(x);
}
inline double Select(bool m, double a, double b) {
  return m ? a : b;
}
inline bool Any(bool m) {
  return m;
}
template <typename V>
V Splat(double x);
template <>
inline double Splat<double>(double x) {
  return x;
}

template <typename V>
struct Cplx {
  V re, im;
};

// Per-ladder part parameters: the divisions by Q are made once (once per
// frequency where the inductor's Q follows a law); Cp in farads, ESL in
// henries.
template <typename V>
struct Losses {
  V qind, qcap, perQind, perQcap;
  double cp = 0, esl = 0;
  // Whether the parallel-reactance treatment of a tank near resonance
  // applies: it knows only the Qs.
  bool Plain() const { return cp == 0 && esl == 0; }
};

// 1 / Q of the inductor at w (rad/s), given 1 / Q0 at w0: Q grows as
// (w / w0)^exponent. The law depends on the frequency alone, so every lane
// takes the same value.
inline double PerQindAt(QLaw law, double perQ0, double w, double w0) {
  const double e = FactsOf(law).exponent;
  if (e == 1) return perQ0 * (w0 / w);
  return perQ0 * std::pow(w0 / w, e);
}

// The ladder's losses at w: the inductor's Q taken from its law.
template <typename V>
inline Losses<V> LossesAt(const Losses<V>& base, double perQind) {
  Losses<V> q = base;
  q.perQind = Splat<V>(perQind);
  q.qind = Splat<V>(1 / perQind);
  return q;
}

// 1 / (r + jx): the admittance of a series r + jx (its parallel equivalent
// 1/Rpar - j/Xpar), or the impedance of a parallel conductance and
// susceptance, with one division.
template <typename V>
DRENIK_MODEL Cplx<V> Reciprocal(V r, V x) {
  const V inv = 1 / (r * r + x * x);
  return {r * inv, -x * inv};
}

// A series r + jx seen as a parallel Rpar || jXpar.
template <typename V>
DRENIK_MODEL void SeriesToParallel(V r, V x, V& rpar, V& xpar) {
  const V q = x / r;
  rpar = (1 + q * q) * r;
  xpar = rpar * r / x;
}

// A parallel Rp || jX seen as a series Rser + jXser.
inline Cplx<double> ParallelToSeries(double rp, double x) {
  const double q = rp / x;
  const double rser = rp / (q * q + 1);
  return {rser, rp * rser / x};
}

// A missing capacitor in the series arm (10 Mohm) or in a shunt or
// resonant branch (100 Gohm), with its parallel loss |Qcap| X, as a series
// impedance.
template <typename V>
DRENIK_MODEL Cplx<V> OpenCapacitor(const Losses<V>& q, double reactance) {
  const V rp = Abs(q.qcap * reactance);
  const V qq = rp / reactance;
  const V rser = rp / (qq * qq + 1);
  return {rser, rp * rser / reactance};
}

// The capacitor's impedance: 1 / (G + jB) with G = |w C / Qcap|, B = w C,
// plus j w ESL; the series stand-in where the capacitance is 0.
template <typename V>
DRENIK_MODEL Cplx<V> CapacitorImpedance(V w, V c, const Losses<V>& q, double openReactance) {
  const V wc = w * c;
  Cplx<V> z = Reciprocal(Abs(wc * q.perQcap), wc);
  if (q.esl != 0) z.im = z.im + w * q.esl;
  if (Any(c == 0)) {
    const Cplx<V> open = OpenCapacitor(q, openReactance);
    z = {Select(c == 0, open.re, z.re), Select(c == 0, open.im, z.im)};
  }
  return z;
}

// The inductor's admittance: 1 / (|w L / Q| + j w L) + j w Cp.
template <typename V>
DRENIK_MODEL Cplx<V> InductorAdmittance(V w, V l, const Losses<V>& q) {
  const V x = w * l;
  Cplx<V> y = Reciprocal(Abs(x * q.perQind), x);
  if (q.cp != 0) y.im = y.im + w * q.cp;
  return y;
}

// Series inductor: Z = |w L / Q| + j w L, or with its winding capacitance
// the reciprocal of its admittance.
template <typename V>
DRENIK_MODEL Cplx<V> SeriesInductor(V w, V l, const Losses<V>& q) {
  if (q.cp != 0) {
    const Cplx<V> y = InductorAdmittance(w, l, q);
    return Reciprocal(y.re, y.im);
  }
  const V x = w * l;
  return {Abs(x * q.perQind), x};
}

// Shunt inductor: Y = 1 / (|w L / Q| + j w L) + j w Cp.
template <typename V>
DRENIK_MODEL Cplx<V> ShuntInductor(V w, V l, const Losses<V>& q) {
  return InductorAdmittance(w, l, q);
}

// Series capacitor: Z, 10 Mohm stand-in for a missing one.
template <typename V>
DRENIK_MODEL Cplx<V> SeriesCapacitor(V w, V c, const Losses<V>& q) {
  return CapacitorImpedance(w, c, q, kSeriesOpenReactance);
}

// Shunt capacitor: Y = |w C / Qcap| + j w C, or with its lead inductance
// the reciprocal of its impedance; a missing one is the parallel pair
// 1/(|Qcap| 1e11) - j/(-1e11).
template <typename V>
DRENIK_MODEL Cplx<V> ShuntCapacitor(V w, V c, const Losses<V>& q) {
  const V wc = w * c;
  Cplx<V> y{Abs(wc * q.perQcap), wc};
  if (q.esl != 0) {
    const Cplx<V> z = CapacitorImpedance(w, c, q, kShuntOpenReactance);
    y = Reciprocal(z.re, z.im);
  }
  if (Any(c == 0)) {
    const V g = 1 / Abs(q.qcap * kShuntOpenReactance);
    const V b = Splat<V>(-1 / kShuntOpenReactance);
    y = {Select(c == 0, g, y.re), Select(c == 0, b, y.im)};
  }
  return y;
}

// Shunt trap, L in series with C to ground: Y = 1 / (R + jX) of the sum of
// the capacitor's series equivalent and the inductor's w L / Qind + j w L;
// an exactly zero X is replaced by 1e-10.
template <typename V>
DRENIK_MODEL Cplx<V> ShuntTrap(V w, V l, V c, const Losses<V>& q) {
  const Cplx<V> zc = CapacitorImpedance(w, c, q, kShuntOpenReactance);
  const V xl = w * l;
  V r = zc.re + xl * q.perQind;
  V x = zc.im + xl;
  if (q.cp != 0) {
    const Cplx<V> zl = SeriesInductor(w, l, q);
    r = zc.re + zl.re;
    x = zc.im + zl.im;
  }
  x = Select(x == 0, Splat<V>(kTinyPart), x);
  return Reciprocal(r, x);
}

// The tank as parallel resistances and reactances, converted to its series
// equivalent; an exact resonance is detuned so that the parallel reactance
// stays finite. Only used within a hair of resonance.
inline Cplx<double> TankNearResonance(double w, double l, double c, double qind, double qcap) {
  const double x_l = w * l;
  double rpar_l, xpar_l;
  SeriesToParallel(std::fabs(x_l / qind), x_l, rpar_l, xpar_l);
  double xc = kShuntOpenReactance, rp_c = kShuntOpenReactance;
  if (c != 0) {
    xc = -1 / (w * c);
    rp_c = std::fabs(qcap / (w * c));
  }
  const double rt = 1 / (1 / rpar_l + 1 / rp_c + 1 / kTankShunt);
  if (xc + xpar_l == 0) xpar_l *= kDetune;
  const double xt = 1 / (1 / xc + 1 / xpar_l);
  const double qt = rt / xt;
  const double rser = std::fabs(rt / (qt * qt + 1));
  return {rser, rt * rser / xt};
}

// The tank's admittance sum G + jB (inductor, capacitor or its stand-in, the
// fixed shunt) and the capacitor's own susceptance bc.
template <typename V>
DRENIK_MODEL Cplx<V> TankAdmittance(V w, V l, V c, const Losses<V>& q, V& bc) {
  const Cplx<V> yl = InductorAdmittance(w, l, q);
  V gc = Abs(w * c * q.perQcap);
  bc = w * c;
  if (q.esl != 0) {
    const Cplx<V> z = CapacitorImpedance(w, c, q, kShuntOpenReactance);
    const Cplx<V> yc = Reciprocal(z.re, z.im);
    gc = yc.re, bc = yc.im;
  }
  if (Any(c == 0)) {
    gc = Select(c == 0, Splat<V>(1 / kShuntOpenReactance), gc);
    bc = Select(c == 0, Splat<V>(-1 / kShuntOpenReactance), bc);
  }
  return {yl.re + gc + 1 / kTankShunt, yl.im + bc};
}

// Whether the tank is within a hair of resonance (lane-wise): the net
// susceptance has cancelled to a few digits of the capacitor's. There the
// tank is worked out by parallel reactances, which keep the detuning of an
// exact resonance.
template <typename V>
DRENIK_MODEL auto TankIsNearResonance(V netSusceptance, V bc) {
  return Abs(netSusceptance) <= kNearResonance * Abs(bc);
}

// Series tank, L parallel to C: Z = 1 / (G + jB), or the long way round
// within a hair of resonance. The batch path handles the near lanes itself.
inline Cplx<double> SeriesTank(double w, double l, double c, const Losses<double>& q) {
  double bc;
  const Cplx<double> y = TankAdmittance(w, l, c, q, bc);
  if (q.Plain() && TankIsNearResonance(y.im, bc)) return TankNearResonance(w, l, c, q.qind, q.qcap);
  return Reciprocal(y.re, y.im);
}

// Inductor then capacitor in the series arm (a series-resonant branch of a
// bandpass): the sum of the two parts' impedances.
template <typename V>
DRENIK_MODEL Cplx<V> SeriesLC(V w, V l, V c, const Losses<V>& q) {
  const Cplx<V> zl = SeriesInductor(w, l, q);
  const Cplx<V> zc = SeriesCapacitor(w, c, q);
  return {zl.re + zc.re, zl.im + zc.im};
}

// A shunt inductor beside a shunt capacitor (the parallel tank of a bandpass
// or a coupled resonator): the sum of the two parts' admittances.
template <typename V>
DRENIK_MODEL Cplx<V> ShuntLC(V w, V l, V c, const Losses<V>& q) {
  const Cplx<V> yl = ShuntInductor(w, l, q);
  const Cplx<V> yc = ShuntCapacitor(w, c, q);
  return {yl.re + yc.re, yl.im + yc.im};
}

}  // namespace drenik::models
