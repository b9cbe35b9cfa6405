#pragma once
// Complete elliptic integrals, the nome, Carlson's symmetric integral and the
// Jacobi functions sn and cd of a complex argument: the mathematics of the
// elliptic (Cauer) filter.
//
// A modulus close to 1 loses its complement to cancellation, so every routine
// takes the complement k' = sqrt(1 - k^2) as well, computed by the caller
// from quantities that carry it accurately.

#include <complex>

namespace drenik::elliptic {

// Arithmetic-geometric mean of two non-negative numbers.
double Agm(double a, double b);

// K of the modulus whose complement is kc: pi / (2 AGM(1, kc)). The same
// routine gives K' = K(k') from CompleteK(k), with no cancellation even for a
// modulus of 1e-8.
double CompleteK(double kc);

// A modulus described by its nome q = exp(-pi K'/K) and everything the
// design needs of it.
struct Modulus {
  double q = 0;
  double k = 0;   // modulus
  double kc = 0;  // complementary modulus
  double K = 0;   // complete integral K(k)
  double Kp = 0;  // complementary integral K'(k) = K(k')
};

// The modulus of nome q (0 < q < 1), from the theta series.
Modulus FromNome(double q);
// The modulus k with complement kc.
Modulus FromModulus(double k, double kc);

// Carlson's symmetric elliptic integral R_F(x, y, z), duplication method.
double CarlsonRf(double x, double y, double z);

// Jacobi cd(u K, k) and sn(u K, k) for complex u (u in units of the quarter
// period K), by descending Landen transformations.
std::complex<double> Cd(std::complex<double> u, const Modulus& m);
std::complex<double> Sn(std::complex<double> u, const Modulus& m);

}  // namespace drenik::elliptic
