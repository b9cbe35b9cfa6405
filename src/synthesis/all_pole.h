#pragma once
// The all-pole responses that have no closed-form ladder: the optimum
// monotonic (Legendre, Papoulis' "optimum L") response and the maximally
// flat delay (Bessel) response beyond the tabulated orders. Both are
// synthesized as doubly terminated ladders between equal 1-ohm
// terminations, cutoff at the 3 dB point of 1 rad/s.

#include <complex>
#include <vector>

namespace drenik::allpole {

using Poly = std::vector<double>;  // coefficients of x^0, x^1, ...

// L_n(w) of the optimum monotonic response |H|^2 = 1 / (1 + L_n(w^2)): the
// integral of the square of a sum of Legendre polynomials (times (x + 1)
// for even orders) that rises monotonically from L_n(0) = 0, normalized to
// L_n(1) = 1. Coefficients of w^0 .. w^n, w = omega^2.
Poly LegendreCharacteristic(int n);

// The roots of a polynomial (eigenvalues of its companion matrix, each
// refined by Newton's method on the polynomial itself).
std::vector<std::complex<double>> Roots(Poly p);

// The left-half-plane roots of D(-s^2), for D a polynomial in w = omega^2:
// the natural frequencies of the response whose |E(j omega)|^2 is D.
std::vector<std::complex<double>> LeftHalfPlaneRoots(const Poly& d);

// The denominator E(s) of the Bessel response of order n (the reverse
// Bessel polynomial), scaled so that E(0) = 1 and the loss is 3 dB at
// 1 rad/s.
Poly BesselDenominator(int n);

// |E(j omega)|^2 as a polynomial in w = omega^2.
Poly MagnitudeSquared(const Poly& e);

// The reflection polynomial F(s) whose |F(j omega)|^2 is the polynomial
// `d` in w = omega^2 (a double root of D at DC is a root of F there), with
// its other roots in the left half plane, leading coefficient `lead`.
Poly ReflectionPolynomial(const Poly& d, double lead);

// Starting values g1..gn (index 0 unused) of the C-input ladder between
// equal terminations, by Darlington's synthesis: the reflection S11 = F / E,
// the input admittance (E + F) / (E - F) and its continued fraction. Each
// division step of the fraction loses digits at high orders, so the first
// half of the ladder is taken from the source end and the second half from
// the load end (the output's reflection (-1)^n F(-s) / E), where each
// fraction is still accurate. E and F have equal leading coefficients.
std::vector<double> DarlingtonStart(const Poly& e, const Poly& f);

// The polynomial of the given roots (closed under conjugation) times lead.
Poly FromRoots(const std::vector<std::complex<double>>& roots, double lead);

}  // namespace drenik::allpole
