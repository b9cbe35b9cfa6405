#include "synthesis/ladder_fit.h"

#include <Eigen/Dense>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/design_record.h"

namespace drenik {

namespace {

using Complex = std::complex<double>;

// Every pole with its conjugate: the roots of the target's E(s).
std::vector<Complex> AllPoles(const PoleTarget& t) {
  std::vector<Complex> all;
  for (Complex p : t.poles) {
    all.push_back(p);
    if (p.imag() != 0) all.push_back(std::conj(p));
  }
  return all;
}

// The unknowns are the logarithms of the elements (and of the load), so
// that no step of the search can make one negative.
struct Unknowns {
  const LadderForm& form;
  int Count() const { return form.order + (form.freeLoad ? 1 : 0); }
  LadderValues Values(const Eigen::VectorXd& x) const {
    LadderValues v;
    v.element.assign(static_cast<size_t>(form.order) + 1, 0.0);
    for (int i = 1; i <= form.order; ++i) v.element[static_cast<size_t>(i)] = std::exp(x[i - 1]);
    v.rload = form.freeLoad ? std::exp(x[form.order]) : 1.0;
    return v;
  }
  Eigen::VectorXd Of(const LadderValues& v) const {
    Eigen::VectorXd x(Count());
    for (int i = 1; i <= form.order; ++i) x[i - 1] = std::log(v.element[static_cast<size_t>(i)]);
    if (form.freeLoad) x[form.order] = std::log(v.rload);
    return x;
  }
};

// One position's chain matrix at s and its derivative by the logarithm of
// the element (x dM/dx), which has a single entry.
struct Section {
  Complex m[2][2];
  Complex slope;
  int row, col;  // where x dM/dx is not zero
};

Section SectionAt(const LadderForm& form, const LadderValues& v, int k, size_t& arm, Complex s) {
  const Complex sx = s * v.element[static_cast<size_t>(k)];
  if (k % 2 == 1) return {{{1, 0}, {sx, 1}}, sx, 1, 0};  // shunt capacitor
  // A tank: Z = sL / q with q = 1 + s^2 / zero^2; the whole chain is
  // multiplied by q so that it stays a polynomial: [q sL; 0 q]. A plain
  // inductor is [1 sL; 0 1].
  Complex q = 1;
  if (arm < form.armZeros.size()) {
    const double w = form.armZeros[arm++];
    q = 1.0 + s * s / (w * w);
  }
  return {{{q, sx}, {0, q}}, sx, 0, 1};
}

// E = [1 1] M1 ... Mn [r; 1] / (2 sqrt r), with the derivative by the
// logarithm of each element and of r in grad (when given), from the
// products of the sections before and after each one.
Complex Denominator(const LadderForm& form, const LadderValues& v, Complex s, Complex* grad) {
  const int n = std::min(form.order, kPrototypePositions);  // FitLadder refuses longer ones
  std::array<Section, kPrototypePositions> sections;
  size_t arm = 0;
  for (int k = 1; k <= n; ++k) sections[static_cast<size_t>(k) - 1] = SectionAt(form, v, k, arm, s);
  const double root = std::sqrt(v.rload);
  std::array<std::array<Complex, 2>, kPrototypePositions + 1> before;
  before[0] = {1.0, 1.0};
  for (int k = 0; k < n; ++k) {
    const auto& m = sections[static_cast<size_t>(k)].m;
    const auto& p = before[static_cast<size_t>(k)];
    before[static_cast<size_t>(k) + 1] = {p[0] * m[0][0] + p[1] * m[1][0],
                                          p[0] * m[0][1] + p[1] * m[1][1]};
  }
  const auto& total = before[static_cast<size_t>(n)];  // [A + C, B + D]
  const Complex e = (total[0] * root + total[1] / root) / 2.0;
  if (!grad) return e;
  std::array<Complex, 2> after = {root / 2, 0.5 / root};
  for (int k = n - 1; k >= 0; --k) {
    const Section& sec = sections[static_cast<size_t>(k)];
    grad[k] = before[static_cast<size_t>(k)][static_cast<size_t>(sec.row)] * sec.slope *
              after[static_cast<size_t>(sec.col)];
    after = {sec.m[0][0] * after[0] + sec.m[0][1] * after[1],
             sec.m[1][0] * after[0] + sec.m[1][1] * after[1]};
  }
  if (form.freeLoad) grad[n] = (total[0] * root - total[1] / root) / 4.0;
  return e;
}

// The ladder's E at each target pole, divided by the target's E'(p): near
// the solution, how far the ladder's pole lies from p. An even elliptic
// ladder adds its DC level, which fixes the load.
class Residual {
 public:
  Residual(const LadderForm& form, const PoleTarget& target)
      : form_(form), target_(target), all_(AllPoles(target)) {
    for (Complex p : target.poles) {
      Complex slope = -target.dcLevel / p;
      bool self = false;
      for (Complex q : all_) {
        if (q == p && !self) {
          self = true;  // the factor of p itself is what E' leaves out
          continue;
        }
        slope *= 1.0 - p / q;
      }
      slopes_.push_back(slope);
    }
  }

  int Count() const {
    int n = form_.freeLoad ? 1 : 0;
    for (Complex p : target_.poles) n += p.imag() != 0 ? 2 : 1;
    return n;
  }

  // The residuals and, when asked for, their Jacobian by the unknowns.
  // Infinity when the ladder cannot be evaluated (an element overflowed).
  double Evaluate(const LadderValues& v, Eigen::VectorXd& r,
                  Eigen::MatrixXd* jacobian = nullptr) const {
    const int unknowns = form_.order + (form_.freeLoad ? 1 : 0);
    r.resize(Count());
    if (jacobian) jacobian->setZero(Count(), unknowns);
    std::vector<Complex> grad(static_cast<size_t>(unknowns));
    int i = 0;
    for (size_t k = 0; k < target_.poles.size(); ++k) {
      const Complex p = target_.poles[k];
      const Complex e = Denominator(form_, v, p, jacobian ? grad.data() : nullptr) / slopes_[k];
      const bool pair = p.imag() != 0;
      if (jacobian)
        for (int j = 0; j < unknowns; ++j) {
          const Complex g = grad[static_cast<size_t>(j)] / slopes_[k];
          (*jacobian)(i, j) = g.real();
          if (pair) (*jacobian)(i + 1, j) = g.imag();
        }
      r[i++] = e.real();
      if (pair) r[i++] = e.imag();
    }
    if (form_.freeLoad) {
      // E(0) = (1 + r) / (2 sqrt r): only the load moves it.
      const double rl = v.rload;
      r[i] = std::log((1 + rl) / (2 * std::sqrt(rl)) / target_.dcLevel);
      if (jacobian) (*jacobian)(i, form_.order) = rl / (1 + rl) - 0.5;
    }
    const double norm = r.norm();
    return std::isfinite(norm) ? norm : INFINITY;
  }

 private:
  const LadderForm& form_;
  const PoleTarget& target_;
  std::vector<Complex> all_;
  std::vector<Complex> slopes_;
};

// A fit counts when its poles are this close (relative) to the target's;
// the search stops where a step no longer gains, or a thousand times closer
// (what is left there is the rounding of the evaluation).
constexpr double kSettled = 1e-8;
constexpr double kClosest = 1e-11;
constexpr int kMostSteps = 40;

}  // namespace

Complex LadderDenominator(const LadderForm& form, const LadderValues& v, Complex s) {
  return Denominator(form, v, s, nullptr);
}

PoleTarget PoleTargetOf(const std::vector<Complex>& poles, double dcLevel) {
  PoleTarget t{.poles = {}, .dcLevel = dcLevel};
  for (Complex p : poles) {
    if (std::fabs(p.imag()) <= 1e-9 * std::abs(p))
      t.poles.emplace_back(p.real(), 0.0);
    else if (p.imag() > 0)
      t.poles.push_back(p);
    else {
      // The lower half's pole stands for its pair unless the upper one is listed too.
      bool listed = false;
      for (Complex q : poles) listed = listed || std::abs(q - std::conj(p)) <= 1e-9 * std::abs(p);
      if (!listed) t.poles.push_back(std::conj(p));
    }
  }
  return t;
}

std::optional<LadderValues> FitLadder(const LadderForm& form, const PoleTarget& target,
                                      LadderValues start) {
  const Unknowns unknowns{form};
  const Residual residual(form, target);
  const int n = unknowns.Count();
  if (residual.Count() != n || static_cast<int>(start.element.size()) != form.order + 1 ||
      form.order > kPrototypePositions)
    return std::nullopt;
  for (int i = 1; i <= form.order; ++i) {
    double& e = start.element[static_cast<size_t>(i)];
    e = std::fabs(e);
    if (!(e > 0) || !std::isfinite(e)) e = 1;  // a start that lost an element
  }
  if (!(start.rload > 0) || !std::isfinite(start.rload)) start.rload = 1;

  Eigen::VectorXd x = unknowns.Of(start), r;
  Eigen::MatrixXd jacobian;
  double norm = residual.Evaluate(start, r, &jacobian);
  for (int step = 0; step < kMostSteps && std::isfinite(norm) && norm > kClosest; ++step) {
    const Eigen::VectorXd dx = jacobian.partialPivLu().solve(r);
    if (!dx.allFinite()) break;
    // Halve the step until it gains; a step that gains nothing ends the search.
    bool gained = false;
    for (double t = 1; t > 1e-6 && !gained; t /= 2) {
      const Eigen::VectorXd trial = x - t * dx;
      Eigen::VectorXd rt;
      const double nt = residual.Evaluate(unknowns.Values(trial), rt);
      if (nt < norm) {
        x = trial, r = rt, norm = nt;
        gained = true;
      }
    }
    if (!gained) break;
    residual.Evaluate(unknowns.Values(x), r, &jacobian);
  }
  if (!(norm < kSettled)) return std::nullopt;
  return unknowns.Values(x);
}

}  // namespace drenik
