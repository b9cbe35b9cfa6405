// The ladder kernel. Every position is either a series impedance [1 Z; 0 1]
// or a shunt admittance [1 0; Y 1]; the running chain matrix is multiplied
// by the section in that reduced form, which gives the same numbers as the
// full 2x2 product (the other terms are exact 1s and 0s).

#include "analysis/ladder.h"

#include <cmath>

#include "analysis/element_models.h"

namespace drenik {
namespace {

using models::Cplx;
using Complex = std::complex<double>;

constexpr double kTinyStep = 1e-27;  // smallest frequency step of the delay
constexpr double kRhoMax = 0.9999999;
constexpr double kRhoMin = 1e-7;

struct Section {
  bool series;  // true: Z of [1 Z; 0 1]; false: Y of [1 0; Y 1]
  Cplx<double> value;
  bool modelled = true;
};

inline __attribute__((always_inline)) Section SectionAt(const Ladder& ladder, int j, double w,
                                                        const models::Losses<double>& q) {
  const double l = ladder.L[j];
  const double c = ladder.C[j];
  switch (ladder.kind[j]) {
    case ElementKind::SeriesL:
      return {true, models::SeriesInductor(w, l, q)};
    case ElementKind::ShuntL:
      return {false, models::ShuntInductor(w, l, q)};
    case ElementKind::SeriesC:
      return {true, models::SeriesCapacitor(w, c, q)};
    case ElementKind::ShuntC:
      return {false, models::ShuntCapacitor(w, c, q)};
    case ElementKind::ShuntTrap:
      return {false, models::ShuntTrap(w, l, c, q)};
    case ElementKind::SeriesTank:
      return {true, models::SeriesTank(w, l, c, q)};
    case ElementKind::SeriesLC:
      if (!ladder.bandBranches) break;
      return {true, models::SeriesLC(w, l, c, q)};
    case ElementKind::ShuntLC:
      if (!ladder.bandBranches) break;
      return {false, models::ShuntLC(w, l, c, q)};
    default:
      break;
  }
  return {true, {0, 0}, false};  // no model: a straight wire (Z = 0 leaves the chain as it is)
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

// log10 through the natural logarithm: the library's own log10 costs several
// times more, and the two differ in the last bit or two of a double.
double Log10(double x) {
  return std::log(x) * 0.43429448190325182765;
}

std::string At(int j) {
  return " at ladder position " + std::to_string(j) + ".";
}

}  // namespace

models::Losses<double> PartLossesAt(const Ladder& ladder, double w) {
  models::Losses<double> q{ladder.qind,     ladder.qcap, 1 / ladder.qind,
                           1 / ladder.qcap, ladder.lcp,  ladder.cesl};
  if (ladder.qLaw == QLaw::Constant) return q;
  return models::LossesAt(q, models::PerQindAt(ladder.qLaw, q.perQind, w, ReferenceOmega(ladder)));
}

Ladder LadderOf(const DesignRecord& d) {
  Ladder ladder;
  ladder.stages = d.Stages;
  const int copied = d.Stages < 0 ? 0 : (d.Stages > kMaxPositions ? kMaxPositions : d.Stages);
  for (int j = 1; j <= copied; ++j) {
    ladder.kind[j] = KindOf(d.ElementType[j]);
    ladder.L[j] = d.L[j];
    ladder.C[j] = d.C[j];
  }
  ladder.rsource = d.Rsource;
  ladder.rload = d.Rload;
  ladder.reference = d.Rstandard;
  ladder.qind = d.Qind;
  ladder.qcap = d.CapacitorQ != kInfiniteQcap ? d.CapacitorQ : d.Qcap;
  ladder.qLaw = d.InductorQLaw;
  // The Q is given at the cutoff, or at the centre of a band design.
  ladder.qReference = d.Center > 0 ? d.Center : d.Width;
  ladder.lcp = d.WindingCapacitance;
  ladder.cesl = d.CapacitorEsl;
  ladder.pi = d.Pi;
  ladder.twoPi = d.TwoPi;
  ladder.bandBranches = d.Center > 0;
  return ladder;
}

std::string LadderFault(const Ladder& ladder) {
  if (ladder.stages < 0 || ladder.stages > kMaxPositions)
    return "Cannot analyse a ladder of " + std::to_string(ladder.stages) +
           " positions: it must have 0 to " + std::to_string(kMaxPositions) + ".";
  if (!(ladder.rsource > 0)) return "Cannot analyse: the source resistance must be above 0 ohms.";
  if (!(ladder.rload > 0)) return "Cannot analyse: the load resistance must be above 0 ohms.";
  if (!(ladder.pi > 0) || !(ladder.twoPi > 0))
    return "Cannot analyse: the constants Pi and TwoPi are not set.";
  if (ladder.qLaw != QLaw::Constant && !(ReferenceOmega(ladder) > 0))
    return "Cannot analyse: the inductor Q's law needs a reference frequency above 0 Hz.";
  if (!(ladder.lcp >= 0) || !(ladder.cesl >= 0))
    return "Cannot analyse: a winding capacitance or a lead inductance is below 0.";
  for (int j = 1; j <= ladder.stages; ++j) {
    const ElementFacts* f = FactsOf(ladder.kind[j]);
    if (!Modelled(f, ladder.bandBranches)) continue;
    if ((f->hasL && !std::isfinite(ladder.L[j])) || (f->hasC && !std::isfinite(ladder.C[j])))
      return "Cannot analyse: a part value is not a finite number" + At(j);
    if (f->hasL && ladder.qind == 0) return "Cannot analyse: the inductor Q is 0" + At(j);
    if (f->hasC && ladder.qcap == 0) return "Cannot analyse: the capacitor Q is 0" + At(j);
    // A shunt inductor or a tank divides by its inductance.
    const bool dividesByL = ladder.kind[j] == ElementKind::ShuntL ||
                            ladder.kind[j] == ElementKind::SeriesTank ||
                            ladder.kind[j] == ElementKind::ShuntLC;
    if (dividesByL && ladder.L[j] == 0) return "Cannot analyse: the inductance is 0" + At(j);
    // With a winding capacitance across it, every inductor is inverted.
    if (f->hasL && ladder.lcp != 0 && ladder.L[j] == 0)
      return "Cannot analyse: the inductance is 0 with a winding capacitance" + At(j);
  }
  return {};
}

PointResult AnalyzePoint(const Ladder& ladder, float F, double prevFreq, double prevPhase,
                         bool withInputImpedance) {
  const float wf = ladder.twoPi * F;  // formed in single precision on purpose
  const double w = wf;
  const models::Losses<double> q = PartLossesAt(ladder, w);

  PointResult out;
  // The chain matrix in plain doubles: the products of finite values are the
  // textbook complex products, without the library's inf/NaN recovery.
  double ar = 1, ai = 0, br = 0, bi = 0, cr = 0, ci = 0, dr = 1, di = 0;
  for (int j = 1; j <= ladder.stages; ++j) {
    const Section s = SectionAt(ladder, j, w, q);
    if (!s.modelled) ++out.unmodelled;
    const double zr = s.value.re, zi = s.value.im;
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

  const double rs = ladder.rsource, rl = ladder.rload;
  const double perRl = 1 / rl;
  Complex den = a + b * perRl + c * rs + dd * (rs * perRl);
  if (den.real() == 0) den.real(models::kTinyPart);
  if (den.imag() == 0) den.imag(models::kTinyPart);

  const double mag2 = den.real() * den.real() + den.imag() * den.imag();
  out.TransmissionDb = -10 * Log10(rl * mag2 * (0.25 / rs));
  out.Phase = static_cast<float>(Angle(den.real(), den.imag(), -1, ladder.pi));

  double dphi = out.Phase - prevPhase;
  if (dphi > 180) dphi -= 360;
  if (dphi < -180) dphi += 360;
  double df = F - prevFreq;
  if (std::fabs(df) < kTinyStep) df = kTinyStep;
  out.Delay = -dphi / (360 * df);

  // Zin = num conj(zden) / |zden|^2, the product written out as above.
  const Complex num = a * rl + b;
  const Complex zden = c * rl + dd;
  const double zden2 = zden.real() * zden.real() + zden.imag() * zden.imag();
  const double perZden2 = 1 / zden2;
  const Complex zin((num.real() * zden.real() + num.imag() * zden.imag()) * perZden2,
                    (num.imag() * zden.real() - num.real() * zden.imag()) * perZden2);
  if (withInputImpedance) {
    out.ZinMagnitude = std::sqrt(std::norm(zin));
    out.ZinAngle = Angle(zin.real(), zin.imag(), 1, ladder.pi);
  }

  const double r0 = ladder.reference;
  double rho = std::sqrt(std::norm(zin - r0) / std::norm(zin + r0));
  if (rho > kRhoMax) rho = kRhoMax;
  if (rho < kRhoMin) rho = kRhoMin;
  out.ReflectionDb = -20 * Log10(1 / rho);
  out.Vswr = (1 + rho) / (1 - rho);
  return out;
}

ChainMatrix LadderChain(const Ladder& ladder, float F) {
  const double w = static_cast<float>(ladder.twoPi * F);  // formed in single precision
  const models::Losses<double> q = PartLossesAt(ladder, w);
  ChainMatrix m;
  for (int j = 1; j <= ladder.stages; ++j) {
    const Section s = SectionAt(ladder, j, w, q);
    const Complex v(s.value.re, s.value.im);
    if (s.series) {
      m.B += m.A * v;
      m.D += m.C * v;
    } else {
      m.A += m.B * v;
      m.C += m.D * v;
    }
  }
  return m;
}

SParameters LadderSParameters(const Ladder& ladder, float F) {
  const ChainMatrix m = LadderChain(ladder, F);
  const double r1 = ladder.rsource, r2 = ladder.rload;
  const Complex den = m.A + m.B / r2 + m.C * r1 + m.D * r1 / r2;
  const double k = 2 * std::sqrt(r1 / r2);
  return {(m.A + m.B / r2 - m.C * r1 - m.D * r1 / r2) / den, k / den,
          k * (m.A * m.D - m.B * m.C) / den, (-m.A + m.B / r2 - m.C * r1 + m.D * r1 / r2) / den};
}

}  // namespace drenik
