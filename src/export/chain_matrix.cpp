#include "export/chain_matrix.h"

#include <cmath>

namespace drenik {
namespace {

using Complex = std::complex<double>;

ChainMatrix SeriesArm(Complex z) {
  ChainMatrix m;
  m.B = z;
  return m;
}

ChainMatrix ShuntArm(Complex y) {
  ChainMatrix m;
  m.C = y;
  return m;
}

ChainMatrix Times(const ChainMatrix& m, const ChainMatrix& e) {
  return {m.A * e.A + m.B * e.C, m.A * e.B + m.B * e.D, m.C * e.A + m.D * e.C,
          m.C * e.B + m.D * e.D};
}

// A resistance rp in parallel with a reactance x, as a series impedance.
Complex ParallelToSeries(double rp, double x) {
  const double rser = rp / ((rp / x) * (rp / x) + 1);
  return {rser, rp * rser / x};
}

// Admittance of r + jx through its parallel equivalent.
Complex SeriesToParallelAdmittance(double r, double x) {
  const double rpar = (1 + (x / r) * (x / r)) * r;
  const double xpar = rpar * r / x;
  return {1 / rpar, -1 / xpar};
}

ChainMatrix Section(const DesignRecord& d, int j, double w) {
  const double l = d.L[j], c = d.C[j], qind = d.Qind, qcap = d.Qcap;
  switch (d.ElementType[j]) {
    case 1:
      return SeriesArm({std::abs(w * l / qind), w * l});
    case 2:
      return ShuntArm(SeriesToParallelAdmittance(std::abs(w * l / qind), w * l));
    case 3: {
      const double xc = c == 0 ? 1e7 : -1 / (w * c);
      return SeriesArm(ParallelToSeries(std::abs(qcap * xc), xc));
    }
    case 4: {
      const double xc = c == 0 ? 1e11 : -1 / (w * c);
      const double rp = std::abs(qcap * xc);
      return ShuntArm({1 / rp, -1 / xc});
    }
    case 6: {
      const double xc = c == 0 ? 1e11 : -1 / (w * c);
      const Complex cap = ParallelToSeries(std::abs(qcap * xc), xc);
      const double r = cap.real() + w * l / qind;
      double x = cap.imag() + w * l;
      if (x == 0) x = 1e-10;
      return ShuntArm(SeriesToParallelAdmittance(r, x));
    }
    case 7: {
      const double r = std::abs(w * l / qind), x = w * l;
      const double rparL = (1 + (x / r) * (x / r)) * r;
      double xparL = rparL * r / x;
      const double xc = c == 0 ? 1e11 : -1 / (w * c);
      const double rpC = c == 0 ? 1e11 : std::abs(qcap / (w * c));
      const double r3 = 1e11;
      const double rt = 1 / (1 / rparL + 1 / rpC + 1 / r3);
      if (xc + xparL == 0) xparL *= 1.00001;
      const double xt = 1 / (1 / xc + 1 / xparL);
      const double rser = std::abs(rt / ((rt / xt) * (rt / xt) + 1));
      return SeriesArm({rser, rt * rser / xt});
    }
    default:
      return {};
  }
}

}  // namespace

ChainMatrix LadderChainMatrix(const DesignRecord& d, float F) {
  const float omega = d.TwoPi * F;  // formed in single precision, as the sweep does
  ChainMatrix m;
  const int stages = d.Stages < kMaxPositions ? d.Stages : kMaxPositions;
  for (int j = 1; j <= stages; ++j) m = Times(m, Section(d, j, omega));
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
