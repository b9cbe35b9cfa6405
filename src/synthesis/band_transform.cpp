// Bandpass and bandstop ladders. Every routine first fills the lowpass
// ladder of the same input form at 1 ohm and 1 rad/s (the lowpass fill
// routines, so that the odd/even and Cauer rules of the prototype hold
// exactly as in a lowpass design), then maps each normalized element into
// the band at the real source resistance. The arithmetic is in double; each
// value is stored once as a float.

#include "synthesis/band_transform.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "core/formatters.h"
#include "synthesis/families.h"
#include "synthesis/stray_warning.h"
#include "synthesis/topologies.h"

namespace drenik {
namespace {

using enum ElementKind;

struct Part {
  ElementKind kind;
  double l = 0, c = 0;  // H, F
};

// The normalized lowpass ladder (1 ohm source, cutoff 1 rad/s) of the given
// form, and its normalized load resistance.
struct Normalized {
  std::vector<Part> parts;
  double rload = 1;
};

Normalized NormalizedLowpass(const DesignRecord& d, const char* form) {
  const TopologyInfo* lowpass = FindTopology(form);
  DesignRecord s;
  s.G = d.G;
  s.H = d.H;
  s.CauerFlag = d.CauerFlag;
  PositionScaler unit(1.0, 1.0);
  lowpass->fill(s, unit, d.Order);
  Normalized out;
  for (int k = 1; k <= d.Order; ++k) {
    // A position the prototype leaves without parts is a wire.
    if (s.ElementType[k] == 0) continue;
    out.parts.push_back({KindOf(s.ElementType[k]), s.L[k], s.C[k]});
  }
  const FamilyInfo* family = FindFamily(d.Family);
  if (family && family->loadIsSource)
    out.rload = 1;
  else if (LoadScalesDirectly(*lowpass))
    out.rload = d.RloadNormalized;
  else
    out.rload = 1 / static_cast<double>(d.RloadNormalized);
  return out;
}

// The band of a design in rad/s and the source resistance.
struct Band {
  double r, w0, wb;
};
Band BandOf(const DesignRecord& d) {
  const double twoPi = static_cast<double>(d.Pi) + d.Pi;
  return {d.Rsource, twoPi * d.Center, twoPi * d.Width};
}

// A resonator written as 1 / (s b + 1 / (s a)): a parallel tank of
// L = a, C = b when it is an impedance, a series L-C branch of L = b, C = a
// when it is an admittance.
struct Resonator {
  double a, b;
};

// The immittance 1 / (s a1 + 1 / (s b1)) + s b2 + 1 / (s a2) (a series
// resonant branch beside a parallel pair) has its reciprocal poles at the
// two transmission zeros either side of the band; its reciprocal is the sum
// of two resonators tuned to them (Foster's partial fractions in s^2).
void FosterSplit(double a1, double b1, double a2, double b2, Resonator out[2]) {
  const double d4 = a1 * b1 * a2 * b2;
  const double d2 = b1 * a2 + b2 * a2 + a1 * b1;
  const double root = std::sqrt(d2 * d2 - 4 * d4);
  // The squared zero frequencies, the smaller one formed without cancelling.
  const double x[2] = {2 / (d2 + root), (d2 + root) / (2 * d4)};
  for (int i = 0; i < 2; ++i) {
    const double other = x[1 - i];
    const double k = a2 * (1 - a1 * b1 * x[i]) / (d4 * (other - x[i]));
    out[i] = {k / x[i], 1 / k};
  }
}

// One lowpass element in a bandpass ladder. A series inductor l becomes the
// series branch L = r l / wb, C = 1 / (w0^2 L); a shunt capacitor c the tank
// C = c / (r wb), L = 1 / (w0^2 C). In a resonant arm both happen at once and
// the arm is split into its two resonators.
void AddBandpass(const Part& p, const Band& b, std::vector<Part>& out) {
  const double w02 = b.w0 * b.w0;
  const double ls = b.r * p.l / b.wb, cs = 1 / (w02 * ls);    // from the inductor
  const double cp = p.c / (b.r * b.wb), lp = 1 / (w02 * cp);  // from the capacitor
  Resonator r[2];
  switch (p.kind) {
    case SeriesL:
      out.push_back({SeriesLC, ls, cs});
      break;
    case ShuntC:
      out.push_back({ShuntLC, lp, cp});
      break;
    case SeriesTank:  // Y = series branch + parallel pair; Z splits into tanks
      FosterSplit(ls, cs, lp, cp, r);
      for (const Resonator& q : r) out.push_back({SeriesTank, q.a, q.b});
      break;
    case ShuntTrap:  // Z = series branch + tank; Y splits into series branches
      FosterSplit(cp, lp, cs, ls, r);
      for (const Resonator& q : r) out.push_back({ShuntTrap, q.b, q.a});
      break;
    default:
      out.push_back(p);
      break;
  }
}

// One lowpass element in a bandstop ladder: a series inductor l becomes the
// series tank L = r l wb / w0^2, C = 1 / (r l wb); a shunt capacitor c the
// branch to ground C = c wb / (r w0^2), L = 1 / (w0^2 C).
void AddBandstop(const Part& p, const Band& b, std::vector<Part>& out) {
  const double w02 = b.w0 * b.w0;
  const double lt = b.r * p.l * b.wb / w02, ct = 1 / (b.r * p.l * b.wb);  // from the inductor
  const double cb = p.c * b.wb / (b.r * w02), lb = 1 / (w02 * cb);        // from the capacitor
  Resonator r[2];
  switch (p.kind) {
    case SeriesL:
      out.push_back({SeriesTank, lt, ct});
      break;
    case ShuntC:
      out.push_back({ShuntTrap, lb, cb});
      break;
    case SeriesTank:  // Y = (branch from the capacitor) + (pair from the inductor)
      FosterSplit(lb, cb, lt, ct, r);
      for (const Resonator& q : r) out.push_back({SeriesTank, q.a, q.b});
      break;
    case ShuntTrap:  // Z = (branch from the capacitor) + (tank from the inductor)
      FosterSplit(ct, lt, cb, lb, r);
      for (const Resonator& q : r) out.push_back({ShuntTrap, q.b, q.a});
      break;
    default:
      out.push_back(p);
      break;
  }
}

// Stores the parts from position 1, the load and the count.
EngineReport Store(DesignRecord& d, const std::vector<Part>& parts, double rload) {
  if (static_cast<int>(parts.size()) > kMaxPositions)
    return EngineReport::Fault(
        "Subscript out of range: the band ladder needs " + std::to_string(parts.size()) +
        " positions, the ladder has room for " + std::to_string(kMaxPositions) + ".");
  for (size_t i = 0; i < parts.size(); ++i) {
    const int k = static_cast<int>(i) + 1;
    const Part& p = parts[i];
    const float l = static_cast<float>(p.l), c = static_cast<float>(p.c);
    const ElementFacts* f = FactsOf(p.kind);
    if ((f && f->hasL && !(std::isfinite(l) && l > 0)) ||
        (f && f->hasC && !(std::isfinite(c) && c > 0)))
      return EngineReport::Fault("Overflow: the value at position " + std::to_string(k) +
                                 " is out of range.");
    d.ElementType[k] = CodeOf(p.kind);
    d.L[k] = f && f->hasL ? l : 0;
    d.C[k] = f && f->hasC ? c : 0;
  }
  for (size_t k = parts.size() + 1; k < d.ElementType.size(); ++k) d.ElementType[k] = 0;
  d.Rload = static_cast<float>(rload * d.Rsource);
  d.Stages = static_cast<int16_t>(parts.size());
  return {};
}

EngineReport Direct(DesignRecord& d, const char* form, bool bandstop) {
  if (std::string why = BandFault(d.Center, d.Width); !why.empty()) return EngineReport::Fault(why);
  const Normalized lowpass = NormalizedLowpass(d, form);
  const Band band = BandOf(d);
  std::vector<Part> parts;
  for (const Part& p : lowpass.parts)
    bandstop ? AddBandstop(p, band, parts) : AddBandpass(p, band, parts);
  return Store(d, parts, lowpass.rload);
}

// The prototype values g0 .. g(n+1) of the C-input ladder: g(n+1) is the
// load resistance after a shunt capacitor, its conductance after a series
// inductor.
std::vector<double> PrototypeValues(const DesignRecord& d) {
  const Normalized lowpass = NormalizedLowpass(d, "Cinlowpass");
  std::vector<double> g{1};
  for (const Part& p : lowpass.parts) g.push_back(p.kind == ShuntC ? p.c : p.l);
  const bool endsInShunt = !lowpass.parts.empty() && lowpass.parts.back().kind == ShuntC;
  g.push_back(endsInShunt ? lowpass.rload : 1 / lowpass.rload);
  return g;
}

// Rounds to two significant figures.
double TwoFigures(double v) {
  const double scale = std::pow(10.0, std::floor(std::log10(v)) - 1);
  return std::round(v / scale) * scale;
}

}  // namespace

BandEdges EdgesOfBand(double center, double width) {
  const double f1 = -width / 2 + std::sqrt(width * width / 4 + center * center);
  return {f1, f1 + width};
}

double BandSweepFactor(double center, double width, double lowpassEnd) {
  const double x = lowpassEnd * width / center;
  return (x + std::sqrt(x * x + 4)) / 2;
}

bool BandTooNarrow(double center, double width) {
  // A part in a million below the limit still passes: a centre and width
  // typed at exactly the limit arrive as floats a rounding either side.
  return width < center * kLeastFractionalBandwidth * (1 - 1e-6);
}

std::string BandFault(double center, double width) {
  if (!(center > 0)) return "The centre frequency must be above 0 Hz.";
  if (!(center - width / 2 > 0))
    return "The band reaches down to 0 Hz: make the bandwidth less than twice the centre "
           "frequency.";
  if (BandTooNarrow(center, width))
    return "The band is too narrow: the bandwidth must be at least 0.01% of the centre "
           "frequency (" +
           TrimBlanks(FormatFrequency(static_cast<float>(center * kLeastFractionalBandwidth))) +
           " at " + TrimBlanks(FormatFrequency(static_cast<float>(center))) + ").";
  return {};
}

EngineReport FillCInputBandpass(DesignRecord& d) {
  return Direct(d, "Cinlowpass", false);
}
EngineReport FillLInputBandpass(DesignRecord& d) {
  return Direct(d, "Linlowpass", false);
}
EngineReport FillCInputBandstop(DesignRecord& d) {
  return Direct(d, "Cinlowpass", true);
}
EngineReport FillLInputBandstop(DesignRecord& d) {
  return Direct(d, "Linlowpass", true);
}

// Shunt tanks of one inductance coupled by series capacitors. The inverter
// admittances are J(j,j+1) = FBW b / sqrt(g_j g_j+1) with the resonator's
// susceptance slope b = w0 C = 1 / (w0 L), so the coupling capacitor
// J / w0 is k sqrt(C_j C_j+1) with k = FBW / sqrt(g_j g_j+1). At the ends
// J = sqrt(G b FBW / (g g)), realised by a series capacitor whose shunt
// equivalent C / (1 + (w0 C / G)^2) the first and last resonators give up,
// as every resonator gives up the coupling capacitors on either side.
namespace {

EngineReport CoupledAt(const DesignRecord& d, double center, double width, double lr,
                       std::vector<Part>& parts) {
  const std::vector<double> g = PrototypeValues(d);
  const int n = static_cast<int>(g.size()) - 2;
  const double twoPi = static_cast<double>(d.Pi) + d.Pi;
  const Band band{d.Rsource, twoPi * center, twoPi * width};
  const double fbw = band.wb / band.w0;
  const double b = 1 / (band.w0 * lr);
  const double cres = b / band.w0;
  const double gs = 1 / band.r;  // source and load conductance: the load is Rsource

  // Series coupling capacitors 0..n and the shunt part each end one leaves.
  std::vector<double> cc(n + 1), shunt(n + 1);
  for (int j = 0; j <= n; ++j) {
    if (j == 0 || j == n) {
      const double jInv = std::sqrt(gs * b * fbw / (g[j] * g[j + 1]));
      const double ratio = jInv / gs;
      if (!(ratio < 1))
        return EngineReport::Fault(
            "No coupled-resonator design for this band: the end couplings need a larger "
            "resonator inductance or a narrower bandwidth.");
      cc[j] = jInv / (band.w0 * std::sqrt(1 - ratio * ratio));
      const double x = band.w0 * cc[j] / gs;
      shunt[j] = cc[j] / (1 + x * x);
    } else {
      cc[j] = fbw * b / std::sqrt(g[j] * g[j + 1]) / band.w0;
      shunt[j] = cc[j];
    }
  }
  parts = {{SeriesC, 0, cc[0]}};
  for (int j = 1; j <= n; ++j) {
    const double c = cres - shunt[j - 1] - shunt[j];
    if (!(c > 0))
      return EngineReport::Fault(
          "No coupled-resonator design for this band: resonator " + std::to_string(j) +
          " would need a negative capacitance. Choose a smaller resonator inductance or a "
          "narrower bandwidth.");
    parts.push_back({ShuntLC, lr, c});
    parts.push_back({SeriesC, 0, cc[j]});
  }
  return {};
}

// The smallest capacitor of the coupled ladder with resonators of `lr`
// henries (F); 0 where there is no such design.
double SmallestCoupledC(const DesignRecord& d, double lr) {
  std::vector<Part> parts;
  if (!CoupledAt(d, d.Center, d.Width, lr, parts).Ok()) return 0;
  double least = HUGE_VAL;
  for (const Part& p : parts) least = std::min(least, p.c);
  return least;
}

// The transducer gain of a lossless coupled ladder at f (Hz), terminated in
// r at both ends: 4 r^2 / |A r + B + C r^2 + D r|^2 of its chain matrix.
double LosslessGain(const std::vector<Part>& parts, double r, double twoPi, double f) {
  using C = std::complex<double>;
  const C jw(0, twoPi * f);
  C a = 1, b = 0, c = 0, dd = 1;
  for (const Part& p : parts) {
    if (p.kind == SeriesC) {
      const C z = 1.0 / (jw * p.c);
      b += a * z, dd += c * z;
    } else {
      const C y = jw * p.c + 1.0 / (jw * p.l);
      a += b * y, c += dd * y;
    }
  }
  return 4 * r * r / std::norm(a * r + b + c * r * r + dd * r);
}

// Where the gain last reaches `level` coming in from `outside` towards
// `inside` (the band edge on that side), Hz.
double EdgeFrom(const std::vector<Part>& parts, double r, double twoPi, double level,
                double outside, double inside) {
  constexpr int kSteps = 400;
  double prev = outside;
  for (int i = 1; i <= kSteps; ++i) {
    const double f = outside + (inside - outside) * i / kSteps;
    if (LosslessGain(parts, r, twoPi, f) >= level) {
      double lo = prev, hi = f;  // the crossing lies between
      for (int k = 0; k < 50; ++k) {
        const double mid = (lo + hi) / 2;
        (LosslessGain(parts, r, twoPi, mid) >= level ? hi : lo) = mid;
      }
      return (lo + hi) / 2;
    }
    prev = f;
  }
  return inside;
}

}  // namespace

// The end couplings set the external Q, g0 g1 / FBW, with the source
// conductance seen through a series capacitor. A resonator reactance of
// 0.09 R g / FBW makes the end coupling capacitor about 0.3 of the
// resonator's, which keeps the resonator capacitors positive up to
// fractional bandwidths of about 30 %.
//
// Every capacitor of the ladder scales as 1 / L, and the inner couplings
// are the band's fraction of the resonator's: a narrow band at VHF leaves
// them at a fraction of a picofarad, which the board's strays swamp. Where
// that reactance leaves a capacitor below kLeastPracticalCapacitance (or
// gives no design at all), the resonators take the two-figure inductance
// nearest it that keeps every capacitor at or above that (the largest
// such, as the capacitors fall with L), and where none does, the one whose
// smallest capacitor is largest.
double DefaultResonatorL(const DesignRecord& d) {
  const std::vector<double> g = PrototypeValues(d);
  const size_t n = g.size() - 2;
  const double fbw = static_cast<double>(d.Width) / d.Center;
  const double gEnd = std::min(g[0] * g[1], g[n] * g[n + 1]);
  const double w0 = (static_cast<double>(d.Pi) + d.Pi) * d.Center;
  const double practical = TwoFigures(0.09 * d.Rsource * gEnd / fbw / w0);
  if (!(practical > 0) || !std::isfinite(practical) ||
      SmallestCoupledC(d, practical) >= kLeastPracticalCapacitance)
    return practical;
  // Every two-figure value three decades either side.
  const int top = static_cast<int>(std::floor(std::log10(practical)));
  double best = practical, bestC = 0;
  bool kept = false;
  for (int decade = top - 3; decade <= top + 3; ++decade) {
    for (int figures = 10; figures <= 99; ++figures) {
      const double lr = figures * std::pow(10.0, decade - 1);
      const double least = SmallestCoupledC(d, lr);
      const bool keeps = least >= kLeastPracticalCapacitance;
      const bool nearer =
          std::fabs(std::log(lr / practical)) < std::fabs(std::log(best / practical));
      if ((keeps && (!kept || nearer)) || (!kept && !keeps && least > bestC))
        best = lr, bestC = least, kept = keeps;
    }
  }
  return best;
}

// The coupling capacitors are frequency dependent (J = w C), so the
// narrow-band formulas leave a band of 10 % a few percent of its width
// high and narrow. The design is repeated with its asked edges moved by
// the error its own lossless response shows, until the edges sit where
// they were asked for.
EngineReport FillCoupledBandpass(DesignRecord& d) {
  if (std::string why = BandFault(d.Center, d.Width); !why.empty()) return EngineReport::Fault(why);
  const FamilyInfo* family = FindFamily(d.Family);
  if (family && family->resonantArms)
    return EngineReport::Fault(
        "The coupled-resonator bandpass is designed from Butterworth, Chebyshev and Bessel "
        "prototypes: choose one of those families or a direct bandpass topology.");
  // The edges are at the ripple for a ripple family, at 3 dB otherwise.
  const double edgeDb = family && family->hasRipple ? d.Apass : 10 * std::log10(2.0);
  const double level = std::pow(10.0, -edgeDb / 10) * (1 - 1e-9);
  const double twoPi = static_cast<double>(d.Pi) + d.Pi;
  const BandEdges want = EdgesOfBand(d.Center, d.Width);
  double f1 = want.f1, f2 = want.f2;
  const double lr = d.ResonatorL > 0 ? d.ResonatorL : DefaultResonatorL(d);
  std::vector<Part> parts;
  for (int round = 0; round < 8; ++round) {
    if (EngineReport r = CoupledAt(d, std::sqrt(f1 * f2), f2 - f1, lr, parts); !r.Ok()) return r;
    const double margin = d.Width / 2;
    const double got1 = EdgeFrom(parts, d.Rsource, twoPi, level, want.f1 - margin, d.Center);
    const double got2 = EdgeFrom(parts, d.Rsource, twoPi, level, want.f2 + margin, d.Center);
    if (std::fabs(got1 - want.f1) + std::fabs(got2 - want.f2) < 1e-5 * d.Width) break;
    f1 += want.f1 - got1;
    f2 += want.f2 - got2;
    if (!(f1 > 0 && f2 > f1)) break;
  }
  return Store(d, parts, 1);
}

}  // namespace drenik
