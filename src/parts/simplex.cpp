#include "parts/simplex.h"

#include <cmath>

namespace drenik {

// The simplex method on the condensed tableau: one row per constraint (its
// slack is the basic variable), one column per non-basic variable, the
// right-hand sides in the last column and the reduced costs in the last row.
// Bland's rule (lowest index enters and leaves) keeps it from cycling.
bool MaximizeLinear(const std::vector<std::vector<double>>& a, const std::vector<double>& b,
                    const std::vector<double>& c, std::vector<double>& x) {
  constexpr double kEps = 1e-12;
  const size_t m = a.size(), n = c.size();
  std::vector<std::vector<double>> t(m + 1, std::vector<double>(n + 1));
  for (size_t i = 0; i < m; ++i) {
    for (size_t j = 0; j < n; ++j) t[i][j] = a[i][j];
    t[i][n] = b[i];
  }
  for (size_t j = 0; j < n; ++j) t[m][j] = -c[j];
  // Variables 0..n-1 are x, n..n+m-1 the slacks.
  std::vector<size_t> nonbasic(n), basic(m);
  for (size_t j = 0; j < n; ++j) nonbasic[j] = j;
  for (size_t i = 0; i < m; ++i) basic[i] = n + i;

  bool bounded = true;
  for (size_t guard = 0; guard < 50 * (m + n); ++guard) {
    size_t enter = n;
    for (size_t j = 0; j < n; ++j)
      if (t[m][j] < -kEps && (enter == n || nonbasic[j] < nonbasic[enter])) enter = j;
    if (enter == n) break;  // optimal
    size_t leave = m;
    double best = 0;
    for (size_t i = 0; i < m; ++i) {
      if (t[i][enter] <= kEps) continue;
      const double ratio = t[i][n] / t[i][enter];
      if (leave == m || ratio < best - kEps ||
          (std::fabs(ratio - best) <= kEps && basic[i] < basic[leave])) {
        leave = i;
        best = ratio;
      }
    }
    if (leave == m) {
      bounded = false;
      break;
    }
    const double pivot = t[leave][enter];
    for (size_t i = 0; i <= m; ++i) {
      if (i == leave || t[i][enter] == 0) continue;
      const double f = t[i][enter] / pivot;
      for (size_t j = 0; j <= n; ++j)
        if (j != enter) t[i][j] -= f * t[leave][j];
      t[i][enter] = -f;
    }
    for (size_t j = 0; j <= n; ++j)
      if (j != enter) t[leave][j] /= pivot;
    t[leave][enter] = 1 / pivot;
    std::swap(basic[leave], nonbasic[enter]);
  }
  x.assign(n, 0.0);
  for (size_t i = 0; i < m; ++i)
    if (basic[i] < n) x[basic[i]] = t[i][n];
  return bounded;
}

}  // namespace drenik
