// Ladder response by ABCD cascade. Every position is either a series
// impedance [1 Z; 0 1] or a shunt admittance [1 0; Y 1]; the running chain
// matrix is multiplied by the section in that reduced form, which gives the
// same numbers as the full 2x2 product (the other terms are exact 1s and 0s).

#include "analysis/sweep.h"

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

Section SectionAt(const DesignRecord& d, int j, double w, Platform& platform) {
  const double l = d.L[j];
  const double c = d.C[j];
  const double qind = d.Qind;
  const double qcap = d.Qcap;
  switch (d.ElementType[j]) {
    case 1: {  // series inductor
      const double x = w * l;
      return {true, Complex(std::fabs(x / qind), x)};
    }
    case 2: {  // shunt inductor
      const double x = w * l;
      double rpar, xpar;
      SeriesToParallel(std::fabs(x / qind), x, rpar, xpar);
      return {false, Complex(1 / rpar, -1 / xpar)};
    }
    case 3: {  // series capacitor
      const double xc = (c == 0) ? kSeriesOpenReactance : -1 / (w * c);
      double rser, xser;
      ParallelToSeries(std::fabs(qcap * xc), xc, rser, xser);
      return {true, Complex(rser, xser)};
    }
    case 4: {  // shunt capacitor
      const double xc = (c == 0) ? kShuntOpenReactance : -1 / (w * c);
      return {false, Complex(1 / std::fabs(qcap * xc), -1 / xc)};
    }
    case 6: {  // shunt L in series with C
      const double xc = (c == 0) ? kShuntOpenReactance : -1 / (w * c);
      double rser, xser;
      ParallelToSeries(std::fabs(qcap * xc), xc, rser, xser);
      const double x_l = w * l;
      const double r = rser + x_l / qind;
      double x = xser + x_l;
      if (x == 0) x = kTinyPart;
      double rpar, xpar;
      SeriesToParallel(r, x, rpar, xpar);
      return {false, Complex(1 / rpar, -1 / xpar)};
    }
    case 7: {  // series arm: L parallel to C
      const double x_l = w * l;
      double rpar_l, xpar_l;
      SeriesToParallel(std::fabs(x_l / qind), x_l, rpar_l, xpar_l);
      double xc, rp_c;
      if (c == 0) {
        xc = kShuntOpenReactance;
        rp_c = kShuntOpenReactance;
      } else {
        xc = -1 / (w * c);
        rp_c = std::fabs(qcap / (w * c));
      }
      const double rt = 1 / (1 / rpar_l + 1 / rp_c + 1 / kTankShunt);
      if (xc + xpar_l == 0) xpar_l *= kDetune;  // exact resonance
      const double xt = 1 / (1 / xc + 1 / xpar_l);
      const double q = rt / xt;
      const double rser = std::fabs(rt / (q * q + 1));
      return {true, Complex(rser, rt * rser / xt)};
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
  for (int j = 1; j <= d.Stages; ++j) {
    const int16_t code = d.ElementType[j];
    const std::string where = " at ladder position " + std::to_string(j) + ".";
    if (HasInductor(code) && d.Qind == 0)
      throw RunTimeError("Cannot analyse: the inductor Q is 0" + where);
    if (HasCapacitor(code) && d.Qcap == 0)
      throw RunTimeError("Cannot analyse: the capacitor Q is 0" + where);
    if ((code == 2 || code == 7) && d.L[j] == 0)
      throw RunTimeError("Cannot analyse: the inductance is 0" + where);
  }
}

}  // namespace

PointResult AnalyzePoint(const DesignRecord& d, float F, double PrevFreq, double PrevPhase,
                         Platform& platform) {
  CheckStages(d);
  const float wf = d.TwoPi * F;  // formed in single precision on purpose
  const double w = wf;

  Complex a(1, 0), b(0, 0), c(0, 0), dd(1, 0);
  for (int j = 1; j <= d.Stages; ++j) {
    const Section s = SectionAt(d, j, w, platform);
    if (s.series) {
      b = a * s.value + b;
      dd = c * s.value + dd;
    } else {
      a = a + b * s.value;
      c = c + dd * s.value;
    }
  }

  const double rs = d.Rsource;
  const double rl = d.Rload;
  Complex den = a + b / rl + c * rs + dd * rs / rl;
  if (den.real() == 0) den.real(kTinyPart);
  if (den.imag() == 0) den.imag(kTinyPart);

  PointResult out;
  const double mag2 = den.real() * den.real() + den.imag() * den.imag();
  out.TransmissionDb = -10 * std::log10(rl * mag2 / (4 * rs));
  out.Phase = static_cast<float>(Angle(den.real(), den.imag(), -1, d.Pi));

  double dphi = out.Phase - PrevPhase;
  if (dphi > 180) dphi -= 360;
  if (dphi < -180) dphi += 360;
  double df = F - PrevFreq;
  if (std::fabs(df) < kTinyStep) df = kTinyStep;
  out.Delay = -dphi / (360 * df);

  const Complex num = a * rl + b;
  const Complex zden = c * rl + dd;
  const double zden2 = zden.real() * zden.real() + zden.imag() * zden.imag();
  const Complex zin = num * std::conj(zden) / zden2;
  out.ZinMagnitude = std::abs(zin);
  out.ZinAngle = Angle(zin.real(), zin.imag(), 1, d.Pi);

  const double r0 = d.Rstandard;
  double rho = std::abs(zin - r0) / std::abs(zin + r0);
  if (rho > kRhoMax) rho = kRhoMax;
  if (rho < kRhoMin) rho = kRhoMin;
  out.ReflectionDb = -20 * std::log10(1 / rho);
  out.Vswr = (1 + rho) / (1 - rho);
  return out;
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
  for (int i = 0; i <= n; ++i) {
    const PointResult p = AnalyzePoint(d, d.Freq[i], prevFreq, prevPhase, platform);
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

}  // namespace drenik
