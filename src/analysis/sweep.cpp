// Ladder response by ABCD cascade. Every position is either a series
// impedance [1 Z; 0 1] or a shunt admittance [1 0; Y 1]; the running chain
// matrix is multiplied by the section in that reduced form, which gives the
// same numbers as the full 2x2 product (the other terms are exact 1s and 0s).

#include "analysis/sweep.h"

#include "analysis/chain_matrix.h"

#include <cmath>
#include <complex>
#include <string>

#include "core/runtime_error.h"

namespace drenik {
namespace {

using Complex = std::complex<double>;

// Stand-in reactances of a missing (0 F) capacitor: the series arm sees
// 10 Mohm, a shunt or resonant branch 100 Gohm.
constexpr double kSeriesOpenReactance = 1e7;
constexpr double kShuntOpenReactance = 1e11;
// Fixed resistance across every parallel tank (practically open).
constexpr double kTankShunt = 1e11;
constexpr double kTinyPart = 1e-10;
constexpr double kTinyStep = 1e-27;
constexpr double kRhoMax = 0.9999999;
constexpr double kRhoMin = 1e-7;
constexpr double kDetune = 1.00001;
// Relative size of the net tank susceptance below which the tank is worked
// out by parallel reactances (rounding of the admittance sum would show).
constexpr double kNearResonance = 1e-6;

struct Section {
  bool series;  // true: [1 Z; 0 1], false: [1 0; Y 1]
  Complex value;
};

bool HasInductor(int16_t code) {
  return code == 1 || code == 2 || code == 6 || code == 7;
}
bool HasCapacitor(int16_t code) {
  return code == 3 || code == 4 || code == 6 || code == 7;
}

// A series r + jx seen as a parallel Rpar || jXpar.
void SeriesToParallel(double r, double x, double& rpar, double& xpar) {
  const double q = x / r;
  rpar = (1 + q * q) * r;
  xpar = rpar * r / x;
}

// 1 / (r + jx): the admittance of a series r + jx (its parallel equivalent
// 1/Rpar - j/Xpar), or the impedance of a parallel conductance and
// susceptance, with one division.
Complex Reciprocal(double r, double x) {
  const double inv = 1 / (r * r + x * x);
  return {r * inv, -x * inv};
}

// A parallel Rp || jX seen as a series Rser + jXser.
void ParallelToSeries(double rp, double x, double& rser, double& xser) {
  const double q = rp / x;
  rser = rp / (q * q + 1);
  xser = rp * rser / x;
}

// Angle in degrees of re + j*im when sign is +1, of 1/(re + j*im) when -1,
// folded into (-180, 180].
double Angle(double re, double im, double sign, double pi) {
  double a = 0;
  if (re == 0) {
    if (im > 0) a = 90 * sign;
    if (im < 0) a = -90 * sign;
  } else {
    a = sign * std::atan(im / re) * 180 / pi;
    if (re < 0) a += (im < 0) ? -180 * sign : 180 * sign;
  }
  if (a > 180) a -= 360;
  if (a < -180) a += 360;
  return a;
}

// The parallel tank as parallel resistances and reactances, converted to its
// series equivalent; an exact resonance is detuned by 1.00001 so that the
// parallel reactance stays finite.
Complex TankNearResonance(double w, double l, double c, double qind, double qcap) {
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
  const double q = rt / xt;
  const double rser = std::fabs(rt / (q * q + 1));
  return {rser, rt * rser / xt};
}

// Per-point loss factors: the divisions by Q are made once per point.
struct Losses {
  double qind, qcap, perQind, perQcap;
};

// What stays the same over a sweep, worked out once.
struct SweepConstants {
  Losses losses;
  double rs, rl, perRl, quarterPerRs;
  explicit SweepConstants(const DesignRecord& d)
      : losses{d.Qind, d.Qcap, 1 / double{d.Qind}, 1 / double{d.Qcap}},
        rs(d.Rsource),
        rl(d.Rload),
        perRl(1 / rl),
        quarterPerRs(0.25 / rs) {}
};

// Sections of one position. Parts are summed as admittances or impedances
// in whichever form needs the fewest divisions; a missing capacitor keeps
// the fixed stand-in reactances and their parallel resistances.
inline __attribute__((always_inline)) Section SectionAt(const DesignRecord& d, int j, double w,
                                                        const Losses& q, Platform& platform) {
  const double l = d.L[j];
  const double c = d.C[j];
  switch (d.ElementType[j]) {
    case 1: {  // series inductor
      const double x = w * l;
      return {true, Complex(std::fabs(x * q.perQind), x)};
    }
    case 2: {  // shunt inductor
      const double x = w * l;
      return {false, Reciprocal(std::fabs(x * q.perQind), x)};
    }
    case 3: {  // series capacitor
      if (c == 0) {
        double rser, xser;
        ParallelToSeries(std::fabs(q.qcap * kSeriesOpenReactance), kSeriesOpenReactance, rser,
                         xser);
        return {true, Complex(rser, xser)};
      }
      const double wc = w * c;
      return {true, Reciprocal(std::fabs(wc * q.perQcap), wc)};
    }
    case 4: {  // shunt capacitor
      if (c == 0)
        return {false,
                Complex(1 / std::fabs(q.qcap * kShuntOpenReactance), -1 / kShuntOpenReactance)};
      const double wc = w * c;
      return {false, Complex(std::fabs(wc * q.perQcap), wc)};
    }
    case 6: {  // shunt L in series with C
      Complex zc;
      if (c == 0) {
        double rser, xser;
        ParallelToSeries(std::fabs(q.qcap * kShuntOpenReactance), kShuntOpenReactance, rser, xser);
        zc = Complex(rser, xser);
      } else {
        const double wc = w * c;
        zc = Reciprocal(std::fabs(wc * q.perQcap), wc);
      }
      const double x_l = w * l;
      const double r = zc.real() + x_l * q.perQind;
      double x = zc.imag() + x_l;
      if (x == 0) x = kTinyPart;
      return {false, Reciprocal(r, x)};
    }
    case 7: {  // series arm: L parallel to C
      // Within a hair of resonance, where the susceptances cancel, the tank
      // is taken the long way round with its detuning guard.
      const double x_l = w * l;
      const Complex y_l = Reciprocal(std::fabs(x_l * q.perQind), x_l);
      double g_c = 1 / kShuntOpenReactance, b_c = -1 / kShuntOpenReactance;
      if (c != 0) {
        g_c = std::fabs(w * c * q.perQcap);
        b_c = w * c;
      }
      const double g = y_l.real() + g_c + 1 / kTankShunt;
      const double b = y_l.imag() + b_c;
      if (std::fabs(b) <= kNearResonance * std::fabs(b_c))
        return {true, TankNearResonance(w, l, c, q.qind, q.qcap)};
      return {true, Reciprocal(g, b)};
    }
    default:  // not modelled: a straight wire (Z = 0 leaves the chain as it is)
      platform.Beep();
      return {true, Complex(0, 0)};
  }
}

void CheckStages(const DesignRecord& d) {
  if (d.Stages < 0 || d.Stages > kMaxPositions)
    throw RunTimeError("Cannot analyse a ladder of " + std::to_string(d.Stages) +
                       " positions: it must have 0 to " + std::to_string(kMaxPositions) + ".");
}

// Everything the sweep would otherwise divide by zero on, checked before any
// result array is touched.
void CheckSweep(const DesignRecord& d) {
  CheckStages(d);
  if (d.NrIntervals == 0)
    throw RunTimeError("Cannot sweep: the number of frequency intervals is 0.");
  if (d.NrIntervals >= kSweepSlots)
    throw RunTimeError("Cannot sweep " + std::to_string(d.NrIntervals) + " intervals: at most " +
                       std::to_string(kSweepSlots - 1) + " fit in the result arrays.");
  if (d.NrIntervals < 0) return;  // no points to compute
  if (!(d.Fstart > 0)) throw RunTimeError("Cannot sweep: the start frequency must be above 0 Hz.");
  if (!(d.Fstop > 0)) throw RunTimeError("Cannot sweep: the stop frequency must be above 0 Hz.");
  if (!(d.Rsource > 0))
    throw RunTimeError("Cannot analyse: the source resistance must be above 0 ohms.");
  if (!(d.Rload > 0))
    throw RunTimeError("Cannot analyse: the load resistance must be above 0 ohms.");
  if (!(d.Pi > 0) || !(d.TwoPi > 0))
    throw RunTimeError("Cannot analyse: the constants Pi and TwoPi are not set.");
  auto where = [](int j) { return " at ladder position " + std::to_string(j) + "."; };
  for (int j = 1; j <= d.Stages; ++j) {
    const int16_t code = d.ElementType[j];
    if (HasInductor(code) && d.Qind == 0)
      throw RunTimeError("Cannot analyse: the inductor Q is 0" + where(j));
    if (HasCapacitor(code) && d.Qcap == 0)
      throw RunTimeError("Cannot analyse: the capacitor Q is 0" + where(j));
    if ((code == 2 || code == 7) && d.L[j] == 0)
      throw RunTimeError("Cannot analyse: the inductance is 0" + where(j));
  }
}

// log10 through the natural logarithm: the library's own log10 costs several
// times more, and the two differ in the last bit or two of a double.
double Log10(double x) {
  return std::log(x) * 0.43429448190325182765;
}

// One point; the sweep does not keep the input impedance's magnitude and
// angle, so it skips forming them.
template <bool kWithZin>
PointResult Point(const DesignRecord& d, const SweepConstants& k, float F, double PrevFreq,
                  double PrevPhase, Platform& platform) {
  const float wf = d.TwoPi * F;  // formed in single precision on purpose
  const double w = wf;

  // The chain matrix in plain doubles: the products of finite values are the
  // textbook complex products, without the library's inf/NaN recovery.
  double ar = 1, ai = 0, br = 0, bi = 0, cr = 0, ci = 0, dr = 1, di = 0;
  for (int j = 1; j <= d.Stages; ++j) {
    const Section s = SectionAt(d, j, w, k.losses, platform);
    const double zr = s.value.real(), zi = s.value.imag();
    if (s.series) {  // B += A Z, D += C Z
      br = (ar * zr - ai * zi) + br;
      bi = (ar * zi + ai * zr) + bi;
      dr = (cr * zr - ci * zi) + dr;
      di = (cr * zi + ci * zr) + di;
    } else {  // A += B Y, C += D Y
      ar = ar + (br * zr - bi * zi);
      ai = ai + (br * zi + bi * zr);
      cr = cr + (dr * zr - di * zi);
      ci = ci + (dr * zi + di * zr);
    }
  }
  const Complex a(ar, ai), b(br, bi), c(cr, ci), dd(dr, di);

  const double rs = k.rs, rl = k.rl;
  Complex den = a + b * k.perRl + c * rs + dd * (rs * k.perRl);
  if (den.real() == 0) den.real(kTinyPart);
  if (den.imag() == 0) den.imag(kTinyPart);

  PointResult out;
  const double mag2 = den.real() * den.real() + den.imag() * den.imag();
  out.TransmissionDb = -10 * Log10(rl * mag2 * k.quarterPerRs);
  out.Phase = static_cast<float>(Angle(den.real(), den.imag(), -1, d.Pi));

  double dphi = out.Phase - PrevPhase;
  if (dphi > 180) dphi -= 360;
  if (dphi < -180) dphi += 360;
  double df = F - PrevFreq;
  if (std::fabs(df) < kTinyStep) df = kTinyStep;
  out.Delay = -dphi / (360 * df);

  // Zin = num conj(zden) / |zden|^2, the product written out as above.
  const Complex num = a * rl + b;
  const Complex zden = c * rl + dd;
  const double zden2 = zden.real() * zden.real() + zden.imag() * zden.imag();
  const double perZden2 = 1 / zden2;
  const Complex zin((num.real() * zden.real() + num.imag() * zden.imag()) * perZden2,
                    (num.imag() * zden.real() - num.real() * zden.imag()) * perZden2);
  if constexpr (kWithZin) {
    out.ZinMagnitude = std::sqrt(std::norm(zin));
    out.ZinAngle = Angle(zin.real(), zin.imag(), 1, d.Pi);
  }

  const double r0 = d.Rstandard;
  double rho = std::sqrt(std::norm(zin - r0) / std::norm(zin + r0));
  if (rho > kRhoMax) rho = kRhoMax;
  if (rho < kRhoMin) rho = kRhoMin;
  out.ReflectionDb = -20 * Log10(1 / rho);
  out.Vswr = (1 + rho) / (1 - rho);
  return out;
}

}  // namespace

PointResult AnalyzePoint(const DesignRecord& d, float F, double PrevFreq, double PrevPhase,
                         Platform& platform) {
  CheckStages(d);
  return Point<true>(d, SweepConstants(d), F, PrevFreq, PrevPhase, platform);
}

void AnalyzeSweep(DesignRecord& d, Platform& platform) {
  CheckSweep(d);
  const int n = d.NrIntervals;
  const double lnStart = std::log(static_cast<double>(d.Fstart));
  const double span = std::log(static_cast<double>(d.Fstop)) - lnStart;
  for (int i = 0; i <= n; ++i) d.Freq[i] = static_cast<float>(std::exp(lnStart + span * i / n));

  d.Rstandard = d.Rsource;
  double prevFreq = 0;
  double prevPhase = 0;
  d.MaxDelay = 0;
  const SweepConstants k(d);
  for (int i = 0; i <= n; ++i) {
    const PointResult p = Point<false>(d, k, d.Freq[i], prevFreq, prevPhase, platform);
    d.Transmission[i] = static_cast<float>(p.TransmissionDb);
    d.Phase[i] = p.Phase;
    d.Delay[i] = static_cast<float>(p.Delay);
    d.Reflection[i] = static_cast<float>(p.ReflectionDb);
    d.VSWR[i] = static_cast<float>(p.Vswr);
    if (d.Delay[i] > d.MaxDelay) d.MaxDelay = d.Delay[i];
    prevPhase = p.Phase;
    prevFreq = d.Freq[i];
  }
  // Point 0 was measured against frequency 0 and phase 0: extrapolate it.
  d.Delay[0] = static_cast<float>(2.0 * d.Delay[1] - d.Delay[2]);
}

ChainMatrix LadderChainMatrix(const DesignRecord& d, float F) {
  CheckStages(d);
  NullPlatform silent;  // an unmodelled position is a wire here, without the alert
  const SweepConstants k(d);
  const double w = static_cast<float>(d.TwoPi * F);  // formed in single precision
  ChainMatrix m;
  for (int j = 1; j <= d.Stages; ++j) {
    const Section s = SectionAt(d, j, w, k.losses, silent);
    if (s.series) {
      m.B += m.A * s.value;
      m.D += m.C * s.value;
    } else {
      m.A += m.B * s.value;
      m.C += m.D * s.value;
    }
  }
  return m;
}

SParameters LadderSParameters(const DesignRecord& d, float F) {
  const ChainMatrix m = LadderChainMatrix(d, F);
  const double r1 = d.Rsource, r2 = d.Rload;
  const Complex den = m.A + m.B / r2 + m.C * r1 + m.D * r1 / r2;
  const double k = 2 * std::sqrt(r1 / r2);
  return {(m.A + m.B / r2 - m.C * r1 - m.D * r1 / r2) / den, k / den,
          k * (m.A * m.D - m.B * m.C) / den, (-m.A + m.B / r2 - m.C * r1 + m.D * r1 / r2) / den};
}

}  // namespace drenik
