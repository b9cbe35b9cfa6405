// Sums of exponentials on a time grid. On evenly spaced points exp(p t_n) is
// the running product of exp(p dt): one complex multiplication per pole and
// point instead of an exponential, and a pole's conjugate adds the same real
// part again, so only the upper half-plane is summed. The running product
// drifts by about n rounding errors, far below anything drawn or measured.

#include "timedomain/response.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace drenik {
namespace {

using Complex = std::complex<double>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// Points of the grid the figures are first located on; each figure is then
// refined on the exact sum.
constexpr int kFigureGrid = 4096;
// The bound on what is left of the transient that ends the figure grid, as
// a fraction of the step: well inside the 0.1 % settling band.
constexpr double kTailLeft = 1e-5;
// The automatic span runs this far past the 0.1 % settling time.
constexpr double kSpanMargin = 1.1;

// The step (or the envelope of the switched carrier) as a sum of modes:
//   step:      y(t) = d + sum r/p (exp(p t) - 1)
//   envelope:  y(t) = |d + sum r/(j wc - p) (1 - exp((p - j wc) t))|
// the second being the magnitude of the response to exp(j wc t) switched on
// at 0, taken relative to the carrier.
class Transient {
 public:
  Transient(const LadderModes& m, double carrierHz) : m_(m), wc_(2 * M_PI * carrierHz) {
    for (size_t k = 0; k < m.pole.size(); ++k) {
      const Complex p = m.pole[k], r = m.residue[k];
      if (wc_ > 0) {
        weight_.push_back(r / (Complex(0, wc_) - p));
        rate_.push_back(p - Complex(0, wc_));
      } else {
        // A pole at 0 (a part left floating) has no settled value; its
        // residue is 0 in any ladder the program builds.
        weight_.push_back(p == 0.0 ? 0.0 : r / p);
        rate_.push_back(p);
      }
    }
    initial_ = wc_ > 0 ? std::fabs(m.direct) : m.direct;
    Complex end = m.direct;
    // As t grows the exponentials die: the step ends at d - sum r/p, the
    // carrier's envelope at |d + sum r/(j wc - p)| = |H(j wc)| (its sign
    // matters where d is not 0, as in a bandstop).
    for (size_t k = 0; k < weight_.size(); ++k) end += wc_ > 0 ? weight_[k] : -weight_[k];
    final_ = wc_ > 0 ? std::abs(end) : end.real();
  }

  double Value(double t) const {
    Complex sum = m_.direct;
    for (size_t k = 0; k < weight_.size(); ++k)
      sum += (wc_ > 0 ? -weight_[k] : weight_[k]) * (std::exp(rate_[k] * t) - 1.0);
    return wc_ > 0 ? std::abs(sum) : sum.real();
  }
  // Values at n * dt, n = 0..count-1; with a carrier also the response
  // itself and, without one, the impulse response.
  void Grid(double dt, int count, std::vector<double>& value, std::vector<double>* impulse,
            std::vector<double>* wave) const;

  double Initial() const { return initial_; }
  double Final() const { return final_; }
  // The slowest decay (1/s) and the largest a mode starts with.
  double SlowestDecay() const {
    double s = std::numeric_limits<double>::infinity();
    for (const Complex& p : rate_) s = std::min(s, -p.real());
    return s;
  }
  double Spread() const {
    double s = 0;
    for (const Complex& w : weight_) s += std::abs(w);
    return s;
  }

 private:
  const LadderModes& m_;
  double wc_;
  std::vector<Complex> weight_, rate_;
  double initial_ = 0, final_ = 0;
};

void Transient::Grid(double dt, int count, std::vector<double>& value, std::vector<double>* impulse,
                     std::vector<double>* wave) const {
  value.assign(count, 0);
  if (impulse) impulse->assign(count, 0);
  if (wc_ > 0) {
    std::vector<Complex> sum(count, m_.direct);
    for (size_t k = 0; k < weight_.size(); ++k) {
      const Complex z = std::exp(rate_[k] * dt), w = weight_[k];
      Complex e = 1;
      for (int n = 0; n < count; ++n, e *= z) sum[n] += w * (1.0 - e);
    }
    if (wave) wave->resize(count);
    for (int n = 0; n < count; ++n) {
      value[n] = std::abs(sum[n]);
      if (wave) (*wave)[n] = (sum[n] * std::polar(1.0, wc_ * dt * n)).real();
    }
  } else {
    for (int n = 0; n < count; ++n) value[n] = m_.direct;
    for (size_t k = 0; k < weight_.size(); ++k) {
      const Complex p = rate_[k];
      if (p.imag() < 0) continue;  // its conjugate adds the same
      const double twice = p.imag() > 0 ? 2 : 1;
      const Complex z = std::exp(p * dt), w = twice * weight_[k], r = twice * m_.residue[k];
      Complex e = 1;
      double* v = value.data();
      for (int n = 0; n < count; ++n, e *= z) v[n] += (w * (e - 1.0)).real();
      if (impulse) {
        e = 1;
        double* h = impulse->data();
        for (int n = 0; n < count; ++n, e *= z) h[n] += (r * e).real();
      }
    }
  }
  if (impulse && wc_ > 0) {
    for (size_t k = 0; k < m_.pole.size(); ++k) {
      const Complex z = std::exp(m_.pole[k] * dt);
      Complex e = m_.residue[k];
      for (int n = 0; n < count; ++n, e *= z) (*impulse)[n] += e.real();
    }
  }
}

// The t in [a, b] where f changes sign (f(a) and f(b) of opposite signs).
template <typename F>
double Crossing(F f, double a, double b) {
  double fa = f(a);
  for (int i = 0; i < 60 && b - a > 1e-14 * b; ++i) {
    const double m = 0.5 * (a + b), fm = f(m);
    if ((fm < 0) == (fa < 0)) {
      a = m, fa = fm;
    } else {
      b = m;
    }
  }
  return 0.5 * (a + b);
}

// Golden-section search for the largest value of f in [a, b].
template <typename F>
double Peak(F f, double a, double b) {
  const double g = 0.5 * (std::sqrt(5.0) - 1);
  double x1 = b - g * (b - a), x2 = a + g * (b - a), f1 = f(x1), f2 = f(x2);
  for (int i = 0; i < 80; ++i) {
    if (f1 < f2) {
      a = x1, x1 = x2, f1 = f2, x2 = a + g * (b - a), f2 = f(x2);
    } else {
      b = x2, x2 = x1, f2 = f1, x1 = b - g * (b - a), f1 = f(x1);
    }
  }
  return 0.5 * (a + b);
}

struct Located {
  TimeFigures figures{kNaN, kNaN, kNaN, kNaN, kNaN, kNaN};
  double end = 0;  // where the figure grid ends
};

Located Locate(const Transient& tr) {
  Located out;
  const double sigma = tr.SlowestDecay(), spread = tr.Spread();
  const double step = tr.Final() - tr.Initial();
  const double ref = std::fabs(step) > 1e-9 * spread ? std::fabs(step) : spread;
  if (!(sigma > 0) || !(ref > 0)) return out;
  out.end = std::max(std::log(spread / (kTailLeft * ref)), 1.0) / sigma;
  const double dt = out.end / (kFigureGrid - 1);
  std::vector<double> y;
  tr.Grid(dt, kFigureGrid, y, nullptr, nullptr);
  if (!(std::fabs(step) > 1e-9 * spread)) return out;

  auto progress = [&](double t) { return (tr.Value(t) - tr.Initial()) / step; };
  std::vector<double> p(y.size());
  for (size_t n = 0; n < y.size(); ++n) p[n] = (y[n] - tr.Initial()) / step;
  auto first = [&](double level) {
    for (size_t n = 1; n < p.size(); ++n)
      if (p[n] >= level)
        return Crossing([&](double t) { return progress(t) - level; }, dt * (n - 1), dt * n);
    return kNaN;
  };
  auto settled = [&](double band) {
    for (size_t n = p.size(); n-- > 0;)
      if (std::fabs(p[n] - 1) > band) {
        if (n + 1 == p.size()) return kNaN;
        return Crossing([&](double t) { return std::fabs(progress(t) - 1) - band; }, dt * n,
                        dt * (n + 1));
      }
    return 0.0;
  };
  TimeFigures& f = out.figures;
  f.rise1090 = first(0.9) - first(0.1);
  f.delay50 = first(0.5);
  f.settling1pct = settled(0.01);
  f.settling01pct = settled(0.001);
  const size_t top = std::max_element(p.begin(), p.end()) - p.begin();
  if (p[top] > 1) {
    const double lo = dt * (top ? top - 1 : 0), hi = dt * std::min(top + 1, p.size() - 1);
    f.peakTime = Peak(progress, lo, hi);
    f.overshootPct = 100 * (std::max(progress(f.peakTime), p[top]) - 1);
  } else {
    f.overshootPct = 0;
  }
  return out;
}

}  // namespace

TimeFigures FiguresOf(const LadderModes& modes, double carrier) {
  return Locate(Transient(modes, carrier)).figures;
}

TimeResponse ComputeTimeResponse(const TimeRequest& request) {
  const LadderNetwork net = NetworkOf(request.ladder, request.lossFrequency);
  const LadderModes modes = ModesOf(net, 2 * M_PI * request.lossFrequency);
  TimeResponse out = ResponseOf(modes, request.carrier, request.span, request.points);
  out.unmodelled = net.unmodelled;
  return out;
}

TimeResponse ResponseOf(const LadderModes& modes, double carrier, double span, int points) {
  TimeResponse out;
  if (!modes.fault.empty()) {
    out.fault = modes.fault;
    return out;
  }
  if (modes.pole.empty()) {
    out.fault = "Cannot work out the time response: the ladder stores no energy.";
    return out;
  }
  if (!(carrier >= 0) || !std::isfinite(carrier) || points < 2 || !(span >= 0) ||
      !std::isfinite(span)) {
    out.fault = "Cannot work out the time response: the carrier, span or points are out of range.";
    return out;
  }
  const Transient tr(modes, carrier);
  const Located located = Locate(tr);
  if (!(located.end > 0)) {
    out.fault = "Cannot work out the time response: the ladder does not settle.";
    return out;
  }
  out.figures = located.figures;
  out.initial = tr.Initial();
  out.final = tr.Final();
  if (span == 0) {
    span = std::isfinite(out.figures.settling01pct) && out.figures.settling01pct > 0
               ? kSpanMargin * out.figures.settling01pct
               : located.end;
  }
  const double dt = span / (points - 1);
  out.t.resize(points);
  for (int n = 0; n < points; ++n) out.t[n] = dt * n;
  tr.Grid(dt, points, out.step, &out.impulse, carrier > 0 ? &out.carrierWave : nullptr);
  return out;
}

}  // namespace drenik
