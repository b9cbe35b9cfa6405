#include "parts/linear_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace drenik {
namespace {

using Complex = std::complex<double>;

// Step of the finite differences, in ln of the part value (0.01%).
constexpr double kStep = 1e-4;
// Weight of a stopband peak's change of ln|S21| against the change of S11:
// 1 dB (0.115 neper) there counts like a reflection change of about 0.01,
// which costs a 20 dB return loss about 1 dB.
constexpr double kStopWeight = 0.1;
constexpr double kDbPerNeper = 8.685889638065037;  // 20 / ln 10
// Beyond this many combinations the ranking descends from the nearest ones
// instead of trying them all.
constexpr size_t kMaxEnumerated = size_t{1} << 14;

struct Response {
  std::vector<Complex> s11;
  std::vector<double> lnS21;
};

Response ResponseOf(const Ladder& ladder, const std::vector<float>& passband,
                    const std::vector<float>& stopband) {
  Response r;
  for (float f : passband) r.s11.push_back(LadderSParameters(ladder, f).S11);
  for (float f : stopband) r.lnS21.push_back(std::log(std::abs(LadderSParameters(ladder, f).S21)));
  return r;
}

// Solves m x = b for every column of b (Gaussian elimination with partial
// pivoting); m is small and symmetric positive definite. Returns x by rows.
std::vector<std::vector<double>> Solve(std::vector<std::vector<double>> m,
                                       std::vector<std::vector<double>> b) {
  const size_t n = m.size();
  for (size_t c = 0; c < n; ++c) {
    size_t pivot = c;
    for (size_t r = c + 1; r < n; ++r)
      if (std::fabs(m[r][c]) > std::fabs(m[pivot][c])) pivot = r;
    std::swap(m[c], m[pivot]);
    std::swap(b[c], b[pivot]);
    // An inductor that moves nothing: keep it where it is.
    if (std::fabs(m[c][c]) < 1e-300) {
      m[c][c] = 1;
      std::fill(b[c].begin(), b[c].end(), 0.0);
    }
    for (size_t r = 0; r < n; ++r) {
      if (r == c || m[r][c] == 0) continue;
      const double f = m[r][c] / m[c][c];
      for (size_t k = c; k < n; ++k) m[r][k] -= f * m[c][k];
      for (size_t k = 0; k < b[r].size(); ++k) b[r][k] -= f * b[c][k];
    }
  }
  for (size_t r = 0; r < n; ++r)
    for (double& x : b[r]) x /= m[r][r];
  return b;
}

// The `keep` best combinations seen, best first.
void Offer(std::vector<CapCombo>& best, size_t keep, const CapCombo& combo) {
  if (best.size() == keep && !combo.merit.Beats(best.back().merit)) return;
  auto at = std::find_if(best.begin(), best.end(),
                         [&](const CapCombo& b) { return combo.merit.Beats(b.merit); });
  best.insert(at, combo);
  if (best.size() > keep) best.pop_back();
}

}  // namespace

LinearModel::LinearModel(const Ladder& exact, std::vector<int> caps, std::vector<int> inductors,
                         const std::vector<float>& passband, const std::vector<float>& stopband)
    : caps_(caps.size()), inductors_(inductors.size()) {
  const Response base = ResponseOf(exact, passband, stopband);
  s11_ = base.s11;
  for (double v : base.lnS21) attenuation_.push_back(-kDbPerNeper * v);

  // Sensitivities to ln C of each capacitor, then to ln L of each inductor.
  std::vector<std::vector<Complex>> js;
  std::vector<std::vector<double>> jq;
  auto sensitivity = [&](int position, bool capacitor) {
    Ladder moved = exact;
    (capacitor ? moved.C : moved.L)[static_cast<size_t>(position)] *= std::exp(kStep);
    const Response r = ResponseOf(moved, passband, stopband);
    std::vector<Complex> ds(r.s11.size());
    std::vector<double> dq(r.lnS21.size());
    for (size_t p = 0; p < ds.size(); ++p) ds[p] = (r.s11[p] - base.s11[p]) / kStep;
    for (size_t q = 0; q < dq.size(); ++q) dq[q] = (r.lnS21[q] - base.lnS21[q]) / kStep;
    js.push_back(std::move(ds));
    jq.push_back(std::move(dq));
  };
  for (int j : caps) sensitivity(j, true);
  for (int j : inductors) sensitivity(j, false);

  // Normal equations of the inductor correction: m a = -b, over the rows
  // of S11 (real and imaginary parts) and the weighted stopband rows.
  auto dot = [&](size_t x, size_t y) {
    double sum = 0;
    for (size_t p = 0; p < s11_.size(); ++p) sum += (std::conj(js[x][p]) * js[y][p]).real();
    for (size_t q = 0; q < attenuation_.size(); ++q)
      sum += kStopWeight * kStopWeight * jq[x][q] * jq[y][q];
    return sum;
  };
  std::vector<std::vector<double>> m(inductors_, std::vector<double>(inductors_));
  std::vector<std::vector<double>> b(inductors_, std::vector<double>(caps_));
  for (size_t l = 0; l < inductors_; ++l) {
    for (size_t l2 = 0; l2 < inductors_; ++l2) m[l][l2] = dot(caps_ + l, caps_ + l2);
    for (size_t k = 0; k < caps_; ++k) b[l][k] = -dot(caps_ + l, k);
  }
  a_ = Solve(std::move(m), std::move(b));

  // Each capacitor's effect with its inductor correction folded in.
  for (size_t k = 0; k < caps_; ++k) {
    std::vector<Complex> u = js[k];
    std::vector<double> g = jq[k];
    for (size_t l = 0; l < inductors_; ++l) {
      for (size_t p = 0; p < u.size(); ++p) u[p] += js[caps_ + l][p] * a_[l][k];
      for (size_t q = 0; q < g.size(); ++q) g[q] += jq[caps_ + l][q] * a_[l][k];
    }
    u_.push_back(std::move(u));
    g_.push_back(std::move(g));
  }
}

void LinearModel::Predict(const std::vector<int>& option,
                          const std::vector<std::vector<double>>& shifts, const Judge& judge,
                          CapCombo& combo) const {
  combo.option = option;
  combo.inductorShift.assign(inductors_, 0.0);
  std::vector<Complex> r = s11_;
  std::vector<double> stop = attenuation_;
  double distance = 0;
  for (size_t k = 0; k < caps_; ++k) {
    const double v = shifts[k][static_cast<size_t>(option[k])];
    if (v == 0) continue;
    distance += v * v;
    for (size_t p = 0; p < r.size(); ++p) r[p] += u_[k][p] * v;
    for (size_t q = 0; q < stop.size(); ++q) stop[q] -= kDbPerNeper * g_[k][q] * v;
    for (size_t l = 0; l < inductors_; ++l) combo.inductorShift[l] += a_[l][k] * v;
  }
  for (double s : combo.inductorShift) distance += s * s;
  double worst = 0;
  for (const Complex& c : r) worst = std::max(worst, std::norm(c));
  Figures f{-10 * std::log10(std::max(worst, 1e-30)), std::nan("")};
  for (double s : stop) f.stopband = std::isnan(f.stopband) ? s : std::min(f.stopband, s);
  combo.merit = judge.Of(f, distance);
}

std::vector<CapCombo> LinearModel::Rank(const std::vector<std::vector<double>>& shifts, size_t keep,
                                        const Judge& judge) const {
  std::vector<CapCombo> best;
  std::vector<int> option(caps_, 0);
  CapCombo combo;
  size_t total = 1;
  for (const auto& s : shifts) total = std::min(total * s.size(), kMaxEnumerated + 1);

  if (total <= kMaxEnumerated) {
    // Every combination, in odometer order.
    for (;;) {
      Predict(option, shifts, judge, combo);
      Offer(best, keep, combo);
      size_t k = 0;
      while (k < caps_ && ++option[k] == static_cast<int>(shifts[k].size())) option[k++] = 0;
      if (k == caps_) break;
    }
    return best;
  }
  // Too many: from the first option of each (the nearest value), move one
  // capacitor at a time to wherever the prediction improves most.
  Predict(option, shifts, judge, combo);
  Offer(best, keep, combo);
  Merit current = combo.merit;
  for (;;) {
    std::vector<int> step = option;
    Merit stepMerit = current;
    for (size_t k = 0; k < caps_; ++k) {
      for (int o = 0; o < static_cast<int>(shifts[k].size()); ++o) {
        if (option[k] == o) continue;
        std::vector<int> trial = option;
        trial[k] = o;
        Predict(trial, shifts, judge, combo);
        Offer(best, keep, combo);
        if (combo.merit.Beats(stepMerit)) step = trial, stepMerit = combo.merit;
      }
    }
    if (step == option) break;
    option = step;
    current = stepMerit;
  }
  return best;
}

}  // namespace drenik
